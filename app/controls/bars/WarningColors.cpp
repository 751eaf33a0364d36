#include "app/controls/bars/WarningColors.hpp"

#include "app/controls/bars/KORVENProgressBar.hpp"

namespace tessaly {

namespace {

/// Shares of single precision are compared with these, by which nine tenths count as yellow still.
constexpr double yellowShare = 0.8;
constexpr double redShare = 0.9;

} // namespace

void setWarningColors(KORVENProgressBar &bar, float share)
{
    const auto wide = static_cast<double>(share);
    if (wide >= yellowShare && wide < redShare) {
        bar.setColorsYellow();
    } else if (wide >= redShare) {
        bar.setColorsRed();
    }
}

} // namespace tessaly
