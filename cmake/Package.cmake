# Packages for Debian: `cpack -G DEB` in a finished build. packaging/try_package.sh makes and tries them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ei4convert)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each package has its own
set(CPACK_PACKAGE_VENDOR "ei4convert developers")
set(CPACK_PACKAGE_CONTACT "ei4convert developers <developers@ei4convert.example.org>")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_BINARY_DIR}/packages")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_COMPONENTS_ALL runtime development)
# Stripped programs, compressed pages, the copyright file and the changelog: Debian's customs, not every installation's.
set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/packaging/debian_customs.cmake")
set(CPACK_EI4_PACKAGING "${PROJECT_SOURCE_DIR}/packaging")
set(CPACK_EI4_STRIP "${CMAKE_STRIP}")
set(CPACK_EI4_RELEASE_DATE "${EI4_RELEASE_DATE}")

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ei4convert)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION graphics)
# The libraries are found by looking into the programs. A font cannot be: the labels of report pictures are measurements
# that somebody reads, and without it they are missing or in another width, so it is no mere recommendation.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS fonts-urw-base35)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SUGGESTS "bash-completion, parallel")
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "converter of wavelet-compressed medical images
ei4convert turns an image of a .ei4 file, of an .erblb container or of raw
pixels into raw pixels or a JPEG: scaled to fit a box, converted between pixel
formats and mapped through a window/level table. Of large images it reads only
what the wanted size needs. It also draws report pictures, with measurements
and orientation letters over the image.

The tools beside it make .ei4 files (ei4make), tell what is in one (ei4info)
and handle containers (erblb).")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libgwav4-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS "cmake, pkg-config")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "decoder of GW40 and GW41 wavelet streams
The decoder of the images in .ei4 files as a static library for C++20, with its
headers, a CMake package configuration, a pkg-config file and an example. It
depends on nothing but the C++ library.")

include(CPack)
