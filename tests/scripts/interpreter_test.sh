#!/usr/bin/env bash
# How the scripts find, refuse or build a Python 2.7, in a folder and with programs of their own:
# nothing is downloaded or installed. Takes the project's folder.

set -euo pipefail
project=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkdir -p "$folder/fakes" "$folder/build"
cp -r "$project/scripts" "$folder"
printf '#!/usr/bin/env bash\nsource "$(dirname "$0")/setup.sh"\nSetUp g++ no-such-package\necho "$PYTHON2"\n' \
    >"$folder/scripts/try.sh"
chmod +x "$folder/scripts/try.sh"

# Fake NAME: a program, its text from the standard input, that comes before the system's.
Fake() { cat >"$folder/fakes/$1" && chmod +x "$folder/fakes/$1"; }

# Expect CASE STATUS TEXT COMMAND...: the command ends so and says so, and leaves nothing in build/
# but what it keeps: locks and logs.
failures=0
Expect() {
    local case=$1 status=$2 text=$3 said got=0 left
    shift 3
    said=$(cd "$folder" && env -i HOME="$folder" PATH="$folder/fakes:/usr/sbin:/usr/bin:/sbin:/bin" \
        "$@" 2>&1) || got=$?
    left=$(find "$folder/build" -mindepth 1 ! -name '*.lock' ! -name '*.log' ! -path '*/downloads*' | head -n 3)
    if ((got != status)) || [[ $said != *"$text"* ]] || [[ -n $left ]]; then
        printf '%s: status %s, left "%s", said:\n%s\n' "$case" "$got" "$left" "$said" >&2
        failures=$((failures + 1))
    fi
}

# The fakes hide any Python 2.7 of the machine, and tell if something is to be installed.
for name in python2.7 python2; do
    Fake $name <<<$'#!/bin/sh\nexit 1'
done
Fake apt-get <<<"#!/bin/sh
case \"\$*\" in *install*) touch $folder/installed ;; esac
exit 100"
Fake curl <<<$'#!/bin/sh\nexit 6'
Expect "no network" 1 "The source of CPython 2.7.18 cannot be had" scripts/try.sh
Expect "an interpreter that is none" 1 "PYTHON2=/bin/true is no CPython 2.7" \
    env PYTHON2=/bin/true scripts/try.sh

# curl ... -o FILE URL
Fake curl <<<$'#!/bin/sh\nwhile [ "$1" != -o ]; do shift; done\necho something else >"$2"'
Expect "a wrong tarball" 1 "is not python.org's: its SHA-256 is" scripts/try.sh
if [[ -e $folder/installed ]]; then
    echo "Something was to be installed although there is no Python." >&2
    failures=$((failures + 1))
fi

# From here on the source counts as right and holds no Python.
Fake sha256sum <<<$'#!/bin/sh\ncat >/dev/null'
Fake dpkg-query <<<$'#!/bin/sh\nprintf installed'
mkdir -p "$folder/python/nothing"
tar -czf "$folder/python.tgz" -C "$folder" python
Fake curl <<<"#!/bin/sh
while [ \"\$1\" != -o ]; do shift; done
cp $folder/python.tgz \"\$2\""
Expect "a build that fails" 1 "CPython 2.7.18 could not be built" scripts/try.sh
Fake df <<<$'#!/bin/sh\nprintf "Avail\\n3\\n"'
Expect "no room" 1 "which has 3 MB" scripts/try.sh

# What was left half built is not taken for a Python.
mkdir -p "$folder/build/python27/bin"
printf '#!/bin/sh\nexit 127\n' >"$folder/build/python27/bin/python2.7"
chmod +x "$folder/build/python27/bin/python2.7"
said=$(cd "$folder" && env -i HOME="$folder" PATH="$folder/fakes:/usr/bin:/bin" scripts/try.sh 2>&1) || true
if [[ $said != *"which has 3 MB"* ]]; then
    printf 'a half-built interpreter was taken: %s\n' "$said" >&2
    failures=$((failures + 1))
fi
rm -rf "$folder/build/python27"

# Without apt the scripts name what is missing, and go on if its programs are there.
mkdir "$folder/few"
for name in bash dirname env sed; do
    ln -s "$(command -v $name)" "$folder/few/$name"
done
printf 'source "$(dirname "$0")/setup.sh"\nInstallPackages g++ libgtest-dev\n' >"$folder/scripts/try.sh"
for wanted in 1 0; do
    Expect "without apt" "$wanted" "want of apt or root: g++ libgtest-dev" \
        env PATH="$folder/few" "$folder/few/bash" scripts/try.sh
    ln -sf /bin/true "$folder/few/g++"
done
exit $((failures > 0))
