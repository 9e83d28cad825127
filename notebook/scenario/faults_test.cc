// Every fault is found, and told with its own line.
#include <gmock/gmock.h>

#include "test_notebook.h"

namespace scenario {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

TEST(Syntax, TellsTheLineOfTheBrokenToken) {
  EXPECT_THAT(FaultsOf("{\n\"ec\": {\n,\n}\n}"), ElementsAre(StartsWith("3: syntax error")));
  EXPECT_THAT(FaultsOf("{\n \"ec\": \"never closed\n}\n"), ElementsAre(StartsWith("2: syntax error")));
  EXPECT_THAT(FaultsOf("{\n\"ec\": {}\n\n"), ElementsAre(StartsWith("3: syntax error")));
  EXPECT_THAT(FaultsOf("{\r\n\"driver\": 1 2\r\n}"), ElementsAre(StartsWith("2: syntax error")));
  EXPECT_THAT(FaultsOf(""), ElementsAre(StartsWith("1: syntax error")));
  EXPECT_THAT(FaultsOf("{}\n{}"), ElementsAre(StartsWith("2: syntax error")));
}

TEST(Syntax, NumbersAtTheEndOfALineKeepTheirLine) {
  EXPECT_THAT(FaultsOf("{\"ec\": {\n\"healthy_table_version\":\n256\n}}"),
              ElementsAre("3: \"healthy_table_version\" must be 0x0 to 0xff, not 256"));
  EXPECT_THAT(FaultsOf("{\"ec\": {\n\"healthy_table_version\": 1.5\n\n}}"),
              ElementsAre(StartsWith("2: \"healthy_table_version\" must be a number, not a number with")));
  EXPECT_THAT(FaultsOf("{\"ec\": {\n\"healthy_table_version\": null\n}}"), ElementsAre(StartsWith("2: ")));
}

TEST(Syntax, DeepNestingEndsWithAFault) {
  EXPECT_THAT(FaultsOf(std::string(1 << 20, '[')), ElementsAre("1: nested deeper than 32 levels"));
  std::string objects;
  for (int i = 0; i < 100000; ++i) objects += "{\"ec\":\n";
  EXPECT_THAT(FaultsOf(objects), ElementsAre("33: nested deeper than 32 levels"));
}

TEST(Syntax, KeysGivenTwice) {
  EXPECT_THAT(FaultsOf("{\n\"driver\": {},\n\"driver\": {}\n}"),
              ElementsAre("3: key \"driver\" is given twice; the first is at line 2"));
}

TEST(Syntax, AFileBeyondTheLimitIsNotParsed) {
  EXPECT_THAT(FaultsOf("{" + std::string(kMaxScenarioSize, ' ') + "}"),
              ElementsAre(StartsWith("1: the file is larger")));
}

TEST(Values, EveryFaultOfAFileIsTold) {
  EXPECT_THAT(
      FaultsOf(R"({
    "driver": { "version": "12", "log": 1 },
    "ec": {
      "groups": [
        { "group": 128 },
        { "group": 1, "registers": [
          { "offset": "0x100", "byte": 1 },
          { "offset": 1, "byte": "0x1FF" },
          { "offset": 2, "bite": 1 },
          { "offset": 3, "byte": 1, "word": 2 },
          { "offset": 4, "hex": "0" },
          { "offset": 5, "hex": "0g" },
          { "offset": 6, "word": -32769 },
          { "offset": 7, "text": "\u00e9" },
          { "offset": 8, "text": "" },
          { "offset": 9, "status": 0 },
          { "byte": 1 },
          7
        ] }
      ]
    },
    "radio": {}
  })"),
      ElementsAre("2: \"version\": \"12\" is no number; write 12 or \"0x0c\"",
                  "2: \"log\" must be a truth value, not a number",
                  "5: \"group\" must be 0x0 to 0x7f, not 128", "7: \"offset\" must be 0x0 to 0xff, not 0x100",
                  "8: \"byte\" must be -128 to 255, not 0x1FF", StartsWith("9: unknown key \"bite\" in"),
                  StartsWith("9: \"registers\" needs one of byte"),
                  "10: \"registers\" cannot have both \"byte\" and \"word\"",
                  "11: \"hex\" must hold pairs of hexadecimal digits; character 2 does not fit",
                  "12: \"hex\" must hold pairs of hexadecimal digits; character 2 does not fit",
                  "13: \"word\" must be -32768 to 65535, not -32769",
                  "14: \"text\" must be printable ASCII; use \"hex\" for other bytes",
                  "15: \"text\" has 0 bytes; 1 to 256 fit here",
                  "16: \"status\" must be 0x1 to 0xffffffff, not 0", "17: \"registers\" needs \"offset\"",
                  "18: \"registers\" must be an object, not a number", "22: unknown section \"radio\""));
}

