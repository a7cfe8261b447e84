#!/usr/bin/env bash
# Manual timing check of the loader: writes a CSV file of 1,000,000 cases and 13 numeric
# variables into a temporary directory and times `drilldown info` on it (release build).
# Usage: examples/time_load.sh [CASES]
set -euo pipefail
cd "$(dirname "$0")/.."
cases=${1:-1000000}
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT

python3 - "$cases" "$dir/large.csv" <<'PY'
import random, sys
cases, path = int(sys.argv[1]), sys.argv[2]
rng = random.Random(7)
with open(path, "w") as out:
    out.write(",".join(f"V{i}" for i in range(1, 14)) + "\n")
    for _ in range(cases):
        row = [str(rng.randrange(1, 6)), str(rng.randrange(18, 90)), f"{rng.uniform(0, 1e5):.2f}"]
        row += [f"{rng.gauss(50, 10):.4f}" for _ in range(8)]
        row += [str(rng.randrange(0, 1000)), "" if rng.random() < 0.02 else f"{rng.random():.3f}"]
        out.write(",".join(row) + "\n")
PY
echo "$(du -h "$dir/large.csv" | cut -f1) in $dir/large.csv"
time build/bin/drilldown info "$dir/large.csv" >/dev/null
