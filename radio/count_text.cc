#include "radio/count_text.h"

#include <nlohmann/json.hpp>

#include "frame/line.h"

namespace vexa {

std::string CountText(std::span<const NamedCount> counts) {
  nlohmann::json object = nlohmann::json::object();
  for (const NamedCount& entry : counts) object[entry.name] = NumberText(entry.count);
  return object.dump();
}

}  // namespace vexa
