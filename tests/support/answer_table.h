// What exports answer on each scenario: a file of lines with tabs, a row for an export, a column for a scenario.
#ifndef VEXA_TESTS_SUPPORT_ANSWER_TABLE_H_
#define VEXA_TESTS_SUPPORT_ANSWER_TABLE_H_

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace vexa::test {

class AnswerTable {
 public:
  struct Row {
    std::string name;
    std::vector<std::string> values;  // in the order of the scenarios
  };

  explicit AnswerTable(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.good()) << path;
    for (std::string line; std::getline(file, line);) {
      if (line.starts_with('#')) continue;
      std::vector<std::string> fields;
      std::istringstream cut(line);
      for (std::string field; std::getline(cut, field, '\t');) fields.push_back(Unescaped(field));
      const std::string name = fields.front();
      fields.erase(fields.begin());
      if (scenarios.empty()) {
        scenarios = fields;
      } else {
        EXPECT_EQ(fields.size(), scenarios.size()) << name;
        rows.push_back({name, fields});
      }
    }
  }

  // The scenario's column; the number of scenarios for one that has none.
  size_t Column(const std::string& scenario) const {
    return static_cast<size_t>(std::ranges::find(scenarios, scenario) - scenarios.begin());
  }

  std::vector<std::string> scenarios;
  std::vector<Row> rows;

 private:
  // "\xNN" is a byte.
  static std::string Unescaped(std::string text) {
    for (size_t at = 0; (at = text.find("\\x", at)) != std::string::npos; ++at) {
      text.replace(at, 4, 1, static_cast<char>(std::stoi(text.substr(at + 2, 2), nullptr, 16)));
    }
    return text;
  }
};

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_ANSWER_TABLE_H_
