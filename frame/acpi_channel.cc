#include "frame/acpi_channel.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "frame/handles.h"
#include "frame/log.h"

namespace vexa {
namespace {

constexpr wchar_t kAcpiDevice[] = L"\\\\.\\OBXACPI";
constexpr DWORD kCallMethod = 0x0022240C;  // FILE_DEVICE_UNKNOWN, function 0x903, buffered, any access
constexpr size_t kAnswerCapacity = 1024;
constexpr uint32_t kDstsSelector = 0x001200F2;
constexpr uint32_t kDevsSelector = 0x00060059;

struct MethodHeader {
  char name[4];
  uint32_t argument_bytes;
};
static_assert(sizeof(MethodHeader) == 8);

template <size_t kCount>
uint32_t CallForWord(const char (&name)[5], const std::array<uint32_t, kCount>& arguments, uint32_t* result) {
  uint32_t word = 0;
  size_t copied = 0;
  if (AcpiMethod(name, std::as_bytes(std::span(arguments)), std::as_writable_bytes(std::span(&word, 1)), &copied) ==
      0) {
    return 0;
  }
  *result = copied == sizeof word ? word : 0;
  return 1;
}

}  // namespace

uint32_t AcpiMethod(const char (&name)[5], std::span<const std::byte> arguments, std::span<std::byte> result,
                    size_t* copied) {
  *copied = 0;
  const DeviceHandle device(CreateFileW(kAcpiDevice, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                        nullptr, OPEN_EXISTING, 0, nullptr));
  if (!device) return 0;

  MethodHeader header{.name = {}, .argument_bytes = static_cast<uint32_t>(arguments.size())};
  std::memcpy(header.name, name, sizeof header.name);
  std::vector<std::byte> request(sizeof header + arguments.size());
  std::memcpy(request.data(), &header, sizeof header);
  std::ranges::copy(arguments, request.begin() + sizeof header);

  std::array<std::byte, kAnswerCapacity> answer{};
  DWORD returned = 0;
  if (!DeviceIoControl(device.get(), kCallMethod, request.data(), static_cast<DWORD>(request.size()), answer.data(),
                       answer.size(), &returned, nullptr)) {
    return 0;
  }
  *copied = std::min({static_cast<size_t>(returned), answer.size(), result.size()});
  std::copy_n(answer.begin(), *copied, result.begin());
  return 1;
}

uint32_t AcpiDsts(uint32_t argument, uint32_t* result) {
  LogInfo(L"[ACPI_OBX_DSTS] Arg = 0x%x", argument);
  if (CallForWord("DSTS", std::array{argument}, result) == 0) return 0;
  LogInfo(L"[ACPI_OBX_DSTS] return = 0x%x", *result);
  return 1;
}

uint32_t AcpiDstsWithValue(uint32_t value, uint32_t* result) {
  return CallForWord("DSTS", std::array{kDstsSelector, value}, result);
}

uint32_t AcpiDevs(uint32_t value, uint32_t* result) {
  LogInfo(L"[ACPI_OBX_DEVS] Arg0 = 0x%x, Arg1 = 0x%x", kDevsSelector, value);
  if (CallForWord("DEVS", std::array{kDevsSelector, value}, result) == 0) return 0;
  LogInfo(L"[ACPI_OBX_DEVS] return = 0x%x", *result);
  return 1;
}

}  // namespace vexa
