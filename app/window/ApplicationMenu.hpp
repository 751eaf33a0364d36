#pragma once

#include <QList>
#include <QMenu>
#include <QStringList>

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

    /// `pageTitles`: of the pages that the user can go to, with their mnemonics.
    /// `leftOut`: what the menu does not offer. Their actions exist, but cannot be used.
    ApplicationMenu(StateReader readState, const QStringList &pageTitles,
                    std::vector<Item> leftOut = {}, QWidget *parent = nullptr);

    [[nodiscard]] QAction &action(Item item) const
    {
        return *m_actions.at(static_cast<std::size_t>(item));
    }

    /// Goes to a page. Its key is Ctrl and the page's number, from 1.
    [[nodiscard]] QAction &pageAction(int page) const { return *m_pageActions.at(page); }

    /// Brings the actions up to the state as it is now.
    void update();

    /// Triggers the action that has this key and can be used now. Whether there is one.
    bool handleKey(const QKeyEvent &event);

private:
    QAction *add(QMenu &menu, const QString &title, const QKeySequence &key);
    QAction *add(QMenu &menu, Item item, const QString &title, const QKeySequence &key = {});
    void addScreenItems(const QStringList &pageTitles);
    void addWindowItems();
    void addHelpItems();

    StateReader m_readState;
    std::vector<Item> m_leftOut;
    std::array<QAction *, static_cast<std::size_t>(Item::count)> m_actions{};
    QList<QAction *> m_pageActions;
};

} // namespace tessaly
