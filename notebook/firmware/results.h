// Result codes of WMI calls.
#ifndef NOTEBOOK_FIRMWARE_RESULTS_H_
#define NOTEBOOK_FIRMWARE_RESULTS_H_

#include <cstdint>

namespace firmware {

inline constexpr uint32_t kNotFound = 0x80041002;
inline constexpr uint32_t kTypeMismatch = 0x80041005;
inline constexpr uint32_t kInvalidParameter = 0x80041008;
inline constexpr uint32_t kNotSupported = 0x8004100C;
inline constexpr uint32_t kInvalidNamespace = 0x8004100E;
inline constexpr uint32_t kInitializationFailure = 0x80041014;
inline constexpr uint32_t kInvalidOperation = 0x80041016;
inline constexpr uint32_t kInvalidQuery = 0x80041017;
inline constexpr uint32_t kIllegalOperation = 0x8004101E;
inline constexpr uint32_t kReadOnly = 0x80041023;
inline constexpr uint32_t kInvalidMethod = 0x8004102E;
inline constexpr uint32_t kInvalidMethodParameters = 0x8004102F;
inline constexpr uint32_t kInvalidObjectPath = 0x8004103A;
inline constexpr uint32_t kTimedOut = 0x00040004;
inline constexpr uint32_t kNoMoreData = 0x00040005;

}  // namespace firmware

#endif  // NOTEBOOK_FIRMWARE_RESULTS_H_
