// The catalogue's least table versions against the library: an export answers from there on, and below it does not.
#include <gtest/gtest.h>

#include <string_view>

#include "tests/sweep/allowed.h"
#include "tests/sweep/chosen.h"
#include "tests/sweep/fake_system.h"
#include "tests/sweep/subject.h"

namespace vexa::test {
namespace {

Answer AnswerWith(uint8_t table_version, const Export& one) {
  FakeDevices::table_version = table_version;
  const Answer answer = Subject(one, 0, false).Run({}).answer;
  FakeDevices::table_version = kNewestTable;
  return answer;
}

TEST(TableVersions, AnExportAnswersFromItsLeastOneOn) {
  for (const Export& one : Exports()) {
    const bool is_version = one.name == std::string_view("BatteryHealthyTable_ReadVersion");
    if (!IsChosen(one) || one.routes[0] != "driver" || is_version) continue;
    const Answer newest = AnswerWith(kNewestTable, one);
    EXPECT_EQ(AnswerWith(one.least_table_version, one), newest) << one.name;
    if (one.least_table_version == 0) continue;
    const Answer below = AnswerWith(one.least_table_version - 1, one);
    EXPECT_EQ(WhyNotAllowed(one, 0, {}, newest, below), "") << one.name;
    // A flag that is clear tells nothing.
    if (newest.number != 0 || !newest.has_number) EXPECT_NE(below, newest) << one.name;
  }
}

}  // namespace
}  // namespace vexa::test
