// Calls a method of the firmware's WMI classes in ROOT\WMI with integer in-parameters and one out-parameter.
//
// Each call makes its own connection and gives everything back. Connecting, with the wait for a turn among the tasks of
// bounded_task.h, and finding the instance take at most 5 seconds each; the method itself is not bounded. A failing
// step is logged and answers empty (or 0). Any thread of the multithreaded apartment or without COM; an ATD_STS invoker
// on a single-threaded-apartment thread fails silently.
#ifndef VEXA_WMI_METHOD_INVOKER_H_
#define VEXA_WMI_METHOD_INVOKER_H_

#include <cstdint>
#include <map>
#include <string>

namespace vexa {

// In-parameter name to decimal text.
using WmiParamMap = std::map<std::wstring, std::wstring>;

// Class VexaObxWmi_WMNB. The out value as signed decimal text. A non-zero `com_flag` initialises COM for the call; with
// zero the calling thread must have it.
std::wstring wmiMethod(const std::wstring& method, const WmiParamMap& params, const std::wstring& out_name,
                       uint32_t com_flag) noexcept;

// Class ATD_STS. The out value as unsigned decimal text.
std::wstring wmiMethod_ATD_STS(const std::wstring& method, const WmiParamMap& params,
                               const std::wstring& out_name) noexcept;

// Class ATD_STS. The out value; 0 also on failure.
uint32_t wmiMethod_ATD_STS_UINT(const std::wstring& method, const WmiParamMap& params,
                                const std::wstring& out_name) noexcept;

}  // namespace vexa

#endif  // VEXA_WMI_METHOD_INVOKER_H_
