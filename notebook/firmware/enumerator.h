// IEnumWbemClassObject over rows that are known when it is made.
#ifndef NOTEBOOK_FIRMWARE_ENUMERATOR_H_
#define NOTEBOOK_FIRMWARE_ENUMERATOR_H_

#include <wbemcli.h>

#include <vector>

#include "com.h"
#include "notebook.h"
#include "object.h"
#include "passed_on.h"

namespace firmware {

class Enumerator final : public RuledEnumerator {
 public:
  Enumerator(Origin origin, std::vector<Object> rows, bool forward_only);

  HRESULT STDMETHODCALLTYPE Reset() override;
  HRESULT STDMETHODCALLTYPE Clone(IEnumWbemClassObject** copy) override;
  HRESULT STDMETHODCALLTYPE Skip(LONG timeout_ms, ULONG count) override;

 private:
  HRESULT Take(LONG timeout_ms, ULONG count, IWbemClassObject** objects, ULONG& given) override;

  const std::vector<Object> rows_;
  const bool forward_only_;
  size_t next_ = 0;  // under the lock
};

}  // namespace firmware

#endif  // NOTEBOOK_FIRMWARE_ENUMERATOR_H_
