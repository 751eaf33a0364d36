#pragma once

#include "platform/Interface.hpp"

#include <chrono>
#include <string>

namespace tessaly {

/// How much of a date, or of a time of day, a text says. The numbers are those of the formatter
/// styles that the screens speak of.
enum class DateStyle { none = 0, shortest = 1, medium = 2, longer = 3, full = 4 };

/// Dates and times as the user's language and country write them.
///
/// Threads: any.
class DateTexts : public Interface {
public:
    using Time = std::chrono::sys_seconds;

    /// The time in the user's time zone, in UTF-8: the date in one style, then the time of day in
    /// the other. DateStyle::none leaves that part out.
    [[nodiscard]] virtual std::string text(Time time, DateStyle date, DateStyle hours) const = 0;
};

} // namespace tessaly