TEST(Registers, OverlapsNameBothLines) {
  EXPECT_THAT(FaultsOf(R"({ "ec": { "groups": [ { "group": 1, "registers": [
    { "offset": "0x30", "dword": 1 },
    { "offset": "0x33", "byte": 1 },
    { "offset": "0x2F", "word": 1 },
    { "offset": "0xFF", "word": 1 }
  ], "lists": [
    { "index": "0x40", "count": "0x40", "items": [ [ { "offset": "0x31", "byte": 1 } ] ] }
  ], "handshake": {
    "data": "0xF0",
    "hex": "000102030405060708090A0B0C0D0E0F101112131415161718191A1B1C1D1E1F"
  } } ] } })"),
              ElementsAre("3: register 0x33 is already given at line 2",
                          "4: register 0x30 is already given at line 2",
                          "5: 2 bytes at offset 0xff reach beyond offset 0xff",
                          "7: register 0x40 is already given at line 7",
                          "7: register 0x31 is already given at line 2",
                          "8: 32 bytes at offset 0xf0 reach beyond offset 0xff"));
}

TEST(Registers, GivenTwiceElsewhere) {
  EXPECT_THAT(
      FaultsOf(R"({ "ec": { "healthy_table_version": 3,
    "information": { "registers": [ { "register": "0x50", "byte": 1 } ] },
    "groups": [ { "group": 1 },
                { "group": 1 } ],
    "gauge": [ { "register": 1, "byte": 1 },
               { "register": 1, "byte": 1 } ],
    "commands": [ { "command": 1, "data": [2], "byte": 1 },
                  { "command": 1, "data": [2], "byte": 1 },
                  { "command": "0xDD", "byte": 1 } ] } })"),
      ElementsAre("1: register 0x50 is already given at line 2", "4: group 0x01 is already given",
                  "6: gauge register 0x01 is given twice", "8: a command with the same data is already given",
                  "9: command 0xdd has its own part of the \"ec\" section"));
}

TEST(Lists, ItemsMustBeAlikeAndFit) {
  EXPECT_THAT(FaultsOf(R"({ "ec": { "groups": [ { "group": 2, "lists": [ { "index": 1, "items": [
    [ { "offset": 2, "byte": 1 }, { "offset": 3, "byte": 1 } ],
    [ { "offset": 2, "byte": 1 } ],
    [ { "offset": 2, "byte": 1 }, { "offset": 3, "byte": 1, "writable": true } ],
    [ { "offset": "0xFF", "word": 1 } ]
  ] } ] } ] } })"),
              ElementsAre("3: every item of a list must give the same registers in the same order",
                          "4: every item of a list must give the same registers in the same order",
                          "5: \"word\" has 2 bytes; 1 to 1 fit here",
                          "5: every item of a list must give the same registers in the same order"));
}

