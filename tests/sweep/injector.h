// Counts the calls to the system and the allocations that the library makes, and says which of them are to fail.
#ifndef VEXA_TESTS_SWEEP_INJECTOR_H_
#define VEXA_TESTS_SWEEP_INJECTOR_H_

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace vexa::test {

enum class Failure { kNotFound, kAccessDenied, kInvalidHandle, kTimeOut, kNoMemory, kShortAnswer };
inline constexpr Failure kAllFailures[] = {Failure::kNotFound, Failure::kAccessDenied, Failure::kInvalidHandle,
                                           Failure::kTimeOut,  Failure::kNoMemory,     Failure::kShortAnswer};
const char* NameOf(Failure failure);
unsigned long ErrorOf(Failure failure);  // as a Win32 error
long HresultOf(Failure failure);

struct Plan {
  enum class What { kNothing, kCall, kCallsFrom, kAllocation, kAllocationsFrom };
  What what = What::kNothing;
  size_t index = 0;
  Failure failure = Failure::kNotFound;
};
std::string Describe(const Plan& plan);

class Injector {
 public:
  static Injector& Get();

  void Arm(const Plan& plan);
  void Disarm() { armed_ = false; }

  // Of the library's calls since it was armed.
  std::vector<std::string> calls() const;  // names, only while nothing is to fail
  size_t call_count() const { return call_count_; }
  size_t allocation_count() const { return allocation_count_; }
  bool injected() const { return injected_; }
  uint32_t asked_ms() const { return asked_ms_; }  // bounds of the waits, added up
  bool armed() const { return armed_; }

  // For hooks: whether this thread is in the library's own code, the call's failure, and an allocation's.
  bool Counts() const { return armed_ && inside_ == 0; }
  std::optional<Failure> NextCall(const char* name);
  void AskToWait(uint32_t ms) { asked_ms_ += ms; }
  bool NextAllocationFails();

  // What the system does by itself is no call of the library.
  class Inside {
   public:
    Inside() { ++inside_; }
    ~Inside() { --inside_; }
    Inside(const Inside&) = delete;
    Inside& operator=(const Inside&) = delete;
  };

 private:
  static thread_local int inside_;
  mutable std::mutex mutex_;
  std::atomic<bool> armed_ = false;
  Plan plan_;
  std::vector<std::string> calls_;
  std::atomic<size_t> call_count_ = 0, allocation_count_ = 0;
  std::atomic<uint32_t> asked_ms_ = 0;
  std::atomic<bool> injected_ = false;
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_SWEEP_INJECTOR_H_
