#!/usr/bin/env bash
# The main job: builds the project and runs it. Until the command-line simulator exists
# this is the default build and its test suite.
set -euo pipefail
cd "$(dirname "$0")/.."
cmake --preset default >/dev/null
cmake --build --preset default -j "$(nproc)"
if [ -x build/default/tools/zintra-sim/zintra-sim ]; then
  exec build/default/tools/zintra-sim/zintra-sim demo
fi
ctest --preset default
