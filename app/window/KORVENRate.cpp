#include "app/window/KORVENRate.hpp"

#include "app/delegate/SettingsKeys.hpp"
#include "app/window/ProgramVersion.hpp"
#include "app/window/VendorUrls.hpp"
#include "platform/SettingsStore.hpp"
#include "platform/UrlOpener.hpp"

#include <utility>

namespace tessaly {

namespace {

// The first start of a version counts 0, so the fourth one is the first that asks.
constexpr std::int32_t firstAskingCount = 3;
constexpr std::int32_t lastCount = 8;
constexpr std::int32_t answeredCount = 9;

} // namespace

KORVENRate::KORVENRate(std::string appId, SettingsStore &settings, UrlOpener &urls, Ask ask)
    : m_appName(QString::fromUtf8(programName())), m_appId(std::move(appId)), m_settings(settings),
      m_urls(urls), m_ask(std::move(ask)),
      m_runCount(static_cast<std::int32_t>(settings.integer(settings_key::rateRunCount)))
{
    // No flush in here: writing to the disk would delay the window. The controller flushes once the
    // content has been painted.
    const bool isSameVersion = m_settings.text(settings_key::rateVersion) == programVersion();
    // The count stops at 9, which is also what an answer sets. A number above it, from whatever
    // source, stays as it is.
    if (isSameVersion && m_runCount <= lastCount) {
        ++m_runCount;
        m_settings.setInteger(settings_key::rateRunCount, m_runCount);
    } else if (!isSameVersion) {
        m_runCount = 0;
        m_settings.setInteger(settings_key::rateRunCount, 0);
        m_settings.setText(settings_key::rateVersion, programVersion());
    }
}

bool KORVENRate::isDue() const noexcept
{
    return m_runCount >= firstAskingCount && m_runCount <= lastCount;
}

void KORVENRate::checkRateAndReview()
{
    if (isDue()) {
        rateAndReviewAlert();
    }
}

void KORVENRate::rateAndReviewAlert()
{
    const int answer =
        m_ask({tr("%1 - Rate and Review").arg(m_appName),
               tr("If you enjoy using %1 please take a moment to rate and review. Thank you.")
                   .arg(m_appName),
               {tr("Yes"), tr("Not now")}});
    switch (answer) {
    case RateMessageBox::firstButton:
        // 0 first, and flushed: a program that is killed before the second flush asks again some
        // starts later.
        setRunCount(0);
        setRunCount(answeredCount);
        doRateAndReview();
        break;
    case RateMessageBox::secondButton:
        setRunCount(0);
        break;
    case RateMessageBox::thirdButton: // "never": the prompt has no such button today
        setRunCount(0);
        setRunCount(answeredCount);
        break;
    default:
        // No answer, as when the program quits with the prompt open: the count stays, and the next
        // start asks again.
        break;
    }
}

void KORVENRate::doRateAndReview() const
{
    m_urls.openUrl(storePage(m_appId));
}

void KORVENRate::setRunCount(std::int32_t count)
{
    m_settings.setInteger(settings_key::rateRunCount, count);
    m_settings.flush();
    m_runCount = count;
}

} // namespace tessaly
