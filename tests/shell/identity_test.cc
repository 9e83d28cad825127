// The EC's identity: what is asked of the EC, and what the registry keeps of it.
#include "vexa/identity.h"

#include <cstring>
#include <map>
#include <optional>

#include "frame/library_state.h"
#include "tests/support/ec_test.h"
#include "tests/support/registry_script.h"

namespace vexa::test {
namespace {

constexpr wchar_t kKey[] = L"SOFTWARE\\Vexa\\Vexa System Control Interface\\VexaSystemAnalysis";

struct Member {
  const char* name;
  uint32_t (*call)();
  const wchar_t* value;
  Strings exchanges;
  uint32_t answer;
};

// clang-format off: one member a row
const Member kMembers[] = {
    {"ChipId", EC_ReadEcChipId, L"EcChipId", {"bb 10 read"}, 0x85},
    {"ChipName", EC_ReadEcChipName, L"EcChipName", {"bb 12 read", "bb 13 read", "bb 14 read", "bb 15 read"},
     0xD8565839},
    {"FwRev", EC_ReadEcFwRev, L"EcFwRev", {"bb 51 read", "bb 03 read", "bb 04 read"}, 0x4143},
};
// clang-format on

class Identity : public EcTest {
 protected:
  Identity() {
    Forget();
    ec_.answer = [this](const EcCommandRecord& record) {
      return EcReply{.value = record.command == 0xBB ? registers_[record.data[0]] : uint8_t{0}};
    };
  }
  ~Identity() override { Forget(); }

