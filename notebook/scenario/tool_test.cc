// vexa-scenario as a user runs it.
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

namespace fs = std::filesystem;

class Tool : public testing::Test {
 protected:
  Tool() {
    std::string pattern = (fs::temp_directory_path() / "vexa-scenario.XXXXXX").string();
    folder_ = mkdtemp(pattern.data());
  }
  ~Tool() override { fs::remove_all(folder_); }

  void Write(const std::string& name, const std::string& text) { std::ofstream(folder_ / name) << text; }
  std::string Read(const std::string& name) {
    std::ifstream file(folder_ / name);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  // Exit code; what it wrote is in messages_.
  int Run(const std::string& arguments) {
    const std::string command =
        "cd '" + folder_.string() + "' && '" + SCENARIO_TOOL + "' " + arguments + " >messages 2>&1";
    const int status = std::system(command.c_str());
    messages_ = Read("messages");
    fs::remove(folder_ / "messages");
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  size_t Files() { return static_cast<size_t>(std::distance(fs::directory_iterator(folder_), {})); }

  fs::path folder_;
  std::string messages_;
};

TEST_F(Tool, WritesWhatEachPieceReads) {
  Write("good.json", R"({ "driver": { "version": 1 }, "firmware": { "log": false }, "radios": { "wlan": {} } })");
  for (const auto& [use, begins_with] : {std::pair{"build", "VXNK"},
                                         {"firmware", "{\n \"firmware\": {\n  \"log\": false\n }\n}\n"},
                                         {"radios", "{\n \"radios\": {\n  \"wlan\": {}\n }\n}\n"}}) {
    EXPECT_EQ(Run(std::string(use) + " good.json out"), 0) << messages_;
    EXPECT_EQ(messages_, "");
    EXPECT_THAT(Read("out"), testing::StartsWith(begins_with));
    EXPECT_EQ(Files(), 2u);
  }
  EXPECT_EQ(Run("check good.json"), 0);
}

TEST_F(Tool, AFaultyScenarioLeavesTheOldFile) {
  Write("bad.json", "{ \"driver\": { \"version\": -1 },\n\"firmware\": { \"logs\": false },\n\"x\": 1 }");
  Write("out", "old");
  for (const char* use : {"check bad.json", "build bad.json out", "firmware bad.json out", "radios bad.json out"}) {
    EXPECT_EQ(Run(use), 1);
    EXPECT_EQ(messages_,
              "bad.json:1: \"version\" must be 0x0 to 0xffffffff, not -1\n"
              "bad.json:2: unknown key \"logs\" in \"firmware\", which takes log, ec, devices, tables, rules\n"
              "bad.json:3: unknown section \"x\"\n");
  }
  EXPECT_EQ(Read("out"), "old");
  EXPECT_EQ(Files(), 2u);
}

TEST_F(Tool, FilesAndCallsThatCannotBeUsed) {
  Write("good.json", "{}");
  fs::create_directory(folder_ / "taken");
  const struct {
    const char* arguments;
    int code;
    const char* message;
  } kCalls[] = {
      {"check missing.json", 1, "missing.json: cannot be read: No such file or directory\n"},
      {"check .", 1, ".: cannot be read: Is a directory\n"},
      {"check /dev/zero", 1, "/dev/zero:1: the file is larger th"},
      {"build good.json no-folder/out.bin", 1, "no-folder/out.bin: cannot be written: No such file or directory\n"},
      {"build good.json taken", 1, "taken: cannot be written: "},
      {"", 2, "usage:"},
      {"check", 2, "usage:"},
      {"build a", 2, "usage:"},
      {"firmware a", 2, "usage:"},
      {"radios a", 2, "usage:"},
      {"check a b", 2, "usage:"},
      {"make a b", 2, "usage:"},
  };
  for (const auto& [arguments, code, message] : kCalls) {
    EXPECT_EQ(Run(arguments), code) << arguments;
    EXPECT_THAT(messages_, testing::StartsWith(message)) << arguments;
  }
  EXPECT_EQ(Files(), 2u);
}

}  // namespace
