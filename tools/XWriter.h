// Writes ".x" model files from a tree of data objects, as text or binary, for the generated test models.
// The objects are written as given: the writer knows no template.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace zqtools {

struct XNode;

/// One value of a data object, a reference to a named object, or a child object.
struct XItem {
    enum class Kind { Integer, Float, String, Reference, Child };
    Kind kind = Kind::Integer;
    long long integer = 0; ///< written as 32 bits in binary
    double number = 0;
    std::string text;            ///< String: the characters; Reference: the name
    std::vector<XNode> child;    ///< Child: the one node
    std::string separator = ";"; ///< text only: what follows the value (";", ",", ";," or ";;" as exporters write)
};

struct XNode {
    XNode(std::string type, std::string name = "") : type(std::move(type)), name(std::move(name)) {}

    std::string type;
    std::string name; ///< empty for an unnamed object
    std::vector<XItem> items;

    XNode& Integer(long long value, const char* separator = ";");
    XNode& Float(double value, const char* separator = ";");
    XNode& String(const std::string& text);
    XNode& Reference(const std::string& name);
    XNode& Child(const XNode& node);
};

enum class XForm { Text, Binary32, Binary64 };

/// The whole file, version 0303. With templates, declarations of a few standard templates come first,
/// as files that carry their own do.
std::vector<uint8_t> WriteX(const std::vector<XNode>& objects, XForm form, bool templates = false);

} // namespace zqtools
