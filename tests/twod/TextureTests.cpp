#include "TextureTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <memory>

#include "support/RectExpect.h"

using namespace twodtest;
using ZQ::ZQTexture;
using Chunk = ZQ::_ZQTextureChunk_tag;

namespace {

// Sizes of the packed files' parts, as the tools write them.
const long kOmHeader = 28, kOmRecordV2 = 72, kTeHeader = 144, kTeRecord = 456;
// Where fields sit: the header's image size, a "v2" record's pixel rectangle, an atlas record's size.
const long kOmWidth = 16, kOmHeight = 20, kTeWidth = 4, kTeHeight = 8;
long OmPixel(long record) {
    return kOmHeader + record * kOmRecordV2 + 32;
}
long TeSize(long record) {
    return kTeHeader + record * kTeRecord + 288;
}

class Log2Probe : public ZQ::ZQOmFile {
public:
    Log2Probe() : ZQOmFile(nullptr, nullptr) {}
    using ZQOmFile::log2;
};

} // namespace

// A single image and each chunk of a split file get their own texture, enlarged to powers of two.
TEST(ZQTexture, ImagesAndSplitChunksAreEnlargedToPowersOfTwo) {
    ZQTexture texture(Device());
    texture.Entry(L"wide", Data(L"wide.png").c_str(), false);
    texture.Entry(L"odd", Data(L"odd.png").c_str(), true);
    texture.Entry(Data(L"pics.om").c_str(), true);
    Chunk *wide = texture.Trans(L"WIDE"), *odd = texture.Trans(L"odd");
    Chunk *a = texture.Trans(L"chunk_a"), *c = texture.Trans(L"chunk_c");
    ASSERT_TRUE(wide && odd && a && c);
    ExpectRect(wide->texcoord, 0, 0, 0.5859375f, 0.78125f);
    ExpectInts(wide->texcoord.rect, 0, 0, 0, 0);
    EXPECT_EQ(LevelDesc(wide->texture).Width, 512u);
    EXPECT_EQ(LevelDesc(wide->texture).Height, 256u);
    EXPECT_EQ(Levels(wide->texture), 8u);
    // D3DX stretches the image over 512 x 256 and the copy shrinks it back: allow for the filtering.
    for (const POINT& p : {POINT{0, 0}, POINT{299, 199}, POINT{123, 45}})
        EXPECT_TRUE(Near(ReadPixel(wide->texture, p.x, p.y), ArtPixel(p.x, p.y, 300, 200, 10))) << p.x << "," << p.y;
    EXPECT_EQ(odd->originX, 150.0f) << "301 halved as an integer";
    EXPECT_EQ(odd->originY, 16.0f);

    ExpectRect(a->texcoord, 0, 0, 0.78125f, 0.3125f);
    EXPECT_EQ(LevelDesc(a->texture).Height, 128u);
    EXPECT_EQ(Levels(a->texture), 5u);
    EXPECT_EQ(c->sharedTexture, nullptr);
    EXPECT_EQ(LevelDesc(c->texture).Width, 128u) << "64 pixels get 128: strictly greater";
    EXPECT_EQ(ReadPixel(a->texture, 99, 39), ArtPixel(99, 39, 100, 40, 30));
}

TEST(ZQTexture, NothingComesOfBadNamesAndFiles) {
    ZQTexture texture(Device());
    texture.Entry(L"broken", Data(L"broken.png").c_str(), false);
    texture.Entry(L"missing", Data(L"missing.png").c_str(), false);
    texture.Entry(Data(L"wide.png").c_str());
    texture.Entry(nullptr);
    EXPECT_EQ(texture.Trans(L"broken"), nullptr);
    EXPECT_EQ(texture.Trans(L"missing"), nullptr);
    EXPECT_EQ(texture.Trans(L"wide"), nullptr);
    EXPECT_EQ(texture.Trans(nullptr), nullptr);

    // Made on the heap and deleted through its virtual destructor, as hosts keep their stores.
    std::unique_ptr<ZQTexture> noDevice(new ZQTexture(nullptr));
    noDevice->Entry(L"wide", Data(L"wide.png").c_str(), false);
    noDevice->Entry(Data(L"atlas.te").c_str());
    EXPECT_EQ(noDevice->Trans(L"wide"), nullptr);
    ASSERT_NE(noDevice->Trans(L"chunk_b"), nullptr) << "records register even when the image cannot be made";
    EXPECT_EQ(noDevice->Trans(L"chunk_b")->sharedTexture, nullptr);
    EXPECT_EQ(noDevice->Trans(std::wstring(2048, L'b').c_str()), nullptr) << "not the chunk found before";
}

