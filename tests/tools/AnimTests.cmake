# zqanim (and zqinspect on its files) as an artist meets it: manifests, warnings, print and preview.
# Needs the images of the texture tests in ART; works in OUT.
file(REMOVE_RECURSE ${OUT})
file(MAKE_DIRECTORY ${OUT})
include(${CMAKE_CURRENT_LIST_DIR}/ToolTestSupport.cmake)
set(anim ${NATIVE_BIN}/zqanim)
set(inspect ${NATIVE_BIN}/zqinspect)

# quad: red top-left, green top-right, blue bottom-left, white bottom-right, 32 pixels a side.
run_tool(0 out err ${NATIVE_BIN}/zqpack te --quiet -o ${OUT}/sprites.te ${ART}/quad.png ${ART}/chunk_c.png)

# Mirrored placements (right left of left, bottom above top) are drawn mirrored, as the player draws them.
file(WRITE ${OUT}/flip.txt [=[
atlas sprites.te
scene flip
frame quad 1
frame quad 1 place 32 0 0 32
frame quad 1 place 0 32 32 0
]=])
run_tool(0 out err ${anim} am -o ${OUT}/flip.am ${OUT}/flip.txt)
run_tool(0 out err ${anim} print ${OUT}/flip.am)
expect_in("${out}" "scene flip: 3 frames declared, 3 present")
expect_in("${out}" "place 32 0 0 32  colour FFFFFFFF  (mirrored)")
run_tool(0 out err ${anim} preview --atlas ${OUT}/sprites.te -o ${OUT}/previews ${OUT}/flip.am)
expect_in("${out}" "flip: 3 frames -> ${OUT}/previews/flip.am-flip.png")
# Each frame's cell is 40 pixels wide; its chunk's top-left corner lands 4 pixels in.
set(red "255 0 0 255")
set(green "0 255 0 255")
set(blue "0 0 255 255")
foreach(case "6 6|${red}|as it is" "46 6|${green}|left and right swapped" "72 6|${red}|left and right swapped"
        "86 6|${blue}|upside down" "86 34|${red}|upside down")
    string(REPLACE "|" ";" parts "${case}")
    list(GET parts 0 at)
    list(GET parts 1 wanted)
    list(GET parts 2 how)
    separate_arguments(at)
    run_tool(0 pixel err ${NATIVE_BIN}/png_pixel ${OUT}/previews/flip.am-flip.png ${at})
    string(STRIP "${pixel}" pixel)
    if(NOT pixel STREQUAL wanted)
        message(FATAL_ERROR "preview pixel ${at} of the frame drawn ${how}: ${pixel}, expected ${wanted}")
    endif()
endforeach()

# Manifest mistakes are errors naming their line; bad options and missing atlases too.
file(WRITE ${OUT}/typo.txt "path p 4\nkey 0 0 0\nkey 1 1 1 tensoin 0.5\n")
file(WRITE ${OUT}/late_z.txt "path p 4\nkey 0 0 0 tension 0.5 3\n")
file(WRITE ${OUT}/lost_atlas.txt "atlas nowhere.te\nscene s\nframe quad 1 place 0 0 1 1\n")
set(flip -o ${OUT}/x.am ${OUT}/flip.txt)
string(JOIN " " flip ${flip})
expect_error_table(
    "${anim} spl --words 1 2 -o ${OUT}/x.spl ${OUT}/typo.txt => typo.txt:3: unknown key field tensoin"
    "${anim} spl --words 1 2 -o ${OUT}/x.spl ${OUT}/late_z.txt => late_z.txt:2: unknown key field 3"
    "${anim} spl --words abc 1 -o ${OUT}/x.spl ${OUT}/typo.txt => --words takes a whole number from 0 to 65535 (decimal or 0x hexadecimal), not \"abc\""
    "${anim} spl --words 1 -1 -o ${OUT}/x.spl ${OUT}/typo.txt => not \"-1\""
    "${anim} spl --words 0x10000 1 -o ${OUT}/x.spl ${OUT}/typo.txt => not \"0x10000\""
    "${anim} spl --words 1 65536 -o ${OUT}/x.spl ${OUT}/typo.txt => not \"65536\""
    "${anim} spl --words 1 2x -o ${OUT}/x.spl ${OUT}/typo.txt => not \"2x\""
    "${anim} am --atlas ${OUT}/nowhere.te ${flip} => --atlas: cannot read ${OUT}/nowhere.te"
    "${anim} preview --atlas ${OUT}/nowhere.te ${OUT}/flip.am => --atlas: cannot read"
    "${anim} am -o ${OUT}/x.am ${OUT}/lost_atlas.txt => cannot read the atlas ${OUT}/nowhere.te")

# Z right after Y; hexadecimal words.
file(WRITE ${OUT}/z.txt "path p 4\nkey 0 1 2 3 tension 0.5\n")
run_tool(0 out err ${anim} spl --words 0x5A51 1 -o ${OUT}/z.spl ${OUT}/z.txt)
run_tool(0 out err ${anim} print ${OUT}/z.spl)
expect_in("${out}" "words 23121 1")
expect_in("${out}" "position 1 2 3  tension 0.5")

