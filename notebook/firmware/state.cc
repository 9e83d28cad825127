#include "state.h"

#include <nlohmann/json.hpp>

namespace firmware {
namespace {

using Json = nlohmann::json;

State ReadState(const Json& json, std::string_view scenario) {
  State state{.scenario = std::string(scenario)};
  if (json.at("scenario").get<std::string>() != scenario) return state;
  for (const Json& row : json.at("devices")) state.controls[row.at("device")] = row.at("control");
  for (const Json& row : json.at("ec")) state.ec[{row.at("table"), row.at("offset")}] = row.at("byte");
  for (const Json& row : json.at("gauge")) state.gauge[row.at("register")] = row.at("byte");
  json.at("counters").get_to(state.counters);
  json.at("rules").get_to(state.rules);
  return state;
}

}  // namespace

std::string StateToJson(const State& state) {
  Json json = {{"scenario", state.scenario}, {"devices", Json::array()},   {"ec", Json::array()},
               {"gauge", Json::array()},     {"counters", state.counters}, {"rules", state.rules}};
  for (const auto& [device, control] : state.controls) {
    json["devices"].push_back({{"device", device}, {"control", control}});
  }
  for (const auto& [place, byte] : state.ec) {
    json["ec"].push_back({{"table", place.first}, {"offset", place.second}, {"byte", byte}});
  }
  for (const auto& [number, byte] : state.gauge) json["gauge"].push_back({{"register", number}, {"byte", byte}});
  return json.dump(1) + "\n";
}

State StateFromJson(std::string_view text, std::string_view scenario) {
  try {
    return ReadState(Json::parse(text), scenario);
  } catch (const Json::exception&) {
    return {.scenario = std::string(scenario)};
  }
}

}  // namespace firmware
