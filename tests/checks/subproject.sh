#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds and runs applications in C and in C++ that have this project in their own, with either library. What they install is
# their own alone.
#
#   tests/checks/subproject.sh PROJECT-DIRECTORY C-COMPILER C++-COMPILER
set -euo pipefail
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
{
    cmake -S "$(dirname "$0")/consumers/subproject" -B "$work/build" -G Ninja "-DKV_SOURCE=$1" -DCMAKE_C_COMPILER="$2" \
        -DCMAKE_CXX_COMPILER="$3" -DCMAKE_UNITY_BUILD=ON -DCMAKE_PREFIX_PATH="$work/none" &&
        cmake --build "$work/build" && cmake --install "$work/build" --prefix "$work/installed"
} >"$work/log" 2>&1 || {
    tail -n 40 "$work/log"
    exit 1
}
for program in "$work/build/"{c_with_kv,c_with_kv_static,cpp/cpp_with_kv,cpp/cpp_with_kv_static}; do
    "$program"
done
[[ ! -e $work/installed ]] || {
    find "$work/installed"
    echo "the project installs itself with another one" >&2
    exit 1
}
