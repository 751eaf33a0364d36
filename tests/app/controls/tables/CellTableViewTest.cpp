#include "app/controls/tables/CellTableView.hpp"

#include "app/controls/tables/CellTableSource.hpp"
#include "app/controls/tables/IconView.hpp"

#include <QAbstractItemModelTester>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QScrollBar>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

/// Three rows with a clickable icon each, in a window below a field.
class CellTableViewTest : public testing::Test, protected CellTableSource {
protected:
    CellTableViewTest()
    {
        m_table.registerCells(u"cell"_s, [this] {
            auto cell = std::make_unique<QWidget>();
            auto *icon = new IconView;
            icon->setClickable(true);
            QObject::connect(icon, &IconView::clicked, &m_window, [this] { ++m_iconClicks; });
            auto *layout = new QHBoxLayout(cell.get());
            layout->setContentsMargins(0, 0, 0, 0);
            layout->addWidget(icon);
            layout->addStretch();
            return cell;
        });
        m_table.setDataSource(this);
        auto *layout = new QVBoxLayout(&m_window);
        layout->addWidget(&m_field);
        layout->addWidget(&m_table);
        m_window.resize(400, 400);
        m_window.show();
        m_window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window));
        m_field.setFocus();
    }
    ~CellTableViewTest() override { m_table.setDataSource(nullptr); }

    [[nodiscard]] int numberOfRowsInTableView() const override { return 3; }
    [[nodiscard]] QWidget *viewForTableColumn(int /*row*/) override
    {
        return m_table.makeView(u"cell"_s);
    }
    [[nodiscard]] QString searchText(int row) const override { return QString::number(row); }
    bool shouldTypeSelectForEvent(const QKeyEvent & /*event*/, const QString &typed) override
    {
        m_typed += typed;
        return true;
    }
    void activateRow(int row) override { m_activated.push_back(row); }

    [[nodiscard]] QPoint placeOf(int row) const
    {
        return m_table.visualRect(m_table.model()->index(row, 0)).center();
    }
    [[nodiscard]] IconView &icon(int row) const
    {
        return *m_table.cellForRow(row)->findChild<IconView *>();
    }
    void doubleClick(QWidget &target, QPoint place, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseClick(&target, button, {}, place);
        QTest::mouseDClick(&target, button, {}, place); // the second press alone
        QCoreApplication::processEvents();
    }
    void doubleClickRow(int row, Qt::MouseButton button = Qt::LeftButton)
    {
        doubleClick(*m_table.viewport(), placeOf(row), button);
    }

    QWidget m_window;
    QLineEdit m_field;
    CellTableView m_table;
    std::vector<int> m_activated;
    QString m_typed;
    int m_iconClicks = 0;
};

using RowNumbers = std::vector<int>;

TEST_F(CellTableViewTest, theKeyboardFindsTheFirstRowSelected)
{
    ASSERT_EQ(m_table.selectedRow(), -1);
    QTest::keyClick(&m_field, Qt::Key_Tab);
    ASSERT_TRUE(m_table.hasFocus());
    EXPECT_EQ(m_table.selectedRow(), 0);
    QTest::keyClick(&m_table, Qt::Key_Return);
    EXPECT_EQ(m_activated, RowNumbers{0});
    QTest::keyClick(&m_table, Qt::Key_Space);
    EXPECT_EQ(m_typed, u" "_s);
    EXPECT_EQ(m_table.selectedRow(), 0);
    QTest::keyClick(&m_table, Qt::Key_End);
    EXPECT_EQ(m_table.selectedRow(), 2);
    QTest::keyClick(&m_table, Qt::Key_Home);
    EXPECT_EQ(m_table.selectedRow(), 0);
}

TEST_F(CellTableViewTest, theKeyboardFindsTheSelectionAsItWas)
{
    m_table.selectRow(1);
    QTest::keyClick(&m_field, Qt::Key_Tab);
    EXPECT_EQ(m_table.selectedRow(), 1);
}

