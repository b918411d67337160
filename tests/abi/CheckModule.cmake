# The MSVC-ABI DLL as a Visual Studio linker sees it: MSVC-mangled class members exported, and only
# system DLLs and the universal C runtime imported (no msvcrt.dll, no MinGW or C++ runtime DLL).
# Usage: cmake -DREADOBJ=llvm-readobj -DDLL=ZQVelisto.dll -P CheckModule.cmake
execute_process(COMMAND ${READOBJ} --coff-exports --coff-imports ${DLL} OUTPUT_VARIABLE listing
    RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    message(FATAL_ERROR "${READOBJ} could not read ${DLL}")
endif()
foreach(export "?Trans@ZQSceneManager@ZQ@@QEAAXPEB_W@Z" "??0ZQString@ZQ@@QEAA@PEB_WZZ"
        "??1ZQScene@ZQ@@UEAA@XZ" "?OnEvent@_ZQResponseDialog_tag@ZQ@@UEAAXIHH@Z")
    string(FIND "${listing}" "Name: ${export}\n" at)
    if(at EQUAL -1)
        message(FATAL_ERROR "${DLL} does not export ${export}")
    endif()
endforeach()
string(REGEX MATCHALL "Name: [A-Za-z0-9_.-]+\\.dll" imports "${listing}")
string(TOLOWER "${imports}" imports)
if(NOT imports MATCHES "ucrtbase\\.dll")
    message(FATAL_ERROR "${DLL} does not import ucrtbase.dll: ${imports}")
endif()
foreach(runtime msvcrt msvcp vcruntime libstdc libgcc libwinpthread libc\\+\\+)
    if(imports MATCHES "name: ${runtime}")
        message(FATAL_ERROR "${DLL} imports a runtime it must not: ${imports}")
    endif()
endforeach()
message(STATUS "${DLL}: MSVC names exported; imports ${imports}")
