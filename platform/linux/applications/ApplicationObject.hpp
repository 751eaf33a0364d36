#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

#include <functional>

namespace tessaly {

/// This program as others see it on the bus: the interface org.freedesktop.Application, as "D-Bus
/// Activation" of freedesktop.org's Desktop Entry 1.5 has it. Every
/// call shows its window: it opens no files and has no actions.
///
/// Threads: the main thread.
class ApplicationObject final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    /// `token`: what the desktop allows the window to come to the front with; empty for none.
    using Activated = std::function<void(const QByteArray &token)>;

    explicit ApplicationObject(Activated activated);

    /// What a start is told by its environment, as another instance wants to hear it. To be asked
    /// before there is a QApplication, which takes it out of there.
    [[nodiscard]] static QVariantMap platformDataOfThisStart();

public slots:
    // The methods of the interface, by its names.
    // NOLINTBEGIN(readability-identifier-naming)
    void Activate(const QVariantMap &platformData);
    void Open(const QStringList &uris, const QVariantMap &platformData);
    void ActivateAction(const QString &actionName, const QVariantList &parameter,
                        const QVariantMap &platformData);
    // NOLINTEND(readability-identifier-naming)

private:
    Activated m_activated;
};

} // namespace tessaly
