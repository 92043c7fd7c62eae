#!/usr/bin/env bash
# Builds the game and its generated assets, then starts it in its data folder.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
"$root/tools/install-deps.sh"
cmake -S "$root" -B "$root/build" -DCMAKE_BUILD_TYPE=Release -DVORTA_TESTS=OFF >/dev/null
cmake --build "$root/build" -j"$(nproc)"
cd "$root/build/data"
exec ../vorta "$@"
