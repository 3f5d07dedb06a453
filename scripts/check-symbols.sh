#!/usr/bin/env bash
# usage: check-symbols.sh [--update] LIBRARY
# What the library exports is what packaging/KXWAN.symbols lists. A name that goes or changes needs
# a new SOVERSION; --update rewrites the list.
set -euo pipefail
list=$(dirname "$0")/../packaging/KXWAN.symbols
update=
[[ $1 == --update ]] && update=1 && shift

# A va_list has another type on every machine.
exported() {
  nm -D --defined-only --format=posix "$1" | cut -d' ' -f1 | c++filt |
    sed 's/__va_list_tag\*\|std::__va_list/va_list/' | LC_ALL=C sort -u
}
if [[ -n $update ]]; then
  exported "$1" >"$list"
else
  diff -U0 --label "listed" --label "exported" "$list" <(exported "$1")
fi
