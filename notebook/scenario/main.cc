// vexa-scenario: checks a scenario and turns it into what the pieces of the notebook read.
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "scenario.h"

namespace {

constexpr char kUsage[] =
    "usage: vexa-scenario check FILE.json\n"
    "       vexa-scenario build FILE.json OUT.bin       for the driver\n"
    "       vexa-scenario firmware FILE.json OUT.json   for the firmware\n"
    "       vexa-scenario radios FILE.json OUT.json     for the radios\n";

int Report(const std::string& file, std::string_view what) {
  std::fprintf(stderr, "%s: %.*s\n", file.c_str(), static_cast<int>(what.size()), what.data());
  return EXIT_FAILURE;
}

// At most one byte more than a scenario may have, so that an endless file ends too.
std::optional<std::string> ReadFile(const std::string& path) {
  std::FILE* file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) return std::nullopt;
  std::string text(scenario::kMaxScenarioSize + 1, '\0');
  text.resize(std::fread(text.data(), 1, text.size(), file));
  const bool failed = std::ferror(file) != 0;
  const int error = errno;
  std::fclose(file);
  errno = error;
  if (failed) return std::nullopt;
  return text;
}

// Writes beside the target and renames, so that nobody ever sees half a file.
bool WriteFile(const std::string& path, std::string_view bytes) {
  std::string temporary = path + ".XXXXXX";
  const int descriptor = mkstemp(temporary.data());
  if (descriptor < 0) return false;
  std::FILE* file = fdopen(descriptor, "wb");
  bool good = file != nullptr && fchmod(descriptor, 0644) == 0 &&
              std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
  int error = errno;
  if (file != nullptr && std::fclose(file) != 0) {
    good = false;
    error = errno;
  }
  if (good && std::rename(temporary.c_str(), path.c_str()) == 0) return true;
  if (good) error = errno;
  unlink(temporary.c_str());
  errno = error;
  return false;
}

// "firmware" and "radios" are sections of the scenario.
std::string Compile(std::string_view text, const std::string& use, scenario::Faults& faults) {
  if (use == "firmware" || use == "radios") return scenario::ScenarioOf(use, text, faults);
  const std::vector<uint8_t> image = scenario::CompileScenario(text, faults);
  return {image.begin(), image.end()};
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  const bool check = arguments.size() == 2 && arguments[0] == "check";
  const bool write =
      arguments.size() == 3 && (arguments[0] == "build" || arguments[0] == "firmware" || arguments[0] == "radios");
  if (!check && !write) {
    std::fputs(kUsage, stderr);
    return 2;
  }
  const std::string& file = arguments[1];
  const std::optional<std::string> text = ReadFile(file);
  if (!text) return Report(file, std::string("cannot be read: ") + std::strerror(errno));
  scenario::Faults faults;
  const std::string output = Compile(*text, arguments[0], faults);
  for (const scenario::Fault& fault : faults.List()) {
    std::fprintf(stderr, "%s:%d: %s\n", file.c_str(), fault.line, fault.message.c_str());
  }
  if (!faults.Empty()) return EXIT_FAILURE;
  if (!check && !WriteFile(arguments[2], output)) {
    return Report(arguments[2], std::string("cannot be written: ") + std::strerror(errno));
  }
  return EXIT_SUCCESS;
}
