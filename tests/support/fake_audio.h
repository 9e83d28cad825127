// The default speaker behind COM's functions: scripted audio devices, recorded calls, a failure at any step.
#ifndef VEXA_TESTS_SUPPORT_FAKE_AUDIO_H_
#define VEXA_TESTS_SUPPORT_FAKE_AUDIO_H_

#include <windows.h>

#include <endpointvolume.h>
#include <gtest/gtest.h>
#include <mmdeviceapi.h>

#include <functional>
#include <optional>
#include <string>

#include "tests/support/call_script.h"
#include "tests/support/import_patch.h"

namespace vexa::test {

class FakeAudio;

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
  explicit FakeVolume(FakeAudio& audio) : audio_(audio) {}
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

 private:
  FakeAudio& audio_;
};

class FakeSpeaker : public Counted<IMMDevice> {
 public:
  explicit FakeSpeaker(FakeAudio& audio) : audio_(audio) {}
  HRESULT STDMETHODCALLTYPE Activate(REFIID id, DWORD context, PROPVARIANT* parameters, void** object) override;
  VEXA_NOT_USED(OpenPropertyStore, DWORD, IPropertyStore**)
  VEXA_NOT_USED(GetId, LPWSTR*)
  VEXA_NOT_USED(GetState, DWORD*)

 private:
  FakeAudio& audio_;
};

class FakeAudioDevices : public Counted<IMMDeviceEnumerator> {
 public:
  explicit FakeAudioDevices(FakeAudio& audio) : audio_(audio) {}
  HRESULT STDMETHODCALLTYPE GetDefaultAudioEndpoint(EDataFlow flow, ERole role, IMMDevice** device) override;
  VEXA_NOT_USED(EnumAudioEndpoints, EDataFlow, DWORD, IMMDeviceCollection**)
  VEXA_NOT_USED(GetDevice, LPCWSTR, IMMDevice**)
  VEXA_NOT_USED(RegisterEndpointNotificationCallback, IMMNotificationClient*)
  VEXA_NOT_USED(UnregisterEndpointNotificationCallback, IMMNotificationClient*)

 private:
  FakeAudio& audio_;
};

#undef VEXA_NOT_USED

// While it lives, this is the system's audio. A thread that leaves its apartment with something of it in hand, and what
// is not given back at the end, fail the test. One at a time.
class FakeAudio {
 public:
  FakeAudio() { now_ = this; }
  ~FakeAudio() {
    EXPECT_EQ(References(), 0u);
    EXPECT_EQ(apartments, 0);
    now_ = nullptr;
  }

  ULONG References() const { return devices.references + speaker.references + volume.references; }

  // Records a call; what it is to answer when it is to fail.
  std::optional<HRESULT> Enter(const std::string& call, const std::string& text = {}) {
    if (script.Fails(call, text)) return static_cast<HRESULT>(GetLastError());
    return fault ? fault(call) : std::nullopt;
  }
  // What Windows' functions hand out; nothing when they fail.
  template <typename Object>
  HRESULT Give(const std::string& call, const std::string& text, Object& object, void** out) {
    *out = nullptr;
    if (const std::optional<HRESULT> failure = Enter(call, text)) return *failure;
    object.AddRef();
    *out = &object;
    return S_OK;
  }

  CallScript script;
  std::function<std::optional<HRESULT>(const std::string& call)> fault;  // asked before a call is carried out
  float level = 0.339F;
  int apartments = 0;
  FakeAudioDevices devices{*this};
  FakeSpeaker speaker{*this};
  FakeVolume volume{*this};

 private:
  static HRESULT WINAPI EnterApartment(LPVOID, DWORD model) {
    if (const std::optional<HRESULT> failure = now_->Enter("CoInitializeEx", std::to_string(model))) return *failure;
    ++now_->apartments;
    return S_OK;
  }
  static void WINAPI LeaveApartment() {
    (void)now_->script.Fails("CoUninitialize");
    EXPECT_EQ(now_->References(), 0u) << "held beyond the apartment";
    --now_->apartments;
  }
  static HRESULT WINAPI Create(REFCLSID class_id, LPUNKNOWN outer, DWORD context, REFIID id, LPVOID* object) {
    EXPECT_EQ(outer, nullptr);
    EXPECT_TRUE(IsEqualGUID(class_id, __uuidof(MMDeviceEnumerator)));
    EXPECT_TRUE(IsEqualGUID(id, __uuidof(IMMDeviceEnumerator)));
    return now_->Give("CoCreateInstance", std::to_string(context), now_->devices, object);
  }

  static inline FakeAudio* now_ = nullptr;
  ImportPatch enter_{"CoInitializeEx", EnterApartment};
  ImportPatch leave_{"CoUninitialize", LeaveApartment};
  ImportPatch create_{"CoCreateInstance", Create};
};

inline HRESULT FakeVolume::GetMasterVolumeLevelScalar(float* level) {
  if (const std::optional<HRESULT> failure = audio_.Enter("GetMasterVolumeLevelScalar")) return *failure;
  *level = audio_.level;
  return S_OK;
}

inline HRESULT FakeSpeaker::Activate(REFIID id, DWORD context, PROPVARIANT* parameters, void** object) {
  EXPECT_TRUE(IsEqualGUID(id, __uuidof(IAudioEndpointVolume)));
  EXPECT_EQ(parameters, nullptr);
  return audio_.Give("Activate", std::to_string(context), audio_.volume, object);
}

inline HRESULT FakeAudioDevices::GetDefaultAudioEndpoint(EDataFlow flow, ERole role, IMMDevice** device) {
  return audio_.Give("GetDefaultAudioEndpoint", std::to_string(flow) + " " + std::to_string(role), audio_.speaker,
                     reinterpret_cast<void**>(device));
}

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_FAKE_AUDIO_H_