  static void Forget() {
    for (const Member& member : kMembers) RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, kKey, member.value);
  }
  static void Store(const wchar_t* value, DWORD type, const void* bytes, size_t size) {
    RegSetKeyValueW(HKEY_LOCAL_MACHINE, kKey, value, type, bytes, static_cast<DWORD>(size));
  }
  // The DWORD that is kept; nothing when the value is missing or anything else.
  static std::optional<uint32_t> Kept(const wchar_t* value) {
    uint32_t number = 0;
    DWORD type = 0;
    DWORD size = sizeof number;
    const LSTATUS status = RegGetValueW(HKEY_LOCAL_MACHINE, kKey, value, RRF_RT_ANY, &type, &number, &size);
    return status == ERROR_SUCCESS && type == REG_DWORD && size == 4 ? std::optional(number) : std::nullopt;
  }
  static bool IsKept(const wchar_t* value) {
    return RegGetValueW(HKEY_LOCAL_MACHINE, kKey, value, RRF_RT_ANY, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
  }

  std::map<uint8_t, uint8_t> registers_{{0x03, 'A'}, {0x04, 'C'}, {0x10, 0x85}, {0x12, 0xD8},
                                        {0x13, 'V'}, {0x14, 'X'}, {0x15, '9'},  {0x51, 0x81}};
};

TEST_F(Identity, AskedOnceAndThenAnsweredFromTheRegistry) {
  for (const Member& member : kMembers) {
    SCOPED_TRACE(member.name);
    EXPECT_EQ(member.call(), member.answer);
    EXPECT_THAT(ec_.TakeExchanges(), ElementsAreArray(member.exchanges));
    EXPECT_EQ(Kept(member.value), member.answer);
  }
  // Another EC changes nothing, nor does a library that is not ready.
  registers_ = {{0x51, 0x80}};
  g_library.initialised = false;
  for (const Member& member : kMembers) EXPECT_EQ(member.call(), member.answer) << member.name;
  EXPECT_THAT(ec_.TakeExchanges(), IsEmpty());
}

TEST_F(Identity, EachExchangeFailingInTurnLeavesTheRegistryAlone) {
  for (const Member& member : kMembers) {
    SCOPED_TRACE(member.name);
    FailEachExchange(
        member.exchanges.size(), [&] { ec_.TakeExchanges(); },
        [&](size_t i, ScriptedEc::Failure) {
          EXPECT_EQ(member.call(), kNoAnswer);
          EXPECT_EQ(ec_.TakeExchanges(), FirstOf(member.exchanges, i + 1));
          EXPECT_FALSE(IsKept(member.value));
        });
    // The next call tries again.
    EXPECT_EQ(member.call(), member.answer);
    ec_.TakeExchanges();
  }
}

TEST_F(Identity, NumbersAndTextsOfNumbersAreTaken) {
  for (const Member& member : kMembers) {
    for (const uint32_t number : {0u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
      Store(member.value, REG_DWORD, &number, sizeof number);
      EXPECT_EQ(member.call(), number);
    }
    Store(member.value, REG_SZ, L"4294967295", 22);
    EXPECT_EQ(member.call(), 0xFFFFFFFFu);
    Store(member.value, REG_SZ, L"133", 8);
    EXPECT_EQ(member.call(), 133u);
  }
  EXPECT_THAT(ec_.TakeExchanges(), IsEmpty());
}

TEST_F(Identity, AnythingElseIsMissingAndReplaced) {
  const uint8_t bytes[8] = {1};
  for (const Member& member : kMembers) {
    SCOPED_TRACE(member.name);
    const auto expect_replaced = [&](const std::string& what) {
      EXPECT_EQ(member.call(), member.answer) << what;
      EXPECT_THAT(ec_.TakeExchanges(), ElementsAreArray(member.exchanges)) << what;
      EXPECT_EQ(Kept(member.value), member.answer) << what;
    };
    for (const wchar_t* text : {L"", L"0x85", L"12 ", L" 12", L"-1", L"+1", L"4294967296", L"ERROR_READREG", L"\x0661",
                                L"1\x0131", L"99999999999999999999999999999999999999999999999999999999999999999999"}) {
      Store(member.value, REG_SZ, text, (std::wcslen(text) + 1) * sizeof(wchar_t));
      expect_replaced(Narrow(text));
    }
    const struct {
      const char* what;
      DWORD type;
      const void* bytes;
      size_t size;
    } others[] = {{"four bytes", REG_BINARY, bytes, 4},
                  {"a number of 64 bits", REG_QWORD, bytes, 8},
                  {"a short number", REG_DWORD, bytes, 2},
                  {"a long number", REG_DWORD, bytes, 8},
                  {"a text of another kind", REG_EXPAND_SZ, L"12", 6}};
    for (const auto& other : others) {
      Store(member.value, other.type, other.bytes, other.size);
      expect_replaced(other.what);
    }
  }
}

TEST_F(Identity, TheRegistryRefusingInTurn) {
  constexpr char kRead[] = "read HKLM SOFTWARE\\Vexa\\Vexa System Control Interface\\VexaSystemAnalysis 20019";
  constexpr char kOpen[] = "open HKLM SOFTWARE\\Vexa\\Vexa System Control Interface\\VexaSystemAnalysis 20006";
  constexpr char kCreate[] = "create HKLM SOFTWARE\\Vexa\\Vexa System Control Interface\\VexaSystemAnalysis f003f";
  constexpr char kSet[] = "set EcChipId 4 4";
  RegistryScript registry;
  registry.script.Fail("set", ERROR_ACCESS_DENIED);
  EXPECT_EQ(EC_ReadEcChipId(), 0x85u);
  EXPECT_THAT(registry.script.Take(), ElementsAre(kRead, kOpen, kSet));
  registry.script.Fail("open", ERROR_ACCESS_DENIED);
  registry.script.Fail("create", ERROR_ACCESS_DENIED);
  EXPECT_EQ(EC_ReadEcChipId(), 0x85u);
  EXPECT_THAT(registry.script.Take(), ElementsAre(kRead, kOpen, kCreate));
  EXPECT_FALSE(IsKept(L"EcChipId"));
  registry.script.Succeed("create");
  registry.script.Succeed("set");
  EXPECT_EQ(EC_ReadEcChipId(), 0x85u);
  EXPECT_THAT(registry.script.Take(), ElementsAre(kRead, kOpen, kCreate, kSet));
  EXPECT_EQ(Kept(L"EcChipId"), 0x85u);
  // A key that can't be read is a value that is missing.
  registers_[0x10] = 0x86;
  registry.script.Succeed("open");
  registry.script.Fail("read", ERROR_ACCESS_DENIED);
  EXPECT_EQ(EC_ReadEcChipId(), 0x86u);
  EXPECT_EQ(Kept(L"EcChipId"), 0x86u);
}

TEST_F(Identity, RevisionsOfTheEc) {
  const struct {
    uint8_t vendor, first, second;
    uint32_t revision;
    const char* line;
    size_t exchanges;
  } cases[] = {
      {0x80, '1', '2', 0x7FFF, "5 Vendor BYTE = 80", 3},
      {0xFF, 'A', 'B', 0x4142, "5 Vendor BYTE = ff", 3},
      {0x7F, 'A', 'B', 65535, "5 Vendor BYTE = 7f", 1},
  };
  for (const auto& one : cases) {
    Forget();
    registers_[0x51] = one.vendor;
    registers_[0x03] = one.first;
    registers_[0x04] = one.second;
    Lines();
    EXPECT_EQ(EC_ReadEcFwRev(), one.revision);
    EXPECT_EQ(ec_.TakeExchanges().size(), one.exchanges);
    EXPECT_THAT(Lines(), Contains(one.line));
    EXPECT_EQ(Kept(L"EcFwRev"), one.revision);
    Lines();
    EXPECT_EQ(EC_ReadEcFwRev(), one.revision);
    EXPECT_THAT(Lines(), Not(Contains(one.line)));
  }
}

TEST_F(Identity, ProjectInformationIsAskedEachTime) {
  EXPECT_EQ(EC_ReadProjectInformation(), 0x81u);
  registers_[0x51] = 0;
  EXPECT_EQ(EC_ReadProjectInformation(), 0u);
  EXPECT_THAT(ec_.TakeExchanges(), ElementsAre("bb 51 read", "bb 51 read"));
  FailEachExchange(
      1, [&] { ec_.TakeExchanges(); },
      [&](size_t, ScriptedEc::Failure) { EXPECT_EQ(EC_ReadProjectInformation(), kNoAnswer); });
  for (const Member& member : kMembers) EXPECT_FALSE(IsKept(member.value));
}

}  // namespace
}  // namespace vexa::test
