#!/usr/bin/env bash
# Every tracked C++ file is laid out as clang-format does it.
set -euo pipefail
cd "$(dirname "$0")/.."
git ls-files -z '*.cpp' '*.h' | xargs -0 clang-format --dry-run -Werror
