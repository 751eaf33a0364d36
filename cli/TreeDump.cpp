#include "cli/TreeDump.hpp"

#include "engine/tree/EscapedName.hpp"
#include "engine/tree/TreeWalk.hpp"

#include <ostream>

namespace tessaly {

namespace {

char parentMark(archive::ScanFileDetails::Parent parent)
{
    switch (parent) {
    case archive::ScanFileDetails::Parent::enclosing:
        return 'P';
    case archive::ScanFileDetails::Parent::none:
        return '0';
    case archive::ScanFileDetails::Parent::other:
        return 'x';
    case archive::ScanFileDetails::Parent::missing:
        break;
    }
    return '-';
}

struct Dumper {
    std::ostream &out;
    const archive::ScanFileDetails &details;
    std::size_t depth = 0;

    void file(const tree::LUMFileItem &item) const { line(item, 'F'); }
    void enter(const tree::LUMFileContainer &folder)
    {
        line(folder, 'C');
        ++depth;
    }
    void leave(const tree::LUMFileContainer & /*folder*/) { --depth; }

    void line(const tree::LUMFileItem &node, char kind) const
    {
        const archive::ScanFileDetails::Node said = details.of(node);
        out << depth << '\t' << kind << '\t';
        if (said.hasSize) {
            out << node.itemSize();
        } else {
            out << '-';
        }
        out << '\t' << parentMark(said.parent) << '\t';
        if (node.hasItemName()) {
            out << jsonString(said.name ? *said.name : tree::escapedName(node.itemName()));
        } else {
            out << '-';
        }
        out << '\n';
    }
};

} // namespace

void dumpTree(std::ostream &out, const tree::LUMFileContainer &root,
              const archive::ScanFileDetails &details)
{
    Dumper dumper{out, details};
    tree::walkTree(root, dumper);
}

std::string jsonString(std::u16string_view text)
{
    constexpr std::string_view digits = "0123456789abcdef";
    constexpr std::string_view escaped = "\"\\\b\f\n\r\t";
    constexpr std::string_view letters = "\"\\bfnrt";
    std::string json = "\"";
    for (const char16_t unit : text) {
        const auto letter = unit < 0x80 ? escaped.find(static_cast<char>(unit)) : escaped.npos;
        if (letter != escaped.npos) {
            json += '\\';
            json += letters[letter];
        } else if (unit >= 0x20 && unit < 0x7f) {
            json += static_cast<char>(unit);
        } else {
            json += "\\u";
            for (int shift = 12; shift >= 0; shift -= 4) {
                json += digits[static_cast<unsigned>(unit) >> static_cast<unsigned>(shift) & 0xFU];
            }
        }
    }
    json += '"';
    return json;
}

} // namespace tessaly
