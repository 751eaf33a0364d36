#include "app/window/KORVENRate.hpp"

#include "app/delegate/KORVENAppDelegate.hpp"
#include "app/window/ProgramVersion.hpp"
#include "app/window/VendorUrls.hpp"
#include "platform/SettingsStore.hpp"
#include "platform/UrlOpener.hpp"

#include <utility>

namespace tessaly {

namespace {

constexpr std::string_view versionKey = "KORVENRate_version_num";
constexpr std::string_view countKey = "KORVENRate_run_count";

constexpr std::int32_t firstAskingCount = 3;
constexpr std::int32_t lastCount = 8;
constexpr std::int32_t answeredCount = 9;

} // namespace

KORVENRate::KORVENRate(std::string appId, std::unique_ptr<RateAlert> alert)
    : m_appName(QString::fromUtf8(programName())), m_appId(std::move(appId)),
      m_runCount(static_cast<std::int32_t>(services().settings.integer(countKey))),
      m_alert(std::move(alert))
{
    const bool isSameVersion = services().settings.text(versionKey) == programVersion();
    if (isSameVersion && m_runCount <= lastCount) {
        ++m_runCount;
        services().settings.setInteger(countKey, m_runCount);
    } else if (!isSameVersion) {
        m_runCount = 0;
        services().settings.setInteger(countKey, 0);
        services().settings.setText(versionKey, programVersion());
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
    const int answer = m_alert->runModal(
        {tr("%1 - Rate and Review").arg(m_appName),
         tr("If you enjoy using %1 please take a moment to rate and review. Thank you.")
             .arg(m_appName),
         {tr("Yes"), tr("Not now")}});
    switch (answer) {
    case RateAlert::firstButton:
        setRunCount(0);
        setRunCount(answeredCount);
        doRateAndReview();
        break;
    case RateAlert::secondButton:
        setRunCount(0);
        break;
    case RateAlert::thirdButton: // never to be asked again
        setRunCount(0);
        setRunCount(answeredCount);
        break;
    default:
        break;
    }
}

void KORVENRate::doRateAndReview() const
{
    services().urls.openUrl(storePage(m_appId));
}

void KORVENRate::setRunCount(std::int32_t count)
{
    services().settings.setInteger(countKey, count);
    services().settings.flush();
    m_runCount = count;
}

} // namespace tessaly
