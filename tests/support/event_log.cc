#include "tests/support/event_log.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <utility>

#include "tests/support/call_script.h"

namespace vexa::test {
namespace {

EventLog* g_log = nullptr;
int g_open_sources = 0;
std::vector<std::string> g_messages;
const HANDLE kSource = reinterpret_cast<HANDLE>(uintptr_t{0xE7E0});

HANDLE WINAPI Open(LPCWSTR server, LPCWSTR source) {
  EXPECT_EQ(server, nullptr);
  if (!g_log->opens) return nullptr;
  if (std::wcscmp(source, L"VEXASystemAnalysis") != 0) g_messages.push_back("source " + Narrow(source));
  ++g_open_sources;
  return kSource;
}

BOOL WINAPI Close(HANDLE source) {
  if (source == kSource) --g_open_sources;
  return TRUE;
}

BOOL WINAPI Report(HANDLE source, WORD type, WORD category, DWORD id, PSID user, WORD count, DWORD size, LPCWSTR* texts,
                   LPVOID data) {
  const bool expected = source == kSource && type == EVENTLOG_WARNING_TYPE && category == 0 && id == 0 && !user &&
                        count == 2 && std::wcscmp(texts[0], L"VEXASystemAnalysis") == 0 && size == 0 && !data;
  g_messages.push_back((expected ? "" : "odd report: ") + Narrow(texts[count - 1]));
  return TRUE;
}

}  // namespace

EventLog::EventLog()
    : open_("RegisterEventSourceW", Open), close_("DeregisterEventSource", Close), report_("ReportEventW", Report) {
  g_log = this;
  g_open_sources = 0;
  g_messages.clear();
}

EventLog::~EventLog() { EXPECT_EQ(g_open_sources, 0) << "event source left open"; }

std::vector<std::string> EventLog::TakeMessages() { return std::exchange(g_messages, {}); }

}  // namespace vexa::test
