// Malformed files of every format the library reads, made here from valid files by deterministic
// mutations, fed through the public loaders: nothing may crash, hang or allocate beyond a bound.
#include "ReliabilitySupport.h"
#include "twod/TextureTestSupport.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstdio>
#include <functional>
#include <string>
#include <thread>
#include <vector>

using twodtest::Data;
using twodtest::Device;

namespace {

using reliability::EnvFile;
using testsupport::Bytes;
using testsupport::ReadAll;
using testsupport::WriteAll;

// The bytes with a 32-bit little-endian value written at an offset.
Bytes Patched(Bytes bytes, size_t at, uint32_t value) {
    for (int b = 0; b < 4; ++b)
        bytes[at + b] = static_cast<uint8_t>(value >> (8 * b));
    return bytes;
}

std::wstring TempFolder() {
    const std::wstring path = testsupport::TempPath(L"zq-corpus");
    CreateDirectoryW(path.c_str(), nullptr);
    return path;
}

// The variants of one valid file: cut at many lengths, single bits flipped, and hostile 32-bit values
// (huge, negative, zero) written over the header's fields and over places further in. At most limit of
// them, spread over all the kinds.
std::vector<Bytes> Mutations(const Bytes& seed, size_t limit) {
    std::vector<Bytes> cuts, flips, fields;
    const size_t n = seed.size();
    for (size_t length = 0; length < n && length < 80; length += length < 16 ? 1 : 4)
        cuts.emplace_back(seed.begin(), seed.begin() + static_cast<std::ptrdiff_t>(length));
    for (size_t i = 1; i < 16; ++i)
        cuts.emplace_back(seed.begin(), seed.begin() + static_cast<std::ptrdiff_t>(n * i / 16));
    cuts.emplace_back(seed.begin(), seed.end() - 1);

    uint32_t state = 12345;
    auto next = [&state] { return state = state * 1103515245u + 12345u, state >> 8; };
    for (int i = 0; i < 48 && n > 0; ++i) {
        Bytes flipped = seed;
        const size_t at = i % 2 ? next() % n : next() % std::min<size_t>(n, 512);
        flipped[at] ^= static_cast<uint8_t>(1u << (next() % 8));
        flips.push_back(std::move(flipped));
    }

    const uint32_t hostile[] = {0xFFFFFFFFu, 0x7FFFFFFFu, 0x80000000u, 0u, 0x00100000u, 0xFFFFFF00u};
    std::vector<size_t> offsets;
    for (size_t at = 0; at + 4 <= n && at < 96; at += 2)
        offsets.push_back(at);
    for (size_t i = 1; i < 12 && n >= 4; ++i)
        offsets.push_back((n - 4) * i / 12);
    for (size_t at : offsets)
        for (uint32_t value : hostile)
            fields.push_back(Patched(seed, at, value));

    // Interleave the kinds, so that a limit keeps some of each.
    std::vector<Bytes> all;
    for (size_t i = 0; all.size() < limit && (i < cuts.size() || i < flips.size() || i < fields.size()); ++i)
        for (std::vector<Bytes>* kind : {&cuts, &flips, &fields})
            if (i < kind->size() && all.size() < limit)
                all.push_back(std::move((*kind)[i]));
    return all;
}

// Names what is loading for a crash report; a watchdog ends the process, naming it, when one load takes
// longer than a minute.
void Loading(const wchar_t* what) {
    static std::atomic<long> progress{0};
    static const bool watched = [] {
        reliability::ReportCrashes();
        std::thread([] {
            for (long seen = -1, stuck = 0;; Sleep(250)) {
                const long now = progress;
                stuck = now == seen ? stuck + 1 : 0;
                seen = now;
                if (stuck > 240) {
                    std::fprintf(stderr, "hang while %ls\n", reliability::g_doing.load());
                    std::fflush(stderr);
                    TerminateProcess(GetCurrentProcess(), 3);
                }
            }
        }).detach();
        return true;
    }();
    (void)watched;
    reliability::g_doing = what;
    ++progress;
}

using Loader = std::function<void(const std::wstring& path)>;

// Presents too: Wine frees the device objects released since the last frame only when one ends, so a
// run without Present would look like a leak of every texture drawn.
void DrawOnce(const std::function<void()>& draw) {
    Device()->Clear(0, nullptr, D3DCLEAR_TARGET, 0, 1.0f, 0);
    Device()->BeginScene();
    draw();
    Device()->EndScene();
    Device()->Present(nullptr, nullptr, nullptr, nullptr);
}

// Draws the test atlases' three chunks.
void DrawChunks(ZQ::ZQSprite& sprite) {
    D3DXVECTOR3 at(10, 10, 0);
    D3DXCOLOR white(1, 1, 1, 1);
    DrawOnce([&] {
        for (const wchar_t* name : {L"chunk_a", L"chunk_b", L"chunk_c"})
            sprite.Render(name, at, white, 0);
    });
}

// Feeds up to limit variants of each valid seed file to the loader, each under the seed's suffix (the loaders
// choose by it); the process's committed memory may grow by boundMb at most.
void RunCorpus(const char* what, const std::vector<std::wstring>& seeds, size_t limit, const Loader& load,
               double boundMb = 48.0) {
    // The first draws of these chunks cost Wine's driver some 75 MB once (caches that stay): paid before
    // measuring, so that what a pass adds is what the loaders keep.
    static const bool warmedUp = [] {
        ZQ::ZQSprite sprite(Device());
        sprite.Entry(Data(L"pics.om").c_str());
        DrawChunks(sprite);
        return true;
    }();
    ASSERT_TRUE(warmedUp);
    const std::wstring folder = TempFolder();
    const reliability::Memory before = reliability::SampleMemory();
    size_t count = 0;
    const DWORD start = GetTickCount();
    for (const std::wstring& seed : seeds) {
        const Bytes valid = ReadAll(seed);
        ASSERT_FALSE(valid.empty()) << "missing seed file";
        for (const Bytes& variant : Mutations(valid, limit)) {
            // A name of its own per variant: a font file stays registered, and so in use, until the end.
            const std::wstring path = folder + L"\\v" + std::to_wstring(count++) + seed.substr(seed.rfind(L'.'));
            ASSERT_TRUE(WriteAll(path, variant));
            const std::wstring doing = L"loading " + path;
            Loading(doing.c_str());
            load(path);
            Loading(L"");
            DeleteFileW(path.c_str());
        }
    }
    const reliability::Memory after = reliability::SampleMemory();
    std::printf("%s: %zu files in %.1f s, committed memory %.1f -> %.1f MB (peak %.1f MB)\n", what, count,
                (GetTickCount() - start) / 1000.0, before.committedMb, after.committedMb, after.peakCommittedMb);
    EXPECT_LT(after.committedMb - before.committedMb, boundMb) << what;
}

// The test art's chunk_a.png, written in another format through D3DX.
bool SaveChunkA(const std::wstring& path, D3DXIMAGE_FILEFORMAT format) {
    IDirect3DTexture9* image = nullptr;
    if (FAILED(D3DXCreateTextureFromFileW(Device(), Data(L"chunk_a.png").c_str(), &image)))
        return false;
    const bool saved = SUCCEEDED(D3DXSaveTextureToFileW(path.c_str(), format, image, nullptr));
    image->Release();
    return saved;
}

} // namespace

