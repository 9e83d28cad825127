// The system's table of network interfaces, as a test has it.
#ifndef VEXA_TESTS_SUPPORT_FAKE_INTERFACES_H_
#define VEXA_TESTS_SUPPORT_FAKE_INTERFACES_H_

#include <winsock2.h>
#include <ws2ipdef.h>

#include <gtest/gtest.h>
#include <iphlpapi.h>

#include <cstdlib>
#include <set>
#include <vector>

#include "tests/support/import_patch.h"

namespace vexa::test {

// One at a time. At its end every table must have been freed.
class FakeInterfaces {
 public:
  struct Interface {
    ULONG type, index;
    bool hardware, up;
  };

  explicit FakeInterfaces(HMODULE module = PatchedModule())
      : table_("GetIfTable2Ex", Table, module),
        entry_("GetIfEntry2", Entry, module),
        free_("FreeMibTable", Free, module) {
    now_ = this;
  }
  ~FakeInterfaces() {
    EXPECT_EQ(live_, 0) << "tables not freed";
    now_ = nullptr;
  }

  FakeInterfaces(const FakeInterfaces&) = delete;
  FakeInterfaces& operator=(const FakeInterfaces&) = delete;

  std::vector<Interface> list;
  NETIO_STATUS status = NO_ERROR;  // of reading the table
  std::set<ULONG> gone;            // whose entry can't be read any more
  std::vector<ULONG> asked;        // for their entries

 private:
  static NETIO_STATUS WINAPI Table(MIB_IF_TABLE_LEVEL, MIB_IF_TABLE2** table) {
    *table = nullptr;
    if (now_->status != NO_ERROR) return now_->status;
    ++now_->live_;
    *table =
        static_cast<MIB_IF_TABLE2*>(std::calloc(1, sizeof(MIB_IF_TABLE2) + now_->list.size() * sizeof(MIB_IF_ROW2)));
    for (const Interface& one : now_->list) (*table)->Table[(*table)->NumEntries++].InterfaceIndex = one.index;
    return NO_ERROR;
  }
  static NETIO_STATUS WINAPI Entry(MIB_IF_ROW2* row) {
    now_->asked.push_back(row->InterfaceIndex);
    for (const Interface& one : now_->list) {
      if (one.index != row->InterfaceIndex || now_->gone.contains(one.index)) continue;
      row->Type = one.type;
      row->InterfaceAndOperStatusFlags.HardwareInterface = one.hardware;
      // The neighbouring flags mean something else.
      row->InterfaceAndOperStatusFlags.FilterInterface = row->InterfaceAndOperStatusFlags.ConnectorPresent =
          !one.hardware;
      row->OperStatus = one.up ? IfOperStatusUp : IfOperStatusDormant;
      return NO_ERROR;
    }
    return ERROR_FILE_NOT_FOUND;
  }
  static void WINAPI Free(void* table) {
    if (table != nullptr) --now_->live_;
    std::free(table);
  }

  static inline FakeInterfaces* now_ = nullptr;
  int live_ = 0;
  ImportPatch table_, entry_, free_;
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_FAKE_INTERFACES_H_
