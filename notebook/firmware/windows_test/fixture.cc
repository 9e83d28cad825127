#include "fixture.h"

#include <algorithm>

#include "firmware/files.h"

namespace firmware {
namespace {

constexpr int kPolls = 600;
constexpr DWORD kPollMs = 50;

std::wstring FileOf(const wchar_t* name) { return TestFolder() + name; }

}  // namespace

FirmwareTest::FirmwareTest() { EXPECT_EQ(Objects(), 0); }

FirmwareTest::~FirmwareTest() {
  EXPECT_EQ(Objects(), 0);
  const auto can_unload = reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(
      reinterpret_cast<void*>(GetProcAddress(Server(), "DllCanUnloadNow")));
  EXPECT_EQ(can_unload(), S_OK);
}

void FirmwareTest::UseScenario(const std::string& section) { UseFile("{\"firmware\":" + section + "}"); }

void FirmwareTest::UseFile(const std::string& text) {
  // Two files of one test may get the same time: their sizes tell them apart.
  static size_t padding = 0;
  DeleteFileW(FileOf(L"firmware.log").c_str());
  ASSERT_TRUE(WriteWhole(FileOf(L"firmware.json"), text + std::string(++padding, '\n')));
}

void FirmwareTest::RemoveScenario() { ASSERT_TRUE(DeleteFileW(FileOf(L"firmware.json").c_str())); }

std::vector<std::string> FirmwareTest::Log() {
  const std::string text = ReadWhole(FileOf(L"firmware.log")).value_or("");
  std::vector<std::string> lines;
  for (size_t first = 0; first < text.size();) {
    const size_t end = text.find("\r\n", first);
    lines.push_back(text.substr(first, end - first));
    first = end == std::string::npos ? end : end + 2;
  }
  return lines;
}

void FirmwareTest::AwaitLine(const std::string& line) {
  for (int i = 0; i < kPolls; ++i) {
    if (std::ranges::count(Log(), line) != 0) return;
    Sleep(kPollMs);
  }
  FAIL() << "the log never told: " << line;
}

std::string FirmwareTest::State() { return ReadWhole(FileOf(L"firmware-state.json")).value_or(""); }

LONG FirmwareTest::Objects(const char* interface_name) {
  if (interface_name == nullptr) {
    return reinterpret_cast<LONG(WINAPI*)()>(
        reinterpret_cast<void*>(GetProcAddress(Server(), "VexaFirmwareObjects")))();
  }
  return reinterpret_cast<LONG(WINAPI*)(const char*)>(
      reinterpret_cast<void*>(GetProcAddress(Server(), "VexaFirmwareObjectsOf")))(interface_name);
}

}  // namespace firmware
