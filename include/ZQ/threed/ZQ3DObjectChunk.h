#pragma once
#include "ZQ/core/ZQPlatform.h"

namespace ZQ {
namespace _3D {

class ZQ3DModel;

/// One model of a ZQ3DObject, loaded from a .x file: what it holds, and the model itself for the
/// players. Owned by the ZQ3DObject whose map holds it.
struct _ZQ3DObjectChunk_tag {
    unsigned int frames = 0; ///< the file's frames and the root the library adds above them
    unsigned int meshes = 0;
    unsigned int vertices = 0; ///< after corners with different normals were split
    unsigned int triangles = 0;
    unsigned int bones = 0;      ///< over all skinned meshes
    unsigned int animations = 0; ///< animation sets
    ZQ3DModel* model = nullptr;  ///< the library's: buffers, textures, skeleton and animations
};

} // namespace _3D
} // namespace ZQ
