// The "processor" section: CPUID leaves, power limits, package power, voltage and frequencies.
#include <algorithm>

#include "object_reader.h"
#include "sections.h"
#include "texts.h"

namespace scenario {
namespace {

void ReadLeaf(const JsonValue& value, ImageBuilder& image, Faults& faults) {
  const ObjectReader row(value, "cpuid", {"leaf", "eax", "ebx", "ecx", "edx"}, faults);
  ImageCpuidLeaf leaf{};
  leaf.leaf = static_cast<uint32_t>(row.RequireNumber("leaf", kDwordRange));
  constexpr std::string_view kRegisters[] = {"eax", "ebx", "ecx", "edx"};
  for (size_t i = 0; i < 4; ++i) {
    leaf.registers[i] = static_cast<uint32_t>(row.Number(kRegisters[i], kDwordRange, 0));
  }
  if (std::ranges::count(image.leaves, leaf.leaf, &ImageCpuidLeaf::leaf) != 0) {
    faults.Add(row.line(), Concat("leaf ", Hex(leaf.leaf, 8), " is given twice"));
  }
  image.leaves.push_back(leaf);
}

void ReadPowerRow(const JsonValue& value, ImageBuilder& image, Faults& faults) {
  const ObjectReader row(value, "power_limits", {"argument", "limit1", "limit2"}, faults);
  ImagePowerRow record{};
  record.any = row.Find("argument") == nullptr;
  record.argument = static_cast<uint32_t>(row.Number("argument", kDwordRange, 0));
  record.limits[0] = static_cast<uint32_t>(row.RequireNumber("limit1", kDwordRange));
  record.limits[1] = static_cast<uint32_t>(row.RequireNumber("limit2", kDwordRange));
  for (const ImagePowerRow& other : image.power_rows) {
    if (other.any == record.any && other.argument == record.argument) {
      faults.Add(row.line(), "power limits for the same argument are already given");
    }
  }
  image.power_rows.push_back(record);
}

}  // namespace

void ReadProcessorSection(const JsonValue& value, ImageBuilder& image, Faults& faults) {
  const ObjectReader processor(value, "processor",
                               {"cpuid", "power_limits", "package_power", "voltage", "frequencies"}, faults);
  for (const JsonValue& leaf : processor.Array("cpuid", IMAGE_MAX_ROWS)) ReadLeaf(leaf, image, faults);
  for (const JsonValue& row : processor.Array("power_limits", IMAGE_MAX_ROWS))
    ReadPowerRow(row, image, faults);
  image.header.package_power = processor.Number("package_power", kQwordRange, 0);
  image.header.voltage = static_cast<uint32_t>(processor.Number("voltage", kSignedDwordRange, 0));
  if (const JsonValue* frequencies = processor.Find("frequencies")) {
    const ObjectReader row(*frequencies, "frequencies",
                           {"intel_current", "intel_maximum", "other_current", "other_maximum"}, faults);
    constexpr std::string_view kKeys[] = {"intel_current", "intel_maximum", "other_current", "other_maximum"};
    for (size_t i = 0; i < 4; ++i) {
      image.header.frequencies[i] = static_cast<int64_t>(row.Number(kKeys[i], kQwordRange, 0));
    }
  }
}

}  // namespace scenario
