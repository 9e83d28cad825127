#include "tests/sweep/ledger.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "tests/support/call_script.h"

namespace vexa::test {
namespace {

void AddWords(const char* from, size_t size, std::set<uintptr_t>& words) {
  for (size_t i = 0; i + sizeof(uintptr_t) <= size; i += sizeof(uintptr_t)) {
    uintptr_t word = 0;
    std::memcpy(&word, from + i, sizeof word);
    words.insert(word);
  }
}

}  // namespace

Ledger& Ledger::Get() {
  static Ledger ledger;
  return ledger;
}

void Ledger::Opened(const char* kind, uintptr_t handle) {
  const std::lock_guard lock(mutex_);
  handles_.emplace(kind, handle);
}

void Ledger::Closed(const char* kind, uintptr_t handle) {
  const std::lock_guard lock(mutex_);
  const auto found = handles_.find({kind, handle});
  if (found != handles_.end()) {
    handles_.erase(found);
  } else {
    faults_.push_back(std::string(kind) + " " + Hex(handle) + " given back, but not held");
  }
}

void Ledger::Allocated(void* block, size_t size) {
  const std::lock_guard lock(mutex_);
  blocks_[block] = size;
}

bool Ledger::Freed(void* block) {
  const std::lock_guard lock(mutex_);
  return blocks_.erase(block) != 0;
}

std::vector<std::string> Ledger::Lost(const ModuleState& state) {
  const std::lock_guard lock(mutex_);
  std::vector<std::string> lost;
  std::set<uintptr_t> words = state.Words();
  std::map<void*, size_t> unseen;
  for (const auto& [block, size] : blocks_) {
    if (!kept_blocks_.contains(block)) unseen.emplace(block, size);
  }
  for (bool found = true; found && !unseen.empty();) {
    found = false;
    for (auto block = unseen.begin(); block != unseen.end();) {
      if (words.contains(reinterpret_cast<uintptr_t>(block->first))) {
        AddWords(static_cast<char*>(block->first), block->second, words);
        block = unseen.erase(block);
        found = true;
      } else {
        ++block;
      }
    }
  }
  for (const auto& [block, size] : unseen) lost.push_back("block of " + std::to_string(size) + " bytes");
  std::multiset<Handle> fresh;
  std::ranges::set_difference(handles_, kept_handles_, std::inserter(fresh, fresh.end()));
  for (const auto& [kind, handle] : fresh) {
    if (!words.contains(handle)) lost.push_back(kind + " " + Hex(handle));
  }
  return lost;
}

std::vector<std::string> Ledger::TakeFaults() {
  const std::lock_guard lock(mutex_);
  return std::exchange(faults_, {});
}

void Ledger::Keep() {
  const std::lock_guard lock(mutex_);
  kept_blocks_.clear();
  for (const auto& [block, size] : blocks_) kept_blocks_.insert(block);
  kept_handles_ = handles_;
}

void Ledger::Drop(void (*free_block)(void*)) {
  const std::lock_guard lock(mutex_);
  std::erase_if(blocks_, [&](const auto& block) {
    if (kept_blocks_.contains(block.first)) return false;
    free_block(block.first);
    return true;
  });
  handles_ = kept_handles_;
}

void Ledger::Forget() {
  const std::lock_guard lock(mutex_);
  blocks_.clear();
  kept_blocks_.clear();
  handles_.clear();
  kept_handles_.clear();
  faults_.clear();
}

std::map<std::string, int> Ledger::Held() const {
  const std::lock_guard lock(mutex_);
  std::map<std::string, int> held;
  for (const Handle& handle : handles_) ++held[handle.first];
  if (!blocks_.empty()) held["heap block"] = static_cast<int>(blocks_.size());
  return held;
}

ModuleState::ModuleState(HMODULE module) {
  auto* base = reinterpret_cast<char*>(module);
  const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
  const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS64*>(base + dos->e_lfanew);
  const IMAGE_SECTION_HEADER* section = IMAGE_FIRST_SECTION(headers);
  for (int i = 0; i < headers->FileHeader.NumberOfSections; ++i, ++section) {
    if (std::memcmp(section->Name, ".data", 6) == 0) {
      sections_.emplace_back(base + section->VirtualAddress, section->Misc.VirtualSize);
    }
  }
}

void ModuleState::Save() {
  saved_.clear();
  for (const auto& [address, size] : sections_) saved_.emplace_back(address, size);
}

void ModuleState::Restore() const {
  for (size_t i = 0; i < sections_.size(); ++i) {
    std::memcpy(sections_[i].first, saved_[i].data(), sections_[i].second);
  }
}

std::set<uintptr_t> ModuleState::Words() const {
  std::set<uintptr_t> words;
  for (const auto& [address, size] : sections_) AddWords(address, size, words);
  return words;
}

}  // namespace vexa::test
