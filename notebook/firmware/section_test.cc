// The section as scenarios write it: what it means, and its faults with their lines.
#include "section.h"

#include <gmock/gmock.h>

#include "scenario/section_only.h"
#include "test_model.h"

namespace firmware {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

TEST(Section, EmptyDefinesNothing) {
  const Model model = ModelOf("{}");
  EXPECT_FALSE(model.ec);
  EXPECT_FALSE(model.devices);
  EXPECT_TRUE(model.log);
  Faults faults;
  EXPECT_FALSE(ReadFirmwareScenario(R"({ "ec": {} })", faults)->ec);
}

TEST(Section, FaultsOfTheEc) {
  EXPECT_THAT(
      FaultsOf(R"({ "lag": 1,
    "ec": { "instances": 256, "version": "7",
      "tables": [
        { "table": 1, "registers": [
          { "offset": 1, "byte": 256 },
          { "offset": 1, "word": 1 },
          { "offset": 255, "word": 1 },
          { "offset": 9, "word": 1, "writable": true },
          { "offset": 5, "byte": 1, "write_code": 8 },
          { "offset": 6, "byte": 1, "write_code": 8 },
          { "byte": 1, "text": "x" } ] },
        { "table": 1 } ],
      "gauge": [
        { "register": 1, "word": 65536 },
        { "register": 1, "text": "x" },
        { "register": 2, "word": 1, "count": 1 },
        { "register": 3, "text": "x", "writable": true } ] } })"),
      ElementsAre(StartsWith("1: unknown key \"lag\" in \"firmware\""), "2: \"instances\" must be 0x0 to 0xff, not 256",
                  StartsWith("2: \"version\": \"7\" is no"), "5: \"byte\" must be -128 to 255, not 256",
                  "6: register 0x01 of table 0x01 is given twice", "7: 2 bytes at offset 0xff reach beyond offset 0xff",
                  "8: only a single byte can be writable", "10: command code 0x08 writes another register already",
                  StartsWith("11: unknown key \"text\" in \"registers\""), "11: \"registers\" needs \"offset\"",
                  "12: table 0x01 is already given", "14: \"word\" must be -32768 to 65535, not 65536",
                  "15: gauge register 0x01 is given twice", "16: \"count\" goes with \"text\" and \"hex\" only",
                  "17: \"writable\" goes with \"word\" only"));
}

TEST(Section, FaultsOfDevices) {
  EXPECT_THAT(
      FaultsOf(R"({ "devices": { "list": [
    { "device": 1 },
    { "device": 1, "status": 0 },
    { "device": 2, "status": 0, "accepts": "all" },
    { "device": 3, "status": 0, "accepts": [ 4294967296 ] },
    { "status": 0 } ] } })"),
      ElementsAre("2: \"list\" needs \"status\"", "3: device 0x00000001 is given twice",
                  "4: \"accepts\" must be \"any\" or an array of control values",
                  "5: \"accepts\" must be -2147483648 to 4294967295, not 4294967296", "6: \"list\" needs \"device\""));
}

TEST(Section, FaultsOfTables) {
  EXPECT_THAT(FaultsOf(R"({ "ec": {}, "tables": [
    { "namespace": "ROOT\\WMI", "class": "atd_sts", "properties": {} },
    { "namespace": "n", "class": "A B", "properties": { "__P": "string", "a": "int", "A": "uint8" } },
    { "namespace": "n", "class": "C", "properties": { "a": "uint8", "b": "string[]", "d": "datetime", "r": "real32" },
      "keys": [ "z" ],
      "rows": [
        { "A": 256 },
        { "a": "x" },
        { "c": 1 },
        { "b": "x" },
        { "b": [ "x", 1 ] },
        { "d": "2025" },
        { "r": "1" },
        { "a": 1, "A": 2 },
        { "a": { "vt": 9, "value": 1 } },
        { "a": { "vt": 3, "items": [] } },
        { "a": { "vt": "0x2008", "value": "x" } } ] },
    { "namespace": "N", "class": "c", "properties": {} } ] })"),
              ElementsAre("2: class \"atd_sts\" is already given", "3: \"A B\" is no name of a class",
                          "3: \"__P\" is no name of a property", "3: \"int\" is no CIM type",
                          "3: property \"A\" is given twice", "5: key \"z\" is no property of the class",
                          "7: \"A\" must be 0x0 to 0xff, not 256", StartsWith("8: \"a\": \"x\" is no number"),
                          "9: \"c\" is no property of the class", "10: \"b\" must be an array, not a text",
                          "11: \"b\" must be a text, not a number", StartsWith("12: \"d\" must have 25 characters"),
                          "13: \"r\" must be a number, not a text", "14: property \"a\" is given twice",
                          "15: VARIANT type 9 cannot be made", "16: \"items\" goes with arrays only",
                          "17: an array has \"items\", not \"value\"", "18: class \"c\" is already given"));
}

