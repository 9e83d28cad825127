// The radios and network interfaces of a simulated notebook.
#ifndef NOTEBOOK_RADIOS_MODEL_H_
#define NOTEBOOK_RADIOS_MODEL_H_

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace radios {

inline constexpr size_t kMaxSsid = 32;
// Characters of a name; one of full length is not terminated in what the calls deliver.
inline constexpr size_t kMaxWlanName = 256;
inline constexpr size_t kMaxBluetoothName = 248;

using Address = std::array<uint8_t, 6>;  // as it is written
using Bytes = std::vector<uint8_t>;

struct Guid {
  uint32_t first = 0;
  uint16_t second = 0;
  uint16_t third = 0;
  std::array<uint8_t, 8> rest{};
};

// A name of a network. The length that is told can differ from the bytes there are.
struct Ssid {
  Bytes bytes{};
  uint32_t told_length = 0;
};

// An access point as the adapter saw it.
struct Network {
  Ssid ssid{};
  Address bssid{};
  int32_t rssi_dbm = 0;
  uint32_t frequency_khz = 0;
  uint32_t phy = 0;
  uint32_t link_quality = 0;
  bool security = true;
  Bytes elements{};
  std::optional<uint32_t> told_offset{};  // of the elements, instead of the true one
  std::optional<uint32_t> told_size{};
};

struct Connection {
  Ssid ssid{};
  Address bssid{};
  uint32_t phy = 0;
  uint32_t signal_quality = 0;
  uint32_t rate_kbps = 0;
  std::u16string profile{};
  std::optional<uint32_t> answer_size{};  // bytes that the answer is cut to
};

struct WlanInterface {
  Guid guid{};
  std::u16string name{};
  uint32_t state = 0;
  std::optional<Connection> connection{};
  std::optional<uint32_t> channel{};
  std::vector<Network> networks{};
  std::optional<uint32_t> told_count{};  // of the networks, instead of the true one
  std::optional<uint32_t> told_size{};   // of their list
};

struct BluetoothDevice {
  std::u16string name{};
  Address address{};
  uint32_t device_class = 0;
  bool connected = true;
};

struct BluetoothRadio {
  std::u16string name{};
  Address address{};
  uint32_t device_class = 0;
  std::vector<BluetoothDevice> devices{};
};

// A row of the network interface table.
struct NetworkInterface {
  uint32_t index = 0;
  uint32_t type = 0;
  uint32_t medium = 0;
  bool hardware = true;
  bool up = true;
  Guid guid{};
  std::u16string name{};
};

// Makes calls fail or late. What a rule does not name, it does not look at.
struct Rule {
  std::string call{};
  std::optional<uint32_t> opcode{};
  uint64_t first = 1;
  uint64_t last = std::numeric_limits<uint64_t>::max();
  std::optional<uint32_t> fail{};
  uint32_t delay_ms = 0;
};

struct Model {
  std::optional<std::vector<WlanInterface>> wlan{};  // nothing: the machine's WLAN service does not run
  std::vector<BluetoothRadio> bluetooth{};
  std::vector<NetworkInterface> network{};
  std::vector<Rule> rules{};
};

}  // namespace radios

#endif  // NOTEBOOK_RADIOS_MODEL_H_
