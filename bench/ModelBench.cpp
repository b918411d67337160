// Time per frame of 1,000 animated models through ZQ3DRenderMulti, the pose evaluation alone, and the
// same meshes drawn by a plain DrawSubset loop with precomputed matrices, in the same run.
//   model_bench MODELS [FRAMES]
// MODELS is the folder of make_test_models' files (arm.x, skin.x); they are found by the media search
// from there, as a host finds its art.
#include "BenchSupport.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <vector>

namespace {

const int kInstances = 1000, kColumns = 40;
const float kElapsed = 1.0f / 60.0f;

struct Kind {
    const wchar_t* name;
    const wchar_t* file;
    const wchar_t* binaryFile; ///< the same model in the binary form, for D3DX when it refuses the text
    const wchar_t* animation;
};
const Kind kKinds[] = {{L"arm", L"arm.x", L"arm-bin.x", L"Wave"}, {L"skin", L"skin.x", L"skin-bin.x", L"Bend"}};

// The baseline's copy of one model: meshes of its own, each with its materials, textures and a fixed
// offset from the instance's place.
struct PlainModel {
    struct Part {
        ID3DXMesh* mesh = nullptr;
        std::vector<D3DMATERIAL9> materials;
        std::vector<IDirect3DTexture9*> textures;
        D3DXMATRIX offset;
    };
    std::vector<Part> parts;
    const wchar_t* file = nullptr; ///< what D3DX read; null for stand-in boxes

