#pragma once

#include "app/window/RateMessageBox.hpp"

#include <QCoreApplication>
#include <QString>

#include <cstdint>
#include <functional>
#include <string>

namespace tessaly {

class SettingsStore;
class UrlOpener;

/// Counts the starts of this version of the program and, from the fourth one on, asks the user to
/// rate it in the store: at each start until they agree. When they put it off, the count begins
/// again, and the third start after that asks.
///
/// The count is kept in the settings. It is 0 at a version's first start and goes up to 8; 9 means
/// that the user is not asked again before the version changes.
///
/// Threads: the main thread.
class KORVENRate {
    Q_DECLARE_TR_FUNCTIONS(tessaly::KORVENRate)

public:
    using Ask = std::function<int(const RateMessageBox::Request &request)>;

    /// Counts this start of the program: make one per start. The count reaches the disk with the
    /// next flush of the settings.
    ///
    /// `appId`: the program's identifier in the store, decimal digits. `ask`: asks the user and
    /// returns a RateMessageBox::ReturnCode.
    KORVENRate(std::string appId, SettingsStore &settings, UrlOpener &urls, Ask ask);

    /// Whether it is time to ask the user.
    [[nodiscard]] bool isDue() const noexcept;
    /// Asks the user if it is time to.
    void checkRateAndReview();
    /// Asks the user, and does what they answer. Without an answer nothing changes.
    void rateAndReviewAlert();
    /// Opens the program's page in the store.
    void doRateAndReview() const;

    [[nodiscard]] std::int32_t getRunCount() const noexcept { return m_runCount; }
    /// Stores the count at once.
    void setRunCount(std::int32_t count);

private:
    QString m_appName;
    std::string m_appId;
    SettingsStore &m_settings;
    UrlOpener &m_urls;
    Ask m_ask;
    std::int32_t m_runCount = 0;
};

} // namespace tessaly
