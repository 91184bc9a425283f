#!/usr/bin/env bash
# The main job on a simulated volume: builds trovan and the simulator, makes a demo volume,
# saves it, restores the document into an empty twin volume, saves the twin, and shows that the
# two documents agree.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/require.sh
trovan_require_build_tools

build=build/release
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
ninja -C "$build" trovan $( [ -d sim ] && echo quillsim ) >/dev/null
trovan=$PWD/$build/trovan

if [ ! -x "$build/sim/quillsim" ]; then
  echo "The simulator is not part of this tree yet; showing the program's version instead."
  "$trovan" --version
  exit 0
fi
exec scripts/demo_volume.sh "$PWD/$build"
