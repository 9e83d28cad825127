// Records what the library reports to the system's event log.
#ifndef VEXA_TESTS_SUPPORT_EVENT_LOG_H_
#define VEXA_TESTS_SUPPORT_EVENT_LOG_H_

#include <string>
#include <vector>

#include "tests/support/import_patch.h"

namespace vexa::test {

// One at a time. At its end every source that was opened must have been closed.
class EventLog {
 public:
  EventLog();
  ~EventLog();

  // Messages since the last call, in UTF-8, in order; one that is no warning of the library's source says so.
  std::vector<std::string> TakeMessages();

  bool opens = true;

 private:
  ImportPatch open_;
  ImportPatch close_;
  ImportPatch report_;
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_EVENT_LOG_H_
