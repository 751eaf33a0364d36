#pragma once

#include "tests/engine/TemporaryFolder.hpp"
#include "tests/platform/linux/FilesOnDisk.hpp"
#include "tests/platform/linux/ScopedVariable.hpp"

#include <filesystem>
#include <string>

#include <sys/stat.h>

namespace tessaly {

/// A desktop of a test's own: folders for what the user and the system have installed and chosen,
/// and for programs, all empty at first. While it lives the environment leads there and nowhere
/// else.
class MadeDesktop {
public:
    explicit MadeDesktop(const std::string &name = {})
        : m_name("XDG_CURRENT_DESKTOP", name), m_configHome("XDG_CONFIG_HOME", path("config")),
          m_configFolders("XDG_CONFIG_DIRS", path("etc")),
          m_dataHome("XDG_DATA_HOME", path("data")),
          m_dataFolders("XDG_DATA_DIRS", path("local") + ':' + path("usr")),
          m_programs("PATH", path("bin")), m_browser("BROWSER", std::nullopt)
    {
    }

    /// A path in the folders "config" and "data" of the user, "etc", "local" and "usr" of the
    /// system, in this order of importance, or "bin" with the programs.
    [[nodiscard]] std::string path(const std::string &inside) const
    {
        return m_folder.path(inside);
    }

    void write(const std::string &inside, const std::string &text) const
    {
        std::filesystem::create_directories(std::filesystem::path(path(inside)).parent_path());
        writeFile(path(inside), text);
    }

    /// A program, which does what a script says.
    void addProgram(const std::string &name, const std::string &script = "exit 0") const
    {
        write("bin/" + name, "#!/bin/sh\n" + script + '\n');
        chmod(path("bin/" + name).c_str(), S_IRWXU);
    }

    /// A program with its desktop file, which has these lines besides. `id`: a name without
    /// ".desktop", which is the program's as well.
    void install(const std::string &id, const std::string &lines = {},
                 const std::string &folder = "usr") const
    {
        addProgram(id);
        write(folder + "/applications/" + id + ".desktop",
              "[Desktop Entry]\nType=Application\nName=" + id + "\nExec=" + id + " %U\n" + lines);
    }

private:
    TemporaryFolder m_folder;
    ScopedVariable m_name;
    ScopedVariable m_configHome;
    ScopedVariable m_configFolders;
    ScopedVariable m_dataHome;
    ScopedVariable m_dataFolders;
    ScopedVariable m_programs;
    ScopedVariable m_browser;
};

} // namespace tessaly
