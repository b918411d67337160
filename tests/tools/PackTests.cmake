# zqpack as an artist meets it: atlas sizes, options, manifests and the warnings about names.
# Needs the images of the texture tests in ART; works in OUT.
file(REMOVE_RECURSE ${OUT})
file(MAKE_DIRECTORY ${OUT})
set(pack ${NATIVE_BIN}/zqpack)

include(${CMAKE_CURRENT_LIST_DIR}/ToolTestSupport.cmake)

# pack(EXPECT_RESULT OUTPUT_VAR ERROR_VAR args...)
function(pack expected out err)
    run_tool(${expected} stdout stderr ${pack} ${ARGN})
    set(${out} "${stdout}" PARENT_SCOPE)
    set(${err} "${stderr}" PARENT_SCOPE)
endfunction()

# The smallest power-of-two atlas, any shape, with padding only between images.
foreach(case "chunk_c.png|64 x 64" "strip.png|4096 x 16")
    string(REPLACE "|" ";" parts "${case}")
    list(POP_BACK parts size)
    list(TRANSFORM parts PREPEND ${ART}/)
    pack(0 out err te -o ${OUT}/sized.te ${parts})
    expect_in("${err}" "in ${size}")
endforeach()

pack(0 out err --help)
expect_in("${out}" "usage: zqpack")
pack(0 out err om --help)
foreach(size 32768x32768 300x200 64x0 64x64x 99999999999x64 -64x64 +64x64 x64 64)
    pack(1 out err te --size ${size} -o ${OUT}/bad.te ${ART}/chunk_c.png)
    expect_in("${err}" "--size takes")
endforeach()

# Numbers out of range or not numbers at all: a clear error, never a crash or a silent default.
set(chunk -o ${OUT}/bad.te ${ART}/chunk_c.png)
string(JOIN " " chunk ${chunk})
expect_error_table(
    "${pack} te --padding 99999999999 ${chunk} => --padding takes a whole number from 0 to 16384, not \"99999999999\""
    "${pack} te --padding 2147483647 ${chunk} => --padding takes a whole number from 0 to 16384"
    "${pack} te --padding abc ${chunk} => --padding takes a whole number from 0 to 16384, not \"abc\""
    "${pack} te --padding -5 ${chunk} => not \"-5\""
    "${pack} te --padding 5px ${chunk} => not \"5px\""
    "${pack} te --padding 65 --size 64x64 ${chunk} => --padding 65 is wider than the atlas can be (64 pixels)"
    "${pack} te --max-size 256 --padding 300 ${chunk} => --padding 300 is wider than the atlas can be (256 pixels)"
    "${pack} te --max-size 0 ${chunk} => --max-size takes a whole number from 1 to 16384, not \"0\""
    "${pack} te --max-size 99999999999 ${chunk} => --max-size takes a whole number from 1 to 16384"
    "${pack} te --max-size 4096abc ${chunk} => not \"4096abc\""
    "${pack} te --padding => --padding needs a value")
# The bounds themselves are accepted.
pack(0 out err te --padding 0 --max-size 16384 -o ${OUT}/edge.te ${ART}/chunk_c.png)
pack(0 out err te --padding 64 --size 64x128 -o ${OUT}/edge.te ${ART}/chunk_c.png)

# Quoted names with spaces, and every warning, naming the names it is about.
file(COPY_FILE ${ART}/chunk_a.png "${OUT}/with space.png")
file(COPY ${ART}/chunk_b.png ${ART}/chunk_c.png DESTINATION ${OUT})
file(WRITE ${OUT}/manifest.txt [=[
"with space.png" "my banner" 3 4
chunk_b.png 5 6
chunk_c.png CHUNK_B
chunk_c.png 100%
chunk_c.png Crème
chunk_c.png V100%%
chunk_c.png 100%%
]=])
pack(0 out err te -o ${OUT}/named.te ${OUT}/manifest.txt)
expect_in("${err}" "origin without a name; the name is the file's, \"chunk_b\"")
expect_in("${err}" "\"CHUNK_B\" (${OUT}/chunk_c.png) differs only in case from \"chunk_b\"")
expect_in("${err}" "\"100%\" (${OUT}/chunk_c.png) holds a lone '%', kept as written but fragile")
expect_in("${err}" "\"V100%%\" (${OUT}/chunk_c.png) is registered as \"V100%\"")
expect_in("${err}" "\"100%%\" (${OUT}/chunk_c.png) is registered as the same name as \"100%\"")
expect_in("${err}" "\"Crème\" (${OUT}/chunk_c.png) is not ASCII")
expect_in("${err}" "--wide")
execute_process(COMMAND ${NATIVE_BIN}/zqinspect ${OUT}/named.te OUTPUT_VARIABLE listing)
expect_in("${listing}" "my banner")
expect_in("${listing}" "the name \"V100%%\" is registered as \"V100%\"")
expect_in("${listing}" "the name \"100%\" holds a lone '%'")
string(REGEX MATCH "chunk_b +[0-9 ]+ +[0-9. ]+ +5 6" origin "${listing}")
if(NOT origin)
    message(FATAL_ERROR "chunk_b's origin is not 5 6:\n${listing}")
endif()
pack(0 out err te --wide --quiet -o ${OUT}/quiet.te ${OUT}/manifest.txt)
if(NOT err STREQUAL "")
    message(FATAL_ERROR "--quiet still printed:\n${err}")
endif()