TEST(Corpus, PackedTexturesWholeAndSplit) {
    RunCorpus("packed textures", {Data(L"pics.om"), Data(L"first.om"), Data(L"atlas.te"), Data(L"wide.te")}, 120,
              [](const std::wstring& path) {
                  ZQ::ZQSprite whole(Device());
                  whole.Entry(path.c_str());
                  ZQ::ZQTexture split(Device());
                  split.Entry(path.c_str(), true);
                  DrawChunks(whole);
              });
}

TEST(Corpus, ImagesThroughTheImageLoader) {
    // The other image formats are written here from the PNG, through D3DX. Wine's own BMP decoder crashes
    // on a width of -1 where Windows refuses the file: the library refuses such headers itself.
    std::vector<std::wstring> seeds = {Data(L"chunk_a.png")};
    const struct {
        D3DXIMAGE_FILEFORMAT format;
        const wchar_t* suffix;
    } others[] = {{D3DXIFF_DDS, L".dds"}, {D3DXIFF_JPG, L".jpg"}, {D3DXIFF_BMP, L".bmp"}};
    for (const auto& other : others) {
        const std::wstring path = TempFolder() + L"\\seed" + other.suffix;
        if (SaveChunkA(path, other.format))
            seeds.push_back(path);
    }
    std::printf("%zu image formats\n", seeds.size());
    RunCorpus("images", seeds, 150, [](const std::wstring& path) {
        ZQ::ZQTexture texture(Device());
        texture.Entry(L"image", path.c_str(), true);
    });
}

