#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQHeapObject.h"
#include "ZQ/core/ZQMapper.h"
#include "ZQ/core/ZQPlatform.h"

namespace ZQ {

/// Reader of ".OM" packed files: an image with a table of named rectangles. Every record becomes a
/// chunk in the map given at construction (a ZQTexture's). Normally reached through ZQTexture::Entry.
class ZQ_API ZQOmFile : public ZQHeapObject {
public:
    ZQOmFile(IDirect3DDevice9* device, ZQMapper* chunks);
    /// Copies the pointers and the lock's bytes as they are (shallow).
    ZQOmFile(const ZQOmFile& other);
    ZQOmFile& operator=(const ZQOmFile& other);
    virtual ~ZQOmFile();

    IDirect3DDevice9* Getd3dDevice();
    /// All chunks share one texture (owned by the first record's chunk).
    void Entry(const wchar_t* file);
    /// split: every chunk gets a texture of its own (a square power of two).
    void Entry(const wchar_t* file, bool split);

protected:
    /// Exponent of the smallest power of two strictly greater than value (log2(256) is 9); -1 past 4096
    /// unless value is exactly 4096, 8192 or 16384.
    long log2(unsigned long value);

private:
    IDirect3DDevice9* m_device;
    ZQMapper* m_chunks;
    CRITICAL_SECTION m_lock;
};

/// Reader of ".TE" atlas files (layout tags 6536 and 10632); as ZQOmFile, with trim rectangles.
class ZQ_API ZQTeFile : public ZQHeapObject {
public:
    ZQTeFile(IDirect3DDevice9* device, ZQMapper* chunks);
    ZQTeFile(const ZQTeFile& other);
    ZQTeFile& operator=(const ZQTeFile& other);
    virtual ~ZQTeFile();

    IDirect3DDevice9* Getd3dDevice();
    void Entry(const wchar_t* file);
    void Entry(const wchar_t* file, bool split);

protected:
    long log2(unsigned long value);

private:
    IDirect3DDevice9* m_device;
    ZQMapper* m_chunks;
    CRITICAL_SECTION m_lock;
};

} // namespace ZQ
