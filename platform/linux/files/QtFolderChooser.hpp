#pragma once

#include "platform/FolderChooser.hpp"

#include <QObject>
#include <QPointer>

#include <string>

namespace tessaly {

class FolderDialog;

/// Asks with a dialog of our own (FolderDialog), which never blocks on a folder. The dialogs of Qt
/// and of platform themes block the program when they list a folder with a dead server in it.
///
/// Requires: a QApplication.
class QtFolderChooser final : public FolderChooser {
public:
    /// `probe`: the program that looks at folders, see ProbeProcess; empty for the installed one.
    explicit QtFolderChooser(std::string probe = {});
    ~QtFolderChooser() override;
    Q_DISABLE_COPY_MOVE(QtFolderChooser)

    void chooseFolder(QWidget &window, const Request &request, Answer answer) override;

private:
    std::string m_probe;
    QPointer<FolderDialog> m_dialog; ///< the one that is open
    QObject m_context;               ///< of answers that are queued
};

} // namespace tessaly