TEST(Rules, WhatMakesNoSense) {
  EXPECT_THAT(
      FaultsOf(R"({ "rules": [
    { "on": { "control_code": "0x80102040" }, "then": { "driver_status": 5 } },
    { "on": { "control_code": 1 }, "then": { "fail": "0xC0000001" } },
    { "on": { "open": "VexaSAIO" }, "then": { "answer_length": 1 } },
    { "on": { "open": "EC" }, "then": { "delay_ms": 1 } },
    { "on": { "ec_command": "0xBB", "group": 1 }, "then": { "delay_ms": 600001 } },
    { "on": { "ec_command": "0xDD", "offset": 1 }, "nth": 0, "then": { "byte": 1 } },
    { "on": { "ec_command": 1, "open": "VexaSAIO" }, "nth": 1, "from": 2, "then": {} },
    { "on": { "ec_command": "0xDD", "data": [1, 2, 3, 4, 5, 6, 7, 8, 9] }, "then": { "fail": 5 } },
    { "on": {}, "then": 1 },
    {}
  ] })"),
      ElementsAre(StartsWith("2: \"driver_status\" has no meaning"), StartsWith("3: control code 0x00000001"),
                  StartsWith("4: \"answer_length\" has no meaning"), StartsWith("5: \"open\" must be"),
                  StartsWith("6: \"group\" goes with"), StartsWith("6: \"delay_ms\" must be"),
                  StartsWith("7: \"offset\" needs \"group\""), StartsWith("7: \"nth\" must be 0x1"),
                  StartsWith("8: \"on\" cannot have both"), StartsWith("8: \"rules\" cannot have both"),
                  StartsWith("8: \"then\" says nothing"), StartsWith("9: \"data\" has 9 entries"),
                  StartsWith("9: \"fail\" must be 0xc0000000"), StartsWith("10: \"on\" needs one of"),
                  StartsWith("10: \"then\" must be an object"), StartsWith("10: \"then\" says nothing"),
                  StartsWith("11: \"rules\" needs \"on\""), StartsWith("11: \"rules\" needs \"then\"")));
}

TEST(Acpi, MethodsMustBeNamedOnceAndSetWhatExists) {
  EXPECT_THAT(FaultsOf(R"({ "acpi": { "methods": [
    { "method": "DSTS", "arguments": [1], "result": 1 },
    { "method": "DSTS", "arguments": [1], "result": 2 },
    { "method": "DST", "result": 2 },
    { "method": "DEVS", "arguments": [1], "result": 1, "sets": { "method": "DSTS", "arguments": [2] } },
    { "method": "DEVS", "arguments": [2], "result": 1, "sets": { "method": "DSTS", "arguments": [3] } },
    { "method": "DSTS", "arguments": [3], "hex": "01 02 03" },
    { "method": "DSTS", "arguments": [1, 2, 3, 4, 5], "fail": "0xC0000034" }
  ] } })"),
              ElementsAre("3: a method with the same arguments is already given",
                          "4: \"method\" must have 4 characters",
                          "5: \"sets\" names a method and arguments that no row gives",
                          "6: \"sets\" names a row whose answer has less than 4 bytes",
                          StartsWith("8: \"arguments\" has 5 entries")));
}

// Each section at its limit and one beyond; the image must not grow past what the driver takes.
TEST(Limits, CountsAreHeld) {
  const auto rows = [](int count, const std::string& row) {
    std::string text;
    for (int i = 0; i < count; ++i) text += (i == 0 ? "" : ",\n") + row;
    return text;
  };
  const std::string rule = R"({"on":{"open":"VexaSAIO"},"then":{"delay_ms":1}})";
  EXPECT_THAT(FaultsOf("{\"rules\":[" + rows(1024, rule) + "]}"), IsEmpty());
  EXPECT_THAT(FaultsOf("{\"rules\":[" + rows(1025, rule) + "]}"),
              ElementsAre("1: \"rules\" has 1025 entries; the limit is 1024"));
  std::string methods;
  for (int i = 0; i < 65; ++i) {
    methods += (i == 0 ? "" : ",\n") + std::string(R"({"method":"GETX","arguments":[)") + std::to_string(i) +
               R"(],"hex":")" + std::string(2048, '0') + "\"}";
  }
  EXPECT_THAT(FaultsOf("{\"acpi\":{\"methods\":[" + methods + "]}}"),
              ElementsAre("65: the methods answer more than 65536 bytes"));
  std::string groups;
  for (int i = 0; i < 128; ++i) {
    const std::string items = rows(255, R"([{"offset":2,"hex":")" + std::string(400, '0') + "\"}]");
    groups += (i == 0 ? "" : ",\n") + std::string(R"({"group":)") + std::to_string(i) +
              (i < 2 ? R"(,"lists":[{"index":1,"items":[)" + items + "]}]}" : "}");
  }
  EXPECT_THAT(FaultsOf("{\"ec\":{\"groups\":[" + groups + "]}}"),
              ElementsAre(StartsWith("256: the scenario has more than 255 lists or 65536 bytes")));
}

}  // namespace
}  // namespace scenario