TEST(Corpus, AnimationsPlayedAndSplinePaths) {
    ZQ::ZQSprite sprite(Device());
    sprite.Entry(Data(L"sprites.te").c_str());
    RunCorpus("animations", {Data(L"anim\\narrow.am"), Data(L"anim\\wide.am"), Data(L"anim\\frames.ta")}, 150,
              [&sprite](const std::wstring& path) {
                  ZQ::ZQAnimate animate(&sprite);
                  animate.Entry(path.c_str());
                  ZQ::ZQRenderSingle player(&animate);
                  DrawOnce([&] {
                      for (const wchar_t* name : {L"blink", L"move", L"ghost", L"tinted", L"empty"})
                          if (player.Entry(name, D3DXVECTOR3(50, 50, 0), true, 1, true))
                              for (int frame = 0; frame < 4; ++frame)
                                  player.OnFrameRender(Device(), 0.0, 0.1f, nullptr);
                  });
              });
    RunCorpus("spline paths", {Data(L"anim\\paths.spl")}, 250, [](const std::wstring& path) {
        ZQ::ZQSpline paths(path.c_str(), 7, 2);
        for (const wchar_t* name : {L"arc", L"three"})
            if (ZQ::_3D::ZQ3DSpline* spline = paths.GetSpline(name))
                if (spline->GetKeyCount() >= 4)
                    spline->GetPosition(paths.GetTime(name) / 2);
    });
}

// The board's buffer maker, reached without registering every buffer under a name.
struct SoundBoard : ZQ::ZQSound {
    SoundBoard() : ZQSound(twodtest::App()->GethWnd(), DSSCL_PRIORITY) {}
    using ZQSound::Create;
};

TEST(Corpus, WavesReadAndLoadedIntoTheSoundBoard) {
    SoundBoard board;
    RunCorpus("waves", {EnvFile(L"ZQ_TEST_SOUNDS", L"tone.wav"), EnvFile(L"ZQ_TEST_SOUNDS", L"tone8.wav")}, 200,
              [&board](const std::wstring& path) {
                  ZQ::ZQWaveFile wave;
                  std::wstring name = path;
                  if (SUCCEEDED(wave.Open(&name[0], nullptr, 1))) {
                      std::vector<unsigned char> chunk(4096);
                      unsigned long got = 0, total = 0;
                      while (SUCCEEDED(wave.Read(chunk.data(), 4096, &got)) && got > 0 && total <= wave.GetSize())
                          total += got;
                      EXPECT_LE(total, wave.GetSize());
                  }
                  if (IDirectSoundBuffer* buffer = board.Create(path.c_str(), 0, GUID_NULL))
                      buffer->Release();
              });
}

TEST(Corpus, Mp3PiecesDecoded) {
    RunCorpus("mp3", {EnvFile(L"ZQ_TEST_SOUNDS", L"music.mp3")}, 30, [](const std::wstring& path) {
        ZQ::ZQSound board(twodtest::App()->GethWnd(), DSSCL_PRIORITY);
        board.Entry(L"music", path.c_str());
    });
}

