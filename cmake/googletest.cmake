# GoogleTest from the sources of Debian's package, compiled for the preset's machine.
enable_testing()
set(INSTALL_GTEST OFF CACHE BOOL "")
set(gtest_disable_pthreads ${WIN32} CACHE BOOL "")
add_subdirectory("${VEXA_GOOGLETEST}" googletest EXCLUDE_FROM_ALL SYSTEM)
