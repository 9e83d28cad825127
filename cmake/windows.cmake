# Settings of the Windows targets. The compiler targets Windows 10 by itself.
add_compile_definitions(WIN32_LEAN_AND_MEAN NOMINMAX UNICODE _UNICODE)
set(CMAKE_C_STANDARD_LIBRARIES "")
set(CMAKE_CXX_STANDARD_LIBRARIES "")

# The linker keeps every function when it writes a PDB, and the compiler driver passes it no option that says otherwise;
# it reads this variable itself.
set_property(GLOBAL PROPERTY RULE_LAUNCH_LINK "\"${CMAKE_COMMAND}\" -E env \"_LINK_=-opt:ref -opt:icf\"")
add_compile_options(-ffunction-sections -fdata-sections)
add_link_options(-Wl,--dynamicbase -Wl,--high-entropy-va -Wl,--nxcompat)

# Undefined behaviour ends the program with a message that names it and the calls that led to it. Not for what is shipped.
# The definition is there for the compiler driver's cache, see below.
option(VEXA_UBSAN "Check every operation for undefined behaviour" OFF)
if(VEXA_UBSAN)
  set(VEXA_UBSAN_OPTIONS -fsanitize=undefined -fno-sanitize-recover=all -DVEXA_UBSAN)
  add_compile_options(${VEXA_UBSAN_OPTIONS})
  add_link_options(-fsanitize=undefined)
endif()

# What the shipped programs are compiled with; frame/stack_guard.c belongs to it. The compiler driver's own cache does not
# tell -fstack-protector-strong from its absence, so a definition goes with it.
add_library(vexa_stack_protector INTERFACE)
target_compile_options(vexa_stack_protector INTERFACE -fstack-protector-strong -DVEXA_STACK_PROTECTOR)

# vexa_version_resource(TARGET FILETYPE DESCRIPTION FILE): gives the target a version resource.
function(vexa_version_resource target filetype description file)
  string(REPLACE "." "," VERSION_COMMAS "${VEXA_VERSION}")
  set(PROJECT_VERSION "${VEXA_VERSION}")
  set(VERSION_FILETYPE ${filetype})
  set(VERSION_DESCRIPTION "${description}")
  set(VERSION_FILE "${file}")
  set(script "${CMAKE_CURRENT_BINARY_DIR}/${target}.rc")
  set(resource "${CMAKE_CURRENT_BINARY_DIR}/${target}.res")
  configure_file("${PROJECT_SOURCE_DIR}/cmake/version.rc.in" "${script}" @ONLY)
  add_custom_command(OUTPUT "${resource}"
    COMMAND "${VEXA_ZIG}" rc /fo "${resource}" "${script}"
    DEPENDS "${script}" VERBATIM)
  target_sources(${target} PRIVATE "${resource}")
  set_source_files_properties("${resource}" PROPERTIES EXTERNAL_OBJECT ON GENERATED ON)
endfunction()

# vexa_stamp(TARGET): the image's identity and time stamp come from its code, not from the folder of the build.
find_package(Python3 REQUIRED COMPONENTS Interpreter)
function(vexa_stamp target)
  add_custom_command(TARGET ${target} POST_BUILD VERBATIM
    COMMAND "${Python3_EXECUTABLE}" "${PROJECT_SOURCE_DIR}/tools/stamp_image.py" "$<TARGET_FILE:${target}>"
      "$<TARGET_FILE_DIR:${target}>/$<TARGET_FILE_BASE_NAME:${target}>.pdb")
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${PROJECT_SOURCE_DIR}/tools/stamp_image.py")
endfunction()
