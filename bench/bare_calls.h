// What the library's calls come down to, written without the library.
#ifndef VEXA_BENCH_BARE_CALLS_H_
#define VEXA_BENCH_BARE_CALLS_H_

#include <windows.h>

#include <wbemidl.h>
#include <wrl/client.h>

#include <cstdint>

namespace vexa {

// One EC exchange on the library's device; unused data bytes are 0.
uint8_t BareExchange(uint8_t command, uint8_t count, uint8_t first, uint8_t second = 0);

// The registry value that chooses the route; its first character.
uint32_t BareRouteRead();

// Locator, connection, proxy blanket and query, on this thread.
struct BareSession {
  Microsoft::WRL::ComPtr<IWbemServices> services;
  Microsoft::WRL::ComPtr<IEnumWbemClassObject> rows;
};
BareSession BareQuery(const wchar_t* name_space, const wchar_t* query);

// The firmware's method of class ATD_STS with its two in-parameters, COM initialised for the call.
uint32_t BareFirmwareCall(const wchar_t* method, const wchar_t* command_code, const wchar_t* param0);

}  // namespace vexa

#endif  // VEXA_BENCH_BARE_CALLS_H_
