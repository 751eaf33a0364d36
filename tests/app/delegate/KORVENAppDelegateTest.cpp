#include "app/delegate/KORVENAppDelegate.hpp"

#include "app/delegate/NamedException.hpp"
#include "tests/fakes/FakeMainWindow.hpp"
#include "tests/fakes/FakeServices.hpp"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

using Log = std::vector<std::string>;
using Sound = Notification::Sound;

/// Calls back when it is asked for the release.
class WatchedRelease final : public SystemRelease {
public:
    explicit WatchedRelease(std::function<void()> asked) : m_asked(std::move(asked)) {}

    [[nodiscard]] Version version() const override
    {
        m_asked();
        return {10, 7};
    }

private:
    std::function<void()> m_asked;
};

/// Settings without values, which call back when a key is looked for.
class WatchedSettings final : public SettingsStore {
public:
    explicit WatchedSettings(std::function<void()> asked) : m_asked(std::move(asked)) {}

    [[nodiscard]] bool hasKey(std::string_view /*key*/) const override
    {
        m_asked();
        return true;
    }
    [[nodiscard]] std::int64_t integer(std::string_view /*key*/) const override { return 0; }
    [[nodiscard]] std::optional<std::string> text(std::string_view /*key*/) const override
    {
        return std::nullopt;
    }
    [[nodiscard]] std::optional<Data> data(std::string_view /*key*/) const override
    {
        return std::nullopt;
    }
    void setInteger(std::string_view /*key*/, std::int64_t /*value*/) override {}
    void setDefault(std::string_view /*key*/, std::int64_t /*value*/) override {}
    void setText(std::string_view /*key*/, std::string_view /*value*/) override {}
    void setData(std::string_view /*key*/, std::span<const std::byte> /*value*/) override {}
    void remove(std::string_view /*key*/) override {}
    bool flush() override { return true; }

private:
    std::function<void()> m_asked;
};

class KORVENAppDelegateTest : public testing::Test {
protected:
    /// A delegate on a release with a main window.
    struct Program {
        Program(FakeServices &services, SystemRelease::Version version)
            : delegate((services.release.setVersion(version), services.all()))
        {
            delegate.setWindowController(&window);
        }
        FakeMainWindow window;
        KORVENAppDelegate delegate;
    };

    /// The six preferences in their order.
    static std::array<std::int32_t, 6> preferencesOf(const KORVENAppDelegate &delegate)
    {
        return {delegate.hiddenItemPreference(),       delegate.largeFilePreference(),
                delegate.showNotificationPreference(), delegate.notificationSoundPreference(),
                delegate.diskGraphColorPreference(),   delegate.folderGraphColorPreference()};
    }

    FakeServices m_services;
};

TEST_F(KORVENAppDelegateTest, storesTheDefaultsOnTheFirstRunEachAtOnce)
{
    const KORVENAppDelegate delegate(m_services.all());

    EXPECT_EQ(preferencesOf(delegate), (std::array{0, 4, 1, 1, 1, 1}));
    EXPECT_EQ(m_services.settings.log(),
              (Log{"setInteger hiddenItemPreference 0", "flush", "setInteger largeFilePreference 4",
                   "flush", "setInteger showNotificationPreference 1", "flush",
                   "setInteger notificationSoundPreference 1", "flush",
                   "setInteger diskGraphColorPreference 1", "flush",
                   "setInteger folderGraphColorPreference 1", "flush"}));
}

TEST_F(KORVENAppDelegateTest, asksForTheReleaseThenReadsThePreferencesThenSetsTheFlags)
{
    // The flags are looked at while the delegate is being constructed.
    std::allocator<KORVENAppDelegate> allocator;
    KORVENAppDelegate *const delegate = allocator.allocate(1);
    Log log;
    WatchedRelease release([&] { log.emplace_back("release"); });
    WatchedSettings settings([&] {
        log.emplace_back(delegate->run10p7Mode() ? "preference after the flags" : "preference");
    });
    const Services all = m_services.all();
    std::construct_at(delegate,
                      Services{settings, all.bookmarks, all.documents, release, all.notifier,
                               all.dates, all.previewPanels, all.fileManager, all.folderChooser,
                               all.account, all.volumes, all.applications, all.urls});
    EXPECT_TRUE(delegate->run10p7Mode());
    std::destroy_at(delegate);
    allocator.deallocate(delegate, 1);

    EXPECT_EQ(log, (Log{"release", "preference", "preference", "preference", "preference",
                        "preference", "preference"}));
}

TEST_F(KORVENAppDelegateTest, readsWhatIsStoredAndWritesNothing)
{
    m_services.settings.setInteger("hiddenItemPreference", 3);
    m_services.settings.setInteger("largeFilePreference", 2);
    for (const char *key : {"showNotificationPreference", "notificationSoundPreference",
                            "diskGraphColorPreference", "folderGraphColorPreference"}) {
        m_services.settings.setInteger(key, 0);
    }
    m_services.settings.clearLog();

    const KORVENAppDelegate delegate(m_services.all());

    EXPECT_EQ(preferencesOf(delegate), (std::array{3, 2, 0, 0, 0, 0}));
    EXPECT_EQ(m_services.settings.log(), Log{});
}

