#include "SoundTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <thread>

using namespace soundtest;
using ZQ::ZQMp3File;
using ZQ::ZQSound;

namespace {

class TestBoard : public ZQSound {
public:
    TestBoard() : ZQSound(Window(), DSSCL_PRIORITY) {}
    using ZQSound::FillBufferWithSound;
    using ZQSound::RestoreBuffer;
};

} // namespace

TEST(ZQSound, APlayedToneComesOutAtItsLevelAndLength) {
    {
        ZQSound board(Window(), DSSCL_PRIORITY);
        board.Entry(L"Tone", Data(L"tone.wav").c_str());
        ASSERT_TRUE(board.Play(L"TONE", true, 0, 0));
        EXPECT_TRUE(board.isPlay(L"tone"));
        for (int i = 0; i < 300 && board.isPlay(L"tone"); ++i)
            Sleep(10);
        EXPECT_FALSE(board.isPlay(L"tone"));
        Sleep(200); // the mixer's last periods
    }
    // What ALSA's file plugin (ZQ_SOUND_CAPTURE) captured: 16-bit stereo, 44,100 Hz.
    std::vector<unsigned char> played = ReadAll(Data(L"played.raw"));
    Tone tone = FindTone(reinterpret_cast<const short*>(played.data()), played.size() / 4, 2, 44100);
    EXPECT_NEAR(tone.seconds, 0.5, 0.05);
    EXPECT_NEAR(tone.peak, 16384, 1000);
    EXPECT_NEAR(tone.frequency, 440, 5);
}

TEST(ZQSound, StopRewindsEveryBufferAndRewindRestarts) {
    TestBoard board;
    board.Entry(L"Long", Data(L"long.wav").c_str());
    board.Entry(L"Tone", Data(L"tone8.wav").c_str());
    IDirectSoundBuffer* longer = board.Trans(L"long");
    ASSERT_NE(longer, nullptr);
    ASSERT_NE(board.Trans(L"TONE"), nullptr);

    EXPECT_TRUE(board.Play(L"long", false, 0, DSBPLAY_LOOPING));
    EXPECT_TRUE(board.Play(L"tone", false, 0, DSBPLAY_LOOPING));
    Sleep(500);
    DWORD before = Position(longer);
    EXPECT_GT(before, 2000u) << "playing";
    EXPECT_TRUE(board.Play(L"long", false, 0, 0));
    EXPECT_GE(Position(longer), before) << "without rewind a playing buffer goes on";
    EXPECT_TRUE(board.Play(L"long", true, 0, 0));
    EXPECT_LT(Position(longer), before) << "rewind restarts it";

    board.Stop();
    for (const wchar_t* name : {L"long", L"tone"}) {
        EXPECT_FALSE(board.isPlay(name));
        EXPECT_EQ(Position(board.Trans(name)), 0u);
    }
    board.Play(L"tone", false, 0, 0);
    board.Stop(L"Tone");
    EXPECT_EQ(Position(board.Trans(L"tone")), 0u);

    EXPECT_FALSE(board.Play(L"missing", true, 0, 0));
    EXPECT_FALSE(board.isPlay(L"missing"));
    bool restored = true;
    EXPECT_EQ(board.RestoreBuffer(longer, &restored), S_FALSE) << "not lost";
    EXPECT_FALSE(restored);
}

TEST(ZQSound, WhatAWaveCannotFillIsSilenceOfItsDepth) {
    TestBoard board;
    for (const wchar_t* name : {L"tone8.wav", L"tone.wav"}) {
        board.Entry(name, Data(name).c_str());
        IDirectSoundBuffer* buffer = board.Trans(name);
        ASSERT_NE(buffer, nullptr);
        // A wave closed before the fill keeps its size and format but reads nothing.
        ZQ::ZQWaveFile wave;
        std::wstring path = Data(name);
        ASSERT_EQ(wave.Open(&path[0], nullptr, 1), S_OK);
        wave.Close();
        EXPECT_EQ(board.FillBufferWithSound(buffer, &wave, false), S_OK);
        void* bytes = nullptr;
        DWORD length = 0;
        ASSERT_EQ(buffer->Lock(0, 0, &bytes, &length, nullptr, nullptr, DSBLOCK_ENTIREBUFFER), S_OK);
        const unsigned char silence = wave.GetFormat()->wBitsPerSample == 8 ? 128 : 0;
        const unsigned char* area = static_cast<unsigned char*>(bytes);
        EXPECT_EQ(length, wave.GetSize());
        EXPECT_EQ(std::count(area, area + length, silence), static_cast<long>(length)) << name;
        buffer->Unlock(bytes, length, nullptr, 0);
    }
}

