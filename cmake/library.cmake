# VexaWinIO64.dll. The objects are a target of their own: tests link them into a program whose import table they patch.
add_library(vexa_objects OBJECT
  ec/adapter_gate.cc
  ec/adapter_part_number.cc
  ec/adapter_values.cc
  ec/adapter_watt.cc
  ec/adapter_writes.cc
  ec/battery_information.cc
  ec/battery_names.cc
  ec/battery_numeric.cc
  ec/catalogue.cc
  ec/cell_voltages.cc
  ec/ec_information.cc
  ec/fan_control.cc
  ec/gauge_passthrough.cc
  ec/healthy_table.cc
  ec/identity.cc
  ec/power_source.cc
  ec/table_row.cc
  ec/thermal_readings.cc
  frame/acpi_channel.cc
  frame/architecture.cc
  frame/battery_class.cc
  frame/debug_log_folder.cc
  frame/driver_channel.cc
  frame/driver_service.cc
  frame/driver_setup.cc
  frame/ec_command.cc
  frame/lifecycle.cc
  frame/log.cc
  frame/mutex_guard.cc
  frame/present_device.cc
  frame/registry.cc
  frame/stack_guard.c
  frame/trace.cc
  frame/trace_exports.cc
  inventory/disk_usage.cc
  inventory/number_members.cc
  inventory/text_members.cc
  inventory/texts.cc
  inventory/wifi_adapter.cc
  radio/antenna_reader.cc
  radio/antenna_records.cc
  radio/bluetooth.cc
  radio/bss_list.cc
  radio/connection_type.cc
  radio/count_text.cc
  radio/elements.cc
  radio/max_rate.cc
  radio/peripheral_class.cc
  radio/rate_tables.cc
  radio/scan_classifier.cc
  radio/usb.cc
  radio/usb_port.cc
  radio/usb_type_c.cc
  radio/wifi_collector.cc
  radio/wifi_exports.cc
  radio/wlan_client.cc
  system/system_state.cc
  system/versions.cc
  system/volume.cc
  wmi/application_folder.cc
  wmi/bounded_task.cc
  wmi/ec_route.cc
  wmi/firmware_answer.cc
  wmi/firmware_device.cc
  wmi/method_invoker.cc
  wmi/query_engine.cc
  wmi/session.cc
  wmi/settings.cc
  wmi/variant_value.cc
)
target_include_directories(vexa_objects PUBLIC "${PROJECT_SOURCE_DIR}" "${PROJECT_SOURCE_DIR}/include")
target_include_directories(vexa_objects SYSTEM PRIVATE "${VEXA_HEADERS}")
target_link_libraries(vexa_objects PRIVATE vexa_warnings vexa_stack_protector)

set(VEXA_COMPANION_PACKAGE_FAMILY "VexaSystems.VexaCompanion_v3x4p8k2m9q7t" CACHE STRING
  "Package family of the companion app, whose version GetUWPVersion tells")
set_source_files_properties(system/versions.cc PROPERTIES
  COMPILE_DEFINITIONS "VEXA_COMPANION_PACKAGE_FAMILY=\"${VEXA_COMPANION_PACKAGE_FAMILY}\"")

set(VEXA_SYSTEM_LIBRARIES advapi32 iphlpapi ole32 oleaut32 setupapi shlwapi wbemuuid)

# The demangler is left out of the library alone: test programs use it.
add_library(VexaWinIO64 SHARED VexaWinIO64.def frame/no_demangler.cc)
target_link_libraries(VexaWinIO64 PRIVATE vexa_objects ${VEXA_SYSTEM_LIBRARIES})
set_target_properties(VexaWinIO64 PROPERTIES PREFIX "" IMPORT_PREFIX "" LINKER_LANGUAGE CXX)
# Sections that begin with a page of the file can be mapped from it, where a loader would copy the others.
set_target_properties(VexaWinIO64 PROPERTIES
  RULE_LAUNCH_LINK "\"${CMAKE_COMMAND}\" -E env \"_LINK_=-opt:ref -opt:icf -filealign:4096\"")
vexa_version_resource(VexaWinIO64 VFT_DLL "Notebook health library" VexaWinIO64.dll)
vexa_stamp(VexaWinIO64)

# The linker's import library serves both families of linkers; each looks for its own name.
add_custom_command(TARGET VexaWinIO64 POST_BUILD
  COMMAND "${CMAKE_COMMAND}" -E copy VexaWinIO64.dll.a VexaWinIO64.lib
  BYPRODUCTS VexaWinIO64.lib VERBATIM)
