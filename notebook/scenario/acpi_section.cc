// The "acpi" section: methods, their answers, and which answers a call changes.
#include <algorithm>
#include <string>

#include "object_reader.h"
#include "sections.h"
#include "texts.h"

namespace scenario {
namespace {

// Name and arguments of a row, as "methods" and "sets" give them.
bool ReadSignature(const ObjectReader& row, ImageAcpiMethod& method, Faults& faults) {
  const JsonValue* name = row.Require("method");
  const std::optional<std::string> text = name != nullptr ? ReadText(*name, "method", faults) : std::nullopt;
  if (!text) return false;
  if (text->size() != sizeof(method.name)) {
    faults.Add(name->line, Concat("\"method\" must have ", sizeof(method.name), " characters"));
    return false;
  }
  std::ranges::copy(*text, method.name);
  for (const JsonValue& argument : row.Array("arguments", IMAGE_ACPI_ARGUMENTS)) {
    method.arguments[method.argument_count++] =
        static_cast<uint32_t>(ReadNumber(argument, "arguments", kDwordRange, faults).value_or(0));
  }
  return true;
}

bool SameSignature(const ImageAcpiMethod& a, const ImageAcpiMethod& b) {
  return std::ranges::equal(a.name, b.name) && a.argument_count == b.argument_count &&
         std::ranges::equal(a.arguments, b.arguments);
}

// The bytes that a call answers: a "result" word, or "hex".
std::vector<uint8_t> ReadOutput(const ObjectReader& row, std::string_view form, Faults& faults) {
  if (form == "hex") {
    const JsonValue& hex = *row.Find("hex");
    std::vector<uint8_t> bytes = ReadHex(hex, form, faults).value_or(std::vector<uint8_t>{});
    if (bytes.size() > IMAGE_ACPI_OUTPUT) {
      faults.Add(hex.line, Concat("\"hex\" has ", bytes.size(), " bytes; the limit is ", IMAGE_ACPI_OUTPUT));
      bytes.clear();
    }
    return bytes;
  }
  const auto result = static_cast<uint32_t>(row.Number("result", kSignedDwordRange, 0));
  std::vector<uint8_t> bytes;
  for (int shift = 0; shift < 32; shift += 8) bytes.push_back(static_cast<uint8_t>(result >> shift));
  return bytes;
}

// Returns the row's "sets", or null.
const JsonValue* ReadMethod(const JsonValue& value, ImageBuilder& image, Faults& faults) {
  const ObjectReader row(value, "methods", {"method", "name", "arguments", "result", "hex", "fail", "sets"},
                         faults);
  ImageAcpiMethod method{};
  const bool good = ReadSignature(row, method, faults);
  const std::string_view form = row.OneOf({"result", "hex", "fail"}, true);
  if (form == "fail") {
    method.fail = static_cast<uint32_t>(row.Number("fail", kFailureRange, 0));
  } else if (!form.empty()) {
    const std::vector<uint8_t> output = ReadOutput(row, form, faults);
    method.first_byte = static_cast<uint32_t>(image.acpi_bytes.size());
    method.byte_count = static_cast<uint32_t>(output.size());
    image.acpi_bytes.insert(image.acpi_bytes.end(), output.begin(), output.end());
  }
  if (image.acpi_bytes.size() > IMAGE_MAX_ACPI_BYTES) {
    faults.Add(row.line(), Concat("the methods answer more than ", IMAGE_MAX_ACPI_BYTES, " bytes"));
    image.acpi_bytes.clear();
  }
  const auto same = [&](const ImageAcpiMethod& other) { return SameSignature(other, method); };
  if (good && std::ranges::any_of(image.methods, same)) {
    faults.Add(row.line(), "a method with the same arguments is already given");
  }
  image.methods.push_back(method);
  return row.Find("sets");
}

// After all methods are known, as a row may set a later one.
void ReadSets(const JsonValue& sets, ImageAcpiMethod& method, const ImageBuilder& image, Faults& faults) {
  const ObjectReader target(sets, "sets", {"method", "arguments", "mask"}, faults);
  ImageAcpiMethod wanted{};
  if (!ReadSignature(target, wanted, faults)) return;
  const auto same = [&](const ImageAcpiMethod& other) { return SameSignature(other, wanted); };
  const auto found = std::ranges::find_if(image.methods, same);
  if (found == image.methods.end()) {
    faults.Add(target.line(), "\"sets\" names a method and arguments that no row gives");
  } else if (found->byte_count < sizeof(uint32_t)) {
    faults.Add(target.line(), "\"sets\" names a row whose answer has less than 4 bytes");
  } else {
    method.sets = static_cast<uint32_t>(found - image.methods.begin()) + 1;
    method.sets_mask = static_cast<uint32_t>(target.Number("mask", kDwordRange, 0xFFFFFFFF));
  }
}

}  // namespace

void ReadAcpiSection(const JsonValue& value, ImageBuilder& image, Faults& faults) {
  const ObjectReader acpi(value, "acpi", {"unlisted", "methods"}, faults);
  if (const JsonValue* unlisted = acpi.Find("unlisted")) {
    const ObjectReader row(*unlisted, "unlisted", {"result", "fail"}, faults);
    const std::string_view form = row.OneOf({"result", "fail"}, true);
    if (form == "fail") image.header.acpi_fail = static_cast<uint32_t>(row.Number("fail", kFailureRange, 0));
    if (form == "result") {
      image.header.acpi_result = static_cast<uint32_t>(row.Number("result", kSignedDwordRange, 0));
    }
  }
  std::vector<const JsonValue*> sets;
  for (const JsonValue& method : acpi.Array("methods", IMAGE_MAX_ROWS)) {
    sets.push_back(ReadMethod(method, image, faults));
  }
  for (size_t i = 0; i < sets.size(); ++i) {
    if (sets[i] != nullptr) ReadSets(*sets[i], image.methods[i], image, faults);
  }
}

}  // namespace scenario
