#include "platform/linux/notifications/NotificationSender.hpp"

#include "platform/ProgramIdentity.hpp"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QLoggingCategory>
#include <QStringList>
#include <QVariantMap>

#include <utility>

namespace tessaly {

namespace {

// Who we are to the service; programId is the name of our icon and of our desktop file.
constexpr auto applicationName = "Tessaly";

// The service's bus name is also that of its interface.
constexpr auto service = "org.freedesktop.Notifications";
constexpr auto servicePath = "/org/freedesktop/Notifications";

constexpr auto bus = "org.freedesktop.DBus";
constexpr auto busPath = "/org/freedesktop/DBus";

// What the bus is to pass on to us.
constexpr auto closedSignals =
    "type='signal',interface='org.freedesktop.Notifications',member='NotificationClosed'";
constexpr auto ownerSignals = "type='signal',sender='org.freedesktop.DBus',"
                              "member='NameOwnerChanged',arg0='org.freedesktop.Notifications'";

// Sounds by the names that sound themes have for them.
constexpr auto messageSound = "message-new-instant";
constexpr auto completeSound = "complete";

constexpr int timeoutOfService = -1;

Q_LOGGING_CATEGORY(notifierLog, "tessaly.notifier", QtInfoMsg)

/// The bus carries valid UTF-8 without NUL only.
QString textForBus(const std::string &text)
{
    return QString::fromStdString(text).remove(QChar(u'\0'));
}

QString escaped(QString text)
{
    text.replace(QLatin1Char('&'), QLatin1String("&amp;"));
    text.replace(QLatin1Char('<'), QLatin1String("&lt;"));
    text.replace(QLatin1Char('>'), QLatin1String("&gt;"));
    return text;
}

QVariantMap hintsFor(Notification::Sound sound)
{
    QVariantMap hints = {{QStringLiteral("desktop-entry"), QLatin1String(programId)}};
    if (sound == Notification::Sound::silent) {
        hints[QStringLiteral("suppress-sound")] = true;
    } else {
        hints[QStringLiteral("sound-name")] =
            QLatin1String(sound == Notification::Sound::complete ? completeSound : messageSound);
    }
    return hints;
}

QDBusMessage callOfService(const char *method)
{
    return QDBusMessage::createMethodCall(QLatin1String(service), QLatin1String(servicePath),
                                          QLatin1String(service), QLatin1String(method));
}

} // namespace

NotificationSender::NotificationSender(std::string busAddress)
    : m_link(std::move(busAddress), QStringLiteral("notifier"), this)
{
}

NotificationSender::~NotificationSender() = default;

void NotificationSender::post(const Notification &notification)
{
    m_waiting.push_back(notification);
    if (!m_isSending) {
        sendNext();
    }
}

void NotificationSender::forgetNotification(unsigned id)
{
    std::erase_if(m_shown, [id](const auto &shown) { return shown.second == id; });
}

void NotificationSender::forgetService()
{
    m_shown.clear();
    m_hasMarkup.reset();
}

/// Goes on with sendFirst() when there is a bus that takes connections. It may take long to say so.
void NotificationSender::lookForBus()
{
    m_link.open([this](const QString &problem) {
        if (problem.isEmpty()) {
            listenToBus();
            sendFirst();
        } else {
            dropWaiting(problem);
        }
    });
}

void NotificationSender::listenToBus()
{
    forgetService();
    QDBusConnection &connection = m_link.bus();
    connection.connect(QString(), QLatin1String(servicePath), QLatin1String(service),
                       QStringLiteral("NotificationClosed"), this, SLOT(forgetNotification(uint)));
    connection.connect(QString(), QLatin1String(busPath), QLatin1String(bus),
                       QStringLiteral("NameOwnerChanged"), this, SLOT(forgetService()));
    // The bus does these in turn, before what comes after; nothing depends on its answers.
    connection.asyncCall(BusLink::callOfBus("AddMatch", {QLatin1String(closedSignals)}));
    connection.asyncCall(BusLink::callOfBus("AddMatch", {QLatin1String(ownerSignals)}));
}

/// There is no bus for any of them.
void NotificationSender::dropWaiting(const QString &reason)
{
    m_waiting.clear();
    m_isSending = false;
    m_isSecondTry = false;
    qCDebug(notifierLog) << "no session bus:" << reason;
}

void NotificationSender::sendNext()
{
    m_isSending = !m_waiting.empty();
    if (!m_isSending) {
        return;
    }
    if (m_link.isOpen()) {
        sendFirst();
    } else {
        lookForBus();
    }
}

void NotificationSender::sendFirst()
{
    if (m_hasMarkup) {
        notify();
    } else {
        askForMarkup();
    }
}

void NotificationSender::askForMarkup()
{
    auto *call =
        new QDBusPendingCallWatcher(m_link.bus().asyncCall(callOfService("GetCapabilities")), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
        call->deleteLater();
        const QDBusPendingReply<QStringList> answer = *call;
        if (answer.isValid()) {
            m_hasMarkup = answer.value().contains(QLatin1String("body-markup"));
        }
        notify(); // also without an answer: the service may know no more than this
    });
}

void NotificationSender::notify()
{
    auto *call =
        new QDBusPendingCallWatcher(m_link.bus().asyncCall(notifyMessage(m_waiting.front())), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
        call->deleteLater();
        finishNotify(*call);
    });
}

void NotificationSender::finishNotify(const QDBusPendingCallWatcher &call)
{
    const QDBusPendingReply<uint> answer = call;
    if (answer.isValid()) {
        const std::string &origin = m_waiting.front().origin;
        if (!origin.empty()) {
            m_shown[origin] = answer.value();
        }
    } else {
        qCDebug(notifierLog) << "notification not shown:" << answer.error().message();
        if (!m_link.isOpen() && !m_isSecondTry) {
            // The bus was lost before this one, or with it; there may be a new one by now.
            m_isSecondTry = true;
            sendNext();
            return;
        }
    }
    m_isSecondTry = false;
    m_waiting.pop_front();
    sendNext();
}

QDBusMessage NotificationSender::notifyMessage(const Notification &notification) const
{
    const auto replaced = m_shown.find(notification.origin);
    const std::uint32_t replacedId = replaced == m_shown.end() ? 0 : replaced->second;
    const QString text = textForBus(notification.text);
    QDBusMessage message = callOfService("Notify");
    message << QLatin1String(applicationName) << replacedId << QLatin1String(programId)
            << textForBus(notification.title)
            << (m_hasMarkup.value_or(false) ? escaped(text) : text) << QStringList()
            << hintsFor(notification.sound) << timeoutOfService;
    return message;
}

} // namespace tessaly
