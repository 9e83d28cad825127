#include "client/settings_catalogue.h"

#include "client/ask.h"

namespace vexahealth {

// These exports are not behind the driver: they need nothing but the library.
const std::array<Row, kSettingRowCount> kSettingRows = {{
    {"charge_limit.supported", "Offered by the firmware", Section::kChargeLimit,
     VEXA_EXPORT(WMICheckBatteryHealthSupport), Kind::kFlag},
    {"charge_limit.remembered", "Remembered limit", Section::kChargeLimit, VEXA_EXPORT(WMIGetBatteryHealth),
     Kind::kStoredPercent},
    {"quiet_fan.state", "State in the firmware", Section::kQuietFan, VEXA_EXPORT(WMICheckQuietFanSupport),
     Kind::kSwitch},
    {"quiet_fan.remembered", "Remembered mode", Section::kQuietFan, VEXA_EXPORT(WMIGetQuietFan), Kind::kNumber32},
    {"application.folder", "Stored path", Section::kApplication, VEXA_EXPORT(WMIGetAppPath), Kind::kPath},
    {"application.folder_exists", "Exists", Section::kApplication, VEXA_EXPORT(WMICheckAppExist), Kind::kFlag},
}};

}  // namespace vexahealth
