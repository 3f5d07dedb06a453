#!/usr/bin/env bash
# All that must hold before a merge. Called by ./kx check, which installs what is needed.
# Every step prints one line; what a failed one said follows it. The first failure hides no other.
set -uo pipefail
cd "$(dirname "$0")/.." || exit
logs=build/check
mkdir -p "$logs"
jobs=$((3 * $(nproc)))
nobody=65534

# Name, function, and what it means.
steps() {
  cat <<'END'
format    layout as clang-format does it, order of headers, braces
floors    who includes whom, length of files
headers   each header compiles alone
gcc       gcc builds everything, warnings are errors
clang     clang builds everything, warnings are errors
tidy      clang-tidy finds nothing
symbols   exported names as in packaging/KXWAN.symbols
sanitize  tests under address and undefined-behaviour sanitizers
threads   8 threads with a device each under the thread sanitizer
user      the same as an ordinary user
END
}

step_format() { scripts/check-format.sh; }
step_floors() { scripts/check-floors.sh; }
step_headers() { scripts/check-headers.sh; }
step_tidy() {
  cmake --preset clang && scripts/check-tidy.sh
}
step_gcc() {
  cmake --preset dev -DKXWAN_BUILD_TESTS=ON -DKXWAN_WERROR=ON && cmake --build --preset dev
}
step_clang() { cmake --preset clang && cmake --build --preset clang; }
step_symbols() {
  cmake --preset dev && cmake --build --preset dev --target KXWAN &&
    scripts/check-symbols.sh build/dev/KXWAN/libKXWAN.so
}
build_sanitized() { cmake --preset asan && cmake --build --preset asan; }
step_threads() {
  cmake --preset tsan -DKXWAN_BUILD_TESTS=ON &&
    cmake --build --preset tsan --target threads_tests && build/tsan/tests/threads_tests
}
step_sanitize() { build_sanitized && ctest --preset asan -j "$jobs"; }

# Root is let through where others are not, so root runs the tests a second time as nobody. The
# consumer of the installed tree is left out: it writes into the build tree and is the same for all.
step_user() {
  ((EUID == 0)) || { echo "the step before ran as an ordinary user" && return 77; }
  build_sanitized || return
  local home as_nobody
  home=$(mktemp -d) && chown "$nobody" "$home"
  as_nobody=(setpriv --reuid "$nobody" --regid "$nobody" --clear-groups
    env HOME="$home" TMPDIR="$home" TEST_TMPDIR="$home")
  if ! "${as_nobody[@]}" test -r build/asan/CTestTestfile.cmake -a -x build/asan; then
    echo "an ordinary user cannot read $PWD" && return 77
  fi
  rm -rf build/asan/Testing && mkdir -p build/asan/Testing/Temporary
  chown -R "$nobody" build/asan/Testing
  "${as_nobody[@]}" ctest --test-dir build/asan -LE installed --output-on-failure -j "$jobs"
  local result=$?
  rm -rf "$home" build/asan/Testing
  return $result
}

# 77 says that a step cannot be done here; that is neither passed nor failed.
run_step() {
  local name=$1 meaning=$2 log=$logs/$1.log begin=$SECONDS result word
  "step_$name" >"$log" 2>&1 </dev/null
  result=$?
  case $result in
    0) word=ok ;;
    77) word="not done: $(tail -n 1 "$log")" ;;
    *) word=FAILED ;;
  esac
  printf '%-9s %-62s %4d s  %s\n' "$name" "$meaning" $((SECONDS - begin)) "$word"
  grep -h 'tests passed' "$log" | sed 's/^/          /'
  if [[ $word == FAILED ]]; then
    tail -n 100 "$log" | sed 's/^/    /'
    echo "    (all of it: $log)"
    return 1
  fi
}

if [[ ${1:-} == --update-symbols ]]; then
  cmake --preset dev >/dev/null && cmake --build --preset dev --target KXWAN &&
    scripts/check-symbols.sh --update build/dev/KXWAN/libKXWAN.so
  exit
fi

for name in "$@"; do
  declare -F "step_$name" >/dev/null && continue
  echo "kx check: no step $name; there are: $(steps | cut -d' ' -f1 | xargs)" >&2
  exit 2
done
failed=()
while read -r name meaning <&3; do
  (($# == 0)) || [[ " $* " == *" $name "* ]] || continue
  run_step "$name" "$meaning" || failed+=("$name")
done 3< <(steps)
if ((${#failed[@]})); then
  echo "check: FAILED: ${failed[*]}"
  exit 1
fi
echo "check: all is well"
