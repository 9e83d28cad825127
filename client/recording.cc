#include "client/recording.h"

#include <algorithm>
#include <utility>

namespace vexahealth {
namespace {

// What the export answers as it is: vexa.hpp would judge it.
using NumberExport = uint32_t (*)() noexcept;

void AskFans(Session& session, Recording& recording) {
  constexpr std::string_view kKeys[] = {"fan.1.speed", "fan.2.speed", "fan.3.speed", "fan.4.speed", "fan.5.speed"};
  const auto read = reinterpret_cast<decltype(&Quillo_Read_Fan)>(session.context().library->Find("Quillo_Read_Fan"));
  const std::optional<uint32_t> count = recording.Number("fan.count");
  if (read == nullptr || !count || *count > 0xFF) return;
  const uint32_t asked = session.Ec().FirmwareRoute() ? std::min(*count, 1u) : *count;
  for (uint32_t fan = 0; fan < std::min<size_t>(asked, std::size(kKeys)); ++fan) {
    recording.answers[kKeys[fan]].number = read(static_cast<int32_t>(fan));
  }
}

void AskRow(Session& session, const Row& row, Recording& recording) {
  const vexa::Library& library = *session.context().library;
  const vexa::AnyFunction function = library.Find(row.export_name);
  const bool text = row.kind == Kind::kText || row.kind == Kind::kByteList;
  if (function == nullptr) return;
  if (row.key == "adapter.controller_part") {
    const auto part = library.Adapter_Read_PD_IC_PN();
    recording.answers[row.key].number = part.has_value();
    if (part && part->length < VEXA_PD_IC_PN_CAPACITY) recording.part = *part;
  } else if (text) {
    const Answer answer = row.ask(session.context());
    recording.answers[row.key] = {.number = answer.has_value(), .text = answer ? answer->text : ""};
  } else if (row.ask != nullptr) {
    recording.answers[row.key].number = reinterpret_cast<NumberExport>(function)();
  }
}

bool WorthAsking(const Session& session, const Row& row) {
  const bool from_machine = row.gate != Gate::kLibrary;
  const bool waits = row.gate == Gate::kTableWaits;
  return from_machine && !row.detail && (!waits || session.context().may_wait);
}

}  // namespace

const Told* Recording::Find(std::string_view key) const {
  const auto found = answers.find(key);
  return found == answers.end() ? nullptr : &found->second;
}

std::optional<uint32_t> Recording::Number(std::string_view key) const {
  const Told* answer = Find(key);
  return answer == nullptr ? std::nullopt : std::optional(answer->number);
}

Recording Record(Session& session, std::string time) {
  Recording recording{.route = session.context().route, .time = std::move(time), .answers = {}, .part = {}};
  for (const auto rows : {std::span<const Row>(kRows), IdentityRows(), AdapterRows(), ThermalRows(), SystemRows()}) {
    for (const Row& row : rows) {
      if (!WorthAsking(session, row) || session.Ec().WithoutCall(row)) continue;
      session.Tell(row.label);
      AskRow(session, row, recording);
    }
  }
  AskFans(session, recording);
  return recording;
}

}  // namespace vexahealth
