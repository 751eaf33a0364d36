#include "screens/results/ResultModel.hpp"

#include "engine/tree/LUMFileContainer.hpp"
#include "tests/engine/tree/TreeBuilder.hpp"

#include <QSignalSpy>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace tessaly {
namespace {

using Names = std::vector<std::string>;

/// How often a model has sent each of its signals.
struct SignalCounts {
    int level = 0;
    int rows = 0;
    int order = 0;
    int selection = 0;

    friend bool operator==(const SignalCounts &, const SignalCounts &) = default;
    friend std::ostream &operator<<(std::ostream &out, const SignalCounts &counts)
    {
        return out << "level " << counts.level << ", rows " << counts.rows << ", order "
                   << counts.order << ", selection " << counts.selection;
    }
};

/// A model without any view, whose paths tell how they were made.
class ResultModelTest : public testing::Test {
protected:
    ResultModelTest()
    {
        QObject::connect(&m_model, &ResultModel::levelChanged, &m_model, [&] { ++m_sent.level; });
        QObject::connect(&m_model, &ResultModel::rowsChanged, &m_model, [&] { ++m_sent.rows; });
        QObject::connect(&m_model, &ResultModel::orderChanged, &m_model, [&] { ++m_sent.order; });
        QObject::connect(&m_model, &ResultModel::selectionChanged, &m_model,
                         [&] { ++m_sent.selection; });
    }

    void show(const std::shared_ptr<tree::ScanTree> &tree)
    {
        m_model.setResult(tree, resultRowsOf(&tree->root(), m_thresholds));
        m_sent = {};
    }
    void showUsual()
    {
        show(makeTree("/f", {folder("large", {file("x", 50), folder("deep", {file("y", 5)})}),
                             file("Zeta", 30), file("alpha", 20), folder("empty"),
                             folder(".hidden", {file("z", 1)})}));
    }
    [[nodiscard]] Names names() const
    {
        Names names;
        for (const KORVENFolderObject &row : m_model.rows()) {
            names.emplace_back(row.folderName());
        }
        return names;
    }
    [[nodiscard]] std::string selectedName() const
    {
        return m_model.selection() ? m_model.selection()->name : "(none)";
    }

