#!/usr/bin/env bash
# Fails when a C++ file of the project differs from what .clang-format makes of it.
#   scripts/check-format.sh          check (what the test suite runs)
#   scripts/check-format.sh --fix    rewrite the files in place
set -euo pipefail
cd "$(dirname "$0")/.."
if git rev-parse --is-inside-work-tree >/dev/null 2>&1; then
  mapfile -t files < <(git ls-files --cached --others --exclude-standard -- '*.cpp' '*.h')
else
  mapfile -t files < <(find apps bench fuzz libraries tests -name '*.cpp' -o -name '*.h')
fi
existing=()
for f in "${files[@]}"; do [ -f "$f" ] && existing+=("$f"); done
if [ "${1:-}" = "--fix" ]; then
  clang-format -i "${existing[@]}"
else
  clang-format --dry-run --Werror "${existing[@]}"
fi
