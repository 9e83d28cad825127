// The three adapter wattages: from the EC, each byte read twice, and from the firmware's ACPI device on ARM64.
#include "tests/support/adapter_test.h"
#include "tests/support/opened_device.h"
#include "vexa/adapter.h"

namespace vexa::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Bytes = std::vector<uint8_t>;

struct Case {
  const char* name;
  uint32_t (*call)();
  Exchanges reads;  // behind the version
  uint32_t value;   // where the second answer to a request is its offset with bit 7, and the first is not
  uint8_t acpi_argument;
};

const Case kCases[] = {
    {"Adapter_Read_Standard_Watt",
     Adapter_Read_Standard_Watt,
     {"dd 0c 01 00 read", "dd 0c 01 00 read", "dd 0c 00 00 read", "dd 0c 00 00 read"},
     0x8180,
     1},
    {"Adapter_Read_Sufficient_Watt",
     Adapter_Read_Sufficient_Watt,
     {"dd 0c 03 00 read", "dd 0c 03 00 read", "dd 0c 02 00 read", "dd 0c 02 00 read"},
     0x8382,
     2},
    {"Adapter_Read_ChampionPort_Watt",
     Adapter_Read_ChampionPort_Watt,
     {"dd 0c 05 00 read", "dd 0c 05 00 read", "dd 0c 04 00 read", "dd 0c 04 00 read"},
     0x8584,
     3},
};

// The registry as far as the wattages ask it.
struct Registry {
  bool has_device = false;
  int opened = 0, closed = 0;
  HKEY root = nullptr;
  REGSAM access = 0;
} g_registry;
decltype(&RegOpenKeyExW) g_open_key = nullptr;
decltype(&RegCloseKey) g_close_key = nullptr;
const HKEY kDeviceKey = reinterpret_cast<HKEY>(uintptr_t{0x2025});

LSTATUS WINAPI OpenKey(HKEY root, LPCWSTR name, DWORD options, REGSAM access, PHKEY key) {
  if (std::wstring(name) != L"SYSTEM\\CurrentControlSet\\Enum\\ACPI\\VEXA2025") {
    return g_open_key(root, name, options, access, key);
  }
  ++g_registry.opened;
  g_registry.root = root;
  g_registry.access = access;
  if (!g_registry.has_device) return ERROR_FILE_NOT_FOUND;
  *key = kDeviceKey;
  return ERROR_SUCCESS;
}

LSTATUS WINAPI CloseKey(HKEY key) {
  if (key != kDeviceKey) return g_close_key(key);
  ++g_registry.closed;
  return ERROR_SUCCESS;
}

class AdapterWatt : public AdapterTest<testing::TestWithParam<Case>> {
 protected:
  AdapterWatt() {
    g_registry = {};
    g_open_key = open_key_.Original<std::remove_pointer_t<decltype(g_open_key)>>();
    g_close_key = close_key_.Original<std::remove_pointer_t<decltype(g_close_key)>>();
  }

  // Every first answer is 0x2A: one that was not discarded shows.
  void UseTable(int version) {
    UseVersion(version);
    requests_ = 0;
    ec_.answer = [this, version](const EcCommandRecord& record) {
      if (record.command == 0xBB) return EcReply{.value = static_cast<uint8_t>(version)};
      return EcReply{.value = static_cast<uint8_t>(requests_++ % 2 == 0 ? 0x2A : record.data[1] | 0x80)};
    };
  }
  const Exchanges all_ = BehindVersion(GetParam().reads);
  int requests_ = 0;
  ImportPatch open_key_{"RegOpenKeyExW", OpenKey};
  ImportPatch close_key_{"RegCloseKey", CloseKey};
};

TEST_P(AdapterWatt, IsTheSecondAnswerOfEachByte) {
  for (const int version : {28, 29, 255}) {
    UseTable(version);
    EXPECT_EQ(GetParam().call(), GetParam().value);
    EXPECT_EQ(ec_.TakeExchanges(), all_);
    EXPECT_THAT(TakeLines(), ElementsAre(VersionLine(GetParam().name, std::to_string(version))));
  }
  EXPECT_EQ(g_registry.opened, 3);
  EXPECT_EQ(g_registry.closed, 0);
  EXPECT_EQ(g_registry.root, HKEY_LOCAL_MACHINE);
  EXPECT_EQ(g_registry.access, REGSAM{KEY_READ});
}

TEST_P(AdapterWatt, IsNotReadBelowVersion28) {
  for (const int version : {0, 14, 27}) {
    UseTable(version);
    EXPECT_EQ(GetParam().call(), kNotAvailable) << "version " << version;
    EXPECT_THAT(ec_.TakeExchanges(), ElementsAre(kReadVersion));
  }
}

