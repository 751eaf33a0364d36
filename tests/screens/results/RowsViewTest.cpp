#include "screens/results/RowsView.hpp"

#include "app/controls/tables/CellTableView.hpp"
#include "app/controls/text/NameLabel.hpp"
#include "app/delegate/KORVENAppDelegate.hpp"
#include "screens/results/KORVENFolderCellView.hpp"
#include "screens/results/KORVENViewController.hpp"
#include "screens/results/ResultModel.hpp"
#include "tests/engine/tree/TreeBuilder.hpp"
#include "tests/fakes/FakeServices.hpp"

#include <QAbstractItemModelTester>
#include <QScrollBar>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

/// What the cells call on, without a screen.
class ScreenOfRows final : public KORVENViewController {
public:
    ScreenOfRows(const Services &services, ResultModel &model)
        : KORVENViewController(services), m_model(model)
    {
    }

    void drillDownOneLevel(std::string_view name) override { m_model.drillDown(name); }
    [[nodiscard]] bool canActOnRows() const override { return m_model.path().has_value(); }

private:
    ResultModel &m_model;
};

/// Two views of one model below each other, so that each shows what the other has done.
class RowsViewTest : public testing::Test {
protected:
    RowsViewTest()
    {
        auto *layout = new QVBoxLayout(&m_window);
        layout->addWidget(&m_table);
        layout->addWidget(&m_otherTable);
        m_window.resize(600, 600);
        m_window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_window));
    }
    ~RowsViewTest() override
    {
        m_view.reset();
        m_otherView.reset();
    }

    std::unique_ptr<RowsView> viewIn(CellTableView &table)
    {
        return std::make_unique<RowsView>(
            table, m_model, m_screen, u"cell"_s,
            [](const KORVENFolderObject &) { return u"trash.png"_s; });
    }
    void show(std::vector<PlannedNode> children)
    {
        const auto tree = makeTree("/f", std::move(children));
        m_model.setResult(tree, resultRowsOf(&tree->root(), {1, 1}));
    }
    void showMany(int count)
    {
        std::vector<PlannedNode> folders;
        for (int i = 0; i < count; ++i) {
            folders.push_back(folder("d" + std::to_string(i),
                                     {file("x", static_cast<std::uint64_t>(10'000 - i))}));
        }
        show(std::move(folders));
    }
    static QString nameIn(const CellTableView &table, int row)
    {
        const auto *cell = qobject_cast<KORVENFolderCellView *>(table.cellForRow(row));
        return cell != nullptr ? cell->folderName()->text() : u"(no cell)"_s;
    }

    FakeServices m_services;
    KORVENAppDelegate m_delegate{m_services.all()};
    ResultModel m_model{{[](const std::string &folder, std::string_view name) {
                             return folder + '/' + std::string(name);
                         },
                         [](const std::string &folder) { return folder; }},
                        [] {
                            return RowThresholds{1, 1};
                        }};
    ScreenOfRows m_screen{m_services.all(), m_model};
    QWidget m_window;
    CellTableView m_table{&m_window};
    CellTableView m_otherTable{&m_window};
    std::unique_ptr<RowsView> m_view = viewIn(m_table);
    std::unique_ptr<RowsView> m_otherView = viewIn(m_otherTable);
};

TEST_F(RowsViewTest, isTheTableThatItWasMadeWith)
{
    EXPECT_EQ(&m_view->widget(), &m_table);
}

TEST_F(RowsViewTest, allViewsShowTheRowsOfTheModel)
{
    show({file("a", 10), folder("b", {file("x", 20)})});
    for (const CellTableView *table : {&m_table, &m_otherTable}) {
        EXPECT_EQ(nameIn(*table, 0), u"b"_s);
        EXPECT_EQ(nameIn(*table, 1), u"a"_s);
    }
    m_model.setOrder(RowOrder::name);
    EXPECT_EQ(nameIn(m_otherTable, 0), u"a"_s);
    m_model.drillDown("b");
    EXPECT_EQ(nameIn(m_table, 0), u"x"_s);
    EXPECT_EQ(nameIn(m_otherTable, 0), u"x"_s);
    EXPECT_EQ(m_view->numberOfRowsInTableView(), 1);
}

TEST_F(RowsViewTest, aRowThatIsSelectedInOneViewIsSelectedInTheOther)
{
    show({file("a", 30), file("b", 20), file("c", 10)});
    EXPECT_EQ(m_table.selectedRow(), 0);
    m_table.selectRow(2);
    EXPECT_EQ(m_model.selection()->name, "c");
    EXPECT_EQ(m_otherTable.selectedRow(), 2);
    m_otherTable.setFocus();
    QTest::keyClick(&m_otherTable, Qt::Key_Up);
    EXPECT_EQ(m_model.selection()->name, "b");
    EXPECT_EQ(m_table.selectedRow(), 1);
}

TEST_F(RowsViewTest, anItemThatNoRowShowsLeavesNoRowSelected)
{
    show({folder("d", {file("x", 30)}), file("a", 10)});
    m_model.select({nullptr, "x"});
    EXPECT_EQ(m_table.selectedRow(), -1);
    EXPECT_EQ(m_model.selection()->name, "x") << "the table's is not the last word";
    EXPECT_FALSE(m_view->hasSelectedRow());
    m_model.select(m_model.itemAt(1));
    EXPECT_EQ(m_table.selectedRow(), 1);
}

TEST_F(RowsViewTest, ofTwoRowsOfOneNameThatOneStaysSelectedThatTheUserHasChosen)
{
    show({file("same", 30), file("same", 20)});
    m_table.selectRow(1);
    EXPECT_EQ(m_table.selectedRow(), 1);
}

TEST_F(RowsViewTest, everyChangeShowsTheRowsFromTheFirstOne)
{
    showMany(100);
    const auto scrolled = [this] {
        m_table.scrollToBottom();
        return m_table.verticalScrollBar()->value() > 0;
    };
    ASSERT_TRUE(scrolled());
    m_model.setOrder(RowOrder::name);
    EXPECT_EQ(m_table.verticalScrollBar()->value(), 0);
    ASSERT_TRUE(scrolled());
    m_model.refresh();
    EXPECT_EQ(m_table.verticalScrollBar()->value(), 0);
    m_model.drillDown("d90");
    m_model.drillUp();
    EXPECT_EQ(m_table.selectedRow(), 90);
    EXPECT_EQ(m_table.verticalScrollBar()->value(), 0) << "though another row is selected";
}

TEST_F(RowsViewTest, aRowThatAnotherViewSelectsComesIntoSight)
{
    showMany(100);
    m_otherTable.selectRow(90);
    EXPECT_NE(m_table.cellForRow(90), nullptr);
}

TEST_F(RowsViewTest, theMenuActsOnTheSelectedRowAlsoOutOfSight)
{
    NameLabel field;
    field.setText(u"/f"_s);
    m_screen.setFolderNameField(&field);
    showMany(100);
    m_table.selectRow(90);
    m_table.scrollToTop();
    ASSERT_EQ(m_table.cellForRow(90), nullptr);
    m_view->showInFinder();
    m_view->showInfo();
    EXPECT_EQ(m_services.fileManager.revealed(), std::vector<std::string>{"//f/d90"});
    EXPECT_EQ(m_services.fileManager.informed(), std::vector<std::string>{"//f/d90"});
}

TEST_F(RowsViewTest, onlyFilesWithAPathCanBePreviewed)
{
    show({folder("d", {file("x", 30)}), file("a", 10)});
    EXPECT_TRUE(m_view->hasSelectedRow());
    EXPECT_FALSE(m_view->canShowQuickLook());
    m_table.selectRow(1);
    EXPECT_TRUE(m_view->canShowQuickLook());
    m_model.clearRows();
    EXPECT_FALSE(m_view->hasSelectedRow());
    m_model.refresh();
    m_table.selectRow(1);
    EXPECT_FALSE(m_view->hasSelectedRow()) << "rows without a path";
    EXPECT_FALSE(m_view->canShowQuickLook());
}

TEST_F(RowsViewTest, returnGoesIntoAFolder)
{
    show({folder("d", {file("x", 30)})});
    m_table.setFocus();
    QTest::keyClick(&m_table, Qt::Key_Return);
    EXPECT_EQ(m_model.path(), "/f/d");
}

TEST_F(RowsViewTest, oneViewMayBeDestroyedBeforeTheOther)
{
    show({file("a", 30), file("b", 20)});
    m_view.reset();
    EXPECT_EQ(m_table.dataSource(), nullptr);
    m_model.setOrder(RowOrder::name);
    m_otherTable.selectRow(1);
    EXPECT_EQ(m_model.selection()->name, "b");
}

TEST_F(RowsViewTest, itsTableMayBeDestroyedFirst)
{
    auto table = std::make_unique<CellTableView>(&m_window);
    const auto view = viewIn(*table);
    table.reset();
}

TEST_F(RowsViewTest, theRowsAreAnItemModelAsQtWantsIt)
{
    const QAbstractItemModelTester tester(m_table.model(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    showMany(10);
    m_model.setOrder(RowOrder::name);
    m_model.drillDown("d3");
    m_model.drillUp();
    const auto other = makeTree("/g", {file("new", 10)});
    m_model.replaceSilently(other, resultRowsOf(&other->root(), {1, 1}));
    EXPECT_EQ(m_table.model()->rowCount(), 10) << "until the views are told";
    EXPECT_EQ(m_table.model()->index(5, 0).data(), QVariant());
    m_model.refresh();
    EXPECT_EQ(m_table.model()->rowCount(), 1);
    EXPECT_EQ(m_table.model()->index(0, 0).data().toString(), u"new"_s);
    m_model.clearRows();
    EXPECT_EQ(m_table.model()->rowCount(), 0);
}

} // namespace
} // namespace tessaly
