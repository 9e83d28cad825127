// IWbemLocator, and the class factory that makes it.
#ifndef NOTEBOOK_FIRMWARE_LOCATOR_H_
#define NOTEBOOK_FIRMWARE_LOCATOR_H_

#include <wbemcli.h>

#include <memory>

#include "com.h"
#include "notebook.h"

namespace firmware {

class Locator final : public Counted<ObjectKind::kLocator, IWbemLocator> {
 public:
  explicit Locator(std::shared_ptr<const Notebook> notebook);

  HRESULT STDMETHODCALLTYPE ConnectServer(const BSTR name, const BSTR user, const BSTR password, const BSTR locale,
                                          LONG flags, const BSTR authority, IWbemContext* context,
                                          IWbemServices** services) override;

 private:
  HRESULT Connect(const BSTR name, const BSTR user, const BSTR password, const BSTR locale, LONG flags,
                  const BSTR authority, IWbemContext* context, IWbemServices** services);

  const std::shared_ptr<const Notebook> notebook_;
};

class ClassFactory final : public Counted<ObjectKind::kClassFactory, IClassFactory> {
 public:
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID id, void** object) override;
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override;

  static LONG Locks();
};

}  // namespace firmware

#endif  // NOTEBOOK_FIRMWARE_LOCATOR_H_
