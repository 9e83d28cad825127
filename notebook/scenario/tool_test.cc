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

TEST_F(Tool, BuildsAnImage) {
  Write("good.json", "{ \"driver\": { \"version\": 1 } }");
  EXPECT_EQ(Run("build good.json out.bin"), 0);
  EXPECT_EQ(messages_, "");
  EXPECT_EQ(Read("out.bin").substr(0, 4), "VXNK");
  EXPECT_EQ(Files(), 2u);
  EXPECT_EQ(Run("check good.json"), 0);
}

TEST_F(Tool, WritesTheFirmwaresPart) {
  Write("good.json", R"({ "driver": { "version": 1 }, "firmware": { "log": false } })");
  EXPECT_EQ(Run("firmware good.json out.json"), 0);
  EXPECT_EQ(messages_, "");
  const std::string good = Read("out.json");
  EXPECT_EQ(good, "{\n \"firmware\": {\n  \"log\": false\n }\n}\n");
  Write("bad.json", "{ \"driver\": { \"version\": -1 },\n\"firmware\": { \"logs\": false } }");
  for (const char* arguments :
       {"check bad.json", "build bad.json out.json", "firmware bad.json out.json", "radios bad.json out.json"}) {
    EXPECT_EQ(Run(arguments), 1);
    EXPECT_THAT(messages_, testing::HasSubstr("bad.json:1: \"version\" must be"));
    EXPECT_THAT(messages_, testing::HasSubstr("bad.json:2: unknown key \"logs\" in \"firmware\""));
  }
  EXPECT_EQ(Read("out.json"), good);
}

TEST_F(Tool, WritesTheRadiosPart) {
  Write("good.json", R"({ "firmware": { "log": false }, "radios": { "wlan": { "interfaces": [] } } })");
  EXPECT_EQ(Run("radios good.json out.json"), 0);
  EXPECT_EQ(Read("out.json"), "{\n \"radios\": {\n  \"wlan\": {\n   \"interfaces\": []\n  }\n }\n}\n");
  Write("bad.json", "{ \"radios\":\n{ \"wifi\": {} } }");
  EXPECT_EQ(Run("check bad.json"), 1);
  EXPECT_THAT(messages_, testing::HasSubstr("bad.json:2: unknown key \"wifi\" in \"radios\""));
}

TEST_F(Tool, AFaultyScenarioLeavesTheOldImage) {
  Write("bad.json", "{\n\"driver\": { \"version\": -1 },\n\"x\": 1\n}");
  Write("out.bin", "old");
  EXPECT_EQ(Run("build bad.json out.bin"), 1);
  EXPECT_EQ(messages_,
            "bad.json:2: \"version\" must be 0x0 to 0xffffffff, not -1\nbad.json:3: unknown section \"x\"\n");
  EXPECT_EQ(Read("out.bin"), "old");
  EXPECT_EQ(Files(), 2u);
  EXPECT_EQ(Run("check bad.json"), 1);
}

TEST_F(Tool, FilesThatCannotBeUsed) {
  EXPECT_EQ(Run("check missing.json"), 1);
  EXPECT_EQ(messages_, "missing.json: cannot be read: No such file or directory\n");
  EXPECT_EQ(Run("check ."), 1);
  EXPECT_EQ(messages_, ".: cannot be read: Is a directory\n");
  EXPECT_EQ(Run("check /dev/zero"), 1);
  EXPECT_EQ(messages_.substr(0, 34), "/dev/zero:1: the file is larger th");
  Write("good.json", "{}");
  EXPECT_EQ(Run("build good.json no-folder/out.bin"), 1);
  EXPECT_EQ(messages_, "no-folder/out.bin: cannot be written: No such file or directory\n");
  fs::create_directory(folder_ / "taken");
  EXPECT_EQ(Run("build good.json taken"), 1);
  EXPECT_EQ(Files(), 2u);
}

TEST_F(Tool, WrongUse) {
  for (const char* arguments : {"", "check", "build a", "firmware a", "radios a", "check a b", "make a b"}) {
    EXPECT_EQ(Run(arguments), 2);
    EXPECT_EQ(messages_.substr(0, 6), "usage:");
  }
}

}  // namespace
