# Run by cpack over the folders from which it makes the packages: what Debian's packages have that an installation by
# hand has not.
cmake_minimum_required(VERSION 3.25)

# The same text gives the same bytes: neither name nor time goes into them.
function(compress)
  if(ARGN)
    execute_process(COMMAND gzip -9n ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
  endif()
endfunction()

# As dh_strip does it.
function(strip level)
  if(ARGN)
    execute_process(COMMAND "${CPACK_EI4_STRIP}" ${level} --remove-section=.comment --remove-section=.note
                            --enable-deterministic-archives ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
  endif()
endfunction()

execute_process(COMMAND env LC_ALL=C date -u -R -d "${CPACK_EI4_RELEASE_DATE} 12:00"
                OUTPUT_VARIABLE changelog_date OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER "${component}" upper)
  set(package "${CPACK_DEBIAN_${upper}_PACKAGE_NAME}")
  set(top "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/${component}${CPACK_PACKAGING_INSTALL_PREFIX}")
  set(doc "${top}/share/doc/${package}")

  # A package's documents lie under its own name; what belongs to the development component came with the others'.
  if(NOT package STREQUAL CPACK_PACKAGE_NAME AND EXISTS "${top}/share/doc/${CPACK_PACKAGE_NAME}")
    file(RENAME "${top}/share/doc/${CPACK_PACKAGE_NAME}" "${doc}")
  endif()

  configure_file("${CPACK_EI4_PACKAGING}/copyright" "${doc}/copyright" COPYONLY)
  file(REMOVE "${doc}/LICENSE")  # its text stands in the file "copyright"
  configure_file("${CPACK_EI4_PACKAGING}/changelog.in" "${doc}/changelog" @ONLY)
  compress("${doc}/changelog")
  file(GLOB pages "${top}/share/man/man*/*[0-9]")
  compress(${pages})

  file(GLOB programs "${top}/bin/*")
  strip(--strip-all ${programs})
  file(GLOB_RECURSE libraries "${top}/lib/*.a")
  strip(--strip-debug ${libraries})
endforeach()
