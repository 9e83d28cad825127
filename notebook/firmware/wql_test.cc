// Which queries are understood, and which rows they give.
#include "wql.h"

#include <gtest/gtest.h>

#include <string>

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

constexpr struct {
  const char* condition;
  const char* rows;  // that meet it; null: it is not understood
} kConditions[] = {
    {"mediatype=3 or mediatype=4", "01"},
    {"MEDIATYPE = '4'", "1"},
    {"Technology != 2147483648", "1"},
    {"Technology = 2147483648", "0"},
    {"Technology > 5", "0"},
    {"Size > 1000", "1"},
    {"Size >= 1000", "01"},
    {"Offset < -4", "0"},
    {"Offset <> -5", "1"},
    {"MediaType = 70000", ""},
    {"MediaType = 'x'", ""},
    {"Physical='true'", "0"},
    {"Physical = FALSE", "1"},
    {"Caption = \"HARD DISK\"", "0"},
    {"Path = '\\\\\\\\?\\\\Volume{a}\\\\'", "0"},
    {"Path = '\\\\?\\Volume{a}\\'", nullptr},
    {"MediaType is null", "2"},
    {"MediaType is not null", "01"},
    {"MediaType != 9", "01"},
    {"NoSuch = 1", ""},
    {"Caption like '%vid_0BDA&PID_0129%'", "2"},
    {"Caption like 'hard___k'", ""},
    {"Caption like 'hard_dis_'", "0"},
    {"Caption like '%[%]%'", "1"},
    {"Caption like '[g-i]ard%'", "0"},
    {"Caption like '[^g-i]%'", "12"},
    {"Caption not like '%d%'", "1"},
    {"Caption like ''", ""},
    {"Caption like '%'", "012"},
    {"Caption like '%s%s%'", ""},
    {"Caption like '%d%disk'", "0"},
    {"MediaType=3 or MediaType=4 and Physical=true", "0"},
    {"(MediaType=3 or MediaType=4) and not Physical=true", "1"},
    {"not (MediaType=3)", "12"},
};

TEST(Wql, Conditions) {
  for (const auto& [condition, rows] : kConditions) {
    const std::optional<Query> query = ParseQuery(std::string("select * from Disk where ") + condition);
    EXPECT_EQ(query.has_value(), rows != nullptr) << condition;
    std::string found;
    for (size_t i = 0; query && i < kRows.size(); ++i) {
      if (Meets(*query->condition, kDisk, kRows[i])) found += std::to_string(i);
    }
    if (rows != nullptr) EXPECT_EQ(found, rows) << condition;
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
  for (const char* text :
       {"", "select", "select * from", "select * Win32_Bios", "select * from A where", "select * from A where b",
        "select * from A where b =", "select * from A where b = c", "select * from A where b = 'c",
        "select * from A where (b = 1", "select * from A where b = 1)", "select * from A B", "select *, b from A",
        "select a, from A", "associators of {A=1}", "select * from A where b like 5", "select * from A where = 1",
        "select * from A;"}) {
    EXPECT_FALSE(ParseQuery(text)) << text;
  }
  std::string negated;
  for (int i = 0; i < 100000; ++i) negated += "not ";
  for (const std::string& deep : {std::string(100000, '('), negated + "b = 1"}) {
    EXPECT_FALSE(ParseQuery("select * from A where " + deep));
  }
}

}  // namespace
}  // namespace firmware
