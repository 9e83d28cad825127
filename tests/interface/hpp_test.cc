// vexa.hpp over scripted exports: what it makes of each kind of answer.
#include "vexa/vexa.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <iterator>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace {

using vexa::Answer;
using vexa::Library;
using vexa::Reason;

// The scripted exports answer what stands here, and tell that they were called.
std::map<std::string, vexa::AnyFunction> exports;
std::map<std::string, uint32_t> answers;
std::vector<std::string> calls;
std::string narrow_text;
std::wstring wide_text;
int freed = 0;
wchar_t* given = nullptr;

uint32_t Called(const char* name) {
  calls.emplace_back(name);
  return answers[name];
}

// Exports without arguments that answer a number.
// clang-format off
#define NUMBERS(X)                                                                                                    \
  X(InitializeWinIo) X(BatteryHealthyTable_ReadVersion) X(BatteryHealthyTable_PackageVoltage)                         \
  X(BatteryHealthyTable_Rsoc) X(BatteryHealthyTable_Current) X(BatteryHealthyTable_LidStatus)                         \
  X(Adapter_Read_PD_Get_Emark_VID) X(Adapter_Clear_Charger_Data) X(Power_Read_ACDCMode) X(EC_ReadEcFwRev)             \
  X(RF_WiFiRssi) X(HealthyTable_FanCounts)
// clang-format on
#define SCRIPTED(name) \
  uint32_t Scripted##name() { return Called(#name); }
NUMBERS(SCRIPTED)
#undef SCRIPTED

void ScriptedShutdown() { Called("ShutdownWinIo"); }

VexaText ScriptedPhyMode() {
  VexaText text = {};
  std::strncpy(text.text, narrow_text.c_str(), sizeof text.text - 1);
  return text;
}

void ScriptedInfVersion(wchar_t* text) {
  if (!wide_text.empty()) std::wcscpy(text, wide_text.c_str());
}

uint32_t ScriptedCardName(wchar_t* text) {
  std::wcscpy(text, wide_text.c_str());
  return Called("RF_WiFiCardName");
}

// As the inventory does: the length for a null buffer, the whole text for any other.
uint32_t ScriptedSerialNumber(wchar_t* text, uint32_t com_flag) {
  answers["com_flag"] = com_flag;
  if (text != nullptr) std::wcscpy(text, wide_text.c_str());
  return static_cast<uint32_t>(wide_text.size());
}

uint32_t ScriptedUsage(wchar_t* free_bytes, wchar_t* serials, uint32_t) {
  if (free_bytes != nullptr) std::wcscpy(free_bytes, L"1,2;3");
  if (serials != nullptr) std::wcscpy(serials, L"A;B");
  return 5;
}

uint32_t ScriptedWiFiCard(wchar_t** name, uint8_t) {
  *name = given;
  return 0;
}

uint32_t ScriptedPartNumber(VexaPdIcPartNumber* record) {
  std::strcpy(record->text, "PD1");
  return Called("Adapter_Read_PD_IC_PN");
}

uint32_t ScriptedReadFan(uint32_t* rpm) {
  const uint32_t speeds[] = {3100, VEXA_NO_ANSWER, VEXA_NOT_AVAILABLE};
  std::ranges::copy(speeds, rpm);
  return VEXA_NOT_AVAILABLE;
}

int32_t line_length = 0;
void ScriptedLine(int32_t length, const void*) { line_length = length; }

template <typename Function>
void Script(const char* name, Function function) {
  exports[name] = reinterpret_cast<vexa::AnyFunction>(function);
}

class VexaHpp : public testing::Test {
 protected:
  void SetUp() override {
    exports.clear();
    answers.clear();
    calls.clear();
    wide_text.clear();
    freed = 0;
#define SCRIPT(name) Script(#name, &Scripted##name);
    NUMBERS(SCRIPT)
#undef SCRIPT
    Script("ShutdownWinIo", &ScriptedShutdown);
    Script("RF_PhyMode", &ScriptedPhyMode);
    Script("GetInfVersion", &ScriptedInfVersion);
    Script("RF_WiFiCardName", &ScriptedCardName);
    Script("WMIGetSN", &ScriptedSerialNumber);
    Script("WMIGetHDDUsage", &ScriptedUsage);
    Script("WMIGetWiFiCardName", &ScriptedWiFiCard);
    Script("Adapter_Read_PD_IC_PN", &ScriptedPartNumber);
    Script("HealthyTable_Read_Fan", &ScriptedReadFan);
    Script("TraceOutput", &ScriptedLine);
  }

