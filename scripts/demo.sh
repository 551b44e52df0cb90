#!/usr/bin/env bash
# The first command of the README, from a fresh clone: installs what is
# missing, configures and builds the programs (not the whole test suite), then
# runs `vndb demo`. Arguments go to the demo:
#   scripts/demo.sh                     workspace in ./vndb-demo
#   scripts/demo.sh /tmp/ws --lang fr   another folder, in French
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"

"$root/scripts/setup.sh"
jobs="$(nproc)"
(cd "$root" && cmake --preset default >/dev/null)
targets=(vndb)
if [ -f "$root/apps/vndb-browser/CMakeLists.txt" ]; then
  targets+=(vndb-browser)
fi
(cd "$root" && cmake --build --preset default -j "$jobs" --target "${targets[@]}" >/dev/null)
exec "$root/build/bin/vndb" demo "$@"
