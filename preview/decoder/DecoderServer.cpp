#include "preview/decoder/DecoderServer.hpp"

#include "preview/decoder/Decoder.hpp"
#include "preview/decoder/PdfReader.hpp"
#include "preview/decoder/Sandbox.hpp"
#include "preview/protocol/DecoderMessages.hpp"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>

#include <algorithm>
#include <array>
#include <csignal>
#include <utility>

#include <fcntl.h>
#include <malloc.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/signalfd.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tessaly {

namespace {

/// After this time without a request, libraries for further files are loaded.
constexpr int idleMs = 300;

sigset_t childSignal()
{
    sigset_t signalSet;
    sigemptyset(&signalSet);
    sigaddset(&signalSet, SIGCHLD);
    return signalSet;
}

/// Drops what libraries print about a file.
void silence()
{
    // A file could fill the log by its errors.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    const scan::FileDescriptor nothing(open("/dev/null", O_WRONLY | O_CLOEXEC));
    if (nothing.isOpen()) {
        dup2(nothing.number(), STDOUT_FILENO);
        dup2(nothing.number(), STDERR_FILENO);
    }
}

} // namespace

DecoderServer::DecoderServer(MessageSocket socket) : m_socket(std::move(socket))
{
    // glibc reserves 64 MB of address space for each arena, and address space is limited.
    mallopt(M_ARENA_MAX, 1);
    // Here already, since a limit is passed on to the decoders by fork().
    Sandbox::limitMemory();
    m_sandbox.emplace();
    const sigset_t signalSet = childSignal();
    // Blocked, or the default action would drop the signal before signalfd() can report it.
    sigprocmask(SIG_BLOCK, &signalSet, nullptr);
    m_childSignals = scan::FileDescriptor(signalfd(-1, &signalSet, SFD_CLOEXEC | SFD_NONBLOCK));
}

DecoderServer::~DecoderServer()
{
    for (const Child &child : m_children) {
        kill(child.process, SIGKILL);
        // Does not block for long: after SIGKILL a process ends.
        waitpid(child.process, nullptr, 0);
    }
}

void DecoderServer::run()
{
    // The list is built for each round, as children come and end.
    for (;;) {
        std::vector<pollfd> watched{{m_socket.number(), POLLIN, 0},
                                    {m_childSignals.number(), POLLIN, 0}};
        for (const Child &child : m_children) {
            // Only the hang-up: the messages are for the decoder, which reads from the same socket.
            watched.push_back({child.socket.number(), POLLRDHUP, 0});
        }
        // The time limit is when the next library is loaded ahead.
        const int ready = poll(watched.data(), watched.size(), msUntilLoading());
        if (ready == 0) {
            loadMore();
        }
        for (std::size_t i = 0; i < m_children.size(); ++i) {
            if (watched[i + 2].revents != 0) {
                // It is removed once SIGCHLD tells that it has ended, so its number cannot be used
                // for another process before.
                kill(m_children[i].process, SIGKILL);
            }
        }
        if (watched[1].revents != 0) {
            // After the kills: the indexes above are those of the polled list.
            removeEndedChildren();
        }
        if (watched[0].revents != 0 && !takeTask()) {
            return;
        }
    }
}

bool DecoderServer::takeTask()
{
    std::vector<scan::FileDescriptor> descriptors;
    const auto task = m_socket.receive<DecoderTask>(&descriptors);
    if (!task || descriptors.size() != 2) {
        return false;
    }
    switch (task->content) {
    case DecoderTask::Content::drawing:
        // Before the fork, not in the decoder: what is loaded here is shared by all decoders.
        loadFonts();
        loadImageFormats(); // for images inside
        break;
    case DecoderTask::Content::document:
        loadDocuments();
        break;
    case DecoderTask::Content::image:
        loadImageFormats();
        break;
    }
    m_hasStarted = true;
    startDecoder(std::move(descriptors[0]), MessageSocket(std::move(descriptors[1])));
    return true;
}

