// The fixture of tests about exports that ask the embedded controller.
#ifndef VEXA_TESTS_SUPPORT_EC_TEST_H_
#define VEXA_TESTS_SUPPORT_EC_TEST_H_

#include "tests/support/arch_value.h"
#include "tests/support/scripted_ec.h"
#include "tests/support/shell_test.h"

namespace vexa::test {

inline constexpr char kReadVersion[] = "bb 50 read";
inline constexpr uint32_t kNoAnswer = 0x7FFFFFFF;
inline constexpr uint32_t kNotAvailable = 0xFFFFFFFF;
inline constexpr ScriptedEc::Failure kFailures[] = {ScriptedEc::Failure::kStatus, ScriptedEc::Failure::kRequest};

// What an export sends in all: the version's exchange and those behind it.
inline Strings BehindVersion(Strings exchanges) {
  exchanges.insert(exchanges.begin(), kReadVersion);
  return exchanges;
}

inline std::string VersionLine(const std::string& log_name, const std::string& version) {
  return "5 [EC_BH][" + log_name + "] BatteryHealthyTable version: " + version;
}

class EcTest : public ShellTest {
 protected:
  // An EC of this table version. Every other register tells its offset, with bit 7 set: no two are alike, and none
  // could pass for a smaller or a positive number.
  void UseVersion(int version) {
    UseEc(version, [](const EcCommandRecord& record) { return record.data[1] | 0x80; });
  }
  // The same with other registers.
  template <typename Register>
  void UseEc(int version, Register value_of) {
    ec_.answer = [=](const EcCommandRecord& record) {
      return EcReply{.value = static_cast<uint8_t>(record.command == 0xBB ? version : value_of(record))};
    };
    ec_.FailExchange(-1, ScriptedEc::Failure::kNone);
    ec_.TakeExchanges();
    Lines();
  }
  // Calls `check(i, failure)` with exchange i failing, in either way, on what `use` prepares.
  template <typename Use, typename Check>
  void FailEachExchange(size_t count, Use use, Check check) {
    for (const ScriptedEc::Failure failure : kFailures) {
      for (size_t i = 0; i < count; ++i) {
        SCOPED_TRACE("exchange " + std::to_string(i));
        use();
        ec_.FailExchange(static_cast<int>(i), failure);
        check(i, failure);
      }
    }
    ec_.FailExchange(-1, ScriptedEc::Failure::kNone);
    ec_.TakeExchanges();
    Lines();
  }

  // The exports' own lines, without those of the channel.
  static Strings TakeLines() { return LinesWithout({"[RwEcCmd]"}); }

  ArchValue arch_{L"x64"};
  ScriptedEc ec_;
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_EC_TEST_H_
