#include "platform/linux/VolumeFiguresReader.hpp"

#include "tests/engine/TemporaryFolder.hpp"
#include "tests/platform/linux/WaitUntil.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <sys/statvfs.h>

namespace tessaly {

namespace {

using Figures = VolumeFiguresReader::Figures;
using Answers = std::vector<Figures>;

constexpr std::chrono::milliseconds hardlyAny(20);
constexpr std::chrono::hours longEnough(1);

/// Volumes of which some do not answer until they are let. It may be asked for longer than the
/// test lasts.
class Volumes {
public:
    [[nodiscard]] VolumeFiguresReader::Source source() const
    {
        return [state = m_state](const std::string &path) -> Figures {
            std::unique_lock lock(state->mutex);
            ++state->askedCount;
            state->hasChanged.notify_all();
            if (path.starts_with("/dead")) {
                state->hasChanged.wait(lock, [&] { return state->isAlive; });
            }
            if (path == "/none") {
                return std::nullopt;
            }
            return VolumeFigures{path.size(), 1};
        };
    }

    void letDeadAnswer() const
    {
        const std::scoped_lock lock(m_state->mutex);
        m_state->isAlive = true;
        m_state->hasChanged.notify_all();
    }

    void waitUntilAsked(int count) const
    {
        std::unique_lock lock(m_state->mutex);
        m_state->hasChanged.wait(lock, [&] { return m_state->askedCount >= count; });
    }

    [[nodiscard]] int askedCount() const
    {
        const std::scoped_lock lock(m_state->mutex);
        return m_state->askedCount;
    }

private:
    struct State {
        std::mutex mutex;
        std::condition_variable hasChanged;
        int askedCount = 0;
        bool isAlive = false;
    };

