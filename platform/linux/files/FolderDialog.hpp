#pragma once

#include "platform/FolderChooser.hpp"
#include "platform/linux/files/FolderLister.hpp"

#include <QByteArray>
#include <QDialog>

#include <optional>
#include <string>
#include <vector>

class QCheckBox;
class QDialogButtonBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QListWidgetItem;

namespace tessaly {

/// The dialog behind QtFolderChooser: places to start from, the folders of one folder, and a line
/// in which a path or a "file:" URL may be typed.
///
/// Nothing here accesses the file system itself, so nothing hangs on a server that is gone:
/// FolderLister lists folders, and finds out whether a path is one before it is chosen. While a
/// folder does not answer, the user can open another one or cancel.
///
/// Names: bytes. Those that are not valid UTF-8 are shown as archives write them (EscapedName).
class FolderDialog final : public QDialog {
    Q_OBJECT

public:
    /// `probe`: the program that looks at folders, see ProbeProcess.
    FolderDialog(QWidget &window, const FolderChooser::Request &request, const std::string &probe);
    ~FolderDialog() override;
    Q_DISABLE_COPY_MOVE(FolderDialog)

    /// The folder that is listed, or is being read.
    [[nodiscard]] const std::string &currentFolder() const noexcept { return m_folder; }

    /// The folder that the user has confirmed: a clean path. Nothing before that.
    [[nodiscard]] const std::optional<std::string> &chosenFolder() const noexcept
    {
        return m_chosen;
    }

    /// Confirms the path that is typed, or else the folder that is shown, once it is known to be
    /// one.
    void accept() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void makeWidgets(const std::string &confirmTitle);
    void makePlaces();
    void connectListers();
    void showFolder(const std::string &path);
    void goUp();
    void enter(const QListWidgetItem *item);
    void addFolders(const std::vector<std::string> &names);
    void endReading();
    void showHiddenFolders(bool areShown);
    void takeFailure(int error);
    void takeCheckFailure(int error);
    void showPath(const std::string &path);
    [[nodiscard]] std::string typedPath() const;

    FolderLister m_lister;
    FolderLister m_check; ///< finds out whether the path to be chosen is a folder
    std::string m_folder;
    std::string m_checked;    ///< the path that m_check looks at
    std::string m_shownPath;  ///< what the line shows, unless the user has changed it
    bool m_isStarting = true; ///< until a folder was found to start in
    bool m_isThere = false;   ///< the current folder is one
    bool m_isReading = false; ///< and the message says so
    std::optional<std::string> m_chosen;

    // The dialog owns them.
    QListWidget *m_places = nullptr;
    QListWidget *m_folders = nullptr;
    QLabel *m_message = nullptr;
    QLineEdit *m_path = nullptr;
    QCheckBox *m_showHidden = nullptr;
    QDialogButtonBox *m_buttons = nullptr;
};

} // namespace tessaly
