// The list of all readings, for people, programs and the reference page.
#ifndef CLIENT_KEYS_H_
#define CLIENT_KEYS_H_

#include <string>

namespace vexahealth {

// One line per reading: key, unit, label, export, metric.
[[nodiscard]] std::string KeysTable();

// {"schema_version", "tool", "keys": [{"key", "label", "section", "unit", "source", "metric", "commands"}]}.
[[nodiscard]] std::string KeysJson();

// The reference page docs/client-keys.md.
[[nodiscard]] std::string KeysMarkdown();

}  // namespace vexahealth

#endif  // CLIENT_KEYS_H_