TEST(Corpus, FontFiles) {
    // Every font file stays registered until the process ends: a larger bound.
    RunCorpus(
        "fonts", {Data(L"DejaVuSans.ttf")}, 20,
        [](const std::wstring& path) {
            ZQ::ZQFont font(Device());
            font.Entry(1, path.c_str(), L"DejaVu Sans", 20, 0, 400, 1, FALSE, DEFAULT_CHARSET, 0, 0, 0);
            RECT box = {0, 0, 200, 40};
            DrawOnce([&] { font.DrawTextW(nullptr, L"Insert coin", -1, &box, DT_LEFT, 0xFFFFFFFF); });
        },
        400.0);
}

TEST(Corpus, BitmapHeadersNoDecoderAccepts) {
    const std::wstring seed = TempFolder() + L"\\seed.bmp";
    ASSERT_TRUE(SaveChunkA(seed, D3DXIFF_BMP));
    const Bytes valid = ReadAll(seed);
    // Offsets 18 and 22: the info header's width and height.
    const struct {
        size_t at;
        uint32_t value;
    } patches[] = {{18, 0xFFFFFFFFu}, {18, 0}, {18, 0x7FFFFFFFu}, {22, 0}, {22, 0x80000000u}};
    for (const auto& patch : patches) {
        const std::wstring path = TempFolder() + L"\\bad.bmp";
        ASSERT_TRUE(WriteAll(path, Patched(valid, patch.at, patch.value)));
        ZQ::ZQTexture texture(Device());
        texture.Entry(L"image", path.c_str(), false);
        EXPECT_EQ(texture.Trans(L"image"), nullptr) << "offset " << patch.at << " = " << patch.value;
    }
    ZQ::ZQTexture texture(Device());
    texture.Entry(L"image", seed.c_str(), false);
    EXPECT_NE(texture.Trans(L"image"), nullptr) << "the valid bitmap loads";
}

namespace {

// The colour at (x, y) of level 0, whatever the texture's format (compressed ones included).
D3DCOLOR ColourAt(IDirect3DTexture9* texture, int x, int y) {
    D3DSURFACE_DESC desc;
    IDirect3DSurface9 *level = nullptr, *plain = nullptr;
    D3DCOLOR colour = 0xDEADBEEF;
    if (texture && SUCCEEDED(texture->GetLevelDesc(0, &desc)) && SUCCEEDED(texture->GetSurfaceLevel(0, &level)) &&
        SUCCEEDED(Device()->CreateOffscreenPlainSurface(desc.Width, desc.Height, D3DFMT_A8R8G8B8, D3DPOOL_SYSTEMMEM,
                                                        &plain, nullptr)) &&
        SUCCEEDED(D3DXLoadSurfaceFromSurface(plain, nullptr, nullptr, level, nullptr, nullptr, D3DX_FILTER_NONE, 0))) {
        D3DLOCKED_RECT locked;
        if (SUCCEEDED(plain->LockRect(&locked, nullptr, D3DLOCK_READONLY))) {
            colour = static_cast<const D3DCOLOR*>(locked.pBits)[y * locked.Pitch / 4 + x];
            plain->UnlockRect();
        }
    }
    if (plain)
        plain->Release();
    if (level)
        level->Release();
    return colour;
}

} // namespace

