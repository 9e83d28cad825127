#include "radio/count_text.h"

#include <string>

#include <nlohmann/json.hpp>

namespace vexa {
namespace {

// Emptied before it is destroyed: with members left, the JSON library allocates while destroying them, and a shortage of
// memory there would end the process.
class Members {
 public:
  Members() = default;
  ~Members() { object_.clear(); }
  Members(const Members&) = delete;
  Members& operator=(const Members&) = delete;

  void Add(const NamedCount& entry) { object_[entry.name] = std::to_string(entry.count); }
  [[nodiscard]] std::string Text() const { return object_.dump(); }

 private:
  nlohmann::json object_ = nlohmann::json::object();
};

}  // namespace

std::string CountText(std::span<const NamedCount> counts) {
  Members members;
  for (const NamedCount& entry : counts) members.Add(entry);
  return members.Text();
}

}  // namespace vexa
