#pragma once

#include "platform/FolderChooser.hpp"

#include <QFileDialog>

#include <optional>
#include <string>

namespace tessaly {

/// The dialog behind QtFolderChooser: the desktop's own where there is one, or else Qt's, in which
/// a path or a "file:" URL may be typed.
class FolderDialog final : public QFileDialog {
    Q_OBJECT

public:
    FolderDialog(QWidget &window, const FolderChooser::Request &request);

    /// The folder that the user has confirmed; nothing when the desktop's dialog gave a place that
    /// has no path.
    [[nodiscard]] std::optional<std::string> chosenFolder() const;

protected:
    void showEvent(QShowEvent *event) override;
    void accept() override;

private Q_SLOTS:
    void letTypedFolderBeConfirmed();

private:
    [[nodiscard]] std::optional<std::string> typedFolder() const;

    std::optional<std::string> m_typedFolder; ///< once it is confirmed
};

} // namespace tessaly
