#!/usr/bin/env bash
# Builds everything with AddressSanitizer and UBSan and runs the whole test suite
# inside a virtual X server, so that the OpenGL tests get a real (software) context,
# then fuzzes every handler of a peer's bytes for a bounded time.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
"$root/tools/install-deps.sh"
cmake -S "$root" -B "$root/build-test" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVORTA_SANITIZE=ON >/dev/null
cmake --build "$root/build-test" -j"$(nproc)"
cd "$root/build-test"
xvfb-run -a -s "-screen 0 1280x1024x24" \
  ctest -j"$(nproc)" --output-on-failure --timeout 900 "$@"
# Every handler of a peer's bytes, fuzzed for a bounded time.
"$root/tools/fuzz.sh" "${VORTA_FUZZ_SECONDS:-30}"
