# The deciding files of the library, under the sanitizers.
add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
add_link_options(-fsanitize=address,undefined)

find_package(nlohmann_json REQUIRED)

add_library(vexa_core STATIC
  ec/catalogue.cc
  inventory/texts.cc
  radio/antenna_records.cc
  radio/bss_list.cc
  radio/count_text.cc
  radio/elements.cc
  radio/max_rate.cc
  radio/peripheral_class.cc
  radio/rate_tables.cc
  radio/scan_classifier.cc
  wmi/firmware_answer.cc
)
target_include_directories(vexa_core PUBLIC "${PROJECT_SOURCE_DIR}" "${PROJECT_SOURCE_DIR}/include")
target_link_libraries(vexa_core PRIVATE vexa_warnings nlohmann_json::nlohmann_json)
