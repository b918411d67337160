#include "SoundTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

using namespace soundtest;
using ZQ::ZQWaveFile;
using Bytes = std::vector<unsigned char>;

namespace {

// Appends a four-character code, or a little-endian value of size bytes.
void Put(Bytes& bytes, const char* fourCC) {
    bytes.insert(bytes.end(), fourCC, fourCC + 4);
}
void Put(Bytes& bytes, uint32_t value, int size) {
    for (int i = 0; i < size; ++i)
        bytes.push_back(static_cast<unsigned char>(value >> (8 * i)));
}

/// A wave file: RIFF form, "fmt " of fmtSize bytes (PCM mono), "data" declaring dataSize, holding data bytes;
/// with cut, only its first cut bytes.
Bytes Wave(const char* riff, const char* form, uint32_t fmtSize, uint32_t dataSize, size_t data, size_t cut = 0) {
    Bytes bytes, fmt;
    Put(bytes, riff);
    Put(bytes, static_cast<uint32_t>(20 + fmtSize + 8 + data), 4);
    Put(bytes, form);
    Put(bytes, "fmt ");
    Put(bytes, fmtSize, 4);
    Put(fmt, 1, 2), Put(fmt, 1, 2), Put(fmt, 22050, 4), Put(fmt, 44100, 4), Put(fmt, 2, 2), Put(fmt, 16, 2);
    fmt.resize(fmtSize);
    bytes.insert(bytes.end(), fmt.begin(), fmt.end());
    Put(bytes, "data");
    Put(bytes, dataSize, 4);
    for (size_t i = 0; i < data; ++i)
        bytes.push_back(static_cast<unsigned char>(i));
    if (cut)
        bytes.resize(cut);
    return bytes;
}

} // namespace

TEST(ZQWaveFile, AWrittenFileReadsBackIdentically) {
    std::wstring path = Data(L"written.wav");
    WAVEFORMATEX format = {WAVE_FORMAT_PCM, 2, 22050, 88200, 4, 16, 0};
    Bytes samples(70000); // more than one I/O buffer
    for (size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<unsigned char>(i * 7);
    {
        ZQWaveFile wave;
        ASSERT_EQ(wave.Open(&path[0], &format, 2), S_OK);
        unsigned int written = 0;
        EXPECT_EQ(wave.Write(static_cast<unsigned int>(samples.size()), samples.data(), &written), S_OK);
        EXPECT_EQ(written, samples.size());
        EXPECT_EQ(wave.Close(), S_OK);
    }
    Bytes file = ReadAll(path);
    Bytes fact = {'f', 'a', 'c', 't', 4, 0, 0, 0, 0, 0, 0, 0};
    EXPECT_NE(std::search(file.begin(), file.end(), fact.begin(), fact.end()), file.end()) << "fact set to 0";

    ZQWaveFile wave;
    ASSERT_EQ(wave.Open(&path[0], nullptr, 1), S_OK);
    ASSERT_NE(wave.GetFormat(), nullptr);
    EXPECT_EQ(memcmp(wave.GetFormat(), &format, 16), 0);
    EXPECT_EQ(wave.GetSize(), samples.size());
    Bytes back(samples.size() + 10);
    unsigned long got = 0;
    EXPECT_EQ(wave.Read(back.data(), static_cast<unsigned long>(back.size()), &got), S_OK);
    back.resize(got);
    EXPECT_EQ(back, samples);
    EXPECT_EQ(wave.Read(back.data(), 10, &got), S_OK);
    EXPECT_EQ(got, 0u) << "nothing left";
    EXPECT_EQ(wave.ResetFile(), S_OK);
    EXPECT_EQ(wave.Read(back.data(), 10, &got), S_OK);
    EXPECT_EQ(got, 10u);
}

TEST(ZQWaveFile, MalformedFilesFailWithoutAFormatAndResourcesOpenByName) {
    struct Case {
        const char* name;
        Bytes bytes;
        HRESULT result;
        bool format;
        unsigned long size;
    };
    const Case cases[] = {
        {"not RIFF", Wave("RIFX", "WAVE", 16, 100, 100), E_FAIL, false, 0},
        {"not WAVE", Wave("RIFF", "AVI ", 16, 100, 100), E_FAIL, false, 0},
        {"short fmt", Wave("RIFF", "WAVE", 14, 100, 100), E_FAIL, false, 0},
        {"no data chunk", Wave("RIFF", "WAVE", 16, 0, 0, 36), E_FAIL, true, 0},
        {"cut in fmt", Wave("RIFF", "WAVE", 16, 100, 100, 30), E_FAIL, false, 0},
        {"empty", Bytes(), E_FAIL, false, 0},
        {"text", Bytes(400, 'x'), E_FAIL, false, 0},
        // The data chunk claims 4 GB: only the bytes there count.
        {"lying data size", Wave("RIFF", "WAVE", 16, 0xFFFFFFF0u, 100), S_OK, true, 100},
    };
    for (const Case& c : cases) {
        std::wstring path = Data(L"malformed.wav");
        WriteAll(path, c.bytes);
        ZQWaveFile wave;
        EXPECT_EQ(wave.Open(&path[0], nullptr, 1), c.result) << c.name;
        EXPECT_EQ(wave.GetFormat() != nullptr, c.format) << c.name;
        EXPECT_EQ(wave.GetSize(), c.size) << c.name;
    }
    ZQWaveFile wave;
    EXPECT_EQ(wave.Open(nullptr, nullptr, 1), E_INVALIDARG);
    unsigned long got;
    unsigned char byte;
    EXPECT_EQ(wave.Read(&byte, 1, &got), CO_E_NOTINITIALIZED);

    // A name that is no file opens the program's wave resource of that name.
    wchar_t missing[] = L"ZQNOSUCHTONE", name[] = L"ZQTESTTONE";
    ASSERT_EQ(wave.Open(name, nullptr, 1), S_OK);
    ASSERT_NE(wave.GetFormat(), nullptr);
    EXPECT_EQ(wave.GetFormat()->wBitsPerSample, 8);
    EXPECT_EQ(wave.GetSize(), 2205u) << "a tenth of a second, 8-bit mono";
    EXPECT_EQ(wave.Open(missing, nullptr, 1), E_FAIL);
}

TEST(ZQWaveFile, MemoryReadsStartAtTheSamePlaceUntilReset) {
    Bytes data(300);
    for (size_t i = 0; i < data.size(); ++i)
        data[i] = static_cast<unsigned char>(i);
    WAVEFORMATEX format = {WAVE_FORMAT_PCM, 1, 22050, 22050, 1, 8, 0};
    ZQWaveFile wave;
    EXPECT_EQ(wave.OpenFromMemory(data.data(), 300, &format, 2), E_NOTIMPL);
    EXPECT_EQ(wave.OpenFromMemory(data.data(), 300, &format, 1), S_OK);
    EXPECT_EQ(wave.GetFormat(), &format);
    Bytes first(100), second(100);
    unsigned long got = 0;
    EXPECT_EQ(wave.Read(first.data(), 100, &got), S_OK);
    EXPECT_EQ(wave.Read(second.data(), 100, &got), S_OK);
    EXPECT_EQ(got, 100u);
    EXPECT_EQ(first, Bytes(data.begin(), data.begin() + 100));
    EXPECT_EQ(second, first);
    Bytes all(500);
    EXPECT_EQ(wave.Read(all.data(), 500, &got), S_OK);
    EXPECT_EQ(got, 300u);
    unsigned int written;
    EXPECT_EQ(wave.Write(1, data.data(), &written), E_NOTIMPL);
}
