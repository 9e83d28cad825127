#include "radio/usb_port.h"

#include <winioctl.h>

#include <cfgmgr32.h>
#include <usbioctl.h>

#include <iterator>

namespace vexa {
namespace {

constexpr GUID kUsbDeviceInterface = {0xA5DCBF10, 0x6530, 0x11D2, {0x90, 0x1F, 0x00, 0xC0, 0x4F, 0xB9, 0x51, 0xED}};
constexpr wchar_t kHubInterface[] = L"{F18A0E88-C30C-11D0-8815-00A0C906BED8}";  // GUID_DEVINTERFACE_USB_HUB
constexpr size_t kTextCapacity = 260;

static_assert(IOCTL_USB_GET_DESCRIPTOR_FROM_NODE_CONNECTION == 0x220410);
static_assert(IOCTL_USB_GET_PORT_CONNECTOR_PROPERTIES == 0x220458);

constexpr uint32_t kUserConnectable = 1u << 0;  // of PortConnectorRecord::properties
constexpr uint32_t kConnectorIsTypeC = 1u << 3;

// The descriptor request of USB 2.0, section 9.4.3.
constexpr uint8_t kDeviceToHost = 0x80;
constexpr uint8_t kGetDescriptor = 6;
constexpr uint16_t kDeviceDescriptor = 0x0100;

#pragma pack(push, 1)
struct PortConnectorRecord {
  uint32_t connection_index;
  uint32_t actual_length;
  uint32_t properties;
  uint16_t companion_index;
  uint16_t companion_port;
  wchar_t companion_hub[1];
};
struct DescriptorRecord {
  uint32_t connection_index;
  uint8_t request_type;
  uint8_t request;
  uint16_t value;
  uint16_t index;
  uint16_t length;
  // The answer, USB 2.0 section 9.6.1.
  uint8_t descriptor_length;
  uint8_t descriptor_type;
  uint16_t bcd_usb;
  uint8_t device_class;
  uint8_t rest[13];
};
#pragma pack(pop)
static_assert(sizeof(PortConnectorRecord) == 18 && offsetof(PortConnectorRecord, properties) == 8);
static_assert(sizeof(DescriptorRecord) == 30 && offsetof(DescriptorRecord, bcd_usb) == 14);
constexpr uint16_t kDescriptorSize = sizeof(DescriptorRecord) - offsetof(DescriptorRecord, descriptor_length);
static_assert(kDescriptorSize == 18);

template <typename Record>
bool Request(const DeviceHandle& hub, DWORD code, Record& record) {
  DWORD returned = 0;
  return DeviceIoControl(hub.get(), code, &record, sizeof record, &record, sizeof record, &returned, nullptr);
}

std::optional<std::wstring> DeviceId(DEVINST device) {
  wchar_t id[kTextCapacity] = {};
  if (CM_Get_Device_IDW(device, id, std::size(id), 0) != CR_SUCCESS) return std::nullopt;
  return id;
}

// The device path of a hub, by its device instance id.
std::wstring HubPath(const std::wstring& id) {
  std::wstring path = L"\\\\.\\";
  for (const wchar_t character : id) path += character == L'\\' ? L'#' : character;
  return path + L'#' + kHubInterface;
}

}  // namespace

UsbDevices::UsbDevices()
    : set_(SetupDiGetClassDevsW(&kUsbDeviceInterface, nullptr, nullptr, DIGCF_PRESENT | DIGCF_DEVICEINTERFACE)) {}

bool UsbDevices::Next() {
  device_ = {.cbSize = sizeof device_};
  return set_ && SetupDiEnumDeviceInfo(set_.get(), next_++, &device_);
}

bool UsbDevices::Property(DWORD property, void* value, DWORD size) const {
  SP_DEVINFO_DATA device = device_;
  return SetupDiGetDeviceRegistryPropertyW(set_.get(), &device, property, nullptr, static_cast<BYTE*>(value), size,
                                           nullptr);
}

std::optional<std::wstring> UsbDevices::InstanceId() const { return DeviceId(device_.DevInst); }

std::optional<std::wstring> UsbDevices::Text(DWORD property) const {
  wchar_t text[kTextCapacity + 1] = {};  // a stored text need not be terminated
  if (!Property(property, text, kTextCapacity * sizeof(wchar_t))) return std::nullopt;
  return text;
}

std::optional<uint32_t> UsbDevices::PortNumber() const {
  uint32_t number = 0;
  return Property(SPDRP_ADDRESS, &number, sizeof number) ? std::optional(number) : std::nullopt;
}

DeviceHandle UsbDevices::OpenHub() const {
  DEVINST parent = 0;
  if (CM_Get_Parent(&parent, device_.DevInst, 0) != CR_SUCCESS) return {};
  const std::optional<std::wstring> id = DeviceId(parent);
  if (!id) return {};
  return DeviceHandle(
      CreateFileW(HubPath(*id).c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr));
}

std::optional<UsbPortProperties> AskPortProperties(const DeviceHandle& hub, uint32_t port) {
  PortConnectorRecord record{.connection_index = port};
  if (!Request(hub, IOCTL_USB_GET_PORT_CONNECTOR_PROPERTIES, record)) return std::nullopt;
  return UsbPortProperties{.user_connectable = (record.properties & kUserConnectable) != 0,
                           .type_c = (record.properties & kConnectorIsTypeC) != 0};
}

std::optional<UsbDeviceDescriptor> AskDeviceDescriptor(const DeviceHandle& hub, uint32_t port) {
  DescriptorRecord record{.connection_index = port,
                          .request_type = kDeviceToHost,
                          .request = kGetDescriptor,
                          .value = kDeviceDescriptor,
                          .length = kDescriptorSize};
  if (!Request(hub, IOCTL_USB_GET_DESCRIPTOR_FROM_NODE_CONNECTION, record)) return std::nullopt;
  return UsbDeviceDescriptor{.bcd_usb = record.bcd_usb, .device_class = record.device_class};
}

}  // namespace vexa
