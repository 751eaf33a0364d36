#include "platform/linux/files/FolderLister.hpp"

#include "platform/linux/process/ProbeProcess.hpp"

#include <QPointer>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <utility>

#include <sys/socket.h>

namespace tessaly {

namespace {

constexpr int statusCountMax = 2;

} // namespace

FolderLister::FolderLister(std::string program, QObject *parent)
    : QObject(parent), m_program(std::move(program))
{
}

FolderLister::~FolderLister() = default;

void FolderLister::list(const std::string &path)
{
    // The child of the folder before may hang. It is killed, and its answers are not read.
    stop();
    // A process and not a thread: one that hangs in the kernel can be abandoned without holding up
    // our end.
    m_process = std::make_unique<ProbeProcess>(m_program, ProbeProcess::folders, path);
    m_notifier = std::make_unique<QSocketNotifier>(m_process->answer(), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &FolderLister::take);
}

void FolderLister::stop()
{
    if (m_notifier) {
        m_notifier->setEnabled(false);
        m_notifier.release()->deleteLater(); // this may run inside its own signal
    }
    m_process.reset();
    m_text.clear();
    m_statusCount = 0;
}

void FolderLister::take()
{
    std::array<char, 16384> piece; // NOLINT(cppcoreguidelines-pro-type-member-init): it is filled
    // One piece for each signal, so that a folder with a million entries does not block the events.
    const ssize_t count = recv(m_process->answer(), piece.data(), piece.size(), MSG_DONTWAIT);
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
        return;
    }
    if (count > 0) {
        m_text.append(piece.data(), static_cast<std::size_t>(count));
        takeWords();
        return;
    }
    // Without a first word the child was killed, or never started.
    const bool isAnswered = m_statusCount > 0;
    stop();
    if (isAnswered) {
        Q_EMIT finished();
    } else {
        Q_EMIT failed(EIO);
    }
}

/// Takes the words that are complete: two errno values, of opening and of reading the folder, then
/// names. A slot may call stop() or list(), after which nothing of this answer may be used.
void FolderLister::takeWords()
{
    const ProbeProcess *process = m_process.get();
    std::vector<std::string> names;
    for (std::size_t end = 0; (end = m_text.find('\0')) != std::string::npos;) {
        std::string word = m_text.substr(0, end);
        m_text.erase(0, end + 1);
        if (m_statusCount == statusCountMax) {
            names.push_back(std::move(word));
            continue;
        }
        ++m_statusCount;
        // The words come from our own probe, and anything that is not a number counts as no error.
        const int error = std::atoi(word.c_str());
        if (error != 0) {
            Q_EMIT failed(error);
        } else if (m_statusCount == 1) {
            Q_EMIT opened();
        }
        // A slot has called stop() or list().
        if (m_process.get() != process) {
            return;
        }
    }
    // All names of a piece in one signal: a signal for each would be slow with a million of them.
    if (!names.empty()) {
        Q_EMIT found(names);
    }
}

} // namespace tessaly
