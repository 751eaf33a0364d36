#include "screens/results/KORVENViewController.hpp"

#include "app/delegate/KORVENAppDelegate.hpp"
#include "engine/tree/SizeText.hpp"
#include "platform/PreviewPanels.hpp"

#include <QKeyEvent>

#include <array>
#include <cstddef>

namespace tessaly {

namespace {

constexpr std::size_t rowCount = 5;
/// Bytes by row of the preference, in decimal units like the size texts. The first row lists none.
constexpr std::array<std::uint64_t, rowCount> hiddenItemThresholds{0, 1'000'000, 500'000, 1'000, 1};
constexpr std::array<std::uint64_t, rowCount> largeFileThresholds{0, 1'000'000'000, 500'000'000,
                                                                  1'000'000, 1};

std::uint64_t thresholdOf(std::int32_t row, const std::array<std::uint64_t, rowCount> &thresholds)
{
    // The settings are a file that the user may edit, so a row may be out of range. It then acts as
    // the first.
    const auto index = static_cast<std::uint32_t>(row); // below 0 is above all rows
    return index < rowCount ? thresholds[index] : 0;
}

} // namespace

KORVENViewController::KORVENViewController(const Services &services) : m_services(services) {}

KORVENViewController::~KORVENViewController() = default;

void KORVENViewController::drillDownOneLevel(std::string_view /*name*/) {}

void KORVENViewController::quickLookItem(std::string_view /*path*/) {}

// The preference is read each time, as the user may change it while a scan runs.
std::uint64_t KORVENViewController::compareHiddenItem()
{
    return thresholdOf(KORVENAppDelegate::sharedDelegate().hiddenItemPreference(),
                       hiddenItemThresholds);
}

std::uint64_t KORVENViewController::compareLargeFile()
{
    return thresholdOf(KORVENAppDelegate::sharedDelegate().largeFilePreference(),
                       largeFileThresholds);
}

QString KORVENViewController::formatDate(archive::Timestamp date, DateStyle dateStyle,
                                         DateStyle timeStyle) const
{
    return QString::fromStdString(m_services.dates.text(date.systemTime(), dateStyle, timeStyle));
}

QString KORVENViewController::formatDate(archive::Timestamp date, DateStyle style) const
{
    return formatDate(date, style, style);
}

QString KORVENViewController::formatDate(archive::Timestamp date) const
{
    return formatDate(date, DateStyle::shortest);
}

QString KORVENViewController::buildString(tree::SizeNumber byteCount)
{
    // Two values are placeholders. Other classes have other texts for them (see
    // docs/conventions.md).
    switch (byteCount.asInt32()) {
    case -1:
        return {};
    case -2:
        return tr("Canceled");
    default:
        return QString::fromStdString(tree::sizeText(byteCount.value()));
    }
}

bool KORVENViewController::shouldTypeSelectForEvent(const QKeyEvent &event,
                                                    const QString & /*searchString*/)
{
    if (event.key() != Qt::Key_Space) {
        return true;
    }
    PreviewPanels &panels = m_services.previewPanels;
    // Asked first, since sharedPreviewPanel() makes the panel.
    if (panels.sharedPreviewPanelExists() && panels.sharedPreviewPanel().isVisible()) {
        panels.sharedPreviewPanel().orderOut();
    } else {
        panels.sharedPreviewPanel().makeKeyAndOrderFront();
    }
    return true;
}

void KORVENViewController::startTiming()
{
    m_startTimer = archive::Timestamp::now();
    m_endTimer.reset();
}

double KORVENViewController::stopTiming()
{
    m_endTimer = archive::Timestamp::now();
    const double seconds =
        // Without a start, 0 rather than the seconds since 2001.
        m_startTimer ? m_endTimer->secondsSince2001 - m_startTimer->secondsSince2001 : 0;
    m_startTimer.reset();
    m_endTimer.reset();
    return seconds;
}

} // namespace tessaly
