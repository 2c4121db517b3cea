#!/usr/bin/env bash
# Packs the build as a Debian package, looks at what the package says and holds, installs it into an empty system of its
# own, runs the program there, and removes it again.
#
#   tests/checks/package.sh BUILD-DIRECTORY VERSION
set -euo pipefail
build=$(cd "$1" && pwd)
version=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
    echo "$*" >&2
    exit 1
}

(cd "$work" && cpack -G DEB --config "$build/CPackConfig.cmake" -B "$work/packed") >"$work/log" 2>&1 || {
    cat "$work/log"
    fail "cpack fails"
}
packages=("$work"/packed/*.deb)
architecture=$(dpkg --print-architecture)
package=$work/packed/kv_${version}_$architecture.deb
[[ ${packages[*]} == "$package" ]] || fail "the package is named ${packages[*]##*/}"

# What it says.
field() {
    dpkg-deb --field "$package" "$1"
}
[[ $(field Package) == kv && $(field Version) == "$version" && $(field Architecture) == "$architecture" ]] ||
    fail "the package has another name, version or architecture"
needs=$(field Depends)
for library in $(objdump -p "$build"/libkv.so "$build"/tools/kv/kv | sed -n 's/^ *NEEDED *//p' | sort -u); do
    case $library in
        libc.so.* | libm.so.*) name=libc6 ;;
        libstdc++.so.*) name=libstdc++6 ;;
        libgcc_s.so.*) name=libgcc-s1 ;;
        libedit.so.*) name=libedit2 ;;
        *) fail "$library is needed, which no package here is known for" ;;
    esac
    [[ " $needs" == *" $name "* ]] || fail "Depends lacks $name for $library: $needs"
done
[[ $needs != *kv* ]] || fail "the package depends on itself: $needs"
dpkg-deb --control "$package" "$work/control"
[[ $(ls "$work/control" | sort | xargs) == "control md5sums postinst postrm shlibs" ]] ||
    fail "other control files: $(ls "$work/control")"
major=${version%%.*}
[[ $(cat "$work/control/shlibs") == "libkv $major kv (>= $version)" ]] || fail "shlibs is wrong"

# What it holds.
dpkg-deb --fsys-tarfile "$package" | tar -tv >"$work/list"
if grep -v '^[-dl]rw.r-.r-. root/root  *[0-9]* [^ ]* [^ ]* \./usr/\|^lrwxrwxrwx root/root .* \./usr/' "$work/list"; then
    fail "these are not root's, are writable for others, or stand outside of /usr"
fi
dpkg-deb --extract "$package" "$work/holds"
libraries=$(dirname "$(find "$work/holds" -name libkv.a)")
for wanted in "$work/holds/usr/"{bin/kv,include/kv.h,include/kv.hpp,include/kv/env.h,share/man/man1/kv.1} \
    "$libraries"/{libkv.so,libkv.so.$major,libkv.so.$version,pkgconfig/kv.pc,cmake/kv/kvConfig.cmake} \
    "$work/holds/usr/share/"{bash-completion/completions/kv,doc/kv/README.md,doc/kv/LICENSE,doc/kv/docs/kv-program.md} \
    "$work/holds/usr/share/doc/kv/examples/press.env"; do
    [[ -s $wanted ]] || fail "${wanted#"$work/holds"} is missing"
done
objdump -p "$libraries/libkv.so.$version" | grep -q "SONAME *libkv.so.$major$" || fail "the library has another soname"
if grep -raIl -e "$build" -e "$work" "$work/holds"; then
    fail "these name the directory of the build"
fi
if nm "$work/holds/usr/bin/kv" 2>&1 | grep -q ' [Tt] '; then
    fail "the program is not stripped"
fi
# Links of the documents lead to files of the package, or are those that only a checkout has.
python3 - "$work/holds/usr/share/doc/kv" <<'PYTHON' || fail "the documents point to nothing"
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

# Installing and removing, in a system that has nothing else. The package's scripts run outside of it, with an ldconfig
# that only tells that it was called.
mkdir -p "$work/system/var/lib/dpkg/"{info,updates,triggers} "$work/bin"
touch "$work/system/var/lib/dpkg/"{status,available}
printf '#!/bin/sh\necho called >>"%s/ldconfig"\n' "$work" >"$work/bin/ldconfig"
chmod +x "$work/bin/ldconfig"
in_system() {
    rm -f "$work/ldconfig"
    PATH=$work/bin:$PATH dpkg --root="$work/system" --log="$work/dpkg.log" --force-not-root --force-bad-path \
        --force-depends --force-script-chrootless "$@" >>"$work/log" 2>&1 || {
        cat "$work/log"
        fail "dpkg $* fails"
    }
    [[ -s $work/ldconfig ]] || fail "dpkg $1 does not tell the system of the library"
}
in_system --install "$package"
export LD_LIBRARY_PATH=${libraries/"$work/holds"/"$work/system"}
[[ $("$work/system/usr/bin/kv" --version) == "kv $version" ]] || fail "the program does not tell its version"
[[ $(cd "$work" && "$work/system/usr/bin/kv" calc '2^10') == 1024 ]] || fail "the program does not work"
in_system --install "$package" # once more, over itself
in_system --purge kv
left=$(find "$work/system" -path "$work/system/var/lib/dpkg" -prune -o ! -type d -print)
[[ -z $left ]] || fail "this is left when the package is removed: $left"
[[ ! -e $work/system/usr/include ]] || fail "directories are left when the package is removed"
echo "${package##*/} installs, works and is removed; it depends on $needs"
