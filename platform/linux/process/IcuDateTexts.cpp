#include "platform/linux/process/IcuDateTexts.hpp"

#include "platform/linux/process/PlainDateText.hpp"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <utility>

#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/resbund.h>
#include <unicode/timezone.h>

namespace tessaly {

namespace {

constexpr const char *plainLocale = "en_US_POSIX";

/// The scripts that the modifiers of POSIX names stand for, as ICU names them.
constexpr std::array<std::pair<std::string_view, std::string_view>, 3> scripts = {{
    {"latin", "Latn"},
    {"cyrillic", "Cyrl"},
    {"devanagari", "Deva"},
}};

/// The locale that the environment has for times: the first variable that says something.
std::string_view localeOfEnvironment()
{
    for (const char *variable : {"LC_ALL", "LC_TIME", "LANG"}) {
        const char *value = std::getenv(variable);
        if (value != nullptr && *value != '\0') {
            return value;
        }
    }
    return "C";
}

bool isKnown(const std::string &icuName)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::ResourceBundle data(nullptr, icu::Locale::createFromName(icuName.c_str()), status);
    // ICU would take the process's own locale instead, which may be half of another one.
    return U_SUCCESS(status) && status != U_USING_DEFAULT_WARNING;
}

/// "sr_Latn_RS" for "sr_RS.UTF-8@latin": language_COUNTRY.charset@modifier.
std::string icuLocale(std::string_view name)
{
    const std::size_t modifierAt = std::min(name.find('@'), name.size());
    const std::string_view modifier = name.substr(modifierAt);
    const std::string_view place = name.substr(0, std::min(name.find('.'), modifierAt));

    // From the environment: names may also be paths, or anything at all: ICU is asked for none but
    // plain short ones.
    constexpr std::size_t maxLength = 64;
    const bool isPlain = std::all_of(place.begin(), place.end(), [](char letter) {
        return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
               (letter >= '0' && letter <= '9') || letter == '_' || letter == '-';
    });
    if (!isPlain || place.empty() || place.size() > maxLength) {
        return plainLocale;
    }

    std::string answer(place);
    for (const auto &[ofPosix, ofIcu] : scripts) {
        if (!modifier.empty() && modifier.substr(1) == ofPosix) {
            const std::size_t languageEnd = std::min(answer.find('_'), answer.size());
            answer.insert(languageEnd, std::string("_").append(ofIcu));
        }
    }
    return isKnown(answer) ? answer : plainLocale;
}

icu::DateFormat::EStyle icuStyle(DateStyle style)
{
    switch (style) {
    case DateStyle::none:
        return icu::DateFormat::kNone;
    case DateStyle::shortest:
        return icu::DateFormat::kShort;
    case DateStyle::medium:
        return icu::DateFormat::kMedium;
    case DateStyle::longer:
        return icu::DateFormat::kLong;
    case DateStyle::full:
        return icu::DateFormat::kFull;
    }
    return icu::DateFormat::kShort;
}

} // namespace

IcuDateTexts::IcuDateTexts() : IcuDateTexts(localeOfEnvironment()) {}

IcuDateTexts::IcuDateTexts(std::string_view locale, std::string timeZone)
    : m_locale(icuLocale(locale)), m_timeZone(std::move(timeZone))
{
}

std::string IcuDateTexts::text(Time time, DateStyle date, DateStyle hours) const
{
    if (date == DateStyle::none && hours == DateStyle::none) {
        return {};
    }
    // A new formatter for each call, since one must not be used by several threads.
    const std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createDateTimeInstance(
        icuStyle(date), icuStyle(hours), icu::Locale::createFromName(m_locale.c_str())));
    if (format == nullptr) {
        return plainDateText(time, date, hours);
    }
    format->adoptTimeZone(m_timeZone.empty() ? icu::TimeZone::createDefault()
                                             : icu::TimeZone::createTimeZone(
                                                   icu::UnicodeString::fromUTF8(m_timeZone)));

    constexpr double millisecondsPerSecond = 1000;
    icu::UnicodeString text;
    format->format(static_cast<double>(time.time_since_epoch().count()) * millisecondsPerSecond,
                   text);
    if (text.isBogus() || text.isEmpty()) {
        return plainDateText(time, date, hours);
    }
    std::string answer;
    text.toUTF8String(answer);
    return answer;
}

} // namespace tessaly