TEST_F(KORVENAppDelegateTest, storesOnlyThePreferencesThatAreMissing)
{
    m_services.settings.setInteger("largeFilePreference", 0);
    m_services.settings.clearLog();

    const KORVENAppDelegate delegate(m_services.all());

    EXPECT_EQ(preferencesOf(delegate), (std::array{0, 0, 1, 1, 1, 1}));
    EXPECT_EQ(m_services.settings.log().size(), 10U);
    EXPECT_EQ(m_services.settings.integer("largeFilePreference"), 0);
}

TEST_F(KORVENAppDelegateTest, readsWhatIsOnlySeenWhenTheDefaultsAreStored)
{
    m_services.settings.storeElsewhere("hiddenItemPreference", 3);
    m_services.settings.storeElsewhere("folderGraphColorPreference", 0);

    const KORVENAppDelegate delegate(m_services.all());

    EXPECT_EQ(preferencesOf(delegate), (std::array{3, 4, 1, 1, 1, 0}));
    EXPECT_EQ(m_services.settings.integer("hiddenItemPreference"), 3);
    EXPECT_EQ(m_services.settings.integer("folderGraphColorPreference"), 0);
}

TEST_F(KORVENAppDelegateTest, runsOnTheDefaultsWhenTheyCannotBeStored)
{
    m_services.settings.setFlushFails(true);

    const KORVENAppDelegate delegate(m_services.all());

    EXPECT_EQ(preferencesOf(delegate), (std::array{0, 4, 1, 1, 1, 1}));
}

TEST_F(KORVENAppDelegateTest, keepsAStoredValueThatNoRowHas)
{
    m_services.settings.setInteger("hiddenItemPreference", 7);
    m_services.settings.setInteger("largeFilePreference", -1);

    const KORVENAppDelegate delegate(m_services.all());

    EXPECT_EQ(delegate.hiddenItemPreference(), 7);
    EXPECT_EQ(delegate.largeFilePreference(), -1);
}

TEST_F(KORVENAppDelegateTest, keepsTheLow32BitsOfAStoredValue)
{
    m_services.settings.setInteger("hiddenItemPreference", 0x1'0000'0003);
    m_services.settings.setInteger("largeFilePreference", std::numeric_limits<std::int64_t>::max());

    const KORVENAppDelegate delegate(m_services.all());

    EXPECT_EQ(delegate.hiddenItemPreference(), 3);
    EXPECT_EQ(delegate.largeFilePreference(), -1);
}

TEST_F(KORVENAppDelegateTest, readsAStoredTextAs0AndLeavesItAlone)
{
    m_services.settings.setText("largeFilePreference", "4");

    const KORVENAppDelegate delegate(m_services.all());

    EXPECT_EQ(delegate.largeFilePreference(), 0);
    EXPECT_EQ(m_services.settings.text("largeFilePreference"), "4");
}

TEST_F(KORVENAppDelegateTest, isTheSharedOneAsLongAsItLives)
{
    const KORVENAppDelegate delegate(m_services.all());

    EXPECT_EQ(&KORVENAppDelegate::sharedDelegate(), &delegate);
}

TEST_F(KORVENAppDelegateTest, adaptsToReleases10Point7And10Point8Alone)
{
    const auto modes = [this](std::int32_t major, std::int32_t minor) {
        const Program program(m_services, {major, minor});
        return std::pair(program.delegate.run10p7Mode(), program.delegate.run10p8Mode());
    };
    EXPECT_EQ(modes(10, 7), std::pair(true, false));
    EXPECT_EQ(modes(10, 8), std::pair(false, true));
    EXPECT_EQ(modes(10, 9), std::pair(false, false));
    EXPECT_EQ(modes(11, 7), std::pair(false, false));
    EXPECT_EQ(modes(7, 10), std::pair(false, false));
    EXPECT_EQ(modes(0, 0), std::pair(false, false));
}

TEST_F(KORVENAppDelegateTest, tellsTheWindowOfTheLaunchOnOldReleasesAlone)
{
    for (const std::int32_t minor : {7, 8, 9, 10}) {
        Program program(m_services, {10, minor});
        EXPECT_EQ(program.window.log(), Log{}) << minor;

        program.delegate.applicationDidFinishLaunching();

        EXPECT_EQ(program.window.log(), minor <= 8 ? Log{"windowLoaded"} : Log{}) << minor;
    }
}

TEST_F(KORVENAppDelegateTest, endsTheProgramWithItsWindow)
{
    EXPECT_TRUE(KORVENAppDelegate::applicationShouldTerminateAfterLastWindowClosed());
    Program program(m_services, {});
    m_services.settings.clearLog();
    program.delegate.applicationWillTerminate();
    EXPECT_EQ(m_services.settings.log(), Log{});
    EXPECT_EQ(program.window.log(), Log{});
}

