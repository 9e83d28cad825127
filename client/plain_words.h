// Why a value is missing, in words for people.
#ifndef CLIENT_PLAIN_WORDS_H_
#define CLIENT_PLAIN_WORDS_H_

#include <string>
#include <string_view>

#include "client/reading.h"

namespace vexahealth {

// "no answer", "not offered"; "read" for kOk.
std::string_view StatusWord(Status status);

// One sentence that says what the status means.
std::string_view StatusSentence(Status status);

// With a capital letter in front, where it begins with an ASCII letter.
std::string Capital(std::string_view text);

}  // namespace vexahealth

#endif  // CLIENT_PLAIN_WORDS_H_
