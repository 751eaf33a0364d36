#include "platform/linux/process/IcuDateTexts.hpp"

#include "platform/linux/process/PlainDateText.hpp"
#include "tests/platform/linux/ScopedVariable.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <unicode/timezone.h>

namespace tessaly {

namespace {

using namespace std::chrono_literals;
using Seconds = std::chrono::seconds;

// ICU writes times of the day in English with a space that does not break, and is narrow.
#define NARROW_SPACE "\u202F"

constexpr auto none = DateStyle::none;
constexpr auto shortest = DateStyle::shortest;
constexpr auto medium = DateStyle::medium;
constexpr auto longer = DateStyle::longer;
constexpr auto full = DateStyle::full;

DateTexts::Time timeOf(std::chrono::year_month_day day, Seconds sinceMidnight = 0s)
{
    return std::chrono::sys_days(day) + sinceMidnight;
}

const DateTexts::Time winter = timeOf(std::chrono::November / 21 / 2026, 11h + 18min);

std::string inBerlin(std::string_view locale, DateStyle date, DateStyle hours,
                     DateTexts::Time time = winter)
{
    return IcuDateTexts(locale, "Europe/Berlin").text(time, date, hours);
}

/// The environment says nothing of locales but what is given here.
class Environment {
public:
    Environment(const std::optional<std::string> &all, const std::optional<std::string> &time,
                const std::optional<std::string> &lang)
        : m_all("LC_ALL", all), m_time("LC_TIME", time), m_lang("LANG", lang)
    {
    }

