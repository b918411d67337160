# Images as other tools write them, made with ImageMagick: every format and layout a kiosk's artist may
# hand over, at an odd size (37 x 23), each alone and packed untouched into an atlas of one chunk.
# Colour images are four solid quadrants (red, green, blue, white), grey ones four greys (0, 64, 191, 255).
include(${CMAKE_CURRENT_LIST_DIR}/../../cmake/RunChecked.cmake)

file(REMOVE_RECURSE ${DATA})
file(MAKE_DIRECTORY ${DATA})
set(colour ( -size 19x12 xc:red -size 18x12 xc:lime +append ) ( -size 19x11 xc:blue -size 18x11 xc:white +append )
    -append)
set(grey ( -size 19x12 xc:gray0 -size 18x12 "xc:#404040" +append )
    ( -size 19x11 "xc:#bfbfbf" -size 18x11 xc:gray100 +append ) -append -type Grayscale)

# name, source, ImageMagick's output options and file
set(images
    "png-rgb|colour|PNG24:png-rgb.png"
    "png-rgba|colour|-alpha on PNG32:png-rgba.png"
    "png-palette|colour|PNG8:png-palette.png"
    "png-16bit|colour|-depth 16 PNG48:png-16bit.png"
    "png-16bit-alpha|colour|-depth 16 -alpha on PNG64:png-16bit-alpha.png"
    "png-grey|grey|-depth 8 png-grey.png"
    "png-grey-16bit|grey|-depth 16 png-grey-16bit.png"
    "png-grey-alpha|grey|-alpha on -depth 8 PNG:png-grey-alpha.png"
    "png-interlaced|colour|-interlace PNG PNG24:png-interlaced.png"
    "jpeg|colour|-quality 95 jpeg.jpg"
    "jpeg-grey|grey|-quality 95 jpeg-grey.jpg"
    "jpeg-progressive|colour|-quality 95 -interlace JPEG jpeg-progressive.jpg"
    "bmp-24bit|colour|BMP3:bmp-24bit.bmp"
    "bmp-32bit|colour|-alpha on BMP:bmp-32bit.bmp"
    "bmp-palette|colour|-type Palette BMP3:bmp-palette.bmp"
    "tga|colour|tga.tga"
    "tga-rle|colour|-compress RLE tga-rle.tga"
    "dds|colour|-define dds:compression=none -define dds:mipmaps=0 dds.dds"
    "dds-dxt1|colour|-define dds:compression=dxt1 -define dds:mipmaps=0 dds-dxt1.dds"
    "dds-dxt5|colour|-alpha on -define dds:compression=dxt5 -define dds:mipmaps=0 dds-dxt5.dds"
)
foreach(entry ${images})
    string(REPLACE "|" ";" fields "${entry}")
    list(GET fields 0 name)
    list(GET fields 1 source)
    list(GET fields 2 output)
    separate_arguments(output UNIX_COMMAND "${output}")
    run(convert ${${source}} ${output} WORKING_DIRECTORY ${DATA})
    list(GET output -1 file)
    string(REGEX REPLACE "^[A-Z0-9]+:" "" file "${file}")
    run(${NATIVE_BIN}/make_test_art --wrap ${DATA}/${file} 37 23 ${DATA}/${name}.te)
endforeach()

# zqinspect names the Direct3D format of a DDS inside an atlas, as the device will be given it.
foreach(pair "dds|R8G8B8 (24 bits" "dds-dxt1|DXT1 (4 bits a pixel, 1 of alpha)" "dds-dxt5|DXT5 (8 bits")
    string(REPLACE "|" ";" fields "${pair}")
    list(GET fields 0 name)
    list(GET fields 1 expected)
    execute_process(COMMAND ${NATIVE_BIN}/zqinspect ${DATA}/${name}.te OUTPUT_VARIABLE listing)
    string(FIND "${listing}" "a DDS in ${expected}" at)
    if(at EQUAL -1)
        message(FATAL_ERROR "zqinspect ${name}.te does not say \"a DDS in ${expected}\":\n${listing}")
    endif()
endforeach()
