#!/usr/bin/env bash
# Installs what the project needs, builds the "release" preset and runs the
# gallery headless; the picture is written to gallery.png at the repository
# root. Extra arguments go to the gallery (see --help), e.g. --scale 2.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
cmake --preset release >/dev/null
cmake --build --preset release --target gallery
./build/release/examples/gallery/gallery --screenshot gallery.png "$@"
