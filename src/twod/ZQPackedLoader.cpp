#include "src/twod/ZQPackedLoader.h"
#include "ZQ/core/ZQDiagnostics.h"
#include "src/core/ZQFileBytes.h"
#include "src/core/ZQOutOfMemory.h"
#include "src/formats/ZQNameText.h"
#include "src/formats/ZQPackedTexture.h"

#include <algorithm>
#include <cwchar>
#include <cstdio>
#include <string>
#include <vector>

namespace ZQ {

namespace {

// A name is read as format text with no arguments, the safe way (src/formats/ZQNameText.h). One
// string serves every record: a string made and freed per record fragments Wine's heap, whose free
// lists then grow with every record, and a large file's loading time with the square of its records.
void SetChunkName(const formats::PackedRecord& record, ZQString& name) {
    wchar_t text[formats::kTeNameBytesWide / 2 + 1] = {};
    const int room = static_cast<int>(formats::kTeNameBytesWide / 2);
    if (record.wideName) {
        const size_t units = std::min(record.wideNameText.size(), static_cast<size_t>(room));
        std::copy_n(record.wideNameText.begin(), units, text);
    } else if (!record.narrowName.empty()) {
        // As the formatting constructor reads single-byte text: the ANSI code page.
        const std::string& narrow = record.narrowName;
        MultiByteToWideChar(CP_ACP, MB_PRECOMPOSED, narrow.data(), static_cast<int>(narrow.size()), text, room);
    }
    text[formats::CollapseFormatText(text, std::wcslen(text))] = 0;
    name = text;
}

_ZQTextureChunk_tag* MakeChunk(const formats::PackedRecord& record, bool atlas) {
    _ZQTextureChunk_tag* chunk = new _ZQTextureChunk_tag;
    chunk->pixel = ZQRect(record.pixel[0], record.pixel[1], record.pixel[2], record.pixel[3]);
    chunk->texcoord = ZQRect(record.texcoord[0], record.texcoord[1], record.texcoord[2], record.texcoord[3]);
    if (atlas) {
        // An atlas chunk's coordinate RECT is its pixel RECT, deliberately.
        chunk->texcoord.rect = chunk->pixel.rect;
        chunk->trim = ZQRect(record.trim[0], record.trim[1], record.trim[2], record.trim[3]);
    }
    chunk->originX = static_cast<float>(record.origin[0]);
    chunk->originY = static_cast<float>(record.origin[1]);
    return chunk;
}

void GiveSharedTexture(IDirect3DDevice9* device, IDirect3DTexture9* loaded, const D3DXIMAGE_INFO& info,
                       const std::vector<_ZQTextureChunk_tag*>& table) {
    // A file without records has no chunk to own the texture.
    if (table.empty())
        return;
    D3DSURFACE_DESC desc;
    if (FAILED(loaded->GetLevelDesc(0, &desc)))
        return;
    const RECT whole = {0, 0, static_cast<LONG>(info.Width), static_cast<LONG>(info.Height)};
    table[0]->texture = ZQCopyToNewTexture(device, loaded, nullptr, whole, desc.Width, desc.Height,
                                           formats::PackedMipLevels(desc.Width, desc.Height), desc.Format);
    for (size_t i = 1; i < table.size(); ++i)
        table[i]->sharedTexture = table[0]->texture;
}

void GiveOwnTextures(IDirect3DDevice9* device, IDirect3DTexture9* loaded, const D3DXIMAGE_INFO& info,
                     UINT deviceMax, const std::vector<_ZQTextureChunk_tag*>& table) {
    D3DSURFACE_DESC loadedDesc;
    if (FAILED(loaded->GetLevelDesc(0, &loadedDesc)))
        return;
    // Rectangles are read from the image as loaded, which is never larger than the image itself.
    const UINT imageWidth = std::min(info.Width, loadedDesc.Width);
    const UINT imageHeight = std::min(info.Height, loadedDesc.Height);
    for (_ZQTextureChunk_tag* chunk : table) {
        const RECT& pixel = chunk->pixel.rect;
        const int32_t rectangle[4] = {pixel.left, pixel.top, pixel.right, pixel.bottom};
        const formats::SplitChunk plan = formats::PlanSplitChunk(rectangle, imageWidth, imageHeight, deviceMax);
        if (!plan.side)
            continue;
        const RECT source = {plan.source[0], plan.source[1], plan.source[2], plan.source[3]};
        const LONG width = source.right - source.left, height = source.bottom - source.top;
        const RECT destination = {0, 0, width, height};
        chunk->texture = ZQCopyToNewTexture(device, loaded, &source, destination, plan.side, plan.side, plan.levels,
                                            loadedDesc.Format);
        D3DSURFACE_DESC desc;
        if (chunk->texture && SUCCEEDED(chunk->texture->GetLevelDesc(0, &desc)))
            chunk->texcoord = ZQRect(0.0f, 0.0f, static_cast<float>(width) / static_cast<float>(desc.Width),
                                     static_cast<float>(height) / static_cast<float>(desc.Height));
    }
}

// The largest texture side the device takes; 0 when it cannot tell.
UINT DeviceMaxSide(IDirect3DDevice9* device) {
    D3DCAPS9 caps = {};
    if (!device || FAILED(device->GetDeviceCaps(&caps)))
        return 0;
    return std::min(caps.MaxTextureWidth, caps.MaxTextureHeight);
}

void LoadPacked(IDirect3DDevice9* device, ZQMapper* chunks, const wchar_t* file, ZQPackedFormat format, bool split) {
    std::vector<uint8_t> bytes;
    if (!file || !chunks || !ZQReadMediaFileBytes(file, bytes, L"ZQTexture::Entry"))
        return;
    formats::PackedFile packed;
    const formats::ParseResult parsed = format == ZQPackedFormat::Om
                                            ? formats::ParseOm(bytes.data(), bytes.size(), packed)
                                            : formats::ParseTe(bytes.data(), bytes.size(), packed);
    if (parsed != formats::ParseResult::Ok) {
        ZQMessage(L"%ls File Error", file);
        return;
    }

    // Each chunk is registered at once, so that a later failure leaves the earlier ones in place.
    std::vector<_ZQTextureChunk_tag*> table;
    table.reserve(packed.records.size());
    ZQString name;
    for (const formats::PackedRecord& record : packed.records) {
        _ZQTextureChunk_tag* chunk = MakeChunk(record, format == ZQPackedFormat::Te);
        SetChunkName(record, name);
        chunks->insert(name, chunk);
        table.push_back(chunk);
    }

    D3DXIMAGE_INFO info = {};
    IDirect3DTexture9* loaded = nullptr;
    const UINT imageBytes = static_cast<UINT>(packed.imageBytes);
    // The image's size bounds the texture asked for. A PNG states it in its header; asking the image
    // loader instead costs a fifth of a decode, and the decode below reports the same information.
    HRESULT hr = E_FAIL;
    if (device && imageBytes && !formats::ImageRefused(packed.image, imageBytes))
        hr = formats::PngSize(packed.image, imageBytes, info.Width, info.Height)
                 ? S_OK
                 : D3DXGetImageInfoFromFileInMemory(packed.image, imageBytes, &info);
    // The header's size is only a request: the texture never outgrows the image it holds.
    const UINT deviceMax = DeviceMaxSide(device);
    const UINT width = formats::LoaderSide(packed.width, info.Width, deviceMax);
    const UINT height = formats::LoaderSide(packed.height, info.Height, deviceMax);
    // Only level 0 of the loaded image is ever read (copied into the chunks' own textures): a chain of
    // mip levels, which the image loader would filter one by one, is half the decode's time for nothing.
    if (SUCCEEDED(hr))
        hr = D3DXCreateTextureFromFileInMemoryEx(device, packed.image, imageBytes, width, height, 1, 0,
                                                 D3DFMT_UNKNOWN, D3DPOOL_MANAGED, D3DX_DEFAULT, D3DX_DEFAULT, 0,
                                                 &info, nullptr, &loaded);
    if (FAILED(hr) || !loaded) {
        ZQMessage(L"%ls D3DXCreateTextureFromFileInMemoryEx Error", file);
        ZQMessage(L"ZQTexture::Entry: %ls: its image is %hs", file, formats::DescribeImage(packed.image, imageBytes));
        return;
    }
    if (split)
        GiveOwnTextures(device, loaded, info, deviceMax, table);
    else
        GiveSharedTexture(device, loaded, info, table);
    loaded->Release();
}

} // namespace

void ZQLoadPackedFile(IDirect3DDevice9* device, ZQMapper* chunks, const wchar_t* file, ZQPackedFormat format,
                      bool split) {
    // Out of memory while reading: the file is dropped like any other bad file.
    ZQSurvivesOutOfMemory([&] { LoadPacked(device, chunks, file, format, split); });
}

IDirect3DTexture9* ZQCopyToNewTexture(IDirect3DDevice9* device, IDirect3DTexture9* source, const RECT* sourceRect,
                                      const RECT& destinationRect, UINT width, UINT height, UINT levels,
                                      D3DFORMAT format) {
    IDirect3DTexture9* texture = nullptr;
    if (!device || FAILED(device->CreateTexture(width, height, levels, 0, format, D3DPOOL_MANAGED, &texture, nullptr)))
        return nullptr;
    IDirect3DSurface9* to = nullptr;
    IDirect3DSurface9* from = nullptr;
    if (SUCCEEDED(texture->GetSurfaceLevel(0, &to)) && SUCCEEDED(source->GetSurfaceLevel(0, &from)))
        D3DXLoadSurfaceFromSurface(to, nullptr, &destinationRect, from, nullptr, sourceRect, D3DX_DEFAULT, 0);
    if (from)
        from->Release();
    if (to)
        to->Release();
    // A copy that fails (a rectangle outside the image) leaves the new texture blank, as it is.
    return texture;
}

void ZQReleaseChunk(_ZQTextureChunk_tag* chunk) {
    if (!chunk)
        return;
    if (chunk->texture)
        chunk->texture->Release();
    delete chunk;
}

} // namespace ZQ
