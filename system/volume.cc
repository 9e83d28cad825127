// The master volume of the default speaker, from the system's audio devices.
#include <windows.h>

#include <endpointvolume.h>
#include <mmdeviceapi.h>
#include <wrl/client.h>

#include <cstdint>

#include "frame/log.h"
#include "system/texts.h"
#include "vexa/system.h"
#include "wmi/com_apartment.h"

namespace vexa {
namespace {

using Microsoft::WRL::ComPtr;

// Null when there is no default speaker, or the thread has no COM.
ComPtr<IAudioEndpointVolume> DefaultSpeakerVolume() noexcept {
  ComPtr<IMMDeviceEnumerator> devices;
  if (FAILED(CoCreateInstance(__uuidof(MMDeviceEnumerator), nullptr, CLSCTX_INPROC_SERVER,
                              __uuidof(IMMDeviceEnumerator), &devices))) {
    return nullptr;
  }
  ComPtr<IMMDevice> speaker;
  if (FAILED(devices->GetDefaultAudioEndpoint(eRender, eConsole, &speaker)) || !speaker) return nullptr;
  ComPtr<IAudioEndpointVolume> volume;
  if (FAILED(speaker->Activate(__uuidof(IAudioEndpointVolume), CLSCTX_INPROC_SERVER, nullptr, &volume))) return nullptr;
  return volume;
}

int32_t VolumeLevel() noexcept {
  const ComPtr<IAudioEndpointVolume> volume = DefaultSpeakerVolume();
  float scalar = 0.0F;
  if (!volume || FAILED(volume->GetMasterVolumeLevelScalar(&scalar))) return VEXA_NO_VOLUME;
  return VolumePercent(scalar).value_or(VEXA_NO_VOLUME);
}

}  // namespace
}  // namespace vexa

int32_t System_Read_VolumeLevel(uint8_t initialize_com) noexcept {
  using namespace vexa;
  const bool com = initialize_com != 0;
  if (com) LogInfo("[System_Read_VolumeLevel] Do Coinitialize()");
  const ComApartment apartment(com, COINIT_APARTMENTTHREADED);
  // Every interface is given back in here, before the apartment is left.
  const int32_t level = VolumeLevel();
  if (com) LogInfo("[System_Read_VolumeLevel] Do CoUninitialize()");
  return level;
}
