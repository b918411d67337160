#include "ZQ/sound/ZQWaveFile.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace ZQ {

namespace {

const unsigned long kRead = 1;
const FOURCC kWave = mmioFOURCC('W', 'A', 'V', 'E');
const FOURCC kFmt = mmioFOURCC('f', 'm', 't', ' ');
const FOURCC kFact = mmioFOURCC('f', 'a', 'c', 't');
const FOURCC kData = mmioFOURCC('d', 'a', 't', 'a');
const LONG kPcmHeader = 16; // tag, channels, rate, byte rate, block align, bits
const size_t kFormatHeader = sizeof(WAVEFORMATEX);

WAVEFORMATEX* NewFormat(size_t extra) {
    return reinterpret_cast<WAVEFORMATEX*>(new (std::nothrow) unsigned char[kFormatHeader + extra]);
}

void FreeFormat(WAVEFORMATEX*& format) {
    delete[] reinterpret_cast<unsigned char*>(format);
    format = nullptr;
}

} // namespace

ZQWaveFile::ZQWaveFile()
    : m_format(nullptr), m_handle(nullptr), m_dataChunk(), m_riffChunk(), m_ioInfo(), m_size(0), m_mode(0),
      m_fromMemory(FALSE), m_memoryData(nullptr), m_memoryCursor(nullptr), m_memorySize(0),
      m_resourceCopy(nullptr) {}

ZQWaveFile::~ZQWaveFile() {
    Close();
    if (!m_fromMemory)
        FreeFormat(m_format);
}

HRESULT ZQWaveFile::Open(wchar_t* name, WAVEFORMATEX* format, unsigned long mode) {
    m_mode = mode;
    m_fromMemory = FALSE;
    if (mode != kRead) {
        if (!name)
            return E_INVALIDARG;
        m_handle = mmioOpenW(name, nullptr, MMIO_ALLOCBUF | MMIO_READWRITE | MMIO_CREATE);
        if (!m_handle)
            return E_FAIL;
        HRESULT hr = WriteMMIO(format);
        if (FAILED(hr)) {
            mmioClose(m_handle, 0);
            m_handle = nullptr;
            return hr;
        }
        return ResetFile();
    }

    if (!name)
        return E_INVALIDARG;
    FreeFormat(m_format);
    m_handle = mmioOpenW(name, nullptr, MMIO_ALLOCBUF | MMIO_READ);
    if (!m_handle) {
        HRSRC resource = FindResourceW(nullptr, name, L"WAVE");
        if (!resource)
            resource = FindResourceW(nullptr, name, L"WAV");
        if (!resource)
            return E_FAIL;
        HGLOBAL loaded = LoadResource(nullptr, resource);
        if (!loaded)
            return E_FAIL;
        DWORD size = SizeofResource(nullptr, resource);
        if (size == 0)
            return E_FAIL;
        const void* bytes = LockResource(loaded);
        if (!bytes)
            return E_FAIL;
        delete[] m_resourceCopy;
        m_resourceCopy = new (std::nothrow) unsigned char[size];
        if (!m_resourceCopy)
            return E_OUTOFMEMORY;
        memcpy(m_resourceCopy, bytes, size);
        MMIOINFO memory = {};
        memory.fccIOProc = FOURCC_MEM;
        memory.cchBuffer = static_cast<LONG>(size);
        memory.pchBuffer = reinterpret_cast<HPSTR>(m_resourceCopy);
        m_handle = mmioOpenW(nullptr, &memory, MMIO_ALLOCBUF | MMIO_READ);
        if (!m_handle)
            return E_FAIL;
    }
    HRESULT hr = ReadMMIO();
    if (FAILED(hr)) {
        mmioClose(m_handle, 0);
        m_handle = nullptr;
        return hr;
    }
    hr = ResetFile();
    if (SUCCEEDED(hr))
        m_size = m_dataChunk.cksize;
    return hr;
}

HRESULT ZQWaveFile::OpenFromMemory(unsigned char* data, unsigned long size, WAVEFORMATEX* format,
                                   unsigned long mode) {
    m_format = format;
    m_memorySize = size;
    m_memoryData = data;
    m_memoryCursor = data;
    m_fromMemory = TRUE;
    m_mode = mode;
    return mode == kRead ? S_OK : E_NOTIMPL;
}

unsigned long ZQWaveFile::GetSize() { return m_size; }

