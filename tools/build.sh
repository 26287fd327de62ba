#!/usr/bin/env bash
# build.sh PRESET [TARGET …]: configures once and builds. Prints the log only when something fails.
set -euo pipefail
cd "$(dirname "$(readlink -f "$0")")/.."

preset=$1
shift
mkdir -p "build/$preset"
log=build/$preset/build.log
targets=()
[[ $# -gt 0 ]] && targets=(--target "$@")
if [[ ! -f build/$preset/build.ninja ]]; then
    echo "Building Brevlin ($preset); the first time takes a few minutes."
    cmake --preset "$preset" >"$log" 2>&1 || { cat "$log" >&2; exit 1; }
fi
cmake --build --preset "$preset" "${targets[@]}" >"$log" 2>&1 || { cat "$log" >&2; exit 1; }
