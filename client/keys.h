// The list of all readings, for people and for programs.
#ifndef CLIENT_KEYS_H_
#define CLIENT_KEYS_H_

#include <string>

namespace vexahealth {

// One line per reading: key, unit, label, export, metric.
[[nodiscard]] std::string KeysTable();

// {"schema_version", "tool", "keys": [{"key", "label", "section", "unit", "source", "metric", "detail",
// "commands"}]}.
[[nodiscard]] std::string KeysJson();

}  // namespace vexahealth

#endif  // CLIENT_KEYS_H_
