#!/usr/bin/env bash
# All that must hold before a merge. Called by ./kx check, which installs what is needed.
# Every step prints one line; what a failed one said follows it. The first failure hides no other.
set -uo pipefail
cd "$(dirname "$0")/.." || exit
logs=build/check
jobs=$((3 * $(nproc)))
nobody=65534

# Name, the groups of packages that it needs (see kx), and what it means.
steps() {
  cat <<'END'
format    git,format                  layout as clang-format does it, order of headers, braces
floors    git                         who includes whom, length of files
alone     git,tool,clang              each header and each source compiles by itself
gcc       tool,test                   gcc builds everything, warnings are errors
clang     tool,test,bench,clang       clang builds everything, warnings are errors
tidy      tool,test,bench,clang,tidy  clang-tidy finds nothing
symbols   tool                        exported names as in packaging/KXWAN.symbols
sanitize  tool,test                   tests under the sanitizers, for root as an ordinary user
threads   tool,test                   8 threads with a device each under the thread sanitizer
END
}

step_format() { scripts/check-format.sh; }
step_floors() { scripts/check-floors.sh; }
step_alone() { scripts/check-alone.sh; }
step_gcc() {
  cmake --preset dev -DKXWAN_BUILD_TESTS=ON -DKXWAN_WERROR=ON && cmake --build --preset dev
}
step_clang() { cmake --preset clang && cmake --build --preset clang; }
step_tidy() { cmake --preset clang && scripts/check-tidy.sh; }
step_symbols() {
  cmake --preset dev && cmake --build --preset dev --target KXWAN &&
    scripts/check-symbols.sh build/dev/KXWAN/libKXWAN.so
}
step_threads() {
  cmake --preset tsan -DKXWAN_BUILD_TESTS=ON &&
    cmake --build --preset tsan --target threads_tests && build/tsan/tests/threads_tests
}
step_sanitize() {
  cmake --preset asan && cmake --build --preset asan || return
  if ((EUID == 0)) && as_nobody test -r build/asan/CTestTestfile.cmake -a -x build/asan; then
    sanitize_as_nobody
  else
    ctest --preset asan -j "$jobs"
  fi
}

as_nobody() { setpriv --reuid "$nobody" --regid "$nobody" --clear-groups "$@"; }

# Root is let through where others are not, and has run the tests already. The consumer of the
# installed tree writes into the build tree, so it stays root's.
sanitize_as_nobody() {
  local home result
  ctest --preset asan -L installed || return
  home=$(mktemp -d) && chown "$nobody" "$home"
  rm -rf build/asan/Testing && mkdir -p build/asan/Testing/Temporary
  chown -R "$nobody" build/asan/Testing
  as_nobody env HOME="$home" TMPDIR="$home" TEST_TMPDIR="$home" \
    ctest --test-dir build/asan -LE installed --output-on-failure -j "$jobs"
  result=$?
  rm -rf "$home" build/asan/Testing
  return $result
}

run_step() {
  local name=$1 meaning=$2 log=$logs/$1.log begin=$SECONDS result word=ok
  "step_$name" >"$log" 2>&1 </dev/null
  result=$?
  ((result == 0)) || word=FAILED
  printf '%-9s %-58s %4d s  %s\n' "$name" "$meaning" $((SECONDS - begin)) "$word"
  grep -h 'tests passed' "$log" | sed 's/^/          /'
  ((result == 0)) && return
  tail -n 100 "$log" | sed 's/^/    /'
  echo "    (all of it: $log)"
  return 1
}

chosen() { steps | while read -r name rest; do
  (($# == 0)) || [[ " $* " == *" $name "* ]] || continue
  echo "$name $rest"
done; }

case ${1:-} in
  --update-symbols)
    cmake --preset dev >/dev/null && cmake --build --preset dev --target KXWAN &&
      scripts/check-symbols.sh --update build/dev/KXWAN/libKXWAN.so
    exit
    ;;
  --needs)
    shift
    chosen "$@" | awk '{ print $2 }' | tr ',' '\n' | sort -u | xargs
    exit
    ;;
esac

for name in "$@"; do
  declare -F "step_$name" >/dev/null && continue
  echo "kx check: no step $name; there are: $(steps | cut -d' ' -f1 | xargs)" >&2
  exit 2
done
mkdir -p "$logs"
failed=()
while read -r name _ meaning <&3; do
  run_step "$name" "$meaning" || failed+=("$name")
done 3< <(chosen "$@")
if ((${#failed[@]})); then
  echo "check: FAILED: ${failed[*]}"
  exit 1
fi
echo "check: all is well"
