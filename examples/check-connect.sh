#!/usr/bin/env bash
# usage: check-connect.sh PROGRAM SIMULATOR
# PROGRAM readies a phone that asks for its PIN, and does not get past a wrong one.
set -euo pipefail
program=$1 simulator=$2

# Plays the phone anew, runs the program with that PIN and prints what it says.
connect_with() {
  local port
  exec 3< <(exec "$simulator" gprs-phone-with-pin --for 60)
  trap "kill $!" EXIT
  read -r port <&3
  "$program" "$port" internet 2>&1 <<<"$1"
}

expect() {
  local found
  found=$(connect_with "$1") || true
  [[ $found == $2 ]] || { echo "PIN $1: found \"$found\", expected \"$2\"" && exit 1; }
}

expect 1234 'dial \*99\*\*\*3# at 19200 bit/s'
expect 4321 'Refused*'
