#pragma once
#include "ZQ/core/ZQConfig.h"
#include "ZQ/core/ZQHeapObject.h"
#include "ZQ/core/ZQCriticalSection.h"
#include "ZQ/core/ZQMapper.h"
#include "ZQ/core/ZQPlatform.h"
#include "ZQ/threed/ZQ3DObjectChunk.h"

namespace ZQ {
namespace _3D {

/// Store of 3D models read from .x files (text or binary) with their frames, meshes, materials,
/// textures, skins and animation sets; looked up by name (case-insensitive, the first registered
/// wins). Buffers and textures live in the managed pool, so models survive a device reset. Every
/// operation takes the store's lock: loading on a worker thread while the main thread draws is safe.
class ZQ_API ZQ3DObject : public ZQHeapObject {
public:
    explicit ZQ3DObject(IDirect3DDevice9* device);
    /// Owns its models: not copied.
    ZQ3DObject(const ZQ3DObject&) = delete;
    ZQ3DObject& operator=(const ZQ3DObject&) = delete;
    /// Releases every model, its buffers and textures.
    virtual ~ZQ3DObject();

    /// Loads file (found by the media search) as the model name. Textures are looked for beside the
    /// file, then by the media search; a missing one draws untextured. false, registering nothing,
    /// when the file cannot be read, is not a .x file, is malformed or holds neither a mesh nor an animation.
    bool Entry(const wchar_t* name, const wchar_t* file);
    /// The model registered under name, or null.
    _ZQ3DObjectChunk_tag* Trans(const wchar_t* name);
    /// Seconds from the start of the model's animation to its last key; -1 for an unknown model or
    /// animation.
    float GetAnimationLength(const wchar_t* model, const wchar_t* animation);

    /// Nothing to rebuild (managed pool); there for a scene to forward as it does to its dialogs.
    HRESULT OnResetDevice(IDirect3DDevice9* device, const D3DSURFACE_DESC* backBuffer, void* context);
    void OnLostDevice(void* context);

private:
    IDirect3DDevice9* m_device;
    ZQMapper m_models;
    ZQCriticalSection m_lock;
};

} // namespace _3D
} // namespace ZQ
