#include "XWriter.h"

#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace zqtools {

namespace {

// A few of the standard declarations: an open template, a restricted one, arrays sized by members and
// by a constant, and the two that files declare most often themselves.
const char* const kTemplates[] = {
    "template Vector {\n <3D82AB5E-62DA-11cf-AB39-0020AF71E433>\n FLOAT x;\n FLOAT y;\n FLOAT z;\n}\n",
    "template Matrix4x4 {\n <F6F23F45-7686-11cf-8F52-0040333594A3>\n array FLOAT matrix[16];\n}\n",
    "template FrameTransformMatrix {\n <F6F23F41-7686-11cf-8F52-0040333594A3>\n Matrix4x4 frameMatrix;\n}\n",
    "template Frame {\n <3D82AB46-62DA-11cf-AB39-0020AF71E433>\n [...]\n}\n",
    "template MeshFace {\n <3D82AB5F-62DA-11cf-AB39-0020AF71E433>\n DWORD nFaceVertexIndices;\n"
    " array DWORD faceVertexIndices[nFaceVertexIndices];\n}\n",
    "template Mesh {\n <3D82AB44-62DA-11cf-AB39-0020AF71E433>\n DWORD nVertices;\n array Vector vertices[nVertices];\n"
    " DWORD nFaces;\n array MeshFace faces[nFaces];\n [...]\n}\n",
    "template MeshMaterialList {\n <F6F23F42-7686-11cf-8F52-0040333594A3>\n DWORD nMaterials;\n DWORD nFaceIndexes;\n"
    " array DWORD faceIndexes[nFaceIndexes];\n [Material <3D82AB4D-62DA-11cf-AB39-0020AF71E433>]\n}\n",
    "template AnimTicksPerSecond {\n <9E415A43-7BA6-4a73-8743-B73D47E88476>\n DWORD AnimTicksPerSecond;\n}\n",
    "template XSkinMeshHeader {\n <3CF169CE-FF7C-44ab-93C0-F78F62D172E2>\n WORD nMaxSkinWeightsPerVertex;\n"
    " WORD nMaxSkinWeightsPerFace;\n WORD nBones;\n}\n",
    "template SkinWeights {\n <6F0D123B-BAD2-4167-A0D0-80224F25FABB>\n STRING transformNodeName;\n DWORD nWeights;\n"
    " array DWORD vertexIndices[nWeights];\n array FLOAT weights[nWeights];\n Matrix4x4 matrixOffset;\n}\n",
};

enum Token : uint16_t {
    kName = 1,
    kString = 2,
    kInteger = 3,
    kGuid = 5,
    kIntegerList = 6,
    kFloatList = 7,
    kOpenBrace = 10,
    kCloseBrace = 11,
    kOpenBracket = 14,
    kCloseBracket = 15,
    kDot = 18,
    kSemicolon = 20,
    kTemplate = 31,
};

class Binary {
public:
    Binary(std::vector<uint8_t>& bytes, bool doubles) : bytes_(bytes), doubles_(doubles) {}

    void U16(uint16_t value) {
        for (int i = 0; i < 2; ++i)
            bytes_.push_back(static_cast<uint8_t>(value >> (8 * i)));
    }
    void U32(uint32_t value) {
        for (int i = 0; i < 4; ++i)
            bytes_.push_back(static_cast<uint8_t>(value >> (8 * i)));
    }
    void Text(uint16_t token, const std::string& text) {
        U16(token);
        U32(static_cast<uint32_t>(text.size()));
        bytes_.insert(bytes_.end(), text.begin(), text.end());
    }

    // "3D82AB46-62DA-11cf-AB39-0020AF71E433": a 32-bit, two 16-bit little-endian fields, then 8 bytes.
    void Guid(const std::string& text) {
        std::string hex;
        for (char c : text)
            if (std::isxdigit(static_cast<unsigned char>(c)))
                hex += c;
        const auto field = [&hex](size_t at, size_t digits) {
            return static_cast<uint32_t>(std::stoul(hex.substr(at, digits), nullptr, 16));
        };
        U16(kGuid);
        U32(field(0, 8));
        U16(static_cast<uint16_t>(field(8, 4)));
        U16(static_cast<uint16_t>(field(12, 4)));
        for (size_t i = 16; i < 32; i += 2)
            bytes_.push_back(static_cast<uint8_t>(field(i, 2)));
    }

    // The declaration's text in tokens: keywords, punctuation, GUIDs, sizes and names.
    void Template(const std::string& text) {
        static const char* const keywords[] = {"WORD",   "DWORD", "FLOAT",  "DOUBLE",  "CHAR",    "UCHAR", "SWORD",
                                               "SDWORD", "VOID",  "STRING", "UNICODE", "CSTRING", "array"};
        for (size_t i = 0; i < text.size();) {
            const char c = text[i];
            if (std::isspace(static_cast<unsigned char>(c))) {
                ++i;
            } else if (c == '<') {
                const size_t close = text.find('>', i);
                Guid(text.substr(i + 1, close - i - 1));
                i = close + 1;
            } else if (std::isdigit(static_cast<unsigned char>(c))) {
                size_t length;
                const unsigned long value = std::stoul(text.substr(i), &length);
                U16(kInteger);
                U32(static_cast<uint32_t>(value));
                i += length;
            } else if (std::isalpha(static_cast<unsigned char>(c))) {
                size_t end = i;
                while (end < text.size() && (std::isalnum(static_cast<unsigned char>(text[end])) || text[end] == '_'))
                    ++end;
                const std::string word = text.substr(i, end - i);
                i = end;
                if (word == "template") {
                    U16(kTemplate);
                    continue;
                }
                bool keyword = false;
                for (uint16_t k = 0; k < sizeof keywords / sizeof *keywords && !keyword; ++k)
                    if (word == keywords[k]) {
                        U16(static_cast<uint16_t>(40 + k)); // TOKEN_WORD (40) to TOKEN_ARRAY (52), in order
                        keyword = true;
                    }
                if (!keyword)
                    Text(kName, word);
            } else {
                const char* const punctuation = "{}[].;";
                const uint16_t tokens[] = {kOpenBrace, kCloseBrace, kOpenBracket, kCloseBracket, kDot, kSemicolon};
                U16(tokens[std::strchr(punctuation, c) - punctuation]);
                ++i;
            }
        }
    }

