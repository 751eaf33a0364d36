#pragma once

#include "app/window/RateAlert.hpp"

#include <QCoreApplication>
#include <QString>

#include <cstdint>
#include <memory>
#include <string>

namespace tessaly {

/// Counts how often this version of the program has been started and, from the fourth time on, asks
/// the user to rate it in the store: until they agree, or, once they have put it off, at the third
/// start after that.
///
/// The count is kept in the settings. It is 0 at a version's first start and goes up to 8; 9 means
/// that the user is not asked again before the version changes.
///
/// Threads: the main thread.
class KORVENRate {
    Q_DECLARE_TR_FUNCTIONS(tessaly::KORVENRate)

public:
    /// Counts this start of the program: make one for each. The settings last by the next flush,
    /// whoever makes it.
    ///
    /// `appId`: the program's identifier in the store, decimal digits. `alert` asks the user.
    KORVENRate(std::string appId, std::unique_ptr<RateAlert> alert);

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
    std::int32_t m_runCount = 0;
    std::unique_ptr<RateAlert> m_alert;
};

} // namespace tessaly
