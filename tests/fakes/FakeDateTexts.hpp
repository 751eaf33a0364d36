#pragma once

#include "platform/DateTexts.hpp"

#include <array>
#include <chrono>
#include <cstdio>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace tessaly {

/// Writes every time alike wherever the tests run: in UTC, with the styles by their numbers,
/// "2026-11-21 12:18 [1,1]".
class FakeDateTexts final : public DateTexts {
public:
    struct Call {
        Time time;
        DateStyle date;
        DateStyle hours;
    };

    /// Run before each text is made, by whatever thread.
    std::function<void()> beforeEach = [] {};

    [[nodiscard]] std::string text(Time time, DateStyle date, DateStyle hours) const override
    {
        beforeEach();
        {
            const std::scoped_lock lock(m_mutex);
            m_calls.push_back({time, date, hours});
        }
        const auto day = std::chrono::floor<std::chrono::days>(time);
        const std::chrono::year_month_day ymd(day);
        const std::chrono::hh_mm_ss clock(time - day);
        std::array<char, 64> text{};
        std::snprintf(text.data(), text.size(), "%04d-%02u-%02u %02d:%02d [%d,%d]", int(ymd.year()),
                      unsigned(ymd.month()), unsigned(ymd.day()), int(clock.hours().count()),
                      int(clock.minutes().count()), static_cast<int>(date),
                      static_cast<int>(hours));
        return text.data();
    }

    /// What was asked for so far.
    [[nodiscard]] std::vector<Call> calls() const
    {
        const std::scoped_lock lock(m_mutex);
        return m_calls;
    }

private:
    mutable std::mutex m_mutex;
    mutable std::vector<Call> m_calls;
};

} // namespace tessaly