  static Library Loaded() {
    const auto resolve = [](void*, const char* name) {
      const auto found = exports.find(name);
      return found == exports.end() ? nullptr : found->second;
    };
    return Library::Over(std::make_shared<int>(), resolve, [](void*) { ++freed; });
  }
};

template <typename T>
std::string Told(const Answer<T>& answer) {
  return answer ? "value" : vexa::ReasonName(answer.error());
}

TEST_F(VexaHpp, DoubtfulZeroIsCrossChecked) {
  constexpr uint32_t kSilent = VEXA_NO_ANSWER;
  constexpr uint32_t kNone = VEXA_NOT_AVAILABLE;
  const struct {
    uint32_t voltage, version;
    const char* told;
  } cases[] = {
      {11400, 28, "value"},       // the source answers: 0 % is true
      {11400, kSilent, "value"},  // ARM64: there is no version
      {kNone, 0, "unsupported"}, {kNone, kSilent, "no_answer"}, {kNone, 28, "no_answer"}, {kSilent, 28, "no_answer"},
      {0, 28, "value"},           // x64 without a pack
      {0, kSilent, "no_answer"},  // ARM64 with a silent gauge
  };
  const Library library = Loaded();
  for (const auto& one : cases) {
    answers["BatteryHealthyTable_PackageVoltage"] = one.voltage;
    answers["BatteryHealthyTable_ReadVersion"] = one.version;
    EXPECT_EQ(Told(library.BatteryHealthyTable_Rsoc()), one.told) << one.voltage << ", " << one.version;
  }
  // ARM64 has no lid state: what it answers is a constant.
  answers["BatteryHealthyTable_PackageVoltage"] = 11400;
  answers["BatteryHealthyTable_ReadVersion"] = kSilent;
  EXPECT_EQ(Told(library.BatteryHealthyTable_LidStatus()), "unsupported");
}

TEST_F(VexaHpp, VersionDecidesAboutKindB) {
  const Library library = Loaded();
  for (const auto& [version, told] : {std::pair{22u, "unsupported"}, {23u, "value"}, {0x7FFFFFFFu, "no_answer"}}) {
    answers["BatteryHealthyTable_ReadVersion"] = version;
    EXPECT_EQ(Told(library.Adapter_Read_PD_Get_Emark_VID()), told);
  }
  EXPECT_EQ(std::ranges::count(calls, "BatteryHealthyTable_PackageVoltage"), 0);
}

TEST_F(VexaHpp, NumbersFlagsAndActions) {
  const Library library = Loaded();
  const auto expect = [&](const char* name, uint32_t answer, auto ask, auto value) {
    answers[name] = answer;
    calls.clear();
    EXPECT_EQ((library.*ask)(), value) << name;
    EXPECT_EQ(calls.size(), 1u) << name;  // a plain answer costs no further call
  };
#define EXPECT_ANSWER(name, answer, value) expect(#name, static_cast<uint32_t>(answer), &Library::name, value)
  EXPECT_ANSWER(BatteryHealthyTable_Rsoc, 84, 84u);
  EXPECT_ANSWER(BatteryHealthyTable_Rsoc, VEXA_NO_ANSWER, std::unexpected(Reason::kNoAnswer));
  EXPECT_ANSWER(BatteryHealthyTable_Current, 0xFFFFFF38, -200);
  EXPECT_ANSWER(RF_WiFiRssi, -52, -52);
  EXPECT_ANSWER(RF_WiFiRssi, -1000, std::unexpected(Reason::kNotCollected));
  EXPECT_ANSWER(EC_ReadEcFwRev, 0x4142, 0x4142u);
  EXPECT_ANSWER(EC_ReadEcFwRev, 65535, std::unexpected(Reason::kUnsupported));
  EXPECT_ANSWER(Power_Read_ACDCMode, 1, true);
  EXPECT_ANSWER(Power_Read_ACDCMode, 2, std::unexpected(Reason::kNoAnswer));  // no flag has such an answer
  EXPECT_ANSWER(Power_Read_ACDCMode, 255, std::unexpected(Reason::kNoAnswer));
#undef EXPECT_ANSWER
  for (const auto& [answer, told] :
       {std::pair{1u, "value"}, {0u, "refused"}, {0xFFFFFFFFu, "unsupported"}, {2u, "refused"}}) {
    answers["Adapter_Clear_Charger_Data"] = answer;
    EXPECT_EQ(Told(library.Adapter_Clear_Charger_Data()), told);
  }
}

