#!/bin/bash
# The demo: scripts/demo.sh [BUILD_DIR] builds what it runs, seeds a simulated volume, saves it,
# restores it into an empty twin, saves the twin and compares; see there.
exec "$(dirname "$0")/../scripts/demo.sh" "$@"
