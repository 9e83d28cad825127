// The trace metadata, read by a decoder of its own: it knows the public layout of TraceLogging blobs, not the encoder.
#include "frame/trace_metadata.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

namespace vexa::test {
namespace {

using testing::ElementsAre;

class Reader {
 public:
  Reader(const uint8_t* bytes, size_t size) : bytes_(bytes), size_(size) {}

  uint64_t Number(size_t width) {
    uint64_t number = 0;
    for (size_t i = 0; i < width; ++i) number |= uint64_t{Byte()} << (8 * i);
    return number;
  }
  std::string Text() {
    std::string text;
    while (const uint8_t byte = Byte()) text += static_cast<char>(byte);
    return text;
  }
  size_t position() const { return at_; }

 private:
  uint8_t Byte() {
    if (at_ >= size_) throw std::out_of_range("metadata ends inside a blob");
    return bytes_[at_++];
  }

  const uint8_t* bytes_;
  size_t size_;
  size_t at_ = 0;
};

struct DecodedEvent {
  uint64_t channel, level, opcode, keyword;
  std::string name;
  std::vector<std::pair<std::string, uint64_t>> fields;
};

struct Decoded {
  std::string signature;
  uint64_t header_size, version, flags, magic;
  uint64_t guid1, guid2, guid3, guid4;
  std::string provider;
  std::vector<DecodedEvent> events;
  size_t length = 0;
};

DecodedEvent DecodeEvent(Reader& reader) {
  DecodedEvent event{reader.Number(1), reader.Number(1), reader.Number(1), reader.Number(8), {}, {}};
  const size_t begin = reader.position();
  const size_t end = begin + reader.Number(2);
  while (reader.Number(1) & 0x80) {
  }
  event.name = reader.Text();
  while (reader.position() < end) {
    std::string field = reader.Text();
    event.fields.emplace_back(std::move(field), reader.Number(1));
  }
  EXPECT_EQ(reader.position(), end);
  return event;
}

Decoded Decode(const uint8_t* bytes, size_t size) {
  Reader reader(bytes, size);
  Decoded decoded;
  for (int i = 0; i < 4; ++i) decoded.signature += static_cast<char>(reader.Number(1));
  decoded.header_size = reader.Number(2);
  decoded.version = reader.Number(1);
  decoded.flags = reader.Number(1);
  decoded.magic = reader.Number(8);
  for (;;) {
    const uint64_t type = reader.Number(1);
    if (type == 1) break;
    if (type == 4) {
      decoded.guid1 = reader.Number(4);
      decoded.guid2 = reader.Number(2);
      decoded.guid3 = reader.Number(2);
      decoded.guid4 = std::byteswap(reader.Number(8));
      const size_t begin = reader.position();
      const size_t end = begin + reader.Number(2);
      decoded.provider = reader.Text();
      EXPECT_EQ(end - begin, 17u);
      EXPECT_EQ(reader.position(), end);
    } else if (type == 6) {
      decoded.events.push_back(DecodeEvent(reader));
    } else {
      ADD_FAILURE() << "blob type " << type;
      break;
    }
  }
  decoded.length = reader.position();
  return decoded;
}

TEST(TraceMetadata, DecodesToTheProviderAndFiveEvents) {
  static constexpr TraceMetadata kMetadata = MakeTraceMetadata();
  const Decoded decoded = Decode(reinterpret_cast<const uint8_t*>(&kMetadata), sizeof kMetadata);
  EXPECT_EQ(decoded.length, sizeof kMetadata);
  EXPECT_EQ(decoded.signature, "ETW0");
  EXPECT_EQ(decoded.header_size, 16u);
  EXPECT_EQ(decoded.version, 0u);
  EXPECT_EQ(decoded.flags, 1u);
  EXPECT_EQ(decoded.magic, 0xBB8A052B88040E86u);
  EXPECT_EQ(decoded.guid1, 0xf952fc4au);
  EXPECT_EQ(decoded.guid2, 0x5222u);
  EXPECT_EQ(decoded.guid3, 0x4dbbu);
  EXPECT_EQ(decoded.guid4, 0x9302c9b9dd9d7c9cu);
  EXPECT_EQ(decoded.provider, "VexaSysAnlsSrv");
  ASSERT_EQ(decoded.events.size(), 5u);
  for (size_t i = 0; i < 5; ++i) {
    const DecodedEvent& event = decoded.events[i];
    EXPECT_EQ(event.channel, 11u);
    EXPECT_EQ(event.level, i + 1);
    EXPECT_EQ(event.opcode, 0u);
    EXPECT_EQ(event.keyword, 0u);
    EXPECT_EQ(event.name, "VexaWinDll");
    EXPECT_THAT(event.fields, ElementsAre(std::pair<std::string, uint64_t>("wstr", 1)));
  }
}

}  // namespace
}  // namespace vexa::test
