// The EC's identity as the library keeps it, and the state of the system.
#include <array>

#include "client/families.h"
#include "client/rules.h"
#include "client/values.h"

namespace vexahealth {
namespace {

constexpr Section kController = Section::kController;
constexpr Section kSystem = Section::kSystem;
constexpr OnFirmware kPlain = OnFirmware::kPlain;

constexpr std::array<Row, 4> kIdentity = {{
    {"ec.kept_chip_id", "Chip id, kept", kController, VEXA_EXPORT(EC_ReadEcChipId), Kind::kHex8, Gate::kController,
     kPlain},
    {"ec.kept_chip_name", "Chip name, kept", kController, VEXA_EXPORT(EC_ReadEcChipName), Kind::kFourCharacters,
     Gate::kController, kPlain},
    {"ec.firmware_revision", "Firmware revision, kept", kController, VEXA_EXPORT(EC_ReadEcFwRev), Kind::kRevision,
     Gate::kController, kPlain},
    {"ec.project_information", "Project information", kController, VEXA_EXPORT(EC_ReadProjectInformation), Kind::kHex8,
     Gate::kController, kPlain},
}};

constexpr std::array<Row, 6> kSystemRows = {{
    {"system.tablet_mode", "Tablet mode", kSystem, VEXA_EXPORT(System_Read_TabletMode), Kind::kHex8, Gate::kController},
    {"system.volume", "Volume", kSystem, VEXA_EXPORT(System_Read_VolumeLevel), Kind::kPercent},
    {"system.s_mode", "S mode", kSystem, VEXA_EXPORT(System_Check_S_Mode), Kind::kFlag},
    {"system.local_time", "Local time", kSystem, VEXA_EXPORT(System_Read_LocalTime), Kind::kText, Gate::kLibrary},
    {"system.companion_app_version", "Companion app", kSystem, VEXA_EXPORT(GetUWPVersion), Kind::kText, Gate::kLibrary},
    {"system.control_driver_version", "System control driver", kSystem, VEXA_EXPORT(GetInfVersion), Kind::kText,
     Gate::kLibrary},
}};

Reading DecideSystem(const Row& row, const Answer& answer) {
  if (answer) return InItsRange(row, *answer);
  return Missing(
      row, answer.error(),
      row.key == "system.volume" ? "no speaker, or it does not tell" : "not installed, or the system does not tell");
}

}  // namespace

std::span<const Row> IdentityRows() { return kIdentity; }
std::span<const Row> SystemRows() { return kSystemRows; }

std::vector<Reading> CollectIdentity(Session& session) {
  std::vector<Reading> readings;
  for (const Row& row : kIdentity) {
    Reading reading = session.Ec().Ask(row);
    if (row.kind == Kind::kRevision && reading.status == Status::kUnsupported) {
      reading.note = "the EC reports no revision, or one that the library does not know";
    }
    if (reading.status == Status::kNoAnswer && session.Ec().FirmwareRoute()) {
      reading = Missing(row, Status::kUnsupported, "nothing is kept, and ARM64 machines have no driver to ask through");
    }
    readings.push_back(std::move(reading));
  }
  return readings;
}

std::vector<Reading> CollectSystem(Session& session) {
  std::vector<Reading> readings;
  for (const Row& row : kSystemRows) {
    if (!session.Wants(row)) {
      readings.push_back(Missing(row, Status::kNotCollected, "not asked"));
    } else if (row.gate == Gate::kLibrary) {
      readings.push_back(DecideSystem(row, row.ask(session.context())));
    } else {
      readings.push_back(session.Ec().Ask(row));
    }
  }
  return readings;
}

}  // namespace vexahealth
