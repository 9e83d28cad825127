// The Wi-Fi adapter: its name, and what it receives and sends.
#include <windows.h>

#include <objbase.h>

#include <optional>
#include <string>

#include "inventory/answer.h"
#include "inventory/texts.h"
#include "radio/wifi_interface.h"
#include "vexa/inventory.h"
#include "wmi/decimal.h"
#include "wmi/query_engine.h"

namespace vexa {
namespace {

std::wstring CardName(uint32_t com_flag) {
  std::wstring text;
  if (const std::optional<uint32_t> index = WifiInterfaceIndex()) {
    const std::wstring query =
        L"select * from win32_NetworkAdapter where physicalAdapter='true' and InterfaceIndex = " + WideDecimal(*index);
    ReadWMIPropStr(text, kCimNamespace, query.c_str(), L"Name", com_flag);
  }
  return text;
}

std::wstring Rate(const wchar_t* property, const std::wstring& adapter, uint32_t com_flag) {
  std::wstring rate;
  ReadWMIPropStrWireless(rate, kCimNamespace, L"SELECT * FROM Win32_PerfFormattedData_Tcpip_Networkinterface", property,
                         adapter, com_flag);
  return rate;
}

}  // namespace
}  // namespace vexa

uint32_t WMIGetWiFiCardName(wchar_t** name, uint8_t com_flag) noexcept {
  using namespace vexa;
  if (name == nullptr) return 0;
  const std::wstring text = Guarded("WMIGetWiFiCardName", std::wstring(), [com_flag] { return CardName(com_flag); });
  *name = static_cast<wchar_t*>(CoTaskMemAlloc((text.size() + 1) * sizeof(wchar_t)));
  return *name == nullptr ? 0 : Deliver(text, *name);
}

uint32_t WMIGetWiFiBytesPersec(wchar_t* text, uint32_t com_flag) noexcept {
  using namespace vexa;
  return AnswerText("WMIGetWiFiBytesPersec", "WMIGetWiFiBytesPersec Start", "WMIGetWiFiBytesPersec End", text,
                    [com_flag](std::wstring& answer) {
                      const std::wstring adapter = CounterName(WifiAdapterName());
                      const std::wstring received = Rate(L"BytesReceivedPersec", adapter, com_flag);
                      const std::wstring sent = Rate(L"BytesSentPersec", adapter, com_flag);
                      if (!received.empty() && !sent.empty()) answer = received + L',' + sent;
                    });
}
