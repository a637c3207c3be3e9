# What the compiler and the linker can do against a fault that all else missed: it ends the program instead of handing
# it over. Optimised builds only, and none with a sanitizer, which sees more.
include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)
include(CheckPIESupported)

# Whoever builds with flags of their own may have chosen a sanitizer there.
string(TOUPPER "${CMAKE_BUILD_TYPE}" configuration)
string(FIND "${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_${configuration}}" "-fsanitize" sanitizer)

add_library(ei4_hardening INTERFACE)          # for all our own code
add_library(ei4_hardened_program INTERFACE)   # for our programs: what links to our libraries links in its own way
set(EI4_HARDENED OFF)  # whether this build's programs have all of it
if(EI4_HARDENING AND sanitizer EQUAL -1)
  if(NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
    set(EI4_HARDENED ON)
  endif()
  # Programs land at a new address in each run; the libraries fit into the shared libraries of others, too.
  set(CMAKE_POSITION_INDEPENDENT_CODE ON)
  check_pie_supported(LANGUAGES CXX)

  # Level 3 also checks writes into memory whose size is known only at run time. A level that a distribution sets in its
  # flags is taken back first: a second, different one would be a warning.
  set(fortify 3)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 12)
    set(fortify 2)
  endif()
  set(optimised "$<NOT:$<CONFIG:Debug>>")
  target_compile_options(ei4_hardening INTERFACE
    "$<${optimised}:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=${fortify}>"
    "$<${optimised}:-D_GLIBCXX_ASSERTIONS>")  # checked indices: no cost that could be measured

  # -fcf-protection: indirect calls and returns end where one may, on processors and systems that look.
  foreach(flag -fstack-protector-strong -fstack-clash-protection -fcf-protection)
    string(MAKE_C_IDENTIFIER "EI4_COMPILER_TAKES${flag}" known)
    check_cxx_compiler_flag(${flag} ${known})
    if(${known})
      target_compile_options(ei4_hardening INTERFACE $<${optimised}:${flag}>)
    endif()
  endforeach()

  # Full RELRO: all addresses are resolved at the start, and their table is read-only from then on. No page is both
  # data and code.
  foreach(flag relro now noexecstack separate-code)
    string(MAKE_C_IDENTIFIER "EI4_LINKER_TAKES_${flag}" known)
    check_linker_flag(CXX -Wl,-z,${flag} ${known})
    if(${known})
      target_link_options(ei4_hardened_program INTERFACE $<${optimised}:LINKER:-z,${flag}>)
    endif()
  endforeach()
endif()
