#include "platform/linux/notifications/NotificationSender.hpp"

#include "platform/ProgramIdentity.hpp"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusReply>
#include <QLoggingCategory>
#include <QStringList>
#include <QVariantMap>

#include <utility>

namespace tessaly {

namespace {

// Who we are to the service; programId is the name of our icon and of our desktop file.
constexpr auto applicationName = "Tessaly";

// The service's bus name is also that of its interface.
const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString servicePath = QStringLiteral("/org/freedesktop/Notifications");

// The rules for the signals that the bus passes on to us.
constexpr auto closedSignals =
    "type='signal',interface='org.freedesktop.Notifications',member='NotificationClosed'";
constexpr auto ownerSignals = "type='signal',sender='org.freedesktop.DBus',"
                              "member='NameOwnerChanged',arg0='org.freedesktop.Notifications'";

// Sounds by the names that sound themes have for them.
constexpr auto messageSound = "message-new-instant";
constexpr auto completeSound = "complete";

constexpr int timeoutOfService = -1; // the service decides how long it is shown

Q_LOGGING_CATEGORY(notifierLog, "tessaly.notifier", QtInfoMsg)

/// Strings of D-Bus are valid UTF-8 and contain no NUL.
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
    return QDBusMessage::createMethodCall(service, servicePath, service, QLatin1String(method));
}

} // namespace

NotificationSender::NotificationSender(std::string busAddress)
    : m_link(std::move(busAddress), QStringLiteral("notifier"), this)
{
}

NotificationSender::~NotificationSender() = default;

void NotificationSender::post(const Notification &notification)
{
    // One at a time: the next one may replace this one, whose id the reply brings.
    m_waiting.push_back(notification);
    if (!m_isSending) {
        sendNext();
    }
}

void NotificationSender::forgetNotification(unsigned id)
{
    // Replacing what the user has closed would show nothing in some services.
    std::erase_if(m_shown, [id](const auto &shown) { return shown.second == id; });
}

void NotificationSender::forgetService()
{
    m_shown.clear();
    m_hasMarkup.reset();
}

/// Opens the bus, which may take long to answer, and then continues with sendFirst().
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
    connection.connect(QString(), servicePath, service, QStringLiteral("NotificationClosed"), this,
                       SLOT(forgetNotification(uint)));
    connection.connect(QString(), QStringLiteral("/org/freedesktop/DBus"),
                       QStringLiteral("org.freedesktop.DBus"), QStringLiteral("NameOwnerChanged"),
                       this, SLOT(forgetService()));
    // A bus handles messages in order, so no signal of what is sent after these is missed.
    m_link.addMatch(closedSignals);
    m_link.addMatch(ownerSignals);
}

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
    m_link.call(callOfService("GetCapabilities"), [this](const QDBusReply<QStringList> &answer) {
        if (answer.isValid()) {
            m_hasMarkup = answer.value().contains(QLatin1String("body-markup"));
        }
        notify(); // also after an error: some services implement "Notify" and nothing else
    });
}

void NotificationSender::notify()
{
    m_link.call(notifyMessage(m_waiting.front()),
                [this](const QDBusReply<uint> &answer) { finishNotify(answer); });
}

void NotificationSender::finishNotify(const QDBusReply<uint> &answer)
{
    if (answer.isValid()) {
        const std::string &origin = m_waiting.front().origin;
        if (!origin.empty()) {
            m_shown[origin] = answer.value();
        }
    } else {
        qCDebug(notifierLog) << "notification not shown:" << answer.error().message();
        if (!m_link.isOpen() && !m_isSecondTry) {
            // The bus was lost before or during the call. It may have been restarted by now, so
            // this notification is tried once more on a new connection.
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