HRESULT ZQWaveFile::ReadMMIO() {
    FreeFormat(m_format);
    m_riffChunk = MMCKINFO();
    if (mmioDescend(m_handle, &m_riffChunk, nullptr, 0) != MMSYSERR_NOERROR || m_riffChunk.ckid != FOURCC_RIFF ||
        m_riffChunk.fccType != kWave)
        return E_FAIL;

    MMCKINFO fmt = {};
    fmt.ckid = kFmt;
    if (mmioDescend(m_handle, &fmt, &m_riffChunk, MMIO_FINDCHUNK) != MMSYSERR_NOERROR || fmt.cksize < 16)
        return E_FAIL;
    PCMWAVEFORMAT pcm;
    if (mmioRead(m_handle, reinterpret_cast<HPSTR>(&pcm), kPcmHeader) != kPcmHeader)
        return E_FAIL;

    // The extra bytes are the chunk's: a 16-byte block (float waves often have one) has none, and a count
    // that claims more than the chunk holds would read the next chunk's bytes as format.
    WORD extra = 0;
    if (pcm.wf.wFormatTag != WAVE_FORMAT_PCM && fmt.cksize >= kFormatHeader) {
        if (mmioRead(m_handle, reinterpret_cast<HPSTR>(&extra), sizeof extra) != sizeof extra)
            return E_FAIL;
        extra = static_cast<WORD>(std::min<DWORD>(extra, fmt.cksize - kFormatHeader));
    }
    m_format = NewFormat(extra);
    if (!m_format)
        return E_FAIL;
    memcpy(m_format, &pcm, kPcmHeader);
    m_format->cbSize = extra;
    if ((extra && mmioRead(m_handle, reinterpret_cast<HPSTR>(m_format + 1), extra) != extra) ||
        mmioAscend(m_handle, &fmt, 0) != MMSYSERR_NOERROR) {
        FreeFormat(m_format);
        return E_FAIL;
    }
    return S_OK;
}

HRESULT ZQWaveFile::ResetFile() {
    if (m_fromMemory) {
        m_memoryCursor = m_memoryData;
        return S_OK;
    }
    if (!m_handle)
        return CO_E_NOTINITIALIZED;
    if (m_mode == kRead) {
        if (mmioSeek(m_handle, static_cast<LONG>(m_riffChunk.dwDataOffset + sizeof(FOURCC)), SEEK_SET) == -1)
            return E_FAIL;
        m_dataChunk.ckid = kData;
        if (mmioDescend(m_handle, &m_dataChunk, &m_riffChunk, MMIO_FINDCHUNK) != MMSYSERR_NOERROR)
            return E_FAIL;
        // A data size the file does not have would become a buffer of that size: count only the bytes there.
        LONG end = mmioSeek(m_handle, 0, SEEK_END);
        if (end == -1 || mmioSeek(m_handle, static_cast<LONG>(m_dataChunk.dwDataOffset), SEEK_SET) == -1)
            return E_FAIL;
        DWORD present = static_cast<DWORD>(end) > m_dataChunk.dwDataOffset ? end - m_dataChunk.dwDataOffset : 0;
        m_dataChunk.cksize = std::min(m_dataChunk.cksize, present);
        return S_OK;
    }
    m_dataChunk.ckid = kData;
    m_dataChunk.cksize = 0;
    if (mmioCreateChunk(m_handle, &m_dataChunk, 0) != MMSYSERR_NOERROR ||
        mmioGetInfo(m_handle, &m_ioInfo, 0) != MMSYSERR_NOERROR)
        return E_FAIL;
    return S_OK;
}

HRESULT ZQWaveFile::Read(unsigned char* dest, unsigned long count, unsigned long* got) {
    if (m_fromMemory) {
        if (!m_memoryCursor)
            return CO_E_NOTINITIALIZED;
        if (!dest || !got)
            return E_INVALIDARG;
        unsigned long left = static_cast<unsigned long>(m_memoryData + m_memorySize - m_memoryCursor);
        *got = std::min(count, left);
        memcpy(dest, m_memoryCursor, *got);
        return S_OK;
    }
    if (!m_handle)
        return CO_E_NOTINITIALIZED;
    if (!dest || !got)
        return E_INVALIDARG;
    *got = 0;
    MMIOINFO info;
    if (mmioGetInfo(m_handle, &info, 0) != MMSYSERR_NOERROR)
        return E_FAIL;
    unsigned long wanted = std::min<unsigned long>(count, m_dataChunk.cksize);
    m_dataChunk.cksize -= wanted;
    for (unsigned long copied = 0; copied < wanted;) {
        if (info.pchNext == info.pchEndRead) {
            if (mmioAdvance(m_handle, &info, MMIO_READ) != MMSYSERR_NOERROR || info.pchNext == info.pchEndRead)
                return E_FAIL;
        }
        unsigned long piece = std::min<unsigned long>(wanted - copied, info.pchEndRead - info.pchNext);
        memcpy(dest + copied, info.pchNext, piece);
        info.pchNext += piece;
        copied += piece;
    }
    if (mmioSetInfo(m_handle, &info, 0) != MMSYSERR_NOERROR)
        return E_FAIL;
    *got = wanted;
    return S_OK;
}

