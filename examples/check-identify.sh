#!/usr/bin/env bash
# usage: check-identify.sh README SOURCE PROGRAM SIMULATOR
# The first program that README shows is SOURCE, and PROGRAM, built from it, identifies a device.
set -euo pipefail
readme=$1 source=$2 program=$3 simulator=$4

if ! diff "$source" <(awk '/^```cpp$/ { on = 1; next } on && /^```$/ { exit } on' "$readme"); then
  echo "README.md shows another program than $source"
  exit 1
fi

exec 3< <(exec "$simulator" gprs-phone --for 60)
trap "kill $!" EXIT
read -r port <&3
found=$("$program" "$port")
expected='SIEMENS S55 (GSM, GPRS) at 19200 bit/s'
[[ $found == "$expected" ]] || { echo "found \"$found\", expected \"$expected\"" && exit 1; }