    RowThresholds m_thresholds{.hiddenItem = 0, .largeFile = 1};
    ResultModel m_model{{[](const std::string &folder, std::string_view name) {
                             return folder + ">" + std::string(name);
                         },
                         [](const std::string &folder) { return folder + "<"; }},
                        [this] { return m_thresholds; }};
    SignalCounts m_sent;
};

TEST_F(ResultModelTest, startsWithNothing)
{
    EXPECT_FALSE(m_model.hasTree());
    EXPECT_EQ(m_model.folder(), nullptr);
    EXPECT_EQ(m_model.path(), std::nullopt);
    EXPECT_TRUE(m_model.rows().empty());
    EXPECT_EQ(m_model.total(), 0);
    EXPECT_EQ(m_model.order(), RowOrder::size);
    EXPECT_EQ(m_model.selection(), std::nullopt);
    EXPECT_FALSE(m_model.isBelowTop());
    EXPECT_FALSE(m_model.drillUp());
    EXPECT_EQ(m_sent, SignalCounts{});
}

TEST_F(ResultModelTest, showsAResultFromItsTop)
{
    const auto tree = makeTree("/f", {file("small", 10), folder("large", {file("x", 20)})});
    m_model.setResult(tree, resultRowsOf(&tree->root(), m_thresholds));
    EXPECT_TRUE(m_model.hasTree());
    EXPECT_EQ(m_model.folder(), &tree->root());
    EXPECT_EQ(m_model.path(), "/f");
    EXPECT_EQ(names(), (Names{"large", "small"}));
    EXPECT_EQ(m_model.total(), 30);
    EXPECT_EQ(m_model.selection(), (ResultItem{&tree->root(), "large"}));
    EXPECT_EQ(m_model.selectedRow(), 0U);
    EXPECT_FALSE(m_model.isBelowTop());
    EXPECT_FALSE(m_model.canDrillUp());
    EXPECT_EQ(m_sent, (SignalCounts{1, 1, 1, 1}));
}

TEST_F(ResultModelTest, aResultWithoutATreeHasNeitherRowsNorPath)
{
    showUsual();
    m_model.setResult(nullptr, {});
    EXPECT_FALSE(m_model.hasTree());
    EXPECT_EQ(m_model.folder(), nullptr);
    EXPECT_EQ(m_model.path(), std::nullopt);
    EXPECT_EQ(names(), Names{});
    EXPECT_EQ(m_model.selection(), std::nullopt);
    EXPECT_EQ(m_sent, (SignalCounts{1, 1, 1, 1}));
}

TEST_F(ResultModelTest, signalsAreSentWhenTheWholeChangeIsDone)
{
    showUsual();
    m_model.setOrder(RowOrder::name);
    std::vector<Names> seen;
    const auto look = [&] {
        seen.push_back(names());
        EXPECT_EQ(m_model.path(), "/f>large");
        EXPECT_EQ(m_model.total(), 55);
        EXPECT_EQ(m_model.order(), RowOrder::size);
        EXPECT_EQ(selectedName(), "x");
    };
    for (const auto signal : {&ResultModel::levelChanged, &ResultModel::rowsChanged,
                              &ResultModel::orderChanged, &ResultModel::selectionChanged}) {
        QObject::connect(&m_model, signal, &m_model, look);
    }
    m_model.drillDown("large");
    EXPECT_EQ(seen, std::vector<Names>(4, Names{"x", "deep"}));
}

TEST_F(ResultModelTest, aTreeIsKeptAsLongAsItIsShown)
{
    auto tree = makeTree("/f", {folder("d", {file("x", 10)})});
    const std::weak_ptr<tree::ScanTree> kept = tree;
    show(std::exchange(tree, nullptr));
    m_model.drillDown("d");
    m_model.clearRows();
    EXPECT_FALSE(kept.expired());
    m_model.setResult(nullptr, {});
    EXPECT_TRUE(kept.expired());
}

TEST_F(ResultModelTest, theTotalIsOfSinglePrecisionAndOfWhatIsNotListedToo)
{
    m_thresholds = {.hiddenItem = 0, .largeFile = 0};
    show(makeTree("/f", {file(".hidden", (1U << 24U)), file("plain", 1)}));
    EXPECT_EQ(names(), Names{});
    EXPECT_EQ(m_model.total(), 16'777'216.0F);
}

TEST_F(ResultModelTest, goesDownToAChild)
{
    showUsual();
    m_model.setOrder(RowOrder::name);
    m_sent = {};
    EXPECT_TRUE(m_model.drillDown("large"));
    EXPECT_EQ(m_model.path(), "/f>large");
    EXPECT_EQ(names(), (Names{"x", "deep"}));
    EXPECT_EQ(m_model.total(), 55);
    EXPECT_EQ(m_model.order(), RowOrder::size) << "every level is first shown by size";
    EXPECT_EQ(selectedName(), "x");
    EXPECT_TRUE(m_model.isBelowTop());
    EXPECT_TRUE(m_model.canDrillUp());
    EXPECT_EQ(m_sent, (SignalCounts{1, 1, 1, 1}));
}

TEST_F(ResultModelTest, aNameOfNoFolderLeadsToAnEmptyLevelWithoutAWayBack)
{
    for (const char *name : {"no such name", "alpha"}) {
        SCOPED_TRACE(name);
        showUsual();
        EXPECT_TRUE(m_model.drillDown(name));
        EXPECT_EQ(m_model.path(), std::string("/f>") + name);
        EXPECT_EQ(m_model.folder(), nullptr);
        EXPECT_EQ(names(), Names{});
        EXPECT_EQ(m_model.total(), 0);
        EXPECT_EQ(m_model.selection(), std::nullopt);
        EXPECT_TRUE(m_model.hasTree());
        EXPECT_TRUE(m_model.isBelowTop());
        EXPECT_FALSE(m_model.drillUp());
    }
}

TEST_F(ResultModelTest, goesUpAndSelectsTheFolderThatWasLeft)
{
    showUsual();
    m_model.drillDown("empty");
    EXPECT_TRUE(m_model.drillUp());
    EXPECT_EQ(m_model.path(), "/f>empty<");
    EXPECT_EQ(names(), (Names{"large", "Zeta", "alpha", "empty"}));
    EXPECT_EQ(selectedName(), "empty");
    EXPECT_EQ(m_model.selectedRow(), 3U);
    EXPECT_FALSE(m_model.isBelowTop());
    EXPECT_FALSE(m_model.drillUp());
    EXPECT_EQ(m_model.path(), "/f>empty<") << "at the top there is nothing above";
}

TEST_F(ResultModelTest, goesUpFromAFolderThatIsNotListedToTheFirstRow)
{
    showUsual();
    m_model.drillDown(".hidden");
    EXPECT_TRUE(m_model.drillUp());
    EXPECT_EQ(selectedName(), "large");
}

TEST_F(ResultModelTest, whileItIsLockedThereIsNoWayDownNorUp)
{
    showUsual();
    m_model.drillDown("large");
    std::thread([this] { m_model.setLocked(true); }).join();
    m_sent = {};
    EXPECT_FALSE(m_model.drillDown("deep"));
    EXPECT_FALSE(m_model.canDrillUp());
    EXPECT_FALSE(m_model.drillUp());
    EXPECT_EQ(m_model.path(), "/f>large");
    EXPECT_EQ(m_sent, SignalCounts{});
    m_model.refresh();
    EXPECT_EQ(m_sent.rows, 1) << "rows are made all the same";
    m_model.setLocked(false);
    EXPECT_TRUE(m_model.drillUp());
}

TEST_F(ResultModelTest, clearedRowsComeBackWithoutTheirPath)
{
    showUsual();
    m_model.drillDown("large");
    m_model.setOrder(RowOrder::name);
    m_sent = {};
    m_model.clearRows();
    EXPECT_EQ(names(), Names{});
    EXPECT_EQ(m_model.path(), std::nullopt);
    EXPECT_EQ(m_model.selection(), std::nullopt);
    EXPECT_EQ(m_model.order(), RowOrder::name);
    EXPECT_EQ(m_sent, (SignalCounts{1, 1, 0, 1}));

    m_model.refresh();
    EXPECT_EQ(names(), (Names{"x", "deep"}));
    EXPECT_EQ(m_model.path(), std::nullopt);
    EXPECT_FALSE(m_model.canDrillUp()) << "it could not be found on the disk";
    EXPECT_FALSE(m_model.isBelowTop());

    m_model.drillDown("deep");
    EXPECT_EQ(m_model.path(), "deep");
    EXPECT_TRUE(m_model.isBelowTop());
    EXPECT_TRUE(m_model.drillUp());
    EXPECT_EQ(m_model.path(), "deep<");
}

TEST_F(ResultModelTest, aSilentReplacementShowsWithTheNextChange)
{
    showUsual();
    m_model.drillDown("large");
    m_sent = {};
    const auto other = makeTree("/g", {file("new", 10)});
    m_model.replaceSilently(other, resultRowsOf(&other->root(), m_thresholds));
    EXPECT_EQ(m_sent, SignalCounts{});
    EXPECT_EQ(names(), Names{"new"});
    EXPECT_EQ(m_model.total(), 10);
    EXPECT_EQ(m_model.folder(), &other->root());
    EXPECT_EQ(m_model.path(), "/f>large");
    EXPECT_EQ(m_model.selection(), std::nullopt);
    m_model.refresh();
    EXPECT_EQ(m_sent.rows, 1);
    EXPECT_EQ(names(), Names{"new"});
}

TEST_F(ResultModelTest, refreshingAsksForTheThresholdsAgainAndSortsBySize)
{
    showUsual();
    m_model.setOrder(RowOrder::name);
    m_sent = {};
    m_thresholds = {.hiddenItem = 0, .largeFile = 20};
    m_model.refresh();
    EXPECT_EQ(names(), (Names{"large", "Zeta", "empty"}));
    EXPECT_EQ(m_model.order(), RowOrder::size);
    EXPECT_EQ(m_sent, (SignalCounts{1, 1, 1, 1}));
}

TEST_F(ResultModelTest, sortsAndSelectsTheFirstRow)
{
    showUsual();
    m_model.select(m_model.itemAt(2));
    m_sent = {};
    m_model.setOrder(RowOrder::name);
    EXPECT_EQ(names(), (Names{"Zeta", "alpha", "empty", "large"}));
    EXPECT_EQ(m_model.order(), RowOrder::name);
    EXPECT_EQ(selectedName(), "Zeta");
    EXPECT_EQ(m_sent, (SignalCounts{0, 1, 1, 1}));
    m_model.setOrder(RowOrder::size);
    EXPECT_EQ(names(), (Names{"large", "Zeta", "alpha", "empty"}));
    EXPECT_EQ(selectedName(), "large");
}

TEST_F(ResultModelTest, selectsByWhatAnItemIsAndSaysSoOnce)
{
    showUsual();
    const ResultItem alpha = m_model.itemAt(2);
    EXPECT_EQ(alpha, (ResultItem{m_model.folder(), "alpha"}));
    m_model.select(alpha);
    m_model.select(alpha);
    EXPECT_EQ(m_model.selection(), alpha);
    EXPECT_EQ(m_model.selectedRow(), 2U);
    EXPECT_EQ(m_sent, (SignalCounts{0, 0, 0, 1}));
}

TEST_F(ResultModelTest, anItemOfAnotherLevelMayBeSelectedAndHasNoRow)
{
    showUsual();
    const tree::LUMFileContainer *top = m_model.folder();
    m_model.drillDown("large");
    const tree::LUMFileContainer *large = m_model.folder();
    m_model.drillUp();
    m_model.select({large, "x"});
    EXPECT_EQ(m_model.selection(), (ResultItem{large, "x"}));
    EXPECT_EQ(m_model.selectedRow(), std::nullopt);
    m_model.select({large, "alpha"});
    EXPECT_EQ(m_model.selectedRow(), std::nullopt) << "a name of this level, but another item";
    m_model.select({top, ".hidden"});
    EXPECT_EQ(m_model.selectedRow(), std::nullopt) << "not listed";
}

} // namespace
} // namespace tessaly
