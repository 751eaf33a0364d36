#pragma once

#include "platform/DateTexts.hpp"

#include <string>
#include <string_view>

namespace tessaly {

/// Dates and times as ICU's locale data has them.
///
/// Locales: named as POSIX does, "de_DE.UTF-8" or "sr_RS@latin". "C", "POSIX" and what ICU does not
///          know read as in the United States.
/// Dates:   in the calendar of the locale; far from today its years may be written without an era.
/// Threads: any.
/// Errors:  none reach the caller: where ICU fails, the text is that of plainDateText().
class IcuDateTexts final : public DateTexts {
public:
    /// The locale that the environment has for times now: LC_ALL, else LC_TIME, else LANG.
    IcuDateTexts();
    /// `timeZone`: "Europe/Berlin"; an unknown one is UTC, an empty one the system's.
    explicit IcuDateTexts(std::string_view locale, std::string timeZone = {});

    [[nodiscard]] std::string text(Time time, DateStyle date, DateStyle hours) const override;

private:
    std::string m_locale; ///< by ICU's name
    std::string m_timeZone;
};

} // namespace tessaly
