#!/usr/bin/env bash
# Every tracked C++ file is laid out as clang-format does it. What clang-format leaves open is
# looked at here, in the rooms named: prints each fault as file:line: text.
#
# A file includes its own header, then those whose name ends in .h, then the others, each of these
# groups sorted. What a condition or a loop governs stands behind it without braces where both fit
# on one line, else in braces.
set -euo pipefail
cd "$(dirname "$0")/.."

rooms=(KXWAN tool/kxwan simulator examples)

git ls-files -z '*.cpp' '*.h' | xargs -0 clang-format --dry-run -Werror
faults=$(
  git ls-files -- "${rooms[@]/%//*.cpp}" "${rooms[@]/%//*.h}" | xargs awk '
    function fault(line, text) { print FILENAME ":" line ": " text }
    function bare(line) {
      gsub(/"([^"\\]|\\.)*"|\047([^\047\\]|\\.)*\047/, "0", line)
      sub(/[ ]*\/\/.*/, "", line)
      return line
    }
    # The parentheses that stay open behind a line.
    function open_after(line,  left, right) {
      left = gsub(/\(/, "", line)
      right = gsub(/\)/, "", line)
      return left - right
    }
    FNR == 1 { head = 0; body = ""; group = 0; space = 0 }
    /^#include / {
      target = $2
      kind = target ~ /\.h>$/ ? 1 : 2
      if (group && kind < group) fault(FNR, "headers whose name ends in .h come first")
      group = kind
    }
    { text = bare($0) }
    body != "" {
      if (text ~ /^ *}$/) fault(FNR - 2, "fits on one line, without braces")
      body = ""
    }
    head && depth == 0 && FNR == head_end + 1 {
      joined = length(first) - 2 + 1 + length($0) - match($0, /[^ ]/) + 1
      if (head == head_end && joined <= 100 && $0 == text && text ~ /;$/ &&
          text !~ /^ *(if|for|while|do|switch) /)
        body = text
      head = 0
    }
    !head && text ~ /^ *(} else )?(if|for|while) (constexpr )?\(/ {
      head = FNR; depth = 0; first = $0
      inner = text ~ /^ *}/
    }
    head && (head == FNR || depth > 0) {
      depth += open_after(text)
      if (depth > 0) next
      if (text ~ /\)$/) fault(FNR, "what is on a line of its own has braces")
      head_end = FNR
      if (text !~ /{$/ || inner) head = 0
      next
    }
    text ~ /^ *(} )?else$/ { fault(FNR, "what is on a line of its own has braces") }
  '
)
[[ -z $faults ]] || {
  echo "$faults"
  exit 1
}
