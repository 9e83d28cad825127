// What every shell test begins with: the matchers, and the base of all fixtures.
#ifndef VEXA_TESTS_SUPPORT_SHELL_TEST_H_
#define VEXA_TESTS_SUPPORT_SHELL_TEST_H_

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "tests/support/call_script.h"
#include "tests/support/import_patch.h"
#include "tests/support/trace_recorder.h"

namespace vexa::test {

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;
using testing::StartsWith;

using Strings = std::vector<std::string>;

inline Strings FirstOf(const Strings& texts, size_t count) {
  return {texts.begin(), texts.begin() + static_cast<ptrdiff_t>(std::min(count, texts.size()))};
}
inline Strings LastOf(const Strings& texts, size_t count) {
  return {texts.end() - static_cast<ptrdiff_t>(std::min(count, texts.size())), texts.end()};
}

// Each test begins with every level traced and no line written.
class ShellTest : public testing::Test {
 protected:
  ShellTest() {
    TraceRecorder::Get().Enable(0);
    TraceRecorder::Get().TakeEvents();
  }

  // "5 text" per line since the last time.
  static Strings Lines() { return TraceRecorder::Get().TakeLines(); }
  // Those that hold none of the parts: the lines of one layer without those of the layers below.
  static Strings LinesWithout(std::initializer_list<const char*> parts) {
    Strings lines = Lines();
    std::erase_if(lines, [&](const std::string& line) {
      return std::ranges::any_of(parts, [&](const char* part) { return line.find(part) != std::string::npos; });
    });
    return lines;
  }
};

// Fixtures whose tests run for every row of a table.
template <typename Base, typename Row>
class PerRow : public Base, public testing::WithParamInterface<Row> {
 protected:
  const Row& row_ = this->GetParam();
};

struct NameOfRow {
  template <typename Row>
  std::string operator()(const testing::TestParamInfo<Row>& info) const {
    return info.param.name;
  }
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_SHELL_TEST_H_
