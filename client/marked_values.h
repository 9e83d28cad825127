// Answers of the radios: values of a snapshot with two markers, one for "nothing was there to collect" and one for
// "collecting failed".
#ifndef CLIENT_MARKED_VALUES_H_
#define CLIENT_MARKED_VALUES_H_

#include <map>
#include <string_view>

#include "client/families.h"

namespace vexahealth {

// What the markers mean for a family.
struct MarkerReasons {
  const char* not_collected;
  const char* failed;
};

// A row with a member is a decimal count inside of a JSON object.
[[nodiscard]] Reading DecideMarked(const Row& row, const Answer& answer, const MarkerReasons& reasons);

// Asks each export once: several rows are parts of one answer.
class AnswerCache {
 public:
  explicit AnswerCache(const Context& context) : context_(context) {}
  const Answer& Of(const Row& row);

 private:
  const Context& context_;
  std::map<std::string_view, Answer> answers_;
};

}  // namespace vexahealth

#endif  // CLIENT_MARKED_VALUES_H_
