// Registers as scenarios write them: rows of bytes at an offset of a block of 256.
#ifndef NOTEBOOK_SCENARIO_REGISTERS_H_
#define NOTEBOOK_SCENARIO_REGISTERS_H_

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "image_builder.h"
#include "object_reader.h"

namespace scenario {

// What a register row answers: bytes from its offset on, or a driver status.
struct Payload {
  std::vector<uint8_t> bytes;
  uint32_t status = 0;
};

// Reads the one of "byte", "word", "dword", "text" (with "size"), "hex" and "status" that the row has.
std::optional<Payload> ReadPayload(const ObjectReader& row, size_t limit, Faults& faults);

// A byte or a driver status: {"byte": 255} or {"status": 5}.
std::optional<ImageCell> ReadAnswer(const ObjectReader& object, Faults& faults);

// A block being filled. Every register belongs to one entry of the scenario.
class RegisterBlock {
 public:
  // `fill` is what registers without an entry answer.
  explicit RegisterBlock(const ImageCell& fill) { cells_.fill(fill); }

  // Every register tells its own offset.
  static RegisterBlock TellingOffsets();

  // Takes `length` registers from `offset` on for the entry at `line`; false after a report when they don't
  // fit or are taken.
  bool Claim(int line, uint64_t offset, size_t length, Faults& faults);

  // Claims one register and sets it.
  void Set(int line, uint64_t offset, const ImageCell& cell, Faults& faults);

  // Claims the payload's registers and sets them; with a status it is one register.
  void Set(int line, uint64_t offset, const Payload& payload, ImageWriteAction on_write, Faults& faults);

  // Sets a register that is claimed already.
  void Bind(uint8_t offset, const ImageCell& cell) { cells_[offset] = cell; }

  const Block& cells() const { return cells_; }

 private:
  Block cells_{};
  std::array<int, IMAGE_BLOCK_CELLS> owner_lines_{};  // 0: free
};

// "fill" of an object: "offset", a byte, or {"status": n}; `unlisted` when it is missing.
RegisterBlock ReadFill(const ObjectReader& object, const ImageCell& unlisted, Faults& faults);

}  // namespace scenario

#endif  // NOTEBOOK_SCENARIO_REGISTERS_H_
