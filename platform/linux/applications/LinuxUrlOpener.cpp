#include "platform/linux/applications/LinuxUrlOpener.hpp"

#include "engine/tree/PrintableText.hpp"
#include "platform/ProgramIdentity.hpp"
#include "platform/linux/applications/DesktopEntries.hpp"

#include <QDesktopServices>
#include <QLoggingCategory>
#include <QRegularExpression>
#include <QString>
#include <QUrl>

#include <cstdlib>
#include <string>
#include <utility>

#include <unistd.h>

namespace tessaly {

namespace {

Q_LOGGING_CATEGORY(urlsLog, "tessaly.urls")

void logNotOpened(const std::string &url, const char *reason)
{
    qCWarning(urlsLog, "%s not opened: %s", tree::printableText(url).c_str(), reason);
}

bool isWebScheme(const QString &scheme)
{
    return scheme == QLatin1String("http") || scheme == QLatin1String("https");
}

/// The path of a link into the store ends in the program's number there, with or without "id".
bool isStoreLink(const QUrl &url)
{
    // Static, since an expression is compiled at its first use.
    static const QRegularExpression end(QStringLiteral("(^|/)(id)?[0-9]+/?$"));
    return url.scheme() == QLatin1String("macappstore") && end.match(url.path()).hasMatch();
}

/// In a sandbox the desktop chooses the program, from those that can not be seen from inside.
bool isSandboxed()
{
    // Both put these there in every sandbox of theirs.
    return access("/.flatpak-info", F_OK) == 0 || std::getenv("SNAP") != nullptr;
}

/// Whether something is installed that opens addresses of this scheme. For web pages that may also
/// be what the user or the system has named as the browser.
bool hasProgramFor(const QString &scheme, bool hasBrowserVariable, const DesktopPlaces &places)
{
    return isSandboxed() ||
           (isWebScheme(scheme) && (hasBrowserVariable || places.hasProgram("x-www-browser"))) ||
           DesktopEntries(places).defaultProgram("x-scheme-handler/" + scheme.toStdString());
}

} // namespace

LinuxUrlOpener::LinuxUrlOpener(Opener opener) : m_opener(std::move(opener)) {}

void LinuxUrlOpener::openUrl(std::string_view url)
{
    const auto opened = openedUrl(url);
    if (!opened) {
        logNotOpened(std::string(url), "not an address that this program opens");
        return;
    }
    // Qt answers true for schemes that nothing opens, so the desktop's files are asked first.
    lookForProgram(*opened, [this, text = std::string(url), url = *opened](bool canOpen) {
        if (!canOpen) {
            logNotOpened(text, "no program for such addresses is installed");
        } else if (!m_opener(url)) {
            logNotOpened(text, "the desktop refused");
        }
    });
}

void LinuxUrlOpener::canOpenUrl(std::string_view url, std::function<void(bool)> answer)
{
    if (const auto opened = openedUrl(url)) {
        lookForProgram(*opened, std::move(answer));
    } else {
        m_work.poster()([answer = std::move(answer)] { answer(false); }); // never at once
    }
}

/// Reads the desktop's files on another thread.
void LinuxUrlOpener::lookForProgram(const QUrl &url, std::function<void(bool)> answer) const
{
    // Read here, on the main thread: the environment may not be read on others.
    const bool hasBrowserVariable = !qEnvironmentVariableIsEmpty("BROWSER");
    BackgroundWork::start([scheme = url.scheme(), answer = std::move(answer), hasBrowserVariable,
                           post = m_work.poster(), places = DesktopPlaces::ofEnvironment()] {
        const bool canOpen = hasProgramFor(scheme, hasBrowserVariable, places);
        post([answer, canOpen] { answer(canOpen); });
    });
}

std::optional<QUrl> LinuxUrlOpener::openedUrl(std::string_view url)
{
    const QUrl asked = QUrl::fromEncoded(QByteArray(url.data(), static_cast<qsizetype>(url.size())),
                                         QUrl::StrictMode);
    if (!asked.isValid()) {
        return std::nullopt;
    }
    if (isStoreLink(asked)) {
        // Not "appstream://…": the case of what stands there would be lost.
        QUrl page;
        page.setScheme(QStringLiteral("appstream"));
        page.setPath(QLatin1String(programId));
        return page;
    }
    // A list of schemes and not all of them: "file:" or a scheme of some program could start
    // anything.
    const bool isOpened = isWebScheme(asked.scheme()) ? !asked.host().isEmpty()
                                                      : asked.scheme() == QLatin1String("mailto") &&
                                                            !asked.path().isEmpty();
    return isOpened ? std::optional(asked) : std::nullopt;
}

bool LinuxUrlOpener::openWithDesktop(const QUrl &url)
{
    return QDesktopServices::openUrl(url);
}

} // namespace tessaly
