// A model loaded from a .x file, ready to draw: buffers and textures on the device, the skeleton and
// animations for its poses, and what software skinning and picking need.
#pragma once
#include "ZQ/core/ZQCriticalSection.h"
#include "ZQ/core/ZQPlatform.h"
#include "src/threed/ZQ3DPose.h"

#include <string>
#include <vector>

namespace ZQ {
namespace _3D {

/// A model placed in the world with a pose: what drawing and picking read of one instance.
struct ZQ3DPlaced {
    const XMatrix* combined; ///< every frame's combined matrix
    D3DXMATRIX placement;
};

class ZQ3DModel {
public:
    /// Makes buffers and textures for every mesh; null when the device refuses a buffer.
    /// name: the file as the host gave it, for messages.
    static ZQ3DModel* Create(IDirect3DDevice9* device, formats::XFile&& file, const std::wstring& directory,
                             const wchar_t* name);
    ZQ3DModel(const ZQ3DModel&) = delete;
    ZQ3DModel& operator=(const ZQ3DModel&) = delete;
    ~ZQ3DModel();

    const ZQ3DSkeleton& Skeleton() const { return m_skeleton; }
    /// Case-insensitive, the first of a name wins; -1 when absent.
    int FindAnimation(const wchar_t* name) const;
    int FindFrame(const wchar_t* name) const;
    unsigned int VertexCount() const;
    unsigned int TriangleCount() const;
    unsigned int BoneCount() const;

    /// Draws every instance, grouped by mesh and material. Sets world, material, texture, vertex
    /// format, stream and indices; stage 0's colour operation is left as the camera sets it.
    void Draw(IDirect3DDevice9* device, const ZQ3DPlaced* instances, size_t count);
    /// The nearest distance along the ray (origin, unit direction) at which it meets a triangle of the
    /// placed model; false when it meets none.
    bool Intersect(const ZQ3DPlaced& placed, const D3DXVECTOR3& origin, const D3DXVECTOR3& direction, float* distance);

private:
    struct Subset {
        D3DMATERIAL9 material;
        IDirect3DTexture9* texture; ///< borrowed from m_textures; null draws untextured
        UINT startIndex;
        UINT triangles;
    };
    struct Mesh {
        IDirect3DVertexBuffer9* vertices = nullptr;
        IDirect3DIndexBuffer9* indices = nullptr;
        DWORD format = 0;
        UINT stride = 0;
        std::vector<Subset> subsets;
        std::vector<uint32_t> sortedIndices; ///< skinned meshes draw from memory
        std::vector<float> weightSum;        ///< per vertex, skinned meshes only
        std::vector<float> skinned;          ///< the deformed vertices, in the buffer's layout
    };

    explicit ZQ3DModel(formats::XFile&& file);
    bool Build(IDirect3DDevice9* device, const std::wstring& directory, const wchar_t* name);
    IDirect3DTexture9* Texture(IDirect3DDevice9* device, const std::string& file, const std::wstring& directory,
                               const wchar_t* model);
    /// Deforms a skinned mesh's vertices by the pose into its skinned store (positions and normals).
    void Skin(size_t mesh, const XMatrix* combined);
    void DrawSubset(IDirect3DDevice9* device, const Subset& subset) const;

    formats::XFile m_file;
    ZQ3DSkeleton m_skeleton;
    std::vector<std::wstring> m_frameNames;
    std::vector<std::wstring> m_animationNames;
    std::vector<Mesh> m_meshes;
    std::vector<std::pair<std::string, IDirect3DTexture9*>> m_textures; ///< owned, by file name
    std::vector<XMatrix> m_bones;                                       ///< scratch: one bone's matrix per skin bone
    ZQCriticalSection m_lock;                                           ///< guards the skinning scratch
};

} // namespace _3D
} // namespace ZQ
