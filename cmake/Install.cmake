# What an installation holds besides the programs and the library, which their own folders install. What names no other
# component belongs to "runtime"; "development" is the decoding library and can be left out:
#   cmake --install BUILD --component runtime

foreach(program ei4convert ei4info ei4make erblb)
  if(TARGET ${program})
    configure_file("man/${program}.1.in" "man/${program}.1" @ONLY)
    install(FILES "${PROJECT_BINARY_DIR}/man/${program}.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
    install(FILES "completions/${program}" DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions")
  endif()
endforeach()

install(FILES LICENSE README.md CHANGELOG.md TYPE DOC)
install(DIRECTORY docs TYPE DOC PATTERN gallery EXCLUDE)  # pictures for developers, some megabytes
if(EXISTS "${PROJECT_SOURCE_DIR}/contrib")
  install(DIRECTORY contrib TYPE DOC USE_SOURCE_PERMISSIONS)
endif()
# Two small samples, grey and colour, for a first run where there is no checkout.
install(FILES samples/mr.ei4 samples/ultrasound.ei4 DESTINATION "${CMAKE_INSTALL_DOCDIR}/samples")
install(FILES samples/reports/mr.txt samples/reports/ultrasound.txt
        DESTINATION "${CMAKE_INSTALL_DOCDIR}/samples/reports")

# The decoding library as other projects find it: find_package(gwav4), or pkg-config. Both find it from their own place,
# wherever the installation has been moved to.
include(CMakePackageConfigHelpers)
set(config "${CMAKE_INSTALL_LIBDIR}/cmake/gwav4")
configure_package_config_file(cmake/gwav4Config.cmake.in gwav4Config.cmake INSTALL_DESTINATION "${config}")
write_basic_package_version_file(gwav4ConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(EXPORT gwav4Targets NAMESPACE gwav4:: DESTINATION "${config}" COMPONENT development)
install(FILES "${PROJECT_BINARY_DIR}/gwav4Config.cmake" "${PROJECT_BINARY_DIR}/gwav4ConfigVersion.cmake"
        DESTINATION "${config}" COMPONENT development)

file(RELATIVE_PATH includes_from_pc "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_FULL_INCLUDEDIR}")
configure_file(cmake/gwav4.pc.in gwav4.pc @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/gwav4.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig" COMPONENT development)
install(DIRECTORY examples TYPE DOC COMPONENT development)
