#include "client/plain_words.h"

namespace vexahealth {

std::string_view StatusWord(Status status) {
  switch (status) {
    case Status::kOk: return "read";
    case Status::kNoAnswer: return "no answer";
    case Status::kUnsupported: return "not offered";
    case Status::kNotPresent: return "not there";
    case Status::kNotCollected: return "not asked";
    case Status::kError: return "broken answer";
  }
  return "broken answer";
}

std::string_view StatusSentence(Status status) {
  switch (status) {
    case Status::kOk: return "The value was read.";
    case Status::kNoAnswer: return "It was asked, and the part that knows it did not answer.";
    case Status::kUnsupported: return "This library, controller or machine has no such value.";
    case Status::kNotPresent: return "What it tells about is not there, or is not in use.";
    case Status::kNotCollected: return "It was not asked.";
    case Status::kError: return "An answer came, but no value can look like it.";
  }
  return "";
}

std::string Capital(std::string_view text) {
  std::string result(text);
  if (!result.empty() && result[0] >= 'a' && result[0] <= 'z') result[0] = static_cast<char>(result[0] - 'a' + 'A');
  return result;
}

}  // namespace vexahealth
