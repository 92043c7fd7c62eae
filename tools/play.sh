#!/usr/bin/env bash
# Builds the game and its generated assets, then starts it in its data folder. The
# game's own messages (among them a line per sound played) go to vorta.log there;
# starting the game directly prints them all. VORTA_BUILD plays from a folder that is
# already built instead.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
build="${VORTA_BUILD:-$root/build}"
if [ -z "${VORTA_BUILD:-}" ]; then
  "$root/tools/install-deps.sh"
  cmake -S "$root" -B "$build" -DCMAKE_BUILD_TYPE=Release -DVORTA_TESTS=OFF >/dev/null
  cmake --build "$build" -j"$(nproc)"
fi
cd "$build/data"
echo "Vorta's messages go to $PWD/vorta.log"
exec ../vorta "$@" >vorta.log
