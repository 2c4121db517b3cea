#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs the build into an empty directory, moves that, and builds and runs applications from there: one in C that
# pkg-config helps to find it, and in C and in C++ those that CMake does, with the shared library and with the static one.
#
#   tests/checks/install.sh BUILD-DIRECTORY C-COMPILER C++-COMPILER
set -euo pipefail
sources=$(cd "$(dirname "$0")/consumers" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$1" --prefix "$work/first" >/dev/null
mv "$work/first" "$work/moved here"
prefix=$work/moved\ here
pc=$(find "$prefix" -name kv.pc)
libraries=$(dirname "$(dirname "$pc")")
export LD_LIBRARY_PATH=$libraries

if [[ -n $(grep -rIl --exclude-dir=doc -e "$work" -e "$(cd "$1" && pwd)" "$prefix") ]]; then
    echo "what is installed knows where it was built or installed" >&2
    exit 1
fi

export PKG_CONFIG_PATH=$(dirname "$pc")
eval "flags=($(pkg-config --cflags --libs kv))"
"$2" -std=c11 -Wall -Wextra -Wpedantic -Werror "$sources/c/main.c" -o "$work/c" "${flags[@]}"
"$work/c"

for project in cmake cmake_c; do
    cmake -S "$sources/$project" -B "$work/$project" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_C_COMPILER="$2" \
        -DCMAKE_CXX_COMPILER="$3" >/dev/null 2>&1
    cmake --build "$work/$project" >/dev/null
    "$work/$project/with_kv"
    "$work/$project/with_kv_static"
done

# The program, its page and its completion.
version=$(pkg-config --modversion kv)
page=$prefix/share/man/man1/kv.1
[[ $("$prefix/bin/kv" --version) == "kv $version" ]]
PATH=$prefix/bin:$PATH
source "$prefix/share/bash-completion/completions/kv"

# complete LINE: what is offered for its last word.
complete_words() {
    COMP_LINE="kv $1" COMP_POINT=$((3 + ${#1})) COMPREPLY=()
    _kv kv
    echo "${COMPREPLY[*]}"
}
[[ $(complete_words "env s") == "show set" ]]
[[ $(complete_words "env get --de") == "--default --delimiter" ]]
! command -v mandoc >/dev/null || [[ -z $(mandoc -Tlint "$page") ]]
! command -v man >/dev/null || [[ -z $(man --warnings -l "$page" 2>&1 >/dev/null) ]]
echo "kv $version is found and works where it was moved to"