TEST_P(AdapterWatt, EachExchangeFailingInTurn) {
  const uint32_t high = GetParam().value & 0xFF00;
  const uint32_t low = GetParam().value & 0x00FF;
  const struct {
    uint32_t by_status, by_request;
    size_t exchanges;
  } expected[] = {
      {GetParam().value, GetParam().value, 5},  // without its version the wattage is read all the same
      {kNoAnswer, kNoAnswer, 2},
      {high | low, low, 5},  // what a second request leaves is not tested: the record's byte, or 0
      {kNoAnswer, kNoAnswer, 4},
      {high | low, high, 5},
  };
  for (const ScriptedEc::Failure failure : kFailures) {
    for (size_t i = 0; i < std::size(expected); ++i) {
      UseTable(28);
      ec_.FailExchange(static_cast<int>(i), failure);
      EXPECT_EQ(GetParam().call(),
                failure == ScriptedEc::Failure::kStatus ? expected[i].by_status : expected[i].by_request)
          << "exchange " << i;
      EXPECT_EQ(ec_.TakeExchanges(), FirstOf(all_, expected[i].exchanges));
    }
  }
}

TEST_P(AdapterWatt, IsNotToldWhereTheDeviceIs) {
  g_registry.has_device = true;
  for (const wchar_t* arch : {L"x64", L"ARM64"}) {
    ArchValue::Set(arch);
    UseTable(28);
    EXPECT_EQ(GetParam().call(), kNotAvailable);
    EXPECT_THAT(ec_.TakeExchanges(), IsEmpty());
  }
  EXPECT_EQ(g_registry.opened, 2);
  EXPECT_EQ(g_registry.closed, 2);
}

// ---- ARM64 ----

class AdapterWattFirmware : public AdapterWatt {
 protected:
  AdapterWattFirmware() {
    ArchValue::Set(L"ARM64");
    ec_.device = [this](uint32_t code, const Bytes& in, Bytes& out) {
      EXPECT_EQ(code, 0x0022240Cu);
      EXPECT_EQ(out.size(), 1024u);
      sent_.push_back(in);
      out = answer_;
      return succeeds_;
    };
  }

  uint32_t OnAnswer(const Bytes& answer) {
    answer_ = answer;
    return GetParam().call();
  }

  OpenedDevice device_;
  std::vector<Bytes> sent_;
  Bytes answer_;
  bool succeeds_ = true;
};

TEST_P(AdapterWattFirmware, ComesFromTheAcpiDevice) {
  UseVersion(28);
  EXPECT_EQ(OnAnswer({0x2C, 0x01, 0x01, 0x00}), 300u);
  EXPECT_THAT(sent_, ElementsAre(Bytes{'D', 'S', 'T', 'S', 8, 0, 0, 0, 0xF2, 0x00, 0x12, 0x00, GetParam().acpi_argument,
                                       0, 0, 0}));
  EXPECT_EQ(device_.name, L"\\\\.\\OBXACPI");
  EXPECT_EQ(device_.access, GENERIC_READ | GENERIC_WRITE);
  EXPECT_EQ(device_.share, DWORD{FILE_SHARE_READ | FILE_SHARE_WRITE});
  EXPECT_EQ(device_.disposition, DWORD{OPEN_EXISTING});
  EXPECT_THAT(ec_.TakeExchanges(), IsEmpty());
  EXPECT_THAT(TakeLines(), IsEmpty());

  EXPECT_EQ(OnAnswer({0xFF, 0xFF, 0x01, 0x00}), 0xFFFFu);
  EXPECT_EQ(OnAnswer({0x00, 0x00, 0x01, 0x00}), 0u);
  EXPECT_EQ(OnAnswer({0x34, 0x12, 0xFF, 0xFF, 0x77}), 0x1234u);
  EXPECT_EQ(OnAnswer({0xFF, 0xFF, 0xFE, 0xFF}), kNotAvailable);
  EXPECT_EQ(OnAnswer({0x64, 0x00, 0x00, 0x00}), kNotAvailable);
  EXPECT_EQ(device_.total, 6);
  EXPECT_EQ(device_.open, 0);
}

TEST_P(AdapterWattFirmware, IsNotAvailableWhenTheDeviceFails) {
  EXPECT_EQ(OnAnswer({0x2C, 0x01, 0x01}), kNotAvailable);
  EXPECT_EQ(OnAnswer({}), kNotAvailable);
  succeeds_ = false;
  EXPECT_EQ(OnAnswer({0x2C, 0x01, 0x01, 0x00}), kNotAvailable);
  EXPECT_EQ(device_.open, 0);
  EXPECT_EQ(sent_.size(), 3u);
  device_.opens = false;
  EXPECT_EQ(GetParam().call(), kNotAvailable);
  EXPECT_EQ(sent_.size(), 3u);
  EXPECT_EQ(device_.open, 0);
}

std::string NameOf(const testing::TestParamInfo<Case>& info) { return info.param.name; }
INSTANTIATE_TEST_SUITE_P(Members, AdapterWatt, testing::ValuesIn(kCases), NameOf);
INSTANTIATE_TEST_SUITE_P(Members, AdapterWattFirmware, testing::ValuesIn(kCases), NameOf);

}  // namespace
}  // namespace vexa::test
