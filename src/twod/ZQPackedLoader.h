// Loading of packed texture files and single images into texture chunks.
#pragma once
#include "ZQ/core/ZQMapper.h"
#include "ZQ/core/ZQPlatform.h"
#include "ZQ/twod/ZQTextureChunk.h"

namespace ZQ {

enum class ZQPackedFormat { Om, Te };

/// Reads, checks and registers a packed file's chunks in chunks; see ZQOmFile::Entry.
void ZQLoadPackedFile(IDirect3DDevice9* device, ZQMapper* chunks, const wchar_t* file, ZQPackedFormat format,
                      bool split);

/// Creates a managed texture of width x height with levels mip levels and the format, and copies
/// the source rectangle of the source (all of it when null) into its destination rectangle.
IDirect3DTexture9* ZQCopyToNewTexture(IDirect3DDevice9* device, IDirect3DTexture9* source, const RECT* sourceRect,
                                      const RECT& destinationRect, UINT width, UINT height, UINT levels,
                                      D3DFORMAT format);

/// Releases the chunk's owned texture, forgets the shared one and deletes the chunk.
void ZQReleaseChunk(_ZQTextureChunk_tag* chunk);

} // namespace ZQ
