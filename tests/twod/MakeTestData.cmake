# Makes the texture tests' files with the native tools: images, then ".TE" and ".OM" files from them,
# and a seed corpus for the fuzzer.
file(REMOVE_RECURSE ${DATA})
file(MAKE_DIRECTORY ${DATA} ${DATA}/corpus)

include(${CMAKE_CURRENT_LIST_DIR}/../../cmake/RunChecked.cmake)

run(${NATIVE_BIN}/make_test_art ${DATA})
set(pack ${NATIVE_BIN}/zqpack)
# chunk_c (64 x 64) goes first and chunk_b (32 x 16) beside it at x 64: no padding, a fixed size.
run(${pack} te --quiet --padding 0 --size 256x128 -o ${DATA}/atlas.te ${DATA}/chunk_c.png ${DATA}/chunk_b.png)
run(${pack} te --quiet --wide --center -o ${DATA}/wide.te ${DATA}/chunk_a.png ${DATA}/chunk_c.png)
run(${pack} om --quiet -o ${DATA}/pics.om ${DATA}/chunk_a.png ${DATA}/chunk_b.png ${DATA}/chunk_c.png)
run(${pack} om --quiet --v1 --center -o ${DATA}/first.om ${DATA}/chunk_c.png ${DATA}/chunk_a.png)
file(WRITE ${DATA}/manifest.txt "chunk_a.png Banner 10 5\nchunk_c.png Coin\n")
run(${pack} om --quiet -o ${DATA}/named.om ${DATA}/manifest.txt)
# The drawing tests' atlas: the quadrant image second (so it draws from the shared texture), once with
# its origin at its middle.
file(WRITE ${DATA}/sprites.txt "chunk_c.png\nquad.png\nquad.png centred 16 16\n")
run(${pack} te --quiet -o ${DATA}/sprites.te ${DATA}/sprites.txt)
# Names are format text: "%%" is registered as "%", other conversions as written.
file(WRITE ${DATA}/percent.txt "chunk_a.png V100%%\nchunk_b.png a%sb\nchunk_c.png 50%\n")
run(${pack} te --quiet -o ${DATA}/percent.te ${DATA}/percent.txt)
run(${pack} te --quiet --wide -o ${DATA}/percent-wide.te ${DATA}/percent.txt)
run(${pack} om --quiet -o ${DATA}/percent.om ${DATA}/percent.txt)
# Names that fool an extension test: an ".OM" file whose name also holds ".TE", and the other way round.
file(COPY_FILE ${DATA}/pics.om ${DATA}/pics.te.om)
file(COPY_FILE ${DATA}/atlas.te ${DATA}/atlas.om.te)
# A font file that Debian ships (fonts-dejavu-core), for the font tests.
file(COPY_FILE /usr/share/fonts/truetype/dejavu/DejaVuSans.ttf ${DATA}/DejaVuSans.ttf)
file(COPY ${DATA}/atlas.te ${DATA}/wide.te ${DATA}/pics.om ${DATA}/first.om DESTINATION ${DATA}/corpus)
