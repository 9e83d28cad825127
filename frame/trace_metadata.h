// The provider's TraceLogging metadata as one compile-time constant.
//
// Layout as public TraceLogging decoders expect it: a section header ("ETW0"), then byte-packed blobs, each led by a
// type byte. Decoders that scan a file find the header; ETW itself is handed the tails of the blobs, from their
// 16-bit size on, which is the provider's traits and each event's metadata.
#ifndef VEXA_FRAME_TRACE_METADATA_H_
#define VEXA_FRAME_TRACE_METADATA_H_

#include <array>
#include <cstddef>
#include <cstdint>

namespace vexa {

inline constexpr char kTraceProviderName[] = "VexaSysAnlsSrv";
inline constexpr char kTraceEventName[] = "VexaWinDll";
inline constexpr char kTraceFieldName[] = "wstr";

// {f952fc4a-5222-4dbb-9302-c9b9dd9d7c9c}
struct TraceGuid {
  uint32_t data1 = 0xf952fc4a;
  uint16_t data2 = 0x5222;
  uint16_t data3 = 0x4dbb;
  uint8_t data4[8] = {0x93, 0x02, 0xc9, 0xb9, 0xdd, 0x9d, 0x7c, 0x9c};
};

inline constexpr int kTraceLevels = 5;
inline constexpr uint8_t kTraceChannel = 11;  // the channel that marks an event as self-describing

enum class TraceBlob : uint8_t { kEnd = 1, kProvider = 4, kEvent = 6 };
inline constexpr uint8_t kTraceInUnicodeString = 1;  // zero-terminated UTF-16

#pragma pack(push, 1)

struct TraceSectionHeader {
  char signature[4] = {'E', 'T', 'W', '0'};
  uint16_t size = 16;
  uint8_t version = 0;
  uint8_t flags = 1;  // 64-bit module
  uint64_t magic = 0xBB8A052B88040E86;
};

struct TraceTraits {
  uint16_t size = sizeof(TraceTraits);
  char name[sizeof(kTraceProviderName)] = {};
};

struct TraceProviderBlob {
  TraceBlob type = TraceBlob::kProvider;
  TraceGuid guid;
  TraceTraits traits;
};

struct TraceEventFields {
  uint16_t size = sizeof(TraceEventFields);
  uint8_t tags = 0;
  char event_name[sizeof(kTraceEventName)] = {};
  char field_name[sizeof(kTraceFieldName)] = {};
  uint8_t field_type = kTraceInUnicodeString;
};

struct TraceEventBlob {
  TraceBlob type = TraceBlob::kEvent;
  uint8_t channel = kTraceChannel;
  uint8_t level = 0;
  uint8_t opcode = 0;
  uint64_t keyword = 0;
  TraceEventFields fields;
};

struct TraceMetadata {
  TraceSectionHeader header;
  TraceProviderBlob provider;
  std::array<TraceEventBlob, kTraceLevels> events;
  TraceBlob end = TraceBlob::kEnd;
};

#pragma pack(pop)

static_assert(sizeof(TraceSectionHeader) == 16);
static_assert(sizeof(TraceTraits) == 17 && sizeof(TraceProviderBlob) == 34);
static_assert(sizeof(TraceEventFields) == 20 && sizeof(TraceEventBlob) == 32);

constexpr TraceMetadata MakeTraceMetadata() {
  constexpr auto copy = [](const auto& from, auto& to) {
    for (size_t i = 0; i < sizeof(from); ++i) to[i] = from[i];
  };
  TraceMetadata metadata;
  copy(kTraceProviderName, metadata.provider.traits.name);
  for (uint8_t level = 1; level <= kTraceLevels; ++level) {
    TraceEventBlob& event = metadata.events[level - 1];
    event.level = level;
    copy(kTraceEventName, event.fields.event_name);
    copy(kTraceFieldName, event.fields.field_name);
  }
  return metadata;
}

}  // namespace vexa

#endif  // VEXA_FRAME_TRACE_METADATA_H_
