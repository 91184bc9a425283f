#!/usr/bin/env bash
# Builds trovan and its core library for a 64-bit processor that is not x86 (aarch64, with
# Debian's cross compiler, installed when missing), so that no x86-only intrinsic or builtin can
# stay unguarded in the code. Only compiles and links; nothing is run. The simulator and the
# tests are left out (they are not needed to prove that the program builds).
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/require.sh
trovan_require aarch64-linux-gnu-g++:g++-aarch64-linux-gnu aarch64-linux-gnu-gcc:gcc-aarch64-linux-gnu

cmake -S . -B build/aarch64 -G Ninja -DCMAKE_BUILD_TYPE=Release -DTROVAN_TESTS=OFF -DTROVAN_CTL=OFF \
  -DCMAKE_SYSTEM_NAME=Linux -DCMAKE_SYSTEM_PROCESSOR=aarch64 \
  -DCMAKE_CXX_COMPILER=aarch64-linux-gnu-g++ -DCMAKE_C_COMPILER=aarch64-linux-gnu-gcc >/dev/null
ninja -C build/aarch64 trovan trovan_core
