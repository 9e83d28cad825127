// Runs a fuzz target once on every file of the folders that are named. Prints how many there were.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

int main(int argc, char** argv) {
  size_t files = 0;
  for (int i = 1; i < argc; ++i) {
    for (const auto& file : std::filesystem::directory_iterator(argv[i])) {
      std::ifstream stream(file.path(), std::ios::binary);
      // Exactly as long as the input, so that a byte read behind it is seen.
      const std::vector<uint8_t> bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
      LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
      ++files;
    }
  }
  std::printf("%zu\n", files);
  return files == 0 ? 1 : 0;
}
