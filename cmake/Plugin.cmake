# deskbook_plugin(<name> EXPORTS <version script> SOURCES <files...>)
#
# A shared library the telephone loads: it exports what its version script lists and
# nothing else, and every symbol it needs comes from the framework. Unit tests link
# <name>_objects instead, where everything is reachable.
function(deskbook_plugin name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "EXPORTS" "SOURCES")

  add_library(${name}_objects OBJECT ${arg_SOURCES})
  target_link_libraries(${name}_objects PUBLIC deskbook::framework PRIVATE deskbook::warnings)
  target_include_directories(${name}_objects PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
  # A unique symbol would keep the library mapped after dlclose.
  target_compile_options(${name}_objects PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>)
  set_target_properties(${name}_objects PROPERTIES
    POSITION_INDEPENDENT_CODE ON CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)

  add_library(${name} MODULE)
  target_link_libraries(${name} PRIVATE ${name}_objects)
  target_link_options(${name} PRIVATE
    LINKER:--no-undefined LINKER:--version-script=${CMAKE_CURRENT_SOURCE_DIR}/${arg_EXPORTS})
  set_property(TARGET ${name} APPEND PROPERTY LINK_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${arg_EXPORTS})
endfunction()