TEST_F(CellTableViewTest, theKeyboardSelectsARowAlsoAfterAReload)
{
    m_table.selectRow(1);
    m_table.reloadData();
    ASSERT_EQ(m_table.selectedRow(), -1);
    QTest::keyClick(&m_field, Qt::Key_Tab);
    EXPECT_EQ(m_table.selectedRow(), 0);
}

TEST_F(CellTableViewTest, aPressSelectsItsRowAlone)
{
    std::vector<int> selected;
    QObject::connect(m_table.selectionModel(), &QItemSelectionModel::selectionChanged, &m_window,
                     [&] { selected.push_back(m_table.selectedRow()); });
    QTest::mouseClick(m_table.viewport(), Qt::LeftButton, {}, placeOf(1));
    EXPECT_EQ(selected, RowNumbers{1}) << "and not the first row before it";
}

TEST_F(CellTableViewTest, aDoubleClickOpensTheRow)
{
    doubleClickRow(1);
    EXPECT_EQ(m_activated, RowNumbers{1});
    doubleClickRow(2, Qt::RightButton);
    EXPECT_EQ(m_activated, RowNumbers{1}) << "with the left button alone";
    doubleClick(*m_table.viewport(), QPoint(20, 3 * 46 + 20));
    EXPECT_EQ(m_activated, RowNumbers{1}) << "there is no row";
}

TEST_F(CellTableViewTest, aDoubleClickOnWhatTakesClicksIsOneClickOnThat)
{
    doubleClick(icon(1), icon(1).rect().center());
    EXPECT_EQ(m_iconClicks, 1);
    EXPECT_EQ(m_activated, RowNumbers{});
    EXPECT_EQ(m_table.selectedRow(), 1);
}

TEST_F(CellTableViewTest, aDoubleClickThatBeganBesideTheIconOpensTheRow)
{
    QTest::mouseClick(m_table.viewport(), Qt::LeftButton, {}, placeOf(1));
    QTest::mouseDClick(&icon(1), Qt::LeftButton);
    EXPECT_EQ(m_activated, RowNumbers{1});
}

TEST_F(CellTableViewTest, aDoubleClickDuringWhichTheRowsWereReplacedOpensNone)
{
    QTest::mouseClick(m_table.viewport(), Qt::LeftButton, {}, placeOf(1));
    m_table.reloadData();
    QTest::mouseDClick(m_table.viewport(), Qt::LeftButton, {}, placeOf(1));
    EXPECT_EQ(m_activated, RowNumbers{});
}

TEST_F(CellTableViewTest, escapeIsForTheWindow)
{
    m_table.setFocus();
    for (QWidget *widget : {static_cast<QWidget *>(&m_table), m_table.viewport()}) {
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier, u"\x1b"_s);
        QCoreApplication::sendEvent(widget, &escape);
        EXPECT_FALSE(escape.isAccepted());
    }
    EXPECT_EQ(m_typed, QString());
}

/// A thousand rows in a table that shows four of them at a time.
class CellTableViewCellsTest : public testing::Test, protected CellTableSource {
protected:
    CellTableViewCellsTest()
    {
        m_table.setRowHeight(20);
        m_table.registerCells(u"even"_s, [] { return std::make_unique<QWidget>(); });
        m_table.registerCells(u"odd"_s, [] { return std::make_unique<QWidget>(); });
        m_table.resize(100, 80);
        m_table.show();
        m_table.setDataSource(this);
        m_table.doItemsLayout(); // else the scroll bar has its range with the next event
    }
    ~CellTableViewCellsTest() override { m_table.setDataSource(nullptr); }

    [[nodiscard]] int numberOfRowsInTableView() const override { return m_rowCount; }
    [[nodiscard]] QWidget *viewForTableColumn(int row) override
    {
        QWidget *cell = m_table.makeView(row % 2 == 0 ? u"even"_s : u"odd"_s);
        cell->setObjectName(QString::number(row));
        return cell;
    }
    [[nodiscard]] QString searchText(int row) const override { return QString::number(row); }

