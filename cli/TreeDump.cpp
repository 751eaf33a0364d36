#include "cli/TreeDump.hpp"

#include "engine/tree/EscapedName.hpp"
#include "engine/tree/TreeWalk.hpp"

#include <ostream>

namespace tessaly {

namespace {

char parentMark(ScanFileDetails::Parent parent)
{
    switch (parent) {
    case ScanFileDetails::Parent::enclosing:
        return 'P';
    case ScanFileDetails::Parent::none:
        return '0';
    case ScanFileDetails::Parent::other:
        return 'x';
    case ScanFileDetails::Parent::missing:
        break;
    }
    return '-';
}

struct Dumper {
    std::ostream &out;
    const ScanFileDetails &details;
    std::size_t depth = 0;

    void file(const LUMFileItem &item) const { line(item, 'F'); }
    void enter(const LUMFileContainer &folder)
    {
        line(folder, 'C');
        ++depth;
    }
    void leave(const LUMFileContainer & /*folder*/) { --depth; }

    void line(const LUMFileItem &node, char kind) const
    {
        const ScanFileDetails::Node said = details.of(node);
        out << depth << '\t' << kind << '\t';
        if (said.hasSize) {
            out << node.itemSize();
        } else {
            out << '-';
        }
        out << '\t' << parentMark(said.parent) << '\t';
        if (node.hasItemName()) {
            out << jsonString(said.name ? *said.name : escapedName(node.itemName()));
        } else {
            out << '-';
        }
        out << '\n';
    }
};

} // namespace

void dumpTree(std::ostream &out, const LUMFileContainer &root, const ScanFileDetails &details)
{
    Dumper dumper{out, details};
    walkTree(root, dumper);
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
