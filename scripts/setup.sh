# Sourced by the other scripts: puts on the machine what they need, and enters the project's folder.
# A machine that has everything is done in a fraction of a second.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# A pyenv in its usual place counts although the shell was not told of it.
PATH=$PATH:${PYENV_ROOT:-$HOME/.pyenv}/bin

buildPackages=(cmake ninja-build g++ libgtest-dev)
fuzzPackages=(clang libclang-rt-14-dev)
checkPackages=(clang clang-format clang-tidy cppcheck)

Fail() {
    echo "$*" >&2
    exit 1
}

# InstallPackages NAME...: installs those of the named Debian packages that are missing.
InstallPackages() {
    local package missing=() asRoot=()
    if ! command -v dpkg-query >/dev/null; then
        echo "Not a Debian machine: please see to it that it has what Debian calls $*." >&2
        return
    fi
    for package; do
        if [[ $(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null) != installed ]]; then
            missing+=("$package")
        fi
    done
    if ((${#missing[@]} == 0)); then
        return
    fi
    echo "Installing ${missing[*]}"
    if ((EUID != 0)); then
        command -v sudo >/dev/null || Fail "Run as root: apt-get install ${missing[*]}"
        asRoot=(sudo)
    fi
    "${asRoot[@]}" apt-get update -qq
    "${asRoot[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -qq -y --no-install-recommends "${missing[@]}" >/dev/null
}

# IsPython27 PROGRAM: whether it is a CPython 2.7 with its headers and zlib.
IsPython27() {
    "$1" -c '
import os, platform, sys, sysconfig, zlib
header = os.path.join(sysconfig.get_paths()["include"], "Python.h")
sys.exit(platform.python_implementation() != "CPython" or sys.version_info[:2] != (2, 7)
         or not os.path.exists(header))' >/dev/null 2>&1
}

# PyenvPython: the newest Python 2.7 that pyenv has installed; nothing where there is none.
PyenvPython() {
    if command -v pyenv >/dev/null; then
        printf '%s\n' "$(pyenv root)"/versions/2.7*/bin/python2.7 | sort -V | tail -n 1
    fi
}

# FindPython2: sets PYTHON2 to the first that is fit of: itself, pyenv's, one on the PATH.
FindPython2() {
    local candidate
    for candidate in "${PYTHON2:-}" "$(PyenvPython)" python2.7 python2 /usr/bin/python2.7; do
        if [[ -n $candidate ]] && IsPython27 "$candidate"; then
            PYTHON2=$(command -v "$candidate")
            export PYTHON2
            return
        fi
        if [[ -n $candidate && $candidate == "${PYTHON2:-}" ]]; then
            Fail "PYTHON2=$PYTHON2 is no CPython 2.7 with headers and zlib."
        fi
    done
    return 1
}

# NeedPython2: as FindPython2, installing Python 2.7 where there is a way to.
NeedPython2() {
    if FindPython2; then
        return
    fi
    if apt-cache show python2.7-dev >/dev/null 2>&1; then
        InstallPackages python2.7-dev
    elif command -v pyenv >/dev/null; then
        InstallPackages make gcc libc6-dev zlib1g-dev
        PYTHON_CONFIGURE_OPTS=--enable-shared pyenv install --skip-existing 2.7.18 ||
            Fail "pyenv could not install Python 2.7.18; its output above says why."
    fi
    FindPython2 || Fail "There is no Python 2.7 here, and neither a Debian package nor pyenv to \
install it with.
Build CPython 2.7.18 (./configure --enable-shared && make install), or install pyenv
(https://github.com/pyenv/pyenv), then run this script again, with PYTHON2=/path/to/python2.7
where it is not on the PATH."
}

# Build PRESET [TARGET...]: configures and builds.
Build() {
    local preset=$1 output
    shift
    output=$(cmake --preset "$preset" 2>&1) || Fail "$output"
    cmake --build --preset "$preset" ${1:+--target "$@"}
}
