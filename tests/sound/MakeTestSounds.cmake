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
run(sox -n -r 44100 -c 2 -b 16 ${DATA}/music44.wav synth 0.5 sine 440 vol 0.5)
run(lame --quiet --noreplaygain -b 64 ${DATA}/music44.wav ${DATA}/music44.mp3)

# The field corpus: files as a kiosk meets them, 0.3 s of 440 Hz each, in corpus/. The test's table says what
# each must do; waves that sox cannot write (chunks around "fmt ", a 16-byte float block) the test makes itself.
set(CORPUS ${DATA}/corpus)
file(MAKE_DIRECTORY ${CORPUS})
# lame would choose a lower rate for some of these at 64 kbit/s: --resample keeps the wave's.
foreach(rate 8000:8 11025:11.025 16000:16 22050:22.05 32000:32 44100:44.1 48000:48)
    string(REPLACE ":" ";" rate ${rate})
    list(GET rate 0 hertz)
    list(GET rate 1 kilohertz)
    foreach(channels 1 2)
        set(tone ${CORPUS}/tone-${hertz}-${channels}.wav)
        run(sox -n -r ${hertz} -c ${channels} -b 16 ${tone} synth 0.3 sine 440 vol 0.5)
        run(lame --quiet --noreplaygain -b 64 --resample ${kilohertz} ${tone} ${CORPUS}/cbr-${hertz}-${channels}.mp3)
    endforeach()
endforeach()
# Variants of the one kind Wine's reader decodes for the board (22,050 Hz stereo), and a few others.
set(tone ${CORPUS}/tone-22050-2.wav)
set(tags --tt "Attract loop" --ta "Kiosk")
run(lame --quiet --noreplaygain -V 4 ${tone} ${CORPUS}/vbr-22050-2.mp3)
run(lame --quiet --noreplaygain -V 4 -t ${tone} ${CORPUS}/vbr-noxing-22050-2.mp3)
run(lame --quiet --noreplaygain -b 64 -t ${tone} ${CORPUS}/cbr-noxing-22050-2.mp3)
run(lame --quiet --noreplaygain -b 64 --id3v1-only ${tags} ${tone} ${CORPUS}/id3v1-22050-2.mp3)
run(lame --quiet --noreplaygain -b 64 --id3v2-only ${tags} ${tone} ${CORPUS}/id3v2-22050-2.mp3)
run(lame --quiet --noreplaygain -b 64 --add-id3v2 ${tags} ${tone} ${CORPUS}/id3both-22050-2.mp3)
run(lame --quiet --noreplaygain -V 4 -t --resample 44.1 ${CORPUS}/tone-44100-2.wav ${CORPUS}/vbr-noxing-44100-2.mp3)
run(lame --quiet --noreplaygain -V 4 ${CORPUS}/tone-22050-1.wav ${CORPUS}/vbr-22050-1.mp3)
# Waves: every depth sox writes, plain and WAVE_FORMAT_EXTENSIBLE (sox's choice above 16 bits), float, and two
# compressed ones.
foreach(wave "u8-1;-b;8;-c;1" "s16-1;-b;16;-c;1" "s16-2;-b;16;-c;2" "s24-1;-b;24;-c;1" "s32-2;-b;32;-c;2"
        "f32-1;-e;floating-point;-b;32;-c;1" "f32-2;-e;floating-point;-b;32;-c;2" "ulaw-1;-e;u-law;-c;1"
        "adpcm-1;-e;ms-adpcm;-c;1")
    list(POP_FRONT wave name)
    run(sox -n -r 22050 ${wave} ${CORPUS}/wav-${name}.wav synth 0.3 sine 440 vol 0.5)
endforeach()
run(sox -n -r 22050 -c 2 -b 24 -t wavpcm ${CORPUS}/wav-pcm24-2.wav synth 0.3 sine 440 vol 0.5)
run(sox -n -r 22050 -c 1 -b 32 -t wavpcm ${CORPUS}/wav-pcm32-1.wav synth 0.3 sine 440 vol 0.5)
run(sox -n -r 8000 -c 1 -b 16 ${CORPUS}/wav-s16-1-8000.wav synth 0.3 sine 440 vol 0.5)
run(sox -n -r 48000 -c 2 -b 16 ${CORPUS}/wav-s16-2-48000.wav synth 0.3 sine 440 vol 0.5)
