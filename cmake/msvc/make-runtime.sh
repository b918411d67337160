#!/usr/bin/env bash
# Makes what the MSVC-ABI toolchain links that Debian does not ship: the start-up library (zqcrt.lib),
# an import library for d3dx9_41.dll, and the Windows import libraries under the names a Visual Studio
# project uses (d3d9.lib for Wine's libd3d9.a). Usage: make-runtime.sh OUTPUT_DIR
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
out="$1"
llvm=/usr/lib/llvm-14/bin
wine_lib=/usr/lib/x86_64-linux-gnu/wine/x86_64-windows
wine_include=/usr/include/wine/wine

mkdir -p "$out/obj"
flags=(--target=x86_64-pc-windows-msvc /X /O2 /GS- /Zl /W3
    -imsvc /usr/lib/llvm-14/include/c++/v1 -imsvc "$here/include" -imsvc "$wine_include/msvcrt" -imsvc "$wine_include/windows"
    -imsvc "$(ls -d /usr/lib/llvm-14/lib/clang/*/include | head -n1)"
    -D_InterlockedCompareExchange128=wine_InterlockedCompareExchange128 -DWINE_UNICODE_NATIVE
    -D_LIBCPP_NO_VCRUNTIME -D_LIBCPP_DISABLE_EXTERN_TEMPLATE -D_LIBCPP_DISABLE_VISIBILITY_ANNOTATIONS
    -D_LIBCPP_HAS_NO_THREADS /EHs-c- /GR-)
compile() { "$llvm/clang-cl" "${flags[@]}" "$@"; }

compile /c /Fo"$out/obj/crt_common.obj" -- "$here/crt/crt_common.c"
compile /c /Fo"$out/obj/dll_start.obj" -- "$here/crt/dll_start.c"
compile /c /Fo"$out/obj/dll_main_default.obj" -- "$here/crt/dll_main_default.c"
compile /c /Fo"$out/obj/gs_support.obj" -- "$here/crt/gs_support.c"
compile /c /Fo"$out/obj/chkstk.obj" -- "$here/crt/chkstk.c"
compile /c /std:c++17 /Fo"$out/obj/new_delete.obj" -- "$here/crt/new_delete.cpp"
# One object a kind of main, so that a program pulls in only the entry it has.
for entry in 1 2 3 4; do
    compile /c -DZQ_ENTRY=$entry /Fo"$out/obj/exe_start$entry.obj" -- "$here/crt/exe_start.c"
done
"$llvm/llvm-lib" /out:"$out/zqcrt.lib" "$out"/obj/*.obj

for library in "$wine_lib"/lib*.a; do
    name="$(basename "$library" .a)"
    ln -sf "$library" "$out/${name#lib}.lib"
done

# Import libraries made from the DLLs' export lists: Wine's libd3dx9.a imports d3dx9_36, and its
# libucrtbase.a carries MinGW-style start-up objects that would compete with zqcrt.lib's.
for dll in d3dx9_41 ucrtbase; do
    {
        echo "LIBRARY $dll.dll"
        echo "EXPORTS"
        "$llvm/llvm-readobj" --coff-exports "$wine_lib/$dll.dll" | sed -n 's/^ *Name: //p'
    } >"$out/$dll.def"
    rm -f "$out/$dll.lib"
    "$llvm/llvm-dlltool" -m i386:x86-64 -d "$out/$dll.def" -l "$out/$dll.lib"
done
