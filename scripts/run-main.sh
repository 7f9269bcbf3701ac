#!/usr/bin/env bash
# Installs what the project needs, builds the "release" preset and runs the
# main example program.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
cmake --preset release >/dev/null
cmake --build --preset release --target input_demo
./build/release/examples/input_demo/input_demo
