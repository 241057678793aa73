#!/usr/bin/env bash
# Builds CPython 2.7.18 into build/python27, from python.org's tarball: a shared library, headers,
# the standard library without its tests, with zlib, struct, array, json and ctypes. Takes 2 to 3
# minutes and 0.5 GB while it builds; 60 MB stay. The other scripts run it where they find no Python
# 2.7. An interpreter that is there and works is kept.

source "$(dirname "$0")/setup.sh"

folder=$PWD/build/python27
tarball=build/downloads/Python-2.7.18.tgz
log=build/python27.log
parts=build/python27.parts

# Who comes second waits, and finds the work done.
mkdir -p build
exec 9>build/python27.lock
flock 9
if IsPython27 "$folder/bin/python2.7"; then
    exit
fi

scripts/python27-source.sh "$tarball"
InstallPackages make gcc libc6-dev zlib1g-dev
if (($(df --output=avail -m build | tail -n 1) < 500)); then
    Fail "Building CPython 2.7.18 takes 500 MB in $PWD/build, which has" \
        "$(df --output=avail -m build | tail -n 1) MB."
fi

# All of it is made beside its place and renamed when it has been tried.
trap 'rm -rf "$parts"' EXIT
rm -rf "$parts"
mkdir -p "$parts/source"
tar -xzf "$tarball" -C "$parts/source" --strip-components=1
rm -rf "$parts"/source/Lib/test "$parts"/source/Lib/*/{test,tests}

Make() {
    # $ORIGIN, as make and the shell that it starts hand it on: the program's own folder.
    cd "$parts/source" &&
        ./configure --enable-shared --prefix="$folder" LDFLAGS='-Wl,-rpath,\$$ORIGIN/../lib' &&
        make -j "$(nproc)" &&
        make altinstall DESTDIR="$OLDPWD/$parts/stage"
}

echo "Building CPython 2.7.18 into build/python27, once; 2 to 3 minutes"
if ! (Make) >"$log" 2>&1; then
    tail -n 3 "$log" >&2
    Fail "CPython 2.7.18 could not be built; $PWD/$log says all."
fi
staged=$parts/stage$folder
"$staged/bin/python2.7" -c 'import array, ctypes, json, struct, zlib' ||
    Fail "The CPython 2.7.18 that was built lacks a module; $PWD/$log says why."
rm -rf "$folder"
mv "$staged" "$folder"
