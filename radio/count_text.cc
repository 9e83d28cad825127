// Written by hand: the JSON library's objects allocate while they are destroyed, which ends the process when memory is
// short.
#include "radio/count_text.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "frame/line.h"

namespace vexa {

std::string CountText(std::span<const NamedCount> counts) {
  std::vector<NamedCount> sorted(counts.begin(), counts.end());
  std::ranges::sort(sorted, {}, [](const NamedCount& count) { return std::string_view(count.name); });
  std::string text;
  for (const NamedCount& entry : sorted) {
    text += text.empty() ? "{\"" : ",\"";
    text += entry.name;
    text += "\":\"" + NumberText(entry.count) + "\"";
  }
  return text.empty() ? "{}" : text + "}";
}

}  // namespace vexa
