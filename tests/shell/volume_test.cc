// The master volume, on scripted audio devices.
#include <limits>

#include "tests/support/fake_audio.h"
#include "tests/support/shell_test.h"
#include "vexa/system.h"

namespace vexa::test {
namespace {

class Volume : public ShellTest, protected FakeAudio {};

constexpr char kEntering[] = "5 [System_Read_VolumeLevel] Do Coinitialize()";
constexpr char kLeaving[] = "5 [System_Read_VolumeLevel] Do CoUninitialize()";
const Strings kCalls = {"CoCreateInstance 1", "GetDefaultAudioEndpoint 0 0", "Activate 1",
                        "GetMasterVolumeLevelScalar"};

TEST_F(Volume, IsCutToWholePercents) {
  const struct {
    float level;
    int32_t percent;
  } levels[] = {{0.339F, 33}, {1.0F, 100}, {0.0F, 0}, {0.999F, 99}, {std::numeric_limits<float>::quiet_NaN(), -1}};
  for (const auto& one : levels) {
    level = one.level;
    EXPECT_EQ(System_Read_VolumeLevel(0), one.percent) << one.level;
    EXPECT_THAT(script.Take(), ElementsAreArray(kCalls));
    EXPECT_EQ(References(), 0u);
  }
  EXPECT_THAT(Lines(), IsEmpty());
}

TEST_F(Volume, InitialisesComWhenAskedTo) {
  for (const uint8_t flag : {uint8_t{1}, uint8_t{0xFF}}) {
    EXPECT_EQ(System_Read_VolumeLevel(flag), 33);
    EXPECT_THAT(script.Take(),
                ElementsAre("CoInitializeEx 2", kCalls[0], kCalls[1], kCalls[2], kCalls[3], "CoUninitialize"));
    EXPECT_THAT(Lines(), ElementsAre(kEntering, kLeaving));
  }
}

TEST_F(Volume, AThreadOfAnotherApartmentStaysInIt) {
  script.Fail("CoInitializeEx", static_cast<DWORD>(RPC_E_CHANGED_MODE));
  EXPECT_EQ(System_Read_VolumeLevel(1), 33);
  EXPECT_THAT(script.Take(), ElementsAre("CoInitializeEx 2", kCalls[0], kCalls[1], kCalls[2], kCalls[3]));
  EXPECT_THAT(Lines(), ElementsAre(kEntering, kLeaving));
}

TEST_F(Volume, EachCallFailingInTurnGivesEverythingBack) {
  for (size_t i = 0; i < kCalls.size(); ++i) {
    script.FailOnly(static_cast<int>(i), static_cast<DWORD>(E_NOTIMPL));
    EXPECT_EQ(System_Read_VolumeLevel(0), -1) << kCalls[i];
    EXPECT_THAT(script.Take(), ElementsAreArray(kCalls.begin(), kCalls.begin() + static_cast<ptrdiff_t>(i) + 1));
    EXPECT_EQ(References(), 0u) << kCalls[i];
  }
}

}  // namespace
}  // namespace vexa::test
