#include "ZQ/sound/ZQMp3File.h"

#include "ZQ/sound/WMAStream.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <new>

namespace ZQ {

namespace {

typedef HRESULT(WINAPI* CreateReaderFunction)(IUnknown* certificate, DWORD rights, IWMReader** reader);

// Not every Windows edition has the media reader: the library looks for it only when a piece is opened,
// and keeps it loaded for the rest of the process.
CreateReaderFunction ReaderFactory() {
    static const CreateReaderFunction factory = [] {
        HMODULE module = LoadLibraryW(L"wmvcore.dll");
        return module ? reinterpret_cast<CreateReaderFunction>(
                            reinterpret_cast<void*>(GetProcAddress(module, "WMCreateReader")))
                      : nullptr;
    }();
    return factory;
}

// The format type of a WAVEFORMATEX block (WMFORMAT_WaveFormatEx).
const GUID kWaveFormatType = {0x05589f81, 0xc356, 0x11ce, {0xbf, 0x01, 0x00, 0xaa, 0x00, 0x55, 0x59, 0x5a}};
const QWORD kClockStep = 1000000; // 100 ms
const unsigned long kSlack = 8192;
const HRESULT kNotFound = static_cast<HRESULT>(0xC00D07F0); // ASF_E_NOTFOUND
// MP3 carries at least 8 kbit/s: no piece plays longer than its file's bytes at that rate.
const double kLeastBytesPerSecond = 1000.0;
// A reader that neither delivers, moves its clock nor reports for this long has stopped for good.
const DWORD kReaderSilence = 15000;
// How far the clock may run past the piece's duration without the end being reported.
const QWORD kClockOverrun = 300000000; // 30 s
const WORD kChannels = 2;
const WORD kBits = 16;
const DWORD kRate = 22050;

template <typename Interface> void ReleaseAndNull(Interface*& object) {
    if (object)
        object->Release();
    object = nullptr;
}

void CloseAndNull(HANDLE& event) {
    if (event)
        CloseHandle(event);
    event = nullptr;
}

} // namespace

ZQMp3File::ZQMp3File(IDirectSound8* device) : m_device(nullptr), m_work(nullptr), m_workCapacity(0) {
    Clear();
    m_device = device;
}

ZQMp3File::~ZQMp3File() {
    Close();
    delete[] m_work;
}

void ZQMp3File::SetDevice(IDirectSound8* device) { m_device = device; }

void ZQMp3File::Clear() {
    m_reader = nullptr;
    m_readerAdvanced = nullptr;
    m_readerAdvanced2 = nullptr;
    m_headerInfo = nullptr;
    m_format = WAVEFORMATEX();
    m_continueEvent = nullptr;
    m_dataEvent = nullptr;
    m_open = FALSE;
    m_lastResult = E_FAIL;
    m_size = 0;
    m_totalRead = 0;
    m_firstRead = TRUE;
    m_held = 0;
    m_needed = 0;
    m_endOfFile = false;
    m_clock = 0;
    m_lock = CRITICAL_SECTION();
    m_stream = nullptr;
    // The end event is deliberately dropped without being closed: one handle per opened piece.
    m_endEvent = nullptr;
}

bool ZQMp3File::PreOpen() {
    InitializeCriticalSection(&m_lock);
    m_continueEvent = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    m_dataEvent = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    CreateReaderFunction create = ReaderFactory();
    if (!m_continueEvent || !m_dataEvent || !create || FAILED(create(nullptr, 0, &m_reader)) ||
        FAILED(m_reader->QueryInterface(__uuidof(IWMReaderAdvanced), reinterpret_cast<void**>(&m_readerAdvanced))) ||
        FAILED(m_reader->QueryInterface(__uuidof(IWMReaderAdvanced2),
                                        reinterpret_cast<void**>(&m_readerAdvanced2))) ||
        FAILED(m_reader->QueryInterface(__uuidof(IWMHeaderInfo), reinterpret_cast<void**>(&m_headerInfo))))
        return false;
    m_endEvent = CreateEventW(nullptr, FALSE, FALSE, nullptr);
    return m_endEvent != nullptr;
}

IDirectSoundBuffer* ZQMp3File::Open(const wchar_t* path) {
    Close();
    if (!PreOpen())
        return nullptr;
    m_stream = new (std::nothrow) WMAStream;
    if (!m_stream || FAILED(m_stream->Open(path)) ||
        FAILED(m_readerAdvanced2->OpenStream(m_stream, static_cast<IWMReaderCallback*>(this), nullptr)) ||
        !PostOpen() || !m_device)
        return nullptr;

    DSBUFFERDESC description = {};
    // The structure's own size (36 bytes in a 32-bit build).
    description.dwSize = sizeof description;
    description.dwFlags = DSBCAPS_GETCURRENTPOSITION2 | DSBCAPS_GLOBALFOCUS | DSBCAPS_CTRLVOLUME | DSBCAPS_CTRLFREQUENCY;
    description.dwBufferBytes = m_size;
    description.lpwfxFormat = &m_format;
    IDirectSoundBuffer* buffer = nullptr;
    if (FAILED(m_device->CreateSoundBuffer(&description, &buffer, nullptr)))
        return nullptr;

    void* bytes = nullptr;
    DWORD length = 0;
    if (FAILED(buffer->Lock(0, 0, &bytes, &length, nullptr, nullptr, DSBLOCK_ENTIREBUFFER)))
        return nullptr;
    if (!bytes || length == 0) {
        buffer->Unlock(bytes, length, nullptr, 0);
        return nullptr;
    }
    unsigned long got = 0;
    bool read = Read(static_cast<unsigned char*>(bytes), length, &got);
    // A buffer whose filling failed is deliberately not released.
    if (FAILED(buffer->Unlock(bytes, length, nullptr, 0)) || !read)
        return nullptr;
    return buffer;
}

bool ZQMp3File::PostOpen() {
    if (WaitForReader(1, &m_dataEvent) != WAIT_OBJECT_0 || FAILED(m_lastResult))
        return false;
    DWORD outputs = 0;
    if (FAILED(m_reader->GetOutputCount(&outputs)) || outputs != 1)
        return false;

    DWORD formats = 0;
    if (FAILED(m_reader->GetOutputFormatCount(0, &formats)))
        return false;
    IWMOutputMediaProps* chosen = nullptr;
    unsigned char* scratch = nullptr;
    DWORD scratchSize = 0;
    for (DWORD i = 0; i < formats && !chosen; ++i) {
        IWMOutputMediaProps* props = nullptr;
        if (FAILED(m_reader->GetOutputFormat(0, i, &props)) || !props)
            continue;
        DWORD size = 0;
        if (SUCCEEDED(props->GetMediaType(nullptr, &size)) && size > scratchSize) {
            delete[] scratch;
            scratch = new (std::nothrow) unsigned char[size];
            scratchSize = scratch ? size : 0;
        }
        WM_MEDIA_TYPE* type = reinterpret_cast<WM_MEDIA_TYPE*>(scratch);
        if (scratch && size >= sizeof(WM_MEDIA_TYPE) && size <= scratchSize &&
            SUCCEEDED(props->GetMediaType(type, &size)) && type->formattype == kWaveFormatType &&
            type->cbFormat >= sizeof(PCMWAVEFORMAT) && type->pbFormat >= scratch + sizeof(WM_MEDIA_TYPE) &&
            type->pbFormat + type->cbFormat <= scratch + scratchSize) {
            m_format = WAVEFORMATEX();
            memcpy(&m_format, type->pbFormat, std::min<size_t>(type->cbFormat, sizeof m_format));
            if (m_format.wFormatTag == WAVE_FORMAT_PCM && m_format.nChannels == kChannels &&
                m_format.wBitsPerSample == kBits && m_format.nSamplesPerSec == kRate) {
                chosen = props;
                break;
            }
        }
        props->Release();
    }
    delete[] scratch;
    // Without the one format the board plays, there is nothing to set: the reader must not be given null.
    if (!chosen)
        return false;
    HRESULT hr = m_reader->SetOutputProps(0, chosen);
    ReleaseAndNull(chosen);
    if (FAILED(hr) || FAILED(m_readerAdvanced->SetUserProvidedClock(TRUE)))
        return false;
    // The buffer's size and the pacing follow from these, whatever else the reader's block said.
    m_format.nBlockAlign = kChannels * kBits / 8;
    m_format.nAvgBytesPerSec = kRate * m_format.nBlockAlign;
    m_format.cbSize = 0;

    unsigned char* duration = nullptr;
    QWORD units = 0;
    if (SUCCEEDED(GetHeaderAttribute(L"Duration", &duration)) && duration)
        memcpy(&units, duration, sizeof units);
    FreeHeaderAttribute(duration);
    double bytes = std::floor(static_cast<double>(units) / 1e7 * m_format.nAvgBytesPerSec + 0.5);
    STATSTG stat;
    if (FAILED(m_stream->Stat(&stat, STATFLAG_NONAME)))
        return false;
    double most =
        std::floor((static_cast<double>(stat.cbSize.QuadPart) / kLeastBytesPerSecond + 1) * m_format.nAvgBytesPerSec);
    if (bytes > most)
        bytes = most;
    m_size = static_cast<unsigned long>(bytes);
    m_size -= m_size % m_format.nBlockAlign;
    // No duration: no buffer to make (DirectSound takes none this small).
    if (m_size < DSBSIZE_MIN)
        return false;

    if (!m_work) {
        m_workCapacity = static_cast<unsigned long>(std::floor(m_format.nAvgBytesPerSec * 1.5 + 0.5));
        m_work = new (std::nothrow) unsigned char[m_workCapacity];
        if (!m_work) {
            m_workCapacity = 0;
            return false;
        }
    }
    m_held = 0;
    m_needed = 0;
    m_open = TRUE;
    return true;
}

DWORD ZQMp3File::WaitForReader(DWORD count, const HANDLE* events) {
    const QWORD lastClock = m_format.nAvgBytesPerSec
                                ? static_cast<QWORD>(m_size) * 10000000 / m_format.nAvgBytesPerSec + kClockOverrun
                                : kClockOverrun;
    for (;;) {
        const QWORD clock = m_clock;
        const unsigned long held = m_held;
        const DWORD woken = WaitForMultipleObjects(count, events, FALSE, kReaderSilence);
        if (woken != WAIT_TIMEOUT)
            return woken;
        // Still decoding, or at least moving towards the end it has to report.
        if (held == m_held && (clock == m_clock || m_clock > lastClock))
            return WAIT_TIMEOUT;
    }
}

bool ZQMp3File::Read(unsigned char* dest, unsigned long want, unsigned long* got) {
    if (m_dataEvent)
        ResetEvent(m_dataEvent);
    if (!m_open || !dest || !got)
        return false;
    m_needed = want - m_held;
    if (want > m_held) {
        if (m_firstRead) {
            if (want + kSlack > m_workCapacity) {
                unsigned char* bigger = new (std::nothrow) unsigned char[want + kSlack];
                if (!bigger)
                    return false;
                delete[] m_work;
                m_work = bigger;
                m_workCapacity = want; // deliberately not the full allocation
            }
            if (FAILED(m_reader->Start(0, 0, 1.0f, this)))
                return false;
            m_firstRead = FALSE;
        } else {
            SetEvent(m_continueEvent);
        }
        // The end of the piece completes the read. A piece longer than its duration says fills what was
        // asked for before its end: then the full data is enough, or the read would wait for an end that
        // the blocked reader can never reach.
        HANDLE events[2] = {m_endEvent, m_dataEvent};
        DWORD woken = WaitForReader(2, events);
        if ((woken != WAIT_OBJECT_0 && woken != WAIT_OBJECT_0 + 1) || FAILED(m_lastResult))
            return false;
        if (woken == WAIT_OBJECT_0 && (WaitForReader(1, &m_dataEvent) != WAIT_OBJECT_0 || FAILED(m_lastResult)))
            return false;
    }
    if (m_held < want) {
        memcpy(dest, m_work, m_held);
        *got = m_held;
        m_held = 0;
    } else {
        memcpy(dest, m_work, want);
        *got = want;
        memmove(m_work, m_work + want, m_held - want);
        m_held -= want;
    }
    m_totalRead += *got;
    if (m_endOfFile)
        m_reader->Stop();
    return true;
}

void ZQMp3File::Close() {
    m_open = FALSE;
    ReleaseAndNull(m_stream);
    if (m_continueEvent) {
        if (m_reader)
            m_reader->Stop();
        SetEvent(m_continueEvent);
        DeleteCriticalSection(&m_lock);
    }
    CloseAndNull(m_continueEvent);
    CloseAndNull(m_dataEvent);
    ReleaseAndNull(m_headerInfo);
    ReleaseAndNull(m_readerAdvanced2);
    ReleaseAndNull(m_readerAdvanced);
    ReleaseAndNull(m_reader);
    Clear();
}

unsigned long ZQMp3File::GetSize() { return m_size; }

WAVEFORMATEX* ZQMp3File::GetFormat() { return &m_format; }

bool ZQMp3File::IsEOF() { return m_endOfFile; }

HRESULT ZQMp3File::GetHeaderAttribute(const wchar_t* name, unsigned char** value) {
    if (!m_headerInfo)
        return E_UNEXPECTED;
    if (!value)
        return E_INVALIDARG;
    *value = nullptr;
    WORD stream = 0, length = 0;
    WMT_ATTR_DATATYPE type;
    HRESULT hr = m_headerInfo->GetAttributeByName(&stream, name, &type, nullptr, &length);
    if (hr == kNotFound)
        return S_OK;
    if (FAILED(hr))
        return hr;
    // Never shorter than the 64-bit value a caller may take it for.
    *value = new (std::nothrow) unsigned char[length < sizeof(QWORD) ? sizeof(QWORD) : length]();
    if (!*value)
        return E_OUTOFMEMORY;
    hr = m_headerInfo->GetAttributeByName(&stream, name, &type, *value, &length);
    if (FAILED(hr)) {
        FreeHeaderAttribute(*value);
        *value = nullptr;
    }
    return hr;
}

void ZQMp3File::FreeHeaderAttribute(unsigned char* value) {
    delete[] value;
}

HRESULT ZQMp3File::QueryInterface(REFIID iid, void** object) {
    if (!object)
        return E_POINTER;
    if (iid == __uuidof(IWMReaderCallback))
        *object = static_cast<IWMReaderCallback*>(this);
    else if (iid == __uuidof(IWMReaderCallbackAdvanced))
        *object = static_cast<IWMReaderCallbackAdvanced*>(this);
    else {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    return S_OK;
}

ULONG ZQMp3File::AddRef() { return 1; }

ULONG ZQMp3File::Release() { return 1; }

void ZQMp3File::ClockTick() {
    // Close may be dropping its pointer while the reader's thread still calls: the reader object itself
    // lives until that thread has ended.
    IWMReaderAdvanced* reader = m_readerAdvanced;
    m_clock += kClockStep;
    if (reader)
        reader->DeliverTime(m_clock);
}

HRESULT ZQMp3File::OnStatus(WMT_STATUS status, HRESULT hr, WMT_ATTR_DATATYPE, BYTE*, void*) {
    m_lastResult = hr;
    switch (status) {
    case WMT_ERROR:
        SetEvent(m_continueEvent);
        SetEvent(m_dataEvent);
        return E_FAIL;
    case WMT_OPENED:
        SetEvent(m_dataEvent);
        break;
    case WMT_EOF:
        m_endOfFile = true;
        SetEvent(m_continueEvent);
        SetEvent(m_dataEvent);
        SetEvent(m_endEvent);
        break;
    case WMT_STARTED:
        ClockTick();
        break;
    case WMT_STOPPED:
        SetEvent(m_continueEvent);
        SetEvent(m_dataEvent);
        break;
    case WMT_CLOSED:
        printf("WMT_CLOSED\n");
        break;
    case WMT_TIMER:
        printf("WMT_TIMER\n");
        break;
    default:
        break;
    }
    return S_OK;
}

HRESULT ZQMp3File::OnSample(DWORD, QWORD, QWORD, DWORD, INSSBuffer* sample, void*) {
    if (!m_open || m_endOfFile) {
        if (m_dataEvent)
            SetEvent(m_dataEvent);
        return S_OK;
    }
    if (!sample)
        return E_FAIL;
    BYTE* bytes = nullptr;
    DWORD length = 0;
    // Wine's samples answer GetLength with E_NOTIMPL: GetBufferAndLength then gives both.
    if (FAILED(sample->GetBuffer(&bytes)) ||
        (FAILED(sample->GetLength(&length)) && FAILED(sample->GetBufferAndLength(&bytes, &length))) ||
        (!bytes && length > 0))
        return E_FAIL;
    if (m_held + length > m_workCapacity) {
        unsigned long capacity = m_held + length + kSlack;
        unsigned char* bigger = new (std::nothrow) unsigned char[capacity];
        if (!bigger)
            return E_FAIL;
        memcpy(bigger, m_work, m_held);
        delete[] m_work;
        m_work = bigger;
        m_workCapacity = capacity;
    }
    memcpy(m_work + m_held, bytes, length);
    m_held += length;
    if (m_held < m_needed)
        return S_OK;
    SetEvent(m_dataEvent);
    WaitForSingleObject(m_continueEvent, INFINITE);
    return S_OK;
}

HRESULT ZQMp3File::OnTime(QWORD, void*) {
    if (!m_endOfFile)
        ClockTick();
    return S_OK;
}

HRESULT ZQMp3File::OnStreamSample(WORD, QWORD, QWORD, DWORD, INSSBuffer*, void*) { return E_NOTIMPL; }

HRESULT ZQMp3File::OnStreamSelection(WORD, WORD*, WMT_STREAM_SELECTION*, void*) { return S_OK; }

HRESULT ZQMp3File::OnOutputPropsChanged(DWORD, WM_MEDIA_TYPE*, void*) { return S_OK; }

HRESULT ZQMp3File::AllocateForStream(WORD, DWORD, INSSBuffer**, void*) { return E_NOTIMPL; }

HRESULT ZQMp3File::AllocateForOutput(DWORD, DWORD, INSSBuffer**, void*) { return E_NOTIMPL; }

} // namespace ZQ
