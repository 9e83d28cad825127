// The system's interface table: the kind of the network link, and the inventory of the Wi-Fi adapter, whose rates go by
// the name that the Wi-Fi state holds.
#include "tests/support/fake_interfaces.h"

#include <objbase.h>

#include "inventory/texts.h"
#include "radio/wifi_interface.h"
#include "tests/support/wmi_test.h"
#include "vexa/inventory.h"
#include "vexa/peripherals.h"

namespace vexa::test {
namespace {

class Network : public WmiTest {
 protected:
  FakeInterfaces interfaces_;
};

TEST_F(Network, KindOfTheLink) {
  const auto kind = [] { return std::string(RF_Net_Connected_Type().text); };
  interfaces_.list = {{6, 1, true, false}, {6, 2, false, true}, {244, 3, true, false}, {71, 4, true, true}};
  EXPECT_EQ(kind(), "WIFI");
  EXPECT_THAT(interfaces_.asked, ElementsAre(1, 2, 3, 4));
  EXPECT_THAT(Lines(), ElementsAre("5 [RF] RF_Net_Connected_TypeWIFI"));
  // No snapshot: each call looks.
  interfaces_.list[2].up = true;
  EXPECT_EQ(kind(), "WWANPP2");
  interfaces_.list[0].up = true;
  EXPECT_EQ(kind(), "ETHERNET");
  // One that is gone when it is read is left out; without the table nothing is known.
  interfaces_.gone = {1, 3};
  EXPECT_EQ(kind(), "WIFI");
  interfaces_.gone = {1, 2, 3, 4};
  EXPECT_EQ(kind(), "Unknow");
  interfaces_.gone.clear();
  interfaces_.status = ERROR_NOT_SUPPORTED;
  EXPECT_EQ(kind(), "Unknow");
}

// ---- Inventory of the adapter ----

constexpr uint32_t kCom = 1;
constexpr wchar_t kRates[] = L"SELECT * FROM Win32_PerfFormattedData_Tcpip_Networkinterface";

size_t g_largest_allocation = 0;

void* WINAPI NoMemory(SIZE_T size) {
  g_largest_allocation = std::max(g_largest_allocation, size);
  return nullptr;
}

class WiFiInventory : public Network {
 protected:
  static std::string CardName() {
    wchar_t* name = nullptr;
    const uint32_t length = WMIGetWiFiCardName(&name, kCom);
    if (name == nullptr) return "null";
    EXPECT_EQ(length, std::wcslen(name));
    const std::string text = Narrow(name);
    CoTaskMemFree(name);
    return text;
  }
  void Adapter(int index, const WmiValue& name) {
    wmi.rows[L"select * from win32_NetworkAdapter where physicalAdapter='true' and InterfaceIndex = " +
             std::to_wstring(index)] = {{{L"Name", name}}};
  }
  static std::string Rates() {
    wchar_t text[VEXA_WIFI_BYTES_PERSEC_CAPACITY];
    EXPECT_EQ(WMIGetWiFiBytesPersec(text, kCom), std::wcslen(text));
    return Narrow(text);
  }
};

TEST_F(WiFiInventory, NameOfTheHardwareInterface) {
  Adapter(12, Text(L"Card"));
  Adapter(4294967, Text(L"Second"));
  interfaces_.list = {{6, 1, true, true}, {71, 2, false, true}, {71, 12, true, false}};
  EXPECT_EQ(CardName(), "Card");
  EXPECT_THAT(Lines(), ElementsAre("5 [ReadWMIPropStr] Step7 Do CoUninitialize()"));
  // One that is up goes first.
  interfaces_.list.push_back({71, 4294967, true, true});
  EXPECT_EQ(CardName(), "Second");
  for (const WmiValue& wrong : {Number(VT_NULL, 0), Number(VT_I4, 3), Texts({L"a"}), Text(L"")}) {
    Adapter(4294967, wrong);
    EXPECT_EQ(CardName(), "");
  }
  wmi.script.Fail("ExecQuery", 0x80041003, 1);
  EXPECT_EQ(CardName(), "");
  // Null only without memory.
  Adapter(4294967, Text(L"Card"));
  const ImportPatch patch("CoTaskMemAlloc", NoMemory);
  g_largest_allocation = 0;
  EXPECT_EQ(CardName(), "null");
  EXPECT_EQ(g_largest_allocation, 5 * sizeof(wchar_t));
}

TEST_F(WiFiInventory, WithoutAnInterfaceNothingIsAsked) {
  EXPECT_EQ(CardName(), "");
  interfaces_.list = {{6, 1, true, true}, {71, 2, false, true}};
  EXPECT_EQ(CardName(), "");
  interfaces_.status = ERROR_NOT_ENOUGH_MEMORY;
  EXPECT_EQ(CardName(), "");
  EXPECT_EQ(WMIGetWiFiCardName(nullptr, kCom), 0u);
  EXPECT_THAT(wmi.TakeCalls(), IsEmpty());
  EXPECT_THAT(Lines(), IsEmpty());
}

TEST_F(WiFiInventory, RatesOfTheAdapterOfTheWiFiState) {
  const std::wstring card = CounterName(WifiAdapterName());
  Lines();
  const auto row = [](const std::wstring& name, const WmiValue& received, const WmiValue& sent) {
    return WmiProperties{{L"Name", Text(name)}, {L"BytesReceivedPersec", received}, {L"BytesSentPersec", sent}};
  };
  wmi.rows[kRates] = {row(L"other", Text(L"1"), Text(L"2")), row(card, Text(L"5000000000"), Number(VT_I4, 7))};
  EXPECT_EQ(Rates(), "5000000000,7");
  EXPECT_EQ(CountOf(wmi.TakeCalls(), "ExecQuery WQL " + Narrow(kRates) + " 30"), 2);
  const Strings lines = Lines();
  EXPECT_EQ(lines.front(), "5 WMIGetWiFiBytesPersec Start");
  EXPECT_EQ(lines.back(), "5 WMIGetWiFiBytesPersec End");
  EXPECT_EQ(CountOf(lines, "5 [ReadWMIPropStrWireless] Step7 Do CoUninitialize()"), 2);
  wmi.rows[kRates] = {row(card, Number(VT_NULL, 0), Text(L"3"))};
  EXPECT_EQ(Rates(), "0,3");
  wmi.rows[kRates] = {row(L"other", Text(L"1"), Text(L"2"))};
  EXPECT_EQ(Rates(), "0,0");
  for (const int nth : {1, 2}) {
    wmi.script.Fail("ExecQuery", 0x80041003, nth);
    EXPECT_EQ(Rates(), "");
    wmi.TakeCalls();
  }
  EXPECT_GT(WMIGetWiFiBytesPersec(nullptr, kCom), 0u);
}

}  // namespace
}  // namespace vexa::test
