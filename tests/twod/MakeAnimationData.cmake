# Makes the animation tests' files with zqanim, from the drawing tests' atlas (sprites.te), and seeds
# for the animation fuzzer.
include(${CMAKE_CURRENT_LIST_DIR}/../../cmake/RunChecked.cmake)

file(REMOVE_RECURSE ${DATA}/anim ${DATA}/anim_corpus)
file(MAKE_DIRECTORY ${DATA}/anim ${DATA}/anim_corpus)
set(anim ${NATIVE_BIN}/zqanim)
file(COPY_FILE ${DATA}/sprites.te ${DATA}/anim/sprites.te)
# blink: two frames. move: anchor (10, 0) to end anchor (14, 0). ghost: a chunk the atlas lacks, then
# quad. tinted: colour 0x80FF0000. empty: no frames. A second blink: lookups find the first.
file(WRITE ${DATA}/anim/anim.txt [=[
atlas sprites.te
scene blink
frame quad 0.1
frame centred 0.1 place 2 4 34 36
scene move
frame quad 0.1 anchor 10 0 end 14 0
scene ghost
frame nothing 0.1 place 0 0 32 32
frame quad 0.1
scene tinted
frame quad 1 colour 80FF0000
scene empty
scene blink
frame quad 5
]=])
run(${anim} am -o ${DATA}/anim/narrow.am ${DATA}/anim/anim.txt)
run(${anim} am --wide -o ${DATA}/anim/wide.am ${DATA}/anim/anim.txt)
run(${anim} ta -o ${DATA}/anim/frames.ta ${DATA}/anim/anim.txt)
file(WRITE ${DATA}/anim/paths.txt [=[
path arc 4
key 0 0 0
key 1 10 0
key 2 20 10
key 3 30 30 tension 0.5 continuity 0.25 bias -0.5
path three 2
key 0 0 0
key 1 1 1
key 2 2 2
]=])
run(${anim} spl --words 7 2 -o ${DATA}/anim/paths.spl ${DATA}/anim/paths.txt)
# Names are format text: "%%" is registered as "%", other conversions as written.
file(WRITE ${DATA}/anim/percent.txt "atlas sprites.te\nscene V100%%\nframe quad 0.1\nscene a%sb\nframe quad 0.1\n")
run(${anim} am -o ${DATA}/anim/percent.am ${DATA}/anim/percent.txt)
run(${anim} am --wide -o ${DATA}/anim/percent-wide.am ${DATA}/anim/percent.txt)
file(WRITE ${DATA}/anim/percent-paths.txt "path V100%% 4\nkey 0 0 0\nkey 1 1 0\nkey 2 2 0\nkey 3 3 0\n"
    "path a%sb 4\nkey 0 0 0\nkey 1 1 0\nkey 2 2 0\nkey 3 3 0\n")
run(${anim} spl --words 7 2 -o ${DATA}/anim/percent.spl ${DATA}/anim/percent-paths.txt)
run(${anim} spl --words 2 7 -o ${DATA}/anim/swapped.spl ${DATA}/anim/paths.txt)
file(COPY ${DATA}/anim/narrow.am ${DATA}/anim/wide.am ${DATA}/anim/frames.ta ${DATA}/anim/paths.spl
    DESTINATION ${DATA}/anim_corpus)
