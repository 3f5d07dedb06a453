#!/usr/bin/env bash
# A Python program talks to the device by pyserial.
# shellcheck source-path=SCRIPTDIR
source "$(dirname "$0")/common.sh"
for python in /usr/bin/python3 python3 ""; do
  [[ -n $python ]] || skip "python3-serial is not installed: ./kx test installs it"
  ! "$python" -c 'import serial' 2>/dev/null || break
done
phone=gprs-phone-with-pin
play "$phone" --link "$room/phone"
"$python" -B "$here/pyserial_talk.py" "$room/phone" "$here/../../profiles/$phone.toml"
