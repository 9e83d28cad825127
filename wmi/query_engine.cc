#include "wmi/query_engine.h"

#include <windows.h>

#include <wbemidl.h>

#include <algorithm>
#include <cwchar>
#include <optional>
#include <utility>

#include "frame/export_wall.h"
#include "frame/line.h"
#include "frame/log.h"
#include "wmi/com_apartment.h"
#include "wmi/session.h"
#include "wmi/variant_value.h"

namespace vexa {
namespace {

struct Variation {
  const wchar_t* name;
  const char* narrow_name;
};

constexpr wchar_t kQueryTimedOut[] = L"[%s] Step5 Query timed out.";
// Kept: two blanks, unlike the method invokers' line.
constexpr wchar_t kQueryFailed[] = L"[%s] Step5 Query failed.  Errorcode=0x%s";

// Calls `visit` for every row. False when a step failed.
template <typename Visit>
bool WalkRows(const Variation& variation, const wchar_t* name_space, const wchar_t* query, Visit visit) {
  const WmiCaller caller{variation.name, kQueryTimedOut, kQueryFailed};
  const std::optional<WmiSession> session = WmiSession::Open(caller, name_space, query);
  if (!session) return false;
  for (;;) {
    ComPtr<IWbemClassObject> row;
    ULONG count = 0;
    const HRESULT result = session->rows()->Next(static_cast<LONG>(WBEM_INFINITE), 1, row.GetAddressOf(), &count);
    if (FAILED(result)) {
      // Not to the event log: a class that this machine lacks ends here too, however often it is asked for.
      LogInfo(L"[%s] Could not Get the Next Object. Errorcode=0x%s", variation.name, ResultText(result).c_str());
      return false;
    }
    if (count == 0 || !row) return true;
    visit(*row.Get());
  }
}

// The variant's frame: COM when asked for, the rows, clean-up, and the wall. False when a step failed.
template <typename Visit>
bool RunQuery(const Variation& variation, const wchar_t* name_space, const wchar_t* query, uint32_t com_flag,
              Visit visit) noexcept {
  const ComApartment apartment(com_flag != 0);
  const bool walked = Guarded(variation.narrow_name, false, [&] {
    if (com_flag != 0 && !apartment.entered()) {
      LogStep(L"[%s] Step1 Failed to initialize COM library. Errorcode=0x%s", variation.name,
              ResultText(apartment.result()).c_str());
      return false;
    }
    return WalkRows(variation, name_space, query, visit);
  });
  if (apartment.entered()) LogInfo(L"[%s] Step7 Do CoUninitialize()", variation.name);
  return walked;
}

// Reads one property by one of the readers; nothing when the row has none.
template <typename Read>
auto PropertyOf(IWbemClassObject& row, const wchar_t* property, Read read) {
  Variant value;
  return SUCCEEDED(row.Get(property, 0, value.put(), nullptr, nullptr)) ? read(value.get())
                                                                        : decltype(read(value.get()))();
}

void Append(std::wstring& text, const std::wstring& value, const wchar_t* joiner) {
  if (!text.empty()) text += joiner;
  text += value;
}

// Walks the rows into `text` by `value_of`, which answers nothing for a row to be left out. False, with an empty text,
// on failure.
template <typename ValueOf>
bool JoinRows(const Variation& variation, std::wstring& text, const wchar_t* name_space, const wchar_t* query,
              uint32_t com_flag, const wchar_t* joiner, ValueOf value_of) noexcept {
  text.clear();
  const bool walked = RunQuery(variation, name_space, query, com_flag, [&](IWbemClassObject& row) {
    if (const std::optional<std::wstring> value = value_of(row)) Append(text, *value, joiner);
  });
  if (!walked) text.clear();
  return walked;
}

// Both properties of a row as "first" joiner "second"; nothing without the first.
std::optional<std::wstring> PairOf(IWbemClassObject& row, const wchar_t* first, const wchar_t* joiner,
                                   const wchar_t* second) {
  std::optional<std::wstring> text = PropertyOf(row, first, ConvertedTextOf);
  if (text) *text += joiner + PropertyOf(row, second, ConvertedTextOf).value_or(L"");
  return text;
}

constexpr Variation kEnumNum{L"ReadWMIEnumNum", "ReadWMIEnumNum"};
constexpr Variation kProp{L"ReadWMIProp", "ReadWMIProp"};
constexpr Variation kPropStr{L"ReadWMIPropStr", "ReadWMIPropStr"};
constexpr Variation kPropStr2{L"ReadWMIPropStr2", "ReadWMIPropStr2"};
constexpr Variation kWireless{L"ReadWMIPropStrWireless", "ReadWMIPropStrWireless"};
constexpr Variation kDisplay{L"ReadWMIPropStrDisplay", "ReadWMIPropStrDisplay"};
constexpr Variation kGpuUsage{L"ReadWMIPropStrGPUUsage", "ReadWMIPropStrGPUUsage"};
constexpr Variation kSdCardSize{L"ReadWMIPropStrSDCardSize", "ReadWMIPropStrSDCardSize"};
constexpr Variation kDiskInRw{L"ReadWMIPropNumDiskInRW", "ReadWMIPropNumDiskInRW"};

constexpr wchar_t kOemStrings[] = L"OEMStringArray";
constexpr long kOemStringIndex = 4;

std::optional<std::wstring> OemString(const VARIANT& value) { return TextElement(value, kOemStringIndex); }

// How ReadWMIPropStr takes a property: WMI gives these as arrays, all others as texts.
auto TextReaderOf(std::wstring_view property) -> std::optional<std::wstring> (*)(const VARIANT&) {
  if (property == kOemStrings) return OemString;
  if (property == L"UserFriendlyName") return CharactersOf;
  if (property == L"AccessPaths") return ConvertedTextOf;
  return TextOf;
}

// The values of the properties, whose names are joined with ",", joined in the same way. Nothing when there is none of
// them. Counts those that there are.
std::optional<std::wstring> FieldsOf(IWbemClassObject& row, std::wstring_view properties, uint32_t& values) {
  std::wstring fields;
  const uint32_t before = values;
  for (;;) {
    const size_t end = properties.find(L',');
    const std::wstring property(properties.substr(0, end));
    if (const std::optional<std::wstring> value = PropertyOf(row, property.c_str(), ConvertedTextOf)) {
      ++values;
      fields += *value;
    }
    if (end == std::wstring_view::npos) break;
    fields += L',';
    properties.remove_prefix(end + 1);
  }
  return values == before ? std::nullopt : std::optional(std::move(fields));
}

// Never throws: short of memory, the wall has left the text as it was cut.
void ZeroWhenEmpty(std::wstring& text) noexcept {
  if (text.empty()) text = L"0";
}

}  // namespace

uint32_t ReadWMIEnumNum(const wchar_t* name_space, const wchar_t* query, uint32_t com_flag) noexcept {
  uint32_t rows = 0;
  return RunQuery(kEnumNum, name_space, query, com_flag, [&rows](IWbemClassObject&) { ++rows; }) ? rows : 0;
}

int32_t ReadWMIProp(const wchar_t* name_space, const wchar_t* query, const wchar_t* property, uint32_t& value,
                    uint32_t com_flag) noexcept {
  std::optional<uint32_t> last;
  const bool walked = RunQuery(kProp, name_space, query, com_flag, [&](IWbemClassObject& row) {
    if (const std::optional<uint32_t> number = PropertyOf(row, property, NumberOf)) last = number;
  });
  value = walked ? last.value_or(0) : 0;
  return walked && last ? 0 : -1;
}

void ReadWMIPropStr(std::wstring& text, const wchar_t* name_space, const wchar_t* query, const wchar_t* property,
                    uint32_t com_flag) noexcept {
  const auto reader = TextReaderOf(property);
  JoinRows(kPropStr, text, name_space, query, com_flag, L";",
           [&](IWbemClassObject& row) -> std::optional<std::wstring> {
             std::optional<std::wstring> value = PropertyOf(row, property, reader);
             if (reader == OemString) {
               text.clear();
               return value;
             }
             if (!value || !value->empty()) return value;
             LogInfo(L"[ReadWMIPropStr] SysStringLen(temp) == 0 , propname = %s", property);
             return std::nullopt;
           });
}

void ReadWMIPropStr2(std::wstring& text, const wchar_t* name_space, const wchar_t* query, const wchar_t* properties,
                     uint32_t& rows, uint32_t& values, uint32_t com_flag) noexcept {
  rows = values = 0;
  const wchar_t* const joiner = std::wcschr(properties, L',') != nullptr ? L";" : L",";
  JoinRows(kPropStr2, text, name_space, query, com_flag, joiner, [&](IWbemClassObject& row) {
    ++rows;
    return FieldsOf(row, properties, values);
  });
}

void ReadWMIPropStrWireless(std::wstring& text, const wchar_t* name_space, const wchar_t* query,
                            const wchar_t* property, const std::wstring& name, uint32_t com_flag) noexcept {
  const bool walked = JoinRows(kWireless, text, name_space, query, com_flag, L";",
                               [&](IWbemClassObject& row) -> std::optional<std::wstring> {
                                 if (PropertyOf(row, L"Name", TextOf) != name) return std::nullopt;
                                 return PropertyOf(row, property, ConvertedTextOf);
                               });
  if (walked) ZeroWhenEmpty(text);
}

void ReadWMIPropStrDisplay(std::wstring& text, const wchar_t* name_space, const wchar_t* query,
                           uint32_t com_flag) noexcept {
  JoinRows(kDisplay, text, name_space, query, com_flag, L";",
           [](IWbemClassObject& row) { return PairOf(row, L"InstanceName", L",vot=", L"VideoOutputTechnology"); });
}

void ReadWMIPropStrGPUUsage(std::wstring& text, const wchar_t* name_space, const wchar_t* query,
                            uint32_t com_flag) noexcept {
  const bool walked = JoinRows(kGpuUsage, text, name_space, query, com_flag, L";", [](IWbemClassObject& row) {
    return PairOf(row, L"UtilizationPercentage", L",", L"Name");
  });
  if (walked) ZeroWhenEmpty(text);
}

void ReadWMIPropStrSDCardSize(std::wstring& text, const wchar_t* name_space, const wchar_t* query,
                              uint32_t com_flag) noexcept {
  JoinRows(kSdCardSize, text, name_space, query, com_flag, L";",
           [](IWbemClassObject& row) { return PairOf(row, L"Size", L",", L"Caption"); });
}

uint32_t ReadWMIPropNumDiskInRW(uint32_t com_flag) noexcept {
  uint32_t busiest = 0;
  const bool walked =
      RunQuery(kDiskInRw, L"ROOT\\CIMV2", L"Select * from Win32_PerfFormattedData_PerfDisk_PhysicalDisk", com_flag,
               [&busiest](IWbemClassObject& row) {
                 if (PropertyOf(row, L"Name", TextOf) == L"_Total") return;
                 busiest = std::max(busiest, PropertyOf(row, L"PercentDiskTime", NumberOf).value_or(0));
               });
  return walked ? busiest : 0;
}

}  // namespace vexa
