# Makes the 3D tests' .x models and their textures with the native tools, and a seed corpus for the
# .x fuzzer: the models and broken variants of them.
file(REMOVE_RECURSE ${DATA})
file(MAKE_DIRECTORY ${DATA})

include(${CMAKE_CURRENT_LIST_DIR}/../../cmake/RunChecked.cmake)

run(${NATIVE_BIN}/make_test_models ${DATA})
