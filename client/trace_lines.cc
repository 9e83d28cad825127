#include "client/trace_lines.h"

#include <chrono>
#include <cstring>

#include "client/text.h"

namespace vexahealth {

std::string TraceLine(const TraceEvent& event) {
  return event.time + Printf(" %6u %d ", event.process, event.level) + EscapeForTerminal(event.text, Backslash::kKeep) +
         "\n";
}

Json TraceEventJson(const TraceEvent& event) {
  return {
      {"time", event.time}, {"process", event.process}, {"level", event.level}, {"text", WellFormedUtf8(event.text)}};
}

std::string TraceJson(const std::string& time, const std::string& error, const std::vector<TraceEvent>& events) {
  Json document = Document();
  document["command"] = "trace";
  document["time"] = TextOrNull(time);
  document["error"] = TextOrNull(error);
  Json& list = document["events"] = Json::array();
  for (const TraceEvent& event : events) list.push_back(TraceEventJson(event));
  return Dump(document);
}

std::u16string TraceField(const void* data, size_t size) {
  std::u16string text(size / sizeof(char16_t), u'\0');
  if (!text.empty()) std::memcpy(text.data(), data, text.size() * sizeof(char16_t));
  return text.substr(0, text.find(u'\0'));
}

std::string TimeOfTicks(int64_t ticks) {
  using namespace std::chrono;
  constexpr int64_t kTicksPerMillisecond = 10000;
  constexpr sys_days kEpoch = year(1601) / January / 1;
  const sys_time<milliseconds> time = kEpoch + milliseconds(ticks / kTicksPerMillisecond);
  const sys_days day = floor<days>(time);
  const year_month_day date(day);
  const hh_mm_ss clock(time - day);
  return Printf("%04d-%02u-%02uT%02d:%02d:%02d.%03dZ", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()), static_cast<int>(clock.subseconds().count()));
}

}  // namespace vexahealth
