#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Looks at the Debian packages in a directory, installs them into an empty system of their own, builds and runs an application
# and the program there, and removes them again.
#
#   tests/checks/debian_packages.sh DIRECTORY VERSION
set -euo pipefail
version=$2
consumer=$(cd "$(dirname "$0")/consumers/c" && pwd)/main.c
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$1"

fail() {
    echo "$*" >&2
    exit 1
}

packages=()
for name in libkv1 libkv-dev kv; do
    package=$(echo "${name}_$version"-*_"$(dpkg --print-architecture)".deb)
    [[ -s $package ]] || fail "there is no package $name of version $version"
    packages+=("$package")
done
[[ $(dpkg-deb --field "${packages[0]}" Depends) == *libstdc++6* ]] || fail "libkv1 does not depend on what it needs"
[[ $(dpkg-deb --info "${packages[0]}" shlibs) == "libkv 1 libkv1"* ]] || fail "libkv1 does not say who needs it"

mkdir -p "$work/system/var/lib/dpkg/"{info,updates,triggers}
touch "$work/system/var/lib/dpkg/"{status,available}
in_system() {
    dpkg --root="$work/system" --log="$work/dpkg.log" --force-not-root --force-depends "$@" >>"$work/log" 2>&1 || {
        cat "$work/log"
        fail "dpkg $* fails"
    }
}
in_system --install "${packages[@]}"
in_system --install "${packages[@]}" # once more, over itself

usr=$work/system/usr
libraries=$(dirname "$(find "$usr" -name libkv.a)")
export LD_LIBRARY_PATH=$libraries PKG_CONFIG_PATH=$libraries/pkgconfig
[[ $("$usr/bin/kv" --version) == "kv $version" ]] || fail "the program does not tell its version"
[[ $(cd "$work" && "$usr/bin/kv" calc '2^10') == 1024 ]] || fail "the program does not work"
eval "flags=($(pkg-config --cflags --libs kv))"
cc "$consumer" -o "$work/application" "${flags[@]}"
"$work/application" || fail "an application does not run"
for wanted in include/kv.hpp share/man/man1/kv.1.gz share/bash-completion/completions/kv \
    share/doc/libkv-dev/docs/kv-program.md share/doc/libkv-dev/examples/press.env share/doc/libkv1/copyright; do
    [[ -s $usr/$wanted ]] || fail "/usr/$wanted is missing"
done

# Links of the documents lead to files of the package, or are those that only a checkout has.
python3 - "$usr/share/doc/libkv-dev" <<'PYTHON' || fail "the documents point to nothing"
import pathlib, re, sys
root = pathlib.Path(sys.argv[1])
only_in_a_checkout = re.compile(r"include/|CONTRIBUTING\.md$|bench/")
broken = 0
for page in root.rglob("*.md"):
    for target in re.findall(r"\]\(([^)#:]+)(?:#[^)]*)?\)", page.read_text()):
        if not (page.parent / target).exists() and not only_in_a_checkout.search(target):
            print(f"{page.relative_to(root)}: {target}")
            broken = 1
sys.exit(broken)
PYTHON

in_system --purge kv libkv-dev libkv1
left=$(find "$work/system" -path "$work/system/var/lib/dpkg" -prune -o ! -type d -print)
[[ -z $left ]] || fail "this is left when the packages are removed: $left"
echo "the packages install, work and are removed"
