# A row per export, with typical arguments and what the catalogue says of it: tests/sweep/exports.inc, made from
# interface/exports.json for the tests that call every export.

set(_rows_folder "${CMAKE_BINARY_DIR}/made")
set(_rows "${_rows_folder}/tests/sweep/exports.inc")
set(_interface "${PROJECT_SOURCE_DIR}/interface")

find_package(Python3 REQUIRED COMPONENTS Interpreter)
add_custom_command(OUTPUT "${_rows}"
  COMMAND "${Python3_EXECUTABLE}" -B "${_interface}/sweep.py" "${_rows}"
  DEPENDS "${_interface}/sweep.py" "${_interface}/catalogue.py" "${_interface}/exports.json"
    "${PROJECT_SOURCE_DIR}/docs/exports.txt"
  VERBATIM)
add_custom_target(vexa_make_export_rows DEPENDS "${_rows}")

add_library(vexa_export_rows INTERFACE)
target_include_directories(vexa_export_rows INTERFACE "${_rows_folder}")
add_dependencies(vexa_export_rows vexa_make_export_rows)
