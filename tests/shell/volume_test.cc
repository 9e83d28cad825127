// The master volume, on scripted audio devices.
#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "tests/support/fake_audio.h"
#include "tests/support/trace_recorder.h"
#include "vexa/system.h"

namespace vexa::test {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

class Volume : public testing::Test, protected FakeAudio {
 protected:
  Volume() { TraceRecorder::Get().TakeEvents(); }
};

constexpr char kEntering[] = "5 [System_Read_VolumeLevel] Do Coinitialize()";
constexpr char kLeaving[] = "5 [System_Read_VolumeLevel] Do CoUninitialize()";
const std::vector<std::string> kCalls = {"CoCreateInstance 1", "GetDefaultAudioEndpoint 0 0", "Activate 1",
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
  EXPECT_THAT(TraceRecorder::Get().TakeLines(), IsEmpty());
}

TEST_F(Volume, InitialisesComWhenAskedTo) {
  for (const uint8_t flag : {uint8_t{1}, uint8_t{0xFF}}) {
    EXPECT_EQ(System_Read_VolumeLevel(flag), 33);
    EXPECT_THAT(script.Take(),
                ElementsAre("CoInitializeEx 2", kCalls[0], kCalls[1], kCalls[2], kCalls[3], "CoUninitialize"));
    EXPECT_THAT(TraceRecorder::Get().TakeLines(), ElementsAre(kEntering, kLeaving));
  }
}

TEST_F(Volume, AThreadOfAnotherApartmentStaysInIt) {
  script.Fail("CoInitializeEx", static_cast<DWORD>(RPC_E_CHANGED_MODE));
  EXPECT_EQ(System_Read_VolumeLevel(1), 33);
  EXPECT_THAT(script.Take(), ElementsAre("CoInitializeEx 2", kCalls[0], kCalls[1], kCalls[2], kCalls[3]));
  EXPECT_THAT(TraceRecorder::Get().TakeLines(), ElementsAre(kEntering, kLeaving));
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
