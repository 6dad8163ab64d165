# deskbook::warnings: what our own code is compiled with. Link it PRIVATE.
#
# g++ is the compiler we promise to be clean with; clang builds the fuzz targets only and
# may warn about what g++ accepts.
add_library(deskbook_warnings INTERFACE)
add_library(deskbook::warnings ALIAS deskbook_warnings)

target_compile_options(deskbook_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor
  $<$<CXX_COMPILER_ID:GNU>:-Werror>
  # g++ 12 reports overlaps inside std::string's own operator+ (GCC bug 105329).
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
if(DESKBOOK_SANITIZE)
  # The instrumented code confuses the flow analysis behind this one.
  target_compile_options(deskbook_warnings INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
endif()