    unsigned long Triangles() const {
        unsigned long triangles = 0;
        for (const Part& part : parts)
            triangles += part.mesh->GetNumFaces();
        return triangles;
    }
    void Release() {
        for (Part& part : parts) {
            part.mesh->Release();
            for (IDirect3DTexture9* texture : part.textures)
                if (texture)
                    texture->Release();
        }
        parts.clear();
    }
};

const DWORD kFormat = D3DFVF_XYZ | D3DFVF_NORMAL | D3DFVF_TEX1;

struct Vertex {
    float position[3], normal[3], uv[2];
};

// Rebuilds loaded as a mesh of our own layout, its faces ordered by material so that each subset is one
// range of the attribute table; the source's layout is read from its FVF.
ID3DXMesh* CopyMesh(IDirect3DDevice9* device, ID3DXMesh* loaded) {
    const DWORD fvf = loaded->GetFVF(), faces = loaded->GetNumFaces(), vertices = loaded->GetNumVertices();
    if ((fvf & D3DFVF_POSITION_MASK) != D3DFVF_XYZ)
        return nullptr;
    const bool wide = (loaded->GetOptions() & D3DXMESH_32BIT) != 0;
    const UINT stride = D3DXGetFVFVertexSize(fvf);
    UINT uvAt = 12 + ((fvf & D3DFVF_NORMAL) ? 12 : 0);
    uvAt += ((fvf & D3DFVF_PSIZE) ? 4 : 0) + ((fvf & D3DFVF_DIFFUSE) ? 4 : 0) + ((fvf & D3DFVF_SPECULAR) ? 4 : 0);
    const bool hasUv = ((fvf & D3DFVF_TEXCOUNT_MASK) >> D3DFVF_TEXCOUNT_SHIFT) > 0;

    ID3DXMesh* mesh = nullptr;
    if (FAILED(
            D3DXCreateMeshFVF(faces, vertices, D3DXMESH_MANAGED | (wide ? D3DXMESH_32BIT : 0), kFormat, device, &mesh)))
        return nullptr;
    void* from = nullptr;
    void* to = nullptr;
    if (SUCCEEDED(loaded->LockVertexBuffer(D3DLOCK_READONLY, &from))) {
        if (SUCCEEDED(mesh->LockVertexBuffer(0, &to))) {
            for (DWORD v = 0; v < vertices; ++v) {
                const char* in = static_cast<const char*>(from) + static_cast<size_t>(v) * stride;
                Vertex& out = static_cast<Vertex*>(to)[v];
                std::memset(&out, 0, sizeof out);
                std::memcpy(out.position, in, 12);
                if (fvf & D3DFVF_NORMAL)
                    std::memcpy(out.normal, in + 12, 12);
                if (hasUv)
                    std::memcpy(out.uv, in + uvAt, 8);
            }
            mesh->UnlockVertexBuffer();
        }
        loaded->UnlockVertexBuffer();
    }

    void* fromIndices = nullptr;
    void* toIndices = nullptr;
    DWORD* fromAttributes = nullptr;
    DWORD* toAttributes = nullptr;
    const size_t indexBytes = wide ? 4 : 2;
    std::vector<D3DXATTRIBUTERANGE> ranges;
    if (SUCCEEDED(loaded->LockIndexBuffer(D3DLOCK_READONLY, &fromIndices)) &&
        SUCCEEDED(loaded->LockAttributeBuffer(D3DLOCK_READONLY, &fromAttributes)) &&
        SUCCEEDED(mesh->LockIndexBuffer(0, &toIndices)) && SUCCEEDED(mesh->LockAttributeBuffer(0, &toAttributes))) {
        std::vector<DWORD> order(faces);
        for (DWORD f = 0; f < faces; ++f)
            order[f] = f;
        std::stable_sort(order.begin(), order.end(),
                         [&](DWORD a, DWORD b) { return fromAttributes[a] < fromAttributes[b]; });
        for (DWORD f = 0; f < faces; ++f) {
            const DWORD face = order[f], attribute = fromAttributes[face];
            std::memcpy(static_cast<char*>(toIndices) + f * 3 * indexBytes,
                        static_cast<const char*>(fromIndices) + face * 3 * indexBytes, 3 * indexBytes);
            toAttributes[f] = attribute;
            if (ranges.empty() || ranges.back().AttribId != attribute)
                ranges.push_back({attribute, f, 0, 0, vertices});
            ++ranges.back().FaceCount;
        }
    }
    if (toAttributes)
        mesh->UnlockAttributeBuffer();
    if (toIndices)
        mesh->UnlockIndexBuffer();
    if (fromAttributes)
        loaded->UnlockAttributeBuffer();
    if (fromIndices)
        loaded->UnlockIndexBuffer();
    if (ranges.empty() || FAILED(mesh->SetAttributeTable(ranges.data(), static_cast<DWORD>(ranges.size())))) {
        mesh->Release();
        return nullptr;
    }
    return mesh;
}

// The model's rest-pose geometry as D3DX reads it (all its frames in one mesh), copied into a mesh of
// our own.
bool LoadPlain(IDirect3DDevice9* device, const wchar_t* file, PlainModel& plain) {
    wchar_t path[MAX_PATH];
    if (FAILED(ZQ::ZQFindDXSDKMediaFileCch(path, MAX_PATH, file)))
        return false;
    ID3DXBuffer* materials = nullptr;
    DWORD materialCount = 0;
    ID3DXMesh* loaded = nullptr;
    if (FAILED(D3DXLoadMeshFromXW(path, D3DXMESH_SYSTEMMEM, device, nullptr, &materials, nullptr, &materialCount,
                                  &loaded)))
        return false;
    PlainModel::Part part;
    part.mesh = CopyMesh(device, loaded);
    loaded->Release();
    D3DXMatrixIdentity(&part.offset);
    const D3DXMATERIAL* list = materials ? static_cast<const D3DXMATERIAL*>(materials->GetBufferPointer()) : nullptr;
    for (DWORD m = 0; part.mesh && list && m < materialCount; ++m) {
        D3DMATERIAL9 material = list[m].MatD3D;
        // Lit by the ambient light as the library lights its models.
        material.Ambient = material.Diffuse;
        part.materials.push_back(material);
        IDirect3DTexture9* texture = nullptr;
        if (list[m].pTextureFilename && FAILED(D3DXCreateTextureFromFileA(device, list[m].pTextureFilename, &texture)))
            texture = nullptr;
        part.textures.push_back(texture);
    }
    if (materials)
        materials->Release();
    if (!part.mesh)
        return false;
    plain.parts.push_back(part);
    plain.file = file;
    return true;
}

// Stand-in geometry when D3DX cannot read the model: a box of 12 triangles for each of its meshes, stacked
// two units apart, each its own draw as the library's meshes are.
bool MakeStandIn(IDirect3DDevice9* device, unsigned int meshes, PlainModel& plain) {
    plain.Release();
    for (unsigned int m = 0; m < std::max(meshes, 1u); ++m) {
        PlainModel::Part part;
        if (FAILED(D3DXCreateBox(device, 0.5f, 0.5f, 0.5f, &part.mesh, nullptr)))
            return false;
        D3DMATERIAL9 material = {};
        material.Diffuse = material.Ambient = {0.8f, 0.6f, 0.3f, 1.0f};
        part.materials.push_back(material);
        part.textures.push_back(nullptr);
        D3DXMatrixTranslation(&part.offset, 1.0f, 2.0f * static_cast<float>(m), 0.0f);
        plain.parts.push_back(part);
    }
    return true;
}

void DrawPlain(IDirect3DDevice9* device, const PlainModel& plain, const D3DXMATRIX& world) {
    for (const PlainModel::Part& part : plain.parts) {
        const D3DXMATRIX placed = part.offset * world;
        device->SetTransform(D3DTS_WORLD, &placed);
        for (size_t s = 0; s < part.materials.size(); ++s) {
            device->SetMaterial(&part.materials[s]);
            device->SetTexture(0, part.textures[s]);
            const DWORD operation = part.textures[s] ? D3DTOP_MODULATE : D3DTOP_SELECTARG2;
            device->SetTextureStageState(0, D3DTSS_COLOROP, operation);
            device->SetTextureStageState(0, D3DTSS_ALPHAOP, operation);
            part.mesh->DrawSubset(static_cast<DWORD>(s));
        }
    }
}

// Every instance at its place in a grid facing the camera, the two models taking turns; the instances
// are added in ten batches a tenth of a second apart, so that their poses differ.
bool Populate(ZQ::_3D::ZQ3DRenderMulti& multi, const std::vector<D3DXVECTOR3>& places) {
    for (int i = 0; i < kInstances; ++i) {
        const Kind& kind = kKinds[i % 2];
        if (!multi.Entry(kind.name, places[static_cast<size_t>(i)], kind.animation, -1))
            return false;
        if ((i + 1) % (kInstances / 10) == 0)
            multi.OnFrameRender(nullptr, 0.0, 0.1f, nullptr);
    }
    return true;
}

} // namespace

