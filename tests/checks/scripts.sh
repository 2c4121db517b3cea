#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Asks every script for its help: it tells how the script is called, and does nothing else.
#
#   tests/checks/scripts.sh PROJECT-DIRECTORY
set -euo pipefail
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for tool in apt-get cmake cpack ctest git ninja wine; do
    printf '#!/bin/sh\necho "$0 $*" >>"%s/called"\nexit 1\n' "$work" >"$work/$tool"
    chmod +x "$work/$tool"
done
cd "$work"
for script in "$1"/scripts/*; do
    [[ -x $script ]] || continue
    help=$(PATH=$work:$PATH timeout 60 "$script" --help </dev/null) && [[ $help == *${script##*/}* && ! -e called ]] || {
        cat called 2>/dev/null || true
        echo "${script##*/} --help does not help, or does more than that: $help" >&2
        exit 1
    }
done
echo "every script tells how it is called"