TEST(ZQTexture, PackedRecordsShareTheFirstRecordsTexture) {
    ZQTexture atlas(Device()), om(Device());
    atlas.Entry(Data(L"atlas.te").c_str());
    om.Entry(Data(L"pics.om").c_str());
    Chunk *first = atlas.Trans(L"Chunk_C"), *second = atlas.Trans(L"chunk_b");
    Chunk *a = om.Trans(L"CHUNK_A"), *b = om.Trans(L"chunk_b");
    ASSERT_TRUE(first && second && a && b);
    ExpectRect(second->texcoord, 0.25f, 0.0f, 0.375f, 0.125f);
    ExpectInts(second->texcoord.rect, 64, 0, 96, 16);
    ExpectRect(second->trim, 2, 3, 28, 15);
    EXPECT_TRUE(b->trim.isZero());
    EXPECT_EQ(second->texture, nullptr);
    EXPECT_EQ(second->sharedTexture, first->texture);
    EXPECT_EQ(b->sharedTexture, a->texture);
    EXPECT_EQ(LevelDesc(first->texture).Width, 256u);
    EXPECT_EQ(ReadPixel(second->sharedTexture, 64 + 5, 7), ArtPixel(5, 7, 32, 16, 40));
    const int x = static_cast<int>(b->pixel.left), y = static_cast<int>(b->pixel.top);
    EXPECT_FLOAT_EQ(b->texcoord.left, b->pixel.left / static_cast<float>(LevelDesc(a->texture).Width));
    EXPECT_EQ(ReadPixel(a->texture, x + 20, y + 10), ArtPixel(20, 10, 32, 16, 40));

    // UTF-16 names (wide atlases, the first packed layout) and names from a manifest, with their origins.
    const struct {
        const wchar_t *file, *chunk;
        float originX, originY;
    } origins[] = {
        {L"wide.te", L"chunk_a", 50, 20}, {L"first.om", L"chunk_c", 32, 32}, {L"named.om", L"banner", 10, 5}};
    for (const auto& o : origins) {
        ZQTexture texture(Device());
        texture.Entry(Data(o.file).c_str());
        const Chunk* chunk = texture.Trans(o.chunk);
        ASSERT_NE(chunk, nullptr) << o.file;
        EXPECT_EQ(chunk->originX, o.originX);
        EXPECT_EQ(chunk->originY, o.originY);
        EXPECT_TRUE(chunk->texture || chunk->sharedTexture) << o.file;
    }
}

