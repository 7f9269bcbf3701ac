#!/usr/bin/env bash
# Installs what the project needs, builds the "dev" preset (Debug with
# AddressSanitizer and UndefinedBehaviorSanitizer, warnings as errors) and
# runs every test.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/install-deps.sh
cmake --preset dev
cmake --build --preset dev
ctest --preset dev --output-on-failure
