// Drawings of the report as inline SVG, without script and without fixed colours: the page's style gives those.
#ifndef CLIENT_CHARTS_H_
#define CLIENT_CHARTS_H_

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace vexahealth {

inline constexpr size_t kSignalBuckets = 9;

// Access points of one band by signal, the strongest first.
struct BandChart {
  std::string_view title;
  std::array<int64_t, kSignalBuckets> counts = {};
  int64_t scale = 1;  // the count that fills the height, so that bands compare
};
[[nodiscard]] std::string BandSvg(const BandChart& chart);

// The voltage of each cell on one axis; nothing for a cell that told none.
[[nodiscard]] std::string CellsSvg(std::span<const std::optional<int64_t>> millivolts);

}  // namespace vexahealth

#endif  // CLIENT_CHARTS_H_