// Images as other tools write them (see MakeFieldImages.cmake), each loaded alone and from an atlas that
// packs its bytes untouched. A format the platform decodes shows its four quadrants where they are; one it
// does not decode is refused cleanly: nothing registered alone, the atlas's chunk kept without a texture.
// Where Wine's decoder gets the pixels wrong, the chunk is still registered at the image's size. Wine refuses
// colour PNGs of 16 bits a channel (D3DX on Windows reads them), misreads 4-bit BMP rows of an odd width,
// draws a TGA upside down (ignoring its bottom-up origin), and copies a DXT image alone (into part of a
// compressed texture of a power-of-two size) wrongly where the part is not whole 4 x 4 blocks.
TEST(FieldImages, EveryFormatLoadsOrIsRefusedCleanlyAloneAndInAnAtlas) {
    enum Outcome { Loads, Refused, MisdrawnByWine };
    struct Image {
        const wchar_t* file;
        bool grey;
        int tolerance;
        Outcome alone, inAtlas;
    };
    const Image images[] = {{L"png-rgb.png", false, 2, Loads, Loads},
                            {L"png-rgba.png", false, 2, Loads, Loads},
                            {L"png-palette.png", false, 2, Loads, Loads},
                            {L"png-16bit.png", false, 2, Refused, Refused},
                            {L"png-16bit-alpha.png", false, 2, Refused, Refused},
                            {L"png-grey.png", true, 2, Loads, Loads},
                            {L"png-grey-16bit.png", true, 2, Loads, Loads},
                            {L"png-grey-alpha.png", true, 2, Loads, Loads},
                            {L"png-interlaced.png", false, 2, Loads, Loads},
                            {L"jpeg.jpg", false, 24, Loads, Loads},
                            {L"jpeg-grey.jpg", true, 24, Loads, Loads},
                            {L"jpeg-progressive.jpg", false, 24, Loads, Loads},
                            {L"bmp-24bit.bmp", false, 2, Loads, Loads},
                            {L"bmp-32bit.bmp", false, 2, Loads, Loads},
                            {L"bmp-palette.bmp", false, 2, MisdrawnByWine, MisdrawnByWine},
                            {L"tga.tga", false, 2, MisdrawnByWine, MisdrawnByWine},
                            {L"tga-rle.tga", false, 2, MisdrawnByWine, MisdrawnByWine},
                            {L"dds.dds", false, 2, Loads, Loads},
                            {L"dds-dxt1.dds", false, 24, MisdrawnByWine, Loads},
                            {L"dds-dxt5.dds", false, 24, MisdrawnByWine, Loads}};
    const D3DCOLOR colours[4] = {0xFF0000, 0x00FF00, 0x0000FF, 0xFFFFFF};
    const D3DCOLOR greys[4] = {0x000000, 0x404040, 0xBFBFBF, 0xFFFFFF};
    const POINT samples[4] = {{5, 5}, {30, 5}, {5, 18}, {30, 18}};
    for (const Image& image : images) {
        SCOPED_TRACE(testing::Message() << image.file);
        ZQ::ZQTexture alone(Device()), atlas(Device());
        alone.Entry(L"whole", EnvFile(L"ZQ_FIELD_IMAGES", image.file).c_str(), false);
        atlas.Entry(EnvFile(L"ZQ_FIELD_IMAGES", std::wstring(image.file, wcscspn(image.file, L".")) + L".te").c_str());
        for (ZQ::ZQTexture* texture : {&alone, &atlas}) {
            const bool inAtlas = texture == &atlas;
            SCOPED_TRACE(inAtlas ? "in an atlas" : "alone");
            const Outcome outcome = inAtlas ? image.inAtlas : image.alone;
            const ZQ::_ZQTextureChunk_tag* chunk = texture->Trans(L"whole");
            if (outcome == Refused && !inAtlas) {
                EXPECT_EQ(chunk, nullptr);
                continue;
            }
            if (!chunk) {
                ADD_FAILURE() << "nothing registered";
                continue;
            }
            IDirect3DTexture9* drawn = chunk->sharedTexture ? chunk->sharedTexture : chunk->texture;
            if (outcome == Refused) {
                EXPECT_EQ(drawn, nullptr);
                continue;
            }
            EXPECT_EQ(chunk->pixel.right, 37.0f);
            EXPECT_EQ(chunk->pixel.bottom, 23.0f);
            ASSERT_NE(drawn, nullptr);
            int right = 0;
            for (int q = 0; q < 4; ++q) {
                const D3DCOLOR expected = (image.grey ? greys : colours)[q];
                right += twodtest::Near(ColourAt(drawn, samples[q].x, samples[q].y) | 0xFF000000, expected | 0xFF000000,
                                        image.tolerance);
            }
            if (outcome == Loads)
                EXPECT_EQ(right, 4) << "quadrants in their colours";
            else
                EXPECT_LT(right, 4) << "Wine now draws it right: it loads";
        }
    }
}

namespace {

std::vector<std::wstring> g_messages;

void CALLBACK KeepMessage(const wchar_t* message, void* context) {
    static_cast<std::vector<std::wstring>*>(context)->push_back(message);
}

} // namespace

