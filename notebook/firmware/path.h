// Object paths: [\\server\namespace:]Class[.Key=value,...].
#ifndef NOTEBOOK_FIRMWARE_PATH_H_
#define NOTEBOOK_FIRMWARE_PATH_H_

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "model.h"

namespace firmware {

struct ObjectPath {
  std::string class_name{};
  bool singleton = false;                                   // "Class=@"
  std::vector<std::pair<std::string, std::string>> keys{};  // values as texts; no name in "Class=value"

  bool IsClass() const { return !singleton && keys.empty(); }
};

std::optional<ObjectPath> ParsePath(std::string_view text);

// The part of a path that follows the namespace; nothing while a key is null.
std::optional<std::string> RelativePath(const ClassShape& shape, const Row& row);

// The row that a path of its class names, or null.
const Row* FindRow(const Table& table, const ObjectPath& path);

}  // namespace firmware

#endif  // NOTEBOOK_FIRMWARE_PATH_H_
