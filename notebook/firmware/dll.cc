// The exports of vexa-firmware.dll.
#include <wbemcli.h>

#include "locator.h"
#include "registration.h"

namespace {

HMODULE module_handle = nullptr;

}  // namespace

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void*) {
  if (reason == DLL_PROCESS_ATTACH) module_handle = instance;
  return TRUE;
}

extern "C" {

HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID class_id, REFIID id, void** object) {
  return firmware::Guarded([&]() -> HRESULT {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (!IsEqualCLSID(class_id, CLSID_WbemLocator)) return CLASS_E_CLASSNOTAVAILABLE;
    const firmware::Ref<firmware::ClassFactory> factory(new firmware::ClassFactory);
    return factory->QueryInterface(id, object);
  });
}

HRESULT STDAPICALLTYPE DllCanUnloadNow() {
  return firmware::LiveObjects() == 0 && firmware::ClassFactory::Locks() == 0 ? S_OK : S_FALSE;
}

HRESULT STDAPICALLTYPE DllRegisterServer() {
  return firmware::Guarded([] { return firmware::Register(module_handle); });
}

HRESULT STDAPICALLTYPE DllUnregisterServer() {
  return firmware::Guarded([] { return firmware::Unregister(module_handle); });
}

// How many objects of the server live in this process.
LONG WINAPI VexaFirmwareObjects() { return firmware::LiveObjects(); }

// The same behind one interface: "IClassFactory", "IWbemLocator", "IWbemServices", "IEnumWbemClassObject" or
// "IWbemClassObject". -1 for another name.
LONG WINAPI VexaFirmwareObjectsOf(const char* interface_name) {
  return interface_name == nullptr ? -1 : firmware::LiveObjectsOf(interface_name);
}

}  // extern "C"
