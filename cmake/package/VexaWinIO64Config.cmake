# The imported target VexaWinIO64::VexaWinIO64: headers and import library of the DLL beside this file's package.
get_filename_component(_vexa_root "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)
if(NOT TARGET VexaWinIO64::VexaWinIO64)
  add_library(VexaWinIO64::VexaWinIO64 SHARED IMPORTED)
  set_target_properties(VexaWinIO64::VexaWinIO64 PROPERTIES
    IMPORTED_LOCATION "${_vexa_root}/bin/VexaWinIO64.dll"
    IMPORTED_IMPLIB "${_vexa_root}/lib/VexaWinIO64.lib"
    INTERFACE_INCLUDE_DIRECTORIES "${_vexa_root}/include")
endif()
unset(_vexa_root)