TEST_F(KORVENAppDelegateTest, notifiesOfCompletedAndOfCanceledScans)
{
    KORVENAppDelegate delegate(m_services.all());

    delegate.showCompletedNotification(u"Scan completed"_s);
    delegate.showCanceledNotification(u"Home folders scan canceled"_s, ScanScreen::home);

    const auto posted = m_services.notifier.notifications();
    ASSERT_EQ(posted.size(), 2U);
    EXPECT_EQ(posted[0].title, "Scan Completed");
    EXPECT_EQ(posted[0].text, "Scan completed");
    EXPECT_EQ(posted[0].sound, Sound::complete);
    EXPECT_EQ(posted[1].title, "Scan Canceled");
    EXPECT_EQ(posted[1].text, "Home folders scan canceled");
    EXPECT_EQ(posted[1].sound, Sound::message);
}

TEST_F(KORVENAppDelegateTest, notificationsOfOneScreenHaveOneOrigin)
{
    KORVENAppDelegate delegate(m_services.all());

    delegate.showCompletedNotification(u"1"_s, ScanScreen::folder);
    delegate.showCanceledNotification(u"2"_s, ScanScreen::folder);
    delegate.showCompletedNotification(u"3"_s, ScanScreen::home);
    delegate.showNotification(u"title"_s, u"4"_s);

    const auto posted = m_services.notifier.notifications();
    ASSERT_EQ(posted.size(), 4U);
    EXPECT_NE(posted[0].origin, "");
    EXPECT_EQ(posted[0].origin, posted[1].origin);
    EXPECT_NE(posted[2].origin, posted[0].origin);
    EXPECT_EQ(posted[3].origin, "");
    EXPECT_EQ(posted[3].title, "title");
}

TEST_F(KORVENAppDelegateTest, notifiesWithoutSoundWhenTheUserWantsNone)
{
    KORVENAppDelegate delegate(m_services.all());
    delegate.setNotificationSoundPreference(0);

    delegate.showCompletedNotification(u"Scan completed"_s);

    const auto posted = m_services.notifier.notifications();
    ASSERT_EQ(posted.size(), 1U);
    EXPECT_EQ(posted[0].sound, Sound::silent);
}

TEST_F(KORVENAppDelegateTest, doesNotNotifyWhenTheUserDoesNotWantTo)
{
    KORVENAppDelegate delegate(m_services.all());
    delegate.setShowNotificationPreference(0);

    delegate.showCompletedNotification(u"Scan completed"_s);
    delegate.showCanceledNotification(u"Scan canceled"_s);

    EXPECT_TRUE(m_services.notifier.notifications().empty());
}

TEST_F(KORVENAppDelegateTest, doesNotNotifyOnRelease10Point7WhateverThePreferences)
{
    Program program(m_services, {10, 7});
    ASSERT_EQ(program.delegate.showNotificationPreference(), 1);
    ASSERT_EQ(program.delegate.notificationSoundPreference(), 1);

    program.delegate.showCompletedNotification(u"Scan completed"_s);

    EXPECT_TRUE(m_services.notifier.notifications().empty());
}

TEST_F(KORVENAppDelegateTest, notifiesOnRelease10Point8)
{
    Program program(m_services, {10, 8});
    program.delegate.showCompletedNotification(u"Scan completed"_s);
    EXPECT_EQ(m_services.notifier.notifications().size(), 1U);
}

TEST_F(KORVENAppDelegateTest, showsNotificationsAlsoInFront)
{
    EXPECT_TRUE(KORVENAppDelegate::shouldPresentNotification({}));
}

TEST_F(KORVENAppDelegateTest, notifiesFromAnyThread)
{
    KORVENAppDelegate delegate(m_services.all());
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] { delegate.showCompletedNotification(u"Scan completed"_s); });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(m_services.notifier.notifications().size(), 4U);
}

TEST_F(KORVENAppDelegateTest, relaysToTheWindowWithTheSameArgument)
{
    Program program(m_services, {});
    program.delegate.historyStoreUpdated();
    program.delegate.reloadHistoryDelete("KEY 1");
    program.delegate.reloadHistoryDelete(std::nullopt);
    program.delegate.loadHistoryItem("KEY 2");
    program.delegate.scanClicked();

    EXPECT_EQ(program.window.log(),
              (Log{"historyStoreUpdated", "reloadHistoryDelete KEY 1", "reloadHistoryDelete (none)",
                   "loadHistoryItem KEY 2", "scanClicked"}));
}

TEST_F(KORVENAppDelegateTest, relaysNothingWithoutAWindow)
{
    KORVENAppDelegate delegate(m_services.all());
    ASSERT_EQ(delegate.windowController(), nullptr);
    delegate.historyStoreUpdated();
    delegate.reloadHistoryDelete("KEY");
    delegate.loadHistoryItem("KEY");
    delegate.scanClicked();
    delegate.applicationDidFinishLaunching();
    delegate.dumpHistoryStore();
}

TEST(NamedException, carriesItsNameAndReason)
{
    const NamedException exception("Singleton", "a reason");
    EXPECT_EQ(exception.name(), "Singleton");
    EXPECT_EQ(exception.reason(), "a reason");
    EXPECT_STREQ(exception.what(), "a reason");
}

} // namespace
} // namespace tessaly
