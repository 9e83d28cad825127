# What every target of the project is compiled with.
add_library(vexa_warnings INTERFACE)
target_compile_options(vexa_warnings INTERFACE -Wall -Wextra -Werror
  # A designated initialiser names what differs from zero.
  -Wno-missing-designated-field-initializers)
