// Failures on demand.
#ifndef NOTEBOOK_FIRMWARE_RULES_H_
#define NOTEBOOK_FIRMWARE_RULES_H_

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cim.h"

namespace firmware {

// The steps of a caller that a rule can name.
enum class Step {
  kCreateInstance,
  kConnectServer,
  kSetBlanket,
  kExecQuery,
  kNext,
  kGetObject,
  kGetMethod,
  kSpawnInstance,
  kPut,
  kGet,
  kExecMethod,
};

std::optional<Step> StepFromName(std::string_view name);
std::string_view StepName(Step step);

using Arguments = std::vector<std::pair<std::string, uint64_t>>;

// One step as it happens. What a step does not have is empty.
struct Exchange {
  Step step;
  std::string_view namespace_name{};  // as NamespaceName() gives it
  std::string_view class_name{};
  std::string_view method{};
  std::string_view property{};
  const Arguments* inputs = nullptr;
};

struct Effects {
  std::optional<uint32_t> fail{};  // the result; the step is not carried out
  std::optional<uint32_t> delay_ms{};
  bool hang = false;
  bool absent = false;              // the out-parameters are missing
  std::optional<uint32_t> value{};  // of the out-parameter; the method is not carried out
  std::optional<Datum> raw{};       // what Get delivers
  std::optional<uint32_t> rows{};   // how many rows a query gives

  bool operator==(const Effects&) const = default;
};

// A rule acts on the steps that agree in everything the rule names.
struct Rule {
  Step step{};
  std::string namespace_name{};
  std::string class_name{};
  std::string method{};
  std::string property{};
  Arguments inputs{};
  uint64_t first = 1;
  uint64_t last = std::numeric_limits<uint64_t>::max();
  Effects effects{};
};

// Whether any rule looks at the exchange, so that it has to be counted.
bool AnyMatches(const std::vector<Rule>& rules, const Exchange& exchange);

// Counts the exchange in `counts`, one number a rule, and adds up what the rules do to it. Of two equal effects that
// of the earlier rule wins.
Effects ApplyRules(const std::vector<Rule>& rules, const Exchange& exchange, std::vector<uint64_t>& counts);

}  // namespace firmware

#endif  // NOTEBOOK_FIRMWARE_RULES_H_
