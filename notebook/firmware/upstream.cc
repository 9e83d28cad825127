#include "upstream.h"

#include "files.h"
#include "registration.h"

namespace firmware {

std::wstring UpstreamPath() {
  if (const std::optional<std::wstring> remembered = ReadRegistry(kNotebookKey, kOriginalPathValue)) return *remembered;
  std::wstring folder(MAX_PATH, L'\0');
  folder.resize(GetSystemDirectoryW(folder.data(), MAX_PATH));
  return folder + L"\\wbem\\wbemprox.dll";
}

HRESULT NewUpstreamLocator(IWbemLocator** locator) {
  // Loaded once and kept.
  static const HMODULE library = LoadLibraryExW(UpstreamPath().c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (library == nullptr) return WBEM_E_INITIALIZATION_FAILURE;
  using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
  const auto get =
      reinterpret_cast<GetClassObject>(reinterpret_cast<void*>(GetProcAddress(library, "DllGetClassObject")));
  if (get == nullptr) return WBEM_E_INITIALIZATION_FAILURE;
  Ref<IClassFactory> factory;
  const HRESULT result = get(CLSID_WbemLocator, IID_IClassFactory, factory.OutVoid());
  if (FAILED(result)) return result;
  return factory->CreateInstance(nullptr, IID_IWbemLocator, reinterpret_cast<void**>(locator));
}

}  // namespace firmware