// Every file a loader drops, every name it cannot find, says which and why on the message channel.
// Nothing else about the loaders changes.
TEST(Messages, EachDropSaysTheFileAndTheReason) {
    const std::wstring folder = TempFolder();
    const Bytes junk = {'n', 'o', 't', ' ', 'a', ' ', 'f', 'i', 'l', 'e', ' ', 'o', 'f', ' ', 'i', 't', 's'};
    const std::wstring badAtlas = folder + L"\\bad.te", badAnimation = folder + L"\\bad.am";
    const std::wstring badModel = folder + L"\\bad.x", ogg = folder + L"\\ding.ogg", spline = folder + L"\\bad.spl";
    for (const std::wstring* path : {&badAtlas, &badAnimation, &badModel, &ogg, &spline})
        ASSERT_TRUE(WriteAll(*path, junk));
    ZQ::ZQSprite sprite(Device());
    ZQ::ZQAnimate animate(&sprite);
    ZQ::ZQSpline paths(nullptr, 0, 0);
    ZQ::ZQFont fonts(Device());
    ZQ::_3D::ZQ3DObject models(Device());
    ZQ::ZQSound board(twodtest::App()->GethWnd(), DSSCL_PRIORITY);
    const wchar_t* const ding = L"ding";
    struct Case {
        std::function<void()> drop;
        std::wstring says;
    };
    const Case cases[] = {
        {[&] { sprite.Entry(L"photo", EnvFile(L"ZQ_FIELD_IMAGES", L"png-16bit.png").c_str(), false); },
         L"png-16bit.png: the platform cannot decode it (a 16-bit PNG)"},
        {[&] { sprite.Entry(L"logo", L"no-such-logo.png", false); }, L"ZQTexture::Entry: no-such-logo.png: not found"},
        {[&] { sprite.Entry(badAtlas.c_str()); }, badAtlas + L" File Error"},
        {[&] { sprite.Entry(L"no-such-atlas.te"); }, L"no-such-atlas.te: not found"},
        {[&] { animate.Entry(badAnimation.c_str()); }, badAnimation + L" File Error"},
        {[&] { paths.Entry(spline.c_str(), 0x5A51, 1); }, L"bad.spl: its header words are"},
        {[&] { fonts.Entry(1, L"no-such-font.ttf", L"Nothing", 20, 0, 400, 1, FALSE, 0, 0, 0, 0); },
         L"ZQFont::Entry: no-such-font.ttf: not found"},
        {[&] { models.Entry(L"model", badModel.c_str()); }, L"bad.x: not a .x file"},
        {[&] { board.Entry(L"tone", L"no-such-tone.wav"); }, L"ZQSound::Entry: no-such-tone.wav: not found"},
        {[&] { board.Entry(ding, ogg.c_str()); }, L"ding.ogg: neither a .WAV nor an .MP3 file"},
        {[&] { twodtest::App()->Trans(L"Nowhere"); }, L"no scene is registered as \"Nowhere\""},
    };
    ZQ::ZQSetMessageFunc(KeepMessage, &g_messages);
    for (const Case& c : cases) {
        g_messages.clear();
        c.drop();
        bool said = false;
        for (const std::wstring& message : g_messages)
            said = said || message.find(c.says) != std::wstring::npos;
        EXPECT_TRUE(said) << "expected \"" << std::string(c.says.begin(), c.says.end()) << "\", got "
                          << g_messages.size() << " messages";
    }
    ZQ::ZQSetMessageFunc(nullptr, nullptr);
    g_messages.clear();
    sprite.Entry(L"logo", L"no-such-logo.png", false);
    EXPECT_TRUE(g_messages.empty()) << "no function, no call";

    // The entry of another kind keeps the name pointer, and playing it does nothing, as for an unknown name.
    EXPECT_EQ(static_cast<void*>(board.Trans(L"ding")), static_cast<const void*>(ding));
    EXPECT_FALSE(board.Play(L"ding", true, 0, 0));
    EXPECT_FALSE(board.isPlay(L"ding"));
    board.Stop(L"ding");
    board.Stop();
}
