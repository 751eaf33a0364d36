#include "platform/linux/applications/ApplicationObject.hpp"

#include <utility>

namespace tessaly {

namespace {

// The same thing by the names of two protocols, and the variables that they come in.
const QString activationToken = QStringLiteral("activation-token");
const QString startupId = QStringLiteral("desktop-startup-id");
constexpr auto tokenVariable = "XDG_ACTIVATION_TOKEN";
constexpr auto startupIdVariable = "DESKTOP_STARTUP_ID";

} // namespace

ApplicationObject::ApplicationObject(Activated activated) : m_activated(std::move(activated)) {}

QVariantMap ApplicationObject::platformDataOfThisStart()
{
    QVariantMap data;
    for (const auto &[key, variable] :
         {std::pair(activationToken, tokenVariable), std::pair(startupId, startupIdVariable)}) {
        if (const QByteArray value = qgetenv(variable); !value.isEmpty()) {
            data[key] = QString::fromUtf8(value);
        }
    }
    return data;
}

void ApplicationObject::Activate(const QVariantMap &platformData)
{
    const QString token = platformData.value(activationToken).toString();
    // Wayland desktops send the token, X11 ones the id. Some send both, and then the token is the
    // newer protocol's.
    m_activated((token.isEmpty() ? platformData.value(startupId).toString() : token).toUtf8());
}

void ApplicationObject::Open(const QStringList & /*uris*/, const QVariantMap &platformData)
{
    // The interface has to be complete, or the desktop's call ends in an error.
    Activate(platformData);
}

void ApplicationObject::ActivateAction(const QString & /*actionName*/,
                                       const QVariantList & /*parameter*/,
                                       const QVariantMap &platformData)
{
    Activate(platformData);
}

} // namespace tessaly
