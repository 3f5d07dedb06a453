#!/usr/bin/env bash
# Who may include whom, and how long a file may be. Prints each fault as file:line: text.
#
# A file includes its own room and those that stand behind it here. Of the library everybody else
# includes <KXWAN/KXWAN.h> alone, and what plays a device nothing, so that it cannot share its
# mistakes. Tests and benchmarks look everywhere.
set -euo pipefail
cd "$(dirname "$0")/.."

rooms='
KXWAN/foundation
KXWAN/serial     KXWAN/foundation
KXWAN/modem      KXWAN/foundation KXWAN/serial
KXWAN/handset    KXWAN/foundation KXWAN/serial KXWAN/modem
KXWAN/connect    KXWAN/foundation KXWAN/serial KXWAN/modem KXWAN/handset
KXWAN/info       KXWAN/foundation KXWAN/serial KXWAN/modem KXWAN/handset
KXWAN/sim        KXWAN/foundation KXWAN/serial KXWAN/modem KXWAN/handset
KXWAN/api        KXWAN/foundation KXWAN/serial KXWAN/modem KXWAN/handset KXWAN/connect KXWAN/info KXWAN/sim
profile
recording        profile
simulator/line   profile
simulator/call   profile simulator/line
simulator/modem  profile simulator/line simulator/call
simulator        profile simulator/line simulator/modem simulator/call
tool/kxwan       profile recording simulator KXWAN
tool/kxwan-sim   profile recording simulator simulator/line
examples         KXWAN
'

faults=$(
  git ls-files '*.cpp' '*.h' | xargs awk -v rooms="$rooms" '
    function fault(text) { print FILENAME ":" FNR ": " text }
    function end_of_file() {
      if (!file) return
      if (lines >= limit) print file ":" lines ": " lines " lines, must stay below " limit
      if (file ~ /\.h$/ && !once) print file ":1: no #pragma once"
    }
    function exists(name,  line, found) {
      found = (getline line < name) >= 0
      close(name)
      return found
    }
    # The header that belongs to a source, as an include writes it.
    function own_header(source,  stem) {
      stem = source
      sub(/(Linux|Mac)?\.cpp$/, "", stem)
      if (exists(stem ".h")) return stem ".h"
      if (exists(stem "Private.h")) return stem "Private.h"
      return ""
    }
    # The room of a file: its folder. The umbrella header is a room by itself.
    function room_of(name) {
      sub(/\/[^\/]*$/, "", name)
      return name
    }
    BEGIN {
      count = split(rooms, row, "\n")
      for (i = 1; i <= count; ++i) {
        if (!(others = split(row[i], part, " "))) continue
        known[part[1]] = 1
        for (j = 1; j <= others; ++j) may[part[1], part[j]] = 1
      }
    }
    FNR == 1 {
      end_of_file()
      file = FILENAME; once = 0; includes = 0; lines = 0
      limit = file ~ /\.h$/ ? 150 : 300
      room = room_of(file)
      top = substr(room, 1, index(room "/", "/") - 1)
      own = top == "KXWAN" && file ~ /\.cpp$/ ? own_header(file) : ""
    }
    { lines = FNR }
    /^#pragma once/ { once = 1 }
    /^[ \t]*#[ \t]*(if|ifdef|ifndef|elif)/ && top == "KXWAN" {
      fault("what differs between systems is a file of its own, not an #if")
    }
    /^#include / {
      ++includes
      target = $2
      quoted = target ~ /^"/
      gsub(/[<>"]/, "", target)
      if (quoted) fault("the form is #include <" target ">")
      if (own != "" && includes == 1 && target != own) fault("its own header, " own ", comes first")
      other = room_of(target)
      if ((room in known) && ((other in known) || other == "KXWAN") && !((room, other) in may))
        fault(room " does not include " other)
      if (room != "KXWAN" && top == "KXWAN" && index(target, "/") && !(other in known) && exists(target))
        fault("the library does not include " target)
    }
    END { end_of_file() }'

  # The umbrella header holds every installed header, and no other.
  {
    diff <(git ls-files 'KXWAN/*/*.h' | grep -v 'Private\.h$' | LC_ALL=C sort) \
      <(sed -n 's/^#include <\(.*\)>/\1/p' KXWAN/KXWAN.h | LC_ALL=C sort) || true
  } | sed -n 's/^< \(.*\)/KXWAN\/KXWAN.h:1: does not include \1/p;
            s/^> \(.*\)/KXWAN\/KXWAN.h:1: includes \1, which is not installed/p'
)
[[ -z $faults ]] || {
  echo "$faults"
  exit 1
}
