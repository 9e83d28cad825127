#include "scenario.h"

#include <algorithm>
#include <optional>

#include "firmware/section.h"
#include "object_reader.h"
#include "radios/section.h"
#include "section_only.h"
#include "sections.h"
#include "texts.h"

namespace scenario {
namespace {

struct Section {
  std::string_view key;
  void (*read)(const JsonValue& value, ImageBuilder& image, Faults& faults);
};

constexpr Section kSections[] = {
    {"driver", ReadDriverSection},  {"ec", ReadEcSection},       {"processor", ReadProcessorSection},
    {"acpi", ReadAcpiSection},      {"rules", ReadRulesSection}, {"firmware", CheckFirmwareSection},
    {"radios", CheckRadiosSection},
};

void ReadDocument(const JsonValue& document, ImageBuilder& image, Faults& faults) {
  if (!Expect(document, "scenario", JsonValue::Kind::kObject, faults)) return;
  for (const JsonValue& member : document.items) {
    const auto section = std::ranges::find(kSections, std::string_view(member.key), &Section::key);
    if (section != std::end(kSections)) {
      section->read(member, image, faults);
    } else if (member.key == "description") {
      Expect(member, member.key, JsonValue::Kind::kText, faults);
    } else {
      faults.Add(member.key_line, Concat("unknown section \"", member.key, "\""));
    }
  }
}

// The document when it has no fault.
std::optional<JsonValue> ReadScenario(std::string_view text, ImageBuilder& image, Faults& faults) {
  if (text.size() > kMaxScenarioSize) {
    faults.Add(1, Concat("the file is larger than ", kMaxScenarioSize, " bytes"));
    return std::nullopt;
  }
  std::optional<JsonValue> document = ParseJson(text, faults);
  if (document) ReadDocument(*document, image, faults);
  return faults.Empty() ? std::move(document) : std::nullopt;
}

}  // namespace

void ReadDriverSection(const JsonValue& value, ImageBuilder& image, Faults& faults) {
  const ObjectReader driver(value, "driver", {"version", "log", "start"}, faults);
  image.header.driver_version = static_cast<uint32_t>(driver.Number("version", kDwordRange, 0));
  image.header.log = driver.Boolean("log", true);
  const JsonValue* start = driver.Find("start");
  if (start == nullptr) return;
  const ObjectReader row(*start, "start", {"delay_ms", "fail"}, faults);
  image.header.start_delay_ms = static_cast<uint32_t>(row.Number("delay_ms", {0, IMAGE_MAX_DELAY_MS}, 0));
  image.header.start_status = static_cast<uint32_t>(row.Number("fail", kFailureRange, 0));
}

void CheckFirmwareSection(const JsonValue& value, ImageBuilder&, Faults& faults) {
  firmware::ReadFirmwareSection(value, faults);
}

void CheckRadiosSection(const JsonValue& value, ImageBuilder&, Faults& faults) {
  radios::ReadRadiosSection(value, faults);
}

std::vector<uint8_t> CompileScenario(std::string_view text, Faults& faults) {
  ImageBuilder image;
  if (!ReadScenario(text, image, faults)) return {};
  std::vector<uint8_t> bytes = image.Build();
  if (bytes.empty()) faults.Add(1, Concat("the image would exceed ", IMAGE_MAX_SIZE, " bytes"));
  return bytes;
}

std::string ScenarioOf(std::string_view section, std::string_view text, Faults& faults) {
  ImageBuilder image;
  const std::optional<JsonValue> document = ReadScenario(text, image, faults);
  return document ? SectionOnly(*document, section) : "";
}

}  // namespace scenario
