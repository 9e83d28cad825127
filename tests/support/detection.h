// The system's answer about the machine's architecture, for the whole test program.
#ifndef VEXA_TESTS_SUPPORT_DETECTION_H_
#define VEXA_TESTS_SUPPORT_DETECTION_H_

#include <windows.h>

#include <functional>

namespace vexa::test {

// What IsWow64Process2 answers about the machine, and whether it succeeds; empty: what the system's does.
// The library looks the function up once: an environment has it find the scripted one before any test runs.
extern std::function<bool(USHORT* machine)> g_detection;
extern int g_detections;

// Set for a process whose system is to lack the function.
inline constexpr wchar_t kWithoutDetection[] = L"VEXA_TEST_WITHOUT_DETECTION";

}  // namespace vexa::test

#endif  // VEXA_TESTS_SUPPORT_DETECTION_H_
