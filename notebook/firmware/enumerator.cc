#include "enumerator.h"

#include <algorithm>

#include "class_object.h"

namespace firmware {

Enumerator::Enumerator(Origin origin, std::vector<Object> rows, bool forward_only)
    : RuledEnumerator(std::move(origin)), rows_(std::move(rows)), forward_only_(forward_only) {}

HRESULT Enumerator::Reset() {
  if (forward_only_) return WBEM_E_INVALID_OPERATION;
  const std::lock_guard guard(lock());
  next_ = 0;
  return S_OK;
}

HRESULT Enumerator::Take(LONG, ULONG count, IWbemClassObject** objects, ULONG& given) {
  for (; given < count && next_ < rows_.size(); ++given) {
    objects[given] = new ClassObject(origin().notebook, rows_[next_]);
    ++next_;
  }
  return WBEM_S_NO_ERROR;
}

HRESULT Enumerator::Clone(IEnumWbemClassObject** copy) {
  return Guarded([&]() -> HRESULT {
    if (copy == nullptr) return WBEM_E_INVALID_PARAMETER;
    *copy = nullptr;
    if (forward_only_) return WBEM_E_INVALID_OPERATION;
    const std::lock_guard guard(lock());
    auto* const clone = new Enumerator(origin(), rows_, forward_only_);
    clone->next_ = next_;
    *copy = clone;
    return S_OK;
  });
}

HRESULT Enumerator::Skip(LONG, ULONG count) {
  const std::lock_guard guard(lock());
  const size_t skipped = std::min<size_t>(count, rows_.size() - next_);
  next_ += skipped;
  return skipped == count ? WBEM_S_NO_ERROR : WBEM_S_FALSE;
}

}  // namespace firmware
