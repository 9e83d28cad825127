#include "section_only.h"

#include <nlohmann/json.hpp>

namespace scenario {
namespace {

using Json = nlohmann::ordered_json;

Json ToJson(const JsonValue& value) {
  switch (value.kind) {
    case JsonValue::Kind::kNull: return nullptr;
    case JsonValue::Kind::kBoolean: return value.boolean;
    case JsonValue::Kind::kInteger:
      return value.negative ? Json(static_cast<int64_t>(0 - value.magnitude)) : Json(value.magnitude);
    case JsonValue::Kind::kFraction: return value.real;
    case JsonValue::Kind::kText: return value.text;
    case JsonValue::Kind::kArray: {
      Json array = Json::array();
      for (const JsonValue& item : value.items) array.push_back(ToJson(item));
      return array;
    }
    case JsonValue::Kind::kObject: break;
  }
  Json object = Json::object();
  for (const JsonValue& member : value.items) object[member.key] = ToJson(member);
  return object;
}

}  // namespace

std::string SectionOnly(const JsonValue& document, std::string_view key) {
  Json scenario = Json::object();
  for (const JsonValue& member : document.items) {
    if (member.key == key) scenario[member.key] = ToJson(member);
  }
  return scenario.dump(1) + "\n";
}

}  // namespace scenario
