// The list of settings: one row per export of the library that tells about one, in the order of the output.
#ifndef CLIENT_SETTINGS_CATALOGUE_H_
#define CLIENT_SETTINGS_CATALOGUE_H_

#include <array>
#include <cstddef>
#include <string_view>

#include "client/catalogue.h"

namespace vexahealth {

// Indexes of kSettingRows.
enum SettingRow : size_t {
  kLimitSupported,
  kLimitRemembered,
  kFanState,
  kFanRemembered,
  kFolder,
  kFolderExists,
  kSettingRowCount,
};

extern const std::array<Row, kSettingRowCount> kSettingRows;

// The limits that the firmware knows, in percent.
inline constexpr std::array<int, 3> kChargeLimits = {60, 80, 100};
inline constexpr uint32_t kUnknownLimit = 100;  // what the remembered limit reads as when none is known

}  // namespace vexahealth

#endif  // CLIENT_SETTINGS_CATALOGUE_H_
