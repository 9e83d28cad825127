// The list of checks as data: what each runs, needs and wants looked at.
#ifndef TOOLS_CHECK_KIT_PARTS_H_
#define TOOLS_CHECK_KIT_PARTS_H_

#include <expected>
#include <string>
#include <string_view>
#include <vector>

namespace vexa::check {

struct Step {
  enum class Kind {
    kRun,   // must end with 0
    kShow,  // its output is for reading; a program that is not there is told and no failure
  };
  Kind kind;
  std::string command;
};

struct Part {
  std::string name;
  std::string title;
  std::string look;          // what a person compares; empty: the verdict is the steps'
  std::string machine;       // x64, arm64, or empty for both
  std::string hold;          // a device kept open, unshared, while the steps run
  bool named_only = false;   // changes the machine, or takes long: runs only when it is named
  bool free_driver = false;  // runs only where the driver's service is not registered
  bool real_driver = false;  // on x64, only with a driver beside the library that is the notebook's own
  unsigned limit_s = 300;    // of each step
  std::vector<Step> steps;
};

// Error: "line N: why".
std::expected<std::vector<Part>, std::string> ReadParts(std::string_view text);

}  // namespace vexa::check

#endif  // TOOLS_CHECK_KIT_PARTS_H_
