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
    {"system.tablet_mode", "Tablet mode", kSystem, VEXA_EXPORT(System_Read_TabletMode), Kind::kHex8, Gate::kController,
     OnFirmware::kNothing},
    {"system.volume", "Volume", kSystem, VEXA_EXPORT(System_Read_VolumeLevel), Kind::kPercent},
    {"system.s_mode", "S mode", kSystem, VEXA_EXPORT(System_Check_S_Mode), Kind::kFlag},
    {"system.local_time", "Local time", kSystem, VEXA_EXPORT(System_Read_LocalTime), Kind::kText, Gate::kLibrary,
     OnFirmware::kSame, Reserved::kNone, VEXA_LOCAL_TIME_CAPACITY},
    {"system.companion_app_version", "Companion app", kSystem, VEXA_EXPORT(GetUWPVersion), Kind::kText, Gate::kLibrary,
     OnFirmware::kSame, Reserved::kNone, VEXA_VERSION_CAPACITY},
    {"system.control_driver_version", "System control driver", kSystem, VEXA_EXPORT(GetInfVersion), Kind::kText,
     Gate::kLibrary, OnFirmware::kSame, Reserved::kNone, VEXA_VERSION_CAPACITY},
}};

Reading Volume(const Session& session, const Row& row) {
  const auto read = session.Find<decltype(&System_Read_VolumeLevel)>(row.export_name);
  if (read == nullptr) return MissingExport(row);
  const int32_t percent = read(1);
  if (percent == VEXA_NO_VOLUME) return Missing(row, Status::kNotPresent, "no speaker, or it does not tell");
  const auto number = static_cast<uint32_t>(percent);
  if (!InRange(row.kind, number)) return OutOfRange(row, {.form = Answer::Form::kNumber, .number = number, .text = {}});
  return Ok(row, int64_t{percent});
}

Reading Version(const Session& session, const Row& row) {
  const Context& context = session.context();
  const Answer answer = Call(row, context.resolve(row.export_name), context.decode, context.decode_wide);
  if (answer.form == Answer::Form::kMissingExport) return MissingExport(row);
  if (answer.form == Answer::Form::kUnterminated) {
    return Missing(row, Status::kError, "the library wrote past the buffer that it asks for");
  }
  if (answer.text.empty()) return Missing(row, Status::kNotPresent, "not installed, or the system does not tell");
  return Ok(row, answer.text);
}

Reading LocalTime(const Session& session, const Row& row) {
  const Context& context = session.context();
  const Answer answer = Call(row, context.resolve(row.export_name), context.decode, context.decode_wide);
  if (answer.form == Answer::Form::kMissingExport) return MissingExport(row);
  if (answer.form != Answer::Form::kText || answer.number != answer.text.size()) {
    return Missing(row, Status::kError, "the text and its length don't go together");
  }
  return Ok(row, answer.text);
}

}  // namespace

std::span<const Row> IdentityRows() { return kIdentity; }
std::span<const Row> SystemRows() { return kSystemRows; }

std::vector<Reading> CollectIdentity(Session& session) {
  std::vector<Reading> readings;
  for (const Row& row : kIdentity) {
    Reading reading = session.Ec().Ask(row);
    if (row.kind == Kind::kRevision && reading.status == Status::kOk) {
      const Value& value = reading.value;
      if (value == Value(RevisionText(VEXA_NO_FIRMWARE_REVISION))) {
        reading = Missing(row, Status::kUnsupported, "the EC reports no revision");
      } else if (value == Value(RevisionText(VEXA_UNKNOWN_FIRMWARE_REVISION))) {
        reading = Missing(row, Status::kUnsupported, "the EC reports a revision that the library does not know");
      }
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
    } else if (row.key == "system.volume") {
      readings.push_back(Volume(session, row));
    } else if (row.key == "system.local_time") {
      readings.push_back(LocalTime(session, row));
    } else if (row.signature == Signature::kWideBuffer) {
      readings.push_back(Version(session, row));
    } else {
      readings.push_back(session.Ec().Ask(row));
    }
  }
  return readings;
}

}  // namespace vexahealth
