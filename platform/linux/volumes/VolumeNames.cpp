#include "platform/linux/volumes/VolumeNames.hpp"

#include "engine/tree/FilePath.hpp"

#include <algorithm>

namespace tessaly {

namespace {

/// The label without slashes at its ends, and with dashes in place of others: names are parts of
/// paths ("NAME/FOLDER").
std::string nameFromLabel(std::string_view label)
{
    const std::size_t begin = label.find_first_not_of('/');
    if (begin == std::string_view::npos) {
        return {};
    }
    std::string name(label.substr(begin, label.find_last_not_of('/') + 1 - begin));
    std::replace(name.begin(), name.end(), '/', '-');
    return name;
}

std::string wantedName(const VolumeNames::Volume &volume)
{
    if (volume.mountPoint == "/") {
        return volume.mountPoint;
    }
    const std::string name = nameFromLabel(volume.label);
    return name.empty() ? tree::fileName(volume.mountPoint) : name;
}

} // namespace

void VolumeNames::assign(const std::vector<Volume> &volumes)
{
    std::map<Key, Name> before;
    before.swap(m_names);
    std::vector<Name *> nameless;
    for (const Volume &volume : volumes) {
        Name name{wantedName(volume), {}};
        const Key key(volume.device, volume.mountPoint);
        const auto known = before.find(key);
        if (known != before.end() && known->second.wanted == name.wanted) {
            name = known->second; // it keeps its suffix, though others may be gone by now
        }
        Name &place = m_names[key] = name;
        if (place.given.empty()) {
            nameless.push_back(&place);
        }
    }
    // Names that are free are given out before any suffix: "a 2" must not take the name of a volume
    // whose label is "a 2".
    for (Name *name : nameless) {
        if (!isTaken(name->wanted)) {
            name->given = name->wanted;
        }
    }
    for (Name *name : nameless) {
        for (int number = 2; name->given.empty(); ++number) {
            const std::string candidate = name->wanted + ' ' + std::to_string(number);
            if (!isTaken(candidate)) {
                name->given = candidate;
            }
        }
    }
}

std::optional<std::string> VolumeNames::nameOf(std::uint64_t device,
                                               const std::string &mountPoint) const
{
    const auto found = m_names.find(Key(device, mountPoint));
    return found == m_names.end() ? std::nullopt : std::optional(found->second.given);
}

bool VolumeNames::isTaken(std::string_view name) const
{
    return std::any_of(m_names.begin(), m_names.end(),
                       [&](const auto &entry) { return entry.second.given == name; });
}

} // namespace tessaly
