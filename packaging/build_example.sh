#!/bin/sh
# build_example.sh EXAMPLES PREFIX OUT: builds the example against the library installed under PREFIX, with CMake into
# OUT/cmake and with pkg-config into OUT/pkg-config. CXX and CXXFLAGS are taken from the environment.
set -eu
[ $# -eq 3 ] || { echo 'usage: build_example.sh EXAMPLES PREFIX OUT' >&2; exit 2; }
examples=$1
prefix=$2
out=$3
rm -rf "$out"
mkdir -p "$out/pkg-config"
{
  cmake -S "$examples" -B "$out/cmake" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_BUILD_TYPE=Release \
    -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF && cmake --build "$out/cmake"
} >"$out/cmake.log" 2>&1 || { cat "$out/cmake.log" >&2; exit 1; }
# Not a library that happens to be installed on this machine.
grep -q "^gwav4_DIR:PATH=$prefix/" "$out/cmake/CMakeCache.txt" || { echo "CMake found another gwav4" >&2; exit 1; }

folder=$(dirname "$(find "$prefix" -name gwav4.pc)")
flags=$(PKG_CONFIG_PATH=$folder pkg-config --cflags --libs gwav4)
# shellcheck disable=SC2086  # the flags are separate words
${CXX:-g++} -std=c++20 ${CXXFLAGS:-} "$examples/ei4_to_pnm.cpp" $flags -o "$out/pkg-config/ei4_to_pnm"
