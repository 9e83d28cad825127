// Free space of the volumes on the disks of one kind: disks, their numbers, their partitions, their volumes.
#include <algorithm>
#include <string>

#include "inventory/answer.h"
#include "inventory/texts.h"
#include "vexa/inventory.h"
#include "wmi/decimal.h"
#include "wmi/query_engine.h"

namespace vexa {
namespace {

struct UsageMember {
  const char* name;
  const char* start_line;
  const char* end_line;
  const wchar_t* disks;  // the query for the disks
};

constexpr std::wstring_view kVolumePath = L"\\\\?\\Volume";

// A query with a text in single quotes at its end.
std::wstring Query(std::wstring_view head, std::wstring_view text, const wchar_t* tail) {
  std::wstring query(head);
  query += text;
  return query += tail;
}

std::wstring Ask(const std::wstring& query, const wchar_t* property, uint32_t com_flag) {
  std::wstring text;
  ReadWMIPropStr(text, kStorageNamespace, query.c_str(), property, com_flag);
  return text;
}

bool IsNumber(const std::wstring& text) {
  return !text.empty() && std::ranges::all_of(text, [](wchar_t c) { return c >= L'0' && c <= L'9'; });
}

// The volumes' free bytes, joined with ",".
std::wstring FreeBytesOf(std::wstring_view serial, uint32_t com_flag) {
  // A pattern without a serial would find every disk.
  if (serial.empty()) return {};
  uint32_t disk = 0;
  // Kept: the last disk whose serial number contains this one.
  if (ReadWMIProp(kStorageNamespace,
                  Query(L"select * from MSFT_Disk where SerialNumber like '%", QueryPattern(serial), L"%'").c_str(),
                  L"Number", disk, com_flag) != 0) {
    return {};
  }
  std::wstring joined;
  // A partition has several access paths, of which one names its volume.
  const std::wstring paths = Ask(Query(L"select * from MSFT_Partition where DiskNumber = '", WideDecimal(disk), L"'"),
                                 L"AccessPaths", com_flag);
  for (const std::wstring_view path : Pieces(paths, L';')) {
    if (!path.starts_with(kVolumePath)) continue;
    const std::wstring bytes =
        Ask(Query(L"select * from MSFT_Volume where Path = '", QueryLiteral(path), L"'"), L"SizeRemaining", com_flag);
    if (!IsNumber(bytes)) continue;
    if (!joined.empty()) joined += L',';
    joined += bytes;
  }
  return joined;
}

uint32_t AnswerUsage(const UsageMember& member, wchar_t* free_bytes, wchar_t* serials, uint32_t com_flag) noexcept {
  if (serials != nullptr) *serials = L'\0';
  uint32_t longest = 0;
  const uint32_t length =
      AnswerText(member.name, member.start_line, member.end_line, free_bytes, [&](std::wstring& free) {
        const std::wstring disks = Ask(member.disks, L"SerialNumber", com_flag);
        bool first = true;
        for (const std::wstring_view serial : Pieces(disks, L';')) {
          if (!std::exchange(first, false)) free += L';';
          free += FreeBytesOf(Trimmed(serial), com_flag);
        }
        longest = Deliver(disks, serials);
      });
  return std::max(length, longest);
}

}  // namespace
}  // namespace vexa

// A row of the family: the export, and what UsageMember holds behind its name.
#define VEXA_USAGE_MEMBER(export_name, ...)                                                 \
  uint32_t export_name(wchar_t* free_bytes, wchar_t* serials, uint32_t com_flag) noexcept { \
    static constexpr vexa::UsageMember kMember{#export_name, __VA_ARGS__};                  \
    return vexa::AnswerUsage(kMember, free_bytes, serials, com_flag);                       \
  }

VEXA_USAGE_MEMBER(WMIGetHDDUsage, "WMIGetHDDUsage Start", "WMIGetHDDUsage End",
                  L"select * from MSFT_PhysicalDisk where mediatype=3")
VEXA_USAGE_MEMBER(WMIGetSSDUsage, "WMIGetSSDUsage Start", "WMIGetSSDUsage End",
                  L"select * from MSFT_PhysicalDisk where mediatype=4")