    std::shared_ptr<State> m_state = std::make_shared<State>();
};

/// Asks, and runs the event loop until there is an answer.
Answers answersOf(VolumeFiguresReader &reader,
                  const std::vector<VolumeFiguresReader::Place> &places,
                  std::chrono::milliseconds patience)
{
    std::optional<Answers> answers;
    reader.read(places, patience, [&](Answers figures) { answers = std::move(figures); });
    EXPECT_FALSE(answers); // it never answers at once
    waitUntil([&] { return answers.has_value(); });
    return *answers;
}

TEST(VolumeFiguresReader, answersInTheOrderOfTheQuestion)
{
    const Volumes volumes;
    VolumeFiguresReader reader(volumes.source());
    EXPECT_EQ(
        answersOf(reader, {{"/abc", 1}, {"/none", 2}, {"/a", 3}, {"/abc", 1}}, longEnough),
        (Answers{VolumeFigures{4, 1}, std::nullopt, VolumeFigures{2, 1}, VolumeFigures{4, 1}}));
    EXPECT_EQ(answersOf(reader, {}, longEnough), Answers{});
}

TEST(VolumeFiguresReader, asksAllAtOnceAndElsewhere)
{
    const auto here = std::this_thread::get_id();
    auto isElsewhere = std::make_shared<std::atomic<bool>>(true);
    auto together = std::make_shared<std::atomic<int>>(0);
    VolumeFiguresReader reader([=](const std::string &) -> Figures {
        *isElsewhere = *isElsewhere && std::this_thread::get_id() != here;
        ++*together;
        while (*together < 3) { // none answers before all are asked
            std::this_thread::yield();
        }
        return VolumeFigures{1, 1};
    });
    const Answers answers = answersOf(reader, {{"/a", 1}, {"/b", 2}, {"/c", 3}}, longEnough);
    EXPECT_EQ(answers, Answers(3, VolumeFigures{1, 1}));
    EXPECT_TRUE(*isElsewhere);
}

TEST(VolumeFiguresReader, doesNotWaitForAVolumeThatIsDead)
{
    const Volumes volumes;
    VolumeFiguresReader reader(volumes.source());
    EXPECT_EQ(answersOf(reader, {{"/dead", 1}}, hardlyAny), Answers{std::nullopt});
}

TEST(VolumeFiguresReader, answersForTheLivingInTime)
{
    const Volumes volumes;
    VolumeFiguresReader reader(volumes.source());
    std::optional<Answers> answers;
    reader.read({{"/dead", 1}, {"/a", 2}}, std::chrono::milliseconds(500),
                [&](Answers figures) { answers = std::move(figures); });
    volumes.waitUntilAsked(2);
    waitUntil([&] { return answers.has_value(); });
    EXPECT_EQ(*answers, (Answers{std::nullopt, VolumeFigures{2, 1}}));
}

TEST(VolumeFiguresReader, hasOneThreadForADeadVolumeHoweverOftenItIsAsked)
{
    const Volumes volumes;
    VolumeFiguresReader reader(volumes.source());
    for (int count = 0; count < 5; ++count) {
        EXPECT_EQ(answersOf(reader, {{"/dead", 1}, {"/dead", 1}}, hardlyAny),
                  Answers(2, std::nullopt));
    }
    volumes.waitUntilAsked(1);
    EXPECT_EQ(volumes.askedCount(), 1);

    // Another volume at the same path is another one.
    EXPECT_EQ(answersOf(reader, {{"/dead", 2}}, hardlyAny), Answers{std::nullopt});
    volumes.waitUntilAsked(2);
}

TEST(VolumeFiguresReader, takesTheAnswerOfAVolumeThatComesBack)
{
    const Volumes volumes;
    VolumeFiguresReader reader(volumes.source());
    ASSERT_EQ(answersOf(reader, {{"/dead", 1}}, hardlyAny), Answers{std::nullopt});

    std::optional<Answers> answers;
    reader.read({{"/dead", 1}}, longEnough, [&](Answers figures) { answers = std::move(figures); });
    volumes.letDeadAnswer();
    waitUntil([&] { return answers.has_value(); });
    EXPECT_EQ(*answers, Answers(1, VolumeFigures{5, 1}));
    EXPECT_EQ(volumes.askedCount(), 1);

    EXPECT_EQ(answersOf(reader, {{"/dead", 1}}, longEnough), Answers(1, VolumeFigures{5, 1}));
    EXPECT_EQ(volumes.askedCount(), 2);
}

TEST(VolumeFiguresReader, answersOnceAndNotWhenItIsGone)
{
    const Volumes volumes;
    int answerCount = 0;
    auto reader = std::make_unique<VolumeFiguresReader>(volumes.source());
    reader->read({{"/dead", 1}}, hardlyAny, [&](const Answers &) { ++answerCount; });
    waitUntil([&] { return answerCount == 1; });
    reader->read({{"/dead", 1}}, hardlyAny, [&](const Answers &) { ++answerCount; });
    reader.reset(); // returns, though the thread never does
    volumes.letDeadAnswer();
    VolumeFiguresReader other(volumes.source());
    (void)answersOf(other, {{"/a", 1}}, longEnough);
    EXPECT_EQ(answerCount, 1);
}

TEST(VolumeFiguresReader, readsWhatTheSystemSays)
{
    const TemporaryFolder folder;
    const Figures figures = VolumeFiguresReader::figuresAt(folder.path());
    struct statvfs status = {};
    ASSERT_EQ(statvfs(folder.path().c_str(), &status), 0);

    ASSERT_TRUE(figures);
    EXPECT_EQ(figures->total, status.f_blocks * status.f_frsize);
    EXPECT_LE(figures->free, figures->total);
    EXPECT_EQ(VolumeFiguresReader::figuresAt(folder.path("missing")), std::nullopt);
    EXPECT_EQ(VolumeFiguresReader::figuresAt("/proc"), (VolumeFigures{0, 0}));
}

} // namespace

} // namespace tessaly
