#pragma once
#include "ZQ/core/ZQArray.h"
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQMapper.h"
#include "ZQ/core/ZQPlatform.h"
#include "ZQ/twod/ZQPackedFile.h"
#include "ZQ/twod/ZQTextureChunk.h"

namespace ZQ {

/// Store of 2D artwork: textures whose named chunks are looked up by name (case-insensitive; the
/// first chunk registered under a name wins). Textures live in the managed pool, so a lost device
/// needs nothing. Every operation takes the texture's lock, so loading on a worker thread is safe.
class ZQ_API ZQTexture : public ZQOmFile, public ZQTeFile {
public:
    explicit ZQTexture(IDirect3DDevice9* device);
    /// Shallow: the copy shares the chunks; only one of the two may be destroyed.
    ZQTexture(const ZQTexture& other);
    /// Releases every chunk it loaded and its texture (the shared ones stay their owners').
    virtual ~ZQTexture();

    void Setd3dDevice(IDirect3DDevice9* device);
    IDirect3DDevice9* Getd3dDevice();
    /// Loads a packed file chosen by the upper-cased name: containing ".OM" (tested first), else
    /// ".TE"; any other name is ignored. Files that cannot be read or decoded are dropped quietly.
    void Entry(const wchar_t* file);
    /// As above; split gives every chunk a texture of its own.
    void Entry(const wchar_t* file, bool split);
    /// Loads one image as one chunk under name (the name is format text: "%" starts a directive).
    /// center puts the origin at the middle (integer halves of width and height).
    void Entry(const wchar_t* name, const wchar_t* file, bool center);
    /// Registers a chunk the caller keeps (a ZQRenderTarget's, say) under name (format text, as above):
    /// it draws by name like the others but is never released or deleted here, so it must outlive every
    /// lookup of that name. A null name or chunk is ignored.
    void EntryShared(const wchar_t* name, _ZQTextureChunk_tag* chunk);
    /// The chunk registered under name, or null.
    _ZQTextureChunk_tag* Trans(const wchar_t* name);

private:
    CRITICAL_SECTION m_lock;
    IDirect3DDevice9* m_device;
    ZQMapper m_chunks;
    ZQArray<_ZQTextureChunk_tag*> m_shared;
};

} // namespace ZQ