TEST(ZQTexture, CutAndCorruptFilesKeepWhatTheyHold) {
    const long imageStart = kOmHeader + 3 * kOmRecordV2;
    ZQTexture undecodable(Device());
    undecodable.Entry(CopyData(L"pics.om", L"undecodable.om", -1, imageStart + 1, 'X').c_str());
    ASSERT_NE(undecodable.Trans(L"chunk_c"), nullptr) << "the records without their image";
    EXPECT_EQ(undecodable.Trans(L"chunk_a")->texture, nullptr);

    // Files cut after the first record or inside the image, whole copies (the extension is a substring test,
    // OM before TE, the folders' names play no part), bad magic or tag, files cut inside the header, counts
    // that claim more than the file holds or nothing at all, and sizes for the image loader that no device can have.
    struct Patch {
        const wchar_t* from;
        const wchar_t* to;
        long cut, at;
        unsigned char value;
        const wchar_t* chunk;
        bool registered;
    } const patches[] = {
        {L"pics.om", L"cut.om", kOmHeader + kOmRecordV2 + 10, -1, 0, L"chunk_a", true},
        {L"pics.om", L"cut.om", kOmHeader + kOmRecordV2 + 10, -1, 0, L"chunk_b", false},
        {L"pics.om", L"shortimage.om", imageStart + 40, -1, 0, L"chunk_c", true},
        {L"pics.te.om", L"pics.te.om", -1, -1, 0, L"chunk_a", true},
        {L"pics.om", L"pics.om.bak", -1, -1, 0, L"chunk_b", true},
        {L"atlas.om.te", L"atlas.om.te", -1, -1, 0, L"chunk_b", false}, // read as ".OM", it fails its magic
        {L"atlas.te", L"x.omega\\menu.te.bak", -1, -1, 0, L"chunk_b", true},
        {L"pics.om", L"badmagic.om", -1, 0, 'X', L"chunk_a", false},
        {L"atlas.te", L"badtag.te", -1, 1, 0x77, L"chunk_b", false},
        {L"pics.om", L"stub.om", 3, -1, 0, L"chunk_a", false},
        {L"atlas.te", L"empty.te", 0, -1, 0, L"chunk_b", false},
        {L"pics.om", L"many.om", -1, 27, 0x7F, L"chunk_a", true},
        {L"pics.om", L"none.om", -1, 24, 0, L"chunk_a", false},
        {L"atlas.te", L"huge.te", -1, 7, 0x7F, L"chunk_b", true},
        {L"pics.om", L"negative.om", -1, 19, 0xFF, L"chunk_b", true},
        {L"atlas.te", L"many.te", -1, 3, 0xFF, L"chunk_b", true},
    };
    CreateDirectoryW(Data(L"x.omega").c_str(), nullptr);
    for (const Patch& patch : patches) {
        ZQTexture texture(Device());
        texture.Entry(CopyData(patch.from, patch.to, patch.cut, patch.at, patch.value).c_str());
        EXPECT_EQ(texture.Trans(patch.chunk) != nullptr, patch.registered) << patch.to;
    }
}

TEST(ZQTexture, DeclaredSizesNeverOutgrowTheImage) {
    ZQTexture plain(Device());
    plain.Entry(Data(L"pics.om").c_str());
    plain.Entry(Data(L"atlas.te").c_str());
    const D3DSURFACE_DESC om = LevelDesc(plain.Trans(L"chunk_a")->texture);
    const D3DSURFACE_DESC te = LevelDesc(plain.Trans(L"chunk_c")->texture);

    // A header asking for 16384 x 16384, and an atlas with negative sizes: the image's own texture.
    ZQTexture huge(Device());
    huge.Entry(PatchData(L"pics.om", L"huge-size.om", {{kOmWidth, 16384}, {kOmHeight, 16384}}).c_str());
    huge.Entry(PatchData(L"atlas.te", L"negative-size.te", {{kTeWidth, -100}, {kTeHeight, -7}}).c_str());
    EXPECT_EQ(LevelDesc(huge.Trans(L"chunk_a")->texture).Width, om.Width);
    EXPECT_EQ(LevelDesc(huge.Trans(L"chunk_a")->texture).Height, om.Height);
    EXPECT_EQ(LevelDesc(huge.Trans(L"chunk_c")->texture).Width, te.Width);
    EXPECT_EQ(LevelDesc(huge.Trans(L"chunk_c")->texture).Height, te.Height);

    // Split loading clips each rectangle to the image: far outside gets nothing, overhanging gets the part inside.
    ZQTexture split(Device());
    split.Entry(PatchData(L"pics.om", L"outside.om",
                          {{OmPixel(1), 100000},
                           {OmPixel(1) + 4, 0},
                           {OmPixel(1) + 8, 116000},
                           {OmPixel(1) + 12, 16},
                           {OmPixel(2), 0},
                           {OmPixel(2) + 4, 0},
                           {OmPixel(2) + 8, 60000},
                           {OmPixel(2) + 12, 60000}})
                    .c_str(),
                true);
    ASSERT_TRUE(split.Trans(L"chunk_a") && split.Trans(L"chunk_b") && split.Trans(L"chunk_c"));
    EXPECT_EQ(LevelDesc(split.Trans(L"chunk_a")->texture).Width, 128u) << "inside: as before";
    EXPECT_EQ(split.Trans(L"chunk_b")->texture, nullptr);
    ExpectRect(split.Trans(L"chunk_b")->pixel, 100000, 0, 116000, 16);
    const D3DSURFACE_DESC overhanging = LevelDesc(split.Trans(L"CHUNK_C")->texture);
    EXPECT_GT(overhanging.Width, 0u);
    EXPECT_LE(overhanging.Width, 2 * std::max(om.Width, om.Height));
    EXPECT_EQ(overhanging.Width, overhanging.Height);

    ZQTexture negative(Device());
    negative.Entry(PatchData(L"atlas.te", L"negative-chunk.te", {{TeSize(1), -32}}).c_str(), true);
    ASSERT_NE(negative.Trans(L"chunk_b"), nullptr);
    EXPECT_EQ(negative.Trans(L"chunk_b")->texture, nullptr);
    EXPECT_NE(negative.Trans(L"chunk_c")->texture, nullptr);
}

