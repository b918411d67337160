#include "src/threed/ZQ3DModel.h"
#include "ZQ/core/ZQDiagnostics.h"
#include "ZQ/core/ZQLock.h"
#include "ZQ/frame/ZQMediaSearch.h"
#include "src/core/ZQComRelease.h"
#include "src/core/ZQFileBytes.h"
#include "src/formats/ZQPackedTexture.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <limits>
#include <new>

namespace ZQ {
namespace _3D {

using formats::XBone;
using formats::XMesh;
using formats::XVertex;

namespace {

// Vertex layout: position, normal, [diffuse], one pair of texture coordinates (the format's order).
const DWORD kFormat = D3DFVF_XYZ | D3DFVF_NORMAL | D3DFVF_TEX1;
const DWORD kColouredFormat = kFormat | D3DFVF_DIFFUSE;
const size_t kNormalAt = 3;
const size_t kColourAt = 6;

size_t FloatsPerVertex(bool coloured) {
    return coloured ? 9 : 8;
}

void WriteVertex(float* out, const XVertex& vertex, bool coloured) {
    std::memcpy(out, vertex.position, sizeof vertex.position);
    std::memcpy(out + kNormalAt, vertex.normal, sizeof vertex.normal);
    if (coloured)
        std::memcpy(out + kColourAt, &vertex.colour, sizeof vertex.colour);
    std::memcpy(out + (coloured ? 7 : 6), vertex.uv, sizeof vertex.uv);
}

std::wstring WideName(const std::string& name) {
    if (name.empty())
        return std::wstring();
    const int length = MultiByteToWideChar(CP_ACP, 0, name.data(), static_cast<int>(name.size()), nullptr, 0);
    std::wstring wide(static_cast<size_t>(std::max(length, 0)), L'\0');
    if (length > 0)
        MultiByteToWideChar(CP_ACP, 0, name.data(), static_cast<int>(name.size()), &wide[0], length);
    return wide;
}

int FindName(const std::vector<std::wstring>& names, const wchar_t* name) {
    if (!name)
        return -1;
    for (size_t i = 0; i < names.size(); ++i)
        if (CompareStringOrdinal(names[i].c_str(), static_cast<int>(names[i].size()), name, -1, TRUE) == CSTR_EQUAL)
            return static_cast<int>(i);
    return -1;
}

void TransformPoint(const float in[3], const XMatrix& m, float out[3]) {
    for (int c = 0; c < 3; ++c)
        out[c] = in[0] * m.m[c] + in[1] * m.m[4 + c] + in[2] * m.m[8 + c] + m.m[12 + c];
}

void TransformNormal(const float in[3], const XMatrix& m, float out[3]) {
    for (int c = 0; c < 3; ++c)
        out[c] = in[0] * m.m[c] + in[1] * m.m[4 + c] + in[2] * m.m[8 + c];
}

XMatrix FromD3DX(const D3DXMATRIX& matrix) {
    XMatrix out;
    std::memcpy(out.m, static_cast<const float*>(matrix), sizeof out.m);
    return out;
}

D3DXMATRIX ToD3DX(const XMatrix& matrix) {
    return D3DXMATRIX(matrix.m);
}

// Möller and Trumbore's test, both faces: the distance along the ray, or a negative number.
float RayTriangle(const D3DXVECTOR3& origin, const D3DXVECTOR3& direction, const D3DXVECTOR3& a, const D3DXVECTOR3& b,
                  const D3DXVECTOR3& c) {
    const D3DXVECTOR3 edge1 = b - a, edge2 = c - a;
    D3DXVECTOR3 p, q;
    D3DXVec3Cross(&p, &direction, &edge2);
    const float determinant = D3DXVec3Dot(&edge1, &p);
    if (std::fabs(determinant) < 1e-12f)
        return -1.0f;
    const float inverse = 1.0f / determinant;
    const D3DXVECTOR3 toOrigin = origin - a;
    const float u = D3DXVec3Dot(&toOrigin, &p) * inverse;
    if (u < 0.0f || u > 1.0f)
        return -1.0f;
    D3DXVec3Cross(&q, &toOrigin, &edge1);
    const float v = D3DXVec3Dot(&direction, &q) * inverse;
    if (v < 0.0f || u + v > 1.0f)
        return -1.0f;
    return D3DXVec3Dot(&edge2, &q) * inverse;
}

} // namespace

ZQ3DModel::ZQ3DModel(formats::XFile&& file) : m_file(std::move(file)), m_skeleton(m_file) {
    for (const formats::XFrame& frame : m_file.frames)
        m_frameNames.push_back(WideName(frame.name));
    for (const formats::XAnimationSet& set : m_file.animationSets)
        m_animationNames.push_back(WideName(set.name));
}

ZQ3DModel* ZQ3DModel::Create(IDirect3DDevice9* device, formats::XFile&& file, const std::wstring& directory,
                              const wchar_t* name) {
    ZQ3DModel* model = new (std::nothrow) ZQ3DModel(std::move(file));
    if (model && !model->Build(device, directory, name)) {
        delete model;
        return nullptr;
    }
    return model;
}

ZQ3DModel::~ZQ3DModel() {
    for (Mesh& mesh : m_meshes) {
        ZQSafeRelease(mesh.vertices);
        ZQSafeRelease(mesh.indices);
    }
    for (auto& texture : m_textures)
        ZQSafeRelease(texture.second);
}

bool ZQ3DModel::Build(IDirect3DDevice9* device, const std::wstring& directory, const wchar_t* name) {
    size_t mostBones = 0;
    m_meshes.resize(m_file.meshes.size());
    for (size_t index = 0; index < m_file.meshes.size(); ++index) {
        const XMesh& source = m_file.meshes[index];
        Mesh& mesh = m_meshes[index];
        mesh.format = source.hasColours ? kColouredFormat : kFormat;
        const size_t floats = FloatsPerVertex(source.hasColours);
        mesh.stride = static_cast<UINT>(floats * sizeof(float));
        const size_t triangles = source.triangleMaterials.size();
        if (triangles == 0 || source.vertices.empty())
            continue;
        // Buffer sizes are 32-bit: a mesh past them is refused rather than cut.
        if (source.vertices.size() > UINT_MAX / mesh.stride || source.indices.size() > UINT_MAX / 4)
            return false;

        // Triangles ordered by material: one draw per material.
        std::vector<uint32_t> sorted;
        sorted.reserve(source.indices.size());
        for (size_t material = 0; material < source.materials.size(); ++material) {
            const UINT start = static_cast<UINT>(sorted.size());
            for (size_t t = 0; t < triangles; ++t)
                if (source.triangleMaterials[t] == material)
                    sorted.insert(sorted.end(), source.indices.begin() + 3 * t, source.indices.begin() + 3 * t + 3);
            if (sorted.size() == start)
                continue;
            const formats::XMaterial& from = source.materials[material];
            Subset subset = {};
            subset.material.Diffuse = {from.diffuse[0], from.diffuse[1], from.diffuse[2], from.diffuse[3]};
            // Lit by the ambient light as by the sun: the material's own colour.
            subset.material.Ambient = subset.material.Diffuse;
            subset.material.Specular = {from.specular[0], from.specular[1], from.specular[2], 1.0f};
            subset.material.Emissive = {from.emissive[0], from.emissive[1], from.emissive[2], 1.0f};
            subset.material.Power = from.power;
            subset.texture = from.texture.empty() ? nullptr : Texture(device, from.texture, directory, name);
            subset.startIndex = start;
            subset.triangles = static_cast<UINT>((sorted.size() - start) / 3);
            mesh.subsets.push_back(subset);
        }

        std::vector<float> vertices(source.vertices.size() * floats);
        for (size_t v = 0; v < source.vertices.size(); ++v)
            WriteVertex(&vertices[v * floats], source.vertices[v], source.hasColours);

        if (!source.bones.empty()) {
            // Deformed in memory each time it is drawn.
            mesh.skinned = std::move(vertices);
            mesh.sortedIndices = std::move(sorted);
            mesh.weightSum.assign(source.vertices.size(), 0.0f);
            for (const XBone& bone : source.bones)
                for (size_t k = 0; k < bone.vertices.size(); ++k)
                    mesh.weightSum[bone.vertices[k]] += bone.weights[k];
            mostBones = std::max(mostBones, source.bones.size());
            continue;
        }

        const UINT vertexBytes = static_cast<UINT>(vertices.size() * sizeof(float));
        void* locked = nullptr;
        if (FAILED(device->CreateVertexBuffer(vertexBytes, D3DUSAGE_WRITEONLY, mesh.format, D3DPOOL_MANAGED,
                                              &mesh.vertices, nullptr)) ||
            FAILED(mesh.vertices->Lock(0, 0, &locked, 0)))
            return false;
        std::memcpy(locked, vertices.data(), vertexBytes);
        mesh.vertices->Unlock();

        const bool wide = source.vertices.size() > 0xFFFF;
        const UINT indexBytes = static_cast<UINT>(sorted.size() * (wide ? 4 : 2));
        if (FAILED(device->CreateIndexBuffer(indexBytes, D3DUSAGE_WRITEONLY, wide ? D3DFMT_INDEX32 : D3DFMT_INDEX16,
                                             D3DPOOL_MANAGED, &mesh.indices, nullptr)) ||
            FAILED(mesh.indices->Lock(0, 0, &locked, 0)))
            return false;
        if (wide) {
            std::memcpy(locked, sorted.data(), indexBytes);
        } else {
            uint16_t* out = static_cast<uint16_t*>(locked);
            for (size_t i = 0; i < sorted.size(); ++i)
                out[i] = static_cast<uint16_t>(sorted[i]);
        }
        mesh.indices->Unlock();
    }
    m_bones.resize(mostBones);
    return true;
}

IDirect3DTexture9* ZQ3DModel::Texture(IDirect3DDevice9* device, const std::string& file,
                                      const std::wstring& directory, const wchar_t* model) {
    for (const auto& known : m_textures)
        if (known.first == file)
            return known.second;
    // Exporters write paths of the artist's machine: the bare name beside the model is tried as well.
    const std::wstring wide = WideName(file);
    const size_t slash = wide.find_last_of(L"\\/:");
    const std::wstring bare = slash == std::wstring::npos ? wide : wide.substr(slash + 1);
    const std::wstring candidates[] = {directory + wide, directory + bare, wide, bare};
    IDirect3DTexture9* texture = nullptr;
    for (size_t i = 0; i < 4 && !texture; ++i) {
        wchar_t path[MAX_PATH];
        if (candidates[i].empty() || candidates[i].size() >= MAX_PATH)
            continue;
        if (i < 2)
            std::wcscpy(path, candidates[i].c_str());
        else if (FAILED(ZQFindDXSDKMediaFileCch(path, MAX_PATH, candidates[i].c_str())))
            continue;
        std::vector<uint8_t> bytes;
        if (!ZQReadFileBytes(path, bytes) || bytes.empty() || formats::ImageRefused(bytes.data(), bytes.size()))
            continue;
        if (FAILED(D3DXCreateTextureFromFileInMemoryEx(
                device, bytes.data(), static_cast<UINT>(bytes.size()), D3DX_DEFAULT, D3DX_DEFAULT, D3DX_DEFAULT, 0,
                D3DFMT_UNKNOWN, D3DPOOL_MANAGED, D3DX_DEFAULT, D3DX_DEFAULT, 0, nullptr, nullptr, &texture)))
            texture = nullptr;
    }
    if (!texture)
        ZQMessage(L"ZQ3DObject::Entry: %ls: texture %hs not found or not decoded; drawn untextured", model,
                  file.c_str());
    m_textures.emplace_back(file, texture);
    return texture;
}

int ZQ3DModel::FindAnimation(const wchar_t* name) const {
    return FindName(m_animationNames, name);
}

int ZQ3DModel::FindFrame(const wchar_t* name) const {
    return FindName(m_frameNames, name);
}

unsigned int ZQ3DModel::VertexCount() const {
    size_t count = 0;
    for (const XMesh& mesh : m_file.meshes)
        count += mesh.vertices.size();
    return static_cast<unsigned int>(count);
}

unsigned int ZQ3DModel::TriangleCount() const {
    size_t count = 0;
    for (const XMesh& mesh : m_file.meshes)
        count += mesh.triangleMaterials.size();
    return static_cast<unsigned int>(count);
}

unsigned int ZQ3DModel::BoneCount() const {
    size_t count = 0;
    for (const XMesh& mesh : m_file.meshes)
        count += mesh.bones.size();
    return static_cast<unsigned int>(count);
}

void ZQ3DModel::Skin(size_t index, const XMatrix* combined) {
    const XMesh& source = m_file.meshes[index];
    Mesh& mesh = m_meshes[index];
    const size_t floats = FloatsPerVertex(source.hasColours);
    for (size_t b = 0; b < source.bones.size(); ++b)
        m_bones[b] =
            MultiplyMatrices(source.bones[b].offset, combined[static_cast<size_t>(source.bones[b].frameIndex)]);
    for (size_t v = 0; v < source.vertices.size(); ++v)
        std::fill_n(&mesh.skinned[v * floats], 6, 0.0f);
    for (size_t b = 0; b < source.bones.size(); ++b) {
        const XBone& bone = source.bones[b];
        for (size_t k = 0; k < bone.vertices.size(); ++k) {
            const XVertex& vertex = source.vertices[bone.vertices[k]];
            float* out = &mesh.skinned[bone.vertices[k] * floats];
            float position[3], normal[3];
            TransformPoint(vertex.position, m_bones[b], position);
            TransformNormal(vertex.normal, m_bones[b], normal);
            for (int c = 0; c < 3; ++c) {
                out[c] += bone.weights[k] * position[c];
                out[kNormalAt + c] += bone.weights[k] * normal[c];
            }
        }
    }
    // A vertex no bone moves stays with the mesh's frame.
    const XMatrix& rigid = combined[static_cast<size_t>(source.frame)];
    for (size_t v = 0; v < source.vertices.size(); ++v)
        if (mesh.weightSum[v] == 0.0f) {
            TransformPoint(source.vertices[v].position, rigid, &mesh.skinned[v * floats]);
            TransformNormal(source.vertices[v].normal, rigid, &mesh.skinned[v * floats + kNormalAt]);
        }
}

void ZQ3DModel::DrawSubset(IDirect3DDevice9* device, const Subset& subset) const {
    device->SetMaterial(&subset.material);
    device->SetTexture(0, subset.texture);
    // Without a texture the stage passes the lit colour on (the camera's stage multiplies by the texture).
    const DWORD operation = subset.texture ? D3DTOP_MODULATE : D3DTOP_SELECTARG2;
    device->SetTextureStageState(0, D3DTSS_COLOROP, operation);
    device->SetTextureStageState(0, D3DTSS_ALPHAOP, operation);
}

void ZQ3DModel::Draw(IDirect3DDevice9* device, const ZQ3DPlaced* instances, size_t count) {
    if (!device || count == 0)
        return;
    ZQLock lock(m_lock);
    device->SetTextureStageState(0, D3DTSS_COLORARG1, D3DTA_TEXTURE);
    device->SetTextureStageState(0, D3DTSS_COLORARG2, D3DTA_CURRENT);
    device->SetTextureStageState(0, D3DTSS_ALPHAARG1, D3DTA_TEXTURE);
    device->SetTextureStageState(0, D3DTSS_ALPHAARG2, D3DTA_DIFFUSE);
    for (size_t index = 0; index < m_meshes.size(); ++index) {
        const Mesh& mesh = m_meshes[index];
        const XMesh& source = m_file.meshes[index];
        if (mesh.subsets.empty())
            continue;
        device->SetFVF(mesh.format);
        if (source.hasColours)
            device->SetRenderState(D3DRS_DIFFUSEMATERIALSOURCE, D3DMCS_COLOR1);
        const UINT vertexCount = static_cast<UINT>(source.vertices.size());
        if (!mesh.skinned.empty()) {
            for (size_t i = 0; i < count; ++i) {
                Skin(index, instances[i].combined);
                device->SetTransform(D3DTS_WORLD, &instances[i].placement);
                for (const Subset& subset : mesh.subsets) {
                    DrawSubset(device, subset);
                    device->DrawIndexedPrimitiveUP(D3DPT_TRIANGLELIST, 0, vertexCount, subset.triangles,
                                                   &mesh.sortedIndices[subset.startIndex], D3DFMT_INDEX32,
                                                   mesh.skinned.data(), mesh.stride);
                }
            }
            continue;
        }
        device->SetStreamSource(0, mesh.vertices, 0, mesh.stride);
        device->SetIndices(mesh.indices);
        for (const Subset& subset : mesh.subsets) {
            DrawSubset(device, subset);
            for (size_t i = 0; i < count; ++i) {
                const D3DXMATRIX world =
                    ToD3DX(instances[i].combined[static_cast<size_t>(source.frame)]) * instances[i].placement;
                device->SetTransform(D3DTS_WORLD, &world);
                device->DrawIndexedPrimitive(D3DPT_TRIANGLELIST, 0, 0, vertexCount, subset.startIndex,
                                             subset.triangles);
            }
        }
    }
    // What the camera set and the sprites expect; nothing of the model stays bound.
    device->SetTextureStageState(0, D3DTSS_COLOROP, D3DTOP_MODULATE);
    device->SetTextureStageState(0, D3DTSS_ALPHAOP, D3DTOP_MODULATE);
    device->SetTexture(0, nullptr);
    device->SetStreamSource(0, nullptr, 0, 0);
    device->SetIndices(nullptr);
}

bool ZQ3DModel::Intersect(const ZQ3DPlaced& placed, const D3DXVECTOR3& origin, const D3DXVECTOR3& direction,
                          float* distance) {
    ZQLock lock(m_lock);
    const XMatrix placement = FromD3DX(placed.placement);
    float nearest = std::numeric_limits<float>::infinity();
    std::vector<D3DXVECTOR3> world;
    for (size_t index = 0; index < m_meshes.size(); ++index) {
        const XMesh& source = m_file.meshes[index];
        const Mesh& mesh = m_meshes[index];
        world.resize(source.vertices.size());
        const bool skinned = !mesh.skinned.empty();
        if (skinned)
            Skin(index, placed.combined);
        const XMatrix rigid = MultiplyMatrices(placed.combined[static_cast<size_t>(source.frame)], placement);
        const size_t floats = FloatsPerVertex(source.hasColours);
        for (size_t v = 0; v < source.vertices.size(); ++v)
            TransformPoint(skinned ? &mesh.skinned[v * floats] : source.vertices[v].position,
                           skinned ? placement : rigid, &world[v].x);
        for (size_t i = 0; i + 2 < source.indices.size(); i += 3) {
            const float hit = RayTriangle(origin, direction, world[source.indices[i]], world[source.indices[i + 1]],
                                          world[source.indices[i + 2]]);
            if (hit >= 0.0f && hit < nearest)
                nearest = hit;
        }
    }
    if (!(nearest < std::numeric_limits<float>::infinity()))
        return false;
    if (distance)
        *distance = nearest;
    return true;
}

} // namespace _3D
} // namespace ZQ
