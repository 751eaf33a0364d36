#pragma once

#include "platform/FolderChooser.hpp"

#include <QObject>
#include <QPointer>

namespace tessaly {

class FolderDialog;

/// Asks with the desktop's own folder dialog where its platform theme has one, or else with Qt's.
///
/// Folders whose names are not valid UTF-8: Qt's dialog lists none of them, and cannot start in
/// one. The user reaches them by typing a "file:" URL, in which any byte can be written ("%FF").
/// The desktop's dialog gives them as the desktop does; where it hands Qt a text and not a URL,
/// they are not found.
///
/// Requires: a QApplication.
class QtFolderChooser final : public FolderChooser {
public:
    QtFolderChooser() = default;
    ~QtFolderChooser() override;
    QtFolderChooser(const QtFolderChooser &) = delete;
    QtFolderChooser &operator=(const QtFolderChooser &) = delete;
    QtFolderChooser(QtFolderChooser &&) = delete;
    QtFolderChooser &operator=(QtFolderChooser &&) = delete;

    void chooseFolder(QWidget &window, const Request &request, Answer answer) override;

private:
    QPointer<FolderDialog> m_dialog; ///< the one that is open
    QObject m_context;               ///< what waits for the event loop ends with it
};

} // namespace tessaly