TEST_F(VexaHpp, Texts) {
  const Library library = Loaded();
  narrow_text = "802.11ax";
  EXPECT_EQ(library.RF_PhyMode(), "802.11ax");
  narrow_text = "error_string";
  EXPECT_EQ(Told(library.RF_PhyMode()), "no_answer");
  EXPECT_EQ(Told(library.GetInfVersion()), "not_present");
  wide_text = L"1.2.3.4";
  EXPECT_EQ(library.GetInfVersion(), L"1.2.3.4");
  EXPECT_EQ(library.RF_WiFiCardName(), L"1.2.3.4");
  answers["RF_WiFiCardName"] = VEXA_COLLECT_FAILED;
  EXPECT_EQ(Told(library.RF_WiFiCardName()), "no_answer");
  answers["RF_WiFiCardName"] = 0;
  wide_text = L"init_string";
  EXPECT_EQ(Told(library.RF_WiFiCardName()), "not_collected");
}

TEST_F(VexaHpp, TextsOfAnyLength) {
  const Library library = Loaded();
  EXPECT_EQ(Told(library.WMIGetSN()), "no_answer");
  wide_text = std::wstring(5000, L'7');
  EXPECT_EQ(library.WMIGetSN(), wide_text);
  EXPECT_EQ(answers["com_flag"], 1u);
  EXPECT_EQ(library.WMIGetHDDUsage()->free_bytes, L"1,2;3");
  EXPECT_EQ(library.WMIGetHDDUsage()->serials, L"A;B");
  wchar_t name[] = L"Card";
  given = name;
  EXPECT_EQ(library.WMIGetWiFiCardName(), L"Card");
  name[0] = L'\0';
  EXPECT_EQ(Told(library.WMIGetWiFiCardName()), "no_answer");
  EXPECT_EQ(freed, 2);
  given = nullptr;
  EXPECT_EQ(Told(library.WMIGetWiFiCardName()), "no_answer");
  EXPECT_EQ(freed, 2);
}

TEST_F(VexaHpp, RecordsArraysAndLines) {
  const Library library = Loaded();
  EXPECT_EQ(Told(library.Adapter_Read_PD_IC_PN()), "no_answer");
  answers["Adapter_Read_PD_IC_PN"] = 1;
  EXPECT_STREQ(library.Adapter_Read_PD_IC_PN()->text, "PD1");
  answers["HealthyTable_FanCounts"] = 3;
  const auto speeds = library.HealthyTable_Read_Fan();
  ASSERT_EQ(speeds->size(), 3u);
  EXPECT_EQ((*speeds)[0], 3100u);
  EXPECT_EQ(Told((*speeds)[1]), "no_answer");
  EXPECT_EQ(Told((*speeds)[2]), "unsupported");
  answers["HealthyTable_FanCounts"] = VEXA_NO_ANSWER;
  EXPECT_EQ(Told(library.HealthyTable_Read_Fan()), "no_answer");
  library.TraceOutput(L"four");
  EXPECT_EQ(line_length, static_cast<int32_t>(4 * sizeof(wchar_t)));
}

TEST_F(VexaHpp, SessionShutsDownOnce) {
  const Library library = Loaded();
  EXPECT_EQ(Told(library.Start()), "refused");
  EXPECT_EQ(calls, std::vector<std::string>{"InitializeWinIo"});
  answers["InitializeWinIo"] = 1;
  calls.clear();
  {
    auto session = library.Start();
    const vexa::Session moved = std::move(*session);
    EXPECT_EQ(std::ranges::count(calls, "ShutdownWinIo"), 0);
  }
  EXPECT_EQ(calls, (std::vector<std::string>{"InitializeWinIo", "ShutdownWinIo"}));
}

TEST_F(VexaHpp, MissingExports) {
  exports.clear();
  const Library library = Loaded();
  EXPECT_EQ(Told(library.BatteryHealthyTable_Rsoc()), "missing_export");
  EXPECT_EQ(Told(library.WMIGetSN()), "missing_export");
  EXPECT_EQ(Told(library.RF_PhyMode()), "missing_export");
  EXPECT_EQ(Told(library.Start()), "missing_export");
  library.TraceOutput(L"nowhere");
}

}  // namespace
