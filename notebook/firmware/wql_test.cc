// Which queries are understood, and which rows they give.
#include "wql.h"

#include <gtest/gtest.h>

#include <string>

namespace firmware {
namespace {

class Where : public testing::Test {
 protected:
  // Numbers of the rows that meet the condition, as "0 2".
  std::string Rows(const std::string& condition) {
    const std::optional<Query> query = ParseQuery("select * from Disk where " + condition);
    if (!query) return "no query";
    std::string found;
    for (size_t i = 0; i < rows_.size(); ++i) {
      if (Meets(*query->condition, shape_, rows_[i])) found += (found.empty() ? "" : " ") + std::to_string(i);
    }
    return found;
  }

  const ClassShape shape_{.name = "Disk",
                          .properties = {{"MediaType", {Cim::kUint16}},
                                         {"Caption", {Cim::kString}},
                                         {"Physical", {Cim::kBoolean}},
                                         {"Technology", {Cim::kUint32}},
                                         {"Size", {Cim::kUint64}},
                                         {"Offset", {Cim::kSint32}},
                                         {"Path", {Cim::kString}}}};
  const std::vector<Row> rows_{
      {Datum::Integer(kVtI4, 3), Datum::Text("Hard disk"), Datum::Integer(kVtBool, 1), Datum::Integer(kVtI4, INT32_MIN),
       Datum::Text("1000"), Datum::Integer(kVtI4, -5), Datum::Text("\\\\?\\Volume{a}\\")},
      {Datum::Integer(kVtI4, 4), Datum::Text("50% [x]"), Datum::Integer(kVtBool, 0), Datum::Integer(kVtI4, 5),
       Datum::Text("18446744073709551615"), Datum::Integer(kVtI4, 5), Datum::Text("b")},
      {Datum{}, Datum::Text("USB\\VID_0BDA&PID_0129\\1"), Datum{}, Datum{}, Datum{}, Datum{}, Datum{}},
  };
};

TEST_F(Where, NumbersAreCompared) {
  EXPECT_EQ(Rows("mediatype=3 or mediatype=4"), "0 1");
  EXPECT_EQ(Rows("MEDIATYPE = '4'"), "1");
  EXPECT_EQ(Rows("Technology != 2147483648"), "1");
  EXPECT_EQ(Rows("Technology = 2147483648"), "0");
  EXPECT_EQ(Rows("Technology > 5"), "0");
  EXPECT_EQ(Rows("Size > 1000"), "1");
  EXPECT_EQ(Rows("Size >= 1000"), "0 1");
  EXPECT_EQ(Rows("Offset < -4"), "0");
  EXPECT_EQ(Rows("Offset <> -5"), "1");
  EXPECT_EQ(Rows("MediaType = 70000"), "");
  EXPECT_EQ(Rows("MediaType = 'x'"), "");
}

TEST_F(Where, TextsAndTruthValues) {
  EXPECT_EQ(Rows("Physical='true'"), "0");
  EXPECT_EQ(Rows("Physical = FALSE"), "1");
  EXPECT_EQ(Rows("Caption = \"HARD DISK\""), "0");
  EXPECT_EQ(Rows("Path = '\\\\\\\\?\\\\Volume{a}\\\\'"), "0");
  EXPECT_EQ(Rows("Path = '\\\\?\\Volume{a}\\'"), "no query");
}

TEST_F(Where, NullMeetsOnlyIsNull) {
  EXPECT_EQ(Rows("MediaType is null"), "2");
  EXPECT_EQ(Rows("MediaType is not null"), "0 1");
  EXPECT_EQ(Rows("MediaType != 9"), "0 1");
  EXPECT_EQ(Rows("NoSuch = 1"), "");
}

TEST_F(Where, Patterns) {
  EXPECT_EQ(Rows("Caption like '%vid_0BDA&PID_0129%'"), "2");
  EXPECT_EQ(Rows("Caption like 'hard___k'"), "");
  EXPECT_EQ(Rows("Caption like 'hard_dis_'"), "0");
  EXPECT_EQ(Rows("Caption like '%[%]%'"), "1");
  EXPECT_EQ(Rows("Caption like '[g-i]ard%'"), "0");
  EXPECT_EQ(Rows("Caption like '[^g-i]%'"), "1 2");
  EXPECT_EQ(Rows("Caption not like '%d%'"), "1");
  EXPECT_EQ(Rows("Caption like ''"), "");
  EXPECT_EQ(Rows("Caption like '%'"), "0 1 2");
  EXPECT_EQ(Rows("Caption like '%s%s%'"), "");
  EXPECT_EQ(Rows("Caption like '%d%disk'"), "0");
}

TEST_F(Where, Joining) {
  EXPECT_EQ(Rows("MediaType=3 or MediaType=4 and Physical=true"), "0");
  EXPECT_EQ(Rows("(MediaType=3 or MediaType=4) and not Physical=true"), "1");
  EXPECT_EQ(Rows("not (MediaType=3)"), "1 2");
}

TEST(Query, ColumnsAndClass) {
  const std::optional<Query> query = ParseQuery("SELECT Name , DeviceID\r\n FROM\tWin32_Bios");
  ASSERT_TRUE(query);
  EXPECT_EQ(query->columns, (std::vector<std::string>{"Name", "DeviceID"}));
  EXPECT_EQ(query->class_name, "Win32_Bios");
  EXPECT_FALSE(query->condition);
}

TEST(Query, WhatIsNotUnderstoodIsNoQuery) {
  for (const char* text :
       {"", "select", "select * from", "select * Win32_Bios", "select * from A where", "select * from A where b",
        "select * from A where b =", "select * from A where b = c", "select * from A where b = 'c",
        "select * from A where (b = 1", "select * from A where b = 1)", "select * from A B", "select *, b from A",
        "select a, from A", "associators of {A=1}", "select * from A where b like 5", "select * from A where = 1",
        "select * from A;"}) {
    EXPECT_FALSE(ParseQuery(text)) << text;
  }
  const std::string nested(100000, '(');
  EXPECT_FALSE(ParseQuery("select * from A where " + nested));
  std::string negated;
  for (int i = 0; i < 100000; ++i) negated += "not ";
  EXPECT_FALSE(ParseQuery("select * from A where " + negated + "b = 1"));
}

}  // namespace
}  // namespace firmware
