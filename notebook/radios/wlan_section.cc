// The WLAN interfaces of the section, and the access points that they see.
#include <algorithm>
#include <iterator>

#include "scenario/texts.h"
#include "section.h"

namespace radios {
namespace {

using scenario::Concat;

constexpr size_t kMaxInterfaces = 64;
constexpr size_t kMaxNetworks = 4096;
constexpr size_t kMaxElements = 256;
constexpr size_t kMaxElementBody = 255;
constexpr uint32_t kMaxPhy = 0xFFFF;
constexpr uint8_t kExtensionElement = 255;

// By their value in the WLAN API.
constexpr std::string_view kStates[] = {"not ready",    "connected",   "ad hoc",      "disconnecting",
                                        "disconnected", "associating", "discovering", "authenticating"};
constexpr uint32_t kConnected = 1;

uint32_t ReadState(const ObjectReader& row, Faults& faults) {
  const JsonValue* member = row.Require("state");
  if (member == nullptr || !scenario::Expect(*member, "state", JsonValue::Kind::kText, faults)) return 0;
  const auto state = std::ranges::find(kStates, std::string_view(member->text));
  if (state == std::end(kStates)) faults.Add(member->line, Concat("\"", member->text, "\" is no state"));
  return static_cast<uint32_t>(state - std::begin(kStates));
}

// A text, or {"hex": ...}; {"length": ...} tells another length.
Ssid ReadSsid(const ObjectReader& row, Faults& faults) {
  Ssid ssid;
  const JsonValue* member = row.Require("ssid");
  if (member == nullptr) return ssid;
  if (member->kind == JsonValue::Kind::kObject) {
    const ObjectReader form(*member, "ssid", {"hex", "length"}, faults);
    const JsonValue* hex = form.Require("hex");
    if (hex != nullptr) ssid.bytes = scenario::ReadHex(*hex, "hex", faults).value_or(Bytes{});
    ssid.told_length = static_cast<uint32_t>(form.Number("length", scenario::kDwordRange, ssid.bytes.size()));
  } else if (scenario::Expect(*member, "ssid", JsonValue::Kind::kText, faults)) {
    ssid.bytes.assign(member->text.begin(), member->text.end());
    ssid.told_length = static_cast<uint32_t>(ssid.bytes.size());
  }
  if (ssid.bytes.size() > kMaxSsid) {
    faults.Add(member->line, Concat("\"ssid\" has ", ssid.bytes.size(), " bytes; the limit is ", kMaxSsid));
    ssid.bytes.resize(kMaxSsid);
  }
  return ssid;
}

Bytes HexOf(const ObjectReader& row, std::string_view key, Faults& faults) {
  const JsonValue* hex = row.Find(key);
  return hex == nullptr ? Bytes{} : scenario::ReadHex(*hex, key, faults).value_or(Bytes{});
}

// {"id": 45, "hex": ...} with the length that it has; {"extension": 35, "hex": ...}; {"raw": ...} as it stands.
void AppendElement(const JsonValue& value, Bytes& elements, Faults& faults) {
  const ObjectReader row(value, "elements", {"id", "extension", "raw", "hex", "name"}, faults);
  const std::string_view form = row.OneOf({"id", "extension", "raw"}, true);
  Bytes body = HexOf(row, form == "raw" ? "raw" : "hex", faults);
  if (form != "raw") {
    const auto number = static_cast<uint8_t>(row.Number(form, scenario::kByteRange, 0));
    if (form == "extension") body.insert(body.begin(), number);
    if (body.size() > kMaxElementBody) {
      faults.Add(row.line(), Concat("an element has ", body.size(), " bytes; the limit is ", kMaxElementBody));
    }
    elements.push_back(form == "extension" ? kExtensionElement : number);
    elements.push_back(static_cast<uint8_t>(body.size()));
  } else if (row.Find("hex") != nullptr) {
    faults.Add(row.line(), "\"elements\" cannot have both \"raw\" and \"hex\"");
  }
  elements.insert(elements.end(), body.begin(), body.end());
}

Network ReadNetwork(const JsonValue& value, Faults& faults) {
  const ObjectReader row(value, "networks",
                         {"ssid", "bssid", "rssi_dbm", "frequency_khz", "phy", "link_quality", "security", "elements",
                          "told_offset", "told_size"},
                         faults);
  Network network;
  network.ssid = ReadSsid(row, faults);
  network.bssid = ReadAddress(row, "bssid", faults);
  network.rssi_dbm = static_cast<int32_t>(row.RequireNumber("rssi_dbm", {INT32_MIN, INT32_MAX}));
  network.frequency_khz = static_cast<uint32_t>(row.RequireNumber("frequency_khz", scenario::kDwordRange));
  network.phy = static_cast<uint32_t>(row.Number("phy", {0, kMaxPhy}, 0));
  network.link_quality = static_cast<uint32_t>(row.Number("link_quality", scenario::kDwordRange, 0));
  network.security = row.Boolean("security", true);
  for (const JsonValue& element : row.Array("elements", kMaxElements)) {
    AppendElement(element, network.elements, faults);
  }
  network.told_offset = ReadOptional(row, "told_offset", scenario::kDwordRange);
  network.told_size = ReadOptional(row, "told_size", scenario::kDwordRange);
  return network;
}

Connection ReadConnection(const JsonValue& value, Faults& faults) {
  const ObjectReader row(value, "connection",
                         {"ssid", "bssid", "phy", "signal_quality", "rate_kbps", "profile", "answer_size"}, faults);
  Connection connection;
  connection.ssid = ReadSsid(row, faults);
  connection.bssid = ReadAddress(row, "bssid", faults);
  connection.phy = static_cast<uint32_t>(row.RequireNumber("phy", scenario::kDwordRange));
  connection.signal_quality = static_cast<uint32_t>(row.Number("signal_quality", scenario::kDwordRange, 0));
  connection.rate_kbps = static_cast<uint32_t>(row.Number("rate_kbps", scenario::kDwordRange, 0));
  if (row.Find("profile") != nullptr) connection.profile = ReadName(row, "profile", kMaxWlanName, faults);
  connection.answer_size = ReadOptional(row, "answer_size", {0, 0xFFFF});
  return connection;
}

WlanInterface ReadInterface(const JsonValue& value, Faults& faults) {
  const ObjectReader row(value, "interfaces",
                         {"guid", "name", "state", "connection", "channel", "networks", "told_count", "told_size"},
                         faults);
  WlanInterface entry;
  entry.guid = ReadGuid(row, "guid", faults);
  entry.name = ReadName(row, "name", kMaxWlanName, faults);
  entry.state = ReadState(row, faults);
  if (const JsonValue* connection = row.Find("connection")) entry.connection = ReadConnection(*connection, faults);
  if (entry.state == kConnected && !entry.connection) {
    faults.Add(row.line(), "a connected interface needs \"connection\"");
  }
  entry.channel = ReadOptional(row, "channel", scenario::kDwordRange);
  for (const JsonValue& network : row.Array("networks", kMaxNetworks)) {
    entry.networks.push_back(ReadNetwork(network, faults));
  }
  entry.told_count = ReadOptional(row, "told_count", scenario::kDwordRange);
  entry.told_size = ReadOptional(row, "told_size", scenario::kDwordRange);
  return entry;
}

}  // namespace

std::vector<WlanInterface> ReadWlan(const JsonValue& value, Faults& faults) {
  const ObjectReader section(value, "wlan", {"interfaces"}, faults);
  std::vector<WlanInterface> interfaces;
  for (const JsonValue& entry : section.Array("interfaces", kMaxInterfaces)) {
    interfaces.push_back(ReadInterface(entry, faults));
  }
  return interfaces;
}

}  // namespace radios
