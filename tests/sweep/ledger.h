// What the library holds: blocks of its heap and everything that the system handed out.
#ifndef VEXA_TESTS_SWEEP_LEDGER_H_
#define VEXA_TESTS_SWEEP_LEDGER_H_

#include <windows.h>

#include <cstdint>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace vexa::test {

class Ledger {
 public:
  static Ledger& Get();

  void Opened(const char* kind, uintptr_t handle);
  void Closed(const char* kind, uintptr_t handle);
  void Allocated(void* block, size_t size);
  // False when the block is none of the library's own.
  bool Freed(void* block);

  // What the library has lost: held, but neither known before (see Keep) nor to be found from its variables.
  std::vector<std::string> Lost(const class ModuleState& state);
  // Faults since the last time: something given back twice.
  std::vector<std::string> TakeFaults();

  // Everything that is held now belongs to the library's state.
  void Keep();
  // Ends what came since Keep: the blocks are freed, the handles forgotten.
  void Drop(void (*free_block)(void*));

  // Accounts for nothing any more.
  void Forget();

  size_t blocks() const { return blocks_.size(); }
  size_t handles() const { return handles_.size(); }
  std::map<std::string, int> Held() const;  // how many, by kind

 private:
  using Handle = std::pair<std::string, uintptr_t>;
  mutable std::mutex mutex_;
  std::map<void*, size_t> blocks_;
  std::set<void*> kept_blocks_;
  std::multiset<Handle> handles_;
  std::multiset<Handle> kept_handles_;
  std::vector<std::string> faults_;
};

// The variables of a loaded module: written sections, but not the import table.
class ModuleState {
 public:
  explicit ModuleState(HMODULE module);

  void Save();
  void Restore() const;
  // Pointer-sized words that the variables hold now.
  std::set<uintptr_t> Words() const;

 private:
  std::vector<std::pair<char*, size_t>> sections_;
  std::vector<std::string> saved_;
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_SWEEP_LEDGER_H_
