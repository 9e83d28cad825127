// A buffer of an exact size that nothing can be written around, nor read behind.
#ifndef VEXA_TESTS_SUPPORT_GUARDED_BUFFER_H_
#define VEXA_TESTS_SUPPORT_GUARDED_BUFFER_H_

#include <windows.h>

#include <algorithm>
#include <cstddef>

namespace vexa::test {

// Its last byte is the last one of a page, or its first byte the first one; the pages on both sides can't be touched,
// and the other bytes on its own pages are watched.
class GuardedBuffer {
 public:
  enum class At { kEnd, kBegin };
  explicit GuardedBuffer(size_t size, At at = At::kEnd)
      : size_(size), inside_((size + kPage - 1) / kPage * kPage), offset_(at == At::kEnd ? inside_ - size : 0) {
    pages_ = static_cast<char*>(VirtualAlloc(nullptr, inside_ + 2 * kPage, MEM_RESERVE | MEM_COMMIT, PAGE_NOACCESS));
    DWORD before = 0;
    VirtualProtect(pages_ + kPage, inside_, PAGE_READWRITE, &before);
    std::fill(pages_ + kPage, pages_ + kPage + inside_, kFill);
  }
  ~GuardedBuffer() { VirtualFree(pages_, 0, MEM_RELEASE); }

  GuardedBuffer(const GuardedBuffer&) = delete;
  GuardedBuffer& operator=(const GuardedBuffer&) = delete;

  char* data() const { return pages_ + kPage + offset_; }
  static bool IsFill(char byte) { return byte == kFill; }
  bool IsTerminated() const { return std::find(data(), data() + size_, '\0') != data() + size_; }
  bool IsUntouchedAround() const {
    return std::all_of(pages_ + kPage, data(), IsFill) && std::all_of(data() + size_, pages_ + kPage + inside_, IsFill);
  }
  bool IsUntouched() const { return std::all_of(data(), data() + size_, IsFill); }

 private:
  static constexpr size_t kPage = 4096;
  static constexpr char kFill = 0x5A;
  size_t size_;
  size_t inside_;  // whole pages
  size_t offset_;
  char* pages_;
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_GUARDED_BUFFER_H_
