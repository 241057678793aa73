# Sourced by the other scripts: answers --help by the script's own first lines, enters the project's
# folder and puts on the machine what the script needs. A machine that has everything is done in a
# fraction of a second.

set -euo pipefail
if [[ ${1:-} == --help || ${1:-} == -h ]]; then
    sed -n '2,/^$/s/^# \?//p' "$0"
    echo
    echo "Debian packages that are missing are named and installed, as root or through sudo. Where"
    echo "there is no CPython 2.7, one is built into build/python27, once (see scripts/python27.sh)."
    exit
fi
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# A shell that was not set up for pyenv finds it all the same.
PATH=$PATH:${PYENV_ROOT:-$HOME/.pyenv}/bin

buildPackages=(cmake ninja-build g++ libgtest-dev)
fuzzPackages=(clang libclang-rt-14-dev)
checkPackages=(clang clang-format clang-tidy cppcheck)

# By which program a package is known where Debian's list of packages does not tell. What is not
# named here is found, or missed with a message, by CMake.
declare -A programs=([cmake]=cmake [ninja-build]=ninja [g++]=g++ [gcc]=gcc [make]=make [clang]=clang++
    [clang-format]=clang-format [clang-tidy]=clang-tidy [cppcheck]=cppcheck [valgrind]=valgrind
    [gcovr]=gcovr [chromium]=chromium [chromium-driver]=chromedriver [wine]=wine [parallel]=parallel
    [slurm-wlm]=slurmctld [munge]=munged [openssh-server]=sshd
    [g++-mingw-w64-x86-64-posix]=x86_64-w64-mingw32-g++-posix)

Fail() {
    echo "$*" >&2
    exit 1
}

# InstallPackages NAME...: installs those of the named Debian packages that are missing. Where it
# cannot, for want of apt or of root, it names them, and fails if their programs are missing too.
InstallPackages() {
    local package missing=() absent=() asRoot=()
    for package; do
        if [[ $(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null) != installed ]]; then
            missing+=("$package")
            if ! command -v "${programs[$package]:-true}" >/dev/null; then
                absent+=("${programs[$package]}")
            fi
        fi
    done
    if ((${#missing[@]} == 0)); then
        return
    fi
    if ((EUID != 0)); then
        asRoot=(sudo)
    fi
    if ! command -v apt-get >/dev/null || ! command -v "${asRoot[@]:-true}" >/dev/null; then
        echo "Not installed, for want of apt or root: ${missing[*]} (Debian's names)" >&2
        if ((${#absent[@]} > 0)); then
            Fail "Please install what has these programs: ${absent[*]}"
        fi
        return
    fi
    echo "Installing Debian packages: ${missing[*]}"
    "${asRoot[@]}" apt-get update -qq
    "${asRoot[@]}" apt-get install --assume-no --no-install-recommends "${missing[@]}" |
        grep -E '^(Need to get|After this operation)' || true
    "${asRoot[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -qq -y --no-install-recommends "${missing[@]}" >/dev/null ||
        Fail "apt-get could not install ${missing[*]}; its words above say why."
}

# IsPython27 PROGRAM: whether it is a whole CPython 2.7, with headers, library and zlib, that has not
# been moved since it was built.
IsPython27() {
    [[ $("$1" -c '
import os, platform, sys, sysconfig, zlib
if (platform.python_implementation() == "CPython" and sys.version_info[:2] == (2, 7)
        and os.path.exists(os.path.join(sysconfig.get_paths()["include"], "Python.h"))
        and os.path.isdir(sysconfig.get_config_var("LIBDIR"))):
    print("fit")' 2>/dev/null) == fit ]]
}

# PyenvPython: the newest Python 2.7 that pyenv has installed; nothing where there is none.
PyenvPython() {
    if command -v pyenv >/dev/null; then
        printf '%s\n' "$(pyenv root)"/versions/2.7*/bin/python2.7 | sort -V | tail -n 1
    fi
}

# FindPython2: sets PYTHON2 to the first that is fit of: itself, the project's own, pyenv's, one on
# the PATH.
FindPython2() {
    local candidate
    if [[ -n ${PYTHON2:-} ]] && ! IsPython27 "$PYTHON2"; then
        Fail "PYTHON2=$PYTHON2 is no CPython 2.7 with headers, library and zlib."
    fi
    for candidate in "${PYTHON2:-}" "$PWD/build/python27/bin/python2.7" "$(PyenvPython)" \
        python2.7 python2 /usr/bin/python2.7; do
        if [[ -n $candidate ]] && IsPython27 "$candidate"; then
            PYTHON2=$(command -v "$candidate")
            export PYTHON2
            return
        fi
    done
    return 1
}

# SetUp PACKAGE...: installs the packages and sees to a Python 2.7, building one where there is none.
# Whether there is one, or the source of one, is known before anything is installed.
SetUp() {
    if FindPython2; then
        InstallPackages "$@"
        return
    fi
    scripts/python27-source.sh build/downloads/Python-2.7.18.tgz
    InstallPackages "$@"
    scripts/python27.sh
    FindPython2 || Fail "The CPython 2.7 in build/python27 does not work."
}

# Build PRESET [TARGET...]: configures and builds.
Build() {
    local preset=$1 output
    shift
    output=$(cmake --preset "$preset" 2>&1) || Fail "$output"
    cmake --build --preset "$preset" ${1:+--target "$@"}
}
