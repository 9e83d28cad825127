// Events of the trace provider as lines and as JSON.
#include "client/trace_lines.h"

#include <gtest/gtest.h>

namespace vexahealth {
namespace {

TEST(TraceField, EndsAtItsTerminatorOrWithTheRecord) {
  const char16_t text[] = u"[RF] Start\0behind";
  EXPECT_EQ(TraceField(text, sizeof text), u"[RF] Start");
  EXPECT_EQ(TraceField(text, 8), u"[RF]");
  EXPECT_EQ(TraceField(text, 9), u"[RF]");  // half a character
  EXPECT_EQ(TraceField(text, 1), u"");
  EXPECT_EQ(TraceField(nullptr, 0), u"");
}

TEST(TimeOfTicks, CountsFrom1601) {
  EXPECT_EQ(TimeOfTicks(0), "1601-01-01T00:00:00.000Z");
  EXPECT_EQ(TimeOfTicks(116444736000000000), "1970-01-01T00:00:00.000Z");
  EXPECT_EQ(TimeOfTicks(134145507001239999), "2026-02-03T00:05:00.123Z");
}

TEST(TraceLine, IsHarmlessAndOneLine) {
  const TraceEvent event = {.time = "t", .process = 42, .level = 5, .text = "a\x1b[2J\nb C:\\x"};
  EXPECT_EQ(TraceLine(event), "t     42 5 a\\x1b[2J\\x0ab C:\\x\n");
  const Json json = Json::parse(TraceJson("now", "", {event, event}));
  EXPECT_EQ(json["error"], nullptr);
  EXPECT_EQ(json["events"].size(), 2u);
  EXPECT_EQ(json["events"][0]["text"], event.text);
  EXPECT_EQ(Json::parse(TraceJson("now", "why", {}))["error"], "why");
}

}  // namespace
}  // namespace vexahealth
