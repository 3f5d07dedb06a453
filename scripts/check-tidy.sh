#!/usr/bin/env bash
# clang-tidy over every source of the tree that the clang preset compiles. A source that was found
# clean is not looked at again until it, a header of it or the configuration changes.
set -euo pipefail
cd "$(dirname "$0")/.."
export build=build/clang
export clean=build/tidy-clean
mkdir -p "$clean"

tidy() {
  local source=$1 key
  key=$({
    cat .clang-tidy ./*/.clang-tidy
    clang++ -std=c++20 -E -I. "$source" 2>&1
  } | sha256sum | cut -c1-32)
  [[ -e $clean/$key ]] && return
  clang-tidy --quiet -p "$build" "$source" 2>/dev/null && touch "$clean/$key"
}
export -f tidy

git ls-files -z '*.cpp' | grep -zv 'Mac\.cpp$\|^tests/packaging/' |
  xargs -0 -n 1 -P "$(nproc)" bash -c 'tidy "$1"' tidy
