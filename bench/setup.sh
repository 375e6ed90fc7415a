#!/usr/bin/env bash
# Installs what the benchmarks need beyond the program's own packages: Google Benchmark for
# bench_text and kid3-cli, the comparison in function0001_bench.sh.
set -euo pipefail
exec bash "$(dirname "$0")/../scripts/setup.sh" libbenchmark-dev kid3-cli
