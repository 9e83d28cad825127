#include "cim.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <limits>

#include "names.h"
#include "results.h"

namespace firmware {
namespace {

struct TypeRow {
  Cim base;
  std::string_view name;
  uint16_t delivered;
  int bits;  // of an integer type; else 0
  bool is_signed;
};

constexpr TypeRow kTypes[] = {
    {Cim::kSint8, "sint8", kVtI2, 8, true},          {Cim::kUint8, "uint8", kVtUi1, 8, false},
    {Cim::kSint16, "sint16", kVtI2, 16, true},       {Cim::kUint16, "uint16", kVtI4, 16, false},
    {Cim::kSint32, "sint32", kVtI4, 32, true},       {Cim::kUint32, "uint32", kVtI4, 32, false},
    {Cim::kSint64, "sint64", kVtBstr, 64, true},     {Cim::kUint64, "uint64", kVtBstr, 64, false},
    {Cim::kReal32, "real32", kVtR4, 0, true},        {Cim::kReal64, "real64", kVtR8, 0, true},
    {Cim::kBoolean, "boolean", kVtBool, 0, false},   {Cim::kString, "string", kVtBstr, 0, false},
    {Cim::kDatetime, "datetime", kVtBstr, 0, false}, {Cim::kReference, "ref", kVtBstr, 0, false},
    {Cim::kChar16, "char16", kVtI2, 16, false},
};

const TypeRow& RowOf(Cim base) { return *std::ranges::find(kTypes, base, &TypeRow::base); }

bool Fits(IntegerRange range, bool negative, uint64_t magnitude) {
  if (!negative) return magnitude <= range.high;
  return range.low < 0 && magnitude <= 0 - static_cast<uint64_t>(range.low);
}

struct Number {
  bool negative;
  uint64_t magnitude;
};

std::optional<Number> NumberFromText(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  uint64_t magnitude = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, magnitude);
  if (error != std::errc() || stop != end) return std::nullopt;
  return Number{negative && magnitude != 0, magnitude};
}

Number NumberFromBits(uint64_t bits, bool is_signed) {
  const bool negative = is_signed && static_cast<int64_t>(bits) < 0;
  return {negative, negative ? 0 - bits : bits};
}

std::optional<Number> NumberOf(const Datum& value) {
  switch (value.vt) {
    case kVtI1:
    case kVtI2:
    case kVtI4:
    case kVtI8:
    case kVtInt: return NumberFromBits(value.bits, true);
    case kVtUi1:
    case kVtUi2:
    case kVtUi4:
    case kVtUi8:
    case kVtUint: return NumberFromBits(value.bits, false);
    case kVtBool: return Number{value.bits != 0, value.bits != 0 ? 1u : 0u};
    case kVtBstr: return value.text ? NumberFromText(*value.text) : std::nullopt;
    default: return std::nullopt;
  }
}

std::expected<Datum, uint32_t> ToInteger(const Datum& value, Cim base) {
  std::optional<Number> number = NumberOf(value);
  if (!number) return std::unexpected(kTypeMismatch);
  // A 32-bit VARIANT carries unsigned values too: its bits count.
  if (value.vt == kVtI4 && base == Cim::kUint32) number = Number{false, value.bits & 0xFFFFFFFF};
  if (!Fits(*RangeOf(base), number->negative, number->magnitude)) return std::unexpected(kTypeMismatch);
  return DeliveredInteger(base, number->negative, number->magnitude);
}

std::expected<Datum, uint32_t> ToReal(const Datum& value, Cim base) {
  const uint16_t vt = RowOf(base).delivered;
  if (value.vt == kVtR4 || value.vt == kVtR8) return Datum::Real(vt, value.AsReal());
  if (const std::optional<Number> number = NumberOf(value); number && value.vt != kVtBool) {
    const auto magnitude = static_cast<double>(number->magnitude);
    return Datum::Real(vt, number->negative ? -magnitude : magnitude);
  }
  return std::unexpected(kTypeMismatch);
}

std::expected<Datum, uint32_t> ToBoolean(const Datum& value) {
  if (value.vt == kVtBstr && value.text) {
    if (SameName(*value.text, "true")) return Datum::Integer(kVtBool, 1);
    if (SameName(*value.text, "false")) return Datum::Integer(kVtBool, 0);
  }
  const std::optional<Number> number = NumberOf(value);
  if (!number) return std::unexpected(kTypeMismatch);
  return Datum::Integer(kVtBool, number->magnitude != 0 ? 1 : 0);
}

std::expected<Datum, uint32_t> ToText(const Datum& value) {
  if (value.vt == kVtBstr && value.text) return value;
  const std::optional<Number> number = NumberOf(value);
  if (!number || value.vt == kVtBool) return std::unexpected(kTypeMismatch);
  return Datum::Text((number->negative ? "-" : "") + std::to_string(number->magnitude));
}

std::expected<Datum, uint32_t> ToArray(const Datum& value, CimType type) {
  if ((value.vt & kVtArray) == 0 || !value.has_items) return std::unexpected(kTypeMismatch);
  Datum array{.vt = DeliveredAs(type), .has_items = true};
  for (const Datum& item : value.items) {
    std::expected<Datum, uint32_t> converted = Convert(item, {type.base, false});
    if (!converted) return converted;
    array.items.push_back(*std::move(converted));
  }
  return array;
}

}  // namespace