TEST(ZQSound, LookupsFromSeveralThreadsEachFindTheirOwnBuffer) {
    // Names of different lengths, so that a lookup that shares state with another would find the other's buffer.
    const wchar_t* names[] = {L"Coin", L"Ticket printed", L"Start", L"Bonus round fanfare, long version"};
    const wchar_t* lookedUp[] = {L"coin", L"TICKET PRINTED", L"sTART", L"bonus ROUND fanfare, long version"};
    const int threads = 4, rounds = 50000, playEvery = 16;
    ZQSound board(Window(), DSSCL_PRIORITY);
    IDirectSoundBuffer* buffers[threads];
    for (int i = 0; i < threads; ++i) {
        board.Entry(names[i], Data(i % 2 ? L"tone.wav" : L"long.wav").c_str());
        buffers[i] = board.Trans(names[i]);
        ASSERT_NE(buffers[i], nullptr);
        ASSERT_TRUE(board.Play(names[i], false, 0, DSBPLAY_LOOPING));
    }
    std::atomic<int> wrong(0);
    std::vector<std::thread> workers;
    for (int t = 0; t < threads; ++t)
        workers.emplace_back([&, t] {
            int bad = 0;
            for (int round = 0; round < rounds; ++round) {
                bad += board.Trans(lookedUp[t]) != buffers[t];
                bad += board.Trans(L"Missing") != nullptr;
                if (round % playEvery == 0)
                    bad += !board.Play(lookedUp[t], false, 0, DSBPLAY_LOOPING) + !board.isPlay(lookedUp[t]);
            }
            wrong += bad;
        });
    for (std::thread& worker : workers)
        worker.join();
    EXPECT_EQ(wrong, 0);
    board.Stop();
}

TEST(ZQMp3File, BadFilesFailAndTheStreamKeepsToItsAnswers) {
    IDirectSound8* device = nullptr;
    ASSERT_EQ(DirectSoundCreate8(nullptr, &device, nullptr), S_OK);
    device->SetCooperativeLevel(Window(), DSSCL_PRIORITY);
    {
        ZQMp3File mp3(device);
        unsigned char* value = reinterpret_cast<unsigned char*>(1);
        EXPECT_EQ(mp3.GetHeaderAttribute(L"Duration", &value), E_UNEXPECTED);
        IDirectSoundBuffer* buffer = mp3.Open(Data(L"music.mp3").c_str());
        ASSERT_NE(buffer, nullptr);
        EXPECT_EQ(mp3.GetSize(), 176400u);
        EXPECT_EQ(mp3.GetHeaderAttribute(L"NoSuchAttribute", &value), S_OK);
        EXPECT_EQ(value, nullptr);
        EXPECT_EQ(mp3.GetHeaderAttribute(L"Duration", nullptr), E_INVALIDARG);
        ASSERT_EQ(mp3.GetHeaderAttribute(L"Duration", &value), S_OK);
        ASSERT_NE(value, nullptr);
        QWORD duration = 0;
        memcpy(&duration, value, sizeof duration);
        EXPECT_GT(duration, 0u) << "the piece's length in 100 ns units (Wine's reader rounds it up)";
        ZQMp3File::FreeHeaderAttribute(value);
        buffer->Release();

        // Cut to a third (the reader sees the end is lost: the piece is the third that is there), not audio at all,
        // empty; and a header whose frame count says more, or far less, than the file holds: the size stays within
        // what the file's bytes can carry, and a piece longer than its size fills it and returns.
        std::vector<unsigned char> music = ReadAll(Data(L"music.mp3"));
        auto claiming = [&music](std::vector<unsigned char> frames) { // big-endian
            std::vector<unsigned char> patched = music;
            bool found = false;
            for (const char* tag : {"Xing", "Info"}) {
                auto at = std::search(patched.begin(), patched.end(), tag, tag + 4);
                if (at != patched.end() && (at[7] & 1))
                    std::copy(frames.begin(), frames.end(), at + 8), found = true;
            }
            EXPECT_TRUE(found) << "lame writes a frame count";
            return patched;
        };
        const unsigned long third = 176400 / 3, most = static_cast<unsigned long>((music.size() / 1000.0 + 1) * 88200);
        struct Case {
            const wchar_t* file;
            std::vector<unsigned char> bytes;
            unsigned long least, most; // most 0: no buffer
        } const cases[] = {
            {L"cut.mp3", {music.begin(), music.begin() + music.size() / 3}, third - 176400 / 20, third + 176400 / 20},
            {L"lying.mp3", claiming({0x7F, 0xFF, 0xFF, 0xFF}), 176400, most},
            {L"short-claim.mp3", claiming({0, 0, 0, 4}), 576 * 4, 4 * 576 * 4}, // frames of 576 samples
            {L"text.mp3", std::vector<unsigned char>(5000, 'x'), 0, 0},
            {L"empty.mp3", {}, 0, 0},
        };
        for (const Case& c : cases) {
            WriteAll(Data(c.file), c.bytes);
            IDirectSoundBuffer* opened = mp3.Open(Data(c.file).c_str());
            ASSERT_EQ(opened != nullptr, c.most > 0) << c.file;
            if (!opened)
                continue;
            EXPECT_GE(mp3.GetSize(), c.least) << c.file;
            EXPECT_LE(mp3.GetSize(), c.most) << c.file;
            opened->Release();
        }
        for (const std::wstring& path : {Data(L"missing.mp3"), std::wstring(L"\\\\.\\NUL")})
            EXPECT_EQ(mp3.Open(path.c_str()), nullptr);
    }
    device->Release();

    ZQ::WMAStream* stream = new ZQ::WMAStream;
    STATSTG stat;
    EXPECT_EQ(stream->Stat(&stat, STATFLAG_NONAME), E_UNEXPECTED);
    EXPECT_EQ(stream->Open(L"\\\\.\\NUL"), E_FAIL) << "not a disk file";
    EXPECT_EQ(stream->Open(Data(L"missing.mp3").c_str()), HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND));
    // A file opened before and never closed would keep anyone else from writing it.
    EXPECT_EQ(stream->Open(Data(L"cut.mp3").c_str()), S_OK);
    ASSERT_EQ(stream->Open(Data(L"music.mp3").c_str()), S_OK);
    HANDLE writer = CreateFileW(Data(L"cut.mp3").c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_NE(writer, INVALID_HANDLE_VALUE) << "an open closes the file opened before";
    CloseHandle(writer);
    EXPECT_EQ(stream->Stat(&stat, STATFLAG_DEFAULT), E_INVALIDARG);
    EXPECT_EQ(stream->Stat(&stat, STATFLAG_NONAME), S_OK);
    EXPECT_EQ(stat.cbSize.QuadPart, ReadAll(Data(L"music.mp3")).size());
    void* object = nullptr;
    EXPECT_EQ(stream->QueryInterface(__uuidof(IStream), &object), S_OK);
    EXPECT_EQ(stream->QueryInterface(__uuidof(IPersist), &object), E_NOTIMPL);
    LARGE_INTEGER move;
    move.QuadPart = 0x100000010LL;
    ULARGE_INTEGER position;
    EXPECT_EQ(stream->Seek(move, 0, &position), S_OK);
    EXPECT_EQ(position.QuadPart, 0x10u) << "the low 32 bits only";
    EXPECT_EQ(stream->Seek(move, 3, &position), E_INVALIDARG);
    EXPECT_EQ(stream->Release(), 1u);
    EXPECT_EQ(stream->Release(), 0u);
}

