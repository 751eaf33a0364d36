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
/// It holds the actions, their titles and keys. MenuCommands connects them, and is asked which of
/// them are enabled each time the menu is about to show and each time a key is pressed.
///
/// Keys: the actions' keys are no shortcuts of the window, which would collide with those of the
///       screens' own buttons. The window passes on the keys that its focus widget ignores
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

    /// What decides which items are enabled.
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

    /// Enables and disables the actions by the current state.
    void update();

    /// Triggers the enabled action with this key. Returns whether there is one.
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
