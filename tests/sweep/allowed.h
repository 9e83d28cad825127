// Whether an export may answer so after a failure.
#ifndef VEXA_TESTS_SWEEP_ALLOWED_H_
#define VEXA_TESTS_SWEEP_ALLOWED_H_

#include <string>

#include "tests/sweep/exports.h"
#include "tests/sweep/injector.h"

namespace vexa::test {

// Empty when the catalogue allows the answer; else why it does not.
std::string WhyNotAllowed(const Export& one, int machine, const Plan& plan, const Answer& good, const Answer& answer);

}  // namespace vexa::test

#endif  // VEXA_TESTS_SWEEP_ALLOWED_H_
