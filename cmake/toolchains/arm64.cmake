set(CMAKE_SYSTEM_PROCESSOR ARM64)
set(VEXA_MACHINE arm64)
set(VEXA_ZIG_TARGET aarch64-windows-gnu)
include("${CMAKE_CURRENT_LIST_DIR}/zig.cmake")
