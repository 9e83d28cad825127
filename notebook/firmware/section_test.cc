// The section as scenarios write it: what it means, apart from its faults: scenario/faults.txt.
#include "section.h"

#include <gmock/gmock.h>

#include "scenario/section_only.h"
#include "test_model.h"

namespace firmware {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(FirmwareSection, EmptyDefinesNothing) {
  const Model model = ModelOf("{}");
  EXPECT_FALSE(model.ec);
  EXPECT_FALSE(model.devices);
  EXPECT_TRUE(model.log);
  Faults faults;
  EXPECT_FALSE(ReadFirmwareScenario(R"({ "ec": {} })", faults)->ec);
}

TEST(FirmwareSection, ValuesAreInTheFormDelivered) {
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
TEST(FirmwareSection, OutputHoldsTheSectionAlone) {
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
