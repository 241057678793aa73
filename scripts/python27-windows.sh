#!/usr/bin/env bash
# Cross-builds CPython 2.7.18 for 64-bit Windows into build/python27-windows, from python.org's
# tarball: python.exe, python27.dll, the import library, headers, the standard library without its
# tests, with _ctypes; without sockets, Unicode data and TLS. Fit for PYTHON27_WIN. Takes one to two
# minutes, once; 16 MB stay.

source "$(dirname "$0")/setup.sh"

folder=$PWD/build/python27-windows
tarball=$PWD/build/downloads/Python-2.7.18.tgz
parts=$PWD/build/python27-windows.parts

mkdir -p build
exec 9>build/python27-windows.lock
flock 9
if [[ -d $folder ]]; then
    exit
fi
scripts/python27-source.sh "$tarball"
InstallPackages g++-mingw-w64-x86-64-posix
echo "Cross-building CPython 2.7.18 into build/python27-windows, once; one to two minutes"

# All of it is made beside its place and renamed at the end.
trap 'rm -rf "$parts"' EXIT
rm -rf "$parts"
out=$parts/python
export cc=x86_64-w64-mingw32-gcc-posix

mkdir -p "$parts"/{source,core,ctypes}
tar -xzf "$tarball" -C "$parts/source" --strip-components=1
cd "$parts/source"

# Python tells Windows by Microsoft's compiler in a few places.
sed -i -E 's/^#(ifdef|ifndef) _MSC_VER/#\1 MS_WINDOWS/; s/!defined\(_MSC_VER\)/!defined(MS_WINDOWS)/
           s/^#if \(defined\(_MSC_VER\)/#if (defined(MS_WINDOWS)/' Modules/posixmodule.c
sed -i 's/<Windows.h>/<windows.h>/' Modules/signalmodule.c
sed -i 's/strcasecmp *(/py_strcasecmp(/' Python/dynload_win.c  # MinGW has one
# Its libffi returns nothing, and takes an absolute address that a library has not.
sed -i 's/^        delta =$/        delta = 0;/' Modules/_ctypes/callproc.c
sed -i 's/mov\t\$SYMBOL_NAME(ffi_closure_win64_inner), %rax/lea\tSYMBOL_NAME(ffi_closure_win64_inner)(%rip), %rax/' \
    Modules/_ctypes/libffi/src/x86/win64.S
sed 's/@TARGET@/X86_WIN64/; s/@HAVE_LONG_DOUBLE@/1/; s/@HAVE_LONG_DOUBLE_VARIANT@/0/
     s/@FFI_EXEC_TRAMPOLINE_TABLE@/0/; s/@VERSION@/3.1/' Modules/_ctypes/libffi/include/ffi.h.in > PC/ffi.h
cp Modules/_ctypes/libffi/include/ffi_common.h Modules/_ctypes/libffi/src/x86/ffitarget.h PC
cat > PC/fficonfig.h <<EOF
#ifdef LIBFFI_ASM
#define FFI_HIDDEN(name)
#else
#include <malloc.h>
#include <string.h>
#define FFI_HIDDEN
#endif
#define HAVE_MEMCPY 1
#define STDC_HEADERS 1
#define SIZEOF_DOUBLE 8
#define SIZEOF_LONG_DOUBLE 16
#define HAVE_LONG_DOUBLE 1
EOF
cat > PC/small_structs.c <<EOF
int can_return_struct_as_int(unsigned long long size) { return size == 1 || size == 2 || size == 4; }
int can_return_struct_as_sint64(unsigned long long size) { return size == 8; }
EOF
printf '#include <winver.h>\nSTRINGTABLE BEGIN 1000, "2.7" END\n' > PC/version.rc

# The sources of python27.dll are those of PCbuild/pythoncore.vcxproj.
core() {
    grep -oE 'ClCompile Include="[^"]*"' PCbuild/pythoncore.vcxproj |
        sed 's/.*="..\\//; s/"//; s/\\/\//g' | grep '\.c$'
}
Compile() { # FOLDER FILE OPTION...
    local folder=$1 file=$2
    shift 2
    $cc -c -O2 -fwrapv -fno-strict-aliasing -w -DNDEBUG -DMS_WIN64 -DWIN32 -IInclude -IPC -IPython \
        -IModules/zlib "$@" "$file" -o "$folder/$(tr / _ <<< "$file").o"
}
export -f Compile
core | xargs -P "$(nproc)" -I{} bash -c 'Compile "$0" {} -DPy_BUILD_CORE -DPy_ENABLE_SHARED' "$parts/core"
printf '%s\n' Modules/_ctypes/{_ctypes,callbacks,callproc,cfield,malloc_closure,stgdict}.c \
    Modules/_ctypes/libffi/src/{prep_cif.c,x86/ffi.c,x86/win64.S} PC/small_structs.c |
    xargs -P "$(nproc)" -I{} bash -c 'Compile "$0" {} -DX86_WIN64 -DFFI_BUILDING' "$parts/ctypes"

mkdir -p "$out"/{include,libs,DLLs}
x86_64-w64-mingw32-windres PC/version.rc "$parts/core/version.o"
$cc -shared -static -s -o "$out/python27.dll" "$parts"/core/*.o -Wl,--out-implib,"$out/libs/libpython27.a" \
    -lshell32 -ladvapi32 -luser32
$cc -static -s -O2 -DMS_WIN64 -IInclude -IPC Modules/python.c -o "$out/python.exe" "$out/libs/libpython27.a"
$cc -shared -static -s -o "$out/DLLs/_ctypes.pyd" "$parts"/ctypes/*.o "$out/libs/libpython27.a" \
    -lole32 -loleaut32 -luuid
cp Include/*.h PC/pyconfig.h "$out/include"
rm -rf Lib/test Lib/*/test Lib/*/tests Lib/idlelib Lib/lib2to3 Lib/lib-tk Lib/plat-* "$out/Lib"
cp -r Lib LICENSE "$out"
mv "$out" "$folder"
