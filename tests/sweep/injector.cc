#include "tests/sweep/injector.h"

#include <windows.h>

#include <iterator>

namespace vexa::test {
namespace {

constexpr struct {
  const char* name;
  DWORD error;
  HRESULT result;
} kFailures[] = {{"not found", ERROR_FILE_NOT_FOUND, HRESULT_FROM_WIN32(ERROR_NOT_FOUND)},
                 {"access denied", ERROR_ACCESS_DENIED, E_ACCESSDENIED},
                 {"invalid handle", ERROR_INVALID_HANDLE, E_HANDLE},
                 {"time-out", ERROR_TIMEOUT, HRESULT_FROM_WIN32(ERROR_TIMEOUT)},
                 {"no memory", ERROR_NOT_ENOUGH_MEMORY, E_OUTOFMEMORY},
                 {"short answer", ERROR_MORE_DATA, HRESULT_FROM_WIN32(ERROR_MORE_DATA)}};
static_assert(std::size(kFailures) == std::size(kAllFailures));

}  // namespace

thread_local int Injector::inside_ = 0;

const char* NameOf(Failure failure) { return kFailures[static_cast<size_t>(failure)].name; }
unsigned long ErrorOf(Failure failure) { return kFailures[static_cast<size_t>(failure)].error; }
long HresultOf(Failure failure) { return kFailures[static_cast<size_t>(failure)].result; }

std::string Describe(const Plan& plan) {
  const std::string index = std::to_string(plan.index);
  switch (plan.what) {
    case Plan::What::kNothing: return "nothing fails";
    case Plan::What::kCall: return "call " + index + " fails: " + NameOf(plan.failure);
    case Plan::What::kCallsFrom: return "calls fail from " + index + " on: " + NameOf(plan.failure);
    case Plan::What::kAllocation: return "allocation " + index + " fails";
    case Plan::What::kAllocationsFrom: return "allocations fail from " + index + " on";
  }
  return "";
}

Injector& Injector::Get() {
  static Injector injector;
  return injector;
}

void Injector::Arm(const Plan& plan) {
  const std::lock_guard lock(mutex_);
  plan_ = plan;
  calls_.clear();
  call_count_ = allocation_count_ = 0;
  asked_ms_ = 0;
  injected_ = false;
  armed_ = true;
}

std::vector<std::string> Injector::calls() const {
  const std::lock_guard lock(mutex_);
  return calls_;
}

std::optional<Failure> Injector::NextCall(const char* name) {
  const std::lock_guard lock(mutex_);
  const size_t index = call_count_++;
  if (plan_.what == Plan::What::kNothing) calls_.emplace_back(name);
  const bool fails = plan_.what == Plan::What::kCall ? index == plan_.index
                                                     : plan_.what == Plan::What::kCallsFrom && index >= plan_.index;
  if (!fails) return std::nullopt;
  injected_ = true;
  return plan_.failure;
}

bool Injector::NextAllocationFails() {
  const size_t index = allocation_count_++;
  const bool fails = plan_.what == Plan::What::kAllocation
                         ? index == plan_.index
                         : plan_.what == Plan::What::kAllocationsFrom && index >= plan_.index;
  if (fails) injected_ = true;
  return fails;
}

}  // namespace vexa::test
