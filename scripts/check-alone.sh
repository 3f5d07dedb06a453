#!/usr/bin/env bash
# Each header and each source compiles by itself, whatever is compiled with it elsewhere: installed
# headers as C++11, the rest as C++20. Tests and benchmarks are built one by one anyway.
set -euo pipefail
cd "$(dirname "$0")/.."

compile() {
  local file=$1 standard=20
  [[ $file == KXWAN/*.h && $file != *Private.h ]] && standard=11
  echo "#include <$file>" | clang++ -std=c++$standard -fsyntax-only -Wall -Wextra -Wpedantic \
    -Wconversion -Wshadow -Werror -DKXWAN_BUILDING -DKXWAN_TOOL_VERSION='""' -I. -x c++ - || {
    echo "$file: does not compile by itself as C++$standard"
    return 1
  }
}
export -f compile
git ls-files -z '*.h' '*.cpp' | grep -zv 'Mac\(Private\)\?\.\(h\|cpp\)$\|^\(tests\|benchmarks\)/.*\.cpp$' |
  xargs -0 -n 1 -P "$(nproc)" bash -c 'compile "$1"' compile