# Warnings about what the library would register or find otherwise than written.
file(WRITE ${OUT}/names.txt [=[
atlas sprites.te
scene café
frame quad 1
scene V100%%
frame quad 1
scene 50%d
frame quad 1
scene Blink
frame quad 1
scene blink
frame nothing 1 place 0 0 8 8
path Swoop 1
key 0 0 0
path swoop 1
key 0 0 0
path P%% 1
key 0 0 0
]=])
run_tool(0 out narrow ${anim} am -o ${OUT}/names.am ${OUT}/names.txt)
run_tool(0 out wide ${anim} am --wide -o ${OUT}/names_wide.am ${OUT}/names.txt)
run_tool(0 out paths ${anim} spl --words 1 2 -o ${OUT}/names.spl ${OUT}/names.txt)
run_tool(0 out misnamed ${anim} am -o ${OUT}/names.txt.out ${OUT}/names.txt)
run_tool(0 out misnamed_ta ${anim} ta -o ${OUT}/names.am.ta ${OUT}/names.txt)
foreach(case
        "narrow|names.txt:2: scene name \"café\" is not ASCII: the library reads single-byte names in the ANSI code page"
        "narrow|use --wide (or ta) for UTF-16 names"
        "narrow|names.txt:4: scene name \"V100%%\" is registered as \"V100%\""
        "narrow|names.txt:6: scene name \"50%d\" holds a lone '%', kept as written but fragile"
        "narrow|names.txt:10: scene name \"blink\" differs only in case from \"Blink\" (line 8)"
        "narrow|names.txt:11: the atlas ${OUT}/sprites.te has no chunk \"nothing\""
        "wide|scene name \"V100%%\" is registered as \"V100%\""
        "paths|names.txt:14: path name \"swoop\" differs only in case from \"Swoop\" (line 12)"
        "paths|names.txt:16: path name \"P%%\" is registered as \"P%\""
        "misnamed|names.txt.out: the library reads a file as .AM only when its name holds \".AM\""
        "misnamed_ta|names.am.ta: the library reads a file as .TA only when its name holds \".TA\" (in any case), and this name makes it another kind")
    string(FIND "${case}" "|" bar)
    string(SUBSTRING "${case}" 0 ${bar} stream)
    math(EXPR bar "${bar} + 1")
    string(SUBSTRING "${case}" ${bar} -1 wanted)
    expect_in("${${stream}}" "${wanted}")
endforeach()
expect_not_in("${wide}" "not ASCII")
expect_not_in("${paths}" "scene")
run_tool(0 out err ${anim} am -o ${OUT}/flip_again.am ${OUT}/flip.txt)
if(NOT err STREQUAL "")
    message(FATAL_ERROR "a clean manifest warned:\n${err}")
endif()
run_tool(0 out err ${anim} print ${OUT}/names.am)
expect_in("${out}" "scene V100%% (the name is registered as \"V100%\"")
run_tool(0 out err ${inspect} ${OUT}/names.spl)
expect_in("${out}" "path P%% (the name is registered as \"P%\"")

# The library's lists stop at 10,240 entries: a longer scene or path is cut there.
foreach(count 10240 10241)
    string(REPEAT "frame quad 0.1 place 0 0 1 1\n" ${count} frames)
    string(REPEAT "key 0 0 0\n" ${count} keys)
    file(WRITE ${OUT}/long${count}.txt "scene long\n${frames}path long 1\n${keys}")
    run_tool(0 out written_am ${anim} am -o ${OUT}/long${count}.am ${OUT}/long${count}.txt)
    run_tool(0 out written_spl ${anim} spl --words 1 2 -o ${OUT}/long${count}.spl ${OUT}/long${count}.txt)
    run_tool(0 printed err ${anim} print ${OUT}/long${count}.am ${OUT}/long${count}.spl)
    run_tool(0 inspected err ${inspect} ${OUT}/long${count}.am ${OUT}/long${count}.spl)
    if(count EQUAL 10240)
        foreach(text printed inspected)
            expect_in("${${text}}" "scene long: 10240 frames declared, 10240 present\n")
            expect_in("${${text}}" "path long: total time 1, 10240 keys declared, 10240 present\n")
        endforeach()
        expect_not_in("${written_am}${written_spl}" "the library keeps")
    else()
        foreach(text printed inspected)
            expect_in("${${text}}" "scene long: 10241 frames declared, the library keeps 10240\n")
            expect_in("${${text}}" "path long: total time 1, 10241 keys declared, the library keeps 10240\n")
        endforeach()
        expect_in("${written_am}" "long10241.txt:1: scene \"long\": 10241 frames declared, the library keeps 10240")
        expect_in("${written_spl}" "path \"long\": 10241 keys declared, the library keeps 10240")
    endif()
endforeach()
