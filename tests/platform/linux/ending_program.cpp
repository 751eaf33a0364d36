// A program that ends in the way that its first argument names, for tests of how programs end. It
// says on descriptor 3 how far it has come.

#include "app/delegate/KORVENAppDelegate.hpp"
#include "app/window/GuardedApplication.hpp"
#include "app/window/ShutdownWatchdog.hpp"
#include "platform/background/ChildProgram.hpp"
#include "platform/linux/files/QtFolderChooser.hpp"
#include "platform/linux/process/CrashLog.hpp"
#include "platform/linux/process/ProgramLog.hpp"
#include "platform/linux/process/SingleInstance.hpp"
#include "platform/linux/process/TerminationSignals.hpp"
#include "platform/linux/storage/LinuxSettingsStore.hpp"
#include "tests/fakes/FakeServices.hpp"
#include "tests/history/records/OwnHistoryStore.hpp"

#include <QLoggingCategory>
#include <QMetaObject>
#include <QStringList>
#include <QWidget>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tessaly {
namespace {

Q_LOGGING_CATEGORY(sampleLog, "tessaly.sample")
Q_LOGGING_CATEGORY(screensLog, "tessaly.screens")
Q_LOGGING_CATEGORY(rowsOfDrivesLog, "tessaly.drives")

constexpr std::size_t pageSize = 4096;

void report(const std::string &line)
{
    const std::string text = line + '\n';
    (void)!write(3, text.data(), text.size());
}

/// Writes to memory that is mapped to this file, or to none, and may not be written.
void writeToPage(int file, int protection)
{
    void *page = mmap(nullptr, pageSize, protection,
                      file < 0 ? MAP_PRIVATE | MAP_ANONYMOUS : MAP_SHARED, file, 0);
    *static_cast<volatile char *>(page) = 1;
}

/// Fills the stack, page by page.
int nest(long pageCount) // NOLINT(misc-no-recursion)
{
    volatile char page[pageSize] = {};
    page[0] = 1;
    return pageCount == 0 ? 0 : nest(pageCount - 1) + page[0];
}

int fillTheStack(const std::string & /*argument*/)
{
    constexpr rlim_t stackSize = rlim_t{8} << 20U;
    rlimit limit = {};
    getrlimit(RLIMIT_STACK, &limit);
    limit.rlim_cur = stackSize;
    setrlimit(RLIMIT_STACK, &limit);
    return nest(stackSize / pageSize + 1);
}

/// Settings and history as they are when something goes wrong: some flushed, some not.
void writeFiles(const std::string &folder)
{
    LinuxSettingsStore settings(folder + "/settings.plist");
    settings.setInteger("flushed", 1);
    settings.flush();
    settings.setInteger("not flushed", 1);
    FakeServices services(folder);
    KORVENAppDelegate delegate(services.all());
    const auto history = OwnHistoryStore::open(delegate);
    const auto record = std::make_shared<KORVENHistoryItem>("a", "b");
    record->setScanKey("saved");
    history->addItem(record);
    history->saveChanges();
    history->addItem(std::make_shared<KORVENHistoryItem>("not", "saved"));
    raise(SIGSEGV);
}

int runUntilAsked(const std::string &folder)
{
    LinuxSettingsStore settings(folder + "/settings.plist");
    const TerminationSignals terminationSignals;
    settings.setInteger("kept", 1);
    report("ready");
    return QCoreApplication::exec(); // the settings are flushed when they go
}

int beSlowToEnd(const std::string & /*argument*/)
{
    const TerminationSignals terminationSignals;
    report("ready");
    QCoreApplication::exec();
    report("ending");
    for (;;) {
        pause();
    }
}

int hangAtEnd(const std::string &timeout)
{
    const ShutdownWatchdog watch(std::chrono::milliseconds(std::stoi(timeout)), 3, [] {});
    report("ending");
    for (;;) {
        pause();
    }
}

int endWhileWatched(const std::string &timeout)
{
    const ShutdownWatchdog watch(std::chrono::milliseconds(std::stoi(timeout)), 3, [] {});
    return 5;
}

int tellWhetherHangupIsIgnored(const std::string & /*argument*/)
{
    std::signal(SIGHUP, SIG_IGN);
    const TerminationSignals terminationSignals;
    struct sigaction action = {};
    sigaction(SIGHUP, nullptr, &action);
    return action.sa_handler == SIG_IGN ? 0 : 1;
}

int log(const std::string &text)
{
    qCWarning(sampleLog).noquote() << QString::fromStdString(text);
    qCInfo(sampleLog) << "some information";
    qCDebug(sampleLog) << "a detail";
    qCInfo(screensLog, "name: a row");
    qCInfo(rowsOfDrivesLog, "name: a drive");
    qWarning("of no category");
    qDebug("nor this");
    return 0;
}

int logToNobody(const std::string & /*argument*/)
{
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0 || dup2(ends[1], STDERR_FILENO) < 0) {
        return 1;
    }
    close(ends[0]);
    qWarning("nobody hears");
    return 0;
}

int throwInEvent(const std::string & /*argument*/)
{
    QMetaObject::invokeMethod(
        qApp, [] { throw std::runtime_error("in an event"); }, Qt::QueuedConnection);
    return QCoreApplication::exec();
}

