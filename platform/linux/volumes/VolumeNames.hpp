#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessaly {

/// The names by which volumes are known: "/" for the root, else the label of the volume, else the
/// last component of the path to it. No two are equal: a suffix (" 2", " 3", …) tells them apart.
///
/// A volume keeps its name, with its suffix, for as long as it is there, whatever becomes of
/// others. No name but "/" has a slash in it.
///
/// Units: names, labels and paths are bytes.
class VolumeNames {
public:
    /// What tells volumes apart: their file system and the place where it is mounted.
    struct Volume {
        std::uint64_t device = 0;
        std::string mountPoint;
        std::string label; ///< empty for none
    };

    /// Names all volumes that are there now, and forgets all others. The first of those that would
    /// have the same name gets it without a suffix.
    void assign(const std::vector<Volume> &volumes);

    /// The name of a volume, by its file system and its place; nothing for one that has none.
    [[nodiscard]] std::optional<std::string> nameOf(std::uint64_t device,
                                                    const std::string &mountPoint) const;

private:
    using Key = std::pair<std::uint64_t, std::string>;
    struct Name {
        std::string wanted;
        std::string given; ///< empty while it is sought
    };

    [[nodiscard]] bool isTaken(std::string_view name) const;

    std::map<Key, Name> m_names;
};

} // namespace tessaly
