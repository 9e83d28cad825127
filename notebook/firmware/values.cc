// Values of properties, as scenarios write them.
#include <cmath>
#include <cstring>

#include "scenario/object_reader.h"
#include "scenario/texts.h"
#include "section.h"

namespace firmware {
namespace {

using scenario::Concat;
using scenario::Expect;
using scenario::ObjectReader;

constexpr size_t kMaxItems = 4096;
constexpr size_t kDatetimeLength = 25;

std::optional<double> ReadReal(const JsonValue& value, std::string_view name, Faults& faults) {
  if (value.kind == JsonValue::Kind::kFraction) return value.real;
  if (!Expect(value, name, JsonValue::Kind::kInteger, faults)) return std::nullopt;
  const auto magnitude = static_cast<double>(value.magnitude);
  return value.negative ? -magnitude : magnitude;
}

Datum ReadScalar(const JsonValue& value, std::string_view name, Cim base, Faults& faults) {
  if (const std::optional<IntegerRange> range = RangeOf(base)) {
    const auto number = scenario::ReadNumber(value, name, {range->low, range->high}, faults).value_or(0);
    const bool negative = range->low < 0 && static_cast<int64_t>(number) < 0;
    return DeliveredInteger(base, negative, negative ? 0 - number : number);
  }
  if (base == Cim::kReal32 || base == Cim::kReal64) {
    return Datum::Real(DeliveredAs({base, false}), ReadReal(value, name, faults).value_or(0));
  }
  if (base == Cim::kBoolean) {
    Expect(value, name, JsonValue::Kind::kBoolean, faults);
    return Datum::Integer(kVtBool, value.boolean ? 1 : 0);
  }
  if (Expect(value, name, JsonValue::Kind::kText, faults) && base == Cim::kDatetime &&
      value.text.size() != kDatetimeLength) {
    faults.Add(value.line,
               Concat("\"", name, "\" must have ", kDatetimeLength, " characters, yyyymmddHHMMSS.mmmmmm+UUU"));
  }
  return Datum::Text(value.text);
}

// How a raw value of a VARIANT type is written.
enum class RawForm { kNone, kNumber, kReal, kText, kUnknown };

RawForm FormOf(uint16_t vt) {
  switch (vt) {
    case kVtEmpty:
    case kVtNull:
    case kVtUnknown: return RawForm::kNone;
    case kVtR4:
    case kVtR8: return RawForm::kReal;
    case kVtBstr: return RawForm::kText;
    case kVtI1:
    case kVtI2:
    case kVtI4:
    case kVtI8:
    case kVtUi1:
    case kVtUi2:
    case kVtUi4:
    case kVtUi8:
    case kVtInt:
    case kVtUint:
    case kVtBool:
    case kVtError: return RawForm::kNumber;
    default: return RawForm::kUnknown;
  }
}

Datum ReadRawScalar(const JsonValue& value, uint16_t vt, Faults& faults) {
  Datum datum{.vt = vt};
  switch (FormOf(vt)) {
    case RawForm::kNumber: datum.bits = ReadNumber(value, "value", scenario::kQwordRange, faults).value_or(0); break;
    case RawForm::kReal: return Datum::Real(vt, ReadReal(value, "value", faults).value_or(0));
    case RawForm::kText:
      if (Expect(value, "value", JsonValue::Kind::kText, faults)) datum.text = value.text;
      break;
    default: faults.Add(value.line, Concat("a VARIANT of type ", vt, " has no \"value\""));
  }
  return datum;
}

}  // namespace

Datum ReadRawValue(const JsonValue& value, Faults& faults) {
  const ObjectReader raw(value, "raw", {"vt", "value", "items", "lower_bound"}, faults);
  const auto vt = static_cast<uint16_t>(raw.RequireNumber("vt", {0, 0xFFFF}));
  const bool is_array = (vt & kVtArray) != 0;
  const auto element = static_cast<uint16_t>(vt & ~kVtArray);
  const RawForm form = FormOf(element);
  if (form == RawForm::kUnknown || (is_array && form == RawForm::kNone)) {
    faults.Add(raw.line(), Concat("VARIANT type ", vt, " cannot be made"));
    return {};
  }
  if (!is_array) {
    for (std::string_view key : {"items", "lower_bound"}) {
      if (raw.Find(key) != nullptr) faults.Add(raw.line(), Concat("\"", key, "\" goes with arrays only"));
    }
    const JsonValue* scalar = raw.Find("value");
    return scalar != nullptr ? ReadRawScalar(*scalar, vt, faults) : Datum{.vt = vt};
  }
  Datum array{.vt = vt, .has_items = raw.Find("items") != nullptr};
  array.lower_bound = static_cast<int32_t>(raw.Number("lower_bound", {INT16_MIN, INT16_MAX}, 0));
  if (raw.Find("value") != nullptr) faults.Add(raw.line(), "an array has \"items\", not \"value\"");
  for (const JsonValue& item : raw.Array("items", kMaxItems)) {
    array.items.push_back(ReadRawScalar(item, element, faults));
  }
  return array;
}

Datum ReadValue(const JsonValue& value, std::string_view name, CimType type, Faults& faults) {
  if (value.kind == JsonValue::Kind::kNull) return {};
  if (value.kind == JsonValue::Kind::kObject) return ReadRawValue(value, faults);
  if (!type.array) return ReadScalar(value, name, type.base, faults);
  Datum array{.vt = DeliveredAs(type), .has_items = true};
  for (const JsonValue& item : scenario::ReadArray(value, name, kMaxItems, faults)) {
    array.items.push_back(ReadScalar(item, name, type.base, faults));
  }
  return array;
}

}  // namespace firmware
