// Writes the 3D tests' models, each as NAME.x (text) and NAME-bin.x (binary, 32-bit floats), with
// box-bin64.x (64-bit floats), the textures they name, and OUTDIR/corpus: the models and broken
// variants of them, seeds for the .x fuzzer.
//   make_test_models OUTDIR
#include "XWriter.h"
#include "ZQImage.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <limits>
#include <string>
#include <vector>

using zqtools::WriteX;
using zqtools::XForm;
using zqtools::XNode;

namespace {

using Vec3 = std::array<float, 3>;
using Faces = std::vector<std::vector<uint32_t>>;
using Matrix = std::array<float, 16>;

struct Geometry {
    std::vector<Vec3> positions;
    Faces faces;
    std::vector<Vec3> normals; ///< none: the reader computes them
    Faces normalFaces;
    std::vector<std::array<float, 2>> uvs; ///< none: no MeshTextureCoords
};

struct Key {
    long long time;
    std::vector<double> values;
};

const double kPi = 3.14159265358979323846;

// Arrays as exporters write them: each element's fields end with ";", elements are parted by ","
// and the array ends with one more ";".
const char* ElementEnd(size_t i, size_t count) {
    return i + 1 < count ? ";," : ";;";
}

void PutVectors(XNode& node, const std::vector<Vec3>& vectors) {
    node.Integer(static_cast<long long>(vectors.size()));
    for (size_t i = 0; i < vectors.size(); ++i)
        node.Float(vectors[i][0]).Float(vectors[i][1]).Float(vectors[i][2], ElementEnd(i, vectors.size()));
}

void PutFaces(XNode& node, const Faces& faces) {
    node.Integer(static_cast<long long>(faces.size()));
    for (size_t i = 0; i < faces.size(); ++i) {
        node.Integer(static_cast<long long>(faces[i].size()));
        for (size_t k = 0; k < faces[i].size(); ++k)
            node.Integer(faces[i][k], k + 1 < faces[i].size() ? "," : ElementEnd(i, faces.size()));
    }
}

void PutMatrix(XNode& node, const Matrix& m) {
    for (size_t i = 0; i < 16; ++i)
        node.Float(m[i], i < 15 ? "," : ";;");
}

Matrix Translation(float x, float y, float z) {
    return {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, x, y, z, 1};
}

XNode Frame(const std::string& name, const Matrix& transform) {
    XNode matrix{"FrameTransformMatrix"};
    PutMatrix(matrix, transform);
    XNode frame{"Frame", name};
    frame.Child(matrix);
    return frame;
}

XNode Material(const std::string& name, const Vec3& rgb, float alpha, const std::string& texture = "") {
    XNode material{"Material", name};
    material.Float(rgb[0]).Float(rgb[1]).Float(rgb[2]).Float(alpha, ";;");
    material.Float(0);                         // power
    material.Float(0).Float(0).Float(0, ";;"); // specular
    material.Float(0).Float(0).Float(0, ";;"); // emissive
    if (!texture.empty())
        material.Child(XNode{"TextureFilename"}.String(texture));
    return material;
}

// All faces on the one material, given in the list or, for a named top-level one, by reference.
XNode Mesh(const std::string& name, const Geometry& geometry, const XNode& material, bool byReference = false) {
    XNode mesh{"Mesh", name};
    PutVectors(mesh, geometry.positions);
    PutFaces(mesh, geometry.faces);
    if (!geometry.normals.empty()) {
        XNode normals{"MeshNormals"};
        PutVectors(normals, geometry.normals);
        PutFaces(normals, geometry.normalFaces);
        mesh.Child(normals);
    }
    if (!geometry.uvs.empty()) {
        XNode uvs{"MeshTextureCoords"};
        uvs.Integer(static_cast<long long>(geometry.uvs.size()));
        for (size_t i = 0; i < geometry.uvs.size(); ++i)
            uvs.Float(geometry.uvs[i][0]).Float(geometry.uvs[i][1], ElementEnd(i, geometry.uvs.size()));
        mesh.Child(uvs);
    }
    XNode list{"MeshMaterialList"};
    const size_t faces = geometry.faces.size();
    list.Integer(1).Integer(static_cast<long long>(faces));
    for (size_t i = 0; i < faces; ++i)
        list.Integer(0, i + 1 < faces ? "," : ";;");
    if (byReference)
        list.Reference(material.name);
    else
        list.Child(material);
    mesh.Child(list);
    return mesh;
}

Vec3 Cross(const Vec3& a, const Vec3& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

// An axis-aligned box of six quads, each with four corners of its own; faces in the order -X, +X,
// -Y, +Y, -Z, +Z. Each quad runs top-left, top-right, bottom-right, bottom-left as seen from outside
// (clockwise: Direct3D's front), "up" being +Y on the sides, +Z on the top and -Z on the bottom. With
// full, one outward normal per corner and texture coordinates (0,0), (1,0), (1,1), (0,1) in that order.
Geometry Box(const Vec3& low, const Vec3& high, bool full) {
    Geometry box;
    for (int f = 0; f < 6; ++f) {
        const int axis = f / 2;
        const float sign = f % 2 ? 1.0f : -1.0f;
        Vec3 normal = {0, 0, 0}, up = {0, 1, 0};
        normal[axis] = sign;
        if (axis == 1)
            up = {0, 0, sign};
        const Vec3 right = Cross(up, {-normal[0], -normal[1], -normal[2]});
        const float corners[4][2] = {{-1, 1}, {1, 1}, {1, -1}, {-1, -1}};
        std::vector<uint32_t> face;
        for (int c = 0; c < 4; ++c) {
            Vec3 p;
            for (int i = 0; i < 3; ++i) {
                const float along = normal[i] + corners[c][0] * right[i] + corners[c][1] * up[i];
                p[i] = (low[i] + high[i]) / 2 + (high[i] - low[i]) / 2 * along;
            }
            face.push_back(static_cast<uint32_t>(box.positions.size()));
            box.positions.push_back(p);
            if (full) {
                box.normals.push_back(normal);
                box.uvs.push_back({c == 1 || c == 2 ? 1.0f : 0.0f, c >= 2 ? 1.0f : 0.0f});
            }
        }
        box.faces.push_back(face);
    }
    if (full)
        box.normalFaces = box.faces;
    return box;
}

Geometry Cube(float half, bool full) {
    return Box({-half, -half, -half}, {half, half, half}, full);
}

// The skinned bar: vertex 4 * level + j at y = level (0, 1, 2), j going (-0.2, -0.2), (0.2, -0.2),
// (0.2, 0.2), (-0.2, 0.2) in (x, z). Faces: the four sides of the lower segment (-Z, +X, +Z, -X), of the
// upper one, then the top and the bottom; each side's corners top-left first, clockwise from outside.
// Six normals (-Z, +X, +Z, -X, +Y, -Y), one per face's direction: corners share positions, not normals.
Geometry Bar() {
    Geometry bar;
    const float around[4][2] = {{-0.2f, -0.2f}, {0.2f, -0.2f}, {0.2f, 0.2f}, {-0.2f, 0.2f}};
    for (uint32_t level = 0; level < 3; ++level)
        for (const auto& xz : around)
            bar.positions.push_back({xz[0], static_cast<float>(level), xz[1]});
    bar.normals = {{0, 0, -1}, {1, 0, 0}, {0, 0, 1}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}};
    for (uint32_t segment = 0; segment < 2; ++segment)
        for (uint32_t j = 0; j < 4; ++j) {
            const uint32_t low = 4 * segment, high = low + 4, next = (j + 1) % 4;
            bar.faces.push_back({high + j, high + next, low + next, low + j});
            bar.normalFaces.push_back({j, j, j, j});
        }
    bar.faces.push_back({11, 10, 9, 8});
    bar.normalFaces.push_back({4, 4, 4, 4});
    bar.faces.push_back({0, 1, 2, 3});
    bar.normalFaces.push_back({5, 5, 5, 5});
    return bar;
}

// w, x, y, z of a turn about an axis, in the rotation keys' sense: about +Z by t, row 0 of the
// matrix becomes (cos t, sin t, 0).
std::vector<double> Turn(double degrees, int axis) {
    const double half = degrees * kPi / 360;
    std::vector<double> q = {std::cos(half), 0, 0, 0};
    q[1 + axis] = std::sin(half);
    for (double& value : q)
        if (std::fabs(value) < 1e-12)
            value = 0; // sin 180 degrees
    return q;
}

// AnimationKey: 0 rotation, 1 scale, 2 position, 4 matrix.
XNode Keys(int type, const std::vector<Key>& keys) {
    XNode node{"AnimationKey"};
    node.Integer(type).Integer(static_cast<long long>(keys.size()));
    for (size_t i = 0; i < keys.size(); ++i) {
        const std::vector<double>& values = keys[i].values;
        node.Integer(keys[i].time).Integer(static_cast<long long>(values.size()));
        for (size_t k = 0; k < values.size(); ++k)
            node.Float(values[k], k + 1 < values.size() ? "," : i + 1 < keys.size() ? ";;," : ";;;");
    }
    return node;
}

std::vector<double> Values(const Matrix& m) {
    return std::vector<double>(m.begin(), m.end());
}

XNode Animation(const std::string& frame, const std::vector<XNode>& keys) {
    XNode animation{"Animation"};
    animation.Reference(frame);
    for (const XNode& key : keys)
        animation.Child(key);
    return animation;
}

XNode AnimationSet(const std::string& name, const std::vector<XNode>& animations) {
    XNode set{"AnimationSet", name};
    for (const XNode& animation : animations)
        set.Child(animation);
    return set;
}

XNode Ticks(long long perSecond) {
    return XNode{"AnimTicksPerSecond"}.Integer(perSecond);
}

const Matrix kIdentity = Translation(0, 0, 0);

std::vector<XNode> BoxModel(const Vec3& colour, const std::string& texture) {
    XNode frame = Frame("Box", kIdentity);
    frame.Child(Mesh("BoxMesh", Cube(1, true), Material("", colour, 1, texture)));
    return {frame};
}

std::vector<XNode> ArmModel() {
    XNode arm = Frame("Arm", Translation(1, 0, 0));
    arm.Child(Mesh("ArmMesh", Cube(0.25f, false), Material("", {0, 0, 1}, 1)));
    XNode forearm = Frame("Forearm", Translation(0, 2, 0));
    forearm.Child(Mesh("ForearmMesh", Cube(0.25f, false), Material("", {1, 1, 0}, 1)));
    arm.Child(forearm);
    const std::vector<double> quarterZ = Turn(90, 2);
    return {Ticks(100), arm,
            AnimationSet("Wave", {Animation("Arm", {Keys(0, {{0, {1, 0, 0, 0}}, {100, quarterZ}}),
                                                    Keys(2, {{0, {1, 0, 0}}, {100, {3, 0, 0}}})}),
                                  Animation("Forearm", {Keys(1, {{0, {1, 1, 1}}, {50, {2, 2, 2}}, {100, {1, 1, 1}}}),
                                                        Keys(2, {{0, {0, 2, 0}}, {100, {0, 2, 0}}})})}),
            AnimationSet("Slide", {Animation("Arm", {Keys(4, {{0, Values(Translation(1, 0, 0))},
                                                              {200, Values(Translation(1, 4, 0))}})})}),
            AnimationSet("Late", {Animation("Arm", {Keys(2, {{100, {5, 0, 0}}, {0, {1, 0, 0}}})})})};
}

XNode SkinWeights(const std::string& frame, const std::vector<uint32_t>& vertices, const std::vector<float>& weights,
                  const Matrix& offset) {
    XNode skin{"SkinWeights"};
    skin.String(frame).Integer(static_cast<long long>(vertices.size()));
    for (size_t i = 0; i < vertices.size(); ++i)
        skin.Integer(vertices[i], i + 1 < vertices.size() ? "," : ";");
    for (size_t i = 0; i < weights.size(); ++i)
        skin.Float(weights[i], i + 1 < weights.size() ? "," : ";");
    PutMatrix(skin, offset);
    return skin;
}

std::vector<XNode> SkinModel(const std::string& secondBone) {
    XNode mesh = Mesh("Bar", Bar(), Material("", {1, 1, 1}, 1));
    mesh.Child(XNode{"XSkinMeshHeader"}.Integer(2).Integer(2).Integer(2));
    mesh.Child(SkinWeights("Bone0", {0, 1, 2, 3, 4, 5, 6, 7}, {1, 1, 1, 1, 0.5f, 0.5f, 0.5f, 0.5f}, kIdentity));
    mesh.Child(SkinWeights(secondBone, {4, 5, 6, 7, 8, 9, 10, 11}, {0.5f, 0.5f, 0.5f, 0.5f, 1, 1, 1, 1},
                           Translation(0, -1, 0)));
    XNode bone0 = Frame("Bone0", kIdentity);
    bone0.Child(Frame("Bone1", Translation(0, 1, 0)));
    XNode root = Frame("SkinRoot", kIdentity);
    root.Child(mesh).Child(bone0);
    return {Ticks(1), root,
            AnimationSet("Bend", {Animation("Bone1", {Keys(0, {{0, {1, 0, 0, 0}}, {1, Turn(90, 2)}}),
                                                      Keys(2, {{0, {0, 1, 0}}, {1, {0, 1, 0}}})})})};
}

const std::string kLongName = "Frame_" + std::string(54, 'x');

std::vector<XNode> LongNamesModel(const std::string& animated) {
    XNode frame = Frame(kLongName, kIdentity);
    frame.Child(Mesh("LongMesh", Cube(0.25f, false), Material("", {1, 1, 1}, 1)));
    return {Ticks(10), frame,
            AnimationSet("Move", {Animation(animated, {Keys(2, {{0, {0, 0, 0}}, {10, {0, 1, 0}}})})})};
}

std::vector<XNode> WideModel() {
    XNode hub = Frame("Hub", kIdentity);
    for (int i = 0; i < 300; ++i)
        hub.Child(Frame("Child" + std::to_string(i), Translation(i * 0.01f, 0, 0)));
    hub.Child(Mesh("HubMesh", Cube(0.25f, false), Material("", {1, 1, 1}, 1)));
    return {hub};
}

// The sample's gift box at the format's default 4800 ticks per second. The lid hangs on the back top
// edge (z = -1) and lies over the body towards +z; -100 degrees about X lifts its far edge: local
// (0, 0, 2) goes to (0, 2 sin 100, 2 cos 100). The materials are top-level objects the lists name.
std::vector<XNode> PrizeModel() {
    const XNode red = Material("PrizeRed", {0.85f, 0.1f, 0.15f}, 1, "prize-ribbon.png");
    const XNode gold = Material("PrizeGold", {0.95f, 0.8f, 0.1f}, 1);
    XNode prize = Frame("Prize", kIdentity);
    prize.Child(Mesh("BoxBody", Box({-1, -1, -1}, {1, 0.6f, 1}, true), red, true));
    XNode lid = Frame("Lid", Translation(0, 0.6f, -1));
    lid.Child(Mesh("LidMesh", Box({-1.1f, 0, -0.05f}, {1.1f, 0.35f, 2.15f}, true), gold, true));
    prize.Child(lid);
    std::vector<Key> spin;
    for (int i = 0; i <= 4; ++i)
        spin.push_back({i * 1200, Turn(90 * i, 1)});
    return {red, gold, prize,
            AnimationSet("Open", {Animation("Lid", {Keys(0, {{0, {1, 0, 0, 0}}, {4800, Turn(-100, 0)}}),
                                                    Keys(2, {{0, {0, 0.6, -1}}, {4800, {0, 0.6, -1}}})})}),
            AnimationSet("Spin", {Animation("Prize", {Keys(0, spin)})})};
}

bool SaveImage(const std::string& path, int side, uint8_t r, uint8_t g, uint8_t b, int band = 0) {
    zqtools::Image image;
    image.width = image.height = side;
    image.rgba.resize(static_cast<size_t>(side) * side * 4);
    const int from = (side - band) / 2, to = from + band;
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x) {
            const bool ribbon = (x >= from && x < to) || (y >= from && y < to);
            uint8_t* p = image.Pixel(x, y);
            p[0] = ribbon ? 240 : r;
            p[1] = ribbon ? 200 : g;
            p[2] = ribbon ? 30 : b;
            p[3] = 255;
        }
    return zqtools::WriteFile(path, zqtools::EncodePng(image));
}

