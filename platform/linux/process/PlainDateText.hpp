#pragma once

#include "platform/DateTexts.hpp"

#include <string>

namespace tessaly {

/// A date and time that needs no knowledge of any language: "2026-11-21 12:18", in the time zone of
/// the C library. DateStyle::none leaves a part out; the other styles are all alike. A year that no
/// calendar of the system reaches gives an empty text.
///
/// Threads: any.
[[nodiscard]] std::string plainDateText(DateTexts::Time time, DateStyle date, DateStyle hours);

} // namespace tessaly
