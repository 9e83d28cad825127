// IWbemServices of one namespace: the scenario's classes, and everything else from the system's own services.
#ifndef NOTEBOOK_FIRMWARE_SERVICES_H_
#define NOTEBOOK_FIRMWARE_SERVICES_H_

#include <wbemcli.h>

#include <memory>
#include <mutex>
#include <string>

#include "com.h"
#include "notebook.h"
#include "object.h"
#include "passed_on.h"
#include "path.h"

namespace firmware {

class Services final : public Counted<ObjectKind::kServices, IWbemServices, IClientSecurity> {
 public:
  // `upstream` may be empty; then it is asked for when something is passed on.
  Services(std::shared_ptr<const Notebook> notebook, std::wstring namespace_name, Ref<IWbemServices> upstream);

  HRESULT STDMETHODCALLTYPE OpenNamespace(const BSTR name, LONG flags, IWbemContext* context, IWbemServices** services,
                                          IWbemCallResult** result) override;
  HRESULT STDMETHODCALLTYPE GetObject(const BSTR path, LONG flags, IWbemContext* context, IWbemClassObject** object,
                                      IWbemCallResult** result) override;
  HRESULT STDMETHODCALLTYPE CreateInstanceEnum(const BSTR class_name, LONG flags, IWbemContext* context,
                                               IEnumWbemClassObject** rows) override;
  HRESULT STDMETHODCALLTYPE ExecQuery(const BSTR language, const BSTR query, LONG flags, IWbemContext* context,
                                      IEnumWbemClassObject** rows) override;
  HRESULT STDMETHODCALLTYPE ExecMethod(const BSTR path, const BSTR method, LONG flags, IWbemContext* context,
                                       IWbemClassObject* in, IWbemClassObject** out, IWbemCallResult** result) override;

  // Always passed on.
  HRESULT STDMETHODCALLTYPE CancelAsyncCall(IWbemObjectSink* sink) override;
  HRESULT STDMETHODCALLTYPE QueryObjectSink(LONG flags, IWbemObjectSink** sink) override;
  HRESULT STDMETHODCALLTYPE PutClass(IWbemClassObject* object, LONG flags, IWbemContext* context,
                                     IWbemCallResult** result) override;
  HRESULT STDMETHODCALLTYPE DeleteClass(const BSTR name, LONG flags, IWbemContext* context,
                                        IWbemCallResult** result) override;
  HRESULT STDMETHODCALLTYPE CreateClassEnum(const BSTR superclass, LONG flags, IWbemContext* context,
                                            IEnumWbemClassObject** classes) override;
  HRESULT STDMETHODCALLTYPE PutInstance(IWbemClassObject* object, LONG flags, IWbemContext* context,
                                        IWbemCallResult** result) override;
  HRESULT STDMETHODCALLTYPE DeleteInstance(const BSTR path, LONG flags, IWbemContext* context,
                                           IWbemCallResult** result) override;
  HRESULT STDMETHODCALLTYPE ExecNotificationQuery(const BSTR language, const BSTR query, LONG flags,
                                                  IWbemContext* context, IEnumWbemClassObject** events) override;

  // Not supported: results are delivered by enumerators only.
  HRESULT STDMETHODCALLTYPE GetObjectAsync(const BSTR, LONG, IWbemContext*, IWbemObjectSink*) override;
  HRESULT STDMETHODCALLTYPE PutClassAsync(IWbemClassObject*, LONG, IWbemContext*, IWbemObjectSink*) override;
  HRESULT STDMETHODCALLTYPE DeleteClassAsync(const BSTR, LONG, IWbemContext*, IWbemObjectSink*) override;
  HRESULT STDMETHODCALLTYPE CreateClassEnumAsync(const BSTR, LONG, IWbemContext*, IWbemObjectSink*) override;
  HRESULT STDMETHODCALLTYPE PutInstanceAsync(IWbemClassObject*, LONG, IWbemContext*, IWbemObjectSink*) override;
  HRESULT STDMETHODCALLTYPE DeleteInstanceAsync(const BSTR, LONG, IWbemContext*, IWbemObjectSink*) override;
  HRESULT STDMETHODCALLTYPE CreateInstanceEnumAsync(const BSTR, LONG, IWbemContext*, IWbemObjectSink*) override;
  HRESULT STDMETHODCALLTYPE ExecQueryAsync(const BSTR, const BSTR, LONG, IWbemContext*, IWbemObjectSink*) override;
  HRESULT STDMETHODCALLTYPE ExecNotificationQueryAsync(const BSTR, const BSTR, LONG, IWbemContext*,
                                                       IWbemObjectSink*) override;
  HRESULT STDMETHODCALLTYPE ExecMethodAsync(const BSTR, const BSTR, LONG, IWbemContext*, IWbemClassObject*,
                                            IWbemObjectSink*) override;

  // The security of the connection: taken, remembered and told.
  HRESULT STDMETHODCALLTYPE QueryBlanket(IUnknown* proxy, DWORD* authentication, DWORD* authorization,
                                         OLECHAR** principal, DWORD* level, DWORD* impersonation, void** identity,
                                         DWORD* capabilities) override;
  HRESULT STDMETHODCALLTYPE SetBlanket(IUnknown* proxy, DWORD authentication, DWORD authorization, OLECHAR* principal,
                                       DWORD level, DWORD impersonation, void* identity, DWORD capabilities) override;
  HRESULT STDMETHODCALLTYPE CopyProxy(IUnknown* proxy, IUnknown** copy) override;

 private:
  struct Blanket {
    DWORD authentication = RPC_C_AUTHN_WINNT;
    DWORD authorization = RPC_C_AUTHZ_NONE;
    DWORD level = RPC_C_AUTHN_LEVEL_DEFAULT;
    DWORD impersonation = RPC_C_IMP_LEVEL_IDENTIFY;
    DWORD capabilities = EOAC_NONE;
  };

  Exchange At(Step step, std::string_view class_name = {}) const;
  ~Services() override;

  // The system's own services, or null when they have no such namespace.
  IWbemServices* Upstream();
  template <typename Call>
  HRESULT PassOn(Call call) {
    IWbemServices* const upstream = Upstream();
    return upstream == nullptr ? static_cast<HRESULT>(WBEM_E_NOT_SUPPORTED) : call(upstream);
  }

  HRESULT RunQuery(const std::string& query, LONG flags, const Effects& effects, const Table& table,
                   IEnumWbemClassObject** rows);
  HRESULT PassQueryOn(const BSTR language, const BSTR query, LONG flags, IWbemContext* context, const Effects& effects,
                      IEnumWbemClassObject** rows);
  HRESULT PassMethodOn(const BSTR path, const BSTR method, LONG flags, IWbemContext* context, IWbemClassObject* in,
                       IWbemClassObject** out, IWbemCallResult** result);
  HRESULT RunMethod(const Table& table, const ObjectPath& path, const Method& method, const Object* in,
                    IWbemClassObject** out);
  Object Placed(Object object) const;
  Origin OriginOf(std::string class_name, std::string method = {}) const {
    return {notebook_, key_, std::move(class_name), std::move(method)};
  }

  const std::shared_ptr<const Notebook> notebook_;
  const std::wstring namespace_;
  const std::string key_;
  std::mutex lock_;  // guards what follows
  Ref<IWbemServices> upstream_;
  bool upstream_tried_ = false;
  Blanket blanket_{};
};

}  // namespace firmware

#endif  // NOTEBOOK_FIRMWARE_SERVICES_H_
