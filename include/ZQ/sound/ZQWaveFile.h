#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQHeapObject.h"
#include "ZQ/core/ZQPlatform.h"

namespace ZQ {

/// Reads and writes RIFF wave files through the multimedia I/O functions; reads a "WAVE" or "WAV"
/// resource of the program when no file has the name, or a block of memory. Results are HRESULTs:
/// E_FAIL for any I/O or format failure, CO_E_NOTINITIALIZED when nothing is open.
class ZQ_API ZQWaveFile : public ZQHeapObject {
public:
    ZQWaveFile();
    /// Closes; frees the format unless it is the caller's (memory mode).
    virtual ~ZQWaveFile();
    ZQWaveFile(const ZQWaveFile& other) = default;
    ZQWaveFile& operator=(const ZQWaveFile& other) = default;

    /// Mode 1 reads name (file, else program resource); any other mode creates the file and writes
    /// its header from format. E_INVALIDARG for a null name.
    HRESULT Open(wchar_t* name, WAVEFORMATEX* format, unsigned long mode);
    /// Reads from the caller's bytes and format (kept, not copied); S_OK for mode 1, else E_NOTIMPL.
    HRESULT OpenFromMemory(unsigned char* data, unsigned long size, WAVEFORMATEX* format, unsigned long mode);
    /// Data size in bytes fixed by opening for reading; never more than the file holds.
    unsigned long GetSize();
    /// The format read from the file (null before or after a failed read), or the caller's in memory mode.
    WAVEFORMATEX* GetFormat() { return m_format; }
    /// Back to the start of the data (writing: starts the "data" chunk).
    HRESULT ResetFile();
    /// Copies up to count bytes of what is left of the data; got is what was copied. In memory mode
    /// the cursor does not advance: every read starts at the same place until ResetFile.
    HRESULT Read(unsigned char* dest, unsigned long count, unsigned long* got);
    /// Appends bytes to the data of a file opened for writing; written counts them.
    HRESULT Write(unsigned int count, unsigned char* data, unsigned int* written);
    /// Reading: closes and frees the resource copy. Writing: fixes the chunk sizes, zeroes "fact", closes.
    HRESULT Close();

protected:
    /// Finds "RIFF"/"WAVE" and reads the "fmt " chunk into a new format.
    HRESULT ReadMMIO();
    /// Writes the "RIFF", "fmt " and "fact" chunks of a new file.
    HRESULT WriteMMIO(WAVEFORMATEX* format);

private:
    HRESULT CloseWriting();

    WAVEFORMATEX* m_format;
    HMMIO m_handle;
    MMCKINFO m_dataChunk; ///< its size counts the bytes not yet read
    MMCKINFO m_riffChunk;
    MMIOINFO m_ioInfo; ///< buffer state while writing
    unsigned long m_size;
    unsigned long m_mode; ///< 1 read, 2 write
    BOOL m_fromMemory;
    unsigned char* m_memoryData;
    unsigned char* m_memoryCursor;
    unsigned long m_memorySize;
    unsigned char* m_resourceCopy;
};

} // namespace ZQ
