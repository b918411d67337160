# zqinspect on the generated .x models: the text and binary forms read alike, long names and many
# children come through whole, broken files fail with their reason. Needs the models in MODELS.
include(${CMAKE_CURRENT_LIST_DIR}/ToolTestSupport.cmake)
set(inspect ${NATIVE_BIN}/zqinspect)

# All but the first line (name, form, size) is the same for both forms.
run_tool(0 text err ${inspect} ${MODELS}/arm.x)
run_tool(0 binary err ${inspect} ${MODELS}/arm-bin.x)
expect_in("${text}" "arm.x: .x model, text, 32-bit floats, version 0303")
expect_in("${binary}" "arm-bin.x: .x model, binary, 32-bit floats, version 0303")
foreach(form text binary)
    string(FIND "${${form}}" "\n" end)
    string(SUBSTRING "${${form}}" ${end} -1 ${form}_rest)
endforeach()
if(NOT text_rest STREQUAL binary_rest)
    message(FATAL_ERROR "the forms differ:\n${text}\n${binary}")
endif()
expect_in("${text}" "  ticks per second: 100 (declared)\n")
expect_in("${text}" "  animation set Slide: 200 ticks (2 s), 1 track\n")
expect_in("${text}" "    track Arm: 2 rotation, 2 scale, 2 position keys (from matrix keys)\n")

string(REPEAT "x" 54 xs)
run_tool(0 out err ${inspect} ${MODELS}/long-names-bin.x)
expect_in("${out}" "      Frame_${xs}; meshes: LongMesh\n")
expect_in("${out}" "    track Frame_${xs}: 0 rotation, 0 scale, 2 position keys\n")

run_tool(0 out err ${inspect} ${MODELS}/wide.x)
expect_in("${out}" "      Hub: 300 children; meshes: HubMesh\n")
expect_in("${out}" "        Child299\n")

run_tool(1 out err ${inspect} ${MODELS}/corpus/broken-face-index-bin.x)
expect_in("${out}" "malformed .x file (face 3 uses vertex 24 of 24 in Mesh 'BoxMesh')")
run_tool(1 out err ${inspect} ${MODELS}/corpus/broken-compressed.x)
expect_in("${out}" "compressed .x file")
