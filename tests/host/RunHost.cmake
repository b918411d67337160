# Installs the library into a staging prefix, builds tests/host/project against it with
# find_package(ZQVelisto) and runs the program under Wine.
set(stage ${BINARY_DIR}/host/stage)
set(build ${BINARY_DIR}/host/build)

include(${CMAKE_CURRENT_LIST_DIR}/../../cmake/RunChecked.cmake)

run(${CMAKE_COMMAND} --install ${BINARY_DIR} --prefix ${stage})
run(${CMAKE_COMMAND} -S ${SOURCE_DIR}/tests/host/project -B ${build} -G ${GENERATOR}
    -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN} -DCMAKE_PREFIX_PATH=${stage} -DCMAKE_BUILD_TYPE=Release)
run(${CMAKE_COMMAND} --build ${build})
file(COPY ${stage}/bin/ZQVelisto.dll DESTINATION ${build})
run(${SOURCE_DIR}/cmake/wine-run.sh ${build}/host.exe)
