// The ".x" model files ("xof 0302"/"0303", "txt " or "bin ", 32- or 64-bit floats): frames, meshes
// with their materials and skins, animation sets. Read into render-ready form: triangles, one vertex
// per distinct corner, matrix keys split into scale, rotation and position keys. No platform calls:
// the DLL, the tools and the fuzzer share this code.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace ZQ {
namespace formats {

/// The format's tick rate when a file has no AnimTicksPerSecond.
const uint32_t kXDefaultTicksPerSecond = 4800;

enum class XResult {
    Ok,
    NotX,       ///< no "xof " header, or a format other than text, binary and the compressed ones
    Compressed, ///< "tzip" or "bzip": refused
    Malformed,  ///< the bytes break the grammar, a count exceeds what follows, an index is out of range
};

/// Row-vector matrix as Direct3D stores it: 16 floats, row by row, translation in 12..14.
struct XMatrix {
    float m[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
};

struct XFrame {
    std::string name;             ///< empty for an unnamed frame
    XMatrix transform;            ///< FrameTransformMatrix, identity where absent
    int parent = -1;              ///< index of the parent frame; frames come parents first
    std::vector<int> children;    ///< indices of child frames, in file order
    std::vector<int> meshes;      ///< indices of the meshes the frame holds
};

struct XMaterial {
    std::string name;
    float diffuse[4] = {1, 1, 1, 1}; ///< faceColor, RGBA
    float power = 0;
    float specular[3] = {};
    float emissive[3] = {};
    std::string texture; ///< TextureFilename as written (may hold a path), empty for none
};

struct XVertex {
    float position[3] = {};
    float normal[3] = {};
    float uv[2] = {};
    uint32_t colour = 0xFFFFFFFF; ///< A8R8G8B8 from MeshVertexColors
    uint32_t source = 0;          ///< the index of the file's vertex this one was made from
};

struct XBone {
    std::string frame;          ///< the frame that moves the bone (SkinWeights' transformNodeName)
    int frameIndex = -1;        ///< that frame's index
    XMatrix offset;             ///< matrixOffset: mesh space to bone space
    std::vector<uint32_t> vertices; ///< indices into XMesh::vertices (already mapped through source)
    std::vector<float> weights;     ///< one per entry of vertices
};

struct XMesh {
    std::string name;
    int frame = 0;                       ///< the frame that holds the mesh (0, the root, for a top-level mesh)
    std::vector<XVertex> vertices;
    std::vector<uint32_t> indices;       ///< triangles (polygons fanned), three per triangle
    std::vector<uint32_t> triangleMaterials; ///< one material index per triangle
    std::vector<XMaterial> materials;    ///< at least one (a white default when the file gives none)
    std::vector<XBone> bones;            ///< empty when the mesh is not skinned
    bool hasNormals = false;             ///< from the file; otherwise computed (smooth, area-weighted)
    bool hasTextureCoordinates = false;
    bool hasColours = false;
    uint32_t declaredVertices = 0;       ///< the file's vertex count (before corners were split)
    uint32_t declaredFaces = 0;
};

struct XVectorKey {
    double time = 0;   ///< ticks
    float value[3] = {};
};

struct XRotationKey {
    double time = 0;   ///< ticks
    float value[4] = {1, 0, 0, 0}; ///< w, x, y, z as stored
};

struct XTrack {
    std::string frame;   ///< the frame the Animation names
    int frameIndex = -1;
    std::vector<XRotationKey> rotations; ///< each list sorted by time, keys with a non-finite time dropped
    std::vector<XVectorKey> scales;
    std::vector<XVectorKey> positions;
    bool hasMatrixKeys = false; ///< the keys came from matrix keys (type 4), split on reading
    bool open = false;          ///< AnimationOptions openclosed = 1
    bool linear = true;         ///< AnimationOptions positionquality = 1 (0 asks for spline positions)
};

struct XAnimationSet {
    std::string name;
    std::vector<XTrack> tracks;
    double lastKeyTime = 0; ///< ticks: the latest key of all tracks
};

struct XFile {
    bool binary = false;
    int floatBits = 32;
    int version = 303; ///< 302 or 303
    uint32_t ticksPerSecond = kXDefaultTicksPerSecond;
    bool ticksDeclared = false;
    std::vector<XFrame> frames; ///< frames[0] is the root the library adds: unnamed, identity
    std::vector<XMesh> meshes;
    std::vector<XAnimationSet> animationSets;
};

/// Reads a whole file. On Ok, every index in the result is in range and every count came from bytes the
/// file holds; an Animation naming no frame of the file and a bone naming no frame are dropped. Anything
/// else the grammar or the counts do not allow is Malformed, and file is then left empty. error, when
/// given, receives a short reason in English ("face 3 uses vertex 9 of 8", "cut short in Mesh 'Box'").
XResult ParseX(const uint8_t* data, size_t size, XFile& file, std::string* error = nullptr);

/// "ok", "not a .x file", "compressed .x file", "malformed .x file".
const char* DescribeXResult(XResult result);

/// Splits a matrix into scale, rotation (w, x, y, z, in the sense of the rotation keys) and translation.
/// false when the matrix has a zero scale (the parts are then the identity's).
bool DecomposeXMatrix(const XMatrix& matrix, float scale[3], float rotation[4], float translation[3]);

} // namespace formats
} // namespace ZQ
