// The battery in a few lines of C++.
//
// usage: battery C:\folder\VexaWinIO64.dll
#include <cstdio>
#include <string>
#include <vexa/vexa.hpp>

namespace {

template <typename T>
void Show(const char* name, const vexa::Answer<T>& answer, const char* unit = "") {
  if (!answer) {
    std::printf("%s: none (%s)\n", name, vexa::ReasonName(answer.error()));
  } else if constexpr (std::is_same_v<T, std::string>) {
    std::printf("%s: %s%s\n", name, answer->c_str(), unit);
  } else {
    std::printf("%s: %lld%s\n", name, static_cast<long long>(*answer), unit);
  }
}

}  // namespace

int main(int count, char** arguments) {
  const std::string path = count > 1 ? arguments[1] : "";
  const auto library = vexa::Library::Load(std::wstring(path.begin(), path.end()));
  if (!library) {
    std::fprintf(stderr, "the library can't be loaded: error %lu\n", library.error().code);
    return 1;
  }
  const auto session = library->Start();
  if (!session) {
    std::fputs("the library is not ready\n", stderr);
    return 1;
  }
  library->TraceOutput(L"sample begins");
  Show("manufacturer", library->BatteryHealthyTable_ManufactureName());
  const auto charge = library->BatteryHealthyTable_Rsoc();
  Show("charge", charge, " %");
  Show("current", library->BatteryHealthyTable_Current(), " mA");
  Show("fully charged", library->BatteryHealthyTable_FullCharged());
  Show("manufacture information", library->BatteryHealthyTable_BatteryInformation());
  return charge ? 0 : 2;
}