// Names are format text without arguments ("%%" is one "%", other conversions stay) and ignore case; a
// missing file or a format no sound has registers nothing.
TEST(ZQSound, NamesAreFormatTextAndMalformedWavesRegisterNothing) {
    ZQSound board(Window(), DSSCL_PRIORITY);
    const std::pair<const wchar_t*, const wchar_t*> names[] = {
        {L"V100%%", L"v100%"}, {L"a%sb", L"A%SB"}, {L"%n%d%ls", L"%N%D%LS"}, {L"50%", L"50%"}};
    for (const auto& name : names) {
        board.Entry(name.first, Data(L"tone.wav").c_str());
        EXPECT_NE(board.Trans(name.second), nullptr) << name.second;
    }
    EXPECT_EQ(board.Trans(L"V100%%"), nullptr) << "a lookup's name is not format text";
    board.Entry(L"Broken", Data(L"missing.wav").c_str());
    EXPECT_EQ(board.Trans(L"broken"), nullptr);

    // Formats no sound has, in a file that is otherwise whole (16-bit mono): some platforms would take them.
    struct Case {
        const char* name;
        uint16_t channels;
        uint32_t rate;
        uint16_t blockAlign, bits;
    } const cases[] = {
        {"zero channels", 0, 22050, 2, 16}, {"huge rate", 1, 0xFFFFFFF0u, 2, 16},    {"zero rate", 1, 0, 2, 16},
        {"zero block", 1, 22050, 0, 16},    {"block not a sample", 1, 22050, 3, 16}, {"zero bits", 1, 22050, 2, 0},
    };
    std::vector<unsigned char> tone = ReadAll(Data(L"tone.wav"));
    for (const Case& c : cases) {
        std::vector<unsigned char> bytes = tone;
        memcpy(&bytes[22], &c.channels, 2);
        memcpy(&bytes[24], &c.rate, 4);
        memcpy(&bytes[32], &c.blockAlign, 2);
        memcpy(&bytes[34], &c.bits, 2);
        WriteAll(Data(L"odd.wav"), bytes);
        board.Entry(L"Odd", Data(L"odd.wav").c_str());
        EXPECT_EQ(board.Trans(L"odd"), nullptr) << c.name;
        EXPECT_FALSE(board.Play(L"odd", true, 0, 0)) << c.name;
    }
}
