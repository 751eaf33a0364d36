#include "app/screen/TableScreen.hpp"

#include "app/controls/buttons/KORVENButton.hpp"
#include "app/delegate/KORVENAppDelegate.hpp"
#include "tests/fakes/FakeServices.hpp"

#include <QLabel>
#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

const QString bareFile = u"no such file"_s;
int loadCount = 0;

/// A cell that says whether it came out of an interface file.
class RowCell final : public QLabel {
public:
    static std::unique_ptr<RowCell> tableCellViewWithNibNamed(const QString &name,
                                                              const QObject * /*owner*/)
    {
        if (name == bareFile) {
            return nullptr;
        }
        ++loadCount;
        auto cell = std::make_unique<RowCell>();
        cell->setObjectName(u"loaded"_s);
        return cell;
    }
};

/// A screen of a hundred rows.
class RowScreen final : public QObject, public TableScreen {
public:
    explicit RowScreen(const QString &cellFile)
        : TableScreen(*this, u"SampleScreen"_s, cellsOf<RowCell>(u"RowCell"_s, cellFile, this))
    {
        wire({{"firstButton", [this] { sortClicked(); }}});
        pressGuard().watch(button("secondButton"));
    }
    ~RowScreen() override { closeView(); }
    Q_DISABLE_COPY_MOVE(RowScreen)

    using TableScreen::cellAt;
    using TableScreen::selectedCell;
    using TableScreen::selectInPlace;
    using TableScreen::setEmptyTexts;
    using TableScreen::showEmptyPage;
    using TableScreen::showTable;
    using TableScreen::table;

    [[nodiscard]] KORVENButton &button(const char *name) const { return find<KORVENButton>(name); }
    [[nodiscard]] QLabel &label(const char *name) const { return find<QLabel>(name); }

    void sortClicked() override { ++sortCount; }
    [[nodiscard]] int numberOfRowsInTableView() const override { return 100; }
    [[nodiscard]] QWidget *viewForTableColumn(int row) override
    {
        auto &cell = makeCell<RowCell>();
        cell.setText(searchText(row));
        return &cell;
    }
    [[nodiscard]] QString searchText(int row) const override { return QString::number(row); }

    int setUpCount = 0;
    int sortCount = 0;

private:
    void setUp() override
    {
        EXPECT_EQ(table().dataSource(), nullptr);
        TableScreen::setUp();
        ++setUpCount;
        EXPECT_NE(table().dataSource(), nullptr);
    }
};

class TableScreenTest : public testing::Test {
protected:
    void openScreen(const QString &cellFile = u"RowCell"_s)
    {
        loadCount = 0;
        m_delegate = std::make_unique<KORVENAppDelegate>(m_services.all());
        m_screen = std::make_unique<RowScreen>(cellFile);
        m_screen->awakeFromNib();
        m_screen->view()->resize(300, 400);
        m_screen->view()->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(m_screen->view()));
    }
    [[nodiscard]] QLabel &cell(int row) const
    {
        auto *found = m_screen->cellAt<QLabel>(row);
        if (found == nullptr) {
            throw std::logic_error("no cell in row " + std::to_string(row));
        }
        return *found;
    }

    FakeServices m_services;
    std::unique_ptr<KORVENAppDelegate> m_delegate;
    std::unique_ptr<RowScreen> m_screen;
};

TEST_F(TableScreenTest, setsItselfUpOnce)
{
    m_delegate = std::make_unique<KORVENAppDelegate>(m_services.all());
    m_screen = std::make_unique<RowScreen>(u"RowCell"_s);
    EXPECT_TRUE(m_screen->firstRunFlag());
    EXPECT_EQ(m_screen->table().dataSource(), nullptr);
    m_screen->awakeFromNib();
    m_screen->awakeFromNib();
    EXPECT_FALSE(m_screen->firstRunFlag());
    EXPECT_EQ(m_screen->setUpCount, 1);
}

TEST_F(TableScreenTest, fillsCellsOfTheInterfaceFileAndUsesThemAgain)
{
    openScreen();
    EXPECT_EQ(cell(0).objectName(), u"loaded"_s);
    EXPECT_EQ(cell(1).text(), u"1"_s);
    m_screen->table().scrollToBottom();
    const int loadedForOneSight = loadCount;
    m_screen->table().scrollToTop();
    m_screen->table().scrollToBottom();
    EXPECT_EQ(cell(99).text(), u"99"_s);
    EXPECT_EQ(loadCount, loadedForOneSight);
    EXPECT_LT(loadCount, 50);
}

TEST_F(TableScreenTest, makesBareCellsWhenTheFileHasNone)
{
    openScreen(bareFile);
    EXPECT_EQ(cell(0).objectName(), QString());
    EXPECT_EQ(cell(0).text(), u"0"_s);
}

TEST_F(TableScreenTest, looksOlderAndLoadsCellsItselfOnAnOldRelease)
{
    m_services.release.setVersion({10, 7});
    openScreen();
    EXPECT_TRUE(m_screen->button("firstButton").run10p7Mode());
    EXPECT_TRUE(m_screen->button("secondButton").run10p7Mode());
    EXPECT_EQ(cell(0).objectName(), u"loaded"_s);
    EXPECT_EQ(m_screen->table().makeView(u"another"_s), nullptr);
}

TEST_F(TableScreenTest, hasTheNewLookOnEveryOtherRelease)
{
    openScreen();
    EXPECT_FALSE(m_screen->button("firstButton").run10p7Mode());
}

TEST_F(TableScreenTest, connectsItsButtons)
{
    openScreen();
    m_screen->button("firstButton").click();
    EXPECT_EQ(m_screen->sortCount, 1);
    EXPECT_NE(m_screen->findChild<PressGuard *>(), nullptr) << "it belongs to the screen";
}

TEST_F(TableScreenTest, showsItsTableOrSaysWhyThereIsNone)
{
    openScreen();
    m_screen->setEmptyTexts(u"Nothing"_s, {});
    m_screen->showEmptyPage();
    EXPECT_FALSE(m_screen->table().isVisible());
    EXPECT_EQ(m_screen->label("emptyTitle").text(), u"Nothing"_s);
    EXPECT_TRUE(m_screen->label("emptyTitle").isVisible());
    EXPECT_FALSE(m_screen->label("emptyText").isVisible());
    m_screen->setEmptyTexts(u"Nothing"_s, u"yet"_s);
    EXPECT_TRUE(m_screen->label("emptyText").isVisible());
    m_screen->showTable();
    EXPECT_TRUE(m_screen->table().isVisible());
}

TEST_F(TableScreenTest, selectsARowWithoutScrolling)
{
    openScreen();
    m_screen->selectInPlace(90);
    EXPECT_EQ(m_screen->table().selectedRow(), 90);
    EXPECT_EQ(m_screen->table().verticalScrollBar()->value(), 0);
    EXPECT_EQ(m_screen->selectedCell<QLabel>()->text(), u"90"_s) << "this scrolls";
    EXPECT_GT(m_screen->table().verticalScrollBar()->value(), 0);
}

TEST_F(TableScreenTest, destroysItsView)
{
    openScreen();
    const QPointer<QWidget> view = m_screen->view();
    m_screen.reset();
    EXPECT_TRUE(view.isNull());
}

TEST_F(TableScreenTest, outlivesAViewThatItsWindowDestroys)
{
    openScreen();
    EXPECT_EQ(m_screen->rowsTable(), &m_screen->table());
    delete m_screen->view();
    EXPECT_EQ(m_screen->view(), nullptr);
    EXPECT_EQ(m_screen->rowsTable(), nullptr);
}

} // namespace
} // namespace tessaly
