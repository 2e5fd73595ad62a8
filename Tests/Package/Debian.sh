#!/bin/sh
# Debian.sh FOLDER VERSION: installs the Debian packages of a folder in a scratch root, compiles and runs the consumer with
# them, looks for the debug information with gdb, and removes them again.
set -eu
packages=$1
version=$2
runtime_name=libvorn${version%.*}
here=$(cd "$(dirname "$0")" && pwd)
scratch=$(mktemp -d -t vorn-debian-XXXXXX)
trap 'rm -rf "$scratch"' EXIT
root=$scratch/root
fail() { echo "$*" >&2; exit 1; }

runtime=$(echo "$packages"/"$runtime_name"_*.deb)
development=$(echo "$packages"/libvorn-dev_*.deb)
debug=$(echo "$packages"/"$runtime_name"-dbgsym_*.ddeb)
for package in "$runtime" "$development" "$debug"; do [ -f "$package" ] || fail "no package $package"; done

# The library's dependencies are those of its binary; the headers belong to the same version.
for dependency in libc6 libstdc++6; do
    dpkg-deb -f "$runtime" Depends | grep -qF "$dependency (>=" || fail "no dependency on $dependency"
done
dpkg-deb -f "$development" Depends | grep -qF "$runtime_name (= $version)" || fail "no dependency on $runtime_name"
dpkg-deb -I "$runtime" shlibs | grep -qF "libVorn ${version%.*} $runtime_name " || fail "no shlibs"

mkdir -p "$root/var/lib/dpkg/info" "$root/var/lib/dpkg/updates"
touch "$root/var/lib/dpkg/status"
# The scripts of the packages run outside the root, which has no shell, and find another ldconfig.
mkdir "$scratch/bin"
printf '#!/bin/sh\necho called >>"%s/ldconfig"\n' "$scratch" >"$scratch/bin/ldconfig"
chmod +x "$scratch/bin/ldconfig"
in_root() {
    PATH="$scratch/bin:$PATH:/usr/sbin:/sbin" dpkg --root="$root" --force-not-root --force-depends --force-script-chrootless \
        --log="$scratch/log" "$@"
}
in_root --install "$runtime" "$development" "$debug" >"$scratch/output" 2>&1 || { cat "$scratch/output"; exit 1; }
[ -s "$scratch/ldconfig" ] || fail "ldconfig is not called"
library=$(find "$root/usr/lib" -name "libVorn.so.${version%.*}")
[ -L "$library" ] || fail "no libVorn.so.${version%.*}"
libraries=$(dirname "$library")
printers=$root/usr/share/gdb/auto-load${libraries#"$root"}/$(basename "$(readlink -f "$library")")-gdb.py
[ -f "$printers" ] || fail "no $printers"

cmake -S "$here/Consumer" -B "$scratch/build" -G Ninja "-DCMAKE_PREFIX_PATH=$root/usr" "-DVORN_VERSION=$version" >/dev/null
cmake --build "$scratch/build" >"$scratch/output" || { cat "$scratch/output"; exit 1; }
"$scratch/build/Consumer17"
"$scratch/build/Consumer20"
# shellcheck disable=SC2046
c++ -std=c++17 -DVORN_NO_SURPRISE_WARNINGS "$here/Consumer/Consumer.cpp" \
    $(PKG_CONFIG_PATH="$libraries/pkgconfig" pkg-config --cflags --libs vorn) -o "$scratch/consumer"
LD_LIBRARY_PATH="$libraries" "$scratch/consumer"

gdb -batch -nx -iex "set debug-file-directory $root/usr/lib/debug" -ex "info functions -q Vorn::String::getCString" \
    "$library" >"$scratch/gdb" 2>&1
grep -qF "File ./Source/Vorn/String.cpp" "$scratch/gdb" || { cat "$scratch/gdb"; fail "gdb finds no debug information"; }

in_root --purge "$runtime_name-dbgsym" libvorn-dev "$runtime_name" >"$scratch/output" 2>&1 || { cat "$scratch/output"; exit 1; }
left=$(find "$root" -path "$root/var/lib/dpkg" -prune -o -not -type d -print)
[ -z "$left" ] || fail "left behind: $left"
echo "the packages can be installed, used, debugged and removed"
