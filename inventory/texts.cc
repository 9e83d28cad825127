#include "inventory/texts.h"

#include <algorithm>

namespace vexa {
namespace {

constexpr uint32_t kFullLoad = 100;

bool IsBlank(wchar_t c) { return c <= L' '; }

}  // namespace

std::vector<std::wstring_view> Pieces(std::wstring_view text, wchar_t separator) {
  std::vector<std::wstring_view> pieces;
  while (!text.empty()) {
    const size_t end = std::min(text.find(separator), text.size());
    pieces.push_back(text.substr(0, end));
    if (end == text.size()) break;
    text.remove_prefix(end + 1);
    if (text.empty()) pieces.emplace_back();
  }
  return pieces;
}

std::wstring_view Trimmed(std::wstring_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

std::wstring QueryLiteral(std::wstring_view text) {
  std::wstring literal;
  for (const wchar_t c : text) {
    if (c == L'\\' || c == L'\'' || c == L'"') literal += L'\\';
    literal += c;
  }
  return literal;
}

std::wstring QueryPattern(std::wstring_view text) {
  std::wstring pattern;
  for (const wchar_t c : QueryLiteral(text)) {
    if (c == L'%' || c == L'_' || c == L'[') {
      pattern += {L'[', c, L']'};
    } else {
      pattern += c;
    }
  }
  return pattern;
}

std::wstring CounterName(std::wstring_view adapter) {
  std::wstring name(adapter);
  std::ranges::transform(name, name.begin(), [](wchar_t c) {
    switch (c) {
      case L'(': return L'[';
      case L')': return L']';
      case L'#':
      case L'/':
      case L'\\': return L'_';
      default: return c;
    }
  });
  return name;
}

uint32_t SumOfLoads(std::wstring_view engines) {
  uint32_t sum = 0;
  for (const std::wstring_view engine : Pieces(engines, L';')) {
    uint32_t load = 0;
    for (const wchar_t c : engine) {
      if (c < L'0' || c > L'9') break;
      load = std::min(load * 10 + static_cast<uint32_t>(c - L'0'), kFullLoad);
    }
    sum = std::min(sum + load, kFullLoad);
  }
  return sum;
}

const wchar_t* ChassisForm(uint32_t type) {
  switch (type) {
    case 10:
    case 30:
    case 31:
    case 32: return L"Notebook";
    case 3:
    case 13:
    case 35: return L"Desktop";
    default: return L"unknown";
  }
}

}  // namespace vexa
