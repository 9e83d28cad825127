// Objects as callers see them, and their paths.
#include "object.h"

#include <gtest/gtest.h>

#include "methods.h"
#include "path.h"
#include "results.h"
#include "test_model.h"

namespace firmware {
namespace {

Table Disks() {
  return ModelOf(R"({ "tables": [ { "namespace": "root/x", "class": "Disk", "keys": ["Name", "Index"],
    "properties": { "Name": "string", "Index": "uint32", "Size": "uint64" },
    "rows": [ { "Name": "a\\\"b", "Index": 4294967295, "Size": 5 }, { "Name": "c", "Index": 1 }, { "Name": "d" } ] } ] })")
      .tables.front();
}

Object Placed(Object object) {
  object.server = "PC";
  object.namespace_name = "\\\\.\\root/x";
  return object;
}

std::optional<std::string> Text(const Object& object, std::string_view name) {
  const std::optional<ObjectProperty> property = FindProperty(object, name);
  return property ? property->value.text : "no such property";
}

TEST(WmiObjects, PathOfAnInstanceLeadsBackToIt) {
  const Table disks = Disks();
  const Object object = Placed(InstanceOf(disks, disks.rows[0], {}));
  EXPECT_EQ(Text(object, "__RELPATH"), R"(Disk.Name="a\\\"b",Index=-1)");
  EXPECT_EQ(Text(object, "__path"), R"(\\PC\root\x:Disk.Name="a\\\"b",Index=-1)");
  const std::optional<ObjectPath> path = ParsePath(*Text(object, "__PATH"));
  ASSERT_TRUE(path);
  EXPECT_EQ(FindRow(disks, *path), &disks.rows[0]);
}

TEST(WmiObjects, PathWithoutAKeyThereIsNone) {
  const Table disks = Disks();
  EXPECT_EQ(Text(Placed(InstanceOf(disks, disks.rows[2], {})), "__PATH"), std::nullopt);
  const Object chosen = Placed(InstanceOf(disks, disks.rows[0], {"size"}));
  EXPECT_EQ(Text(chosen, "Size"), "5");
  EXPECT_EQ(Text(chosen, "Name"), "no such property");
}

TEST(WmiObjects, PathFormsThatAreUnderstood) {
  const Table disks = Disks();
  const auto row = [&](std::string_view text) -> ptrdiff_t {
    const std::optional<ObjectPath> path = ParsePath(text);
    const Row* found = path ? FindRow(disks, *path) : nullptr;
    return found == nullptr ? -1 : found - disks.rows.data();
  };
  EXPECT_EQ(row(R"(Disk.Index=1,Name="C")"), 1);
  EXPECT_EQ(row(R"(Disk.Name="c")"), -1);
  EXPECT_EQ(row(R"(Disk.Name="c",Index=2)"), -1);
  EXPECT_EQ(row(R"(Disk.Name="c",Name="c")"), -1);
  EXPECT_EQ(row("Disk=@"), -1);
  EXPECT_EQ(row("Disk"), -1);
  EXPECT_TRUE(ParsePath("Disk")->IsClass());
  EXPECT_TRUE(ParsePath("\\\\PC\\root\\x:Disk")->IsClass());
  EXPECT_TRUE(ParsePath("Disk=@")->singleton);
  EXPECT_EQ(ParsePath(R"(Disk="a:b")")->class_name, "Disk");
  for (const char* text : {"", ":", "Disk.", "Disk.Name", "Disk.Name=", R"(Disk.Name="c)", "Disk.=1", "Disk.Name=1,",
                           "Disk.Name=1;", "Dis k", "Disk=", "ns:.Name=1"}) {
    EXPECT_FALSE(ParsePath(text)) << text;
  }
}

TEST(WmiObjects, PathFirmwareInstances) {
  const Table ec = FirmwareTables(ModelOf(R"({ "ec": { "instances": 2 } })")).front();
  ASSERT_EQ(ec.rows.size(), 2u);
  const auto path = RelativePath(*ec.shape, ec.rows[1]);
  EXPECT_EQ(path, R"(ATD_STS.InstanceName="ACPI\\PNP0C14\\1_1")");
  EXPECT_EQ(FindRow(ec, *ParsePath(*path)), &ec.rows[1]);
  EXPECT_EQ(FirmwareTables(ModelOf(R"({ "ec": { "instances": 0 } })")).front().rows.size(), 0u);
}

TEST(WmiObjects, WhatDoesNotFitIsRefused) {
  const Table disks = Disks();
  Object object = SpawnFrom(Object{.shape = disks.shape, .is_class = true});
  EXPECT_EQ(PutProperty(object, "Nothing", Datum::Text("1"), 0), kNotFound);
  EXPECT_EQ(PutProperty(object, "__CLASS", Datum::Text("1"), 0), kReadOnly);
  EXPECT_EQ(PutProperty(object, "Index", Datum::Text("x"), 0), kTypeMismatch);
  EXPECT_EQ(PutProperty(object, "Index", Datum::Text("1"), 17), kTypeMismatch);
  EXPECT_EQ(FindProperty(object, "Index")->value, Datum{});
  EXPECT_EQ(PutProperty(object, "Index", Datum::Text("1"), 19), 0u);
  EXPECT_EQ(FindProperty(object, "INDEX")->value, Datum::Integer(kVtI4, 1));
  EXPECT_EQ(PutProperty(object, "Index", Datum{}, 19), 0u);
  EXPECT_EQ(FindProperty(object, "Index")->value, Datum{});
}

TEST(WmiObjects, SystemPropertiesTellClassesFromInstances) {
  const Table disks = Disks();
  const Object definition = Placed(Object{.shape = disks.shape, .is_class = true});
  EXPECT_EQ(FindProperty(definition, "__GENUS")->value, Datum::Integer(kVtI4, 1));
  EXPECT_EQ(Text(definition, "__RELPATH"), "Disk");
  EXPECT_EQ(FindProperty(InstanceOf(disks, disks.rows[1], {}), "__GENUS")->value, Datum::Integer(kVtI4, 2));
  EXPECT_EQ(Text(definition, "__NAMESPACE"), "root\\x");
}

}  // namespace
}  // namespace firmware