    [[nodiscard]] static std::string text()
    {
        return IcuDateTexts().text(timeOf(std::chrono::November / 21 / 2026, 12h), medium, none);
    }

private:
    ScopedVariable m_all;
    ScopedVariable m_time;
    ScopedVariable m_lang;
};

/// The time zone of this process, as long as this lives.
class DefaultTimeZone {
public:
    explicit DefaultTimeZone(const char *name) : m_before(icu::TimeZone::createDefault())
    {
        icu::TimeZone::adoptDefault(icu::TimeZone::createTimeZone(name));
    }
    ~DefaultTimeZone() { icu::TimeZone::adoptDefault(m_before.release()); }
    DefaultTimeZone(const DefaultTimeZone &) = delete;
    DefaultTimeZone &operator=(const DefaultTimeZone &) = delete;

private:
    std::unique_ptr<icu::TimeZone> m_before;
};

TEST(IcuDateTexts, writesShortDatesAsTheLocaleDoes)
{
    EXPECT_EQ(inBerlin("en_US.UTF-8", shortest, shortest), "11/21/26, 12:18" NARROW_SPACE "PM");
    EXPECT_EQ(inBerlin("en_GB.UTF-8", shortest, shortest), "21/11/2026, 12:18");
    EXPECT_EQ(inBerlin("de_DE.UTF-8", shortest, shortest), "21.11.26, 12:18");
    EXPECT_EQ(inBerlin("fr_FR.UTF-8", shortest, shortest), "21/11/2026 12:18");
    EXPECT_EQ(inBerlin("ja_JP.UTF-8", shortest, shortest), "2026/11/21 12:18");
}

TEST(IcuDateTexts, writesMediumDatesAsTheLocaleDoes)
{
    EXPECT_EQ(inBerlin("en_US.UTF-8", medium, shortest), "Nov 21, 2026, 12:18" NARROW_SPACE "PM");
    EXPECT_EQ(inBerlin("en_GB.UTF-8", medium, shortest), "21 Nov 2026, 12:18");
    EXPECT_EQ(inBerlin("de_DE.UTF-8", medium, shortest), "21.11.2026, 12:18");
    EXPECT_EQ(inBerlin("fr_FR.UTF-8", medium, shortest), "21 nov. 2026, 12:18");
    EXPECT_EQ(inBerlin("ja_JP.UTF-8", medium, shortest), "2026/11/21 12:18");
}

TEST(IcuDateTexts, saysMoreWithEachStyle)
{
    EXPECT_EQ(inBerlin("de_DE", longer, none), "21. November 2026");
    EXPECT_EQ(inBerlin("de_DE", full, none), "Samstag, 21. November 2026");
    EXPECT_EQ(inBerlin("de_DE", none, medium), "12:18:00");
    EXPECT_EQ(inBerlin("de_DE", none, longer), "12:18:00 MEZ");
    EXPECT_EQ(inBerlin("de_DE", none, full), "12:18:00 Mitteleuropäische Normalzeit");
}

TEST(IcuDateTexts, leavesOutWhatHasNoStyle)
{
    EXPECT_EQ(inBerlin("de_DE", shortest, none), "21.11.26");
    EXPECT_EQ(inBerlin("de_DE", none, shortest), "12:18");
    EXPECT_EQ(inBerlin("de_DE", none, none), "");
}

TEST(IcuDateTexts, usesTheLocaleThatTheEnvironmentHasForTimes)
{
    const std::string german = "21.11.2026";
    const std::string british = "21 Nov 2026";
    const std::string french = "21 nov. 2026";
    EXPECT_EQ((Environment("de_DE.UTF-8", "en_GB.UTF-8", "fr_FR.UTF-8").text()), german);
    EXPECT_EQ((Environment(std::nullopt, "en_GB.UTF-8", "fr_FR.UTF-8").text()), british);
    EXPECT_EQ((Environment(std::nullopt, std::nullopt, "fr_FR.UTF-8").text()), french);
    EXPECT_EQ((Environment("", "en_GB.UTF-8", "fr_FR.UTF-8").text()), british);
    EXPECT_EQ((Environment("", "", "fr_FR.UTF-8").text()), french);
}

TEST(IcuDateTexts, keepsTheLocaleOfItsBeginning)
{
    std::optional<IcuDateTexts> texts;
    {
        const Environment environment("de_DE.UTF-8", std::nullopt, std::nullopt);
        texts.emplace();
    }
    const Environment environment("en_GB.UTF-8", std::nullopt, std::nullopt);
    EXPECT_EQ(texts->text(winter, medium, none), "21.11.2026");
}

TEST(IcuDateTexts, isReadableWithoutALocale)
{
    const std::string plain = "Nov 21, 2026";
    EXPECT_EQ((Environment(std::nullopt, std::nullopt, std::nullopt).text()), plain);
    EXPECT_EQ((Environment("", "", "").text()), plain);
    EXPECT_EQ((Environment("C", std::nullopt, "de_DE.UTF-8").text()), plain);
    EXPECT_EQ((Environment("C.UTF-8", std::nullopt, "de_DE.UTF-8").text()), plain);
    EXPECT_EQ((Environment(std::nullopt, "POSIX", "de_DE.UTF-8").text()), plain);
    EXPECT_EQ(inBerlin("C", shortest, shortest), "11/21/26, 12:18" NARROW_SPACE "PM");
}

TEST(IcuDateTexts, readsLocaleNamesOfEverySpelling)
{
    for (const char *name : {"de_DE", "de_DE.UTF-8", "de_DE.utf8@euro", "de_DE@euro", "de", "de-DE",
                             "de_XX", "DE_de"}) {
        EXPECT_EQ(inBerlin(name, longer, none), "21. November 2026") << name;
    }
    EXPECT_EQ(inBerlin("sr_RS.UTF-8", longer, none), "21. новембар 2026.");
    EXPECT_EQ(inBerlin("sr_RS.UTF-8@latin", longer, none), "21. novembar 2026.");
    EXPECT_EQ(inBerlin("sr@latin", longer, none), "21. novembar 2026.");
}

TEST(IcuDateTexts, writesPlainlyForLocalesThatItDoesNotKnow)
{
    for (const std::string name :
         {"xx_YY.UTF-8", "german", "/usr/lib/locale/de_DE", "..", "@", ".", "@@..", "_", "-",
          "____", "de_DE\n", "%s%n", "\xFF\xFE", "1", "en_US_POSIX", " "}) {
        EXPECT_EQ(inBerlin(name, longer, none), "November 21, 2026") << name;
    }
    EXPECT_EQ(inBerlin(std::string(1 << 20, 'a'), longer, none), "November 21, 2026");
    EXPECT_EQ(inBerlin(std::string("de\0DE", 5), longer, none), "November 21, 2026");
}

TEST(IcuDateTexts, showsTheTimeOfItsZone)
{
    const IcuDateTexts newYork("de_DE", "America/New_York");
    const IcuDateTexts kolkata("de_DE", "Asia/Kolkata");
    EXPECT_EQ(newYork.text(winter, shortest, shortest), "21.11.26, 06:18");
    EXPECT_EQ(kolkata.text(winter, shortest, shortest), "21.11.26, 16:48");
    EXPECT_EQ(kolkata.text(winter + 8h, shortest, shortest), "22.11.26, 00:48");
}

TEST(IcuDateTexts, showsSummerTime)
{
    const DateTexts::Time spring = timeOf(std::chrono::March / 29 / 2026, 1h);
    EXPECT_EQ(inBerlin("de_DE", none, longer, spring - 1s), "01:59:59 MEZ");
    EXPECT_EQ(inBerlin("de_DE", none, longer, spring), "03:00:00 MESZ");
    const DateTexts::Time autumn = timeOf(std::chrono::October / 25 / 2026, 1h);
    EXPECT_EQ(inBerlin("de_DE", none, longer, autumn - 1s), "02:59:59 MESZ");
    EXPECT_EQ(inBerlin("de_DE", none, longer, autumn), "02:00:00 MEZ");
}

TEST(IcuDateTexts, showsTheSystemsTimeWithoutAZone)
{
    const IcuDateTexts texts("de_DE");
    {
        const DefaultTimeZone zone("Asia/Kolkata");
        EXPECT_EQ(texts.text(winter, shortest, shortest), "21.11.26, 16:48");
    }
    const DefaultTimeZone zone("America/New_York");
    EXPECT_EQ(texts.text(winter, shortest, shortest), "21.11.26, 06:18");
}

TEST(IcuDateTexts, showsUniversalTimeForAZoneThatThereIsNot)
{
    EXPECT_EQ(IcuDateTexts("de_DE", "Nowhere/\xFF").text(winter, none, shortest), "11:18");
}

TEST(IcuDateTexts, writesDatesOfEveryAge)
{
    const IcuDateTexts texts("en_GB", "UTC");
    EXPECT_EQ(texts.text(DateTexts::Time(0s), medium, shortest), "1 Jan 1970, 00:00");
    EXPECT_EQ(texts.text(timeOf(std::chrono::December / 31 / 9999, 23h + 59min), medium, shortest),
              "31 Dec 9999, 23:59");
    EXPECT_EQ(texts.text(timeOf(std::chrono::July / 1 / 1905), medium, shortest),
              "1 Jul 1905, 00:00");
    // The calendar of those days was the Julian one.
    EXPECT_EQ(texts.text(timeOf(std::chrono::January / 1 / 1), medium, shortest), "3 Jan 1, 00:00");
}

TEST(IcuDateTexts, writesSomethingForTimesThatNoCalendarReaches)
{
    for (const char *locale : {"en_US", "de_DE", "th_TH", "fa_IR", "ar_SA", "C"}) {
        const IcuDateTexts texts(locale, "Europe/Berlin");
        EXPECT_NE(texts.text(DateTexts::Time(Seconds::min()), full, full), "") << locale;
        EXPECT_NE(texts.text(DateTexts::Time(Seconds::max()), full, full), "") << locale;
    }
}

TEST(IcuDateTexts, servesSeveralThreads)
{
    const IcuDateTexts texts("de_DE", "Europe/Berlin");
    std::vector<std::string> wrong(4);
    std::vector<std::thread> threads;
    for (std::string &found : wrong) {
        threads.emplace_back([&] {
            for (int minute = 10; minute < 60; ++minute) {
                const std::string text = texts.text(
                    timeOf(std::chrono::November / 21 / 2026, 11h + std::chrono::minutes(minute)),
                    shortest, shortest);
                if (text != "21.11.26, 12:" + std::to_string(minute)) {
                    found = text;
                }
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, std::vector<std::string>(4));
}

/// The C library's time zone, as long as this lives.
class LibraryTimeZone {
public:
    explicit LibraryTimeZone(const char *name) : m_variable(std::in_place, "TZ", name) { tzset(); }
    ~LibraryTimeZone()
    {
        m_variable.reset();
        tzset();
    }
    LibraryTimeZone(const LibraryTimeZone &) = delete;
    LibraryTimeZone &operator=(const LibraryTimeZone &) = delete;

private:
    std::optional<ScopedVariable> m_variable;
};

TEST(plainDateText, isTheSameInEveryLanguage)
{
    const LibraryTimeZone zone("XYZ-1");
    EXPECT_EQ(plainDateText(winter, shortest, shortest), "2026-11-21 12:18");
    EXPECT_EQ(plainDateText(winter, full, longer), "2026-11-21 12:18");
}

TEST(plainDateText, leavesOutWhatHasNoStyle)
{
    const LibraryTimeZone zone("UTC");
    EXPECT_EQ(plainDateText(winter, shortest, none), "2026-11-21");
    EXPECT_EQ(plainDateText(winter, none, shortest), "11:18");
    EXPECT_EQ(plainDateText(winter, none, none), "");
}

TEST(plainDateText, writesDatesOfEveryAge)
{
    const LibraryTimeZone zone("UTC");
    EXPECT_EQ(plainDateText(timeOf(std::chrono::December / 31 / 9999), full, none), "9999-12-31");
    EXPECT_EQ(plainDateText(DateTexts::Time(Seconds::max()), full, full), "");
    EXPECT_EQ(plainDateText(DateTexts::Time(Seconds::min()), full, full), "");
}

} // namespace

} // namespace tessaly
