#include "platform/linux/volumes/VolumeFiguresReader.hpp"

#include "tests/platform/linux/WaitUntil.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace tessaly {

namespace {

using Figures = VolumeFiguresReader::Figures;
using Space = VolumeFiguresReader::Space;
using Answers = std::vector<Space>;

constexpr std::chrono::milliseconds hardlyAny(20);
constexpr std::chrono::hours longEnough(1);

/// Volumes of which some do not answer until they are let. It may be asked for longer than the
/// test lasts.
class Volumes {
public:
    [[nodiscard]] VolumeFiguresReader::Source source() const
    {
        return [state = m_state](
                   const VolumeFiguresReader::Place &place) -> VolumeFiguresReader::Reading {
            const std::string &path = place.path;
            std::unique_lock lock(state->mutex);
            ++state->askedCount;
            state->hasChanged.notify_all();
            if (path.starts_with("/dead")) {
                state->hasChanged.wait(lock, [&] { return state->isAlive; });
            }
            if (path == "/stopped") {
                return std::nullopt;
            }
            const bool isError = path == "/none" || state->isBroken;
            return isError ? Figures() : VolumeFigures{path.size(), state->free};
        };
    }

    void letDeadAnswer() const
    {
        const std::scoped_lock lock(m_state->mutex);
        m_state->isAlive = true;
        m_state->hasChanged.notify_all();
    }

    void letDeadHang() const
    {
        const std::scoped_lock lock(m_state->mutex);
        m_state->isAlive = false;
    }

    /// What all have free from now on.
    void setFree(std::uint64_t byteCount) const
    {
        const std::scoped_lock lock(m_state->mutex);
        m_state->free = byteCount;
    }

    /// Whether all answer with an error from now on.
    void setBroken(bool isBroken) const
    {
        const std::scoped_lock lock(m_state->mutex);
        m_state->isBroken = isBroken;
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
        bool isBroken = false;
        std::uint64_t free = 1;
    };

