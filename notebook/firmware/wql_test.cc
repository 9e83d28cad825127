// Which queries are understood, and which rows they give.
#include "wql.h"

#include <gtest/gtest.h>

#include <string>

#include "scenario/test_cases.h"

namespace firmware {
namespace {

const ClassShape kDisk{.name = "Disk",
                       .properties = {{"MediaType", {Cim::kUint16}},
                                      {"Caption", {Cim::kString}},
                                      {"Physical", {Cim::kBoolean}},
                                      {"Technology", {Cim::kUint32}},
                                      {"Size", {Cim::kUint64}},
                                      {"Offset", {Cim::kSint32}},
                                      {"Path", {Cim::kString}}}};
const std::vector<Row> kRows{
    {Datum::Integer(kVtI4, 3), Datum::Text("Hard disk"), Datum::Integer(kVtBool, 1), Datum::Integer(kVtI4, INT32_MIN),
     Datum::Text("1000"), Datum::Integer(kVtI4, -5), Datum::Text("\\\\?\\Volume{a}\\")},
    {Datum::Integer(kVtI4, 4), Datum::Text("50% [x]"), Datum::Integer(kVtBool, 0), Datum::Integer(kVtI4, 5),
     Datum::Text("18446744073709551615"), Datum::Integer(kVtI4, 5), Datum::Text("b")},
    {Datum{}, Datum::Text("USB\\VID_0BDA&PID_0129\\1"), Datum{}, Datum{}, Datum{}, Datum{}, Datum{}},
};

TEST(Wql, Conditions) {
  for (const std::string& line : scenario::LinesOfCase(TEST_FOLDER "/wql.txt", "conditions")) {
    const size_t arrow = line.rfind(" -> ");
    const std::optional<Query> query = ParseQuery("select * from Disk where " + line.substr(0, arrow));
    std::string found = query ? "" : "no query";
    for (size_t i = 0; query && i < kRows.size(); ++i) {
      if (Meets(*query->condition, kDisk, kRows[i])) found += std::to_string(i);
    }
    EXPECT_EQ(found.empty() ? "none" : found, line.substr(arrow + 4)) << line;
  }
}

TEST(Wql, ColumnsAndClass) {
  const std::optional<Query> query = ParseQuery("SELECT Name , DeviceID\r\n FROM\tWin32_Bios");
  ASSERT_TRUE(query);
  EXPECT_EQ(query->columns, (std::vector<std::string>{"Name", "DeviceID"}));
  EXPECT_EQ(query->class_name, "Win32_Bios");
  EXPECT_FALSE(query->condition);
}

TEST(Wql, WhatIsNotUnderstoodIsNoQuery) {
  for (const std::string& text : scenario::LinesOfCase(TEST_FOLDER "/wql.txt", "not understood")) {
    EXPECT_FALSE(ParseQuery(text)) << text;
  }
  std::string negated;
  for (int i = 0; i < 100000; ++i) negated += "not ";
  for (const std::string& deep : {std::string(100000, '('), negated + "b = 1"}) {
    EXPECT_FALSE(ParseQuery("select * from A where " + deep));
  }
  EXPECT_FALSE(ParseQuery(""));
}

}  // namespace
}  // namespace firmware
