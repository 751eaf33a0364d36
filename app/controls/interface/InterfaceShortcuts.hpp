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
/// A button that is given a text takes its keys from there and forgets those that it had. Qt's
/// loader gives it the translated text last, after all that the file says; so the keys have to be
/// given once more.
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
