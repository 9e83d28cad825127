#include "image_builder.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace scenario {
namespace {

static_assert(std::endian::native == std::endian::little, "records are copied as they are");

template <typename Record>
void Append(const std::vector<Record>& records, ImageSection& section, std::vector<uint8_t>& bytes) {
  bytes.resize((bytes.size() + 7) / 8 * 8);
  section.offset = static_cast<uint32_t>(bytes.size());
  section.count = static_cast<uint32_t>(records.size());
  const auto* first = reinterpret_cast<const uint8_t*>(records.data());
  bytes.insert(bytes.end(), first, first + records.size() * sizeof(Record));
}

}  // namespace

ImageBuilder::ImageBuilder() {
  header.magic = IMAGE_MAGIC;
  header.version = IMAGE_VERSION;
  header.log = 1;
  header.information_block = IMAGE_NO_BLOCK;
  std::ranges::fill(header.group_blocks, static_cast<uint8_t>(IMAGE_NO_BLOCK));
}

std::vector<uint8_t> ImageBuilder::Build() const {
  ImageHeader built = header;
  std::vector<uint8_t> bytes(sizeof(ImageHeader));
  Append(blocks, built.sections[kImageBlocks], bytes);
  Append(lists, built.sections[kImageLists], bytes);
  Append(list_values, built.sections[kImageListValues], bytes);
  Append(gauge, built.sections[kImageGauge], bytes);
  Append(commands, built.sections[kImageCommands], bytes);
  Append(leaves, built.sections[kImageCpuid], bytes);
  Append(power_rows, built.sections[kImagePowerRows], bytes);
  Append(methods, built.sections[kImageAcpi], bytes);
  Append(acpi_bytes, built.sections[kImageAcpiBytes], bytes);
  Append(rules, built.sections[kImageRules], bytes);
  if (bytes.size() > IMAGE_MAX_SIZE) return {};
  built.size = static_cast<uint32_t>(bytes.size());
  std::memcpy(bytes.data(), &built, sizeof(built));
  built.checksum = ImageChecksum(bytes.data() + IMAGE_CHECKED_FROM, bytes.size() - IMAGE_CHECKED_FROM);
  std::memcpy(bytes.data(), &built, sizeof(built));
  return bytes;
}

}  // namespace scenario