HRESULT ZQWaveFile::WriteMMIO(WAVEFORMATEX* format) {
    if (!format)
        return E_INVALIDARG;
    m_riffChunk.fccType = kWave;
    m_riffChunk.cksize = 0;
    if (mmioCreateChunk(m_handle, &m_riffChunk, MMIO_CREATERIFF) != MMSYSERR_NOERROR)
        return E_FAIL;

    MMCKINFO chunk = {};
    chunk.ckid = kFmt;
    chunk.cksize = kPcmHeader;
    if (mmioCreateChunk(m_handle, &chunk, 0) != MMSYSERR_NOERROR)
        return E_FAIL;
    LONG formatBytes = format->wFormatTag == WAVE_FORMAT_PCM ? kPcmHeader : kFormatHeader + format->cbSize;
    if (mmioWrite(m_handle, reinterpret_cast<const char*>(format), formatBytes) != formatBytes ||
        mmioAscend(m_handle, &chunk, 0) != MMSYSERR_NOERROR)
        return E_FAIL;

    chunk = MMCKINFO();
    chunk.ckid = kFact;
    chunk.cksize = 0;
    if (mmioCreateChunk(m_handle, &chunk, 0) != MMSYSERR_NOERROR)
        return E_FAIL;
    DWORD samples = 0xFFFFFFFF; // fixed to 0 when the file is closed
    if (mmioWrite(m_handle, reinterpret_cast<const char*>(&samples), sizeof samples) != sizeof samples ||
        mmioAscend(m_handle, &chunk, 0) != MMSYSERR_NOERROR)
        return E_FAIL;
    return S_OK;
}

HRESULT ZQWaveFile::Write(unsigned int count, unsigned char* data, unsigned int* written) {
    if (m_fromMemory)
        return E_NOTIMPL;
    if (!m_handle)
        return CO_E_NOTINITIALIZED;
    if (!data || !written)
        return E_INVALIDARG;
    *written = 0;
    for (unsigned int i = 0; i < count; ++i) {
        if (m_ioInfo.pchNext == m_ioInfo.pchEndWrite) {
            m_ioInfo.dwFlags |= MMIO_DIRTY;
            if (mmioAdvance(m_handle, &m_ioInfo, MMIO_WRITE) != MMSYSERR_NOERROR)
                return E_FAIL;
        }
        *m_ioInfo.pchNext++ = static_cast<char>(data[i]);
        ++*written;
    }
    return S_OK;
}

HRESULT ZQWaveFile::Close() {
    if (m_mode == kRead) {
        if (m_handle)
            mmioClose(m_handle, 0);
        m_handle = nullptr;
        delete[] m_resourceCopy;
        m_resourceCopy = nullptr;
        return S_OK;
    }
    if (m_fromMemory || m_mode == 0)
        return S_OK;
    m_ioInfo.dwFlags |= MMIO_DIRTY;
    if (!m_handle)
        return CO_E_NOTINITIALIZED;
    HRESULT hr = CloseWriting();
    // The handle is closed on failure too: a half-written file must not keep it.
    mmioClose(m_handle, 0);
    m_handle = nullptr;
    return hr;
}

HRESULT ZQWaveFile::CloseWriting() {
    if (mmioSetInfo(m_handle, &m_ioInfo, 0) != MMSYSERR_NOERROR ||
        mmioAscend(m_handle, &m_dataChunk, 0) != MMSYSERR_NOERROR ||
        mmioAscend(m_handle, &m_riffChunk, 0) != MMSYSERR_NOERROR || mmioSeek(m_handle, 0, SEEK_SET) == -1 ||
        mmioDescend(m_handle, &m_riffChunk, nullptr, 0) != MMSYSERR_NOERROR)
        return E_FAIL;
    MMCKINFO fact = {};
    fact.ckid = kFact;
    if (mmioDescend(m_handle, &fact, &m_riffChunk, MMIO_FINDCHUNK) == MMSYSERR_NOERROR) {
        DWORD samples = 0;
        mmioWrite(m_handle, reinterpret_cast<const char*>(&samples), sizeof samples);
        mmioAscend(m_handle, &fact, 0);
    }
    return mmioAscend(m_handle, &m_riffChunk, 0) == MMSYSERR_NOERROR ? S_OK : E_FAIL;
}

} // namespace ZQ