    std::shared_ptr<State> m_state = std::make_shared<State>();
};

Space space(std::uint64_t total, std::uint64_t free, bool isOld = false)
{
    return {VolumeFigures{total, free}, isOld};
}

/// Asks, and runs the event loop until there is an answer.
Answers answersOf(VolumeFiguresReader &reader,
                  const std::vector<VolumeFiguresReader::Place> &places,
                  std::chrono::milliseconds timeout)
{
    std::optional<Answers> answers;
    reader.read(places, timeout, [&](Answers figures) { answers = std::move(figures); }, {});
    EXPECT_FALSE(answers); // it never answers at once
    waitUntil([&] { return answers.has_value(); });
    return *answers;
}

TEST(VolumeFiguresReader, answersInTheOrderOfTheQuestion)
{
    const Volumes volumes;
    VolumeFiguresReader reader(volumes.source());
    EXPECT_EQ(answersOf(reader, {{"/abc", 1}, {"/none", 2}, {"/a", 3}, {"/abc", 1}}, longEnough),
              (Answers{space(4, 1), Space(), space(2, 1), space(4, 1)}));
    EXPECT_EQ(answersOf(reader, {}, longEnough), Answers{});
}

TEST(VolumeFiguresReader, asksAllAtOnceAndElsewhere)
{
    const auto here = std::this_thread::get_id();
    auto isElsewhere = std::make_shared<std::atomic<bool>>(true);
    auto together = std::make_shared<std::atomic<int>>(0);
    VolumeFiguresReader reader([=](const VolumeFiguresReader::Place &) -> Figures {
        *isElsewhere = *isElsewhere && std::this_thread::get_id() != here;
        ++*together;
        while (*together < 3) { // none answers before all are asked
            std::this_thread::yield();
        }
        return VolumeFigures{1, 1};
    });
    const Answers answers = answersOf(reader, {{"/a", 1}, {"/b", 2}, {"/c", 3}}, longEnough);
    EXPECT_EQ(answers, Answers(3, space(1, 1)));
    EXPECT_TRUE(*isElsewhere);
}

TEST(VolumeFiguresReader, doesNotWaitForAVolumeThatIsDead)
{
    const Volumes volumes;
    VolumeFiguresReader reader(volumes.source());
    EXPECT_EQ(answersOf(reader, {{"/dead", 1}}, hardlyAny), Answers(1));
}

TEST(VolumeFiguresReader, answersForTheLivingInTime)
{
    const Volumes volumes;
    VolumeFiguresReader reader(volumes.source());
    Answers answers;
    do { // where the machine is busy, the living may need some time, too
        answers = answersOf(reader, {{"/dead", 1}, {"/a", 2}}, hardlyAny);
        ASSERT_EQ(answers.size(), 2U);
        EXPECT_EQ(answers[0], Space());
    } while (answers[1] != space(2, 1));
}

TEST(VolumeFiguresReader, hasOneThreadForADeadVolumeHoweverOftenItIsAsked)
{
    const Volumes volumes;
    VolumeFiguresReader reader(volumes.source());
    for (int count = 0; count < 5; ++count) {
        EXPECT_EQ(answersOf(reader, {{"/dead", 1}, {"/dead", 1}}, hardlyAny), Answers(2));
    }
    volumes.waitUntilAsked(1);
    EXPECT_EQ(volumes.askedCount(), 1);

    // Another volume at the same path is another one.
    EXPECT_EQ(answersOf(reader, {{"/dead", 2}}, hardlyAny), Answers(1));
    volumes.waitUntilAsked(2);
}

TEST(VolumeFiguresReader, takesTheAnswerOfAVolumeThatComesBack)
{
    const Volumes volumes;
    VolumeFiguresReader reader(volumes.source());
    ASSERT_EQ(answersOf(reader, {{"/dead", 1}}, hardlyAny), Answers(1));

    std::optional<Answers> answers;
    reader.read({{"/dead", 1}}, longEnough, [&](Answers figures) { answers = std::move(figures); },
                {});
    volumes.letDeadAnswer();
    waitUntil([&] { return answers.has_value(); });
    EXPECT_EQ(*answers, Answers(1, space(5, 1)));
    EXPECT_EQ(volumes.askedCount(), 1);

    EXPECT_EQ(answersOf(reader, {{"/dead", 1}}, longEnough), Answers(1, space(5, 1)));
    EXPECT_EQ(volumes.askedCount(), 2);
}

TEST(VolumeFiguresReader, answersOnceAndNotAfterItIsDestroyed)
{
    const Volumes volumes;
    int answerCount = 0;
    const auto countLate = [&](std::size_t, const Figures &) { ++answerCount; };
    auto reader = std::make_unique<VolumeFiguresReader>(volumes.source());
    reader->read(
        {{"/dead", 1}}, hardlyAny, [&](const Answers &) { ++answerCount; }, countLate);
    waitUntil([&] { return answerCount == 1; });
    reader->read(
        {{"/dead", 1}}, hardlyAny, [&](const Answers &) { ++answerCount; }, countLate);
    reader.reset(); // returns, though the thread never does
    volumes.letDeadAnswer();
    VolumeFiguresReader other(volumes.source());
    (void)answersOf(other, {{"/a", 1}}, longEnough);
    EXPECT_EQ(answerCount, 1);
}

/// A reader that has read a volume once, which hangs from then on.
class SlowVolumeTest : public testing::Test {
protected:
    using Late = std::vector<std::pair<std::size_t, Figures>>;

    SlowVolumeTest()
    {
        m_volumes.letDeadAnswer();
        EXPECT_EQ(answersOf(m_reader, {{"/a", 1}, {"/dead", 2}}, longEnough),
                  (Answers{space(2, 1), space(5, 1)}));
        m_volumes.letDeadHang();
        m_volumes.setFree(2);
    }

    /// Asks both, and takes what comes late as well.
    [[nodiscard]] Answers ask(const std::vector<VolumeFiguresReader::Place> &places)
    {
        std::optional<Answers> answers;
        m_reader.read(
            places, hardlyAny, [&](Answers spaces) { answers = std::move(spaces); },
            [this](std::size_t index, const Figures &figures) {
                m_late.emplace_back(index, figures);
            });
        waitUntil([&] { return answers.has_value(); });
        return *answers;
    }

