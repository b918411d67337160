# Installs the library into a staging prefix, builds a host against it with the CMake recipe copied
# from README.md (and tests/host/project/main.cpp as its program) and runs the program under Wine.
set(stage ${BINARY_DIR}/host/stage)
set(project ${BINARY_DIR}/host/project)
set(build ${BINARY_DIR}/host/build)

include(${CMAKE_CURRENT_LIST_DIR}/../../cmake/RunChecked.cmake)

file(READ ${SOURCE_DIR}/README.md readme)
string(REGEX MATCH "```cmake\n(cmake_minimum_required[^`]*find_package\\(ZQVelisto[^`]*)```" recipe "${readme}")
if(NOT recipe)
    message(FATAL_ERROR "README.md has no host CMake recipe")
endif()
file(REMOVE_RECURSE ${project} ${build})
file(WRITE ${project}/CMakeLists.txt "${CMAKE_MATCH_1}")
file(COPY ${SOURCE_DIR}/tests/host/project/main.cpp DESTINATION ${project})

run(${CMAKE_COMMAND} --install ${BINARY_DIR} --prefix ${stage})
run(${CMAKE_COMMAND} -S ${project} -B ${build} -G ${GENERATOR}
    -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN} -DCMAKE_PREFIX_PATH=${stage} -DCMAKE_BUILD_TYPE=Release)
run(${CMAKE_COMMAND} --build ${build})
file(COPY ${stage}/bin/ZQVelisto.dll DESTINATION ${build})
run(${SOURCE_DIR}/cmake/wine-run.sh ${build}/kiosk.exe)
