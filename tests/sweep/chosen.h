// Which exports this run is about.
#ifndef VEXA_TESTS_SWEEP_CHOSEN_H_
#define VEXA_TESTS_SWEEP_CHOSEN_H_

#include <cstdlib>
#include <string_view>

#include "tests/sweep/exports.h"

namespace vexa::test {

// All, or those whose names contain the variable's text.
inline bool IsChosen(const Export& one) {
  const char* const only = std::getenv("VEXA_SWEEP_ONLY");
  return only == nullptr || std::string_view(one.name).find(only) != std::string_view::npos;
}

}  // namespace vexa::test

#endif  // VEXA_TESTS_SWEEP_CHOSEN_H_
