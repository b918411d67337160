// The ".AM" (generations "AMv2" and "QXR_AM") and ".TA" animation files and the ".SPL" spline-path
// files: layouts, and reading and writing them as bytes. No platform calls: the DLL, the tools and
// the fuzzer share this code.
#pragma once

#include "ZQPackedTexture.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace ZQ {
namespace formats {

const size_t kAmHeaderSize = 16;
const size_t kTaHeaderSize = 24;
const char kAmMagicNarrow[4] = {'A', 'M', 'v', '2'};
const char kAmMagicWide[6] = {'Q', 'X', 'R', '_', 'A', 'M'};
const char16_t kTaMagic[4] = {u'T', u'E', u'T', u'A'};
const size_t kSceneSizeWide = 88;   // "QXR_AM" and ".TA": 40 UTF-16 units of name
const size_t kSceneSizeNarrow = 56; // "AMv2": 48 single-byte characters of name
const size_t kSceneNameBytesWide = 80;
const size_t kSceneNameBytesNarrow = 48;
const size_t kFrameSizeAmWide = 428;
const size_t kFrameSizeTa = 692;
const size_t kFrameSizeAmNarrow = 396;
const size_t kChunkNameBytesWide = 64; // 32 UTF-16 units
const size_t kChunkNameBytesNarrow = 32;

enum class AnimationLayout {
    AmNarrow, ///< ".AM" "AMv2": single-byte names
    AmWide,   ///< ".AM" "QXR_AM": UTF-16 names
    Ta,       ///< ".TA" "TETA": UTF-16 names, longer frame records
};

inline bool IsWide(AnimationLayout layout) {
    return layout != AnimationLayout::AmNarrow;
}

struct AnimationFrame {
    std::string narrowChunk; ///< "AMv2"
    std::u16string wideChunk; ///< the wide layouts
    int32_t anchor[2] = {};
    int32_t endAnchor[2] = {};
    float duration = 0.0f;
    int32_t placement[4] = {}; ///< left, top, right, bottom
    uint32_t colour = 0;       ///< A8R8G8B8
};

struct AnimationScene {
    std::string narrowName;
    std::u16string wideName;
    int64_t declaredFrames = 0; ///< the record's frame count; frames holds those the file really has
    std::vector<AnimationFrame> frames;
};

struct AnimationFile {
    AnimationLayout layout = AnimationLayout::AmNarrow;
    int64_t declaredScenes = 0; ///< the header's count; scenes holds those the file really has
    std::vector<AnimationScene> scenes;
};

/// Reads an ".AM" file: "AMv2" (tested first) or "QXR_AM"; FormatError for any other magic. A count
/// larger than the bytes hold is read as far as whole records go; a negative frame count reads none.
ParseResult ParseAm(const uint8_t* data, size_t size, AnimationFile& file);
/// Reads a ".TA" file ("TETA" in UTF-16); as ParseAm otherwise.
ParseResult ParseTa(const uint8_t* data, size_t size, AnimationFile& file);
/// Writes the file in its layout; names and frames as given, the unread bytes zero.
std::vector<uint8_t> WriteAnimation(const AnimationFile& file);

const size_t kSplineHeaderSize = 8;
const size_t kSplinePathHeaderSize = 264; // 256 bytes of name (128 UTF-16 units), key count, total time
const size_t kSplineNameBytes = 256;
const size_t kSplineKeySize = 28;

struct SplineKey {
    float position[3] = {};
    float time = 0.0f;
    float tension = 0.0f;
    float continuity = 0.0f;
    float bias = 0.0f;
};

struct SplinePath {
    std::u16string name;
    int64_t declaredKeys = 0;
    float time = 0.0f; ///< the path's total time
    std::vector<SplineKey> keys;
};

struct SplineFile {
    uint16_t first = 0;  ///< the identification words, which the reader compares with its caller's
    uint16_t second = 0;
    int64_t declaredPaths = 0;
    std::vector<SplinePath> paths;
};

/// Reads a ".SPL" file as far as its whole records go. The words are not judged here.
void ParseSpline(const uint8_t* data, size_t size, SplineFile& file);
std::vector<uint8_t> WriteSpline(const SplineFile& file);

} // namespace formats
} // namespace ZQ
