#!/usr/bin/env bash
# The main job on a simulated volume: builds trovan and the simulator, makes a demo volume,
# saves it, restores the document into an empty twin volume, saves the twin, and shows that the
# two documents agree.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/require.sh
trovan_require_build_tools

exec sim/demo.sh "$PWD/build/release"
