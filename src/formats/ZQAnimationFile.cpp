#include "ZQAnimationFile.h"
#include "ZQLittleEndian.h"

#include <algorithm>
#include <cstring>

namespace ZQ {
namespace formats {

namespace {

size_t FrameSize(AnimationLayout layout) {
    switch (layout) {
    case AnimationLayout::AmNarrow: return kFrameSizeAmNarrow;
    case AnimationLayout::AmWide: return kFrameSizeAmWide;
    default: return kFrameSizeTa;
    }
}

void ReadFrame(const uint8_t* p, bool wide, AnimationFrame& frame) {
    const size_t nameBytes = wide ? kChunkNameBytesWide : kChunkNameBytesNarrow;
    if (wide)
        frame.wideChunk = le::WideText(p, nameBytes);
    else
        frame.narrowChunk = le::NarrowText(p, nameBytes);
    const uint8_t* fields = p + nameBytes;
    frame.anchor[0] = le::I32(fields);
    frame.anchor[1] = le::I32(fields + 4);
    frame.endAnchor[0] = le::I32(fields + 16);
    frame.endAnchor[1] = le::I32(fields + 20);
    frame.duration = le::F32(fields + 32);
    for (int k = 0; k < 4; ++k)
        frame.placement[k] = le::I32(fields + 36 + 4 * k);
    frame.colour = le::U32(fields + 52);
}

void WriteFrame(uint8_t* p, bool wide, const AnimationFrame& frame) {
    const size_t nameBytes = wide ? kChunkNameBytesWide : kChunkNameBytesNarrow;
    if (wide)
        le::PutWideText(p, nameBytes, frame.wideChunk);
    else
        le::PutNarrowText(p, nameBytes, frame.narrowChunk);
    uint8_t* fields = p + nameBytes;
    le::PutU32(fields, static_cast<uint32_t>(frame.anchor[0]));
    le::PutU32(fields + 4, static_cast<uint32_t>(frame.anchor[1]));
    le::PutU32(fields + 16, static_cast<uint32_t>(frame.endAnchor[0]));
    le::PutU32(fields + 20, static_cast<uint32_t>(frame.endAnchor[1]));
    le::PutF32(fields + 32, frame.duration);
    for (int k = 0; k < 4; ++k)
        le::PutU32(fields + 36 + 4 * k, static_cast<uint32_t>(frame.placement[k]));
    le::PutU32(fields + 52, frame.colour);
}

// Scene records, each followed at once by its frame records, as far as whole records go: nothing is
// made from bytes the file does not have, whatever the counts say.
void ReadScenes(const uint8_t* data, size_t size, size_t offset, AnimationFile& file) {
    const bool wide = IsWide(file.layout);
    const size_t sceneSize = wide ? kSceneSizeWide : kSceneSizeNarrow;
    const size_t frameSize = FrameSize(file.layout);
    for (int64_t i = 0; i < file.declaredScenes && size - offset >= sceneSize; ++i) {
        const uint8_t* p = data + offset;
        file.scenes.emplace_back();
        AnimationScene& scene = file.scenes.back();
        scene.declaredFrames = le::I32(p + 4);
        if (wide)
            scene.wideName = le::WideText(p + 8, kSceneNameBytesWide);
        else
            scene.narrowName = le::NarrowText(p + 8, kSceneNameBytesNarrow);
        offset += sceneSize;
        const size_t present = le::RecordsPresent(scene.declaredFrames, size, offset, frameSize);
        scene.frames.resize(present);
        for (size_t k = 0; k < present; ++k)
            ReadFrame(data + offset + k * frameSize, wide, scene.frames[k]);
        offset += present * frameSize;
        if (static_cast<int64_t>(present) < scene.declaredFrames)
            break; // the bytes ended inside this scene's frames
    }
}

template <size_t Size> void CopyHeader(const uint8_t* data, size_t size, uint8_t (&header)[Size]) {
    std::memset(header, 0, Size);
    if (size)
        std::memcpy(header, data, std::min(size, Size));
}

} // namespace

ParseResult ParseAm(const uint8_t* data, size_t size, AnimationFile& file) {
    file = AnimationFile();
    uint8_t header[kAmHeaderSize];
    CopyHeader(data, size, header);
    if (std::memcmp(header, kAmMagicNarrow, sizeof kAmMagicNarrow) == 0)
        file.layout = AnimationLayout::AmNarrow;
    else if (std::memcmp(header, kAmMagicWide, sizeof kAmMagicWide) == 0)
        file.layout = AnimationLayout::AmWide;
    else
        return ParseResult::FormatError;
    file.declaredScenes = le::I32(header + 12);
    if (size > kAmHeaderSize)
        ReadScenes(data, size, kAmHeaderSize, file);
    return ParseResult::Ok;
}

ParseResult ParseTa(const uint8_t* data, size_t size, AnimationFile& file) {
    file = AnimationFile();
    uint8_t header[kTaHeaderSize];
    CopyHeader(data, size, header);
    for (int i = 0; i < 4; ++i)
        if (le::U16(header + 2 * i) != kTaMagic[i])
            return ParseResult::FormatError;
    file.layout = AnimationLayout::Ta;
    file.declaredScenes = le::I32(header + 20);
    if (size > kTaHeaderSize)
        ReadScenes(data, size, kTaHeaderSize, file);
    return ParseResult::Ok;
}

std::vector<uint8_t> WriteAnimation(const AnimationFile& file) {
    const bool wide = IsWide(file.layout);
    const size_t headerSize = file.layout == AnimationLayout::Ta ? kTaHeaderSize : kAmHeaderSize;
    const size_t sceneSize = wide ? kSceneSizeWide : kSceneSizeNarrow;
    const size_t frameSize = FrameSize(file.layout);
    size_t total = headerSize;
    for (const AnimationScene& scene : file.scenes)
        total += sceneSize + scene.frames.size() * frameSize;
    std::vector<uint8_t> bytes(total);
    uint8_t* header = bytes.data();
    switch (file.layout) {
    case AnimationLayout::AmNarrow: std::memcpy(header, kAmMagicNarrow, sizeof kAmMagicNarrow); break;
    case AnimationLayout::AmWide: std::memcpy(header, kAmMagicWide, sizeof kAmMagicWide); break;
    case AnimationLayout::Ta:
        for (int i = 0; i < 4; ++i)
            le::PutU16(header + 2 * i, kTaMagic[i]);
        break;
    }
    le::PutU32(header + headerSize - 4, static_cast<uint32_t>(file.scenes.size()));
    size_t offset = headerSize;
    for (const AnimationScene& scene : file.scenes) {
        uint8_t* p = bytes.data() + offset;
        le::PutU32(p + 4, static_cast<uint32_t>(scene.frames.size()));
        if (wide)
            le::PutWideText(p + 8, kSceneNameBytesWide, scene.wideName);
        else
            le::PutNarrowText(p + 8, kSceneNameBytesNarrow, scene.narrowName);
        offset += sceneSize;
        for (const AnimationFrame& frame : scene.frames) {
            WriteFrame(bytes.data() + offset, wide, frame);
            offset += frameSize;
        }
    }
    return bytes;
}

void ParseSpline(const uint8_t* data, size_t size, SplineFile& file) {
    file = SplineFile();
    uint8_t header[kSplineHeaderSize];
    CopyHeader(data, size, header);
    file.first = le::U16(header);
    file.second = le::U16(header + 2);
    file.declaredPaths = le::I32(header + 4);
    size_t offset = kSplineHeaderSize;
    for (int64_t i = 0; i < file.declaredPaths && size > offset && size - offset >= kSplinePathHeaderSize; ++i) {
        const uint8_t* p = data + offset;
        file.paths.emplace_back();
        SplinePath& path = file.paths.back();
        path.name = le::WideText(p, kSplineNameBytes);
        path.declaredKeys = le::I32(p + kSplineNameBytes);
        path.time = le::F32(p + kSplineNameBytes + 4);
        offset += kSplinePathHeaderSize;
        const size_t present = le::RecordsPresent(path.declaredKeys, size, offset, kSplineKeySize);
        path.keys.resize(present);
        for (size_t k = 0; k < present; ++k) {
            const uint8_t* q = data + offset + k * kSplineKeySize;
            SplineKey& key = path.keys[k];
            for (int c = 0; c < 3; ++c)
                key.position[c] = le::F32(q + 4 * c);
            key.time = le::F32(q + 12);
            key.tension = le::F32(q + 16);
            key.continuity = le::F32(q + 20);
            key.bias = le::F32(q + 24);
        }
        offset += present * kSplineKeySize;
        if (static_cast<int64_t>(present) < path.declaredKeys)
            break;
    }
}

std::vector<uint8_t> WriteSpline(const SplineFile& file) {
    size_t total = kSplineHeaderSize;
    for (const SplinePath& path : file.paths)
        total += kSplinePathHeaderSize + path.keys.size() * kSplineKeySize;
    std::vector<uint8_t> bytes(total);
    le::PutU16(bytes.data(), file.first);
    le::PutU16(bytes.data() + 2, file.second);
    le::PutU32(bytes.data() + 4, static_cast<uint32_t>(file.paths.size()));
    size_t offset = kSplineHeaderSize;
    for (const SplinePath& path : file.paths) {
        uint8_t* p = bytes.data() + offset;
        le::PutWideText(p, kSplineNameBytes, path.name);
        le::PutU32(p + kSplineNameBytes, static_cast<uint32_t>(path.keys.size()));
        le::PutF32(p + kSplineNameBytes + 4, path.time);
        offset += kSplinePathHeaderSize;
        for (const SplineKey& key : path.keys) {
            uint8_t* q = bytes.data() + offset;
            for (int c = 0; c < 3; ++c)
                le::PutF32(q + 4 * c, key.position[c]);
            le::PutF32(q + 12, key.time);
            le::PutF32(q + 16, key.tension);
            le::PutF32(q + 20, key.continuity);
            le::PutF32(q + 24, key.bias);
            offset += kSplineKeySize;
        }
    }
    return bytes;
}

} // namespace formats
} // namespace ZQ
