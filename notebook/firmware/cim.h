// CIM types, and values in the form in which WMI delivers them.
#ifndef NOTEBOOK_FIRMWARE_CIM_H_
#define NOTEBOOK_FIRMWARE_CIM_H_

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace firmware {

enum class Cim : uint16_t {
  kSint16 = 2,
  kSint32 = 3,
  kReal32 = 4,
  kReal64 = 5,
  kString = 8,
  kBoolean = 11,
  kSint8 = 16,
  kUint8 = 17,
  kUint16 = 18,
  kUint32 = 19,
  kSint64 = 20,
  kUint64 = 21,
  kDatetime = 101,
  kReference = 102,
  kChar16 = 103,
};

inline constexpr int kCimArray = 0x2000;

struct CimType {
  Cim base = Cim::kString;
  bool array = false;

  int Code() const { return static_cast<int>(base) | (array ? kCimArray : 0); }
  bool operator==(const CimType&) const = default;
};

// Types of a VARIANT.
enum VariantType : uint16_t {
  kVtEmpty = 0,
  kVtNull = 1,
  kVtI2 = 2,
  kVtI4 = 3,
  kVtR4 = 4,
  kVtR8 = 5,
  kVtBstr = 8,
  kVtError = 10,
  kVtBool = 11,
  kVtUnknown = 13,
  kVtI1 = 16,
  kVtUi1 = 17,
  kVtUi2 = 18,
  kVtUi4 = 19,
  kVtI8 = 20,
  kVtUi8 = 21,
  kVtInt = 22,
  kVtUint = 23,
  kVtArray = 0x2000,
};

// The content of a VARIANT.
struct Datum {
  uint16_t vt = kVtNull;
  uint64_t bits = 0;                  // integers (sign-extended), 0 or 1 for truth values, reals as a double
  std::optional<std::string> text{};  // kVtBstr, in UTF-8; a null pointer without it
  bool has_items = false;             // kVtArray; a null pointer otherwise
  std::vector<Datum> items{};         // all of the array's type
  int32_t lower_bound = 0;

  static Datum Integer(uint16_t vt, int64_t value) { return {.vt = vt, .bits = static_cast<uint64_t>(value)}; }
  static Datum Text(std::string text) { return {.vt = kVtBstr, .text = std::move(text)}; }
  static Datum Real(uint16_t vt, double value);
  double AsReal() const;
  bool operator==(const Datum&) const = default;
};

// "uint8", "string[]", ...
std::optional<CimType> CimTypeFromName(std::string_view name);
std::string CimTypeName(CimType type);

// The VARIANT type in which values of the type are delivered.
uint16_t DeliveredAs(CimType type);

// Smallest and largest value of an integer type; nothing for others.
struct IntegerRange {
  int64_t low;
  uint64_t high;
};
std::optional<IntegerRange> RangeOf(Cim base);

// An integer of that type in the form delivered: up to 32 bits as a number, 64 bits as a decimal text.
Datum DeliveredInteger(Cim base, bool negative, uint64_t magnitude);

// What becomes of a value that is put into a property of the type, or a result code. Decimal text becomes a number
// when it fits the type; what cannot be turned into the type is a mismatch.
std::expected<Datum, uint32_t> Convert(const Datum& value, CimType type);

// The number of an integer or decimal text in the form delivered, cut to the type's width; nothing for others.
std::optional<uint64_t> UnsignedOf(const Datum& value, Cim base);

}  // namespace firmware

#endif  // NOTEBOOK_FIRMWARE_CIM_H_
