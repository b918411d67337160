#include "ZQ/sound/ZQSound.h"
#include "ZQ/core/ZQDiagnostics.h"

#include "ZQ/frame/ZQMediaSearch.h"
#include "src/core/ZQFileBytes.h"
#include "src/formats/ZQNameText.h"

#include <cstring>
#include <cwchar>
#include <new>

namespace ZQ {

namespace {

const HRESULT kBufferLost = static_cast<HRESULT>(0x88780096); // DSERR_BUFFERLOST

IDirectSoundBuffer* Buffer(void* value) { return static_cast<IDirectSoundBuffer*>(value); }

void Rewind(IDirectSoundBuffer* buffer) {
    buffer->Stop();
    buffer->SetCurrentPosition(0);
}

// Platforms differ in what they make of a format no sound can have (Wine takes a rate of four billion, then
// hangs playing it): such a file is refused here, on every platform. Anything else is the device's to judge.
bool Playable(const WAVEFORMATEX* format, unsigned long bytes) {
    if (!format || format->nChannels == 0 || format->wBitsPerSample == 0 || format->nBlockAlign == 0 ||
        format->nSamplesPerSec < DSBFREQUENCY_MIN || format->nSamplesPerSec > DSBFREQUENCY_MAX ||
        bytes < format->nBlockAlign || bytes > DSBSIZE_MAX)
        return false;
    return format->wFormatTag != WAVE_FORMAT_PCM ||
           (format->wBitsPerSample % 8 == 0 && format->nBlockAlign == format->nChannels * format->wBitsPerSample / 8);
}

} // namespace

ZQSound::ZQSound(HWND window, unsigned long level) : ZQMp3File(nullptr), m_device(nullptr) {
    if (FAILED(DirectSoundCreate8(nullptr, &m_device, nullptr))) {
        m_device = nullptr;
        return;
    }
    if (SUCCEEDED(m_device->SetCooperativeLevel(window, level)))
        SetDevice(m_device);
}

ZQSound::~ZQSound() {
    for (ZQMapper::iterator it = m_sounds.begin(); it != m_sounds.end(); ++it)
        if (IsBuffer(it->value))
            Buffer(it->value)->Release();
    if (m_device)
        m_device->Release();
}

void ZQSound::Entry(const wchar_t* name, const wchar_t* file) {
    if (!m_device || !name || !file)
        return;
    wchar_t found[MAX_PATH] = {};
    if (ZQFindDXSDKMediaFileCch(found, MAX_PATH, file) == E_INVALIDARG)
        return;
    ZQString path(L"%s", found);
    path.upper();
    void* value;
    if (wcsstr(path, L".WAV")) {
        value = Create(found, DSBCAPS_CTRLVOLUME, GUID());
    } else if (wcsstr(path, L".MP3")) {
        value = ZQMp3File::Open(found);
    } else {
        value = const_cast<wchar_t*>(name); // deliberately the name itself, not a buffer
        // Remembered, so that nothing ever calls through it as a buffer.
        m_names.push_back(value);
        ZQMessage(L"ZQSound::Entry: %ls: neither a .WAV nor an .MP3 file: \"%ls\" is registered without a sound and "
                  L"plays nothing",
                  file, name);
    }
    if (!value) {
        if (GetFileAttributesW(found) == INVALID_FILE_ATTRIBUTES)
            ZQReportUnreadFile(L"ZQSound::Entry", file, found);
        else
            ZQMessage(L"ZQSound::Entry: %ls: not a sound the device can play", file);
        return;
    }
    ZQString key(L"%ls", formats::NameFromFormatText(name).c_str());
    m_sounds.insert(key, value);
}

bool ZQSound::IsBuffer(void* value) const {
    for (ZQVector::iterator it = m_names.begin(); it != m_names.end(); ++it)
        if (*it == value)
            return false;
    return value != nullptr;
}

IDirectSoundBuffer* ZQSound::SoundBuffer(const wchar_t* name) {
    void* value = Trans(name);
    return IsBuffer(value) ? Buffer(value) : nullptr;
}

// The map's read-only lookup: buttons on other threads may play sounds at the same time.
IDirectSoundBuffer* ZQSound::Trans(const wchar_t* name) {
    return m_device ? Buffer(m_sounds.find_name(name)) : nullptr;
}

bool ZQSound::Play(const wchar_t* name, bool rewind, unsigned long priority, unsigned long flags) {
    IDirectSoundBuffer* buffer = SoundBuffer(name);
    if (!buffer)
        return false;
    DWORD status = 0;
    if (rewind && SUCCEEDED(buffer->GetStatus(&status)) && (status & DSBSTATUS_PLAYING))
        buffer->SetCurrentPosition(0);
    buffer->Play(0, priority, flags);
    return true;
}

bool ZQSound::isPlay(const wchar_t* name) {
    IDirectSoundBuffer* buffer = SoundBuffer(name);
    DWORD status = 0;
    return buffer && SUCCEEDED(buffer->GetStatus(&status)) && (status & DSBSTATUS_PLAYING);
}

void ZQSound::Stop() {
    for (ZQMapper::iterator it = m_sounds.begin(); it != m_sounds.end(); ++it)
        if (IsBuffer(it->value))
            Rewind(Buffer(it->value));
}

void ZQSound::Stop(const wchar_t* name) {
    if (IDirectSoundBuffer* buffer = SoundBuffer(name))
        Rewind(buffer);
}

IDirectSoundBuffer* ZQSound::Create(const wchar_t* file, unsigned long flags, GUID algorithm) {
    ZQWaveFile* wave = new (std::nothrow) ZQWaveFile;
    if (!wave)
        return nullptr;
    if (FAILED(wave->Open(const_cast<wchar_t*>(file), nullptr, 1)) || !Playable(wave->GetFormat(), wave->GetSize())) {
        delete wave;
        return nullptr;
    }
    DSBUFFERDESC description = {};
    // The structure's own size (36 bytes in a 32-bit build).
    description.dwSize = sizeof description;
    description.dwFlags = flags;
    description.dwBufferBytes = wave->GetSize();
    description.lpwfxFormat = wave->GetFormat();
    description.guid3DAlgorithm = algorithm;
    IDirectSoundBuffer* buffer = nullptr;
    if (FAILED(m_device->CreateSoundBuffer(&description, &buffer, nullptr))) {
        delete wave;
        return nullptr;
    }
    FillBufferWithSound(buffer, wave, false);
    delete wave;
    return buffer;
}

HRESULT ZQSound::FillBufferWithSound(IDirectSoundBuffer* buffer, ZQWaveFile* wave, bool repeat) {
    if (!buffer || !wave)
        return CO_E_NOTINITIALIZED;
    HRESULT hr = RestoreBuffer(buffer, nullptr);
    if (FAILED(hr))
        return hr;
    void* bytes = nullptr;
    DWORD locked = 0;
    hr = buffer->Lock(0, wave->GetSize(), &bytes, &locked, nullptr, nullptr, 0);
    if (FAILED(hr))
        return hr;
    if (!bytes) {
        buffer->Unlock(bytes, locked, nullptr, 0);
        return E_FAIL;
    }
    unsigned char* area = static_cast<unsigned char*>(bytes);
    const WAVEFORMATEX* format = wave->GetFormat();
    const int silence = format && format->wBitsPerSample == 8 ? 128 : 0;

    unsigned long read = 0;
    wave->ResetFile();
    wave->Read(area, locked, &read);
    if (repeat && read > 0) {
        while (read < locked) {
            unsigned long more = 0;
            if (FAILED(wave->ResetFile()) || FAILED(wave->Read(area + read, locked - read, &more)) || more == 0)
                break;
            read += more;
        }
    }
    if (read < locked)
        memset(area + read, silence, locked - read);
    buffer->Unlock(bytes, locked, nullptr, 0);
    return S_OK;
}

HRESULT ZQSound::RestoreBuffer(IDirectSoundBuffer* buffer, bool* restored) {
    if (!buffer)
        return CO_E_NOTINITIALIZED;
    if (restored)
        *restored = false;
    DWORD status = 0;
    HRESULT hr = buffer->GetStatus(&status);
    if (FAILED(hr))
        return hr;
    if (!(status & DSBSTATUS_BUFFERLOST))
        return S_FALSE;
    // Two Restore calls a round, deliberately.
    do {
        if (buffer->Restore() == kBufferLost)
            Sleep(10);
    } while (buffer->Restore() == kBufferLost);
    if (restored)
        *restored = true;
    return S_OK;
}

} // namespace ZQ
