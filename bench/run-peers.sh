#!/usr/bin/env bash
# Measures varion beside Poco::Dynamic::Var, Qt 6's QVariant and the floors
# (plain C++, std::from_chars, std::to_chars, snprintf), counts instructions
# of varion's core paths under callgrind, and writes docs/performance.md.
#
#   bench/run-peers.sh                 build, run, write the document
#   REPETITIONS=25 bench/run-peers.sh  more repetitions per benchmark (15 by default)
#   BUILD_DIR=/tmp/b bench/run-peers.sh
#
# Installs the peers' Debian packages (libpoco-dev, qt6-base-dev) and
# valgrind when they are missing (needs root), builds in Release with
# VARION_BENCH_PEERS=ON, runs varion_peers once per family of operations with
# repetitions, and keeps the raw results in $BUILD_DIR/peer-results.
set -euo pipefail

SOURCE_DIR=$(cd "$(dirname "$0")/.." && pwd)
BUILD_DIR=${BUILD_DIR:-$SOURCE_DIR/build-peers}
REPETITIONS=${REPETITIONS:-15}
MIN_TIME=${MIN_TIME:-0.1}
JOBS=${JOBS:-2}
RESULTS=$BUILD_DIR/peer-results
FAMILIES="numeric copy ops text format units dates"

packages="libpoco-dev qt6-base-dev valgrind libbenchmark-dev"
missing=""
for p in $packages; do
    dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing="$missing $p"
done
if [ -n "$missing" ]; then
    echo "installing:$missing" >&2
    apt-get update -qq
    DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $missing
fi

cmake -S "$SOURCE_DIR" -B "$BUILD_DIR" -DCMAKE_BUILD_TYPE=Release -DVARION_BUILD_BENCH=ON \
      -DVARION_BENCH_PEERS=ON -DVARION_BUILD_TESTS=OFF -DVARION_BUILD_TOOLS=OFF > /dev/null
cmake --build "$BUILD_DIR" -j "$JOBS" --target varion_peers varion_opcount

rm -rf "$RESULTS"
mkdir -p "$RESULTS"
load_before=$(cut -d' ' -f1-3 /proc/loadavg)
for family in $FAMILIES; do
    echo "running $family" >&2
    "$BUILD_DIR/bench/varion_peers" --benchmark_filter="^$family/" \
        --benchmark_repetitions="$REPETITIONS" --benchmark_min_time="$MIN_TIME" \
        --benchmark_enable_random_interleaving=true --benchmark_report_aggregates_only=false \
        --benchmark_out="$RESULTS/$family.json" --benchmark_out_format=json > /dev/null
done
load_after=$(cut -d' ' -f1-3 /proc/loadavg)

echo "counting instructions" >&2
python3 "$SOURCE_DIR/bench/performance_report.py" count --opcount "$BUILD_DIR/bench/varion_opcount" \
    --out "$RESULTS/instructions.json"

compiler=$(sed -n 's/^CMAKE_CXX_COMPILER:[A-Z]*=//p' "$BUILD_DIR/CMakeCache.txt")
version_of() { dpkg-query -W -f='${Version}' "$1" 2>/dev/null || echo unknown; }
python3 - "$RESULTS/machine.json" <<PY
import json, sys
json.dump({
    "date": "$(date -u '+%Y-%m-%d %H:%M UTC')",
    "cpu": "$(lscpu | sed -n 's/^Model name: *//p' | head -1)",
    "cpus": "$(nproc)",
    "kernel": "$(uname -sr)",
    "compiler": "$("$compiler" --version | head -1)",
    "flags": "CMAKE_BUILD_TYPE=Release ($(sed -n 's/^CMAKE_CXX_FLAGS_RELEASE:[A-Z]*=//p' "$BUILD_DIR/CMakeCache.txt")), varion linked statically",
    "benchmark": "$(version_of libbenchmark-dev)",
    "poco": "$(version_of libpoco-dev)",
    "qt": "$(version_of qt6-base-dev)",
    "valgrind": "$(valgrind --version)",
    "load": "$load_before before the benchmarks, $load_after after",
    "repetitions": "$REPETITIONS per benchmark, at least $MIN_TIME s each, in random order within a family",
}, open(sys.argv[1], "w"), indent=1)
PY

mkdir -p "$SOURCE_DIR/docs"
python3 "$SOURCE_DIR/bench/performance_report.py" render --results "$RESULTS" \
    --notes "$SOURCE_DIR/bench/performance_notes.md" --out "$SOURCE_DIR/docs/performance.md"
echo "wrote $SOURCE_DIR/docs/performance.md" >&2
