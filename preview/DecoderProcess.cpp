#include "preview/DecoderProcess.hpp"

#include <QLoggingCategory>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

#include <dlfcn.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tessaly {

namespace {

Q_LOGGING_CATEGORY(previewLog, "tessaly.preview")

/// Where the child program expects its socket.
constexpr int socketNumber = 3;

/// What the child program needs to know of the environment. The rest might lead it to a display, a
/// bus or a theme.
bool isPassedOn(std::string_view variable)
{
    constexpr std::array<std::string_view, 12> names{"HOME=",
                                                     "LANG=",
                                                     "LANGUAGE=",
                                                     "LC_",
                                                     "XDG_CACHE_HOME=",
                                                     "XDG_CONFIG_HOME=",
                                                     "XDG_DATA_HOME=",
                                                     "XDG_DATA_DIRS=",
                                                     "XDG_RUNTIME_DIR=",
                                                     "FONTCONFIG_",
                                                     "LD_LIBRARY_PATH=",
                                                     "QT_PLUGIN_PATH="};
    constexpr std::string_view sanitizers = "SAN_OPTIONS=";
    return variable.find(sanitizers) != std::string_view::npos ||
           std::any_of(names.begin(), names.end(),
                       [&](std::string_view name) { return variable.starts_with(name); });
}

std::vector<std::string> environmentOfChild()
{
    std::vector<std::string> variables;
    for (char **variable = environ; *variable != nullptr; ++variable) {
        if (isPassedOn(*variable)) {
            variables.emplace_back(*variable);
        }
    }
    variables.emplace_back("QT_QPA_PLATFORM=offscreen");
    variables.emplace_back("QT_NO_GLIB=1"); // a simpler event loop does
    return variables;
}

/// Starts the program with this socket; an error number when that cannot be.
int spawn(const std::string &programPath, std::vector<std::string> environment, int socket,
          pid_t &process)
{
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    if (const int error = posix_spawn_file_actions_init(&actions)) {
        return error;
    }
    if (const int error = posix_spawnattr_init(&attributes)) {
        posix_spawn_file_actions_destroy(&actions);
        return error;
    }
    // A group of its own: Ctrl+C in a terminal is for the program alone, which ends it then.
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK |
                                              POSIX_SPAWN_SETSIGDEF);
    sigset_t signalSet;
    sigemptyset(&signalSet);
    posix_spawnattr_setsigmask(&attributes, &signalSet);
    sigaddset(&signalSet, SIGCHLD);
    sigaddset(&signalSet, SIGPIPE);
    posix_spawnattr_setsigdefault(&attributes, &signalSet);
    posix_spawn_file_actions_adddup2(&actions, socket, socketNumber);
    posix_spawn_file_actions_addclosefrom_np(&actions, socketNumber + 1);
    std::string name = "preview-decoder";
    std::array<char *, 2> arguments{name.data(), nullptr};
    std::vector<char *> variables;
    variables.reserve(environment.size() + 1);
    for (std::string &variable : environment) {
        variables.push_back(variable.data());
    }
    variables.push_back(nullptr);
    const int error = posix_spawn(&process, programPath.c_str(), &actions, &attributes,
                                  arguments.data(), variables.data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    return error;
}

} // namespace

DecoderProcess::DecoderProcess(std::string programPath)
    : m_programPath(std::move(programPath)), m_environment(environmentOfChild())
{
}

DecoderProcess::~DecoderProcess()
{
    end();
}

std::string DecoderProcess::usualProgramPath()
{
    Dl_info info{};
    std::string path;
    if (dladdr(reinterpret_cast<void *>(&DecoderProcess::usualProgramPath), &info) != 0 &&
        info.dli_fname != nullptr) {
        path = info.dli_fname;
    }
    return path.substr(0, path.rfind('/') + 1) + "preview-decoder";
}

void DecoderProcess::start()
{
    const std::scoped_lock lock(m_mutex);
    isStarted();
}

bool DecoderProcess::isStarted()
{
    if (m_socket.isOpen()) {
        return true;
    }
    auto [ours, theirs] = MessageSocket::makePair();
    if (!ours.isOpen()) {
        return false;
    }
    // Not the number that it is to get: it would be closed again there when the program is loaded.
    const scan::FileDescriptor handedOver(
        fcntl(theirs.number(), F_DUPFD_CLOEXEC, socketNumber + 1));
    if (const int error = spawn(m_programPath, m_environment, handedOver.number(), m_process)) {
        m_process = -1;
        if (!std::exchange(m_hasLogged, true)) {
            qCCritical(previewLog, "There are no previews of images and documents: %s: %s",
                       m_programPath.c_str(), std::strerror(error));
        }
        return false;
    }
    m_socket = std::move(ours);
    return true;
}

void DecoderProcess::end()
{
    m_socket.close();
    if (m_process > 0) {
        // It ends by itself once the socket is closed, and kills its decoders before, but could be
        // stopped or starting yet. Decoders end with it in any case.
        kill(m_process, SIGKILL);
        waitpid(m_process, nullptr, 0);
        m_process = -1;
    }
}

std::optional<MessageSocket> DecoderProcess::startDecoder(int file, DecoderTask task)
{
    auto [ours, theirs] = MessageSocket::makePair();
    if (!ours.isOpen()) {
        return std::nullopt;
    }
    const std::scoped_lock lock(m_mutex);
    for (int attempt = 0; attempt < 2; ++attempt) {
        if (!isStarted()) {
            return std::nullopt;
        }
        if (m_socket.send(task, {file, theirs.number()})) {
            return std::move(ours);
        }
        end(); // it has ended meanwhile, by whatever reason; the next one is a new one
    }
    return std::nullopt;
}

} // namespace tessaly
