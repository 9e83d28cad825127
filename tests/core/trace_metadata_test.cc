// The trace metadata against the public layout of TraceLogging blobs, written out byte by byte.
#include "frame/trace_metadata.h"

#include <gtest/gtest.h>

#include <string>

namespace vexa::test {
namespace {

TEST(TraceMetadata, IsTheProviderAndFiveEvents) {
  // Signature, the header's size and version, flags, magic.
  std::string expected("ETW0\x10\0\0\x01\x86\x0E\x04\x88\x2B\x05\x8A\xBB", 16);
  // The provider: its id, and its traits with their size.
  expected += std::string("\x04\x4A\xFC\x52\xF9\x22\x52\xBB\x4D\x93\x02\xC9\xB9\xDD\x9D\x7C\x9C", 17);
  expected += std::string("\x11\0VexaSysAnlsSrv\0", 17);
  for (char level = 1; level <= 5; ++level) {
    // Channel, level, opcode, keyword; the fields with their size: tag, event, one wide text.
    expected += std::string("\x06\x0B") + level + std::string(9, '\0');
    expected += std::string("\x14\0\0VexaWinDll\0wstr\0\x01", 20);
  }
  expected += '\x01';  // the end
  static constexpr TraceMetadata kMetadata = MakeTraceMetadata();
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(&kMetadata), sizeof kMetadata), expected);
}

}  // namespace
}  // namespace vexa::test
