#include "registers.h"

#include <string>

#include "texts.h"

namespace scenario {
namespace {

std::vector<uint8_t> LittleEndian(uint64_t value, size_t count) {
  std::vector<uint8_t> bytes;
  for (size_t i = 0; i < count; ++i) bytes.push_back(static_cast<uint8_t>(value >> (8 * i)));
  return bytes;
}

// A text, with zeros up to "size" bytes where the row gives one.
std::optional<std::vector<uint8_t>> ReadTextBytes(const ObjectReader& row, const JsonValue& value,
                                                  size_t limit, Faults& faults) {
  const std::optional<std::string> text = ReadText(value, "text", faults);
  if (!text) return std::nullopt;
  std::vector<uint8_t> bytes(text->begin(), text->end());
  const uint64_t size = row.Number("size", {1, limit}, bytes.size());
  if (size < bytes.size()) {
    faults.Add(value.line, Concat("\"text\" has ", bytes.size(), " characters, \"size\" is ", size));
    return std::nullopt;
  }
  bytes.resize(size);
  return bytes;
}

std::optional<std::vector<uint8_t>> ReadBytes(const JsonValue& value, std::string_view form, Faults& faults) {
  if (form == "hex") return ReadHex(value, form, faults);
  const size_t count = form == "byte" ? 1 : form == "word" ? 2 : 4;
  const int bits = static_cast<int>(8 * count);
  const Range range{-(int64_t{1} << (bits - 1)), (uint64_t{1} << bits) - 1};
  const std::optional<uint64_t> number = ReadNumber(value, form, range, faults);
  if (!number) return std::nullopt;
  return LittleEndian(*number, count);
}

}  // namespace

std::optional<Payload> ReadPayload(const ObjectReader& row, size_t limit, Faults& faults) {
  const std::string_view form = row.OneOf({"byte", "word", "dword", "text", "hex", "status"}, true);
  if (form.empty()) return std::nullopt;
  const JsonValue& value = *row.Find(form);
  if (form == "status") {
    const std::optional<uint64_t> status = ReadNumber(value, form, {1, 0xFFFFFFFF}, faults);
    if (!status) return std::nullopt;
    return Payload{.bytes = {}, .status = static_cast<uint32_t>(*status)};
  }
  if (form != "text" && row.Find("size") != nullptr) {
    faults.Add(row.Find("size")->key_line, "\"size\" goes with \"text\" only");
  }
  std::optional<std::vector<uint8_t>> bytes =
      form == "text" ? ReadTextBytes(row, value, limit, faults) : ReadBytes(value, form, faults);
  if (!bytes) return std::nullopt;
  if (bytes->empty() || bytes->size() > limit) {
    faults.Add(value.line, Concat("\"", form, "\" has ", bytes->size(), " bytes; 1 to ", limit, " fit here"));
    return std::nullopt;
  }
  return Payload{.bytes = std::move(*bytes), .status = 0};
}

std::optional<ImageCell> ReadAnswer(const ObjectReader& object, Faults& faults) {
  const std::string_view form = object.OneOf({"byte", "status"}, true);
  if (form.empty()) return std::nullopt;
  const std::optional<Payload> payload = ReadPayload(object, 1, faults);
  if (!payload) return std::nullopt;
  ImageCell cell{};
  cell.status = payload->status;
  if (!payload->bytes.empty()) cell.value = payload->bytes[0];
  return cell;
}

RegisterBlock RegisterBlock::TellingOffsets() {
  RegisterBlock block(ImageCell{});
  for (size_t i = 0; i < block.cells_.size(); ++i) block.cells_[i].value = static_cast<uint8_t>(i);
  return block;
}

bool RegisterBlock::Claim(int line, uint64_t offset, size_t length, Faults& faults) {
  if (offset >= cells_.size() || length > cells_.size() - offset) {
    faults.Add(line, Concat(length, " bytes at offset ", Hex(offset), " reach beyond offset 0xff"));
    return false;
  }
  for (size_t i = offset; i < offset + length; ++i) {
    if (owner_lines_[i] != 0) {
      faults.Add(line, Concat("register ", Hex(i), " is already given at line ", owner_lines_[i]));
      return false;
    }
  }
  for (size_t i = offset; i < offset + length; ++i) owner_lines_[i] = line;
  return true;
}

void RegisterBlock::Set(int line, uint64_t offset, const ImageCell& cell, Faults& faults) {
  if (Claim(line, offset, 1, faults)) cells_[offset] = cell;
}

void RegisterBlock::Set(int line, uint64_t offset, const Payload& payload, ImageWriteAction on_write,
                        Faults& faults) {
  const size_t length = payload.status != 0 ? 1 : payload.bytes.size();
  if (!Claim(line, offset, length, faults)) return;
  for (size_t i = 0; i < length; ++i) {
    ImageCell& cell = cells_[offset + i];
    cell = ImageCell{};
    cell.status = payload.status;
    if (payload.status == 0) cell.value = payload.bytes[i];
    cell.on_write = on_write;
  }
}

RegisterBlock ReadFill(const ObjectReader& object, const ImageCell& unlisted, Faults& faults) {
  const JsonValue* fill = object.Find("fill");
  if (fill == nullptr) return RegisterBlock(unlisted);
  if (fill->kind == JsonValue::Kind::kText && fill->text == "offset") return RegisterBlock::TellingOffsets();
  ImageCell cell{};
  if (fill->kind == JsonValue::Kind::kObject) {
    const ObjectReader answer(*fill, "fill", {"byte", "status"}, faults);
    cell = ReadAnswer(answer, faults).value_or(cell);
  } else {
    cell.value = static_cast<uint8_t>(ReadNumber(*fill, "fill", kByteRange, faults).value_or(0));
  }
  return RegisterBlock(cell);
}

}  // namespace scenario
