// WQL queries and the properties of their rows.
//
// Every variant makes its own connection and gives everything back. Connecting, with the wait for a turn among the
// tasks of bounded_task.h, and querying take at most 5 seconds each; walking the rows is not bounded. A non-zero
// `com_flag` initialises COM for the call; with zero the calling thread must be in the multithreaded apartment. A
// failing step is logged under the variant's name and leaves the result stated. Nothing throws. Any thread.
#ifndef VEXA_WMI_QUERY_ENGINE_H_
#define VEXA_WMI_QUERY_ENGINE_H_

#include <cstdint>
#include <string>

namespace vexa {

// Number of rows; 0 on failure.
uint32_t ReadWMIEnumNum(const wchar_t* name_space, const wchar_t* query, uint32_t com_flag) noexcept;

// The property of the last row as a number. Returns 0; -1 with `value` set to 0 when a step fails or no row has a
// number.
int32_t ReadWMIProp(const wchar_t* name_space, const wchar_t* query, const wchar_t* property, uint32_t& value,
                    uint32_t com_flag) noexcept;

// The text property of all rows, joined with ";"; empty ones are logged and left out. Of properties that are arrays:
// "OEMStringArray" gives the element at index 4 of the last row alone, "UserFriendlyName" its character codes as a
// text, "AccessPaths" its elements joined with ";".
void ReadWMIPropStr(std::wstring& text, const wchar_t* name_space, const wchar_t* query, const wchar_t* property,
                    uint32_t com_flag) noexcept;

// The property of all rows, of any type, converted to text and joined with ",". Several properties, their names joined
// with ",": each row's values joined with ",", an empty place for each value that is missing, and rows joined with ";".
// Rows without any value are left out. `rows` receives the number of rows, `values` the number of values.
void ReadWMIPropStr2(std::wstring& text, const wchar_t* name_space, const wchar_t* query, const wchar_t* properties,
                     uint32_t& rows, uint32_t& values, uint32_t com_flag) noexcept;

// The property of the rows whose "Name" equals `name`, joined with ";"; "0" when there is none, empty on
// failure.
void ReadWMIPropStrWireless(std::wstring& text, const wchar_t* name_space, const wchar_t* query,
                            const wchar_t* property, const std::wstring& name, uint32_t com_flag) noexcept;

// "InstanceName,vot=VideoOutputTechnology" of all rows, joined with ";".
void ReadWMIPropStrDisplay(std::wstring& text, const wchar_t* name_space, const wchar_t* query,
                           uint32_t com_flag) noexcept;

// "UtilizationPercentage,Name" of all rows, joined with ";"; "0" when there is none, empty on failure.
void ReadWMIPropStrGPUUsage(std::wstring& text, const wchar_t* name_space, const wchar_t* query,
                            uint32_t com_flag) noexcept;

// "Size,Caption" of all rows, joined with ";".
void ReadWMIPropStrSDCardSize(std::wstring& text, const wchar_t* name_space, const wchar_t* query,
                              uint32_t com_flag) noexcept;

// The busiest disk's share of time in percent, over all rows but the sum named "_Total"; 0 on failure.
uint32_t ReadWMIPropNumDiskInRW(uint32_t com_flag) noexcept;

}  // namespace vexa

#endif  // VEXA_WMI_QUERY_ENGINE_H_
