// What vexahealth.exe answers to its caller. Scripts rely on these numbers.
#ifndef CLIENT_EXIT_CODES_H_
#define CLIENT_EXIT_CODES_H_

namespace vexahealth {

enum ExitCode : int {
  // Showing readings: the library worked and at least one reading of the notebook is ok; get: the reading is ok;
  // settings: the firmware answered; with --watch: so it was at least once.
  // settings set: the firmware accepted, and nothing speaks against it; or a dry run of something that the firmware
  // offers. Also --help and --version.
  kExitOk = 0,

  // Showing readings: the library was loaded, but there is no news of the notebook: InitializeWinIo answered 0, or no
  // reading of the EC, battery, charger, power or lid is ok. Versions of the library and its driver don't count: they
  // tell nothing about the notebook; nor does what the system itself tells (external power, time, volume) or what the
  // registry keeps of the EC. get: the reading has no value. settings: the firmware answered neither for the charge
  // limit nor for the quiet fan. doctor: something keeps the library from working.
  kExitNoReadings = 1,

  // Unknown command, option, setting or value.
  kExitUsage = 2,

  // VexaWinIO64.dll is missing beside the client, can't be loaded, lacks InitializeWinIo, ShutdownWinIo or
  // GetIoDllVersion, or has another major interface version than this client.
  kExitNotLoaded = 3,

  // The result can't be written to standard output, or memory is short. A change of a setting may have been made.
  kExitOutputFailed = 4,

  // settings set: the firmware does not offer the setting, or does not answer whether it does. Nothing was changed.
  kExitNotSupported = 5,

  // settings set: the firmware was asked and refused, or did not answer.
  kExitRefused = 6,

  // settings set: the firmware accepted, but its quiet fan reads back otherwise, or the charge limit's setting file
  // could not be written.
  kExitNotConfirmed = 7,

  // trace: this system has no event tracing, or does not let this user trace.
  kExitNoTracing = 8,
};

}  // namespace vexahealth

#endif  // CLIENT_EXIT_CODES_H_
