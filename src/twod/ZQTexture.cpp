#include "ZQ/twod/ZQTexture.h"
#include "ZQ/core/ZQDiagnostics.h"
#include "ZQ/core/ZQLock.h"
#include "ZQ/frame/ZQMediaSearch.h"
#include "src/core/ZQFileBytes.h"
#include "src/formats/ZQNameText.h"
#include "src/formats/ZQPackedTexture.h"
#include "src/twod/ZQPackedLoader.h"

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <new>

namespace ZQ {

ZQTexture::ZQTexture(IDirect3DDevice9* device)
    : ZQOmFile(device, &m_chunks), ZQTeFile(device, &m_chunks), m_device(device) {
    InitializeCriticalSection(&m_lock);
}

ZQTexture::ZQTexture(const ZQTexture& other)
    : ZQOmFile(other), ZQTeFile(other), m_device(other.m_device), m_chunks(other.m_chunks), m_shared(other.m_shared) {
    std::memcpy(&m_lock, &other.m_lock, sizeof m_lock);
}

ZQTexture::~ZQTexture() {
    {
        ZQLock lock(&m_lock);
        for (ZQMapper::iterator it = m_chunks.begin(); it != m_chunks.end(); ++it) {
            _ZQTextureChunk_tag* chunk = static_cast<_ZQTextureChunk_tag*>(it->value);
            if (m_shared.IndexOf(chunk) < 0)
                ZQReleaseChunk(chunk);
        }
        m_chunks.clear();
        m_device = nullptr;
    }
    DeleteCriticalSection(&m_lock);
}

void ZQTexture::Setd3dDevice(IDirect3DDevice9* device) {
    ZQLock lock(&m_lock);
    m_device = device;
}

IDirect3DDevice9* ZQTexture::Getd3dDevice() {
    ZQLock lock(&m_lock);
    return m_device;
}

void ZQTexture::Entry(const wchar_t* file) {
    Entry(file, false);
}

void ZQTexture::Entry(const wchar_t* file, bool split) {
    ZQLock lock(&m_lock);
    if (!file)
        return;
    // Only the file's own name counts, not its folders.
    const wchar_t* own = file;
    for (const wchar_t* at = file; *at; ++at)
        if (*at == L'\\' || *at == L'/' || *at == L':')
            own = at + 1;
    ZQString upper;
    upper = own;
    upper.upper();
    const wchar_t* text = upper;
    // A substring test, ".OM" first: "pics.om.bak" is an ".OM" file.
    if (std::wcsstr(text, L".OM"))
        ZQLoadPackedFile(m_device, &m_chunks, file, ZQPackedFormat::Om, split);
    else if (std::wcsstr(text, L".TE"))
        ZQLoadPackedFile(m_device, &m_chunks, file, ZQPackedFormat::Te, split);
}

void ZQTexture::Entry(const wchar_t* name, const wchar_t* file, bool center) {
    ZQLock lock(&m_lock);
    if (!name || !file || !m_device)
        return;
    wchar_t path[MAX_PATH];
    ZQFindDXSDKMediaFileCch(path, MAX_PATH, file);
    std::vector<uint8_t> head;
    if (!ZQReadFileHead(path, head, 64)) {
        ZQReportUnreadFile(L"ZQTexture::Entry", file, path);
        return;
    }
    const bool refused = formats::ImageRefused(head.data(), head.size());
    D3DXIMAGE_INFO info = {};
    IDirect3DTexture9* loaded = nullptr;
    if (refused || FAILED(D3DXCreateTextureFromFileExW(m_device, path, D3DX_DEFAULT, D3DX_DEFAULT, D3DX_DEFAULT, 0,
                                                       D3DFMT_UNKNOWN, D3DPOOL_MANAGED, D3DX_DEFAULT, D3DX_DEFAULT, 0,
                                                       &info, nullptr, &loaded))) {
        ZQMessage(L"ZQTexture::Entry: %ls: the platform cannot decode it (%hs)", file,
                  formats::DescribeImage(head.data(), head.size()));
        return;
    }
    D3DSURFACE_DESC desc;
    if (FAILED(loaded->GetLevelDesc(0, &desc))) {
        loaded->Release();
        return;
    }
    const RECT whole = {0, 0, static_cast<LONG>(info.Width), static_cast<LONG>(info.Height)};
    _ZQTextureChunk_tag* chunk = new (std::nothrow) _ZQTextureChunk_tag;
    if (!chunk) {
        loaded->Release();
        return;
    }
    chunk->texture = ZQCopyToNewTexture(m_device, loaded, nullptr, whole, desc.Width, desc.Height,
                                        formats::PackedMipLevels(desc.Width, desc.Height), desc.Format);
    loaded->Release();
    const int width = static_cast<int>(info.Width), height = static_cast<int>(info.Height);
    chunk->pixel = ZQRect(0, 0, width, height);
    // The coordinate RECT is the truncated ratio: 0, or 1 for an image that fills its texture.
    chunk->texcoord = ZQRect(0.0f, 0.0f, static_cast<float>(width) / static_cast<float>(desc.Width),
                             static_cast<float>(height) / static_cast<float>(desc.Height));
    if (center) {
        chunk->originX = static_cast<float>(width >> 1);
        chunk->originY = static_cast<float>(height >> 1);
    }
    // The name is format text with no arguments, read the safe way.
    ZQString key(L"%ls", formats::NameFromFormatText(name).c_str());
    m_chunks.insert(key, chunk);
}

void ZQTexture::EntryShared(const wchar_t* name, _ZQTextureChunk_tag* chunk) {
    ZQLock lock(&m_lock);
    if (!name || !chunk || FAILED(m_shared.Add(chunk)))
        return;
    ZQString key(L"%ls", formats::NameFromFormatText(name).c_str());
    m_chunks.insert(key, chunk);
}

_ZQTextureChunk_tag* ZQTexture::Trans(const wchar_t* name) {
    ZQLock lock(&m_lock);
    return static_cast<_ZQTextureChunk_tag*>(m_chunks.find_name(name));
}

} // namespace ZQ
