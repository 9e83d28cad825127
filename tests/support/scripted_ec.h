// An embedded controller behind DeviceIoControl: answers from a function, records every exchange.
#ifndef VEXA_TESTS_SUPPORT_SCRIPTED_EC_H_
#define VEXA_TESTS_SUPPORT_SCRIPTED_EC_H_

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "frame/driver_protocol.h"
#include "tests/support/import_patch.h"

namespace vexa::test {

struct EcReply {
  uint8_t value = 0;
  uint32_t status = 0;
  bool request_fails = false;
};

// While it lives, the library is initialised and every device request reaches it.
class ScriptedEc {
 public:
  ScriptedEc();
  ~ScriptedEc();

  // Answers an EC command; by default the offset of a table access, or the register's number.
  std::function<EcReply(const EcCommandRecord&)> answer;
  // Makes the n-th exchange (from 0) fail, in either way.
  enum class Failure { kNone, kStatus, kRequest };
  void FailExchange(int index, Failure failure) {
    fail_index_ = index;
    failure_ = failure;
  }

  // "dd 01 31 00 read" and "dd 81 5a 10" per exchange since the last call.
  std::vector<std::string> TakeExchanges();

  // Other control codes than the EC command's; returns whether the request succeeds.
  std::function<bool(uint32_t code, const std::vector<uint8_t>& in, std::vector<uint8_t>& out)> device;

  // Raw record handed back when not null, whatever was asked.
  std::vector<EcCommandRecord> records;  // as sent

 private:
  friend struct ScriptedEcHook;
  bool Exchange(EcCommandRecord& record);

  std::vector<std::string> exchanges_;
  int count_ = 0;
  int fail_index_ = -1;
  Failure failure_ = Failure::kNone;
  ImportPatch patch_;
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_SCRIPTED_EC_H_
