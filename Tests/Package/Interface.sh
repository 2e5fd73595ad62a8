#!/bin/sh
# Interface.sh LIBRARY DESCRIPTION [--renew]: compares the layouts, virtual functions and exported functions of a library,
# which has debug information, with those of a compressed description, and reports what has changed; with --renew,
# writes the description. Types that are not defined in the public headers are left out.
set -eu
folder=$(dirname "$0")
current="$1.abi"
committed="$1.committed.abi"
abidw --no-corpus-path --no-comp-dir-path --no-show-locs --no-parameter-names --no-elf-needed --no-write-default-sizes \
    --type-id-style hash --exported-interfaces-only --drop-undefined-syms --drop-private-types \
    --headers-dir "$folder/../../Include" --suppressions "$folder/Interface.suppr" --out-file "$current" "$1"
if [ "${3:-}" = --renew ]; then
    xz -9 --stdout "$current" >"$2"
    exit 0
fi
xz --decompress --stdout "$2" >"$committed"
abidiff --no-show-locs "$committed" "$current" || {
    echo "The binary interface has changed: programs must be compiled anew, unless functions were only added."
    echo "If that is intended, say so in CHANGELOG.md and renew the description: ./dev abi --renew"
    exit 1
}
