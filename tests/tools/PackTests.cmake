# zqpack as an artist meets it: atlas sizes, options, manifests and the warnings about names.
# Needs the images of the texture tests in ART; works in OUT.
file(REMOVE_RECURSE ${OUT})
file(MAKE_DIRECTORY ${OUT})
set(pack ${NATIVE_BIN}/zqpack)

# pack(EXPECT_RESULT OUTPUT_VAR ERROR_VAR args...)
function(pack expected out err)
    execute_process(COMMAND ${pack} ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE stdout ERROR_VARIABLE stderr)
    if(NOT result EQUAL expected)
        message(FATAL_ERROR "zqpack ${ARGN}: exit ${result}, expected ${expected}\n${stderr}")
    endif()
    set(${out} "${stdout}" PARENT_SCOPE)
    set(${err} "${stderr}" PARENT_SCOPE)
endfunction()

function(expect_in text wanted)
    string(FIND "${text}" "${wanted}" at)
    if(at EQUAL -1)
        message(FATAL_ERROR "expected \"${wanted}\" in:\n${text}")
    endif()
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
foreach(size 32768x32768 300x200 64x0 64x64x)
    pack(1 out err te --size ${size} -o ${OUT}/bad.te ${ART}/chunk_c.png)
    expect_in("${err}" "--size takes")
endforeach()

# Quoted names with spaces, and every warning, naming the names it is about.
file(COPY_FILE ${ART}/chunk_a.png "${OUT}/with space.png")
file(COPY ${ART}/chunk_b.png ${ART}/chunk_c.png DESTINATION ${OUT})
file(WRITE ${OUT}/manifest.txt [=[
"with space.png" "my banner" 3 4
chunk_b.png 5 6
chunk_c.png CHUNK_B
chunk_c.png 100%
chunk_c.png Crème
]=])
pack(0 out err te -o ${OUT}/named.te ${OUT}/manifest.txt)
expect_in("${err}" "origin without a name; the name is the file's, \"chunk_b\"")
expect_in("${err}" "\"CHUNK_B\" (${OUT}/chunk_c.png) differs only in case from \"chunk_b\"")
expect_in("${err}" "\"100%\"")
expect_in("${err}" "\"Crème\" (${OUT}/chunk_c.png) is not ASCII")
expect_in("${err}" "--wide")
execute_process(COMMAND ${NATIVE_BIN}/zqinspect ${OUT}/named.te OUTPUT_VARIABLE listing)
expect_in("${listing}" "my banner")
string(REGEX MATCH "chunk_b +[0-9 ]+ +[0-9. ]+ +5 6" origin "${listing}")
if(NOT origin)
    message(FATAL_ERROR "chunk_b's origin is not 5 6:\n${listing}")
endif()
pack(0 out err te --wide --quiet -o ${OUT}/quiet.te ${OUT}/manifest.txt)
if(NOT err STREQUAL "")
    message(FATAL_ERROR "--quiet still printed:\n${err}")
endif()
