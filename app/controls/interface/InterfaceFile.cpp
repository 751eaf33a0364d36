#include "app/controls/interface/InterfaceFile.hpp"

#include "app/controls/bars/KORVENProgressBar.hpp"
#include "app/controls/buttons/KORVENButton.hpp"
#include "app/controls/buttons/KORVENButtonCell.hpp"
#include "app/controls/interface/InterfaceShortcuts.hpp"
#include "app/controls/tables/CellTableView.hpp"
#include "app/controls/tables/IconView.hpp"
#include "app/controls/text/NameLabel.hpp"
#include "app/controls/text/WrappingLabel.hpp"
#include "app/controls/text/WrappingRow.hpp"
#include "app/controls/theme/Separator.hpp"
#include "resources/Artwork.hpp"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QBuffer>
#include <QFile>
#include <QHash>
#include <QPointer>
#include <QUiLoader>

#include <cstdlib>
#include <optional>
#include <utility>

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

template <typename Widget>
InterfaceFile::Maker maker()
{
    return [](QWidget *parent) -> QWidget * { return new Widget(parent); };
}

QHash<QString, InterfaceFile::Maker> &makers()
{
    // By name and not by a Designer plugin: a plugin would have to be built and installed beside
    // the program.
    static QHash<QString, InterfaceFile::Maker> all{
        {u"KORVENButton"_s, maker<KORVENButton>()},
        {u"KORVENButtonCell"_s, maker<KORVENButtonCell>()},
        {u"KORVENProgressBar"_s, maker<KORVENProgressBar>()},
        {u"CellTableView"_s, maker<CellTableView>()},
        {u"IconView"_s, maker<IconView>()},
        {u"NameLabel"_s, maker<NameLabel>()},
        {u"Separator"_s, maker<Separator>()},
        {u"WrappingLabel"_s, maker<WrappingLabel>()},
        {u"WrappingRow"_s, maker<WrappingRow>()},
    };
    return all;
}

/// While one of these lives, Qt finds no plugins. QUiLoader would load all Designer plugins that
/// are installed, which takes longer than all the rest of loading.
class NoPlugins {
public:
    NoPlugins() { QCoreApplication::setLibraryPaths({}); }
    ~NoPlugins() { QCoreApplication::setLibraryPaths(m_paths); }
    Q_DISABLE_COPY_MOVE(NoPlugins)

private:
    QStringList m_paths = QCoreApplication::libraryPaths();
};

/// Makes our widgets by name and collects unknown names, for which QUiLoader silently
/// makes a widget of the base class.
class Loader final : public QUiLoader {
public:
    explicit Loader(QObject *parent) : QUiLoader(parent)
    {
        m_widgetsOfQt = availableWidgets();
        m_widgetsOfQt << u"QWidget"_s << u"Line"_s;
    }

    QWidget *createWidget(const QString &className, QWidget *parent, const QString &name) override
    {
        if (const auto made = makers().constFind(className); made != makers().constEnd()) {
            QWidget *widget = (*made)(parent);
            widget->setObjectName(name);
            return widget;
        }
        if (!m_widgetsOfQt.contains(className)) {
            m_unknown << className;
        }
        return QUiLoader::createWidget(className, parent, name);
    }

    QStringList takeUnknown() { return std::exchange(m_unknown, {}); }

private:
    QStringList m_widgetsOfQt;
    QStringList m_unknown;
};

/// One for the whole program: constructing it costs far more than loading a file.
Loader &loader()
{
    static QPointer<Loader> only;
    if (only.isNull()) {
        const NoPlugins noPlugins;
        only = new Loader(QCoreApplication::instance());
    }
    return *only;
}

struct Content {
    QByteArray bytes;
    InterfaceShortcuts shortcuts;
};

/// A cache, since a table loads the same file for each of its cells. Nothing for a file that cannot
/// be read.
std::optional<Content> contentOf(const QString &path)
{
    static QHash<QString, Content> kept;
    if (const auto found = kept.constFind(path); found != kept.constEnd()) {
        return *found;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    const QByteArray bytes = file.readAll();
    return *kept.insert(path, {bytes, InterfaceShortcuts(bytes)});
}

} // namespace

void InterfaceFile::registerMaker(const QString &className, const Maker &maker)
{
    makers().insert(className, maker);
}

InterfaceFile::Loaded InterfaceFile::load(QAnyStringView name, QWidget *parent)
{
    const QString path = interfacePath(name.toString());
    const auto failed = [&](const QString &why) { return Loaded{nullptr, path + u": "_s + why}; };

    std::optional<Content> content = contentOf(path);
    if (!content) {
        return failed(u"there is no such interface file"_s);
    }
    QBuffer buffer(&content->bytes);
    buffer.open(QIODevice::ReadOnly);
    Loaded loaded{std::unique_ptr<QWidget>(loader().load(&buffer, parent)), {}};
    const QStringList unknown = loader().takeUnknown();
    if (loaded.root == nullptr) {
        return failed(loader().errorString());
    }
    // QUiLoader would go on with a plain widget, and the mistake would show as a missing outlet
    // somewhere else.
    if (!unknown.isEmpty()) {
        return failed(u"no class is registered as "_s + unknown.join(u", "_s));
    }
    // Last: setting a text, as the loader does when it translates, takes the keys away from a
    // button.
    content->shortcuts.applyTo(*loaded.root);
    return loaded;
}

QStringList wireActions(QWidget &root, const QObject &context,
                        const std::vector<WiredAction> &actions)
{
    QStringList missing;
    for (const WiredAction &wired : actions) {
        const QString name = wired.name.toString();
        if (auto *button = findOutlet<QAbstractButton>(root, name); button != nullptr) {
            if (button->isCheckable()) {
                // Assistive technology changes the state without a click.
                QObject::connect(button, &QAbstractButton::toggled, &context, wired.run);
            } else {
                QObject::connect(button, &QAbstractButton::clicked, &context, wired.run);
            }
        } else if (auto *action = root.findChild<QAction *>(name); action != nullptr) {
            QObject::connect(action, &QAction::triggered, &context, wired.run);
        } else {
            missing << name;
        }
    }
    return missing;
}

void endForMissingOutlet(const QWidget &root, const char *className, const QString &name)
{
    qFatal("The interface of %s has no %s \"%s\"", qUtf8Printable(root.objectName()), className,
           qUtf8Printable(name));
    std::abort();
}

} // namespace tessaly
