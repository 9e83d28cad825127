// Where the answers of the exports come from: the EC's registers on the driver route, the firmware's on the other.
#ifndef CLIENT_RECORD_PLACES_H_
#define CLIENT_RECORD_PLACES_H_

#include <cstdint>
#include <span>
#include <string_view>

namespace vexahealth {

inline constexpr uint8_t kInformationGroup = 0;  // stands for the information registers, which have no group

// A number in the EC's registers, the low byte at the lower offset.
struct DriverPlace {
  std::string_view key;
  uint8_t group;
  uint8_t offset;
  uint8_t length;  // in bytes: 1, 2 or 4
};

// One bit of a register of one byte.
struct DriverBit {
  std::string_view key;
  uint8_t group;
  uint8_t offset;
  uint8_t bit;
};

// A block of the battery gauge behind the EC.
struct GaugePlace {
  std::string_view key;
  uint8_t gauge_register;
  bool text;  // else 32 bits
};

// A gauge register as the firmware's methods read it.
struct FirmwareGaugePlace {
  std::string_view key;
  uint8_t gauge_register;
};

// A byte, or a word, of the firmware's EC tables.
struct FirmwarePlace {
  std::string_view key;
  uint8_t table;
  uint8_t offset;
  uint8_t length;
};

std::span<const DriverPlace> DriverPlaces();
std::span<const DriverBit> DriverBits();
std::span<const GaugePlace> GaugePlaces();
std::span<const FirmwareGaugePlace> FirmwareGaugePlaces();
std::span<const FirmwarePlace> FirmwarePlaces();

}  // namespace vexahealth

#endif  // CLIENT_RECORD_PLACES_H_
