// Reading ".x" files. Sections:
//   Tokens        the text and binary lexers, one token stream for both forms
//   Objects       data objects into a tree of nodes, templates skipped
//   Templates     the standard templates read by name: frames, meshes, materials, skins, animations
//   Entry points  ParseX, DescribeXResult, DecomposeXMatrix
#include "ZQXFile.h"
#include "ZQLittleEndian.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <map>
#include <utility>

namespace ZQ {
namespace formats {

namespace {

std::string NumberText(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.10g", value);
    return text;
}

// Far deeper than any exporter nests; the parser recurses once per level.
const int kMaxDepth = 512;

// A data object as the file gives it, before its template is known by name.
struct Node {
    std::string type; ///< empty for a reference
    std::string name; ///< the object's name, or the name a reference gives
    std::vector<double> numbers;
    std::vector<std::string> strings;
    std::vector<Node> children; ///< objects and references, in file order
};

enum class Kind { End, Name, Number, Numbers, String, Guid, OpenBrace, CloseBrace, Separator, Template, Other, Error };

struct Token {
    Kind kind = Kind::End;
    const uint8_t* text = nullptr; ///< Name and String: the characters; Numbers: the list's bytes
    size_t size = 0;               ///< characters, or the list's elements
    double number = 0;             ///< Number
    int width = 4;                 ///< Numbers: bytes per element
    bool isFloat = false;          ///< Numbers: floats rather than integers
    const char* problem = nullptr; ///< Error
};

Token Simple(Kind kind) {
    Token token;
    token.kind = kind;
    return token;
}

Token Problem(const char* problem) {
    Token token;
    token.kind = Kind::Error;
    token.problem = problem;
    return token;
}

bool IsDigit(uint8_t c) {
    return c >= '0' && c <= '9';
}
bool IsNameStart(uint8_t c) {
    return ((c | 0x20) >= 'a' && (c | 0x20) <= 'z') || c == '_' || c >= 0x80;
}
bool IsNameChar(uint8_t c) {
    return IsNameStart(c) || IsDigit(c) || c == '-' || c == '.';
}

// Locale-free, so that a host's decimal comma cannot change what a file says.
bool ReadNumber(const uint8_t* p, const uint8_t* end, double& value) {
    bool negative = false;
    if (*p == '-' || *p == '+')
        negative = *p++ == '-';
    uint64_t mantissa = 0;
    int exponent = 0;
    bool digits = false;
    for (; p < end && IsDigit(*p); ++p, digits = true)
        if (mantissa < 100000000000000000ull)
            mantissa = mantissa * 10 + (*p - '0');
        else
            ++exponent;
    if (p < end && *p == '.')
        for (++p; p < end && IsDigit(*p); ++p, digits = true)
            if (mantissa < 100000000000000000ull) {
                mantissa = mantissa * 10 + (*p - '0');
                --exponent;
            }
    if (!digits)
        return false;
    if (p < end && (*p == 'e' || *p == 'E')) {
        ++p;
        bool negativeExponent = false;
        if (p < end && (*p == '-' || *p == '+'))
            negativeExponent = *p++ == '-';
        if (p == end || !IsDigit(*p))
            return false;
        int written = 0;
        for (; p < end && IsDigit(*p); ++p)
            if (written < 100000)
                written = written * 10 + (*p - '0');
        exponent += negativeExponent ? -written : written;
    }
    if (p != end)
        return false;
    value = static_cast<double>(mantissa);
    if (mantissa != 0 && exponent != 0) {
        // Powers of ten up to 1e22 are exact, so the common short decimals come out correctly rounded.
        const int magnitude = std::abs(exponent);
        double scale = 1;
        for (int i = 0; i < std::min(magnitude, 22); ++i)
            scale *= 10;
        if (magnitude > 22)
            scale *= std::pow(10.0, magnitude - 22);
        value = exponent < 0 ? value / scale : value * scale;
    }
    if (negative)
        value = -value;
    return true;
}

class TextLexer {
public:
    TextLexer(const uint8_t* begin, const uint8_t* end) : p_(begin), end_(end) {}

    const uint8_t* At() const { return p_; }

