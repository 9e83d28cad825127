// Classes of Bluetooth devices, versions of USB devices, kinds of network links, count texts.
#include "radio/peripheral_class.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace vexa {
namespace {

TEST(BluetoothClass, EveryMajorClassByItsFiveBits) {
  constexpr std::string_view kNames[] = {"Others;",      "Computer;",   "Phone;",   "LAN/NetWortk Access point;",
                                         "Audio/Video;", "Peripheral;", "Imaging;", "Wearable;",
                                         "Toy;",         "Health;"};
  for (uint32_t major = 0; major < 32; ++major) {
    const std::string_view expected = major < 10 ? kNames[major] : major == 31 ? "Uncategorized;" : "Others;";
    EXPECT_EQ(BluetoothClassName(major << 8), expected) << major;
    // The bits around it are of the minor class and of the services.
    EXPECT_EQ(BluetoothClassName(0xFFFFE0FF | major << 8), expected) << major;
  }
  EXPECT_EQ(BluetoothClassName(0x240404), "Audio/Video;");
  EXPECT_EQ(BluetoothClassName(0x5A020C), "Phone;");
}

TEST(UsbVersions, EachHasItsKeyAndOthersNone) {
  EXPECT_EQ(UsbVersionCounts().Text(), R"({"usb2_0":"0","usb2_1":"0","usb3_0":"0","usb3_1":"0","usb3_2":"0"})");
  UsbVersionCounts counts;
  for (uint32_t version = 0; version <= 0xFFFF; ++version) counts.Add(static_cast<uint16_t>(version));
  EXPECT_EQ(counts.Text(), R"({"usb2_0":"1","usb2_1":"1","usb3_0":"1","usb3_1":"1","usb3_2":"1"})");
  counts.Add(0x0320);
  counts.Add(0x0300);
  counts.Add(0x0320);
  counts.Add(0x0210);
  EXPECT_EQ(counts.Text(), R"({"usb2_0":"1","usb2_1":"2","usb3_0":"2","usb3_1":"1","usb3_2":"3"})");
}

TEST(CountTexts, KeysAscendWhateverTheirOrder) {
  const NamedCount counts[] = {{"others", 12}, {"ch6", 0}, {"ch1", 3}, {"ch11", -1}};
  EXPECT_EQ(CountText(counts), R"({"ch1":"3","ch11":"-1","ch6":"0","others":"12"})");
  EXPECT_EQ(CountText({}), "{}");
}

TEST(WholeItemLists, AreCutAfterTheLastItemThatFits) {
  std::string list;
  while (list.size() < 1023) list += "123,";
  list.resize(1022);
  list += ',';
  EXPECT_EQ(WholeItems(list, ',').size(), 1023u);
  EXPECT_EQ(WholeItems(list + "4,", ',').size(), 1023u);
  EXPECT_EQ(WholeItems("x" + list, ',').size(), 1021u);
  EXPECT_EQ(WholeItems(std::string(2000, 'x'), ','), "");
  EXPECT_EQ(WholeItems("", ','), "");
}

TEST(Connection, BestHardwareInterfaceThatIsUp) {
  constexpr NetworkInterface kEthernet{.type = 6, .medium = 14, .hardware = true, .up = true};
  constexpr NetworkInterface kMobile{.type = 244, .medium = 8, .hardware = true, .up = true};
  constexpr NetworkInterface kWifi{.type = 71, .medium = 9, .hardware = true, .up = true};
  constexpr NetworkInterface kLoopback{.type = 24, .medium = 0, .hardware = true, .up = true};
  const auto name = [](std::vector<NetworkInterface> interfaces) { return ConnectionName(interfaces); };
  EXPECT_EQ(name({}), "Unknow");
  EXPECT_EQ(name({kLoopback}), "Unknow");
  EXPECT_EQ(name({kLoopback, kWifi}), "WIFI");
  EXPECT_EQ(name({kWifi, kMobile}), "WWANPP2");
  EXPECT_EQ(name({kWifi, kMobile, kEthernet}), "ETHERNET");
  for (const std::string_view better : {"WWANPP2", "WIFI"}) {
    NetworkInterface ethernet = kEthernet;
    (better == "WIFI" ? ethernet.up : ethernet.hardware) = false;
    NetworkInterface mobile = kMobile;
    if (better == "WIFI") mobile.hardware = false;
    EXPECT_EQ(name({ethernet, mobile, kWifi}), better);
  }
  // A network over Bluetooth is no cable.
  NetworkInterface bluetooth = kEthernet;
  bluetooth.medium = 10;
  EXPECT_EQ(name({bluetooth}), "Unknow");
}

TEST(WifiIndex, AnInterfaceThatIsUpComesBeforeTheFirst) {
  constexpr NetworkInterface kDown{.index = 3, .type = 71, .hardware = true};
  constexpr NetworkInterface kUp{.index = 5, .type = 71, .hardware = true, .up = true};
  constexpr NetworkInterface kOther{.index = 1, .type = 6, .hardware = true, .up = true};
  constexpr NetworkInterface kVirtual{.index = 2, .type = 71, .up = true};
  const auto index = [](std::vector<NetworkInterface> interfaces) { return WifiIndex(interfaces); };
  EXPECT_EQ(index({kOther, kVirtual}), std::nullopt);
  EXPECT_EQ(index({kOther, kVirtual, kDown, {.index = 4, .type = 71, .hardware = true}}), 3u);
  EXPECT_EQ(index({kDown, kUp}), 5u);
}

}  // namespace
}  // namespace vexa
