// What the library answers on this machine, as a scenario that the simulated notebook plays back.
#ifndef CLIENT_RECORDING_H_
#define CLIENT_RECORDING_H_

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "client/families.h"
#include "client/html_report.h"

namespace vexahealth {

// The bare answers of the exports that `status` is made of; the number of a text is 1 where the export told one. An
// export that was not called has none.
struct Recording {
  Route route = Route::kUnknown;
  std::string time;
  std::map<std::string_view, Told> answers;  // by the key of its row
  std::optional<VexaPdIcPartNumber> part;    // what Adapter_Read_PD_IC_PN filled in, where it answered 1

  const Told* Find(std::string_view key) const;
  std::optional<uint32_t> Number(std::string_view key) const;
};

// Asks each export once. The one that may wait for seconds only where the context allows it.
[[nodiscard]] Recording Record(Session& session, std::string time);

// The scenario as `vexa-scenario build` takes it. Masked: the battery's serial number is 0 and its manufacture
// information 32 zeros.
[[nodiscard]] std::string ScenarioText(const Recording& recording, Serials serials);

}  // namespace vexahealth

#endif  // CLIENT_RECORDING_H_