    Token Next() {
        for (;;) {
            while (p_ < end_ && *p_ <= ' ')
                ++p_;
            if (p_ == end_)
                return Simple(Kind::End);
            if (*p_ != '#' && !(*p_ == '/' && end_ - p_ > 1 && p_[1] == '/'))
                break;
            const void* line = std::memchr(p_, '\n', static_cast<size_t>(end_ - p_));
            p_ = line ? static_cast<const uint8_t*>(line) : end_;
        }
        const uint8_t* start = p_++;
        switch (*start) {
        case '{':
            return Simple(Kind::OpenBrace);
        case '}':
            return Simple(Kind::CloseBrace);
        case ',':
        case ';':
            return Simple(Kind::Separator);
        case '"':
        case '<': {
            const uint8_t close = *start == '"' ? '"' : '>';
            const void* found = std::memchr(p_, close, static_cast<size_t>(end_ - p_));
            if (!found)
                return Problem(close == '"' ? "unterminated string" : "unterminated GUID");
            Token token;
            token.kind = close == '"' ? Kind::String : Kind::Guid;
            token.text = p_;
            token.size = static_cast<size_t>(static_cast<const uint8_t*>(found) - p_);
            p_ += token.size + 1;
            return token;
        }
        default:
            break;
        }
        const uint8_t* digit = start;
        if (digit < end_ && (*digit == '-' || *digit == '+'))
            ++digit;
        if (digit < end_ && *digit == '.')
            ++digit;
        if (digit < end_ && IsDigit(*digit)) {
            while (p_ < end_ && (IsDigit(*p_) || *p_ == '.' || *p_ == 'e' || *p_ == 'E' || *p_ == '-' || *p_ == '+'))
                ++p_;
            Token token;
            token.kind = Kind::Number;
            return ReadNumber(start, p_, token.number) ? token : Problem("unreadable number");
        }
        if (!IsNameStart(*start))
            return Simple(Kind::Other);
        while (p_ < end_ && IsNameChar(*p_))
            ++p_;
        Token token;
        token.text = start;
        token.size = static_cast<size_t>(p_ - start);
        token.kind = token.size == 8 && std::memcmp(start, "template", 8) == 0 ? Kind::Template : Kind::Name;
        return token;
    }

private:
    const uint8_t* p_;
    const uint8_t* end_;
};

class BinaryLexer {
public:
    BinaryLexer(const uint8_t* begin, const uint8_t* end, int floatBytes)
        : p_(begin), end_(end), floatBytes_(floatBytes) {}

    const uint8_t* At() const { return p_; }

    Token Next() {
        if (p_ == end_)
            return Simple(Kind::End);
        const uint8_t* at;
        if (!Take(2, at))
            return Problem("cut short");
        const uint16_t code = le::U16(at);
        Token token;
        switch (code) {
        case 1:   // TOKEN_NAME
        case 2: { // TOKEN_STRING
            uint32_t length;
            if (!Word(length) || !Take(length, token.text))
                return Problem("cut short");
            token.kind = code == 1 ? Kind::Name : Kind::String;
            token.size = length;
            // A string ends with a comma or semicolon token, which some writers widen to four bytes.
            if (code == 2 && end_ - p_ >= 2 && (le::U16(p_) == 19 || le::U16(p_) == 20)) {
                p_ += 2;
                if (end_ - p_ >= 2 && le::U16(p_) == 0)
                    p_ += 2;
            }
            return token;
        }
        case 3: { // TOKEN_INTEGER
            uint32_t value;
            if (!Word(value))
                return Problem("cut short");
            token.kind = Kind::Number;
            token.number = value;
            return token;
        }
        case 5: // TOKEN_GUID
            return Take(16, at) ? Simple(Kind::Guid) : Problem("cut short");
        case 6:   // TOKEN_INTEGER_LIST
        case 7: { // TOKEN_FLOAT_LIST
            uint32_t count;
            token.isFloat = code == 7;
            token.width = token.isFloat ? floatBytes_ : 4;
            if (!Word(count) || count > static_cast<size_t>(end_ - p_) / token.width)
                return Problem("list longer than the file");
            token.kind = Kind::Numbers;
            token.text = p_;
            token.size = count;
            p_ += static_cast<size_t>(count) * token.width;
            return token;
        }
        case 10:
            return Simple(Kind::OpenBrace);
        case 11:
            return Simple(Kind::CloseBrace);
        case 19:
        case 20:
            return Simple(Kind::Separator);
        case 31:
            return Simple(Kind::Template);
        default:
            // Parentheses, brackets, angles, the dot and the type keywords: template text only.
            if ((code >= 12 && code <= 18) || (code >= 40 && code <= 52))
                return Simple(Kind::Other);
            return Problem("unknown token");
        }
    }

private:
    bool Take(size_t count, const uint8_t*& at) {
        if (static_cast<size_t>(end_ - p_) < count)
            return false;
        at = p_;
        p_ += count;
        return true;
    }
    bool Word(uint32_t& value) {
        const uint8_t* at;
        if (!Take(4, at))
            return false;
        value = le::U32(at);
        return true;
    }

