// Accounts for the texts and arrays of COM automation that this program allocates and is handed.
#ifndef VEXA_TESTS_SUPPORT_AUTOMATION_LEDGER_H_
#define VEXA_TESTS_SUPPORT_AUTOMATION_LEDGER_H_

#include <memory>
#include <vector>

#include "tests/support/import_patch.h"

namespace vexa::test {

// One at a time. At its end every BSTR and SAFEARRAY made meanwhile must have been freed, and nothing freed twice.
class AutomationLedger {
 public:
  AutomationLedger();
  ~AutomationLedger();

  // Texts and arrays that live now.
  static int Live();

 private:
  std::vector<std::unique_ptr<ImportPatch>> patches_;
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_AUTOMATION_LEDGER_H_
