#include "client/keys.h"

#include <algorithm>
#include <vector>

#include "client/families.h"
#include "client/json_parts.h"
#include "client/prometheus.h"
#include "client/text.h"

namespace vexahealth {
namespace {

std::vector<const Row*> AllRows() {
  std::vector<const Row*> rows;
  for (size_t section = 0; section <= static_cast<size_t>(kLastSection); ++section) {
    for (const Family& family : Families()) {
      for (const Row& row : family.rows) {
        if (row.section == static_cast<Section>(section)) rows.push_back(&row);
      }
    }
  }
  return rows;
}

// The metric of a number; texts have none of their own.
std::string MetricText(const Row& row) {
  if (IsText(row.kind)) return "vexahealth_text_info{key=\"" + std::string(row.key) + "\"}";
  const Metric metric = MetricOf(row);
  return metric.name + (metric.index.empty() ? "" : "{index=\"" + metric.index + "\"}");
}

void Pad(std::string& line, std::string_view text, size_t width) {
  line += text;
  const size_t columns = DisplayWidth(text);
  line.append(columns < width ? width - columns : 0, ' ');
  line += "  ";
}

}  // namespace

std::string KeysTable() {
  std::string table;
  for (const Row* row : AllRows()) {
    std::string line;
    Pad(line, row->key, 34);
    Pad(line, UnitOf(row->kind).value_or("-"), 13);
    Pad(line, row->label, 28);
    table += line + std::string(row->export_name) + "\n";
  }
  return table;
}

std::string KeysJson() {
  Json document = Document();
  Json& keys = document["keys"] = Json::array();
  for (const Row* row : AllRows()) {
    const auto unit = UnitOf(row->kind);
    Json commands = Json::array();
    for (const Command& command : Commands()) {
      if (std::ranges::find(command.sections, row->section) != command.sections.end()) commands.push_back(command.name);
    }
    keys.push_back({{"key", row->key},
                    {"label", row->label},
                    {"section", SectionTitle(row->section)},
                    {"unit", unit ? Json(*unit) : Json()},
                    {"source", row->export_name},
                    {"metric", MetricText(*row)},
                    {"detail", row->detail},
                    {"commands", std::move(commands)}});
  }
  return Dump(document);
}

}  // namespace vexahealth
