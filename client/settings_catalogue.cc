#include "client/settings_catalogue.h"

namespace vexahealth {
namespace {

// A row that needs nothing but the library: these exports are not behind the driver.
template <typename Declared>
constexpr Row SettingOf(std::string_view key, std::string_view label, Section section, const char* export_name,
                        Kind kind, size_t text_capacity = 0) {
  return {.key = key,
          .label = label,
          .section = section,
          .export_name = export_name,
          .signature = SignatureOf<Declared>(),
          .kind = kind,
          .text_capacity = text_capacity};
}

}  // namespace

// Row of the list above: the declared export gives its name and its signature.
#define VEXA_SETTING(key, label, section, name, ...) \
  SettingOf<decltype(&name)>(key, label, Section::section, #name, __VA_ARGS__)

const std::array<Row, kSettingRowCount> kSettingRows = {{
    VEXA_SETTING("charge_limit.supported", "Offered by the firmware", kChargeLimit, WMICheckBatteryHealthSupport,
                 Kind::kFlag),
    VEXA_SETTING("charge_limit.remembered", "Remembered limit", kChargeLimit, WMIGetBatteryHealth,
                 Kind::kStoredPercent),
    VEXA_SETTING("quiet_fan.state", "State in the firmware", kQuietFan, WMICheckQuietFanSupport, Kind::kSwitch),
    VEXA_SETTING("quiet_fan.remembered", "Remembered mode", kQuietFan, WMIGetQuietFan, Kind::kNumber32),
    VEXA_SETTING("application.folder", "Stored path", kApplication, WMIGetAppPath, Kind::kPath, VEXA_APP_PATH_CAPACITY),
    VEXA_SETTING("application.folder_exists", "Exists", kApplication, WMICheckAppExist, Kind::kFlag),
}};

#undef VEXA_SETTING

}  // namespace vexahealth
