// The master volume, on scripted audio devices.
#include <windows.h>

#include <endpointvolume.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <mmdeviceapi.h>

#include <limits>
#include <string>

#include "tests/support/call_script.h"
#include "tests/support/import_patch.h"
#include "tests/support/trace_recorder.h"
#include "vexa/system.h"

namespace vexa::test {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

class Volume;
Volume* g_test = nullptr;

// Counts references of the test's objects; none is destroyed by its last one.
template <typename Interface>
class Counted : public Interface {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }

  ULONG references = 0;
};

#define VEXA_NOT_USED(name, ...) \
  HRESULT STDMETHODCALLTYPE name(__VA_ARGS__) override { return E_NOTIMPL; }

class FakeVolume : public Counted<IAudioEndpointVolume> {
 public:
  HRESULT STDMETHODCALLTYPE GetMasterVolumeLevelScalar(float* level) override;
  VEXA_NOT_USED(RegisterControlChangeNotify, IAudioEndpointVolumeCallback*)
  VEXA_NOT_USED(UnregisterControlChangeNotify, IAudioEndpointVolumeCallback*)
  VEXA_NOT_USED(GetChannelCount, UINT*)
  VEXA_NOT_USED(SetMasterVolumeLevel, FLOAT, LPCGUID)
  VEXA_NOT_USED(SetMasterVolumeLevelScalar, FLOAT, LPCGUID)
  VEXA_NOT_USED(GetMasterVolumeLevel, FLOAT*)
  VEXA_NOT_USED(SetChannelVolumeLevel, UINT, FLOAT, LPCGUID)
  VEXA_NOT_USED(SetChannelVolumeLevelScalar, UINT, FLOAT, LPCGUID)
  VEXA_NOT_USED(GetChannelVolumeLevel, UINT, FLOAT*)
  VEXA_NOT_USED(GetChannelVolumeLevelScalar, UINT, FLOAT*)
  VEXA_NOT_USED(SetMute, WINBOOL, LPCGUID)
  VEXA_NOT_USED(GetMute, WINBOOL*)
  VEXA_NOT_USED(GetVolumeStepInfo, UINT*, UINT*)
  VEXA_NOT_USED(VolumeStepUp, LPCGUID)
  VEXA_NOT_USED(VolumeStepDown, LPCGUID)
  VEXA_NOT_USED(QueryHardwareSupport, DWORD*)
  VEXA_NOT_USED(GetVolumeRange, FLOAT*, FLOAT*, FLOAT*)
};

class FakeSpeaker : public Counted<IMMDevice> {
 public:
  HRESULT STDMETHODCALLTYPE Activate(REFIID id, DWORD context, PROPVARIANT* parameters, void** object) override;
  VEXA_NOT_USED(OpenPropertyStore, DWORD, IPropertyStore**)
  VEXA_NOT_USED(GetId, LPWSTR*)
  VEXA_NOT_USED(GetState, DWORD*)
};

class FakeDevices : public Counted<IMMDeviceEnumerator> {
 public:
  HRESULT STDMETHODCALLTYPE GetDefaultAudioEndpoint(EDataFlow flow, ERole role, IMMDevice** device) override;
  VEXA_NOT_USED(EnumAudioEndpoints, EDataFlow, DWORD, IMMDeviceCollection**)
  VEXA_NOT_USED(GetDevice, LPCWSTR, IMMDevice**)
  VEXA_NOT_USED(RegisterEndpointNotificationCallback, IMMNotificationClient*)
  VEXA_NOT_USED(UnregisterEndpointNotificationCallback, IMMNotificationClient*)
};

#undef VEXA_NOT_USED

class Volume : public testing::Test {
 public:
  Volume() {
    g_test = this;
    TraceRecorder::Get().TakeEvents();
  }
  ~Volume() override {
    EXPECT_EQ(References(), 0u);
    EXPECT_EQ(apartments, 0);
  }

  ULONG References() const { return devices.references + speaker.references + volume.references; }

  // What Windows' functions hand out, or the error that they are to fail with; hands out nothing then.
  template <typename Object>
  HRESULT Give(const std::string& call, const std::string& text, Object& object, void** out) {
    *out = nullptr;
    if (script.Fails(call, text)) return static_cast<HRESULT>(GetLastError());
    object.AddRef();
    *out = &object;
    return S_OK;
  }

  CallScript script;
  float level = 0.339F;
  int apartments = 0;
  FakeDevices devices;
  FakeSpeaker speaker;
  FakeVolume volume;

 private:
  static HRESULT WINAPI Enter(LPVOID, DWORD model) {
    if (g_test->script.Fails("CoInitializeEx", std::to_string(model))) return static_cast<HRESULT>(GetLastError());
    ++g_test->apartments;
    return S_OK;
  }
  static void WINAPI Leave() {
    (void)g_test->script.Fails("CoUninitialize");
    EXPECT_EQ(g_test->References(), 0u) << "held beyond the apartment";
    --g_test->apartments;
  }
  static HRESULT WINAPI Create(REFCLSID class_id, LPUNKNOWN outer, DWORD context, REFIID id, LPVOID* object) {
    EXPECT_EQ(outer, nullptr);
    EXPECT_TRUE(IsEqualGUID(class_id, __uuidof(MMDeviceEnumerator)));
    EXPECT_TRUE(IsEqualGUID(id, __uuidof(IMMDeviceEnumerator)));
    return g_test->Give("CoCreateInstance", std::to_string(context), g_test->devices, object);
  }

  ImportPatch enter_{"CoInitializeEx", Enter};
  ImportPatch leave_{"CoUninitialize", Leave};
  ImportPatch create_{"CoCreateInstance", Create};
};

HRESULT FakeVolume::GetMasterVolumeLevelScalar(float* level) {
  if (g_test->script.Fails("GetMasterVolumeLevelScalar")) return static_cast<HRESULT>(GetLastError());
  *level = g_test->level;
  return S_OK;
}

HRESULT FakeSpeaker::Activate(REFIID id, DWORD context, PROPVARIANT* parameters, void** object) {
  EXPECT_TRUE(IsEqualGUID(id, __uuidof(IAudioEndpointVolume)));
  EXPECT_EQ(parameters, nullptr);
  return g_test->Give("Activate", std::to_string(context), g_test->volume, object);
}

HRESULT FakeDevices::GetDefaultAudioEndpoint(EDataFlow flow, ERole role, IMMDevice** device) {
  return g_test->Give("GetDefaultAudioEndpoint", std::to_string(flow) + " " + std::to_string(role), g_test->speaker,
                      reinterpret_cast<void**>(device));
}

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
