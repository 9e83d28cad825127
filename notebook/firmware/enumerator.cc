#include "enumerator.h"

#include <algorithm>

#include "class_object.h"

namespace firmware {

Enumerator::Enumerator(Origin origin, std::vector<Object> rows, bool forward_only)
    : origin_(std::move(origin)), rows_(std::move(rows)), forward_only_(forward_only) {}

HRESULT Enumerator::Reset() {
  if (forward_only_) return WBEM_E_INVALID_OPERATION;
  const std::lock_guard guard(lock_);
  next_ = 0;
  return S_OK;
}

HRESULT Enumerator::Next(LONG timeout_ms, ULONG count, IWbemClassObject** objects, ULONG* returned) {
  return Guarded([&]() -> HRESULT {
    if (returned != nullptr) *returned = 0;
    if (count == 0 || objects == nullptr || (count > 1 && returned == nullptr)) return WBEM_E_INVALID_PARAMETER;
    std::fill_n(objects, count, nullptr);
    const std::lock_guard guard(lock_);
    const Exchange exchange = origin_.At(Step::kNext);
    if (!pending_) pending_ = origin_.notebook->Look(exchange);
    if (!origin_.notebook->Elapse(exchange, *pending_, timeout_ms < 0 ? INFINITE : static_cast<DWORD>(timeout_ms))) {
      return WBEM_S_TIMEDOUT;
    }
    const Effects effects = *std::exchange(pending_, std::nullopt);
    if (effects.fail) return static_cast<HRESULT>(*effects.fail);
    ULONG given = 0;
    for (; given < count && next_ < rows_.size(); ++given) {
      objects[given] = new ClassObject(origin_.notebook, rows_[next_]);
      ++next_;
    }
    if (returned != nullptr) *returned = given;
    return given == count ? WBEM_S_NO_ERROR : WBEM_S_FALSE;
  });
}

HRESULT Enumerator::NextAsync(ULONG, IWbemObjectSink*) { return WBEM_E_NOT_SUPPORTED; }

HRESULT Enumerator::Clone(IEnumWbemClassObject** copy) {
  return Guarded([&]() -> HRESULT {
    if (copy == nullptr) return WBEM_E_INVALID_PARAMETER;
    *copy = nullptr;
    if (forward_only_) return WBEM_E_INVALID_OPERATION;
    const std::lock_guard guard(lock_);
    auto* const clone = new Enumerator(origin_, rows_, forward_only_);
    clone->next_ = next_;
    *copy = clone;
    return S_OK;
  });
}

HRESULT Enumerator::Skip(LONG, ULONG count) {
  const std::lock_guard guard(lock_);
  const size_t skipped = std::min<size_t>(count, rows_.size() - next_);
  next_ += skipped;
  return skipped == count ? WBEM_S_NO_ERROR : WBEM_S_FALSE;
}

}  // namespace firmware
