// The "ec" section: defaults, information registers, groups, gauge registers and other commands.
#include <algorithm>

#include "registers.h"
#include "sections.h"
#include "texts.h"

namespace scenario {
namespace {

constexpr uint8_t kHealthyTableVersion = 0x50;  // information register
constexpr uint8_t kOwnTables[] = {0xBB, 0xDD, 0xDE};

ImageCell ReadUnlisted(const ObjectReader& ec, Faults& faults) {
  const JsonValue* value = ec.Find("unlisted");
  if (value == nullptr) return ImageCell{};
  const ObjectReader unlisted(*value, "unlisted", {"byte", "status"}, faults);
  return ReadAnswer(unlisted, faults).value_or(ImageCell{});
}

void ReadInformationRegister(const JsonValue& value, RegisterBlock& block, Faults& faults) {
  const ObjectReader row(value, "registers",
                         {"register", "name", "byte", "word", "dword", "text", "size", "hex", "status"},
                         faults);
  if (row.Require("register") == nullptr) return;
  const uint64_t number = row.Number("register", kByteRange, 0);
  const std::optional<Payload> payload = ReadPayload(row, IMAGE_BLOCK_CELLS, faults);
  if (payload) block.Set(row.line(), number, *payload, kWriteIgnored, faults);
}

void ReadInformation(const ObjectReader& ec, ImageBuilder& image, Faults& faults) {
  const JsonValue* version = ec.Find("healthy_table_version");
  const JsonValue* information = ec.Find("information");
  if (version == nullptr && information == nullptr) return;
  RegisterBlock block(image.header.unlisted);
  if (information != nullptr) {
    const ObjectReader object(*information, "information", {"fill", "registers"}, faults);
    block = ReadFill(object, image.header.unlisted, faults);
    for (const JsonValue& row : object.Array("registers", IMAGE_BLOCK_CELLS)) {
      ReadInformationRegister(row, block, faults);
    }
  }
  if (version != nullptr) {
    ImageCell cell{};
    cell.value = static_cast<uint8_t>(ec.Number("healthy_table_version", kByteRange, 0));
    block.Set(version->line, kHealthyTableVersion, cell, faults);
  }
  image.header.information_block = static_cast<uint8_t>(image.blocks.size());
  image.blocks.push_back(block.cells());
}

void ReadGaugeRegister(const JsonValue& value, ImageBuilder& image, Faults& faults) {
  const ObjectReader row(value, "gauge",
                         {"register", "name", "byte", "word", "dword", "text", "hex", "status", "count"},
                         faults);
  if (row.Require("register") == nullptr) return;
  ImageGaugeRegister record{};
  record.number = static_cast<uint8_t>(row.Number("register", kByteRange, 0));
  if (std::ranges::count(image.gauge, record.number, &ImageGaugeRegister::number) != 0) {
    faults.Add(row.line(), Concat("gauge register ", Hex(record.number), " is given twice"));
  }
  const std::optional<Payload> payload = ReadPayload(row, IMAGE_GAUGE_BYTES, faults);
  if (!payload) return;
  record.status = payload->status;
  record.length = static_cast<uint8_t>(payload->bytes.size());
  record.count = static_cast<uint8_t>(row.Number("count", kByteRange, record.length));
  std::ranges::copy(payload->bytes, record.bytes);
  image.gauge.push_back(record);
}

void ReadCommand(const JsonValue& value, ImageBuilder& image, Faults& faults) {
  const ObjectReader row(value, "commands", {"command", "name", "data", "byte", "status"}, faults);
  if (row.Require("command") == nullptr) return;
  ImageCommand record{};
  record.command = static_cast<uint8_t>(row.Number("command", kByteRange, 0));
  if (std::ranges::count(kOwnTables, record.command) != 0) {
    faults.Add(row.line(),
               Concat("command ", Hex(record.command), " has its own part of the \"ec\" section"));
  }
  for (const JsonValue& byte : row.Array("data", IMAGE_EC_DATA)) {
    record.data[record.length++] =
        static_cast<uint8_t>(ReadNumber(byte, "data", kByteRange, faults).value_or(0));
  }
  const std::optional<ImageCell> answer = ReadAnswer(row, faults);
  if (!answer) return;
  record.value = answer->value;
  record.status = answer->status;
  for (const ImageCommand& other : image.commands) {
    if (other.command == record.command && other.length == record.length &&
        std::ranges::equal(other.data, record.data)) {
      faults.Add(row.line(), "a command with the same data is already given");
    }
  }
  image.commands.push_back(record);
}

}  // namespace

void ReadEcSection(const JsonValue& value, ImageBuilder& image, Faults& faults) {
  const ObjectReader ec(value, "ec",
                        {"unlisted", "healthy_table_version", "information", "groups", "gauge", "commands"},
                        faults);
  image.header.unlisted = ReadUnlisted(ec, faults);
  ReadInformation(ec, image, faults);
  for (const JsonValue& group : ec.Array("groups", IMAGE_GROUPS)) ReadGroup(group, image, faults);
  for (const JsonValue& row : ec.Array("gauge", IMAGE_MAX_GAUGE)) ReadGaugeRegister(row, image, faults);
  for (const JsonValue& row : ec.Array("commands", IMAGE_MAX_ROWS)) ReadCommand(row, image, faults);
}

}  // namespace scenario
