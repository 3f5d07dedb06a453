#!/usr/bin/env bash
# gammu names the phone, its network and what its SIM waits for, and unlocks it.
# shellcheck source-path=SCRIPTDIR
source "$(dirname "$0")/common.sh"
need gammu

locked=$here/phone.toml
sed 's/^state = "pin"/state = "ready"/' "$locked" >"$room/ready.toml"
play "$locked" "$locked" "$room/ready.toml" \
  --link "$room/locked" --link "$room/guessed" --link "$room/ready"

# What gammu says about a device, each run of blanks as one.
ask() {
  local device=$room/$1 status=0
  shift
  printf '[gammu]\nport = %s\nconnection = at19200\n' "$device" >"$device.gammurc"
  gammu -c "$device.gammurc" "$@" </dev/null >"$device.said" 2>&1 || status=$?
  tr -s ' ' <"$device.said"
  return "$status"
}

unlock() {
  ask locked getsecuritystatus >"$room/before"
  holds "$room/before" "Waiting for PIN."
  ask locked entersecuritycode PIN "$(value "$locked" pin)" >"$room/entered" ||
    fail "the right PIN is refused: $(<"$room/entered")"
  ask locked getsecuritystatus >"$room/after"
  holds "$room/after" "Nothing to enter."
}

guess() {
  ! ask guessed entersecuritycode PIN 1111 >"$room/guess" || fail "a wrong PIN is accepted"
  holds "$room/guess" "Waiting for PIN."
}

describe() {
  local code signal
  ask ready identify >"$room/identity"
  holds "$room/identity" "Manufacturer : $(value "$locked" manufacturer)"
  holds "$room/identity" "Model : unknown ($(value "$locked" model))"
  holds "$room/identity" "Firmware : $(value "$locked" revision)"
  holds "$room/identity" "IMEI : $(value "$locked" serial)"
  holds "$room/identity" "SIM IMSI : $(value "$locked" imsi)"

  code=$(value "$locked" operator_code)
  ask ready networkinfo >"$room/network"
  # Registration 5 is roaming.
  holds "$room/network" "Network state : roaming network"
  holds "$room/network" "Packet network state : roaming network"
  holds "$room/network" "Network : ${code:0:3} ${code:3} "
  holds "$room/network" "LAC $(value "$locked" area), CID $(value "$locked" cell)"
  holds "$room/network" "Name in phone : \"$(value "$locked" operator)\""
  holds "$room/network" "GPRS : attached"

  signal=$(value "$locked" signal)
  ask ready monitor 1 >"$room/monitor"
  holds "$room/monitor" "Battery level : $(value "$locked" battery) percent"
  holds "$room/monitor" "Signal strength : $((2 * signal - 113)) dBm"
}

# gammu waits a lot between its commands, hence all at once.
unlock & jobs=($!)
guess & jobs+=($!)
describe & jobs+=($!)
status=0
for job in "${jobs[@]}"; do wait "$job" || status=1; done
exit "$status"
