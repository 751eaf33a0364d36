#pragma once

#include <QByteArray>
#include <QKeySequence>
#include <QString>

#include <utility>
#include <vector>

class QWidget;

namespace tessaly {

/// The keys that an interface file gives to its buttons.
///
/// QAbstractButton::setText() replaces the shortcut by the one that the text names, if any.
/// QUiLoader sets the translated text last, after all properties; so the shortcuts have to be set
/// once more.
class InterfaceShortcuts final {
public:
    InterfaceShortcuts() = default;
    /// Finds those in the content of a file; none in what is not well formed.
    explicit InterfaceShortcuts(const QByteArray &file);

    /// Gives the buttons below `root`, or `root` itself, the keys that the file names.
    void applyTo(QWidget &root) const;

private:
    std::vector<std::pair<QString, QKeySequence>> m_keys; ///< by the button's object name
};

} // namespace tessaly
