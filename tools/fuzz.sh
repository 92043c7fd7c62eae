#!/usr/bin/env bash
# Builds the libFuzzer targets with clang and runs each for a bounded time.
# usage: tools/fuzz.sh [seconds per target (default 30)] [extra libFuzzer flags...]
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
seconds="${1:-30}"
shift || true
"$root/tools/install-deps.sh"
CC=clang CXX=clang++ cmake -S "$root" -B "$root/build-fuzz" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVORTA_FUZZ=ON >/dev/null
cmake --build "$root/build-fuzz" -j"$(nproc)"
corpus="$root/build-fuzz/corpus"
for target in "$root"/build-fuzz/tests/fuzz/fuzz_*; do
  [ -x "$target" ] || continue
  name="$(basename "$target")"
  mkdir -p "$corpus/$name"
  echo "== $name: ${seconds}s"
  # The game's debug prints go nowhere; a crash report still reaches stderr.
  SDL_AUDIODRIVER=dummy "$target" -max_total_time="$seconds" -print_final_stats=1 \
    -artifact_prefix="$root/build-fuzz/$name-" "$@" "$corpus/$name" >/dev/null 2>"$root/build-fuzz/$name.log" ||
    { tail -40 "$root/build-fuzz/$name.log"; exit 1; }
  grep -E "stat::number_of_executed_units|Done" "$root/build-fuzz/$name.log" | tr '\n' ' '
  echo
done
