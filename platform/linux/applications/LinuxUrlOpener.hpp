#pragma once

#include "platform/UrlOpener.hpp"
#include "platform/background/BackgroundWork.hpp"

#include <functional>
#include <optional>

class QUrl;

namespace tessaly {

/// Opens addresses with the desktop's default programs: "http:" and "https:" in the browser,
/// "mailto:" in the mail program, and "macappstore:" links, which end in the program's number in
/// that store, as our own page in the software centre ("appstream:" and the program's id).
///
/// Requires: a QGuiApplication and its event loop.
/// Errors:   go to the log "tessaly.urls": what is no such address, and what nothing is installed
///           for, is not handed to the desktop.
class LinuxUrlOpener final : public UrlOpener {
public:
    /// Hands an address to the desktop; false when that failed.
    using Opener = std::function<bool(const QUrl &url)>;

    explicit LinuxUrlOpener(Opener opener = openWithDesktop);

    void openUrl(std::string_view url) override;
    void canOpenUrl(std::string_view url, std::function<void(bool)> answer) override;

    /// What is opened for an address; nothing when it is none of the above.
    [[nodiscard]] static std::optional<QUrl> openedUrl(std::string_view url);

    static bool openWithDesktop(const QUrl &url);

private:
    void lookForProgram(const QUrl &url, std::function<void(bool)> answer) const;

    Opener m_opener;
    BackgroundWork m_work; ///< destroyed first: nothing calls this object after that
};

} // namespace tessaly