Datum Datum::Real(uint16_t vt, double value) { return {.vt = vt, .bits = std::bit_cast<uint64_t>(value)}; }

double Datum::AsReal() const { return std::bit_cast<double>(bits); }

std::optional<CimType> CimTypeFromName(std::string_view name) {
  CimType type;
  if (name.ends_with("[]")) {
    type.array = true;
    name.remove_suffix(2);
  }
  const auto row = std::ranges::find(kTypes, name, &TypeRow::name);
  if (row == std::end(kTypes)) return std::nullopt;
  type.base = row->base;
  return type;
}

std::string CimTypeName(CimType type) { return std::string(RowOf(type.base).name) + (type.array ? "[]" : ""); }

uint16_t DeliveredAs(CimType type) {
  return static_cast<uint16_t>(RowOf(type.base).delivered | (type.array ? kVtArray : 0));
}

std::optional<IntegerRange> RangeOf(Cim base) {
  const TypeRow& row = RowOf(base);
  if (row.bits == 0) return std::nullopt;
  const uint64_t all = std::numeric_limits<uint64_t>::max() >> (64 - row.bits);
  if (!row.is_signed) return IntegerRange{0, all};
  const uint64_t high = all >> 1;
  return IntegerRange{-static_cast<int64_t>(high) - 1, high};
}

Datum DeliveredInteger(Cim base, bool negative, uint64_t magnitude) {
  const TypeRow& row = RowOf(base);
  if (row.delivered == kVtBstr) return Datum::Text((negative ? "-" : "") + std::to_string(magnitude));
  uint64_t bits = negative ? 0 - magnitude : magnitude;
  if (row.delivered == kVtI4) bits = static_cast<uint64_t>(int64_t{static_cast<int32_t>(bits)});
  if (row.delivered == kVtI2) bits = static_cast<uint64_t>(int64_t{static_cast<int16_t>(bits)});
  return {.vt = row.delivered, .bits = bits};
}

std::expected<Datum, uint32_t> Convert(const Datum& value, CimType type) {
  if (value.vt == kVtNull) return value;
  if (type.array) return ToArray(value, type);
  if (RangeOf(type.base)) return ToInteger(value, type.base);
  switch (type.base) {
    case Cim::kReal32:
    case Cim::kReal64: return ToReal(value, type.base);
    case Cim::kBoolean: return ToBoolean(value);
    default: return ToText(value);
  }
}

std::optional<uint64_t> UnsignedOf(const Datum& value, Cim base) {
  const std::optional<Number> number = NumberOf(value);
  const std::optional<IntegerRange> range = RangeOf(base);
  if (!number || !range) return std::nullopt;
  const uint64_t bits = number->negative ? 0 - number->magnitude : number->magnitude;
  return bits & (range->low < 0 ? 2 * range->high + 1 : range->high);
}

}  // namespace firmware
