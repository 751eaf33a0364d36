#include "preview/DecoderProcess.hpp"

#include "platform/background/ChildProgram.hpp"

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
#include <sys/wait.h>
#include <unistd.h>

namespace tessaly {

namespace {

Q_LOGGING_CATEGORY(previewLog, "tessaly.preview")

/// What is started with its standard error closed has none to pass on.
bool isOpen(int descriptor)
{
    return fcntl(descriptor, F_GETFD) != -1;
}

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
    // Copied on the main thread, which alone may change the environment. start() runs on another
    // one.
    for (char **variable = environ; *variable != nullptr; ++variable) {
        if (isPassedOn(*variable)) {
            variables.emplace_back(*variable);
        }
    }
    // Drawings need a QGuiApplication for their fonts, and the child must not connect to a display.
    variables.emplace_back("QT_QPA_PLATFORM=offscreen");
    variables.emplace_back("QT_NO_GLIB=1"); // a simpler event loop does
    return variables;
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
    // The module lies beside the decoder. The program itself may lie elsewhere, as in tests.
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
    // `theirs` is closed here when the child has its copy. Else the end of the child would go
    // unnoticed.
    auto [ours, theirs] = MessageSocket::makePair();
    if (!ours.isOpen()) {
        return false;
    }
    // Out of the way of the numbers that descriptors get in the child.
    const scan::FileDescriptor channel(
        fcntl(theirs.number(), F_DUPFD_CLOEXEC, ChildProgram::channelNumber + 1));
    // Ctrl+C in a terminal is for this program alone, which then ends its decoders.
    const ChildProgram program{.words = {m_programPath},
                               .errors = isOpen(STDERR_FILENO) ? STDERR_FILENO : -1,
                               .channel = channel.number(),
                               .environment = m_environment,
                               .hasOwnGroup = true};
    if (const int error = program.start(m_process)) {
        m_process = -1;
        // A missing program would fail for each file, and fill the log.
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
    // One pair of sockets for each decoder, so the lock is held only until the task is sent.
    // Answers are waited for without it.
    const std::scoped_lock lock(m_mutex);
    // Whether the server still runs shows when something is sent to it.
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