void DecoderServer::startDecoder(scan::FileDescriptor file, MessageSocket socket)
{
    const pid_t server = getpid();
    // Without exec(), so that the decoder has all loaded libraries at once.
    const pid_t process = fork();
    if (process == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        // The signal only comes for a parent that ends after prctl().
        if (getppid() != server) {
            _exit(0); // the server has been killed before
        }
        becomeDecoder(std::move(file), std::move(socket));
    }
    if (process > 0) {
        m_children.push_back({process, std::move(socket)});
    }
    // Without a process the program finds its socket closed.
}

void DecoderServer::becomeDecoder(scan::FileDescriptor file, MessageSocket socket)
{
    // A decoder that a file has taken over must not reach the server or other decoders.
    m_socket.close();
    m_childSignals.close();
    for (Child &child : m_children) {
        child.socket.close();
    }
    const sigset_t signalSet = childSignal();
    sigprocmask(SIG_UNBLOCK, &signalSet, nullptr);
    silence();
    // Last, since opening /dev/null is forbidden from then on.
    m_sandbox->enter();
    {
        Decoder decoder(std::move(file), std::move(socket));
        decoder.run();
    }
    _exit(0); // without destructors: the server's objects are copies here
}

void DecoderServer::removeEndedChildren()
{
    std::array<signalfd_siginfo, 16> told{};
    while (read(m_childSignals.number(), told.data(), sizeof told) > 0) {}
    // Signals of one kind are merged while they are pending, so every child is checked.
    m_children.erase(std::remove_if(m_children.begin(), m_children.end(),
                                    [](const Child &child) {
                                        return waitpid(child.process, nullptr, WNOHANG) ==
                                               child.process;
                                    }),
                     m_children.end());
}

void DecoderServer::loadFonts()
{
    if (m_application) {
        return;
    }
    // Static: QGuiApplication keeps references to both.
    static int argumentCount = 1;
    static std::array<char, 16> name{"preview-decoder"};
    static std::array<char *, 2> arguments{name.data(), nullptr};
    m_application = std::make_unique<QGuiApplication>(argumentCount, arguments.data());
    // Measuring a letter makes Qt read the font database now, and not in each decoder.
    static_cast<void>(QFontMetrics(QGuiApplication::font()).horizontalAdvance(u'a'));
}

void DecoderServer::loadImageFormats()
{
    if (!std::exchange(m_hasImageFormats, true)) {
        QImageReader::supportedImageFormats(); // loads the plugins
    }
}

void DecoderServer::loadDocuments()
{
    if (m_document) {
        return;
    }
    // A word in a font that is not among the library's own makes it look for the system's.
    m_sample.setData("%PDF-1.4\n"
                     "1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj\n"
                     "2 0 obj<</Type/Pages/Kids[3 0 R]/Count 1>>endobj\n"
                     "3 0 obj<</Type/Page/Parent 2 0 R/MediaBox[0 0 9 9]/Contents 4 0 R"
                     "/Resources<</Font<</F 5 0 R>>>>>>endobj\n"
                     "4 0 obj<</Length 21>>stream\nBT /F 9 Tf (a) Tj ET\n\nendstream endobj\n"
                     "5 0 obj<</Type/Font/Subtype/TrueType/BaseFont/Sans>>endobj\n"
                     "trailer<</Size 6/Root 1 0 R>>\n%%EOF");
    m_sample.open(QIODevice::ReadOnly);
    m_document = std::make_unique<PdfReader>();
    m_document->open(m_sample);
    QImage paper(9, 9, QImage::Format_RGB32);
    // Drawn, since the library looks for fonts only when it needs one.
    m_document->drawPage(0, paper);
}

int DecoderServer::msUntilLoading() const
{
    // The program creates its window before it asks for the first file. In that time the cheapest
    // library can be loaded; more would delay the file.
    if (!m_document) {
        return m_hasStarted ? idleMs : 0;
    }
    return m_hasImageFormats && m_application ? -1 : idleMs;
}

void DecoderServer::loadMore()
{
    if (!m_document) {
        loadDocuments();
    } else if (!m_hasImageFormats) {
        loadImageFormats();
    } else {
        loadFonts();
    }
}

} // namespace tessaly
