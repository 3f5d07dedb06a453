#!/usr/bin/env bash
# Who may include whom, and how long a file may be. Prints each fault as file:line: text.
#
# Floors, lowest first: foundation, serial, modem, handset, then connect, info and sim side by side,
# then api. A file includes its own folder and lower floors only.
set -euo pipefail
cd "$(dirname "$0")/.."

faults=$(
  git ls-files '*.cpp' '*.h' | xargs awk '
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
    BEGIN {
      split("foundation serial modem handset connect info sim api", names, " ")
      split("1 2 3 4 5 5 5 6", levels, " ")
      for (i in names) floor[names[i]] = levels[i]
    }
    FNR == 1 {
      end_of_file()
      file = FILENAME; once = 0; includes = 0; lines = 0
      limit = file ~ /\.h$/ ? 150 : 300
      split(file, path, "/")
      room = path[1]
      own = room == "KXWAN" && file ~ /\.cpp$/ ? own_header(file) : ""
    }
    { lines = FNR }
    /^#pragma once/ { once = 1 }
    /^[ \t]*#[ \t]*(if|ifdef|ifndef|elif)/ && room == "KXWAN" {
      fault("what differs between systems is a file of its own, not an #if")
    }
    /^#include / {
      ++includes
      target = $2
      quoted = target ~ /^"/
      gsub(/[<>"]/, "", target)
      if (quoted) fault("the form is #include <" target ">")
      if (own != "" && includes == 1 && target != own) fault("its own header, " own ", comes first")
      if (target !~ /^KXWAN\//) next
      if (room == "simulator") fault("the simulator includes nothing of the library")
      if ((room == "tool" || room == "examples") && target != "KXWAN/KXWAN.h")
        fault("of the library, " room " includes <KXWAN/KXWAN.h> alone")
      if (room == "KXWAN" && path[3] != "") {
        split(target, part, "/")
        if (part[2] == path[2]) next
        if (!(part[2] in floor)) fault("the library does not include " target)
        else if (floor[part[2]] >= floor[path[2]]) fault(path[2] " does not include " part[2])
      }
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