// PNG sizes come from the image's header; any other format is measured by the image loader.
TEST(ZQTexture, AnAtlasWithABitmapImageLoadsAsWithItsPng) {
    ZQTexture png(Device()), bmp(Device());
    png.Entry(Data(L"atlas.te").c_str());
    ASSERT_NE(png.Trans(L"chunk_c"), nullptr);
    IDirect3DTexture9* expected = png.Trans(L"chunk_c")->texture;
    // The same records, then the image as a bitmap, its size in the header.
    ID3DXBuffer* bitmap = nullptr;
    ASSERT_EQ(D3DXSaveTextureToFileInMemory(&bitmap, D3DXIFF_BMP, expected, nullptr), S_OK);
    const std::wstring path = CopyData(L"atlas.te", L"bitmap.te", kTeHeader + 2 * kTeRecord);
    if (std::FILE* out = _wfopen(path.c_str(), L"ab")) {
        std::fwrite(bitmap->GetBufferPointer(), 1, bitmap->GetBufferSize(), out);
        std::fclose(out);
    }
    PatchData(L"bitmap.te", L"bitmap.te", {{12, static_cast<int32_t>(bitmap->GetBufferSize())}});
    bitmap->Release();
    bmp.Entry(path.c_str());
    ASSERT_TRUE(bmp.Trans(L"chunk_c") && bmp.Trans(L"chunk_c")->texture);
    IDirect3DTexture9* actual = bmp.Trans(L"chunk_c")->texture;
    EXPECT_EQ(LevelDesc(actual).Width, LevelDesc(expected).Width);
    EXPECT_EQ(LevelDesc(actual).Height, LevelDesc(expected).Height);
    // A bitmap keeps no alpha: the colours alone.
    for (const POINT& p : {POINT{0, 0}, POINT{63, 63}, POINT{70, 10}})
        EXPECT_EQ(ReadPixel(actual, p.x, p.y) & 0xFFFFFF, ReadPixel(expected, p.x, p.y) & 0xFFFFFF)
            << p.x << "," << p.y;
}

TEST(ZQTexture, Log2IsStrictlyGreater) {
    Log2Probe probe;
    const std::pair<int, int> cases[] = {{0, 1},     {1, 1},     {255, 8},    {256, 9},  {4095, 12},
                                         {4096, 12}, {8192, 13}, {16384, 14}, {5000, -1}};
    for (const auto& c : cases)
        EXPECT_EQ(probe.log2(c.first), c.second) << c.first;
}
