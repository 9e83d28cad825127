// What each reader takes from each type of VARIANT: one place per reader.
#ifndef VEXA_WMI_VARIANT_VALUE_H_
#define VEXA_WMI_VARIANT_VALUE_H_

#include <windows.h>

#include <oleauto.h>

#include <cstdint>
#include <optional>
#include <string>

namespace vexa {

// For method answers: the 32-bit member of an integer type of any width and sign, whose bytes beyond the value are
// zero; of a 64-bit type the low half. Nothing for every other type, arrays included.
[[nodiscard]] std::optional<int32_t> IntegerMember(const VARIANT& value) noexcept;

// For numeric properties: integers of all widths and signs and booleans (0 or 1), and texts that are a decimal number
// as a whole, since 64-bit properties arrive as text; all cut to 32 bits. Of an array its first element. Nothing for
// reals, dates, other texts, null, empty.
[[nodiscard]] std::optional<uint32_t> NumberOf(const VARIANT& value) noexcept;

// For text properties: texts only. Nothing for every other type; a null text is empty.
[[nodiscard]] std::optional<std::wstring> TextOf(const VARIANT& value);

// For texts that come as arrays of character codes: the characters up to the first zero. Texts as they are; nothing for
// every other type, nor for an array with an element that is no integer.
[[nodiscard]] std::optional<std::wstring> CharactersOf(const VARIANT& value);

// For properties of any type: texts as they are (64-bit integers, dates), integers in decimal, booleans as "true" and
// "false", reals with 7 (32-bit) or 15 significant digits, arrays as their elements joined with ";". Nothing for null,
// empty, and types that WMI does not have.
[[nodiscard]] std::optional<std::wstring> ConvertedTextOf(const VARIANT& value);

// One element of an array of texts; nothing for every other type and beyond the array's end.
[[nodiscard]] std::optional<std::wstring> TextElement(const VARIANT& value, long index);

}  // namespace vexa

#endif  // VEXA_WMI_VARIANT_VALUE_H_
