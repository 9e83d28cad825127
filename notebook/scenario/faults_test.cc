// Every fault is found, and told with its own line.
#include <gmock/gmock.h>

#include "test_cases.h"
#include "test_notebook.h"

namespace scenario {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr std::string_view kMark = "  //! ";

TEST(Faults, OfEverySection) {
  const std::vector<TestCase> cases = ReadCases(TEST_FOLDER "/faults.txt");
  EXPECT_GT(cases.size(), 15u);
  for (const TestCase& one : cases) {
    SCOPED_TRACE(one.name);
    std::string text;
    std::vector<testing::Matcher<std::string>> expected;
    for (size_t i = 0; i < one.lines.size(); ++i) {
      const std::string& line = one.lines[i];
      const size_t end = std::min(line.find(kMark), line.size());
      text += line.substr(0, end) + "\n";
      for (size_t mark = end; mark < line.size();) {
        const size_t next = std::min(line.find(kMark, mark + 1), line.size());
        const size_t message = mark + kMark.size();
        expected.push_back(StartsWith(std::to_string(i + 1) + ": " + line.substr(message, next - message)));
        mark = next;
      }
    }
    EXPECT_THAT(FaultsOf(text), testing::ElementsAreArray(expected));
  }
}

TEST(Faults, OfTextsThatNoFileOfLinesHolds) {
  EXPECT_THAT(FaultsOf(""), ElementsAre(StartsWith("1: syntax error")));
  EXPECT_THAT(FaultsOf("{\r\n\"driver\": 1 2\r\n}"), ElementsAre(StartsWith("2: syntax error")));
  EXPECT_THAT(FaultsOf(std::string(1 << 20, '[')), ElementsAre("1: nested deeper than 32 levels"));
  std::string objects;
  for (int i = 0; i < 100000; ++i) objects += "{\"ec\":\n";
  EXPECT_THAT(FaultsOf(objects), ElementsAre("33: nested deeper than 32 levels"));
  EXPECT_THAT(FaultsOf("{" + std::string(kMaxScenarioSize, ' ') + "}"),
              ElementsAre(StartsWith("1: the file is larger")));
}

std::string Rows(int count, const std::string& row) {
  std::string text;
  for (int i = 0; i < count; ++i) text += (i == 0 ? "" : ",\n") + row;
  return text;
}

// Each section at its limit and one beyond; the image must not grow past what the driver takes.
TEST(Faults, OfTooMuch) {
  const std::string rule = R"({"on":{"open":"VexaSAIO"},"then":{"delay_ms":1}})";
  EXPECT_THAT(FaultsOf("{\"rules\":[" + Rows(1024, rule) + "]}"), IsEmpty());
  EXPECT_THAT(FaultsOf("{\"rules\":[" + Rows(1025, rule) + "]}"),
              ElementsAre("1: \"rules\" has 1025 entries; the limit is 1024"));
  std::string methods, groups;
  for (int i = 0; i < 65; ++i) {
    methods += (i == 0 ? "" : ",\n") + std::string(R"({"method":"GETX","arguments":[)") + std::to_string(i) +
               R"(],"hex":")" + std::string(2048, '0') + "\"}";
  }
  EXPECT_THAT(FaultsOf("{\"acpi\":{\"methods\":[" + methods + "]}}"),
              ElementsAre("65: the methods answer more than 65536 bytes"));
  for (int i = 0; i < 128; ++i) {
    const std::string items = Rows(255, R"([{"offset":2,"hex":")" + std::string(400, '0') + "\"}]");
    groups += (i == 0 ? "" : ",\n") + std::string(R"({"group":)") + std::to_string(i) +
              (i < 2 ? R"(,"lists":[{"index":1,"items":[)" + items + "]}]}" : "}");
  }
  EXPECT_THAT(FaultsOf("{\"ec\":{\"groups\":[" + groups + "]}}"),
              ElementsAre(StartsWith("256: the scenario has more than 255 lists or 65536 bytes")));
}

}  // namespace
}  // namespace scenario
