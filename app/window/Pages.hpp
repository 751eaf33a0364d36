#pragma once

#include "app/screen/Screen.hpp"

#include <QCoreApplication>
#include <QString>

#include <cstddef>
#include <memory>
#include <vector>

namespace tessaly {

class KORVENDriveViewController;
class KORVENHistoryViewController;
class KORVENHomeViewController;
class KORVENScanViewController;
struct Services;

/// The pages of the main window: one screen each, in the order of the sidebar and of the menu,
/// which take them from here.
///
/// To add a page, beside its screen and its interface files: append it in Pages.cpp, and name the
/// files in resources/CMakeLists.txt. A screen in a layer of its own also needs an edge from the
/// window in cmake/Layers.cmake and app/window/CMakeLists.txt.
///
/// Ownership: owns the screens, and destroys them in their order. The history's is the last one:
///            the workers of the others may report to it until they end.
/// Threads:   the main thread.
class Pages final {
    Q_DECLARE_TR_FUNCTIONS(tessaly::Pages)

public:
    struct Page {
        std::unique_ptr<Screen> screen;
        QString cellIdentifier; ///< the interface file of its cell in the sidebar
        QString menuTitle;      ///< "&" marks the mnemonic in the menu

        [[nodiscard]] QString title() const { return QString(menuTitle).remove(u'&'); }
    };

    /// Makes the screens. `services` outlive this.
    explicit Pages(const Services &services);
    ~Pages();
    Q_DISABLE_COPY_MOVE(Pages)

    /// Has each screen set itself up. From then on its workers may call the window, which has to
    /// know the pages by then.
    void awakeFromNib();

    [[nodiscard]] const std::vector<Page> &all() const noexcept { return m_all; }
    /// Requires: there is such a page.
    [[nodiscard]] Screen &screen(int page) const
    {
        return *m_all.at(static_cast<std::size_t>(page)).screen;
    }

    // The screens for what only one of them does.
    [[nodiscard]] KORVENDriveViewController &drives() const noexcept { return *m_drives; }
    [[nodiscard]] KORVENHomeViewController &home() const noexcept { return *m_home; }
    [[nodiscard]] KORVENScanViewController &scan() const noexcept { return *m_scan; }
    [[nodiscard]] KORVENHistoryViewController &history() const noexcept { return *m_history; }

private:
    template <typename PageScreen>
    PageScreen *add(std::unique_ptr<PageScreen> screen, const QString &cellIdentifier,
                    const QString &menuTitle);

    std::vector<Page> m_all;
    // Of m_all.
    KORVENDriveViewController *m_drives = nullptr;
    KORVENHomeViewController *m_home = nullptr;
    KORVENScanViewController *m_scan = nullptr;
    KORVENHistoryViewController *m_history = nullptr;
};

} // namespace tessaly
