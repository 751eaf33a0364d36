#pragma once

#include <QMenu>

#include <array>
#include <functional>
#include <vector>

class QKeyEvent;

namespace tessaly {

/// The program's menu, which the button in the title bar opens.
///
/// It knows the actions, their titles and keys; who makes it connects them, and says which of them
/// can be used: each time that the menu is about to show and each time that a key is pressed.
///
/// Keys: the actions' keys are no shortcuts of the window, which would collide with those of the
///       screens' own buttons. The window hands on what its focus widget has no use for
///       (handleKey()).
/// Threads: the main thread.
class ApplicationMenu final : public QMenu {
    Q_OBJECT

public:
    enum class Item {
        scanFolder,
        scanHome,
        refreshDrives,
        back,
        sort,
        quickLook,
        showInFileManager,
        showInfo,
        goToDrives,
        goToHome,
        goToScan,
        goToHistory,
        chooseHomeFolder,
        removeHomeFolder,
        preferences,
        fullScreen,
        diskUtility,
        fileManager,
        systemSettings,
        webHelp,
        website,
        support,
        storePage,
        facebook,
        twitter,
        google,
        about,
        quit,
        count
    };

    /// What of what the window shows can be acted upon.
    struct State {
        /// Nothing below can be used while a sheet is in front of it.
        bool isBlocked = false;
        bool isFolderScanRunning = false;
        bool isHomeScanRunning = false;
        bool canGoBack = false;
        bool canSort = false;
        bool hasSelectedRow = false;
        bool canQuickLook = false; ///< the row is a file's
    };
    using StateReader = std::function<State()>;

    /// `leftOut`: what the menu does not offer. Their actions exist, but cannot be used.
    explicit ApplicationMenu(StateReader readState, std::vector<Item> leftOut = {},
                             QWidget *parent = nullptr);

    [[nodiscard]] QAction &action(Item item) const
    {
        return *m_actions.at(static_cast<std::size_t>(item));
    }

    /// Brings the actions up to the state as it is now.
    void update();

    /// Triggers the action that has this key and can be used now. Whether there is one.
    bool handleKey(const QKeyEvent &event);

private:
    QAction *add(QMenu &menu, Item item, const QString &title, const QKeySequence &key = {});
    void addScreenItems();
    void addWindowItems();
    void addHelpItems();

    StateReader m_readState;
    std::vector<Item> m_leftOut;
    std::array<QAction *, static_cast<std::size_t>(Item::count)> m_actions{};
};

} // namespace tessaly
