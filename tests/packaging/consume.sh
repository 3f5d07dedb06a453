#!/usr/bin/env bash
# usage: consume.sh BUILD WORK COMPILER FLAGS
# Installs BUILD below WORK and builds the consumer against it, by find_package and by pkg-config.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
build=$1 work=$2 compiler=$3 flags=$4
rm -rf "$work"
mkdir -p "$work"

# The tree is moved after the installation: nothing in it may name the place it was installed to.
cmake --install "$build" --prefix "$work/first place" >"$work/install.log"
prefix="$work/installed tree"
mv "$work/first place" "$prefix"
libraries=$(dirname "$(find "$prefix" -name libKXWAN.so)")
export LD_LIBRARY_PATH=$libraries

private=$(find "$prefix" -name '*Private.h' -o -name '*.a')
[[ -z $private ]] || { echo "should not be installed: $private" && exit 1; }

cmake -S "$here" -B "$work/consumer" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" \
  -DCMAKE_CXX_COMPILER="$compiler" -DCMAKE_CXX_FLAGS="$flags"
cmake --build "$work/consumer"
"$work/consumer/consumer"

# pkg-config quotes spaces with backslashes, hence the eval.
export PKG_CONFIG_PATH="$libraries/pkgconfig"
[[ $(pkg-config --modversion kxwan) == 1.* ]]
eval "$compiler" -std=c++11 -Wall -Wextra -Wpedantic -Werror "$flags" '"$here/consumer.cpp"' \
  -o '"$work/by-pkg-config"' "$(pkg-config --cflags --libs kxwan)"
"$work/by-pkg-config"
"$prefix/bin/kxwan" --help >"$work/help"
