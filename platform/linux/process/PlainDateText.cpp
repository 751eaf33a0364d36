#include "platform/linux/process/PlainDateText.hpp"

#include <array>
#include <ctime>

namespace tessaly {

std::string plainDateText(DateTexts::Time time, DateStyle date, DateStyle hours)
{
    const std::time_t seconds = time.time_since_epoch().count();
    std::tm fields = {};
    if (localtime_r(&seconds, &fields) == nullptr) {
        return {};
    }
    std::string format;
    if (date != DateStyle::none) {
        format = "%F";
    }
    if (hours != DateStyle::none) {
        format += format.empty() ? "%R" : " %R";
    }
    std::array<char, 64> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), format.c_str(), &fields);
    return {text.data(), length};
}

} // namespace tessaly
