#!/bin/sh
# Symbols.sh NM LIBRARY LIST [--renew]: compares the exported symbols of a library, demangled and sorted, with those of a
# list, and names what was added or removed; with --renew, writes the list.
set -eu
exported=$("$1" --dynamic --defined-only --demangle --format=posix "$2" |
    sed -E 's/ [A-Za-z] [0-9a-f]+ [0-9a-f]*$//' | LC_ALL=C sort -u)
if [ "${4:-}" = --renew ]; then
    echo "$exported" >"$3"
    exit 0
fi
changes=$(echo "$exported" | diff "$3" - | sed -n 's/^> /added: /p; s/^< /removed: /p')
[ -n "$changes" ] || exit 0
echo "$changes"
echo "The exported symbols have changed. If that is intended, renew the list: ./dev abi --renew"
exit 1
