// Cases of a text file that lies beside the tests.
#ifndef NOTEBOOK_SCENARIO_TEST_CASES_H_
#define NOTEBOOK_SCENARIO_TEST_CASES_H_

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace scenario {

inline std::string ReadWhole(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.good()) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

struct TestCase {
  std::string name;
  std::vector<std::string> lines;
};

// Each begins with a line "--- NAME". What stands before the first one is a remark.
inline std::vector<TestCase> ReadCases(const std::string& path) {
  std::ifstream file(path);
  EXPECT_TRUE(file.good()) << path;
  std::vector<TestCase> cases;
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("--- ")) {
      cases.push_back({line.substr(4), {}});
    } else if (!cases.empty()) {
      cases.back().lines.push_back(line);
    }
  }
  return cases;
}

// The lines of one of them.
inline std::vector<std::string> LinesOfCase(const std::string& path, const std::string& name) {
  for (const TestCase& one : ReadCases(path)) {
    if (one.name == name) return one.lines;
  }
  ADD_FAILURE() << path << " has no case " << name;
  return {};
}

}  // namespace scenario

#endif  // NOTEBOOK_SCENARIO_TEST_CASES_H_
