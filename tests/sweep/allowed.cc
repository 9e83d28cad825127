#include "tests/sweep/allowed.h"

#include <algorithm>
#include <cctype>
#include <string_view>
#include <vector>

#include "tests/sweep/subject.h"

namespace vexa::test {
namespace {

std::vector<std::string> Split(const std::string& text, std::string_view separators) {
  std::vector<std::string> pieces(1);
  for (const char character : text) {
    if (separators.find(character) == separators.npos) {
      pieces.back() += character;
    } else {
      pieces.emplace_back();
    }
  }
  return pieces;
}

// Every piece of the text stands in the whole one, in the same order; a piece may be empty.
bool IsPartOf(const std::string& text, const std::string& whole) {
  constexpr std::string_view kJoiners = ";, =";
  const std::vector<std::string> all = Split(whole, kJoiners);
  auto next = all.begin();
  for (const std::string& piece : Split(text, kJoiners)) {
    if (piece.empty()) continue;
    next = std::find(next, all.end(), piece);
    if (next == all.end()) return false;
    ++next;
  }
  return true;
}

bool HasFewerCharacters(const std::string& text, const std::string& whole) {
  auto next = whole.begin();
  for (const char character : text) {
    next = std::find(next, whole.end(), character);
    if (next == whole.end()) return false;
    ++next;
  }
  return true;
}

bool IsCut(const std::string& text, const std::string& whole) { return whole.starts_with(text); }

// The same text but for its numbers, none of which is larger.
bool HasFewerCounts(const std::string& text, const std::string& whole) {
  const std::vector<std::string> pieces = Split(text, "\""), all = Split(whole, "\"");
  const auto is_number = [](const std::string& piece) { return std::ranges::all_of(piece, ::isdigit); };
  return std::ranges::equal(pieces, all, [&](const std::string& one, const std::string& other) {
    return one == other || (!one.empty() && is_number(one) && is_number(other) && std::stoul(one) <= std::stoul(other));
  });
}

bool HasItems(const std::string& text, const std::string& whole, std::string_view item) {
  return std::ranges::equal(
      Split(text, ","), Split(whole, ","),
      [item](const std::string& one, const std::string& other) { return one == other || one == item; });
}

bool HasZeroBytes(uint32_t number, uint32_t whole) {
  for (int shift = 0; shift < 32; shift += 8) {
    const uint32_t byte = number >> shift & 0xFF;
    if (byte != 0 && byte != (whole >> shift & 0xFF)) return false;
  }
  return true;
}

class Judge {
 public:
  Judge(const Export& one, int machine, const Answer& good) : export_(one), machine_(kMachines[machine]), good_(good) {}

  bool AllowsNumber(const Answer& answer) const {
    if (!answer.has_number || answer.number == good_.number) return true;
    for (const ReservedNumber& reserved : export_.reserved) {
      if (reserved.value == answer.number && IsHere(reserved.machine)) return true;
    }
    for (const PartialAnswer& partial : export_.failing) {
      if (!IsHere(partial.machine)) continue;
      if (partial.as == "value" && partial.value == answer.number) return true;
      if (partial.as == "fewer" && answer.number <= good_.number) return true;
      if (partial.as == "zero_bytes" && HasZeroBytes(answer.number, good_.number)) return true;
    }
    const auto is_length = [&](const std::string& text) { return answer.number == text.size(); };
    return export_.kind == "text" && std::ranges::any_of(answer.texts, is_length);
  }

  bool AllowsText(const std::string& text, const std::string& whole) const {
    if (text == whole || text.empty() || text == kUntouched) return true;
    if (std::ranges::find(export_.reserved_texts, text) != export_.reserved_texts.end()) return true;
    return std::ranges::any_of(export_.failing, [&](const PartialAnswer& partial) {
      if (!IsHere(partial.machine)) return false;
      return (partial.as == "cut" && IsCut(text, whole)) || (partial.as == "fewer_items" && IsPartOf(text, whole)) ||
             (partial.as == "fewer_characters" && HasFewerCharacters(text, whole)) ||
             (partial.as == "fewer_counts" && HasFewerCounts(text, whole)) ||
             (partial.as == "items" && HasItems(text, whole, partial.text));
    });
  }

 private:
  bool IsHere(std::string_view machine) const { return machine.empty() || machine == machine_; }

  const Export& export_;
  std::string_view machine_;
  const Answer& good_;
};

}  // namespace

std::string WhyNotAllowed(const Export& one, int machine, const Plan& plan, const Answer& good, const Answer& answer) {
  // What a source says in an answer of the wrong length is a reading like any other.
  const bool fails_calls = plan.what == Plan::What::kCall || plan.what == Plan::What::kCallsFrom;
  const bool is_reading = fails_calls && plan.failure == Failure::kShortAnswer;
  if (answer == good || is_reading) return "";
  const Judge judge(one, machine, good);
  bool allowed = judge.AllowsNumber(answer) && answer.texts.size() <= good.texts.size();
  for (size_t i = 0; allowed && i < answer.texts.size() && one.kind == "text"; ++i) {
    allowed = judge.AllowsText(answer.texts[i], good.texts[i]);
  }
  return allowed ? "" : "answers " + Describe(answer) + " instead of " + Describe(good);
}

}  // namespace vexa::test
