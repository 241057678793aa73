#!/usr/bin/env bash
# Puts python.org's Python-2.7.18.tgz (17 MB), checked by its SHA-256, into a file:
#   scripts/python27-source.sh FILE
# Debian 11's source package holds it, so it comes from the mirror that this machine's apt is set up
# with, by an apt configuration of its own: nothing of the machine's is changed, and it needs no root.
# Where there is no apt, or its mirror has no Debian 11, python.org is asked. A file that is there
# already and has the right sum is kept.

set -euo pipefail
if [[ ${1:---help} == --help ]]; then
    sed -n '2,/^$/s/^# \?//p' "$0"
    exit
fi

file=$1
sha256=da3080e3b488f648a3d7a4560ddee895284c3380b11d6de75edb986526b9a814
url=https://www.python.org/ftp/python/2.7.18/Python-2.7.18.tgz

IsWhole() { echo "$sha256  $1" | sha256sum --check --status 2>/dev/null; }

if [[ -f $file ]] && IsWhole "$file"; then
    exit
fi

work=$(mktemp -d)
trap 'rm -rf "$work" "$file.part"' EXIT
tarball=$work/Python-2.7.18.tgz

# The mirrors that apt knows; it tells them before its first update too.
Mirrors() {
    apt-get --print-uris update 2>/dev/null |
        sed -nE "s|^'(.*/)dists/[^/]*/main/binary-.*|\1|p" | grep -v security | uniq
}

# FromMirror URL: downloads Debian 11's source package from there.
FromMirror() {
    rm -rf "$work/apt"
    mkdir -p "$work"/apt/{lists/partial,cache/archives/partial,parts}
    cat >"$work/apt/parts/source.sources" <<END
Types: deb-src
URIs: $1
Suites: bullseye
Components: main
Signed-By: /usr/share/keyrings/debian-archive-keyring.gpg
END
    cat >"$work/apt/apt.conf" <<END
Dir::Etc::sourcelist "/dev/null";
Dir::Etc::sourceparts "$work/apt/parts";
Dir::State::lists "$work/apt/lists";
Dir::Cache "$work/apt/cache";
APT::Sandbox::User "$(id -un)";
END
    (cd "$work" && export APT_CONFIG=$work/apt/apt.conf && apt-get -qq update &&
        apt-get -qq source --download-only python2.7) >"$work/apt.log" 2>&1 &&
        mv "$work/python2.7_2.7.18.orig.tar.gz" "$tarball"
}

FromDebian() {
    local mirror
    for mirror in $(Mirrors); do
        if FromMirror "$mirror"; then
            return
        fi
    done
    false
}

FromPythonOrg() {
    if command -v curl >/dev/null; then
        curl -fsSL --connect-timeout 20 -o "$tarball" "$url"
    elif command -v wget >/dev/null; then
        wget -q --timeout=20 --tries=2 -O "$tarball" "$url"
    else
        false
    fi
} 2>"$work/download.log"

if ! FromDebian && ! FromPythonOrg; then
    echo "The source of CPython 2.7.18 cannot be had: neither apt's mirror nor $url answers." >&2
    exit 1
fi
if ! IsWhole "$tarball"; then
    echo "The source of CPython 2.7.18 that came is not python.org's: its SHA-256 is" \
        "$(sha256sum <"$tarball" | cut -c 1-64), not $sha256." >&2
    exit 1
fi
mkdir -p "$(dirname "$file")"
if ! cp "$tarball" "$file.part" 2>/dev/null; then
    echo "There is no room for $file (17 MB)." >&2
    exit 1
fi
mv "$file.part" "$file"
