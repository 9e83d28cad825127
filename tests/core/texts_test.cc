// Lines and the driver's path.
#include <gtest/gtest.h>

#include <cstdint>

#include "frame/driver_path.h"
#include "frame/line.h"

namespace vexa::test {
namespace {

TEST(Line, NumbersAreDecimalAndHexIsLowerCaseWithoutPadding) {
  EXPECT_EQ(Line("a ", 2147483647u, " b ", int32_t{-200}, std::string(" c")), "a 2147483647 b -200 c");
  EXPECT_EQ(HexText(uint8_t{0x0A}), "a");
  EXPECT_EQ(HexText(uint8_t{0}), "0");
  EXPECT_EQ(HexText(0xDEADBEEFu), "deadbeef");
  EXPECT_EQ(NumberText(UINT64_MAX), "18446744073709551615");
  EXPECT_EQ(NumberText(INT64_MIN), "-9223372036854775808");
}

TEST(ServiceFolder, WindowsFolderInAnyCaseAndNothingElse) {
  EXPECT_EQ(ServiceFolder(L"C:\\Windows\\System32"), L"\\SystemRoot\\System32");
  EXPECT_EQ(ServiceFolder(L"c:\\WINDOWS\\System32\\DriverStore"), L"\\SystemRoot\\System32\\DriverStore");
  EXPECT_EQ(ServiceFolder(L"D:\\Tools"), L"\\??\\D:\\Tools");
  EXPECT_EQ(ServiceFolder(L"C:\\Windows2\\x"), L"\\??\\C:\\Windows2\\x");
  EXPECT_EQ(ServiceFolder(L"C:\\WINDOWS"), L"\\SystemRoot");
  EXPECT_EQ(ServiceFolder(L"D:\\Windows"), L"\\??\\D:\\Windows");
  EXPECT_EQ(ServiceFolder(L"C:\\"), L"\\??\\C:");
  EXPECT_EQ(ServiceFolder(L""), L"\\??\\");
}

}  // namespace
}  // namespace vexa::test
