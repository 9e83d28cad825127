#include "client/call.h"

#include <array>
#include <cassert>
#include <vector>

namespace vexahealth {
namespace {

// Takes the text up to its terminator, which must stand within the first `capacity` characters.
template <typename Text, typename Decoder>
void TakeText(Text characters, size_t capacity, Decoder decode, Answer& answer) {
  const size_t length = characters.find(typename Text::value_type{});
  if (length >= capacity) {
    answer.form = Answer::Form::kUnterminated;
    return;
  }
  answer.form = Answer::Form::kText;
  answer.text = decode(characters.substr(0, length));
}

Answer CallTextBuffer(const Row& row, TextBufferExport fill, TextDecoder decode) {
  assert(row.text_capacity <= VEXA_TEXT_CAPACITY);
  // Larger than what the export asks for, and ended: a library that writes too much is found out, not suffered.
  std::array<char, VEXA_TEXT_CAPACITY + 1> buffer{};
  Answer answer;
  answer.number = fill(buffer.data());
  TakeText(std::string_view(buffer.data(), buffer.size()), row.text_capacity, decode, answer);
  return answer;
}

Answer CallTextByValue(TextByValueExport fetch, TextDecoder decode) {
  const VexaText text = fetch();
  Answer answer;
  TakeText(std::string_view(text.text, sizeof text.text), sizeof text.text, decode, answer);
  return answer;
}

Answer CallPath(const Row& row, ComPathExport fill, WideDecoder decode) {
  assert(row.text_capacity <= VEXA_APP_PATH_CAPACITY);
  std::array<wchar_t, 2 * VEXA_APP_PATH_CAPACITY + 1> buffer{};  // as above
  Answer answer;
  answer.number = fill(buffer.data(), kInitializeCom);
  TakeText(std::wstring_view(buffer.data(), buffer.size()), row.text_capacity, decode, answer);
  return answer;
}

Answer CallWideBuffer(const Row& row, WideBufferExport fill, WideDecoder decode) {
  std::vector<wchar_t> buffer(2 * row.text_capacity + 1);  // as above
  fill(buffer.data());
  Answer answer;
  TakeText(std::wstring_view(buffer.data(), buffer.size()), row.text_capacity, decode, answer);
  return answer;
}

// The library never cuts such a text: the first call asks for its length. What is plugged in between the two calls
// finds room too.
Answer CallComText(ComPathExport fill, WideDecoder decode) {
  constexpr size_t kRoom = 4096;
  Answer answer;
  const size_t length = fill(nullptr, kInitializeCom);
  std::vector<wchar_t> buffer(length + kRoom);
  if (length > 0) answer.number = fill(buffer.data(), kInitializeCom);
  TakeText(std::wstring_view(buffer.data(), buffer.size()), buffer.size(), decode, answer);
  return answer;
}

}  // namespace

Answer Call(const Row& row, AnyExport function, TextDecoder decode, WideDecoder decode_wide) {
  if (function == nullptr) return {};
  Answer answer{.form = Answer::Form::kNumber, .number = 0, .text = {}};
  switch (row.signature) {
    case Signature::kNumber: answer.number = reinterpret_cast<NumberExport>(function)(); break;
    case Signature::kWideBuffer: return CallWideBuffer(row, reinterpret_cast<WideBufferExport>(function), decode_wide);
    case Signature::kComNumber: answer.number = reinterpret_cast<ComNumberExport>(function)(kInitializeCom); break;
    case Signature::kTextBuffer: return CallTextBuffer(row, reinterpret_cast<TextBufferExport>(function), decode);
    case Signature::kTextByValue: return CallTextByValue(reinterpret_cast<TextByValueExport>(function), decode);
    case Signature::kOwn: return {};
    case Signature::kComPath:
      if (row.kind != Kind::kPath) return CallComText(reinterpret_cast<ComPathExport>(function), decode_wide);
      return CallPath(row, reinterpret_cast<ComPathExport>(function), decode_wide);
  }
  return answer;
}

}  // namespace vexahealth
