// What vexahealth.exe answers to its caller. Scripts rely on these numbers.
#ifndef CLIENT_EXIT_CODES_H_
#define CLIENT_EXIT_CODES_H_

namespace vexahealth {

enum ExitCode : int {
  // The library worked and at least one reading of the notebook is ok. Also --help and --version.
  kExitOk = 0,

  // The library was loaded, but there is no news of the notebook: InitializeWinIo answered 0, or no reading
  // of the EC,
  // battery, charger, power or lid is ok. Versions of the library and its driver don't count: they tell
  // nothing about
  // the notebook.
  kExitNoReadings = 1,

  // Unknown command or option.
  kExitUsage = 2,

  // VexaWinIO64.dll is missing beside the client, can't be loaded, lacks InitializeWinIo, ShutdownWinIo or
  // GetIoDllVersion, or has another major interface version than this client.
  kExitNotLoaded = 3,

  // The result can't be written to standard output, or memory is short.
  kExitOutputFailed = 4,
};

}  // namespace vexahealth

#endif  // CLIENT_EXIT_CODES_H_
