#!/usr/bin/env bash
# The main job: builds the project and runs zintra-sim's built-in demonstration.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake --preset default >/dev/null
cmake --build --preset default -j "$(nproc)" --target zintra-sim
exec build/default/tools/zintra-sim/zintra-sim demo
