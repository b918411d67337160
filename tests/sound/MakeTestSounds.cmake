# Makes the sound tests' files with sox and lame: tones as waves, and a 22,050 Hz stereo MP3.
file(REMOVE_RECURSE ${DATA})
file(MAKE_DIRECTORY ${DATA})

include(${CMAKE_CURRENT_LIST_DIR}/../../cmake/RunChecked.cmake)

# Half a second of 440 Hz at half scale, 16-bit mono; the same as 8-bit; a second of it to rewind.
run(sox -n -r 22050 -c 1 -b 16 ${DATA}/tone.wav synth 0.5 sine 440 vol 0.5)
run(sox -n -r 22050 -c 1 -b 8 ${DATA}/tone8.wav synth 0.5 sine 440 vol 0.5)
run(sox -n -r 22050 -c 1 -b 16 ${DATA}/long.wav synth 1 sine 440 vol 0.5)
run(sox -n -r 22050 -c 2 -b 16 ${DATA}/music.wav synth 2 sine 440 vol 0.5)
run(lame --quiet -b 64 ${DATA}/music.wav ${DATA}/music.mp3)
