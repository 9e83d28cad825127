// The fixture of tests about the adapter and power-source exports on the driver route.
#ifndef VEXA_TESTS_SUPPORT_ADAPTER_TEST_H_
#define VEXA_TESTS_SUPPORT_ADAPTER_TEST_H_

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "tests/support/arch_value.h"
#include "tests/support/scripted_ec.h"
#include "tests/support/trace_recorder.h"

namespace vexa::test {

inline constexpr char kReadVersion[] = "bb 50 read";
inline constexpr uint32_t kNoAnswer = 0x7FFFFFFF;
inline constexpr uint32_t kNotAvailable = 0xFFFFFFFF;
inline constexpr ScriptedEc::Failure kFailures[] = {ScriptedEc::Failure::kStatus, ScriptedEc::Failure::kRequest};

using Exchanges = std::vector<std::string>;

// What an export sends in all: the version's exchange and those behind it.
inline Exchanges BehindVersion(Exchanges exchanges) {
  exchanges.insert(exchanges.begin(), kReadVersion);
  return exchanges;
}

inline std::string VersionLine(const std::string& log_name, const std::string& version) {
  return "5 [EC_BH][" + log_name + "] BatteryHealthyTable version: " + version;
}

inline Exchanges FirstOf(const Exchanges& exchanges, size_t count) {
  return {exchanges.begin(), exchanges.begin() + static_cast<ptrdiff_t>(count)};
}

template <typename Base = testing::Test>
class AdapterTest : public Base {
 protected:
  AdapterTest() {
    TraceRecorder::Get().Enable(0);
    TraceRecorder::Get().TakeEvents();
  }

  // An EC of this table version. Every other register tells its offset, with bit 7 set: no two are alike, and none
  // could pass for a smaller or a signed number.
  void UseVersion(int version) {
    ec_.answer = [version](const EcCommandRecord& record) {
      return EcReply{.value = static_cast<uint8_t>(record.command == 0xBB ? version : record.data[1] | 0x80)};
    };
    ec_.FailExchange(-1, ScriptedEc::Failure::kNone);
    ec_.TakeExchanges();
    TraceRecorder::Get().TakeEvents();
  }

  // The exports' own lines, without those of the channel.
  static std::vector<std::string> TakeLines() {
    std::vector<std::string> lines = TraceRecorder::Get().TakeLines();
    std::erase_if(lines, [](const std::string& line) { return line.find("[RwEcCmd]") != std::string::npos; });
    return lines;
  }

  ArchValue arch_{L"x64"};
  ScriptedEc ec_;
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_ADAPTER_TEST_H_