    int m_rowCount = 1000;
    CellTableView m_table;
};

TEST_F(CellTableViewCellsTest, rowsInViewAloneHaveCells)
{
    EXPECT_NE(m_table.cellForRow(0), nullptr);
    EXPECT_EQ(m_table.cellForRow(10), nullptr);
    EXPECT_EQ(m_table.cellForRow(-1), nullptr);
    EXPECT_EQ(m_table.cellForRow(1)->geometry(), QRect(0, 20, m_table.viewport()->width(), 20));
}

TEST_F(CellTableViewCellsTest, cellsAreReusedForOtherRowsOfTheirIdentifier)
{
    const QWidget *even = m_table.cellForRow(0);
    const QWidget *odd = m_table.cellForRow(1);
    m_table.verticalScrollBar()->setValue(500 * 20);
    EXPECT_EQ(m_table.cellForRow(0), nullptr);
    ASSERT_NE(m_table.cellForRow(500), nullptr);
    EXPECT_EQ(m_table.cellForRow(500)->objectName(), u"500"_s);
    EXPECT_EQ(m_table.cellForRow(500), even);
    EXPECT_EQ(m_table.cellForRow(501), odd);
    for (int row = 0; row < m_rowCount; row += 7) {
        m_table.verticalScrollBar()->setValue(row * 20);
    }
    EXPECT_LE(m_table.cellCount(), 10);
}

TEST_F(CellTableViewCellsTest, rowsKeepTheirCellsWhenTheyAreReloaded)
{
    const QWidget *first = m_table.cellForRow(0);
    m_table.reloadData();
    EXPECT_EQ(m_table.cellForRow(0), first);
    m_rowCount = 1;
    m_table.reloadData();
    EXPECT_EQ(m_table.cellForRow(0), first);
    EXPECT_EQ(m_table.cellForRow(1), nullptr);
}

TEST_F(CellTableViewCellsTest, anAdoptedCellIsReused)
{
    EXPECT_EQ(m_table.makeView(u"other"_s), nullptr);
    auto made = std::make_unique<QWidget>();
    QWidget *cell = made.get();
    const int countBefore = m_table.cellCount();
    EXPECT_EQ(m_table.adoptView(std::move(made), u"other"_s), cell);
    EXPECT_EQ(cell->parentWidget(), m_table.viewport());
    EXPECT_EQ(m_table.cellCount(), countBefore + 1);
}

TEST_F(CellTableViewCellsTest, theSelectedRowIsScrolledIntoViewForItsCell)
{
    EXPECT_EQ(m_table.selectedCell(), nullptr);
    m_table.selectRow(700);
    m_table.verticalScrollBar()->setValue(0);
    const QWidget *cell = m_table.selectedCell();
    ASSERT_NE(cell, nullptr);
    EXPECT_EQ(cell->objectName(), u"700"_s);
    EXPECT_TRUE(m_table.viewport()->rect().contains(cell->geometry()));
}

TEST_F(CellTableViewCellsTest, theHeightOfRowsFollowsTheWidthOfTheTable)
{
    m_table.setRowHeightForWidth([](int width) { return width > 150 ? 20 : 40; });
    EXPECT_EQ(m_table.rowHeight(), 40);
    m_table.resize(300, 80);
    EXPECT_EQ(m_table.rowHeight(), 20);
    EXPECT_EQ(m_table.cellForRow(1)->y(), 20);
}

TEST_F(CellTableViewCellsTest, itsModelKeepsTheRulesOfItemModels)
{
    const QAbstractItemModelTester tester(m_table.model(),
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    m_table.selectRow(3);
    m_rowCount = 2;
    m_table.reloadData();
    EXPECT_EQ(m_table.selectedRow(), -1);
    m_table.setDataSource(nullptr);
    EXPECT_EQ(m_table.model()->rowCount(), 0);
}

} // namespace
} // namespace tessaly
