#include <algorithm>

#include "passed_on.h"

namespace firmware {

HRESULT RuledEnumerator::Next(LONG timeout_ms, ULONG count, IWbemClassObject** objects, ULONG* returned) {
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
    const HRESULT result = Take(timeout_ms, count, objects, given);
    if (returned != nullptr) *returned = given;
    return result == WBEM_S_NO_ERROR && given < count ? static_cast<HRESULT>(WBEM_S_FALSE) : result;
  });
}

HRESULT RuledEnumerator::NextAsync(ULONG, IWbemObjectSink*) { return WBEM_E_NOT_SUPPORTED; }

PassedOnEnumerator::PassedOnEnumerator(Origin origin, Ref<IEnumWbemClassObject> upstream, std::optional<uint32_t> rows)
    : RuledEnumerator(std::move(origin)), upstream_(std::move(upstream)), rows_left_(rows) {}

HRESULT PassedOnEnumerator::Reset() { return upstream_->Reset(); }

HRESULT PassedOnEnumerator::Take(LONG timeout_ms, ULONG count, IWbemClassObject** objects, ULONG& given) {
  const ULONG wanted = rows_left_ ? std::min<ULONG>(*rows_left_, count) : count;
  if (wanted == 0) return WBEM_S_NO_ERROR;
  const HRESULT result = upstream_->Next(timeout_ms, wanted, objects, &given);
  for (ULONG i = 0; i < given; ++i) HandOn(origin(), &objects[i]);
  if (rows_left_) *rows_left_ -= given;
  return result;
}

HRESULT PassedOnEnumerator::Clone(IEnumWbemClassObject** copy) {
  return Guarded([&]() -> HRESULT {
    if (copy == nullptr) return WBEM_E_INVALID_PARAMETER;
    *copy = nullptr;
    const std::lock_guard guard(lock());
    Ref<IEnumWbemClassObject> clone;
    const HRESULT result = upstream_->Clone(clone.Out());
    if (clone) *copy = new PassedOnEnumerator(origin(), std::move(clone), rows_left_);
    return result;
  });
}

HRESULT PassedOnEnumerator::Skip(LONG timeout_ms, ULONG count) { return upstream_->Skip(timeout_ms, count); }

}  // namespace firmware
