# deskbook_tests(<name> [LINK <targets...>] [NEEDS <targets...>] [TIMEOUT <seconds>]
#   [FORGIVE_LEAKS_IN <filter> FORGIVEN_LEAKS <file>])
#
# One GoogleTest program from every .cpp below the folder, each of its tests known to ctest
# as <name>/<Suite>.<Test> and all of them by the label <name>.
# NEEDS names what must be built before the tests run although they do not link it.
# FORGIVEN_LEAKS are the leak sanitizer's suppressions in tests that match the filter, and only there.
# Tests find their files through TEST_DATA_DIR, SOURCE_DIR and BIN_DIR.
function(deskbook_tests name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "TIMEOUT;FORGIVE_LEAKS_IN;FORGIVEN_LEAKS" "LINK;NEEDS")
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 60)
  endif()

  file(GLOB_RECURSE sources CONFIGURE_DEPENDS *.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(${name} ${sources})
  target_link_libraries(${name} PRIVATE ${arg_LINK} deskbook::framework_testing GTest::gtest_main
    deskbook::warnings)
  target_include_directories(${name} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
  target_compile_definitions(${name} PRIVATE
    TEST_DATA_DIR="${CMAKE_SOURCE_DIR}/tests/data"
    SOURCE_DIR="${CMAKE_SOURCE_DIR}"
    BIN_DIR="${CMAKE_BINARY_DIR}/bin")
  if(arg_NEEDS)
    add_dependencies(${name} ${arg_NEEDS})
  endif()
  set(discovery DISCOVERY_MODE PRE_TEST TEST_PREFIX ${name}/ PROPERTIES TIMEOUT ${arg_TIMEOUT} LABELS ${name})
  if(NOT arg_FORGIVE_LEAKS_IN)
    gtest_discover_tests(${name} ${discovery})
    return()
  endif()
  gtest_discover_tests(${name} TEST_FILTER "-${arg_FORGIVE_LEAKS_IN}" ${discovery})
  gtest_discover_tests(${name} TEST_FILTER "${arg_FORGIVE_LEAKS_IN}" ${discovery}
    ENVIRONMENT "LSAN_OPTIONS=suppressions=${arg_FORGIVEN_LEAKS}:print_suppressions=0")
endfunction()
