// The field corpus: MP3s and waves as a kiosk meets them (made by MakeTestSounds.cmake, a few here), each
// given to the board. A file either loads with the format and length it has and plays, or registers nothing.
#include "SoundTestSupport.h"

#include <gtest/gtest.h>
#include <mmreg.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <tuple>
#include <utility>

using namespace soundtest;
using ZQ::ZQSound;
using Bytes = std::vector<unsigned char>;

namespace {

struct Chunk {
    std::string id;
    Bytes body;
};

std::vector<Chunk> ChunksOf(const Bytes& riff) {
    std::vector<Chunk> chunks;
    for (size_t at = 12; at + 8 <= riff.size();) {
        uint32_t size;
        memcpy(&size, &riff[at + 4], 4);
        size_t end = std::min(riff.size(), at + 8 + size);
        chunks.push_back(
            {std::string(riff.begin() + at, riff.begin() + at + 4), Bytes(riff.begin() + at + 8, riff.begin() + end)});
        at = end + (size & 1);
    }
    return chunks;
}

Bytes RiffOf(const std::vector<Chunk>& chunks) {
    Bytes bytes = {'R', 'I', 'F', 'F', 0, 0, 0, 0, 'W', 'A', 'V', 'E'};
    for (const Chunk& chunk : chunks) {
        bytes.insert(bytes.end(), chunk.id.begin(), chunk.id.end());
        uint32_t size = static_cast<uint32_t>(chunk.body.size());
        bytes.insert(bytes.end(), reinterpret_cast<unsigned char*>(&size), reinterpret_cast<unsigned char*>(&size) + 4);
        bytes.insert(bytes.end(), chunk.body.begin(), chunk.body.end());
        if (size & 1)
            bytes.push_back(0);
    }
    uint32_t riffSize = static_cast<uint32_t>(bytes.size() - 8);
    memcpy(&bytes[4], &riffSize, 4);
    return bytes;
}

Chunk& Find(std::vector<Chunk>& chunks, const char* id) {
    for (Chunk& chunk : chunks)
        if (chunk.id == id)
            return chunk;
    return chunks.front();
}

std::wstring CorpusFile(const wchar_t* name) {
    return Data((std::wstring(L"corpus\\") + name).c_str());
}

std::vector<Chunk> Corpus(const wchar_t* name) {
    return ChunksOf(ReadAll(CorpusFile(name)));
}

// An odd-sized list chunk, padded as RIFF asks: a reader that forgets the pad loses the next chunk.
const Chunk kOddList = {"LIST", {'I', 'N', 'F', 'O', 'I', 'N', 'A', 'M', 5, 0, 0, 0, 'C', 'o', 'i', 'n', 0}};

// Waves sox does not write: chunks around and between "fmt " and "data", odd sizes, a 16-byte float block
// and a hand-made WAVE_FORMAT_EXTENSIBLE.
void MakeHandWrittenWaves() {
    std::vector<Chunk> stereo = Corpus(L"wav-s16-2.wav"), odd = Corpus(L"wav-u8-1.wav"),
                       floats = Corpus(L"wav-f32-1.wav");
    auto write = [](const wchar_t* name, const std::vector<Chunk>& chunks) {
        WriteAll(CorpusFile(name), RiffOf(chunks));
    };
    write(L"wav-list-before-fmt.wav", {kOddList, Find(stereo, "fmt "), Find(stereo, "data")});
    write(L"wav-odd-chunk-between.wav", {Find(stereo, "fmt "), {"junk", {1, 2, 3}}, Find(stereo, "data")});
    write(L"wav-data-before-fmt.wav", {Find(stereo, "data"), Find(stereo, "fmt ")});
    write(L"wav-u8-1-odd-data-then-list.wav", {Find(odd, "fmt "), Find(odd, "data"), kOddList});

    // A float block without its extra count, before a data chunk shorter than the count the "da" of "data" reads.
    Chunk shortFloat = Find(floats, "data");
    shortFloat.body.resize(2205 * 4);
    Chunk fmt16 = Find(floats, "fmt ");
    fmt16.body.resize(16);
    write(L"wav-f32-1-fmt16.wav", {fmt16, shortFloat});

    Chunk extensible = Find(stereo, "fmt ");
    const unsigned char extra[] = {22, 0, 16, 0, 3, 0, 0, 0}; // extra count, valid bits, front left and right
    const GUID pcm = {WAVE_FORMAT_PCM, 0x0000, 0x0010, {0x80, 0x00, 0x00, 0xAA, 0x00, 0x38, 0x9B, 0x71}};
    extensible.body.resize(16);
    extensible.body[0] = 0xFE, extensible.body[1] = 0xFF;
    extensible.body.insert(extensible.body.end(), extra, extra + sizeof extra);
    const unsigned char* subFormat = reinterpret_cast<const unsigned char*>(&pcm);
    extensible.body.insert(extensible.body.end(), subFormat, subFormat + sizeof pcm);
    write(L"wav-ext16-2.wav", {extensible, Find(stereo, "data")});
}

// Under Wine the media reader offers an MP3 only at its own rate and channels, so only 22,050 Hz stereo
// pieces give the board its one format; on Windows the reader converts and more of these load.
const wchar_t* const kRefused[] = {
    L"cbr-8000-1.mp3",  L"cbr-8000-2.mp3",  L"cbr-11025-1.mp3", L"cbr-11025-2.mp3",        L"cbr-16000-1.mp3",
    L"cbr-16000-2.mp3", L"cbr-22050-1.mp3", L"cbr-32000-1.mp3", L"cbr-32000-2.mp3",        L"cbr-44100-1.mp3",
    L"cbr-44100-2.mp3", L"cbr-48000-1.mp3", L"cbr-48000-2.mp3", L"vbr-noxing-44100-2.mp3", L"vbr-22050-1.mp3",
    L"wav-ulaw-1.wav",  L"wav-adpcm-1.wav"};

struct Case {
    const wchar_t* file;
    WORD tag, channels;
    DWORD rate;
    WORD bits;
    double seconds; // a wave's exact length; at least this much decoded MP3
};

const WORD kPcm = WAVE_FORMAT_PCM, kFloat = WAVE_FORMAT_IEEE_FLOAT, kExtensible = WAVE_FORMAT_EXTENSIBLE;
const Case kLoads[] = {
    {L"cbr-22050-2.mp3", kPcm, 2, 22050, 16, 0.3},         {L"vbr-22050-2.mp3", kPcm, 2, 22050, 16, 0.3},
    {L"vbr-noxing-22050-2.mp3", kPcm, 2, 22050, 16, 0.3},  {L"cbr-noxing-22050-2.mp3", kPcm, 2, 22050, 16, 0.3},
    {L"id3v1-22050-2.mp3", kPcm, 2, 22050, 16, 0.3},       {L"id3v2-22050-2.mp3", kPcm, 2, 22050, 16, 0.3},
    {L"id3both-22050-2.mp3", kPcm, 2, 22050, 16, 0.3},     {L"wav-u8-1.wav", kPcm, 1, 22050, 8, 0.3},
    {L"wav-s16-1.wav", kPcm, 1, 22050, 16, 0.3},           {L"wav-s16-2.wav", kPcm, 2, 22050, 16, 0.3},
    {L"wav-s16-1-8000.wav", kPcm, 1, 8000, 16, 0.3},       {L"wav-s16-2-48000.wav", kPcm, 2, 48000, 16, 0.3},
    {L"wav-s24-1.wav", kExtensible, 1, 22050, 24, 0.3},    {L"wav-s32-2.wav", kExtensible, 2, 22050, 32, 0.3},
    {L"wav-pcm24-2.wav", kPcm, 2, 22050, 24, 0.3},         {L"wav-pcm32-1.wav", kPcm, 1, 22050, 32, 0.3},
    {L"wav-f32-1.wav", kFloat, 1, 22050, 32, 0.3},         {L"wav-f32-2.wav", kFloat, 2, 22050, 32, 0.3},
    {L"wav-list-before-fmt.wav", kPcm, 2, 22050, 16, 0.3}, {L"wav-odd-chunk-between.wav", kPcm, 2, 22050, 16, 0.3},
    {L"wav-data-before-fmt.wav", kPcm, 2, 22050, 16, 0.3}, {L"wav-u8-1-odd-data-then-list.wav", kPcm, 1, 22050, 8, 0.3},
    {L"wav-f32-1-fmt16.wav", kFloat, 1, 22050, 32, 0.1},   {L"wav-ext16-2.wav", kExtensible, 2, 22050, 16, 0.3}};

} // namespace