std::string Text(const std::vector<uint8_t>& bytes) {
    return std::string(bytes.begin(), bytes.end());
}

std::vector<uint8_t> Bytes(const std::string& text) {
    return std::vector<uint8_t>(text.begin(), text.end());
}

class Output {
public:
    explicit Output(const std::string& dir) : dir_(dir) {}

    bool ok() const { return ok_; }

    void Model(const std::string& name, const std::vector<XNode>& objects, bool textTemplates = false,
               bool binaryTemplates = false) {
        Both(name + ".x", WriteX(objects, XForm::Text, textTemplates));
        Both(name + "-bin.x", WriteX(objects, XForm::Binary32, binaryTemplates));
    }
    void Both(const std::string& name, const std::vector<uint8_t>& bytes) {
        Save(name, bytes);
        Corpus(name, bytes);
    }
    void Save(const std::string& name, const std::vector<uint8_t>& bytes) {
        ok_ = zqtools::WriteFile(dir_ + "/" + name, bytes) && ok_;
    }
    void Corpus(const std::string& name, const std::vector<uint8_t>& bytes) { Save("corpus/" + name, bytes); }
    void Broken(const std::string& name, const std::vector<XNode>& objects) {
        Corpus("broken-" + name + ".x", WriteX(objects, XForm::Text));
        Corpus("broken-" + name + "-bin.x", WriteX(objects, XForm::Binary32));
    }

private:
    std::string dir_;
    bool ok_ = true;
};

