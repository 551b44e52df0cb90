#!/usr/bin/env bash
# The whole test suite from a fresh clone: set-up, configure, build, ctest.
#   scripts/test.sh            normal build in build/
#   scripts/test.sh sanitize   AddressSanitizer + UBSan build in build-sanitize/
set -euo pipefail
cd "$(dirname "$0")/.."

preset="${1:-default}"
scripts/setup.sh
jobs="$(nproc)"
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" -j "$jobs"
ctest --preset "$preset" -j "$jobs"
