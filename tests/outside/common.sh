# Read by the tests beside it. Each lets one program, as Debian ships it, talk to kxwan-sim, whose
# path is the test's only argument. A test whose program is missing ends with 77, which is a skip.
# shellcheck shell=bash
set -euo pipefail
simulator=$1
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
room=$(mktemp -d)
players=()
export LC_ALL=C PATH=$PATH:/usr/sbin:/sbin

fail() {
  echo "FAILED: $*" >&2
  exit 1
}

skip() {
  echo "skipped: $*"
  exit 77
}

need() {
  command -v "$1" >/dev/null || skip "$1 is not installed: ./kx test installs it"
}

leave() {
  local status=$? player
  for player in "${players[@]}"; do
    kill "$player" 2>/dev/null || true
    wait "$player" || status=1
  done
  ((status == 0 || status == 77)) || tail -n 60 "$room"/dialogue* >&2 || true
  rm -rf "$room"
  exit "$status"
}
trap leave EXIT

# Starts kxwan-sim with the arguments given and waits until it has printed one path a --link.
# A test that is killed leaves no device behind for long.
play() {
  local argument number=${#players[@]}
  mkfifo "$room/paths$number"
  "$simulator" --for 90 --trace "$@" >"$room/paths$number" 2>"$room/dialogue$number" &
  players+=($!)
  exec 3<"$room/paths$number"
  for argument; do
    [[ $argument != --link ]] || read -r <&3 || fail "kxwan-sim does not start"
  done
  exec 3<&-
}

# The value of a key in a profile, given by its name or as a file.
value() {
  local file=$1 text
  [[ $file == */* ]] || file=$here/../../profiles/$file.toml
  text=$(sed -n "s/^$2 = //p" "$file" | head -n 1)
  [[ -n $text ]] || fail "$1 has no $2"
  tr -d '"' <<<"$text"
}

# Fails unless the file holds the text given.
holds() {
  grep -qF -- "$2" "$1" || fail "no \"$2\" in this: $(<"$1")"
}
