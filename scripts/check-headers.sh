#!/usr/bin/env bash
# Each header compiles alone, with both compilers: the installed ones as C++11, the others as C++20.
set -euo pipefail
cd "$(dirname "$0")/.."

compile() {
  local header=$1 standard=20 compiler
  [[ $header == KXWAN/* && $header != *Private.h ]] && standard=11
  for compiler in g++ clang++; do
    echo "#include <$header>" | "$compiler" -std=c++$standard -fsyntax-only -Wall -Wextra \
      -Wpedantic -Wconversion -Wshadow -Werror -I. -x c++ - || {
      echo "$header: does not compile alone with $compiler as C++$standard"
      return 1
    }
  done
}
export -f compile
git ls-files -z '*.h' | grep -zv 'Mac\(Private\)\?\.h$' |
  xargs -0 -n 1 -P "$(nproc)" bash -c 'compile "$1"' compile
