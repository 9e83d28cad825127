#include "client/recording.h"

#include <utility>

namespace vexahealth {
namespace {

Answer NumberAnswer(uint32_t number) { return {.form = Answer::Form::kNumber, .number = number, .text = {}}; }

void AskFans(Session& session, Recording& recording) {
  constexpr std::string_view kKeys[] = {"fan.1.speed", "fan.2.speed", "fan.3.speed", "fan.4.speed", "fan.5.speed"};
  const auto read = session.Find<decltype(&Quillo_Read_Fan)>("Quillo_Read_Fan");
  const std::optional<uint32_t> count = recording.Number("fan.count");
  if (read == nullptr || !count || *count > 0xFF) return;
  const uint32_t asked = session.Ec().FirmwareRoute() ? std::min(*count, 1u) : *count;
  for (uint32_t fan = 0; fan < std::min<size_t>(asked, std::size(kKeys)); ++fan) {
    recording.answers[kKeys[fan]] = NumberAnswer(read(static_cast<int32_t>(fan)));
  }
}

void AskPartNumber(Session& session, const Row& row, Recording& recording) {
  const auto read = session.Find<decltype(&Adapter_Read_PD_IC_PN)>(row.export_name);
  if (read == nullptr) return;
  VexaPdIcPartNumber part{};
  const uint32_t answer = read(&part);
  recording.answers[row.key] = NumberAnswer(answer);
  if (answer == 1 && part.length < VEXA_PD_IC_PN_CAPACITY) recording.part = part;
}

bool WorthAsking(const Session& session, const Row& row) {
  const bool from_machine = row.gate != Gate::kLibrary;
  const bool waits = row.gate == Gate::kTableWaits;
  return from_machine && !row.detail && (!waits || session.context().may_wait);
}

}  // namespace

const Answer* Recording::Find(std::string_view key) const {
  const auto found = answers.find(key);
  return found == answers.end() ? nullptr : &found->second;
}

std::optional<uint32_t> Recording::Number(std::string_view key) const {
  const Answer* answer = Find(key);
  if (answer == nullptr || answer->form != Answer::Form::kNumber) return std::nullopt;
  return answer->number;
}

Recording Record(Session& session, std::string time) {
  Recording recording{.route = session.context().route, .time = std::move(time), .answers = {}, .part = {}};
  for (const auto rows : {std::span<const Row>(kRows), IdentityRows(), AdapterRows(), ThermalRows(), SystemRows()}) {
    for (const Row& row : rows) {
      if (!WorthAsking(session, row) || session.Ec().WithoutCall(row)) continue;
      if (row.key == "adapter.controller_part") {
        AskPartNumber(session, row, recording);
      } else if (row.signature != Signature::kOwn) {
        session.Tell(row.label);
        Answer answer = session.Ec().CallRow(row);
        if (answer.form != Answer::Form::kMissingExport) recording.answers[row.key] = std::move(answer);
      }
    }
  }
  AskFans(session, recording);
  return recording;
}

}  // namespace vexahealth
