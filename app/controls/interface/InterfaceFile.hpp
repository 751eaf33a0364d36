#pragma once

#include <QAnyStringView>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <memory>
#include <vector>

namespace tessaly {

/// The interface files: layouts that are drawn in Qt Designer and made at run time.
///
/// They lie in the resources, see interfacePath(). Widgets of our own classes are made by name once
/// their class is registered; the controls of this folder are so from the start.
///
/// Threads: the main thread, while there is a QApplication.
class InterfaceFile {
public:
    using Maker = std::function<QWidget *(QWidget *parent)>;

    /// The result of loading a file.
    struct Loaded {
        std::unique_ptr<QWidget> root; ///< its top widget; null after a failure
        QString error;                 ///< for the log; empty after a success
    };

    /// Lets interface files make widgets of this class. Replaces an earlier maker of it.
    static void registerMaker(const QString &className, const Maker &maker);

    /// registerWidget<KORVENFolderCellView>("KORVENFolderCellView"): made by the constructor that
    /// takes the parent.
    template <typename Widget>
    static void registerWidget(QAnyStringView className)
    {
        registerMaker(className.toString(),
                      [](QWidget *parent) -> QWidget * { return new Widget(parent); });
    }

    /// Makes the widgets of the file with this name ("KORVENFolderCell"). Fails for a file that is
    /// not there or not well formed, and for one with a class that is not registered.
    ///
    /// A parent owns the top widget as well: release() it, unless the parent outlives the result.
    [[nodiscard]] static Loaded load(QAnyStringView name, QWidget *parent = nullptr);
};

/// A control of an interface file and what it does.
struct WiredAction {
    QAnyStringView name; ///< the object name of a button or an action; not copied
    std::function<void()> run;
};

/// Makes each button (when clicked, or toggled if it is checkable) and each action (when triggered)
/// below `root` run its function, for as long as `context` lives. Returns the names that neither a
/// button nor an action has.
[[nodiscard]] QStringList wireActions(QWidget &root, const QObject &context,
                                      const std::vector<WiredAction> &actions);

/// The object with this name and type: `root` or one below it; nullptr if there is none.
template <typename Object>
[[nodiscard]] Object *findOutlet(QWidget &root, const QString &name)
{
    auto *found = root.objectName() == name ? qobject_cast<Object *>(&root) : nullptr;
    return found != nullptr ? found : root.findChild<Object *>(name);
}

/// Ends the program with a line that says which object is missing.
[[noreturn]] void endForMissingOutlet(const QWidget &root, const char *className,
                                      const QString &name);

/// The same for what has to be there: the program ends if it is not. Interface files are compiled
/// in, so that is a bug, which the test of the screen finds.
template <typename Object>
[[nodiscard]] Object &outlet(QWidget &root, QAnyStringView name)
{
    const QString text = name.toString();
    auto *found = findOutlet<Object>(root, text);
    if (found == nullptr) {
        endForMissingOutlet(root, Object::staticMetaObject.className(), text);
    }
    return *found;
}

} // namespace tessaly
