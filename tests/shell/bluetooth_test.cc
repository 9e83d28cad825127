// The Bluetooth exports: what they collect, their lines, and every call failing in turn.
#include "radio/peripheral_snapshots.h"
#include "tests/support/fake_bluetooth.h"
#include "tests/support/shell_test.h"
#include "vexa/peripherals.h"

namespace vexa::test {
namespace {

constexpr uint32_t kNotCollected = 0xFFFFFC18;
constexpr uint32_t kFailed = 0x7FFFFFFF;
constexpr uint32_t kHeadset = 0x240404;
constexpr uint32_t kPhone = 0x5A020C;

std::string Types() { return RF_BTConnectedType().text; }

class Bluetooth : public ShellTest {
 protected:
  static void ExpectFailed() {
    // What the failed collection left, without another one.
    EXPECT_EQ(g_bluetooth.used, kFailed);
    EXPECT_EQ(g_bluetooth.connected, kFailed);
    EXPECT_EQ(g_bluetooth.types, "error_string");
    EXPECT_FALSE(g_bluetooth.collected);
  }

  FakeBluetooth bluetooth_;
};

TEST_F(Bluetooth, DevicesOfTheRadiosInOrder) {
  bluetooth_.radios = {{{kHeadset, kPhone}}, {{}}};
  EXPECT_EQ(RF_BTConnectedNum(), 2u);
  EXPECT_THAT(bluetooth_.script.Take(),
              ElementsAre("LoadLibraryExW", "BluetoothFindFirstRadio", "BluetoothGetRadioInfo 0",
                          "BluetoothFindFirstDevice", "BluetoothFindNextDevice", "BluetoothFindNextDevice",
                          "Close device search", "Close radio 0", "BluetoothFindNextRadio", "BluetoothGetRadioInfo 1",
                          "BluetoothFindFirstDevice", "Close radio 1", "BluetoothFindNextRadio", "Close radio search"));
  EXPECT_THAT(Lines(), ElementsAre("5 [RF] RF_BTConnectedNum FLAG FALSE", "5 RF_ReadBT_Info start",
                                   "5 BluetoothFindFirstRadio start", "5 BluetoothGetRadioInfo start",
                                   "5 BluetoothFindNextDevice error", "5 BluetoothGetRadioInfo start",
                                   "5 BluetoothFindFirstRadio error", "5 RF_ReadBT_Info End"));
  // The last radio decides "used", the last one with devices the rest. Nothing is asked any more.
  EXPECT_EQ(RF_BTIsUsed(), 0u);
  EXPECT_EQ(Types(), "Audio/Video;Phone;");
  EXPECT_THAT(bluetooth_.script.Take(), IsEmpty());
  EXPECT_THAT(Lines(), IsEmpty());
}

TEST_F(Bluetooth, ALaterRadioWithDevicesReplacesCountAndTypes) {
  bluetooth_.radios = {{{kHeadset, kPhone}}, {{}}, {{0x001F00}}};
  EXPECT_EQ(RF_BTIsUsed(), 1u);
  EXPECT_EQ(RF_BTConnectedNum(), 1u);
  EXPECT_EQ(Types(), "Uncategorized;");
}

TEST_F(Bluetooth, WithoutARadioNothingIsCollectedAndThatIsFinal) {
  EXPECT_EQ(RF_BTIsUsed(), kNotCollected);
  EXPECT_THAT(Lines(),
              ElementsAre("5 [RF] RF_BTIsUsed FLAG FALSE", "5 RF_ReadBT_Info start", "5 BluetoothFindFirstRadio start",
                          "5 BluetoothFindFirstRadio error", "5 RF_ReadBT_Info End"));
  EXPECT_THAT(bluetooth_.script.Take(), ElementsAre("LoadLibraryExW", "BluetoothFindFirstRadio"));
  bluetooth_.radios = {{{kPhone}}};
  EXPECT_EQ(RF_BTConnectedNum(), kNotCollected);
  EXPECT_EQ(Types(), "init_string");
  EXPECT_THAT(bluetooth_.script.Take(), IsEmpty());
}

TEST_F(Bluetooth, ARadioWithoutDevicesIsNotUsed) {
  bluetooth_.radios = {{{}}};
  EXPECT_EQ(RF_BTIsUsed(), 0u);
  EXPECT_EQ(RF_BTConnectedNum(), kNotCollected);
  EXPECT_EQ(Types(), "init_string");
}

TEST_F(Bluetooth, AFailureIsTriedAgainByEveryCallUntilItSucceeds) {
  bluetooth_.radios = {{{kPhone}}};
  bluetooth_.script.Fail("BluetoothGetRadioInfo", ERROR_GEN_FAILURE);
  EXPECT_EQ(RF_BTIsUsed(), kFailed);
  EXPECT_EQ(RF_BTConnectedNum(), kFailed);
  EXPECT_EQ(Types(), "error_string");
  EXPECT_EQ(CountOf(bluetooth_.script.Take(), "BluetoothGetRadioInfo 0"), 3);
  EXPECT_THAT(Lines(), Not(Contains("5 RF_ReadBT_Info End")));
  bluetooth_.script.Succeed("BluetoothGetRadioInfo");
  bluetooth_.radios.clear();
  // What the failure left is gone, also without a radio.
  EXPECT_EQ(Types(), "init_string");
  EXPECT_EQ(RF_BTIsUsed(), kNotCollected);
  EXPECT_EQ(RF_BTConnectedNum(), kNotCollected);
}

TEST_F(Bluetooth, EachCallFailing) {
  const struct {
    int index;
    const char* call;
    bool fails;  // the collection; else it ends as if there were no more
    std::string last_line;
  } calls[] = {
      {0, "LoadLibraryExW", true, "5 BluetoothFindFirstRadio error"},
      {1, "BluetoothFindFirstRadio", true, "5 BluetoothFindFirstRadio error"},
      {2, "BluetoothGetRadioInfo 0", true, "5 BluetoothGetRadioInfo start"},
      {3, "BluetoothFindFirstDevice", true, "5 BluetoothFindFirstRadio error"},
      {4, "BluetoothFindNextDevice", true, "5 BluetoothFindNextDevice error"},
      {5, "BluetoothFindNextDevice", true, "5 BluetoothFindNextDevice error"},
      {8, "BluetoothFindNextRadio", false, "5 RF_ReadBT_Info End"},
      {9, "BluetoothGetRadioInfo 1", true, "5 BluetoothGetRadioInfo start"},
      {10, "BluetoothFindFirstDevice", true, "5 BluetoothFindFirstRadio error"},
      {12, "BluetoothFindNextRadio", false, "5 RF_ReadBT_Info End"},
  };
  bluetooth_.radios = {{{kHeadset, kPhone}}, {{}}};
  for (const auto& call : calls) {
    SCOPED_TRACE(std::to_string(call.index) + " " + call.call);
    g_bluetooth = {};
    std::construct_at(&g_bluetooth_library, L"bluetoothapis.dll");
    bluetooth_.script.Take();
    Lines();
    bluetooth_.script.FailOnly(call.index, ERROR_GEN_FAILURE);
    const uint32_t used = RF_BTIsUsed();
    EXPECT_EQ(bluetooth_.script.Take().at(call.index), call.call);
    EXPECT_EQ(Lines().back(), call.last_line);
    EXPECT_THAT(bluetooth_.open, IsEmpty());
    if (call.fails) {
      EXPECT_EQ(used, kFailed);
      ExpectFailed();
    } else {
      EXPECT_EQ(g_bluetooth.types, "Audio/Video;Phone;");
      EXPECT_TRUE(g_bluetooth.collected);
    }
  }
}

TEST_F(Bluetooth, WithoutTheLibraryOrAFunctionOfItEveryCallFails) {
  bluetooth_.radios = {{{kPhone}}};
  bluetooth_.script.Fail("LoadLibraryExW", ERROR_MOD_NOT_FOUND);
  EXPECT_EQ(RF_BTIsUsed(), kFailed);
  EXPECT_EQ(RF_BTConnectedNum(), kFailed);
  EXPECT_EQ(Types(), "error_string");
  EXPECT_THAT(bluetooth_.script.Take(), ElementsAre("LoadLibraryExW", "LoadLibraryExW", "LoadLibraryExW"));
  bluetooth_.script.Succeed("LoadLibraryExW");
  for (const char* function :
       {"BluetoothFindFirstRadio", "BluetoothFindNextRadio", "BluetoothFindRadioClose", "BluetoothGetRadioInfo",
        "BluetoothFindFirstDevice", "BluetoothFindNextDevice", "BluetoothFindDeviceClose"}) {
    bluetooth_.missing_functions = {function};
    EXPECT_EQ(RF_BTIsUsed(), kFailed) << function;
  }
  // Loaded once, and no search was begun that could not be ended.
  EXPECT_THAT(bluetooth_.script.Take(), ElementsAre("LoadLibraryExW"));
  bluetooth_.missing_functions.clear();
  EXPECT_EQ(RF_BTIsUsed(), 1u);
}

TEST_F(Bluetooth, MoreTypesThanATextHoldsAreCutBetweenTwo) {
  bluetooth_.radios = {{std::vector<uint32_t>(100, 0x000300)}};
  EXPECT_EQ(RF_BTConnectedNum(), 100u);
  const std::string types = Types();
  EXPECT_EQ(types.size(), 39u * 26u);
  EXPECT_TRUE(types.ends_with("point;"));
}

}  // namespace
}  // namespace vexa::test
