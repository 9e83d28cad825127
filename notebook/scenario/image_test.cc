// The driver takes an image from a file that anyone can write: no image may make it read or write outside.
#include <iterator>
#include <random>

#include "test_cases.h"
#include "test_notebook.h"

namespace scenario {
namespace {

std::vector<uint8_t> Image(const std::string& name) {
  Faults faults;
  std::vector<uint8_t> image = CompileScenario(ReadWhole(SCENARIO_FOLDER "/" + name), faults);
  EXPECT_TRUE(faults.Empty());
  return image;
}

ImageFault Attach(std::vector<uint8_t> image) {
  Notebook notebook;
  return AttachImage(image.data(), image.size(), &notebook);
}

void Sign(std::vector<uint8_t>& image) {
  auto* header = reinterpret_cast<ImageHeader*>(image.data());
  header->checksum = ImageChecksum(image.data() + IMAGE_CHECKED_FROM, image.size() - IMAGE_CHECKED_FROM);
}

TEST(Image, EveryTruncationIsNoticed) {
  const std::vector<uint8_t> image = Image("healthy-x64.json");
  for (size_t size = 0; size < image.size(); ++size) {
    ASSERT_EQ(Attach({image.begin(), image.begin() + static_cast<std::ptrdiff_t>(size)}), kImageTruncated) << size;
  }
}

TEST(Image, EveryFaultHasItsName) {
  const std::vector<uint8_t> good = Image("healthy-x64.json");
  std::vector<uint8_t> image = good;
  image[0] ^= 1;
  EXPECT_EQ(Attach(image), kImageWrongMagic);
  image = good;
  image[4] ^= 2;
  EXPECT_EQ(Attach(image), kImageWrongVersion);
  for (size_t i = IMAGE_CHECKED_FROM; i < good.size(); i += 97) {
    image = good;
    image[i] ^= 0x10;
    EXPECT_EQ(Attach(image), kImageWrongChecksum) << i;
  }
  image = good;
  image.push_back(0);
  EXPECT_EQ(Attach(image), kImageInconsistent);
}

// Asks for everything, so that a sanitizer sees any access outside.
void AskAll(Notebook& notebook) {
  EcRecord record{};
  for (int command : {0xBB, 0xDD, 0xDE, 0x87}) {
    for (int group = 0; group < 256; group += command == 0xDD ? 1 : 255) {
      for (int offset = 0; offset < 256; ++offset) {
        record = {};
        record.command = static_cast<uint8_t>(command);
        record.count = command == 0xBB ? 1 : command == 0xDE ? 2 : 3;
        record.data[0] = static_cast<uint8_t>(command == 0xDE ? 1 + offset % 3 : command == 0xBB ? offset : group);
        record.data[1] = static_cast<uint8_t>(offset);
        record.data[2] = static_cast<uint8_t>(offset * 7);
        record.read = 1;
        EcExchange(&notebook, &record);
        ApplyRules(&notebook, kRuleControl, 0x80102070, &record);
      }
    }
  }
  uint8_t output[8];
  uint32_t length = 0;
  const uint32_t arguments[4] = {0x00060059, 1, 2, 3};
  for (uint32_t count = 0; count <= 4; ++count) {
    AcpiCall(&notebook, "DEVS", arguments, count, output, sizeof(output), &length);
    AcpiCall(&notebook, "DSTS", arguments, count, output, sizeof(output), &length);
    EXPECT_LE(length, sizeof(output));
  }
}

// Random damage under a right checksum. What is taken in spite of it must be harmless.
TEST(Image, DamageIsRefusedOrHarmless) {
  std::mt19937 random(20250317);
  int taken = 0;
  for (const char* name : {"healthy-x64.json", "hostile-answers.json"}) {
    const std::vector<uint8_t> good = Image(name);
    for (int round = 0; round < 300; ++round) {
      std::vector<uint8_t> image = good;
      for (unsigned i = 0; i <= round % 4u; ++i) {
        // Half of the damage goes to the header, which holds the offsets and counts.
        const size_t span = random() % 2 ? image.size() - IMAGE_CHECKED_FROM : sizeof(ImageHeader) - IMAGE_CHECKED_FROM;
        image[IMAGE_CHECKED_FROM + random() % span] = static_cast<uint8_t>(random());
      }
      Sign(image);
      Notebook notebook;
      if (AttachImage(image.data(), image.size(), &notebook) != kImageGood) continue;
      ++taken;
      AskAll(notebook);
    }
  }
  EXPECT_GT(taken, 50);
}

TEST(Image, IndexesAreChecked) {
  const std::vector<uint8_t> good = Image("healthy-x64.json");
  using Damage = void (*)(Notebook&);
  constexpr Damage kDamages[] = {
      [](Notebook& n) { n.header->group_blocks[5] = 200; },
      [](Notebook& n) { n.header->information_block = 200; },
      [](Notebook& n) { n.header->sections[kImageRules].count = 0x10000000; },
      [](Notebook& n) { n.header->sections[kImageBlocks].offset += 4; },
      [](Notebook& n) { n.header->sections[kImageGauge].offset = 0xFFFFFFF8; },
      [](Notebook& n) { n.header->start_status = 0x103; },
      [](Notebook& n) { n.header->acpi_fail = 1; },
      [](Notebook& n) { n.header->unlisted.on_read = kReadItem; },
      [](Notebook& n) { n.cells[7] = {0, 0, kReadItem, 0, 99}; },
      [](Notebook& n) { n.cells[7] = {0, n.lists[0].columns, kReadItem, 0, 0}; },
      [](Notebook& n) { n.cells[7] = {0, 0, kReadByte, kWriteSelect, 99}; },
      [](Notebook& n) { n.cells[7] = {0, 32, kReadHandshakeData, 0, 0}; },
      [](Notebook& n) { n.cells[7].on_write = kWriteActionCount; },
      [](Notebook& n) { n.lists[2].items = n.lists[2].columns = 255; },
      [](Notebook& n) { n.lists[2].first_value = 0xFFFFFFFF; },
      [](Notebook& n) { n.gauge[1].length = 33; },
      [](Notebook& n) { n.commands[0].length = 9; },
      [](Notebook& n) { n.methods[0].argument_count = 5; },
      [](Notebook& n) { n.methods[0].byte_count = 1025; },
      [](Notebook& n) { n.methods[0].first_byte = 0xFFFFFFFE; },
      [](Notebook& n) { n.methods[0].first_byte = n.header->sections[kImageAcpiBytes].count - 1; },
      [](Notebook& n) { n.methods[0].sets = 1000; },
  };
  for (size_t i = 0; i < std::size(kDamages); ++i) {
    std::vector<uint8_t> image = good;
    Notebook notebook;
    EXPECT_EQ(AttachImage(image.data(), image.size(), &notebook), kImageGood);
    kDamages[i](notebook);
    Sign(image);
    EXPECT_EQ(AttachImage(image.data(), image.size(), &notebook), kImageInconsistent) << i;
  }
}

TEST(Image, WorkingFieldsOfTheFileAreIgnored) {
  std::vector<uint8_t> image = Image("healthy-x64.json");
  Notebook notebook;
  ASSERT_EQ(AttachImage(image.data(), image.size(), &notebook), kImageGood);
  notebook.lists[2].selected = 200;
  notebook.header->latched = 60000;
  notebook.header->handshake.ready = 1;
  Sign(image);
  ASSERT_EQ(AttachImage(image.data(), image.size(), &notebook), kImageGood);
  EXPECT_EQ(notebook.lists[2].selected, 0);
  EcRecord record{0xDE, 2, {2, 0}, 1, 0, 0};
  EcExchange(&notebook, &record);
  EXPECT_EQ(record.result, 0);
  record = {0xDD, 3, {1, 0x60, 0}, 1, 0, 0};
  EcExchange(&notebook, &record);
  EXPECT_EQ(record.result, 0);
}

}  // namespace
}  // namespace scenario
