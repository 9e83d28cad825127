#include "client/charts.h"

#include <algorithm>

#include "client/html_text.h"
#include "client/text.h"

namespace vexahealth {
namespace {

std::string SvgText(std::string_view kind, double x, double y, const std::string& text) {
  return Printf("<text class=\"%s\" x=\"%.1f\" y=\"%.1f\">", std::string(kind).c_str(), x, y) + HtmlText(text) +
         "</text>";
}

std::string Line(std::string_view kind, double x1, double y1, double x2, double y2) {
  return Printf("<line class=\"%s\" x1=\"%.1f\" y1=\"%.1f\" x2=\"%.1f\" y2=\"%.1f\"/>", std::string(kind).c_str(), x1,
                y1, x2, y2);
}

std::string Svg(int width, int height, const std::string& label, const std::string& content) {
  return Printf("<svg viewBox=\"0 0 %d %d\" role=\"img\" aria-label=\"", width, height) + HtmlText(label) + "\">" +
         content + "</svg>";
}

// The range of the axis in millivolts: whole tenths of a volt around the cells, and never so narrow that a healthy
// spread looks like a fault.
struct Axis {
  int64_t low = 0;
  int64_t high = 0;

  double Place(int64_t millivolts, double left, double right) const {
    return left + (right - left) * static_cast<double>(millivolts - low) / static_cast<double>(high - low);
  }
};

Axis AxisFor(std::span<const std::optional<int64_t>> cells) {
  constexpr int64_t kNarrowest = 400;
  int64_t lowest = INT64_MAX;
  int64_t highest = 0;
  for (const std::optional<int64_t>& cell : cells) {
    if (!cell) continue;
    lowest = std::min(lowest, *cell);
    highest = std::max(highest, *cell);
  }
  const int64_t missing = std::max<int64_t>(0, kNarrowest - (highest - lowest));
  const int64_t low = std::max<int64_t>(0, lowest - missing / 2);
  const int64_t high = highest + missing / 2;
  return {.low = low / 100 * 100, .high = (high + 99) / 100 * 100};
}

int64_t TickStep(const Axis& axis) {
  int64_t step = 100;
  for (const int64_t factor : {2, 5, 10, 20, 50, 100}) {
    if ((axis.high - axis.low) / step <= 6) break;
    step = 100 * factor;
  }
  return std::max(step, (axis.high - axis.low) / 6);
}

}  // namespace

std::string BandSvg(const BandChart& chart) {
  constexpr double kLeft = 8;
  constexpr double kStep = 34;
  constexpr double kBar = 24;
  constexpr double kBase = 132;
  constexpr double kTop = 26;
  std::string content = Line("axis", kLeft, kBase, kLeft + kStep * kSignalBuckets, kBase);
  std::string label = std::string(chart.title) + ", access points by signal:";
  const int64_t scale = std::max<int64_t>(chart.scale, 1);
  for (size_t i = 0; i < kSignalBuckets; ++i) {
    const int64_t count = chart.counts[i];
    const double left = kLeft + kStep * static_cast<double>(i) + (kStep - kBar) / 2;
    const double height =
        (kBase - kTop) * static_cast<double>(std::clamp<int64_t>(count, 0, scale)) / static_cast<double>(scale);
    const int strong = 10 * (static_cast<int>(i) + 1);  // without its sign
    if (count > 0) {
      content += Printf("<rect class=\"bar\" x=\"%.1f\" y=\"%.1f\" width=\"%.1f\" height=\"%.1f\" rx=\"2\"/>", left,
                        kBase - height, kBar, height);
      content += SvgText("count", left + kBar / 2, kBase - height - 6, std::to_string(count));
      label += Printf(" \u2212%d to \u2212%d dBm: %lld;", strong, strong + 10, static_cast<long long>(count));
    }
    content += SvgText("tick", kLeft + kStep * static_cast<double>(i), kBase + 15, Printf("\u2212%d", strong));
  }
  content += SvgText("tick", kLeft + kStep * kSignalBuckets, kBase + 15, "\u2212100");
  label.back() = '.';
  return Svg(330, 152, label, content);
}

std::string CellsSvg(std::span<const std::optional<int64_t>> millivolts) {
  constexpr double kLeft = 46;
  constexpr double kRight = 250;
  constexpr double kRow = 28;
  if (std::ranges::none_of(millivolts, [](const auto& cell) { return cell.has_value(); })) return {};
  const Axis axis = AxisFor(millivolts);
  std::string content;
  const double bottom = 12 + kRow * static_cast<double>(millivolts.size());
  const int64_t step = TickStep(axis);
  for (int64_t tick = axis.low; tick <= axis.high; tick += step) {
    const double x = axis.Place(tick, kLeft, kRight);
    content += Line("grid", x, 10, x, bottom);
    content += SvgText("tick", x, bottom + 15, Printf("%.1f", static_cast<double>(tick) / 1000));
  }
  std::string label = "Cell voltages:";
  for (size_t i = 0; i < millivolts.size(); ++i) {
    const double y = 12 + kRow * (static_cast<double>(i) + 0.5);
    const int cell = static_cast<int>(i) + 1;
    content += SvgText("name", kLeft - 10, y + 4, Printf("Cell %d", cell));
    if (!millivolts[i]) continue;
    const double x = axis.Place(*millivolts[i], kLeft, kRight);
    content += Line("grid", kLeft, y, kRight, y);
    content += Printf("<circle class=\"dot\" cx=\"%.1f\" cy=\"%.1f\" r=\"5\"/>", x, y);
    const std::string volts =
        Printf("%d.%03d V", static_cast<int>(*millivolts[i] / 1000), static_cast<int>(*millivolts[i] % 1000));
    content += SvgText("value", 326, y + 4, volts);
    label += Printf(" cell %d ", cell) + volts + ";";
  }
  label.back() = '.';
  return Svg(330, static_cast<int>(bottom) + 24, label, content);
}

}  // namespace vexahealth
