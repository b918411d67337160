# Makes this build's release package with CPack, unpacks it into a fresh folder and builds the sample it
# carries twice, with the toolchain of the package's ABI: with the CMake recipe copied from README.md, and
# with the sample's own project. Each runs headless under Wine and must draw its coin with nothing to say.
set(work ${BINARY_DIR}/host)
set(unpacked ${work}/unpacked)
set(project ${work}/project)
set(build ${work}/build)

include(${CMAKE_CURRENT_LIST_DIR}/../../cmake/RunChecked.cmake)

file(READ ${SOURCE_DIR}/README.md readme)
string(REGEX MATCH "```cmake\n(cmake_minimum_required[^`]*find_package\\(ZQVelisto[^`]*)```" recipe "${readme}")
if(NOT recipe)
    message(FATAL_ERROR "README.md has no host CMake recipe")
endif()
file(REMOVE_RECURSE ${work})
file(WRITE ${project}/CMakeLists.txt "${CMAKE_MATCH_1}")

function(run_sample exe)
    execute_process(COMMAND ${SOURCE_DIR}/cmake/wine-run.sh ${exe} -windowed -constantframetime:0.05
            -quitafterframe:20 -noerrormsgboxes
        RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
    message(STATUS "${exe}: ${output}")
    if(NOT result EQUAL 0 OR NOT output MATCHES "ZQVelisto [0-9.]+: the sample ran [0-9]+ frames and drew its coin"
       OR output MATCHES "message:")
        message(FATAL_ERROR "${exe} failed (${result}): ${output}${errors}")
    endif()
endfunction()

file(REMOVE_RECURSE ${BINARY_DIR}/package)
run(${CMAKE_COMMAND} -E chdir ${BINARY_DIR} cpack)
file(GLOB zips ${BINARY_DIR}/package/ZQVelisto-*-win64-*.zip)
list(LENGTH zips count)
if(NOT count EQUAL 1)
    message(FATAL_ERROR "expected one package, found: ${zips}")
endif()
file(MAKE_DIRECTORY ${unpacked})
run(${CMAKE_COMMAND} -E chdir ${unpacked} ${CMAKE_COMMAND} -E tar xf ${zips})
file(GLOB package ${unpacked}/ZQVelisto-*)
message(STATUS "unpacked ${package}")
foreach(part bin/ZQVelisto.dll include/ZQVelisto.h include/ZQ/core/ZQVersion.h LICENSE
        bin/zqpack.exe bin/zqinspect.exe bin/zqanim.exe share/doc/ZQVelisto/getting-started.md)
    if(NOT EXISTS ${package}/${part})
        message(FATAL_ERROR "the package has no ${part}")
    endif()
endforeach()

file(COPY ${package}/sample/main.cpp DESTINATION ${project})
run(${CMAKE_COMMAND} -S ${project} -B ${build} -G ${GENERATOR}
    -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN} -DCMAKE_PREFIX_PATH=${package} -DCMAKE_BUILD_TYPE=Release)
run(${CMAKE_COMMAND} --build ${build})
file(COPY ${package}/bin/ZQVelisto.dll ${package}/sample/kiosk.te ${package}/sample/click.wav DESTINATION ${build})
run_sample(${build}/kiosk.exe)

# The package's own sample, built from the unpacked folder alone (its project finds the package it sits
# in) and run headless: it must draw its coin and have nothing to say about missing files.
set(sample_build ${work}/sample-build)
run(${CMAKE_COMMAND} -S ${package}/sample -B ${sample_build} -G ${GENERATOR}
    -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN} -DCMAKE_BUILD_TYPE=Release)
run(${CMAKE_COMMAND} --build ${sample_build})
run_sample(${sample_build}/bin/sample.exe)
