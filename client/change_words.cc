// The words of a change: from the command line, and in the output.
#include <array>
#include <string>

#include "client/change.h"
#include "client/exit_codes.h"
#include "client/text.h"

namespace vexahealth {
namespace {

struct Word {
  std::string_view text;
  int32_t value;
};

constexpr std::array<Word, 3> kLimitWords = {{{"60", 60}, {"80", 80}, {"100", 100}}};
constexpr std::array<Word, 2> kFanWords = {{{"on", 1}, {"off", 0}}};

static_assert(kLimitWords[0].value == kChargeLimits[0] && kLimitWords[1].value == kChargeLimits[1] &&
              kLimitWords[2].value == kChargeLimits[2]);

template <size_t kCount>
ParsedChange ParseWord(Setting setting, const std::array<Word, kCount>& words, std::string_view value) {
  std::string allowed;
  for (size_t i = 0; i < kCount; ++i) {
    if (words[i].text == value) return {.request = {.setting = setting, .value = words[i].value}, .error = {}};
    if (i > 0) allowed += i + 1 == kCount ? " or " : ", ";
    allowed += words[i].text;
  }
  return {.request = {},
          .error = std::string(SettingName(setting)) + " takes " + allowed + ", not \"" + std::string(value) + "\""};
}

}  // namespace

ParsedChange ParseChange(std::string_view setting, std::string_view value) {
  if (setting == SettingName(Setting::kChargeLimit)) return ParseWord(Setting::kChargeLimit, kLimitWords, value);
  if (setting == SettingName(Setting::kQuietFan)) return ParseWord(Setting::kQuietFan, kFanWords, value);
  return {.request = {},
          .error = "there is no setting \"" + std::string(setting) + "\" to change: charge-limit or quiet-fan"};
}

std::string_view SettingName(Setting setting) {
  return setting == Setting::kChargeLimit ? "charge-limit" : "quiet-fan";
}

std::string RequestedText(const ChangeRequest& request) {
  if (request.setting == Setting::kChargeLimit) return Printf("charge-limit %d %%", request.value);
  return request.value != 0 ? "quiet-fan on" : "quiet-fan off";
}

SettingRow SupportRow(Setting setting) { return setting == Setting::kChargeLimit ? kLimitSupported : kFanState; }

SettingRow RememberedRow(Setting setting) {
  return setting == Setting::kChargeLimit ? kLimitRemembered : kFanRemembered;
}

std::string_view OutcomeName(Outcome outcome) {
  switch (outcome) {
    case Outcome::kNotTried: return "not_tried";
    case Outcome::kNotSupported: return "not_supported";
    case Outcome::kPlanned: return "planned";
    case Outcome::kRefused: return "refused";
    case Outcome::kAccepted: return "accepted";
    case Outcome::kNotConfirmed: return "not_confirmed";
  }
  return "not_tried";
}

int ExitCodeFor(Outcome outcome) {
  switch (outcome) {
    case Outcome::kPlanned:
    case Outcome::kAccepted: return kExitOk;
    case Outcome::kNotTried:
    case Outcome::kNotSupported: return kExitNotSupported;
    case Outcome::kRefused: return kExitRefused;
    case Outcome::kNotConfirmed: return kExitNotConfirmed;
  }
  return kExitNotSupported;
}

}  // namespace vexahealth
