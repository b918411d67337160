#pragma once
#include "ZQ/core/ZQPlatform.h"
#include "ZQ/core/ZQRect.h"

namespace ZQ {

/// A named region of a texture: the unit of all 2D drawing. Owned by the ZQTexture whose map holds it.
/// Drawing uses sharedTexture when it is not null, texture otherwise.
struct _ZQTextureChunk_tag {
    ZQRect pixel;    ///< the region in the source image, in pixels
    ZQRect texcoord; ///< the same region in texture coordinates of the texture drawn
    ZQRect trim;     ///< ".TE" files only: the opaque part, relative to the chunk; zero otherwise
    float originX = 0.0f; ///< reference point, in pixels from the chunk's top-left corner
    float originY = 0.0f;
    IDirect3DTexture9* texture = nullptr;       ///< owned: released with the chunk
    IDirect3DTexture9* sharedTexture = nullptr; ///< another chunk's texture: not released here
};

} // namespace ZQ
