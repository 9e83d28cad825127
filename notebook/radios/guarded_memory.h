// Memory that is handed to a caller, watched.
#ifndef NOTEBOOK_RADIOS_GUARDED_MEMORY_H_
#define NOTEBOOK_RADIOS_GUARDED_MEMORY_H_

#include <cstddef>
#include <map>

namespace radios {

// Each block ends where a page that can't be touched begins, and can't be touched once it is freed, so that a caller
// that trusts a lying count or offset ends there. Not for several threads at once.
class GuardedMemory {
 public:
  // Zeroed; the address is a multiple of 8. Null when memory is short.
  void* Allocate(size_t size);
  // False when it is no block in use.
  bool Free(void* memory);

 private:
  std::map<void*, void*> blocks_;  // the pages by what was handed out
};

}  // namespace radios

#endif  // NOTEBOOK_RADIOS_GUARDED_MEMORY_H_