    const Volumes m_volumes;
    VolumeFiguresReader m_reader{m_volumes.source()};
    Late m_late;
};

TEST_F(SlowVolumeTest, keepsItsLastFiguresMarkedAsOld)
{
    for (int count = 0; count < 2; ++count) {
        EXPECT_EQ(ask({{"/dead", 2}}), (Answers{space(5, 1, true)}));
    }
    EXPECT_EQ(ask({{"/dead", 3}}), Answers(1)) << "another volume at the same path";
    EXPECT_EQ(ask({{"/dead", 2}}), Answers(1)) << "it was gone meanwhile";
}

TEST_F(SlowVolumeTest, isHeardWhenItAnswersLate)
{
    EXPECT_EQ(ask({{"/a", 1}, {"/dead", 2}}).at(1), space(5, 1, true));
    EXPECT_EQ(m_late, Late{});
    m_volumes.letDeadAnswer();
    waitUntil([this] { return !m_late.empty(); });
    EXPECT_EQ(m_late, (Late{{1, VolumeFigures{5, 2}}}));
    EXPECT_EQ(answersOf(m_reader, {{"/dead", 2}}, longEnough), Answers{space(5, 2)});
}

TEST_F(SlowVolumeTest, isHeardByTheLastWhoAskedAlone)
{
    (void)ask({{"/a", 1}, {"/dead", 2}});
    (void)ask({{"/dead", 2}});
    m_volumes.letDeadAnswer();
    waitUntil([this] { return !m_late.empty(); });
    EXPECT_EQ(m_late, (Late{{0, VolumeFigures{5, 2}}}));
}

TEST_F(SlowVolumeTest, keepsItsLastFiguresWhenItAnswersWithAnError)
{
    m_volumes.setBroken(true);
    for (int count = 0; count < 2; ++count) {
        EXPECT_EQ(answersOf(m_reader, {{"/a", 1}, {"/none", 7}}, longEnough),
                  (Answers{space(2, 1, true), Space()}));
    }
    EXPECT_EQ(answersOf(m_reader, {{"/a", 1}, {"/a", 3}}, longEnough),
              (Answers{space(2, 1, true), Space()}))
        << "another volume at the same path";
    m_volumes.setBroken(false);
    EXPECT_EQ(answersOf(m_reader, {{"/a", 1}}, longEnough), Answers{space(2, 2)});
}

TEST_F(SlowVolumeTest, keepsItsLastFiguresWhenTheErrorComesLate)
{
    bool isToldLate = false;
    auto question = std::make_shared<int>();
    const std::weak_ptr<int> pending = question;
    std::optional<Answers> answers;
    m_reader.read(
        {{"/dead", 2}}, hardlyAny, [&](Answers spaces) { answers = std::move(spaces); },
        [&, question](std::size_t, const VolumeFigures &) { isToldLate = true; });
    question.reset();
    waitUntil([&] { return answers.has_value(); });
    EXPECT_EQ(answers, Answers{space(5, 1, true)});

    m_volumes.setBroken(true);
    m_volumes.letDeadAnswer();
    waitUntil([&] { return pending.expired(); }); // nothing more comes of the question
    EXPECT_FALSE(isToldLate);
    EXPECT_EQ(answersOf(m_reader, {{"/dead", 2}}, longEnough), Answers{space(5, 1, true)});
}

TEST_F(SlowVolumeTest, hasNoFiguresKeptForAPathWithoutAVolume)
{
    EXPECT_EQ(answersOf(m_reader, {{"/a", 0}}, longEnough), Answers{space(2, 2)});
    m_volumes.setBroken(true);
    EXPECT_EQ(answersOf(m_reader, {{"/a", 0}}, longEnough), Answers(1));
}

TEST(VolumeFiguresReader, aQuestionThatWasStoppedIsNoAnswer)
{
    const Volumes volumes;
    VolumeFiguresReader reader(volumes.source());
    EXPECT_EQ(answersOf(reader, {{"/stopped", 1}, {"/a", 2}}, hardlyAny),
              (Answers{Space(), space(2, 1)}));
    EXPECT_EQ(answersOf(reader, {{"/stopped", 1}}, hardlyAny), Answers(1));
    EXPECT_EQ(volumes.askedCount(), 3) << "it can be asked again";
}

} // namespace

} // namespace tessaly