TEST(Section, FaultsOfRules) {
  EXPECT_THAT(FaultsOf(R"({ "rules": [
    { "on": { "step": "next" }, "then": { "hang": true } },
    { "on": { "step": "ConnectServer", "class": "A" }, "then": { "hang": true } },
    { "on": { "step": "ExecQuery", "property": "A" }, "then": { "rows": 256 } },
    { "on": { "step": "Get" }, "then": { "value": 1 } },
    { "on": { "step": "Get" }, "then": {} },
    { "on": { "step": "Get" }, "nth": 1, "from": 2, "then": { "hang": true } },
    { "on": { "step": "Get" }, "nth": 0, "then": { "delay_ms": 600001 } },
    { "then": { "hang": true } } ] })"),
              ElementsAre("2: \"next\" is no step", "3: step \"ConnectServer\" has no \"class\"",
                          "4: step \"ExecQuery\" has no \"property\"", "4: \"rows\" must be 0x0 to 0xff, not 256",
                          "5: \"value\" goes with step \"ExecMethod\" only", "6: \"then\" says nothing to do",
                          HasSubstr("cannot have both"), StartsWith("8: \"nth\" must be 0x1"),
                          StartsWith("8: \"delay_ms\" must be"), "9: \"rules\" needs \"on\""));
}

TEST(Values, AreInTheFormDelivered) {
  const Model model = ModelOf(R"({ "tables": [ { "namespace": "n", "class": "C",
    "properties": { "s8": "sint8", "u8": "uint8", "u16": "uint16", "u32": "uint32", "u64": "uint64", "s64": "sint64",
      "r": "real64", "b": "boolean", "t": "string", "a": "uint16[]", "x": "uint32", "n": "uint32", "e": "string[]" },
    "rows": [ { "s8": -3, "u8": "0xFF", "u16": 65535, "u32": "0xFFFFFFFF", "u64": "0xFFFFFFFFFFFFFFFF", "s64": -1,
      "r": 1.5, "b": true, "t": "\u00e9", "a": [ 1, 65535 ], "x": { "vt": 8 }, "e": [] } ] } ] })");
  const Row& row = model.tables[0].rows[0];
  EXPECT_THAT(row, ElementsAre(Datum::Integer(kVtI2, -3), Datum::Integer(kVtUi1, 255), Datum::Integer(kVtI4, 65535),
                               Datum::Integer(kVtI4, -1), Datum::Text("18446744073709551615"), Datum::Text("-1"),
                               Datum::Real(kVtR8, 1.5), Datum::Integer(kVtBool, 1), Datum::Text("\xC3\xA9"),
                               Datum{.vt = kVtArray | kVtI4,
                                     .has_items = true,
                                     .items = {Datum::Integer(kVtI4, 1), Datum::Integer(kVtI4, 65535)}},
                               Datum{.vt = kVtBstr}, Datum{}, Datum{.vt = kVtArray | kVtBstr, .has_items = true}));
}

// What the tool writes says the same as the scenario.
TEST(Output, HoldsTheSectionAlone) {
  const std::string text = R"({ "ec": { "unlisted": { "byte": 1 } }, "firmware": {
    "tables": [ { "namespace": "n", "class": "C", "properties": { "Description": "string", "r": "real64" },
      "rows": [ { "Description": "x\n\u00e9", "r": -0.1 }, { "Description": null, "r": -5 } ] } ],
    "ec": { "version": -1, "gauge": [ { "register": "0x20", "text": "ab" } ] } } })";
  Faults faults;
  const std::string written = scenario::SectionOnly(*scenario::ParseJson(text, faults), "firmware");
  EXPECT_THAT(written, testing::Not(HasSubstr("byte")));
  const std::optional<Model> model = ReadFirmwareScenario(written, faults);
  ASSERT_TRUE(model);
  EXPECT_EQ(model->ec->version, 0xFFFFFFFFu);
  EXPECT_EQ(model->ec->gauge.at(0x20).block, (std::vector<uint8_t>{2, 'a', 'b'}));
  EXPECT_EQ(model->tables[0].rows[0], (Row{Datum::Text("x\n\xC3\xA9"), Datum::Real(kVtR8, -0.1)}));
  EXPECT_EQ(model->tables[0].rows[1], (Row{Datum{}, Datum::Real(kVtR8, -5)}));
}

}  // namespace
}  // namespace firmware
