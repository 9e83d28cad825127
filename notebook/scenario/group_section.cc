// One group of registers: plain registers, lists of like items behind an index register, and the handshake.
#include <algorithm>
#include <string>

#include "registers.h"
#include "sections.h"
#include "texts.h"

namespace scenario {
namespace {

void ReadRegister(const JsonValue& value, RegisterBlock& block, Faults& faults) {
  const ObjectReader row(
      value, "registers",
      {"offset", "name", "byte", "word", "dword", "text", "size", "hex", "status", "writable", "clears"},
      faults);
  if (row.Require("offset") == nullptr) return;
  const uint64_t offset = row.Number("offset", kByteRange, 0);
  if (row.Find("clears") != nullptr) {
    ImageCell cell{};
    cell.on_write = kWriteClear;
    cell.target = static_cast<uint8_t>(row.Number("clears", kByteRange, 0));
    row.OneOf({"clears", "byte", "word", "dword", "text", "hex", "status", "writable"}, true);
    block.Set(row.line(), offset, cell, faults);
    return;
  }
  const ImageWriteAction on_write = row.Boolean("writable", false) ? kWriteStored : kWriteIgnored;
  const std::optional<Payload> payload = ReadPayload(row, IMAGE_BLOCK_CELLS, faults);
  if (payload) block.Set(row.line(), offset, *payload, on_write, faults);
}

// One byte of each item: its offset in the group, and whether it can be written.
struct Column {
  uint8_t offset;
  bool writable;
  bool operator==(const Column&) const = default;
};

// The values of one item in the order of its columns.
struct Item {
  std::vector<Column> columns;
  std::vector<uint8_t> values;
};

Item ReadItem(const JsonValue& value, Faults& faults) {
  Item item;
  for (const JsonValue& entry : ReadArray(value, "items", IMAGE_BLOCK_CELLS, faults)) {
    const ObjectReader row(entry, "items",
                           {"offset", "name", "byte", "word", "dword", "text", "size", "hex", "writable"},
                           faults);
    const uint64_t offset = row.RequireNumber("offset", kByteRange);
    const std::optional<Payload> payload = ReadPayload(row, IMAGE_BLOCK_CELLS - offset, faults);
    if (!payload) continue;
    const bool writable = row.Boolean("writable", false);
    for (size_t i = 0; i < payload->bytes.size(); ++i) {
      item.columns.push_back({static_cast<uint8_t>(offset + i), writable});
      item.values.push_back(payload->bytes[i]);
    }
  }
  return item;
}

// All items, stored one after the other; the columns of the first one are those of all.
Item ReadItems(const std::vector<JsonValue>& items, RegisterBlock& block, Faults& faults) {
  Item all;
  for (const JsonValue& value : items) {
    const Item item = ReadItem(value, faults);
    if (&value == &items.front()) {
      all.columns = item.columns;
      for (const Column& column : all.columns) block.Claim(value.line, column.offset, 1, faults);
    } else if (item.columns != all.columns) {
      faults.Add(value.line, "every item of a list must give the same registers in the same order");
    }
    all.values.insert(all.values.end(), item.values.begin(), item.values.end());
  }
  return all;
}

// Binds the registers of list `number` to the columns of its items.
void BindColumns(const std::vector<Column>& columns, uint8_t number, RegisterBlock& block) {
  ImageCell cell{};
  cell.on_read = kReadItem;
  cell.target = number;
  for (const Column& column : columns) {
    cell.on_write = static_cast<uint8_t>(column.writable ? kWriteStored : kWriteIgnored);
    block.Bind(column.offset, cell);
    ++cell.value;
  }
}

void ReadIndexAndCount(const ObjectReader& row, uint8_t number, size_t items, RegisterBlock& block,
                       Faults& faults) {
  ImageCell index{};
  index.on_read = kReadSelected;
  index.on_write = kWriteSelect;
  index.target = number;
  block.Set(row.line(), row.RequireNumber("index", kByteRange), index, faults);
  if (row.Find("count") == nullptr) return;
  ImageCell count{};
  count.value = static_cast<uint8_t>(items);
  block.Set(row.line(), row.Number("count", kByteRange, 0), count, faults);
}

void ReadList(const JsonValue& value, RegisterBlock& block, ImageBuilder& image, Faults& faults) {
  const ObjectReader row(value, "lists", {"name", "index", "count", "items"}, faults);
  if (row.Require("items") == nullptr) return;
  const std::vector<JsonValue>& items = row.Array("items", 255);
  const auto number = static_cast<uint8_t>(image.lists.size());
  ReadIndexAndCount(row, number, items.size(), block, faults);
  const Item all = ReadItems(items, block, faults);
  if (image.lists.size() >= IMAGE_MAX_LISTS ||
      image.list_values.size() + all.values.size() > IMAGE_MAX_LIST_VALUES) {
    faults.Add(row.line(), Concat("the scenario has more than ", IMAGE_MAX_LISTS, " lists or ",
                                  IMAGE_MAX_LIST_VALUES, " bytes in their items"));
    return;
  }
  BindColumns(all.columns, number, block);
  ImageList list{};
  list.first_value = static_cast<uint32_t>(image.list_values.size());
  list.items = static_cast<uint8_t>(items.size());
  list.columns = static_cast<uint8_t>(all.columns.size());
  image.lists.push_back(list);
  image.list_values.insert(image.list_values.end(), all.values.begin(), all.values.end());
}

uint8_t ReadReadyOnPoll(const ObjectReader& row, Faults& faults) {
  const JsonValue* value = row.Find("ready_on_poll");
  if (value == nullptr) return 1;
  if (value->kind == JsonValue::Kind::kText && value->text == "never") return 0;
  return static_cast<uint8_t>(ReadNumber(*value, "ready_on_poll", {1, 255}, faults).value_or(0));
}

uint8_t ReadHandshakeFlags(const ObjectReader& row) {
  int flags = 0;
  if (row.Boolean("precharge_timeout", false)) flags |= kHandshakePrechargeTimeout;
  if (row.Boolean("under_way", false)) flags |= kHandshakeUnderWay;
  if (row.Boolean("shows_busy", true)) flags |= kHandshakeShowsBusy;
  return static_cast<uint8_t>(flags);
}

void ReadHandshake(const JsonValue& value, RegisterBlock& block, ImageBuilder& image, Faults& faults) {
  const ObjectReader row(value, "handshake",
                         {"request", "request_value", "status", "data", "hex", "ready_on_poll", "shows_busy",
                          "under_way", "precharge_timeout"},
                         faults);
  const JsonValue* hex = row.Require("hex");
  const std::optional<std::vector<uint8_t>> data =
      hex != nullptr ? ReadHex(*hex, "hex", faults) : std::nullopt;
  if (!data) return;
  ImageHandshake& handshake = image.header.handshake;
  if (data->size() != IMAGE_HANDSHAKE_BYTES) {
    faults.Add(hex->line, Concat("\"hex\" must hold ", IMAGE_HANDSHAKE_BYTES, " bytes, not ", data->size()));
    return;
  }
  std::ranges::copy(*data, handshake.data);
  handshake.request_value = static_cast<uint8_t>(row.Number("request_value", kByteRange, 0x10));
  handshake.ready_on_poll = ReadReadyOnPoll(row, faults);
  handshake.flags = ReadHandshakeFlags(row);
  ImageCell cell{};
  cell.on_write = kWriteRequest;
  block.Set(row.line(), row.Number("request", kByteRange, 0x5A), cell, faults);
  cell = {};
  cell.on_read = kReadHandshake;
  block.Set(row.line(), row.Number("status", kByteRange, 0x5B), cell, faults);
  const uint64_t first = row.Number("data", kByteRange, 0x60);
  if (!block.Claim(row.line(), first, IMAGE_HANDSHAKE_BYTES, faults)) return;
  cell = {};
  cell.on_read = kReadHandshakeData;
  for (; cell.value < IMAGE_HANDSHAKE_BYTES; ++cell.value) {
    block.Bind(static_cast<uint8_t>(first + cell.value), cell);
  }
}

// There is one handshake in a notebook; a second one would share its state.
void ReadOnlyHandshake(const JsonValue& value, RegisterBlock& block, ImageBuilder& image, Faults& faults) {
  if (image.handshake_line != 0) {
    faults.Add(value.line, Concat("the handshake is already given at line ", image.handshake_line));
    return;
  }
  image.handshake_line = value.line;
  ReadHandshake(value, block, image, faults);
}

}  // namespace

void ReadGroup(const JsonValue& value, ImageBuilder& image, Faults& faults) {
  const ObjectReader group(value, "groups", {"group", "name", "fill", "registers", "lists", "handshake"},
                           faults);
  if (group.Require("group") == nullptr) return;
  const uint64_t number = group.Number("group", {0, IMAGE_GROUPS - 1}, 0);
  RegisterBlock block = ReadFill(group, image.header.unlisted, faults);
  for (const JsonValue& row : group.Array("registers", IMAGE_BLOCK_CELLS)) ReadRegister(row, block, faults);
  for (const JsonValue& list : group.Array("lists", IMAGE_MAX_LISTS)) ReadList(list, block, image, faults);
  if (const JsonValue* handshake = group.Find("handshake"))
    ReadOnlyHandshake(*handshake, block, image, faults);
  uint8_t& slot = image.header.group_blocks[number];
  if (slot != IMAGE_NO_BLOCK) {
    faults.Add(group.line(), Concat("group ", Hex(number), " is already given"));
    return;
  }
  slot = static_cast<uint8_t>(image.blocks.size());
  image.blocks.push_back(block.cells());
}

}  // namespace scenario
