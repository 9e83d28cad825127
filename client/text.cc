#include "client/text.h"

#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <span>

namespace vexahealth {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

struct Range {
  char32_t first;
  char32_t last;
};

// Formatting characters that show nothing by themselves: they would hide or reorder what stands around them.
constexpr Range kInvisible[] = {
    {0x00AD, 0x00AD}, {0x061C, 0x061C}, {0x115F, 0x1160},   {0x17B4, 0x17B5},   {0x180B, 0x180F},  {0x200B, 0x200F},
    {0x2028, 0x202E}, {0x2060, 0x206F}, {0x3164, 0x3164},   {0xFE00, 0xFE0F},   {0xFEFF, 0xFEFF},  {0xFFA0, 0xFFA0},
    {0xFFF0, 0xFFFB}, {0xFFFE, 0xFFFF}, {0x1BCA0, 0x1BCA3}, {0x1D173, 0x1D17A}, {0xE0000, 0xE0FFF}};

constexpr Range kCombining[] = {{0x0300, 0x036F}, {0x0483, 0x0489}, {0x0591, 0x05BD}, {0x0610, 0x061A},
                                {0x064B, 0x065F}, {0x0E31, 0x0E31}, {0x0E34, 0x0E3A}, {0x0E47, 0x0E4E},
                                {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF}, {0x20D0, 0x20F0}, {0x3099, 0x309A},
                                {0xFE20, 0xFE2F}};

constexpr Range kWide[] = {{0x1100, 0x115E},   {0x2E80, 0x303E},   {0x3041, 0x33FF},   {0x3400, 0x4DBF},
                           {0x4E00, 0x9FFF},   {0xA000, 0xA4CF},   {0xA960, 0xA97C},   {0xAC00, 0xD7A3},
                           {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},   {0xFFE0, 0xFFE6},
                           {0x1F300, 0x1F64F}, {0x1F680, 0x1F6FF}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD}};

bool In(std::span<const Range> ranges, char32_t character) {
  return std::ranges::any_of(
      ranges, [character](const Range& range) { return character >= range.first && character <= range.last; });
}

size_t WidthOf(char32_t character) { return In(kCombining, character) ? 0 : In(kWide, character) ? 2 : 1; }

size_t SequenceLength(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  return lead >= 0xF0 && lead <= 0xF4 ? 4 : 0;
}

// Takes one character from the front of a non-empty text; one byte and U+FFFD where the bytes are not UTF-8.
char32_t TakeCharacter(std::string_view& text) {
  const auto lead = static_cast<unsigned char>(text.front());
  const size_t length = SequenceLength(lead);
  char32_t character = length == 1 ? lead : lead & (0x7Fu >> length);
  bool good = length != 0 && length <= text.size();
  for (size_t i = 1; good && i < length; ++i) {
    const auto next = static_cast<unsigned char>(text[i]);
    good = (next & 0xC0) == 0x80;
    character = character << 6 | (next & 0x3F);
  }
  constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  good = good && character >= kSmallest[length] && character <= 0x10FFFF && (character < 0xD800 || character > 0xDFFF);
  text.remove_prefix(good ? length : 1);
  return good ? character : kReplacement;
}

void AppendCharacter(std::string& text, char32_t character) {
  if (character < 0x80) {
    text += static_cast<char>(character);
    return;
  }
  const int trailing = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
  constexpr unsigned kLead[] = {0, 0xC0, 0xE0, 0xF0};
  text += static_cast<char>(kLead[trailing] | character >> (6 * trailing));
  for (int i = trailing - 1; i >= 0; --i) text += static_cast<char>(0x80 | (character >> (6 * i) & 0x3F));
}

}  // namespace

std::string Printf(const char* format, ...) {
  char text[256];
  va_list arguments;
  va_start(arguments, format);
  const int length = std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  return {text, std::clamp<size_t>(length < 0 ? 0 : static_cast<size_t>(length), 0, sizeof text - 1)};
}

std::string WellFormedUtf8(std::string_view text) {
  std::string result;
  while (!text.empty()) AppendCharacter(result, TakeCharacter(text));
  return result;
}

std::string EscapeForTerminal(std::string_view text, Backslash backslash) {
  std::string result;
  while (!text.empty()) {
    const char32_t character = TakeCharacter(text);
    if (character == '\\' && backslash == Backslash::kDouble) {
      result += "\\\\";
    } else if (character < 0x20 || (character >= 0x7F && character <= 0x9F)) {
      result += Printf("\\x%02x", static_cast<unsigned>(character));
    } else if (In(kInvisible, character)) {
      result += Printf("\\u{%x}", static_cast<unsigned>(character));
    } else {
      AppendCharacter(result, character);
    }
  }
  return result;
}

size_t DisplayWidth(std::string_view text) {
  size_t width = 0;
  while (!text.empty()) width += WidthOf(TakeCharacter(text));
  return width;
}

std::string_view FirstColumns(std::string_view text, size_t columns) {
  std::string_view rest = text;
  for (size_t left = columns; !rest.empty();) {
    const size_t place = text.size() - rest.size();
    const size_t width = WidthOf(TakeCharacter(rest));
    if (width > left) return text.substr(0, place);
    left -= width;
  }
  return text;
}

}  // namespace vexahealth