    void Node(const XNode& node) {
        Text(kName, node.type);
        if (!node.name.empty())
            Text(kName, node.name);
        U16(kOpenBrace);
        const std::vector<XItem>& items = node.items;
        for (size_t i = 0; i < items.size();) {
            const XItem& item = items[i];
            if (item.kind == XItem::Kind::Integer || item.kind == XItem::Kind::Float) {
                // A run of numbers of one kind is one list.
                size_t end = i;
                while (end < items.size() && items[end].kind == item.kind)
                    ++end;
                const bool floats = item.kind == XItem::Kind::Float;
                U16(floats ? kFloatList : kIntegerList);
                U32(static_cast<uint32_t>(end - i));
                for (; i < end; ++i)
                    if (!floats)
                        U32(static_cast<uint32_t>(items[i].integer));
                    else
                        Float(items[i].number);
                continue;
            }
            if (item.kind == XItem::Kind::String) {
                Text(kString, item.text);
                U16(kSemicolon);
            } else if (item.kind == XItem::Kind::Reference) {
                U16(kOpenBrace);
                Text(kName, item.text);
                U16(kCloseBrace);
            } else {
                Node(item.child.front());
            }
            ++i;
        }
        U16(kCloseBrace);
    }

private:
    void Float(double value) {
        if (doubles_) {
            uint64_t bits;
            std::memcpy(&bits, &value, sizeof bits);
            U32(static_cast<uint32_t>(bits));
            U32(static_cast<uint32_t>(bits >> 32));
        } else {
            const float single = static_cast<float>(value);
            uint32_t bits;
            std::memcpy(&bits, &single, sizeof bits);
            U32(bits);
        }
    }

    std::vector<uint8_t>& bytes_;
    bool doubles_;
};

// Values run on in lines of moderate length; each child object and reference on lines of its own.
void WriteText(const XNode& node, int depth, std::string& out) {
    const std::string indent(static_cast<size_t>(depth) * 2, ' ');
    out += indent + node.type + (node.name.empty() ? "" : " " + node.name) + " {\n";
    std::string line;
    const auto flush = [&]() {
        if (!line.empty())
            out += indent + "  " + line.substr(0, line.size() - 1) + "\n"; // less the last space
        line.clear();
    };
    for (const XItem& item : node.items) {
        char number[40];
        switch (item.kind) {
        case XItem::Kind::Integer:
            std::snprintf(number, sizeof number, "%lld", item.integer);
            line += number + item.separator;
            break;
        case XItem::Kind::Float:
            std::snprintf(number, sizeof number, "%.9g", item.number);
            // Some readers take a FLOAT only with a decimal point, as exporters write them.
            if (std::isfinite(item.number) && !std::strpbrk(number, ".e"))
                std::strcat(number, ".0");
            line += number + item.separator;
            break;
        case XItem::Kind::String:
            line += "\"" + item.text + "\"" + item.separator;
            break;
        case XItem::Kind::Reference:
            flush();
            out += indent + "  { " + item.text + " }\n";
            continue;
        case XItem::Kind::Child:
            flush();
            WriteText(item.child.front(), depth + 1, out);
            continue;
        }
        line += ' ';
        if (line.size() > 100)
            flush();
    }
    flush();
    out += indent + "}\n";
}

} // namespace

XNode& XNode::Integer(long long value, const char* separator) {
    items.emplace_back();
    items.back().integer = value;
    items.back().separator = separator;
    return *this;
}

XNode& XNode::Float(double value, const char* separator) {
    items.emplace_back();
    items.back().kind = XItem::Kind::Float;
    items.back().number = value;
    items.back().separator = separator;
    return *this;
}

XNode& XNode::String(const std::string& text) {
    items.emplace_back();
    items.back().kind = XItem::Kind::String;
    items.back().text = text;
    return *this;
}

XNode& XNode::Reference(const std::string& name) {
    items.emplace_back();
    items.back().kind = XItem::Kind::Reference;
    items.back().text = name;
    return *this;
}

XNode& XNode::Child(const XNode& node) {
    items.emplace_back();
    items.back().kind = XItem::Kind::Child;
    items.back().child.push_back(node);
    return *this;
}

std::vector<uint8_t> WriteX(const std::vector<XNode>& objects, XForm form, bool templates) {
    const char* header = form == XForm::Text       ? "xof 0303txt 0032"
                         : form == XForm::Binary32 ? "xof 0303bin 0032"
                                                   : "xof 0303bin 0064";
    std::vector<uint8_t> bytes(header, header + 16);
    if (form == XForm::Text) {
        std::string text = "\n";
        if (templates)
            for (const char* declaration : kTemplates)
                text += std::string(declaration) + "\n";
        for (const XNode& node : objects)
            WriteText(node, 0, text);
        bytes.insert(bytes.end(), text.begin(), text.end());
        return bytes;
    }
    Binary binary(bytes, form == XForm::Binary64);
    if (templates)
        for (const char* declaration : kTemplates)
            binary.Template(declaration);
    for (const XNode& node : objects)
        binary.Node(node);
    return bytes;
}

} // namespace zqtools
