#pragma once

#include "engine/scan/FileDescriptor.hpp"

#include <cstdint>
#include <string>

namespace tessaly {

/// A new folder for a test. The destructor removes it with everything in it, of any depth.
///
/// Paths given to the members are relative to the folder. A member that fails throws
/// std::system_error, which fails the test.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;

    [[nodiscard]] const std::string &path() const { return m_path; }
    [[nodiscard]] std::string path(const std::string &inside) const
    {
        return m_path + '/' + inside;
    }
    [[nodiscard]] int descriptor() const { return m_descriptor.number(); }

    /// A file of that size; it takes no space on disk.
    void file(const std::string &name, std::uint64_t byteCount = 0) const;
    void folder(const std::string &name) const;
    void link(const std::string &name, const std::string &target) const;

    /// Folders in one another, all named alike, with a file of `leafByteCount` bytes named "leaf"
    /// in the last one. With siblings, beside each of them lie two folders "y" and "z", made before
    /// and after it, each with a file "f" of 1 byte: one of them comes after it in a listing that
    /// is in either order.
    enum class Siblings : std::uint8_t { none, two };
    void nestedFolders(const std::string &name, int depth, std::uint64_t leafByteCount,
                       Siblings siblings = Siblings::none) const;

private:
    std::string m_path;
    scan::FileDescriptor m_descriptor;
};

/// Removes everything in an open folder.
void removeContents(int folder);

} // namespace tessaly
