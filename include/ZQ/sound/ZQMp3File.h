#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQHeapObject.h"
#include "ZQ/core/ZQPlatform.h"

#include <dsound.h>
#include <wmsdkidl.h>

namespace ZQ {

class WMAStream;

/// Decodes a whole MP3 file into one DirectSound buffer (stereo, 16 bits, 22,050 Hz) with the Windows
/// Media reader (wmvcore.dll, loaded when first needed) driven by its own clock as fast as it decodes.
/// Not reference counted: AddRef and Release answer 1. One file at a time; the reader calls back on
/// its own threads.
class ZQ_API ZQMp3File : public IWMReaderCallback, public IWMReaderCallbackAdvanced, public ZQHeapObject {
public:
    explicit ZQMp3File(IDirectSound8* device);
    /// Closes and frees the work buffer.
    virtual ~ZQMp3File();
    ZQMp3File(const ZQMp3File& other) = default;
    ZQMp3File& operator=(const ZQMp3File& other) = default;

    /// The device new buffers are made on (not released here).
    void SetDevice(IDirectSound8* device);
    /// Zeroes the state; the last result becomes E_FAIL, the first-read flag 1; work buffer and device stay.
    void Clear();
    /// A new buffer holding the whole decoded piece, or null. The piece stays open until Close or the next Open.
    IDirectSoundBuffer* Open(const wchar_t* path);
    /// Creates the reader and its events; false when wmvcore.dll or the reader is missing.
    bool PreOpen();
    /// Waits for the open, picks the output format, takes the size from "Duration"; false on failure,
    /// when the reader offers no 22,050 Hz 16-bit stereo output or when the piece has no duration.
    bool PostOpen();
    /// Hands out up to want decoded bytes, decoding first; returns once the piece is decoded (or
    /// want bytes are there). False on a reader error, when nothing is open, or when the reader has
    /// neither delivered nor moved on for 15 seconds.
    bool Read(unsigned char* dest, unsigned long want, unsigned long* got);
    /// Stops the reader and releases it, the stream and the events.
    void Close();
    /// PCM bytes of the whole piece (from its duration, at most what the file's bytes can carry).
    unsigned long GetSize();
    WAVEFORMATEX* GetFormat();
    bool IsEOF();
    /// A copy of a header attribute (delete[] it, or better FreeHeaderAttribute); S_OK with null when
    /// absent; E_UNEXPECTED when nothing is open, E_INVALIDARG for a null value pointer.
    HRESULT GetHeaderAttribute(const wchar_t* name, unsigned char** value);
    /// Frees a copy GetHeaderAttribute made, with the library's runtime: a program's delete[] frees on
    /// the program's heap, which a Debug runtime keeps apart. Null is ignored.
    static void FreeHeaderAttribute(unsigned char* value);

    /// The two callback interfaces give this object; any other interface (IUnknown too) E_NOINTERFACE.
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE OnStatus(WMT_STATUS status, HRESULT hr, WMT_ATTR_DATATYPE type, BYTE* value,
                                       void* context) override;
    /// Collects decoded bytes; blocks the reader once the current Read has what it needs.
    HRESULT STDMETHODCALLTYPE OnSample(DWORD output, QWORD time, QWORD duration, DWORD flags, INSSBuffer* sample,
                                       void* context) override;
    HRESULT STDMETHODCALLTYPE OnStreamSample(WORD stream, QWORD time, QWORD duration, DWORD flags, INSSBuffer* sample,
                                             void* context) override;
    /// Moves the clock on by 100 ms, so decoding runs ahead.
    HRESULT STDMETHODCALLTYPE OnTime(QWORD time, void* context) override;
    HRESULT STDMETHODCALLTYPE OnStreamSelection(WORD count, WORD* streams, WMT_STREAM_SELECTION* selections,
                                                void* context) override;
    HRESULT STDMETHODCALLTYPE OnOutputPropsChanged(DWORD output, WM_MEDIA_TYPE* type, void* context) override;
    HRESULT STDMETHODCALLTYPE AllocateForStream(WORD stream, DWORD size, INSSBuffer** sample, void* context) override;
    HRESULT STDMETHODCALLTYPE AllocateForOutput(DWORD output, DWORD size, INSSBuffer** sample, void* context) override;

private:
    void ClockTick();
    /// Waits for one of the events as WaitForMultipleObjects does; WAIT_TIMEOUT once the reader has gone silent.
    DWORD WaitForReader(DWORD count, const HANDLE* events);

    IDirectSound8* m_device;
    IWMReader* m_reader;
    IWMReaderAdvanced* m_readerAdvanced;
    IWMReaderAdvanced2* m_readerAdvanced2;
    IWMHeaderInfo* m_headerInfo;
    WAVEFORMATEX m_format;
    HANDLE m_continueEvent; ///< lets a blocked OnSample go on
    HANDLE m_dataEvent;     ///< data, an error, the open or the end arrived
    BOOL m_open;
    HRESULT m_lastResult;
    unsigned long m_size;
    unsigned long m_totalRead;
    BOOL m_firstRead;
    unsigned char* m_work;
    unsigned long m_workCapacity;
    unsigned long m_held;
    unsigned long m_needed;
    bool m_endOfFile;
    QWORD m_clock; ///< 100-ns units
    CRITICAL_SECTION m_lock;
    WMAStream* m_stream;
    HANDLE m_endEvent;
};

} // namespace ZQ