/// "FOLDER" or "FOLDER:MILLISECONDS:MILLISECONDS", how long to wait for the bus and for the first
/// instance.
int claim(const std::string &argument)
{
    const QStringList parts = QString::fromStdString(argument).split(u':');
    SingleInstance::Timeouts timeouts;
    if (parts.size() > 2) {
        timeouts.bus = std::chrono::milliseconds(parts.at(1).toInt());
        timeouts.claim = std::chrono::milliseconds(parts.at(2).toInt());
    }
    SingleInstance instance(parts.first().toStdString(),
                            ApplicationObject::platformDataOfThisStart(), timeouts);
    if (instance.claim() != SingleInstance::Outcome::first) {
        return instance.endSecondStart([](const QString &text) { report(text.toStdString()); });
    }
    const TerminationSignals terminationSignals;
    instance.setActivated(
        [] { report("activated " + qgetenv("XDG_ACTIVATION_TOKEN").toStdString()); });
    report("first");
    return QCoreApplication::exec();
}

/// "FOLDER:MOUNT:END". Claims, gets a thread stuck in the mount, and when it is asked to end does
/// so by ShutdownWatchdog ("watch") or by itself ("return").
int getStuck(const std::string &argument)
{
    const QStringList parts = QString::fromStdString(argument).split(u':');
    const std::string mount = parts.at(1).toStdString();
    SingleInstance instance(parts.at(0).toStdString(), {});
    if (instance.claim() != SingleInstance::Outcome::first) {
        return 1;
    }
    const TerminationSignals terminationSignals;
    std::thread stuck([mount] {
        struct stat status = {};
        stat(mount.c_str(), &status);
    });
    report("first");
    QCoreApplication::exec();
    report("ending");
    if (parts.at(2) == QStringLiteral("return")) {
        stuck.detach();
        return 0;
    }
    const ShutdownWatchdog watch(std::chrono::milliseconds(1), 0,
                                 [&instance] { instance.release(); });
    stuck.join();
    return 0;
}

/// "FOLDER": claims when nearly all of its time is over.
int claimLate(const std::string &folder)
{
    SingleInstance::Timeouts timeouts;
    timeouts.claim = std::chrono::hours(1);
    const auto late = [start = std::optional<SingleInstance::Clock::time_point>()]() mutable {
        constexpr std::chrono::milliseconds timeLeft(300);
        const auto now = SingleInstance::Clock::now();
        return start ? now + std::chrono::hours(1) - timeLeft : *(start = now);
    };
    SingleInstance instance(folder, {}, timeouts, late);
    if (instance.claim() == SingleInstance::Outcome::first) {
        return 1;
    }
    return instance.endSecondStart([](const QString &text) { report(text.toStdString()); });
}

/// "VARIABLE": has a child report its value, after it and PATH have been changed here.
int startChildLater(const std::string &variable)
{
    keepEnvironmentForChildren();
    qputenv(variable.c_str(), "changed");
    qputenv("PATH", "/nowhere");
    constexpr int reportNumber = 3;
    pid_t process = 0;
    const ChildProgram program{
        .words = {"printenv", variable}, .output = reportNumber, .errors = STDERR_FILENO};
    const int error = program.start(process);
    if (error != 0) {
        return error;
    }
    int status = 0;
    waitpid(process, &status, 0);
    return status;
}

int withStatus(const std::function<void()> &body)
{
    body();
    return 0;
}

using Way = std::function<int(const std::string &)>;

/// Asks for a folder, starting with this one, until it is asked to end.
int chooseFolder(const std::string &folder)
{
    const TerminationSignals terminationSignals;
    QWidget window;
    window.show();
    QtFolderChooser chooser(TESSALY_PROBE);
    chooser.chooseFolder(window, {folder, "Scan"}, [](const auto & /*answer*/) {});
    report("asked");
    return QApplication::exec();
}

const std::map<std::string, Way> ways = {
    {"segv", [](auto &) { return withStatus([] { writeToPage(-1, PROT_NONE); }); }},
    {"bus",
     [](auto &) {
         return withStatus(
             [] { writeToPage(memfd_create("empty", MFD_CLOEXEC), PROT_READ | PROT_WRITE); });
     }},
    {"overflow", fillTheStack},
    {"raise", [](auto &number) { return withStatus([&] { raise(std::stoi(number)); }); }},
    {"abort", [](auto &) { return withStatus([] { std::abort(); }); }},
    {"throw", [](auto &text) { return withStatus([&] { throw std::runtime_error(text); }); }},
    {"throw-number", [](auto &) { return withStatus([] { throw 1; }); }},
    {"throw-in-event", throwInEvent},
    {"files", [](auto &folder) { return withStatus([&] { writeFiles(folder); }); }},
    {"run", runUntilAsked},
    {"slow", beSlowToEnd},
    {"hang-at-end", hangAtEnd},
    {"end-while-watched", endWhileWatched},
    {"hangup", tellWhetherHangupIsIgnored},
    {"log", log},
    {"log-to-nobody", logToNobody},
    {"claim", claim},
    {"claim-late", claimLate},
    {"get-stuck", getStuck},
    {"choose-folder", chooseFolder},
    {"start-child-later", startChildLater},
};

} // namespace
} // namespace tessaly

int main(int argumentCount, char **arguments)
{
    using namespace tessaly;
    const rlimit noCore = {};
    setrlimit(RLIMIT_CORE, &noCore);
    // Sanitizers watch some of these signals themselves.
    for (const int number : {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT}) {
        std::signal(number, SIG_DFL);
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    ProgramLog::install();
    CrashLog::install("sample", "1.2");
    const GuardedApplication application(argumentCount, arguments);
    return ways.at(arguments[1])(argumentCount > 2 ? arguments[2] : "");
}