// Each a mistake a file can make, or a case a reader gets wrong; some are well-formed.
void WriteBroken(Output& out) {
    for (const bool binary : {false, true}) {
        const std::vector<uint8_t> box = WriteX(BoxModel({1, 0, 0}, ""), binary ? XForm::Binary32 : XForm::Text);
        for (const size_t at : {size_t{10}, size_t{17}, size_t{40}, box.size() / 2, box.size() - 2})
            out.Corpus("broken-truncated" + std::string(binary ? "-bin-" : "-") + std::to_string(at) + ".x",
                       std::vector<uint8_t>(box.begin(), box.begin() + static_cast<std::ptrdiff_t>(at)));
    }

    Geometry box = Cube(1, true);
    box.faces[3][2] = 24;
    out.Broken("face-index", {Mesh("BoxMesh", box, Material("", {1, 0, 0}, 1))});
    out.Broken("huge-count", {XNode{"Mesh", "Huge"}.Integer(0x7fffffff).Float(0).Float(0).Float(0, ";;")});
    // -1 keys: negative as text, 0xFFFFFFFF as binary.
    XNode keys{"AnimationKey"};
    keys.Integer(2).Integer(-1).Integer(0).Integer(3).Float(0).Float(0).Float(0, ";;;");
    XNode animation = Animation("A", {});
    animation.Child(keys);
    out.Broken("key-count", {Frame("A", kIdentity), AnimationSet("Bad", {animation})});

    // Not-a-number and huge values (binary only carries NaN): a vertex, a matrix, a key time.
    XNode nanFrame = Frame("Box", kIdentity);
    box = Cube(1, true);
    box.positions[0][0] = std::numeric_limits<float>::quiet_NaN();
    box.positions[1] = {1e38f, -1e38f, 1e38f};
    nanFrame.Child(Mesh("BoxMesh", box, Material("", {1, 0, 0}, 1)));
    XNode nanKeys{"AnimationKey"};
    nanKeys.Integer(2).Integer(2).Float(std::nan("")).Integer(3).Float(0).Float(0).Float(0, ";;,");
    nanKeys.Integer(5).Integer(3).Float(1e38).Float(0).Float(0, ";;;");
    XNode nanAnimation = Animation("Box", {Keys(4, {{0, std::vector<double>(16, 1e38)}})});
    nanAnimation.Child(nanKeys);
    out.Corpus("broken-nan-bin.x", WriteX({nanFrame, AnimationSet("Nan", {nanAnimation})}, XForm::Binary32));
    box.positions[0][0] = 1e38f;
    XNode hugeFrame = Frame("Box", Translation(1e38f, 0, 0));
    hugeFrame.Child(Mesh("BoxMesh", box, Material("", {1e38f, 0, 0}, 1)));
    out.Corpus("broken-huge-value.x", WriteX({hugeFrame}, XForm::Text));

    out.Broken("keys-order",
               {Frame("A", kIdentity),
                AnimationSet("Order", {Animation("A", {Keys(2, {{20, {2, 0, 0}}, {0, {0, 0, 0}}, {10, {1, 0, 0}}}),
                                                       Keys(0, {{5, Turn(90, 1)}, {1, Turn(0, 1)}})})})});
    out.Broken("missing-bone", SkinModel("NoSuchFrame"));
    out.Broken("missing-frame", LongNamesModel("NoSuchFrame"));

    Geometry twoCorners;
    twoCorners.positions = {{0, 0, 0}, {0, 1, 0}, {1, 0, 0}, {1, 1, 0}};
    twoCorners.faces = {{0, 1, 2}, {2, 3}};
    out.Broken("two-corners", {Mesh("Flat", twoCorners, Material("", {1, 1, 1}, 1))});

    // 10,000 frames, each inside the one before.
    for (const XForm form : {XForm::Text, XForm::Binary32}) {
        const std::vector<uint8_t> one = WriteX({XNode{"Frame", "F"}}, form);
        const size_t open = form == XForm::Text ? Text(one).find('{') + 1 : one.size() - 2;
        std::vector<uint8_t> deep(one.begin(), one.begin() + static_cast<std::ptrdiff_t>(open));
        for (int i = 1; i < 10000; ++i)
            deep.insert(deep.end(), one.begin() + 16, one.begin() + static_cast<std::ptrdiff_t>(open));
        for (int i = 0; i < 10000; ++i)
            deep.insert(deep.end(), one.begin() + static_cast<std::ptrdiff_t>(open), one.end());
        out.Corpus(form == XForm::Text ? "broken-deep.x" : "broken-deep-bin.x", deep);
    }

    // A string whose length runs past the end of the file.
    std::vector<uint8_t> string = WriteX({XNode{"TextureFilename"}.String("abc")}, XForm::Binary32);
    const uint8_t length[] = {3, 0, 0, 0, 'a', 'b', 'c'};
    std::search(string.begin(), string.end(), length, length + sizeof length)[3] = 0x7f;
    out.Corpus("broken-string-length-bin.x", string);

    out.Corpus("broken-unterminated.x", Bytes("xof 0303txt 0032\nTextureFilename {\n  \"box-texture.png;\n}\n"));
    std::string compressed = Text(WriteX(BoxModel({1, 0, 0}, ""), XForm::Text));
    compressed.replace(8, 8, "tzip0032");
    out.Corpus("broken-compressed.x", Bytes(compressed));
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: make_test_models OUTDIR\n", stderr);
        return 2;
    }
    const std::string dir = argv[1];
    std::error_code error;
    std::filesystem::create_directories(dir + "/corpus", error);
    Output out(dir);
    out.Model("box", BoxModel({1, 0, 0}, ""));
    out.Both("box-bin64.x", WriteX(BoxModel({1, 0, 0}, ""), XForm::Binary64));
    out.Model("textured-box", BoxModel({1, 1, 1}, "box-texture.png"));
    out.Model("arm", ArmModel(), true);
    out.Model("skin", SkinModel("Bone1"), true, true);
    out.Model("long-names", LongNamesModel(kLongName));
    out.Model("wide", WideModel());
    out.Model("prize", PrizeModel());
    WriteBroken(out);
    const bool images =
        SaveImage(dir + "/box-texture.png", 16, 0, 255, 0) && SaveImage(dir + "/prize-ribbon.png", 64, 200, 20, 30, 12);
    if (error || !out.ok() || !images) {
        std::fprintf(stderr, "make_test_models: cannot write to %s\n", dir.c_str());
        return 1;
    }
    return 0;
}