TEST(ZQSoundCorpus, EachFileLoadsWithItsFormatAndLengthOrRegistersNothing) {
    MakeHandWrittenWaves();
    ZQSound board(Window(), DSSCL_PRIORITY);
    std::vector<std::pair<const Case*, IDirectSoundBuffer*>> loaded;
    for (const Case& c : kLoads) {
        // The refusals come between pieces that load: the board's reader goes on after one.
        for (const wchar_t* file : kRefused)
            if (&c == kLoads + 1) {
                board.Entry(file, CorpusFile(file).c_str());
                EXPECT_EQ(board.Trans(file), nullptr) << file << " loaded";
                EXPECT_FALSE(board.Play(file, true, 0, 0)) << file;
            }
        board.Entry(c.file, CorpusFile(c.file).c_str());
        IDirectSoundBuffer* buffer = board.Trans(c.file);
        SCOPED_TRACE(testing::Message() << c.file);
        if (!buffer) {
            ADD_FAILURE() << "refused";
            continue;
        }
        WAVEFORMATEX format = {};
        buffer->GetFormat(&format, sizeof format, nullptr);
        EXPECT_EQ(std::make_tuple(format.wFormatTag, format.nChannels, format.nSamplesPerSec, format.wBitsPerSample),
                  std::make_tuple(c.tag, c.channels, c.rate, c.bits));
        const double bytesPerSecond = c.rate * c.channels * c.bits / 8.0;
        void* bytes = nullptr;
        DWORD length = 0;
        ASSERT_EQ(buffer->Lock(0, 0, &bytes, &length, nullptr, nullptr, DSBLOCK_ENTIREBUFFER), S_OK);
        if (wcsstr(c.file, L".mp3")) {
            // The size comes from the piece's duration: a frame or two of encoder delay and padding more.
            EXPECT_GE(length, c.seconds * bytesPerSecond);
            EXPECT_LE(length, (c.seconds + 0.15) * bytesPerSecond);
            Tone tone = FindTone(static_cast<short*>(bytes), length / 4, 2, c.rate);
            EXPECT_NEAR(tone.frequency, 440, 10);
            EXPECT_GT(tone.seconds, c.seconds - 0.05);
        } else {
            // The buffer holds the file's data chunk, byte for byte.
            std::vector<Chunk> chunks = Corpus(c.file);
            const Bytes& data = Find(chunks, "data").body;
            EXPECT_EQ(length, static_cast<DWORD>(c.seconds * c.rate + 0.5) * c.channels * c.bits / 8);
            ASSERT_EQ(length, data.size());
            EXPECT_EQ(memcmp(bytes, data.data(), length), 0);
        }
        buffer->Unlock(bytes, length, nullptr, 0);
        loaded.push_back({&c, buffer});
    }

    // Everything that loaded plays, all at once.
    for (auto& sound : loaded)
        EXPECT_TRUE(board.Play(sound.first->file, true, 0, DSBPLAY_LOOPING));
    Sleep(150);
    for (auto& sound : loaded) {
        EXPECT_TRUE(board.isPlay(sound.first->file)) << sound.first->file;
        EXPECT_GT(Position(sound.second), 0u) << sound.first->file << ": the mixer has moved on";
    }
    board.Stop();
}
