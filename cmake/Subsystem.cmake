# What every target of the project shares, and the two ways in which one is declared.

# Usage requirements of all our own code; never handed on to somebody who links to it.
add_library(ei4_build_flags INTERFACE)
target_compile_features(ei4_build_flags INTERFACE cxx_std_20)
# The level choice and the reducing means are defined in single precision, each operation rounded by itself.
target_compile_options(ei4_build_flags INTERFACE -ffp-contract=off)
target_link_libraries(ei4_build_flags INTERFACE ei4_hardening)
if(EI4_WARNINGS)
  target_compile_options(ei4_build_flags INTERFACE
    -Wall -Wextra -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast -Wundef)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # g++ 12 sees overlapping copies in optimised sums of std::string where there are none (its bug 105651).
    target_compile_options(ei4_build_flags INTERFACE -Wno-restrict)
  endif()
endif()

# add_subsystem(NAME [HEADERS h...] [INTERNAL_HEADERS h...] [SOURCES s...] [LINKS lib...] [PRIVATE_LINKS lib...])
# One folder, one static library. Headers are included as "folder/header.h"; each is also compiled alone. Where a library
# is installed, the internal ones stay behind.
function(add_subsystem name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "HEADERS;INTERNAL_HEADERS;SOURCES;LINKS;PRIVATE_LINKS")
  add_library(${name} STATIC ${arg_SOURCES})
  target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}/src" FILES ${arg_HEADERS})
  set_target_properties(${name} PROPERTIES CXX_EXTENSIONS OFF VERIFY_INTERFACE_HEADER_SETS ON)
  target_compile_features(${name} PUBLIC cxx_std_20)
  target_link_libraries(${name} PUBLIC ${arg_LINKS} PRIVATE ${arg_PRIVATE_LINKS} $<BUILD_INTERFACE:ei4_build_flags>)
  if(arg_INTERNAL_HEADERS)
    add_library(${name}_internal INTERFACE)
    target_sources(${name}_internal INTERFACE FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}/src" FILES
      ${arg_INTERNAL_HEADERS})
    set_target_properties(${name}_internal PROPERTIES VERIFY_INTERFACE_HEADER_SETS ON)
    target_link_libraries(${name}_internal INTERFACE ${name})
  endif()
endfunction()

# What the tests themselves are compiled with on top, their libraries not: a test runs once, compiling it is what costs.
set(EI4_TEST_FLAGS "" CACHE STRING "Compiler options of the test programs' own sources, such as -O1")

# add_unit_tests(NAME SOURCES s... LINKS lib...): one test program for one folder of sources.
function(add_unit_tests name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINKS")
  add_executable(${name} ${arg_SOURCES})
  set_target_properties(${name} PROPERTIES CXX_EXTENSIONS OFF)
  target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  target_compile_options(${name} PRIVATE ${EI4_TEST_FLAGS})
  target_link_libraries(${name} PRIVATE ${arg_LINKS} GTest::gmock_main ei4_build_flags)
  gtest_discover_tests(${name} PROPERTIES TIMEOUT 300 DISCOVERY_TIMEOUT 60)
endfunction()
