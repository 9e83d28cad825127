# Cross toolchain over the clang, lld and mingw-w64 that the PyPI package ziglang carries.
# The including file sets VEXA_ZIG_TARGET and CMAKE_SYSTEM_PROCESSOR.
#
# zig is taken from the environment variable VEXA_ZIG, else from the tools folder that tools/setup.sh fills, else from
# the PATH. The scripts compile through tools/compile-cached, which keeps zig's own cache of objects out.

set(CMAKE_SYSTEM_NAME Windows)

if(DEFINED ENV{VEXA_CACHE})
  set(_vexa_cache "$ENV{VEXA_CACHE}")
elseif(DEFINED ENV{XDG_CACHE_HOME})
  set(_vexa_cache "$ENV{XDG_CACHE_HOME}/vexa")
else()
  set(_vexa_cache "$ENV{HOME}/.cache/vexa")
endif()
set(VEXA_CACHE "${_vexa_cache}" CACHE PATH "Folder of the tools")

if(DEFINED ENV{VEXA_ZIG})
  set(VEXA_ZIG "$ENV{VEXA_ZIG}" CACHE FILEPATH "The zig program")
else()
  find_program(VEXA_ZIG zig HINTS "${VEXA_CACHE}/zig-0.17.0" REQUIRED)
endif()

set(CMAKE_C_COMPILER "${VEXA_ZIG}" cc)
set(CMAKE_CXX_COMPILER "${VEXA_ZIG}" c++)
set(CMAKE_C_COMPILER_TARGET ${VEXA_ZIG_TARGET})
set(CMAKE_CXX_COMPILER_TARGET ${VEXA_ZIG_TARGET})

# CMake wants single programs here.
set(CMAKE_AR "${CMAKE_CURRENT_LIST_DIR}/../zig/zig-ar" CACHE FILEPATH "")
set(CMAKE_RANLIB "${CMAKE_CURRENT_LIST_DIR}/../zig/zig-ranlib" CACHE FILEPATH "")
set(CMAKE_C_COMPILER_AR "${CMAKE_AR}" CACHE FILEPATH "")
set(CMAKE_CXX_COMPILER_AR "${CMAKE_AR}" CACHE FILEPATH "")
set(CMAKE_C_COMPILER_RANLIB "${CMAKE_RANLIB}" CACHE FILEPATH "")
set(CMAKE_CXX_COMPILER_RANLIB "${CMAKE_RANLIB}" CACHE FILEPATH "")

# Only these package headers are visible: /usr/include in a cross build shadows the target's own.
set(VEXA_HEADERS "${VEXA_CACHE}/include" CACHE PATH "Folder that holds only nlohmann/ and CLI/")

set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