int wmain(int argc, wchar_t** argv) {
    bench::App app(argc, argv, 1, 100, "model_bench MODELS [FRAMES]");
    const int frames = app.count;
    IDirect3DDevice9* device = app.GetDevice();
    if (!SetCurrentDirectoryW(argv[1])) {
        std::printf("no folder %ls: make the models with bench/run.sh\n", argv[1]);
        return 1;
    }
    ZQ::_3D::ZQ3DObject store(device);
    PlainModel plain[2];
    unsigned int frameCounts[2] = {};
    for (int k = 0; k < 2; ++k) {
        if (!store.Entry(kKinds[k].name, kKinds[k].file)) {
            std::printf("cannot load %ls: make the models with bench/run.sh\n", kKinds[k].file);
            return 1;
        }
        const ZQ::_3D::_ZQ3DObjectChunk_tag* chunk = store.Trans(kKinds[k].name);
        frameCounts[k] = chunk->frames;
        // Wine's reader refuses some files that the library reads (integers where the template has FLOAT in
        // text, a template left undeclared in binary): the other form of the model is tried, then boxes.
        if (!LoadPlain(device, kKinds[k].file, plain[k]) && !LoadPlain(device, kKinds[k].binaryFile, plain[k]) &&
            !MakeStandIn(device, chunk->meshes, plain[k])) {
            std::printf("no baseline mesh for %ls\n", kKinds[k].file);
            return 1;
        }
        std::printf("%ls: frames %u (the added root among them), meshes %u, bones %u, triangles %u\n", kKinds[k].file,
                    chunk->frames, chunk->meshes, chunk->bones, chunk->triangles);
        if (plain[k].file)
            std::printf("  baseline: %lu triangles, %ls read by D3DXLoadMeshFromXW into a D3DXCreateMeshFVF mesh\n",
                        plain[k].Triangles(), plain[k].file);
        else
            std::printf("  baseline: %lu triangles, D3DXCreateBox for each mesh (D3DXLoadMeshFromXW read neither "
                        "%ls nor %ls)\n",
                        plain[k].Triangles(), kKinds[k].file, kKinds[k].binaryFile);
    }

    std::vector<D3DXVECTOR3> places;
    std::vector<D3DXMATRIX> worlds;
    for (int i = 0; i < kInstances; ++i) {
        const int column = i % kColumns, row = i / kColumns;
        places.emplace_back((column - kColumns / 2) * 2.2f, (row - kInstances / kColumns / 2) * 2.6f, 80.0f);
        D3DXMATRIX world;
        D3DXMatrixTranslation(&world, places.back().x, places.back().y, places.back().z);
        worlds.push_back(world);
    }
    ZQ::_3D::ZQ3DRenderMulti multi(&store), posesOnly(&store);
    if (!Populate(multi, places) || !Populate(posesOnly, places)) {
        std::printf("no animation Wave or Bend: make the models with bench/run.sh\n");
        return 1;
    }
    ZQ::_3D::ZQ3DCamera camera(device);

    // The plain loop in the instances' order (the models take turns), and with each model's instances
    // together, as the library groups them.
    std::vector<int> inOrder, grouped;
    for (int i = 0; i < kInstances; ++i)
        inOrder.push_back(i);
    for (int k = 0; k < 2; ++k)
        for (int i = k; i < kInstances; i += 2)
            grouped.push_back(i);
    auto plainFrame = [&](const std::vector<int>& order) {
        const double start = bench::Now();
        device->Clear(0, nullptr, D3DCLEAR_TARGET | D3DCLEAR_ZBUFFER, 0xFF203040, 1.0f, 0);
        device->BeginScene();
        camera.BeginScene(kElapsed);
        for (int i : order)
            DrawPlain(device, plain[i % 2], worlds[static_cast<size_t>(i)]);
        device->SetTexture(0, nullptr);
        camera.EndScene();
        device->EndScene();
        bench::Finish(device);
        return bench::Now() - start;
    };

    // The library's frame and the plain loops take turns, frame by frame, so that the machine's load
    // falls on all alike; the first frame of each (shaders, buffers) is not counted.
    double library = 0.0, libraryCall = 0.0, plainLoop = 0.0, plainGrouped = 0.0;
    double clock = 0.0;
    for (int frame = -1; frame < frames; ++frame) {
        const double start = bench::Now();
        device->Clear(0, nullptr, D3DCLEAR_TARGET | D3DCLEAR_ZBUFFER, 0xFF203040, 1.0f, 0);
        device->BeginScene();
        camera.BeginScene(kElapsed);
        const double callStart = bench::Now();
        multi.OnFrameRender(device, clock, kElapsed, nullptr);
        const double callEnd = bench::Now();
        camera.EndScene();
        device->EndScene();
        bench::Finish(device);
        const double end = bench::Now();
        clock += kElapsed;
        const double inOrderTime = plainFrame(inOrder), groupedTime = plainFrame(grouped);
        if (frame >= 0) {
            library += end - start;
            libraryCall += callEnd - callStart;
            plainLoop += inOrderTime;
            plainGrouped += groupedTime;
        }
    }

    // The poses alone: the same instances advanced with no device, which draws (and skins) nothing.
    const int rounds = frames * 4;
    double poses = 0.0;
    for (int round = -1; round < rounds; ++round) {
        const double start = bench::Now();
        posesOnly.OnFrameRender(nullptr, 0.0, kElapsed, nullptr);
        if (round >= 0)
            poses += bench::Now() - start;
    }
    const double skeletonFrames =
        static_cast<double>(rounds) * (kInstances / 2) * (static_cast<double>(frameCounts[0]) + frameCounts[1]);

    std::printf("\n%d frames, %d instances (arm.x \"Wave\" and skin.x \"Bend\" in turn, looping), 640 x 480\n", frames,
                kInstances);
    std::printf("milliseconds a frame, drawing finished:\n");
    std::printf("  library frame (ZQ3DRenderMulti::OnFrameRender)   %8.2f\n", library * 1000.0 / frames);
    std::printf("  of it, the OnFrameRender call (CPU)              %8.2f\n", libraryCall * 1000.0 / frames);
    std::printf("  plain loop (DrawSubset, precomputed matrices)    %8.2f\n", plainLoop * 1000.0 / frames);
    std::printf("  ratio, library frame / plain loop                %8.2f\n", library / plainLoop);
    std::printf("  plain loop, each model's instances together      %8.2f\n", plainGrouped * 1000.0 / frames);
    std::printf("pose evaluation alone (null device, no skinning), %d rounds of %d instances:\n", rounds, kInstances);
    std::printf("  a round of all instances, ms                     %8.3f\n", poses * 1000.0 / rounds);
    std::printf("  per instance, microseconds                       %8.3f\n", poses * 1e6 / rounds / kInstances);
    std::printf("  per frame of a skeleton (bone), nanoseconds      %8.1f\n", poses * 1e9 / skeletonFrames);
    for (PlainModel& model : plain)
        model.Release();
    return 0;
}
