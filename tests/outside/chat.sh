#!/usr/bin/env bash
# chat dials, and the call carries data until the far end goes.
# shellcheck source-path=SCRIPTDIR
source "$(dirname "$0")/common.sh"
need chat

# Runs a chat script over a device, as pppd does once it has made the line raw.
dial() {
  local device=$room/$1
  shift
  stty -F "$device" raw -echo 19200
  chat -t 15 ABORT ERROR ABORT BUSY "$@" <>"$device" >&0
}

phone=gprs-edge-phone
context='AT+CGDCONT=1,"IP","internet"'
play $phone $phone $phone --link "$room/any" --link "$room/chosen" --link "$room/refused"
play --on-connect 'head -c 5' $phone --link "$room/short"

# The far end gives five bytes back and goes.
dial short '' ATZ OK 'ATD*99#' CONNECT 'hello\c' hello '\c' 'NO CARRIER' '\c' ||
  fail "no NO CARRIER when the far end goes (chat ends with $?)"

# Its context is defined nowhere. 4 is the first ABORT.
status=0
dial refused '' ATZ OK 'ATD*99***1#' CONNECT '\c' || status=$?
((status == 4)) || fail "a context that is not there: chat ends with $status"

# Every byte value comes back over the call. The rest of the CONNECT line stands before.
for ((byte = 0; byte < 256; ++byte)); do
  printf '%b' "\\0$(printf '%03o' "$byte")"
done >"$room/sent"
call() {
  local device=$1
  exec 4<>"$room/$device"
  dial "$@" || fail "$device: no CONNECT (chat ends with $?)"
  read -r -t 15 <&4 || fail "$device: the CONNECT line does not end"
  cat "$room/sent" >&4
  timeout 15 head -c 256 <&4 >"$room/back" || true
  cmp "$room/sent" "$room/back" || fail "$device: other bytes come back"
  exec 4>&-
}
call any '' ATZ OK 'ATD*99#' CONNECT '\c'
call chosen '' ATZ OK "$context" OK 'ATD*99***1#' CONNECT '\c'
