// The wall that no exception passes.
#ifndef VEXA_FRAME_EXPORT_WALL_H_
#define VEXA_FRAME_EXPORT_WALL_H_

#include <exception>

#include "frame/log.h"

namespace vexa {

// Runs an export's body. An exception is logged under the export's name, and the export answers `failure`.
template <typename Result, typename Body>
Result Guarded(const char* name, Result failure, Body&& body) noexcept {
  try {
    return body();
  } catch (const std::exception& error) {
    LogInfo("[%s] exception: %s", name, error.what());
  } catch (...) {
    LogInfo("[%s] exception", name);
  }
  return failure;
}

}  // namespace vexa

#endif  // VEXA_FRAME_EXPORT_WALL_H_
