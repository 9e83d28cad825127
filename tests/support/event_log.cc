#include "tests/support/event_log.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <utility>

#include "tests/support/call_script.h"

namespace vexa::test {
namespace {

int g_open_sources = 0;
std::vector<std::string> g_messages;
const HANDLE kSource = reinterpret_cast<HANDLE>(uintptr_t{0xE7E0});

HANDLE WINAPI Open(LPCWSTR, LPCWSTR source) {
  if (std::wcscmp(source, L"VEXASystemAnalysis") != 0) g_messages.push_back("source " + Narrow(source));
  ++g_open_sources;
  return kSource;
}

BOOL WINAPI Close(HANDLE source) {
  if (source == kSource) --g_open_sources;
  return TRUE;
}

BOOL WINAPI Report(HANDLE source, WORD type, WORD, DWORD, PSID, WORD count, DWORD, LPCWSTR* texts, LPVOID) {
  const bool expected = source == kSource && type == EVENTLOG_WARNING_TYPE && count == 2;
  g_messages.push_back((expected ? "" : "odd report: ") + Narrow(texts[count - 1]));
  return TRUE;
}

}  // namespace

EventLog::EventLog()
    : open_("RegisterEventSourceW", Open), close_("DeregisterEventSource", Close), report_("ReportEventW", Report) {
  g_open_sources = 0;
  g_messages.clear();
}

EventLog::~EventLog() { EXPECT_EQ(g_open_sources, 0) << "event source left open"; }

std::vector<std::string> EventLog::TakeMessages() { return std::exchange(g_messages, {}); }

}  // namespace vexa::test
