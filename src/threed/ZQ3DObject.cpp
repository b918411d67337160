#include "ZQ/threed/ZQ3DObject.h"
#include "ZQ/core/ZQDiagnostics.h"
#include "ZQ/core/ZQLock.h"
#include "ZQ/frame/ZQMediaSearch.h"
#include "src/core/ZQFileBytes.h"
#include "src/core/ZQOutOfMemory.h"
#include "src/formats/ZQXFile.h"
#include "src/threed/ZQ3DModel.h"

#include <new>
#include <string>

namespace ZQ {
namespace _3D {

ZQ3DObject::ZQ3DObject(IDirect3DDevice9* device) : m_device(device) {}

ZQ3DObject::~ZQ3DObject() {
    ZQLock lock(m_lock);
    for (ZQMapper::iterator it = m_models.begin(); it != m_models.end(); ++it) {
        _ZQ3DObjectChunk_tag* chunk = static_cast<_ZQ3DObjectChunk_tag*>(it->value);
        delete chunk->model;
        delete chunk;
    }
    m_models.clear();
}

bool ZQ3DObject::Entry(const wchar_t* name, const wchar_t* file) {
    IDirect3DDevice9* device = m_lock.Read(m_device);
    if (!name || !*name || !file || !device)
        return false;
    // Read and built outside the lock: a long load on a worker thread does not stall drawing.
    wchar_t path[MAX_PATH];
    ZQFindDXSDKMediaFileCch(path, MAX_PATH, file);
    std::vector<uint8_t> bytes;
    formats::XFile parsed;
    formats::XResult result = formats::XResult::Malformed;
    if (!ZQReadFileBytes(path, bytes)) {
        ZQReportUnreadFile(L"ZQ3DObject::Entry", file, path);
        return false;
    }
    std::string reason;
    if (!ZQSurvivesOutOfMemory([&] { result = formats::ParseX(bytes.data(), bytes.size(), parsed, &reason); }))
        reason = "out of memory";
    if (result != formats::XResult::Ok) {
        ZQMessage(L"ZQ3DObject::Entry: %ls: %hs (%hs)", file, formats::DescribeXResult(result), reason.c_str());
        return false;
    }
    // A file with neither a mesh nor an animation (one cut short after its header) has no model in it.
    if (parsed.meshes.empty() && parsed.animationSets.empty()) {
        ZQMessage(L"ZQ3DObject::Entry: %ls: neither a mesh nor an animation in it", file);
        return false;
    }
    // Textures are looked for in the folder the model was found in.
    std::wstring directory(path);
    const size_t slash = directory.find_last_of(L"\\/:");
    directory.resize(slash == std::wstring::npos ? 0 : slash + 1);
    ZQ3DModel* model = ZQ3DModel::Create(device, std::move(parsed), directory, file);
    _ZQ3DObjectChunk_tag* chunk = model ? new (std::nothrow) _ZQ3DObjectChunk_tag : nullptr;
    if (!chunk) {
        ZQMessage(L"ZQ3DObject::Entry: %ls: the device refused its buffers", file);
        delete model;
        return false;
    }
    chunk->frames = static_cast<unsigned int>(model->Skeleton().FrameCount());
    chunk->meshes = static_cast<unsigned int>(model->Skeleton().File().meshes.size());
    chunk->vertices = model->VertexCount();
    chunk->triangles = model->TriangleCount();
    chunk->bones = model->BoneCount();
    chunk->animations = static_cast<unsigned int>(model->Skeleton().File().animationSets.size());
    chunk->model = model;
    ZQString key;
    key = name;
    ZQLock lock(m_lock);
    m_models.insert(key, chunk);
    return true;
}

_ZQ3DObjectChunk_tag* ZQ3DObject::Trans(const wchar_t* name) {
    if (!name)
        return nullptr;
    ZQString key;
    key = name;
    ZQLock lock(m_lock);
    return static_cast<_ZQ3DObjectChunk_tag*>(m_models.find(key));
}

float ZQ3DObject::GetAnimationLength(const wchar_t* model, const wchar_t* animation) {
    _ZQ3DObjectChunk_tag* chunk = Trans(model);
    const int set = chunk ? chunk->model->FindAnimation(animation) : -1;
    return set < 0 ? -1.0f : static_cast<float>(chunk->model->Skeleton().Length(set));
}

HRESULT ZQ3DObject::OnResetDevice(IDirect3DDevice9*, const D3DSURFACE_DESC*, void*) {
    return S_OK;
}

void ZQ3DObject::OnLostDevice(void*) {}

} // namespace _3D
} // namespace ZQ
