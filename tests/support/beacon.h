// Beacons, put together byte by byte without the library's help (IEEE 802.11-2020, 9.4.2).
#ifndef VEXA_TESTS_SUPPORT_BEACON_H_
#define VEXA_TESTS_SUPPORT_BEACON_H_

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace vexa::test::beacon {

using ByteText = std::string;  // bytes, zeros included

inline ByteText Little(uint64_t number, int size) {
  ByteText bytes;
  for (int i = 0; i < size; ++i) bytes += static_cast<char>(number >> 8 * i);
  return bytes;
}
inline ByteText Zeros(size_t count) { return ByteText(count, '\0'); }

inline ByteText Element(uint8_t id, const ByteText& body) {
  return ByteText{static_cast<char>(id), static_cast<char>(body.size())} + body;
}

inline ByteText Ssid(std::string_view name) { return Element(0, ByteText(name)); }
inline ByteText Rates() { return Element(1, "\x82\x84\x8B\x96\x0C\x12\x18\x24"); }

// HT Capabilities. info: bit 1 40 MHz, bit 5 short interval at 20 MHz, bit 6 at 40 MHz. streams: one byte of MCS bits
// each.
inline ByteText Ht(uint16_t info, std::initializer_list<uint8_t> streams) {
  ByteText mcs;
  for (const uint8_t bits : streams) mcs += static_cast<char>(bits);
  mcs.resize(16);
  return Element(45, Little(info, 2) + "\x17" + mcs + Zeros(7));
}
inline constexpr uint16_t kHt20 = 0x0020, kHt40 = 0x0062, kHtLong20 = 0x0000, kHtLong40 = 0x0002;

// HT Operation. 20 MHz; 40 MHz with the secondary channel above, below.
inline ByteText HtOperation(uint8_t information) {
  return Element(61, ByteText{36, static_cast<char>(information)} + Zeros(20));
}
inline ByteText Ht20() { return HtOperation(0x00); }
inline ByteText Ht40() { return HtOperation(0x05); }

// VHT Capabilities. info: bits 2-3 width set, bit 5 short interval at 80 MHz, bit 6 at 160 MHz. map: two bits per
// stream.
inline ByteText Vht(uint32_t info, uint16_t receive_map) {
  return Element(191, Little(info, 4) + Little(receive_map, 2) + Zeros(2) + Little(0xFFFF, 2) + Zeros(2));
}
inline constexpr uint32_t kVht80 = 0x20, kVht160 = 0x64, kVht80Plus80 = 0x68;

inline ByteText VhtOperation(uint8_t width, uint8_t first = 42, uint8_t second = 0) {
  return Element(
      192, ByteText{static_cast<char>(width), static_cast<char>(first), static_cast<char>(second)} + Little(0xFFFC, 2));
}

// HE Capabilities. widths: bit 1 40 MHz in 2.4 GHz, bit 2 80 MHz, bit 3 160 MHz, bit 4 80+80 MHz. receive_maps: up to
// 80 MHz, then 160, then 80+80; the transmit maps beside them differ.
inline ByteText He(uint8_t widths, std::initializer_list<uint16_t> receive_maps) {
  ByteText maps;
  for (const uint16_t map : receive_maps) maps += Little(map, 2) + Little(0xAAAA, 2);
  return Element(255, "\x23" + Zeros(6) + static_cast<char>(widths) + Zeros(10) + maps);
}
inline constexpr uint8_t kHe20 = 0, kHe40 = 2, kHe80 = 4, kHe160 = 0x0C, kHe80Plus80 = 0x1C;

inline ByteText Vendor(const ByteText& wrapped) { return Element(221, ByteText("\x00\x90\x4C\x04\x08", 5) + wrapped); }

}  // namespace vexa::test::beacon

#endif  // VEXA_TESTS_SUPPORT_BEACON_H_
