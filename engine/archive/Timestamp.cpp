#include "engine/archive/Timestamp.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>

namespace tessaly::archive {

namespace {

using namespace std::chrono;

constexpr sys_seconds reference = sys_days{2001y / January / 1};
// A scan file may have any number for a date.
constexpr sys_seconds earliest = sys_days{-9999y / January / 1};
constexpr sys_seconds latest = sys_days{10000y / January / 1} - 1s;

} // namespace

Timestamp Timestamp::now()
{
    return {duration<double>(system_clock::now() - reference).count()};
}

sys_seconds Timestamp::systemTime() const noexcept
{
    const auto edge = [](sys_seconds time) {
        return static_cast<double>((time - reference).count());
    };
    // Clamped before the conversion, which is undefined for what does not fit. A year of five
    // digits would also break the text's columns.
    const double seconds = std::clamp(std::floor(secondsSince2001), edge(earliest), edge(latest));
    return reference + std::chrono::seconds(static_cast<long long>(seconds));
}

std::string Timestamp::description() const
{
    const sys_seconds time = systemTime();
    // floor() and not a cast, which would round dates before 1970 up to the next day.
    const auto day = floor<days>(time);
    const year_month_day date(day);
    const hh_mm_ss clock(time - day);
    std::array<char, 64> text;
    const int length = std::snprintf(
        text.data(), text.size(), "%04d-%02u-%02u %02d:%02d:%02d +0000",
        static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
        static_cast<unsigned>(date.day()), static_cast<int>(clock.hours().count()),
        static_cast<int>(clock.minutes().count()), static_cast<int>(clock.seconds().count()));
    return {text.data(), static_cast<std::size_t>(length)};
}

} // namespace tessaly::archive
