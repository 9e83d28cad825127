// What the inventory makes of texts and numbers, and the texts that it puts into queries. Pure.
#ifndef VEXA_INVENTORY_TEXTS_H_
#define VEXA_INVENTORY_TEXTS_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vexa {

// The pieces between the separators; of an empty text none.
[[nodiscard]] std::vector<std::wstring_view> Pieces(std::wstring_view text, wchar_t separator);

// Without blanks and control characters at both ends: disks pad their serial numbers.
[[nodiscard]] std::wstring_view Trimmed(std::wstring_view text);

// For a literal of a query in single quotes: stands for exactly this text.
[[nodiscard]] std::wstring QueryLiteral(std::wstring_view text);

// The same for the pattern of a "like": wildcards in the text stand for themselves.
[[nodiscard]] std::wstring QueryPattern(std::wstring_view text);

// A network adapter's name as the performance counters spell it.
[[nodiscard]] std::wstring CounterName(std::wstring_view adapter);

// The sum of "percent,name" pieces joined with ";", at most 100. Pieces without a number count nothing.
[[nodiscard]] uint32_t SumOfLoads(std::wstring_view engines);

// By SMBIOS type 3.
[[nodiscard]] const wchar_t* ChassisForm(uint32_t type);

}  // namespace vexa

#endif  // VEXA_INVENTORY_TEXTS_H_
