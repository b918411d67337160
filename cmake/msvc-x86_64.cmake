# Cross-compiles for 64-bit Windows with the MSVC ABI: clang-cl and lld-link over Wine's Windows and
# universal C runtime headers and import libraries, libc++'s headers used header-only. The start-up code
# and the import libraries Debian lacks are made once by cmake/msvc/make-runtime.sh.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)

set(ZQ_LLVM_BIN /usr/lib/llvm-14/bin)
set(ZQ_WINE_INCLUDE /usr/include/wine/wine)
set(ZQ_WINE_LIB /usr/lib/x86_64-linux-gnu/wine/x86_64-windows)
set(ZQ_MSVC_RUNTIME ${CMAKE_CURRENT_LIST_DIR}/../build/msvc-runtime)
get_filename_component(ZQ_MSVC_RUNTIME ${ZQ_MSVC_RUNTIME} ABSOLUTE)

set(CMAKE_C_COMPILER ${ZQ_LLVM_BIN}/clang-cl)
set(CMAKE_CXX_COMPILER ${ZQ_LLVM_BIN}/clang-cl)
set(CMAKE_LINKER ${ZQ_LLVM_BIN}/lld-link)
set(CMAKE_AR ${ZQ_LLVM_BIN}/llvm-lib)
set(CMAKE_RC_COMPILER ${ZQ_LLVM_BIN}/llvm-rc)
set(CMAKE_MT ${ZQ_LLVM_BIN}/llvm-mt)

# Made again when its sources change.
file(GLOB ZQ_MSVC_RUNTIME_SOURCES ${CMAKE_CURRENT_LIST_DIR}/msvc/crt/* ${CMAKE_CURRENT_LIST_DIR}/msvc/make-runtime.sh)
set(ZQ_MSVC_RUNTIME_STALE FALSE)
foreach(source IN LISTS ZQ_MSVC_RUNTIME_SOURCES)
    if(${source} IS_NEWER_THAN ${ZQ_MSVC_RUNTIME}/zqcrt.lib)
        set(ZQ_MSVC_RUNTIME_STALE TRUE)
    endif()
endforeach()
if(ZQ_MSVC_RUNTIME_STALE)
    execute_process(COMMAND ${CMAKE_CURRENT_LIST_DIR}/msvc/make-runtime.sh ${ZQ_MSVC_RUNTIME}
        RESULT_VARIABLE made)
    if(NOT made EQUAL 0)
        message(FATAL_ERROR "cmake/msvc/make-runtime.sh failed")
    endif()
endif()

# Wine's winnt.h defines a function that clang treats as a builtin, and makes WCHAR wchar_t only when
# told; libc++ is used without its binary; msvc/include completes a few of Wine's headers.
file(GLOB ZQ_CLANG_INCLUDE /usr/lib/llvm-14/lib/clang/*/include)
set(ZQ_MSVC_FLAGS "--target=x86_64-pc-windows-msvc /X \
-imsvc /usr/lib/llvm-14/include/c++/v1 -imsvc ${CMAKE_CURRENT_LIST_DIR}/msvc/include \
-imsvc ${ZQ_WINE_INCLUDE}/msvcrt -imsvc ${ZQ_WINE_INCLUDE}/windows -imsvc ${ZQ_CLANG_INCLUDE} \
-D_InterlockedCompareExchange128=wine_InterlockedCompareExchange128 -DWINE_UNICODE_NATIVE \
-D_LIBCPP_NO_VCRUNTIME -D_LIBCPP_DISABLE_EXTERN_TEMPLATE -D_LIBCPP_DISABLE_VISIBILITY_ANNOTATIONS \
-D_LIBCPP_HAS_NO_THREADS")
set(CMAKE_C_FLAGS_INIT "${ZQ_MSVC_FLAGS}")
set(CMAKE_CXX_FLAGS_INIT "${ZQ_MSVC_FLAGS}")
set(CMAKE_USER_MAKE_RULES_OVERRIDE ${CMAKE_CURRENT_LIST_DIR}/msvc/flags-override.cmake)
set(CMAKE_RC_FLAGS_INIT "/I ${ZQ_WINE_INCLUDE}/windows")

# Every program and DLL gets the project's start-up, the universal C runtime and the system libraries a
# Visual Studio project links by default.
set(ZQ_MSVC_LINK "/libpath:${ZQ_MSVC_RUNTIME} /nodefaultlib")
foreach(kind EXE SHARED MODULE)
    set(CMAKE_${kind}_LINKER_FLAGS_INIT "${ZQ_MSVC_LINK}")
endforeach()
set(ZQ_MSVC_LIBRARIES "zqcrt.lib ucrtbase.lib kernel32.lib ntdll.lib user32.lib gdi32.lib shell32.lib \
ole32.lib oleaut32.lib uuid.lib advapi32.lib")
set(CMAKE_C_STANDARD_LIBRARIES "${ZQ_MSVC_LIBRARIES}" CACHE STRING "" FORCE)
set(CMAKE_CXX_STANDARD_LIBRARIES "${ZQ_MSVC_LIBRARIES}" CACHE STRING "" FORCE)

set(CMAKE_FIND_ROOT_PATH ${ZQ_WINE_LIB} ${ZQ_MSVC_RUNTIME})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)

set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/wine-run.sh)
