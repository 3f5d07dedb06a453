#!/usr/bin/env bash
# clang-tidy over all that the clang preset compiles. What was found clean is not looked at again
# until it, a header of it or the configuration changes.
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

# The largest first, so that none is waited for at the end.
sed -n 's/^ *"file": "\(.*\)",\?$/\1/p' "$build/compile_commands.json" |
  grep -v 'cmake_pch\|/tests/packaging/' | sort -u | xargs ls -S |
  xargs -n 1 -P "$(nproc)" bash -c 'tidy "$1"' tidy
