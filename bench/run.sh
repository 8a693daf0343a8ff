#!/usr/bin/env bash
# Builds an optimised Loomcrest and runs the benchmarks.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh
cmake -S . -B build/bench -DCMAKE_BUILD_TYPE=Release -DLOOMCREST_BUILD_TESTS=OFF \
    -DLOOMCREST_BUILD_BENCHMARKS=ON
cmake --build build/bench -j"$(nproc)" --target loomcrest_bench
build/bench/loomcrest_bench