    const uint8_t* p_;
    const uint8_t* end_;
    int floatBytes_;
};

double F64(const uint8_t* p) {
    const uint64_t bits = le::U32(p) | static_cast<uint64_t>(le::U32(p + 4)) << 32;
    double value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

void AppendNumbers(const Token& token, std::vector<double>& numbers) {
    if (token.kind == Kind::Number) {
        numbers.push_back(token.number);
        return;
    }
    for (size_t i = 0; i < token.size; ++i) {
        const uint8_t* p = token.text + i * token.width;
        numbers.push_back(!token.isFloat ? le::U32(p) : token.width == 4 ? le::F32(p) : F64(p));
    }
}

std::string Where(const Node& node) {
    return node.name.empty() ? node.type : node.type + " '" + node.name + "'";
}

// Data objects into a tree of Nodes; templates are skipped by their braces.
template <typename Lexer> class Parser {
public:
    Parser(const Lexer& lexer, const uint8_t* data, std::string& reason)
        : lexer_(lexer), data_(data), reason_(reason) {}

    bool File(std::vector<Node>& top) {
        for (;;) {
            const Token token = lexer_.Next();
            switch (token.kind) {
            case Kind::End:
                return true;
            case Kind::Separator:
                break;
            case Kind::Template:
                if (!SkipTemplate())
                    return false;
                break;
            case Kind::Name:
                top.emplace_back();
                if (!StartsObject(token, top.back()))
                    return Fail("a name outside any object");
                if (!Body(top.back(), 1))
                    return false;
                break;
            default:
                return Unexpected(token, nullptr);
            }
        }
    }

private:
    bool Fail(const std::string& what) {
        reason_ = what + " at byte " + NumberText(lexer_.At() - data_);
        return false;
    }

    bool Unexpected(const Token& token, const Node* node) {
        if (token.kind == Kind::Error)
            return Fail(token.problem);
        const std::string where = node ? " in " + Where(*node) : "";
        return Fail(token.kind == Kind::End ? "cut short" + where : "unexpected token" + where);
    }

    // "Type {" and "Type name {", either with a GUID before the brace, open an object: the node then
    // has its type and name and the brace is read. Otherwise nothing is read.
    bool StartsObject(const Token& type, Node& node) {
        const Lexer saved = lexer_;
        Token token = lexer_.Next();
        const Token name = token;
        if (token.kind == Kind::Name)
            token = lexer_.Next();
        if (token.kind == Kind::Guid)
            token = lexer_.Next();
        if (token.kind != Kind::OpenBrace) {
            lexer_ = saved;
            return false;
        }
        node.type.assign(reinterpret_cast<const char*>(type.text), type.size);
        if (name.kind == Kind::Name)
            node.name.assign(reinterpret_cast<const char*>(name.text), name.size);
        return true;
    }

    void AddReference(Node& node, const Token& name) {
        node.children.emplace_back();
        node.children.back().name.assign(reinterpret_cast<const char*>(name.text), name.size);
    }

    bool Body(Node& node, int depth) {
        if (depth > kMaxDepth)
            return Fail("objects nested too deeply");
        for (;;) {
            Token token = lexer_.Next();
            switch (token.kind) {
            case Kind::Number:
            case Kind::Numbers:
                AppendNumbers(token, node.numbers);
                break;
            case Kind::String:
                node.strings.emplace_back(reinterpret_cast<const char*>(token.text), token.size);
                break;
            case Kind::Separator:
            case Kind::Guid:
                break;
            case Kind::CloseBrace:
                return true;
            case Kind::OpenBrace: { // { name }, { name <guid> }, { <guid> }
                const Token name = lexer_.Next();
                token = name.kind == Kind::Name ? lexer_.Next() : name;
                if (token.kind == Kind::Guid)
                    token = lexer_.Next();
                if (token.kind != Kind::CloseBrace)
                    return Unexpected(token, &node);
                if (name.kind == Kind::Name)
                    AddReference(node, name);
                break;
            }
            case Kind::Name: {
                Node child;
                if (!StartsObject(token, child)) {
                    AddReference(node, token); // a bare name
                    break;
                }
                node.children.push_back(std::move(child));
                if (!Body(node.children.back(), depth + 1))
                    return false;
                break;
            }
            default:
                return Unexpected(token, &node);
            }
        }
    }

    bool SkipTemplate() {
        int depth = 0;
        for (;;) {
            const Token token = lexer_.Next();
            if (token.kind == Kind::End || token.kind == Kind::Error)
                return Unexpected(token, nullptr);
            if (token.kind == Kind::OpenBrace)
                ++depth;
            else if (token.kind == Kind::CloseBrace && --depth <= 0)
                return depth == 0 || Fail("unbalanced braces in a template");
        }
    }

    Lexer lexer_;
    const uint8_t* data_;
    std::string& reason_;
};

float ToFloat(double value) {
    if (value > FLT_MAX)
        return INFINITY;
    if (value < -FLT_MAX)
        return -INFINITY;
    return static_cast<float>(value);
}

// A whole number below limit.
bool ToIndex(double value, uint32_t limit, uint32_t& index) {
    if (!(value >= 0 && value < limit))
        return false;
    index = static_cast<uint32_t>(value);
    return index == value;
}

// An object's numbers read in order; every count is checked against what is left before use.
class Cursor {
public:
    Cursor(const Node& node, std::string& reason) : node_(node), reason_(reason) {}

    bool Fail(const std::string& what) {
        reason_ = what + " in " + Where(node_);
        return false;
    }
    bool Need(uint64_t count) { return node_.numbers.size() - at_ >= count || Fail("cut short"); }
    /// A count of items of each numbers, all of which must follow.
    bool Count(uint32_t& count, uint64_t each) {
        if (!Need(1))
            return false;
        const double value = Next();
        if (!(value >= 0 && value <= UINT32_MAX) || value != std::floor(value))
            return Fail("bad count " + NumberText(value));
        count = static_cast<uint32_t>(value);
        return Need(count * each);
    }
    /// The next number, once Need or Count has vouched for it.
    double Next() { return node_.numbers[at_++]; }
    void Floats(float* values, int count) {
        for (int i = 0; i < count; ++i)
            values[i] = ToFloat(Next());
    }
    bool Index(uint32_t limit, uint32_t& index, const std::string& what) {
        const double value = Next();
        return ToIndex(value, limit, index) || Fail(what + " " + NumberText(value) + " of " + NumberText(limit));
    }

private:
    const Node& node_;
    std::string& reason_;
    size_t at_ = 0;
};

uint32_t ColourByte(float value) {
    return value > 0 ? static_cast<uint32_t>(std::min(value, 1.0f) * 255 + 0.5f) : 0;
}

const Node* FirstChild(const Node& node, const char* type) {
    for (const Node& child : node.children)
        if (child.type == type)
            return &child;
    return nullptr;
}

// The standard templates, read by name into an XFile.
class Reader {
public:
    Reader(XFile& file, std::string& reason) : file_(file), reason_(reason) {}

    bool Read(const std::vector<Node>& top) {
        file_.frames.emplace_back();
        for (const Node& node : top)
            if (node.type == "Material" && !node.name.empty())
                materials_.emplace(node.name, &node);
        int looseSet = -1;
        for (const Node& node : top) {
            bool ok = true;
            if (node.type == "Frame") {
                ok = ReadFrame(node, 0);
            } else if (node.type == "Mesh") {
                ok = ReadMesh(node, 0);
            } else if (node.type == "AnimTicksPerSecond") {
                Cursor in(node, reason_);
                uint32_t ticks;
                ok = in.Count(ticks, 0);
                if (ok && ticks) {
                    file_.ticksPerSecond = ticks;
                    file_.ticksDeclared = true;
                }
            } else if (node.type == "AnimationSet") {
                file_.animationSets.emplace_back();
                file_.animationSets.back().name = node.name;
                for (const Node& child : node.children)
                    if (ok && child.type == "Animation")
                        ok = ReadAnimation(child, file_.animationSets.back());
            } else if (node.type == "Animation") {
                if (looseSet < 0) {
                    looseSet = static_cast<int>(file_.animationSets.size());
                    file_.animationSets.emplace_back();
                }
                ok = ReadAnimation(node, file_.animationSets[looseSet]);
            }
            if (!ok)
                return false;
        }
        Resolve();
        return true;
    }

private:
    bool ReadFrame(const Node& node, int parent) {
        const int index = static_cast<int>(file_.frames.size());
        file_.frames.emplace_back();
        file_.frames[index].name = node.name;
        file_.frames[index].parent = parent;
        file_.frames[parent].children.push_back(index);
        for (const Node& child : node.children) {
            bool ok = true;
            if (child.type == "FrameTransformMatrix") {
                Cursor in(child, reason_);
                ok = in.Need(16);
                if (ok)
                    in.Floats(file_.frames[index].transform.m, 16);
            } else if (child.type == "Frame") {
                ok = ReadFrame(child, index);
            } else if (child.type == "Mesh") {
                ok = ReadMesh(child, index);
            }
            if (!ok)
                return false;
        }
        return true;
    }

    bool ReadMaterial(const Node& node, XMaterial& material) {
        Cursor in(node, reason_);
        if (!in.Need(11))
            return false;
        material.name = node.name;
        in.Floats(material.diffuse, 4);
        in.Floats(&material.power, 1);
        in.Floats(material.specular, 3);
        in.Floats(material.emissive, 3);
        const Node* texture = FirstChild(node, "TextureFilename");
        if (texture && !texture->strings.empty())
            material.texture = texture->strings[0];
        return true;
    }

    // Materials in or named by the list, and one per face.
    bool ReadMaterialList(const Node& node, uint32_t faces, XMesh& mesh, std::vector<uint32_t>& faceMaterials) {
        Cursor in(node, reason_);
        uint32_t declared, indexes;
        if (!in.Count(declared, 0) || !in.Count(indexes, 1))
            return false;
        for (const Node& child : node.children) {
            if (child.type == "Material" || child.type.empty()) {
                const auto named = child.type.empty() ? materials_.find(child.name) : materials_.end();
                mesh.materials.emplace_back();
                if (child.type.empty() && named == materials_.end())
                    mesh.materials.back().name = child.name; // names nothing: stays white
                else if (!ReadMaterial(child.type.empty() ? *named->second : child, mesh.materials.back()))
                    return false;
            }
        }
        if (mesh.materials.empty())
            mesh.materials.emplace_back();
        const uint32_t count = static_cast<uint32_t>(mesh.materials.size());
        for (uint32_t i = 0; i < indexes; ++i) {
            if (i >= faces)
                in.Next();
            else if (!in.Index(count, faceMaterials[i], "face " + NumberText(i) + " uses material"))
                return false;
        }
        // Fewer indexes than faces: the last one holds for the rest.
        for (uint32_t i = indexes; i < faces && indexes; ++i)
            faceMaterials[i] = faceMaterials[indexes - 1];
        return true;
    }

    bool ReadMesh(const Node& node, int frame) {
        Cursor in(node, reason_);
        uint32_t vertexCount, faceCount;
        if (!in.Count(vertexCount, 3))
            return false;
        std::vector<float> positions(static_cast<size_t>(vertexCount) * 3);
        in.Floats(positions.data(), static_cast<int>(positions.size()));
        if (!in.Count(faceCount, 1))
            return false;
        std::vector<uint32_t> faceSizes(faceCount), corners;
        for (uint32_t f = 0; f < faceCount; ++f) {
            if (!in.Count(faceSizes[f], 1))
                return false;
            for (uint32_t k = 0; k < faceSizes[f]; ++k) {
                corners.emplace_back();
                if (!in.Index(vertexCount, corners.back(), "face " + NumberText(f) + " uses vertex"))
                    return false;
            }
        }

        const Node* normalNode = FirstChild(node, "MeshNormals");
        uint32_t normalCount = 0;
        std::vector<float> normals;
        std::vector<uint32_t> normalCorners;
        if (normalNode) {
            Cursor nin(*normalNode, reason_);
            uint32_t faces;
            if (!nin.Count(normalCount, 3))
                return false;
            normals.resize(static_cast<size_t>(normalCount) * 3);
            nin.Floats(normals.data(), static_cast<int>(normals.size()));
            if (!nin.Count(faces, 1))
                return false;
            if (faces != faceCount)
                return nin.Fail(NumberText(faces) + " faces for the mesh's " + NumberText(faceCount));
            normalCorners.reserve(corners.size());
            for (uint32_t f = 0; f < faceCount; ++f) {
                uint32_t size;
                if (!nin.Count(size, 1))
                    return false;
                if (size != faceSizes[f])
                    return nin.Fail("face " + NumberText(f) + " has " + NumberText(size) + " normals for " +
                                    NumberText(faceSizes[f]) + " corners");
                for (uint32_t k = 0; k < size; ++k) {
                    normalCorners.emplace_back();
                    if (!nin.Index(normalCount, normalCorners.back(), "face " + NumberText(f) + " uses normal"))
                        return false;
                }
            }
        }

        const Node* uvNode = FirstChild(node, "MeshTextureCoords");
        std::vector<float> uvs;
        if (uvNode) {
            Cursor uin(*uvNode, reason_);
            uint32_t count;
            if (!uin.Count(count, 2))
                return false;
            uvs.assign(static_cast<size_t>(vertexCount) * 2, 0.0f);
            for (uint32_t i = 0; i < count; ++i) {
                float uv[2];
                uin.Floats(uv, 2);
                if (i < vertexCount)
                    std::copy(uv, uv + 2, &uvs[static_cast<size_t>(i) * 2]);
            }
        }

        const Node* colourNode = FirstChild(node, "MeshVertexColors");
        std::vector<uint32_t> colours;
        if (colourNode) {
            Cursor cin(*colourNode, reason_);
            uint32_t count;
            if (!cin.Count(count, 5))
                return false;
            colours.assign(vertexCount, 0xFFFFFFFF);
            for (uint32_t i = 0; i < count; ++i) {
                uint32_t vertex;
                float rgba[4];
                if (!cin.Index(vertexCount, vertex, "colour " + NumberText(i) + " is for vertex"))
                    return false;
                cin.Floats(rgba, 4);
                colours[vertex] = ColourByte(rgba[3]) << 24 | ColourByte(rgba[0]) << 16 | ColourByte(rgba[1]) << 8 |
                                  ColourByte(rgba[2]);
            }
        }

        const int meshIndex = static_cast<int>(file_.meshes.size());
        file_.meshes.emplace_back();
        XMesh& mesh = file_.meshes.back();
        mesh.name = node.name;
        mesh.frame = frame;
        mesh.hasNormals = normalNode != nullptr;
        mesh.hasTextureCoordinates = uvNode != nullptr;
        mesh.hasColours = colourNode != nullptr;
        mesh.declaredVertices = vertexCount;
        mesh.declaredFaces = faceCount;
        file_.frames[frame].meshes.push_back(meshIndex);

        std::vector<uint32_t> faceMaterials(faceCount, 0);
        const Node* listNode = FirstChild(node, "MeshMaterialList");
        if (listNode && !ReadMaterialList(*listNode, faceCount, mesh, faceMaterials))
            return false;
        if (!listNode)
            mesh.materials.emplace_back();

        // One vertex per distinct (position, normal) corner; where the normals are indexed as the
        // positions, that is the file's vertices as they are.
        const bool split = normalNode && normalCorners != corners;
        std::vector<uint32_t> cornerVertex, vertexNormal;
        if (split) {
            std::map<uint64_t, uint32_t> made;
            cornerVertex.resize(corners.size());
            for (size_t c = 0; c < corners.size(); ++c) {
                const uint64_t key = static_cast<uint64_t>(corners[c]) << 32 | normalCorners[c];
                const auto added = made.emplace(key, static_cast<uint32_t>(mesh.vertices.size()));
                if (added.second) {
                    mesh.vertices.emplace_back();
                    mesh.vertices.back().source = corners[c];
                    vertexNormal.push_back(normalCorners[c]);
                }
                cornerVertex[c] = added.first->second;
            }
        } else {
            cornerVertex = corners;
            mesh.vertices.resize(vertexCount);
            for (uint32_t v = 0; v < vertexCount; ++v)
                mesh.vertices[v].source = v;
        }
        for (size_t v = 0; v < mesh.vertices.size(); ++v) {
            XVertex& vertex = mesh.vertices[v];
            const size_t p = vertex.source;
            std::copy(&positions[p * 3], &positions[p * 3] + 3, vertex.position);
            const size_t n = split ? vertexNormal[v] : p;
            if (normalNode && n < normalCount)
                std::copy(&normals[n * 3], &normals[n * 3] + 3, vertex.normal);
            if (uvNode)
                std::copy(&uvs[p * 2], &uvs[p * 2] + 2, vertex.uv);
            if (colourNode)
                vertex.colour = colours[p];
        }

        size_t first = 0;
        for (uint32_t f = 0; f < faceCount; ++f) {
            for (uint32_t k = 1; k + 1 < faceSizes[f]; ++k) {
                mesh.indices.push_back(cornerVertex[first]);
                mesh.indices.push_back(cornerVertex[first + k]);
                mesh.indices.push_back(cornerVertex[first + k + 1]);
                mesh.triangleMaterials.push_back(faceMaterials[f]);
            }
            first += faceSizes[f];
        }
        if (!normalNode)
            ComputeNormals(mesh);

        for (const Node& child : node.children)
            if (child.type == "SkinWeights" && !ReadSkinWeights(child, vertexCount, split, mesh))
                return false;
        return true;
    }

    // Smooth normals, each triangle weighted by its area.
    static void ComputeNormals(XMesh& mesh) {
        for (size_t t = 0; t + 2 < mesh.indices.size(); t += 3) {
            const float* a = mesh.vertices[mesh.indices[t]].position;
            const float* b = mesh.vertices[mesh.indices[t + 1]].position;
            const float* c = mesh.vertices[mesh.indices[t + 2]].position;
            const float u[3] = {b[0] - a[0], b[1] - a[1], b[2] - a[2]};
            const float v[3] = {c[0] - a[0], c[1] - a[1], c[2] - a[2]};
            // Clockwise front faces: (b - a) x (c - a) points out of the front.
            const float n[3] = {u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]};
            for (int corner = 0; corner < 3; ++corner)
                for (int i = 0; i < 3; ++i)
                    mesh.vertices[mesh.indices[t + corner]].normal[i] += n[i];
        }
        for (XVertex& vertex : mesh.vertices) {
            float* n = vertex.normal;
            const float length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
            if (length > 0)
                for (int i = 0; i < 3; ++i)
                    n[i] /= length;
        }
    }

    bool ReadSkinWeights(const Node& node, uint32_t vertexCount, bool split, XMesh& mesh) {
        Cursor in(node, reason_);
        uint32_t count;
        if (node.strings.empty())
            return in.Fail("no frame name");
        if (!in.Count(count, 2))
            return false;
        // The output vertices made from each file vertex, as ranges of one list.
        std::vector<uint32_t> start, made;
        if (split) {
            start.assign(static_cast<size_t>(vertexCount) + 1, 0);
            for (const XVertex& vertex : mesh.vertices)
                ++start[vertex.source + 1];
            for (uint32_t v = 0; v < vertexCount; ++v)
                start[v + 1] += start[v];
            made.resize(mesh.vertices.size());
            std::vector<uint32_t> next(start.begin(), start.end() - 1);
            for (uint32_t v = 0; v < mesh.vertices.size(); ++v)
                made[next[mesh.vertices[v].source]++] = v;
        }
        std::vector<uint32_t> indices(count);
        for (uint32_t i = 0; i < count; ++i)
            if (!in.Index(vertexCount, indices[i], "weight " + NumberText(i) + " is for vertex"))
                return false;
        XBone bone;
        bone.frame = node.strings[0];
        for (uint32_t i = 0; i < count; ++i) {
            const float weight = ToFloat(in.Next());
            const uint32_t source = indices[i];
            const uint32_t begin = split ? start[source] : source, end = split ? start[source + 1] : source + 1;
            for (uint32_t k = begin; k < end; ++k) {
                bone.vertices.push_back(split ? made[k] : k);
                bone.weights.push_back(weight);
            }
        }
        if (!in.Need(16))
            return false;
        in.Floats(bone.offset.m, 16);
        mesh.bones.push_back(std::move(bone));
        return true;
    }

    bool ReadAnimation(const Node& node, XAnimationSet& set) {
        XTrack track;
        for (const Node& child : node.children) {
            if ((child.type.empty() || child.type == "Frame") && track.frame.empty()) {
                track.frame = child.name;
            } else if (child.type == "AnimationKey") {
                if (!ReadKeys(child, track))
                    return false;
            } else if (child.type == "AnimationOptions") {
                Cursor in(child, reason_);
                if (!in.Need(2))
                    return false;
                track.open = in.Next() == 1;
                track.linear = in.Next() != 0;
            }
        }
        if (track.frame.empty())
            return true;
        const auto earlier = [](const auto& a, const auto& b) { return a.time < b.time; };
        std::stable_sort(track.rotations.begin(), track.rotations.end(), earlier);
        std::stable_sort(track.scales.begin(), track.scales.end(), earlier);
        std::stable_sort(track.positions.begin(), track.positions.end(), earlier);
        set.tracks.push_back(std::move(track));
        return true;
    }

    bool ReadKeys(const Node& node, XTrack& track) {
        Cursor in(node, reason_);
        uint32_t type, count;
        if (!in.Count(type, 0) || !in.Count(count, 2))
            return false;
        const uint32_t sizes[5] = {4, 3, 3, 0, 16};
        if (type > 4 || !sizes[type])
            return in.Fail("unknown key type " + NumberText(type));
        for (uint32_t k = 0; k < count; ++k) {
            uint32_t size;
            if (!in.Need(2))
                return false;
            const double time = in.Next();
            if (!in.Count(size, 1))
                return false;
            if (size != sizes[type])
                return in.Fail("key " + NumberText(k) + " has " + NumberText(size) + " values for type " +
                               NumberText(type));
            float values[16];
            in.Floats(values, static_cast<int>(size));
            if (!std::isfinite(time))
                continue;
            XVectorKey key;
            key.time = time;
            std::copy(values, values + 3, key.value);
            if (type == 0) {
                XRotationKey rotation;
                rotation.time = time;
                std::copy(values, values + 4, rotation.value);
                track.rotations.push_back(rotation);
            } else if (type == 1) {
                track.scales.push_back(key);
            } else if (type == 2) {
                track.positions.push_back(key);
            } else {
                XMatrix matrix;
                XRotationKey rotation;
                XVectorKey scale, position;
                std::copy(values, values + 16, matrix.m);
                DecomposeXMatrix(matrix, scale.value, rotation.value, position.value);
                rotation.time = scale.time = position.time = time;
                track.rotations.push_back(rotation);
                track.scales.push_back(scale);
                track.positions.push_back(position);
                track.hasMatrixKeys = true;
            }
        }
        return true;
    }

    // Bones and tracks find their frames by name once every frame is known; those naming none go.
    void Resolve() {
        std::map<std::string, int> frames;
        for (size_t i = 1; i < file_.frames.size(); ++i)
            if (!file_.frames[i].name.empty())
                frames.emplace(file_.frames[i].name, static_cast<int>(i));
        const auto find = [&frames](const std::string& name) {
            const auto found = frames.find(name);
            return found == frames.end() ? -1 : found->second;
        };
        for (XMesh& mesh : file_.meshes) {
            for (XBone& bone : mesh.bones)
                bone.frameIndex = find(bone.frame);
            mesh.bones.erase(std::remove_if(mesh.bones.begin(), mesh.bones.end(),
                                            [](const XBone& bone) { return bone.frameIndex < 0; }),
                             mesh.bones.end());
        }
        for (XAnimationSet& set : file_.animationSets) {
            for (XTrack& track : set.tracks)
                track.frameIndex = find(track.frame);
            set.tracks.erase(std::remove_if(set.tracks.begin(), set.tracks.end(),
                                            [](const XTrack& track) { return track.frameIndex < 0; }),
                             set.tracks.end());
            bool any = false;
            const auto latest = [&set, &any](double time) {
                set.lastKeyTime = any ? std::max(set.lastKeyTime, time) : time;
                any = true;
            };
            for (const XTrack& track : set.tracks) {
                // Each list is sorted: its last key is its latest.
                if (!track.rotations.empty())
                    latest(track.rotations.back().time);
                if (!track.scales.empty())
                    latest(track.scales.back().time);
                if (!track.positions.empty())
                    latest(track.positions.back().time);
            }
        }
    }

    XFile& file_;
    std::string& reason_;
    std::map<std::string, const Node*> materials_; ///< top-level materials, for references
};

XResult Parse(const uint8_t* data, size_t size, XFile& file, std::string& reason) {
    if (size < 16 || std::memcmp(data, "xof ", 4) != 0) {
        reason = "no \"xof \" header";
        return XResult::NotX;
    }
    const char* header = reinterpret_cast<const char*>(data);
    if (std::memcmp(header + 4, "0302", 4) != 0 && std::memcmp(header + 4, "0303", 4) != 0) {
        reason = "version " + std::string(header + 4, 4);
        return XResult::NotX;
    }
    file.version = header[7] == '2' ? 302 : 303;
    if (std::memcmp(header + 8, "tzip", 4) == 0 || std::memcmp(header + 8, "bzip", 4) == 0) {
        reason = "format \"" + std::string(header + 8, 4) + "\"";
        return XResult::Compressed;
    }
    const bool text = std::memcmp(header + 8, "txt ", 4) == 0;
    file.binary = std::memcmp(header + 8, "bin ", 4) == 0;
    if (!text && !file.binary) {
        reason = "format \"" + std::string(header + 8, 4) + "\"";
        return XResult::NotX;
    }
    if (std::memcmp(header + 12, "0032", 4) != 0 && std::memcmp(header + 12, "0064", 4) != 0) {
        reason = "float size \"" + std::string(header + 12, 4) + "\"";
        return XResult::NotX;
    }
    file.floatBits = header[14] == '6' ? 64 : 32;

    std::vector<Node> top;
    const uint8_t* end = data + size;
    const bool parsed =
        text ? Parser<TextLexer>(TextLexer(data + 16, end), data, reason).File(top)
             : Parser<BinaryLexer>(BinaryLexer(data + 16, end, file.floatBits / 8), data, reason).File(top);
    return parsed && Reader(file, reason).Read(top) ? XResult::Ok : XResult::Malformed;
}

} // namespace

XResult ParseX(const uint8_t* data, size_t size, XFile& file, std::string* error) {
    file = XFile();
    std::string reason;
    const XResult result = Parse(data, size, file, reason);
    if (result != XResult::Ok)
        file = XFile();
    if (error)
        *error = result == XResult::Ok ? std::string() : reason;
    return result;
}

const char* DescribeXResult(XResult result) {
    switch (result) {
    case XResult::Ok:
        return "ok";
    case XResult::NotX:
        return "not a .x file";
    case XResult::Compressed:
        return "compressed .x file";
    default:
        return "malformed .x file";
    }
}

bool DecomposeXMatrix(const XMatrix& matrix, float scale[3], float rotation[4], float translation[3]) {
    const float* m = matrix.m;
    double rows[3][3];
    double lengths[3];
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c)
            rows[r][c] = m[r * 4 + c];
        lengths[r] = std::sqrt(rows[r][0] * rows[r][0] + rows[r][1] * rows[r][1] + rows[r][2] * rows[r][2]);
    }
    const double determinant = rows[0][0] * (rows[1][1] * rows[2][2] - rows[1][2] * rows[2][1]) -
                               rows[0][1] * (rows[1][0] * rows[2][2] - rows[1][2] * rows[2][0]) +
                               rows[0][2] * (rows[1][0] * rows[2][1] - rows[1][1] * rows[2][0]);
    bool usable = true;
    for (int r = 0; r < 3; ++r)
        usable = usable && lengths[r] > 0 && lengths[r] <= FLT_MAX;
    if (!usable) {
        const float identityScale[3] = {1, 1, 1}, identityRotation[4] = {1, 0, 0, 0}, zero[3] = {};
        std::copy(identityScale, identityScale + 3, scale);
        std::copy(identityRotation, identityRotation + 4, rotation);
        std::copy(zero, zero + 3, translation);
        return false;
    }
    // A mirroring matrix keeps a proper rotation by taking the mirror into the x scale.
    if (determinant < 0)
        lengths[0] = -lengths[0];
    double r[3][3];
    for (int i = 0; i < 3; ++i)
        for (int c = 0; c < 3; ++c)
            r[i][c] = rows[i][c] / lengths[i];
    // The inverse of the rotation keys' matrix: r[0][1] = 2(xy + zw), r[1][0] = 2(xy - zw), and so on.
    double w, x, y, z;
    const double trace = r[0][0] + r[1][1] + r[2][2];
    if (trace > 0) {
        w = std::sqrt(trace + 1) / 2;
        x = (r[1][2] - r[2][1]) / (4 * w);
        y = (r[2][0] - r[0][2]) / (4 * w);
        z = (r[0][1] - r[1][0]) / (4 * w);
    } else if (r[0][0] >= r[1][1] && r[0][0] >= r[2][2]) {
        x = std::sqrt(1 + r[0][0] - r[1][1] - r[2][2]) / 2;
        w = (r[1][2] - r[2][1]) / (4 * x);
        y = (r[0][1] + r[1][0]) / (4 * x);
        z = (r[2][0] + r[0][2]) / (4 * x);
    } else if (r[1][1] >= r[2][2]) {
        y = std::sqrt(1 - r[0][0] + r[1][1] - r[2][2]) / 2;
        w = (r[2][0] - r[0][2]) / (4 * y);
        x = (r[0][1] + r[1][0]) / (4 * y);
        z = (r[1][2] + r[2][1]) / (4 * y);
    } else {
        z = std::sqrt(1 - r[0][0] - r[1][1] + r[2][2]) / 2;
        w = (r[0][1] - r[1][0]) / (4 * z);
        x = (r[2][0] + r[0][2]) / (4 * z);
        y = (r[1][2] + r[2][1]) / (4 * z);
    }
    const double norm = std::sqrt(w * w + x * x + y * y + z * z);
    const double sign = w < 0 ? -1 : 1; // w >= 0: one of the two quaternions of the rotation
    const double quaternion[4] = {w, x, y, z};
    for (int i = 0; i < 4; ++i)
        rotation[i] = static_cast<float>(sign * quaternion[i] / norm);
    for (int i = 0; i < 3; ++i) {
        scale[i] = static_cast<float>(lengths[i]);
        translation[i] = m[12 + i];
    }
    return true;
}

} // namespace formats
} // namespace ZQ
