#!/usr/bin/env bash
# wvdialconf finds the modems of a machine and the highest speed of each. It looks at the serial
# devices in /dev and nowhere else, so it is given a /dev of its own that holds ours alone.
# shellcheck source-path=SCRIPTDIR
source "$(dirname "$0")/common.sh"
need wvdialconf

fast=gprs-edge-phone slow=gsm-phone-9600
# The names occur in lock files that all share.
fast_port=ttyUSB${$}1 slow_port=ttyUSB${$}2
play "$fast" "$slow" --link "$room/fast" --link "$room/slow"

mkdir -p "$room/dev/pts"
ln -s "$(readlink "$room/fast")" "$room/dev/$fast_port"
ln -s "$(readlink "$room/slow")" "$room/dev/$slow_port"

# shellcheck disable=SC2016
scan='mount --rbind /dev/pts "$1/dev/pts" && mount --rbind "$1/dev" /dev && exec wvdialconf "$1/conf"'
for private in "unshare --map-root-user --mount" "unshare --mount" ""; do
  [[ -n $private ]] || skip "this user may not give wvdialconf a /dev of its own"
  # shellcheck disable=SC2086
  ! $private mount --bind "$room/dev" /dev 2>"$room/why" || break
done
# shellcheck disable=SC2086
$private bash -c "$scan" scan "$room" </dev/null >"$room/said" 2>&1 ||
  fail "wvdialconf finds no modem: $(<"$room/said")"

for modem in "$fast $fast_port" "$slow $slow_port"; do
  read -r profile port <<<"$modem"
  holds "$room/said" "$port<Info>: Speed $(value "$profile" fast_baud); init"
done
holds "$room/said" "Modem Identifier: ATI -- $(value "$fast" manufacturer)"
baud=$(sed -n 's/^Baud = //p' "$room/conf") port=$(sed -n 's/^Modem = //p' "$room/conf")
echo "found $port at $baud"
