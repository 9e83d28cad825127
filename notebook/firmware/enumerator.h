// IEnumWbemClassObject over rows that are known when it is made.
#ifndef NOTEBOOK_FIRMWARE_ENUMERATOR_H_
#define NOTEBOOK_FIRMWARE_ENUMERATOR_H_

#include <wbemcli.h>

#include <mutex>
#include <optional>
#include <vector>

#include "com.h"
#include "notebook.h"
#include "object.h"
#include "passed_on.h"

namespace firmware {

class Enumerator final : public Counted<ObjectKind::kEnumerator, IEnumWbemClassObject> {
 public:
  Enumerator(Origin origin, std::vector<Object> rows, bool forward_only);

  HRESULT STDMETHODCALLTYPE Reset() override;
  HRESULT STDMETHODCALLTYPE Next(LONG timeout_ms, ULONG count, IWbemClassObject** objects, ULONG* returned) override;
  HRESULT STDMETHODCALLTYPE NextAsync(ULONG count, IWbemObjectSink* sink) override;
  HRESULT STDMETHODCALLTYPE Clone(IEnumWbemClassObject** copy) override;
  HRESULT STDMETHODCALLTYPE Skip(LONG timeout_ms, ULONG count) override;

 private:
  const Origin origin_;
  const std::vector<Object> rows_;
  const bool forward_only_;
  std::mutex lock_;  // guards what follows
  size_t next_ = 0;
  std::optional<Effects> pending_{};  // of a call that ran out of time
};

}  // namespace firmware

#endif  // NOTEBOOK_FIRMWARE_ENUMERATOR_H_
