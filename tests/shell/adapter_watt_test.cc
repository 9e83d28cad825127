// The three adapter wattages: from the EC, each byte read twice, and from the firmware's ACPI device on ARM64.
#include "tests/support/ec_test.h"
#include "tests/support/opened_device.h"
#include "tests/support/registry_script.h"
#include "vexa/adapter.h"

namespace vexa::test {
namespace {

using Bytes = std::vector<uint8_t>;

struct Case {
  const char* name;
  uint32_t (*call)();
  Strings reads;   // behind the version
  uint32_t value;  // where the second answer to a request is its offset with bit 7, and the first is not
  uint8_t acpi_argument;
};

// clang-format off: one member a row
const Case kCases[] = {
    {"Adapter_Read_Standard_Watt", Adapter_Read_Standard_Watt,
     {"dd 0c 01 00 read", "dd 0c 01 00 read", "dd 0c 00 00 read", "dd 0c 00 00 read"}, 0x8180, 1},
    {"Adapter_Read_Sufficient_Watt", Adapter_Read_Sufficient_Watt,
     {"dd 0c 03 00 read", "dd 0c 03 00 read", "dd 0c 02 00 read", "dd 0c 02 00 read"}, 0x8382, 2},
    {"Adapter_Read_ChampionPort_Watt", Adapter_Read_ChampionPort_Watt,
     {"dd 0c 05 00 read", "dd 0c 05 00 read", "dd 0c 04 00 read", "dd 0c 04 00 read"}, 0x8584, 3},
};
// clang-format on

constexpr wchar_t kDeviceKey[] = L"SYSTEM\\CurrentControlSet\\Enum\\ACPI\\VEXA2025";
constexpr char kLook[] = "read HKLM SYSTEM\\CurrentControlSet\\Enum\\ACPI\\VEXA2025 20019";

class AdapterWatt : public PerRow<EcTest, Case> {
 protected:
  // Every first answer is 0x2A: one that was not discarded shows.
  void UseTable(int version) {
    requests_ = 0;
    UseEc(version,
          [this](const EcCommandRecord& record) { return requests_++ % 2 == 0 ? 0x2A : record.data[1] | 0x80; });
    registry_.script.Take();
  }

  const Strings all_ = BehindVersion(row_.reads);
  int requests_ = 0;
  RegistryScript registry_;
};

TEST_P(AdapterWatt, IsTheSecondAnswerOfEachByteFromVersion28On) {
  for (const int version : {28, 29, 255, 0, 14, 27}) {
    UseTable(version);
    EXPECT_EQ(row_.call(), version < 28 ? kNotAvailable : row_.value) << "version " << version;
    EXPECT_EQ(ec_.TakeExchanges(), FirstOf(all_, version < 28 ? 1 : 5));
    EXPECT_THAT(TakeLines(), ElementsAre(VersionLine(row_.name, std::to_string(version))));
    EXPECT_EQ(registry_.script.Take().front(), kLook);
  }
}

TEST_P(AdapterWatt, EachExchangeFailingInTurn) {
  const uint32_t high = row_.value & 0xFF00, low = row_.value & 0x00FF;
  const struct {
    uint32_t by_status, by_request;
    size_t exchanges;
  } expected[] = {
      {row_.value, row_.value, 5},  // without its version the wattage is read all the same
      {kNoAnswer, kNoAnswer, 2},
      {high | low, low, 5},  // what a second request leaves is not tested: the record's byte, or 0
      {kNoAnswer, kNoAnswer, 4},
      {high | low, high, 5},
  };
  FailEachExchange(
      5, [&] { UseTable(28); },
      [&](size_t i, ScriptedEc::Failure failure) {
        const bool by_status = failure == ScriptedEc::Failure::kStatus;
        EXPECT_EQ(row_.call(), by_status ? expected[i].by_status : expected[i].by_request);
        EXPECT_EQ(ec_.TakeExchanges(), FirstOf(all_, expected[i].exchanges));
      });
}

TEST_P(AdapterWatt, IsNotToldWhereTheDeviceIs) {
  RegSetKeyValueW(HKEY_LOCAL_MACHINE, kDeviceKey, L"Present", REG_SZ, L"", 2);
  for (const wchar_t* arch : {L"x64", L"ARM64"}) {
    ArchValue::Set(arch);
    UseTable(28);
    EXPECT_EQ(row_.call(), kNotAvailable);
    EXPECT_THAT(ec_.TakeExchanges(), IsEmpty());
    EXPECT_THAT(registry_.script.Take(), ElementsAre(kLook));
  }
  RegDeleteKeyW(HKEY_LOCAL_MACHINE, kDeviceKey);
}

TEST_P(AdapterWatt, OfTheFirmwareComesFromTheAcpiDevice) {
  ArchValue::Set(L"ARM64");
  UseVersion(28);
  OpenedDevice device;
  std::vector<Bytes> sent;
  bool succeeds = true;
  Bytes answer;
  ec_.device = [&](uint32_t code, const Bytes& in, Bytes& out) {
    EXPECT_EQ(code, 0x0022240Cu);
    EXPECT_EQ(out.size(), 1024u);
    sent.push_back(in);
    out = answer;
    return succeeds;
  };
  const auto on_answer = [&](const Bytes& bytes) {
    answer = bytes;
    return row_.call();
  };
  EXPECT_EQ(on_answer({0x2C, 0x01, 0x01, 0x00}), 300u);
  EXPECT_THAT(sent,
              ElementsAre(Bytes{'D', 'S', 'T', 'S', 8, 0, 0, 0, 0xF2, 0x00, 0x12, 0x00, row_.acpi_argument, 0, 0, 0}));
  EXPECT_THAT(TakeLines(), IsEmpty());
  EXPECT_EQ(on_answer({0xFF, 0xFF, 0x01, 0x00}), 0xFFFFu);
  EXPECT_EQ(on_answer({0x00, 0x00, 0x01, 0x00}), 0u);
  EXPECT_EQ(on_answer({0x34, 0x12, 0xFF, 0xFF, 0x77}), 0x1234u);
  // The bit that tells of a wattage is missing, or the answer is too short for it.
  EXPECT_EQ(on_answer({0xFF, 0xFF, 0xFE, 0xFF}), kNotAvailable);
  EXPECT_EQ(on_answer({0x2C, 0x01, 0x01}), kNotAvailable);
  EXPECT_EQ(on_answer({}), kNotAvailable);
  succeeds = false;
  EXPECT_EQ(on_answer({0x2C, 0x01, 0x01, 0x00}), kNotAvailable);
  device.opens = false;
  EXPECT_EQ(row_.call(), kNotAvailable);
  EXPECT_EQ(sent.size(), 8u);
  EXPECT_EQ(device.open, 0);
  EXPECT_THAT(ec_.TakeExchanges(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Members, AdapterWatt, testing::ValuesIn(kCases), NameOfRow());

}  // namespace
}  // namespace vexa::test
