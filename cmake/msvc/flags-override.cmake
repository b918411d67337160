# Loaded after CMake's own MSVC flags: no C++ exceptions, RTTI or run-time checks, which would need
# Visual C++'s runtime library; stack cookies (/GS), which the project's start-up library supports.
# Loaded again by every check CMake compiles.
foreach(language C CXX)
    string(REGEX REPLACE "(^| )(/EHsc|/EHs-c-|/GR-?|/GS-)( |$)" " " flags "${CMAKE_${language}_FLAGS_INIT}")
    set(CMAKE_${language}_FLAGS_INIT "${flags} /EHs-c- /GR- /GS")
    string(REPLACE "/RTC1" "" CMAKE_${language}_FLAGS_DEBUG_INIT "${CMAKE_${language}_FLAGS_DEBUG_INIT}")
endforeach()
