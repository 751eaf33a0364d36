#include "app/controls/accessibility/AccessibleControls.hpp"

#include "app/controls/accessibility/SpokenNotice.hpp"
#include "app/controls/alerts/MessageAlert.hpp"
#include "app/controls/alerts/SheetGroup.hpp"
#include "app/controls/buttons/KORVENButton.hpp"
#include "app/controls/frame/KORVENWindow.hpp"
#include "app/controls/tables/CellTableSource.hpp"
#include "app/controls/tables/CellTableView.hpp"
#include "app/controls/text/NameLabel.hpp"

#include <QAccessible>
#include <QCoreApplication>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

/// Rows with these names, of which the even ones can be opened, and the first has a menu.
class Rows final : public CellTableSource {
public:
    explicit Rows(QStringList given) : names(std::move(given)) {}

    [[nodiscard]] int numberOfRowsInTableView() const override
    {
        return static_cast<int>(names.size());
    }
    [[nodiscard]] QWidget *viewForTableColumn(int /*row*/) override { return nullptr; }
    [[nodiscard]] QString searchText(int row) const override { return names[row]; }
    [[nodiscard]] QString accessibleText(int row) const override { return names[row] + u", row"_s; }
    [[nodiscard]] bool canActivateRow(int row) const override { return row % 2 == 0; }
    [[nodiscard]] bool hasMenu(int row) const override { return row == 0; }
    void activateRow(int row) override { log << u"open %1"_s.arg(row); }
    void showMenu(int row, const QPoint & /*place*/) override { log << u"menu %1"_s.arg(row); }

    QStringList names;
    QStringList log;
};

class AccessibleControlsTest : public testing::Test {
protected:
    static void SetUpTestSuite() { installAccessibleControls(); }

    AccessibleControlsTest()
    {
        auto *content = new QWidget;
        m_table = new CellTableView(content);
        m_table->setGeometry(0, 0, 300, 200);
        m_window.setContentWidget(content);
        m_window.show();
        m_table->setDataSource(&m_rows);
    }
    ~AccessibleControlsTest() override { m_table->setDataSource(nullptr); }

    [[nodiscard]] static QAccessibleInterface &interfaceOf(QWidget &widget)
    {
        return *QAccessible::queryAccessibleInterface(&widget);
    }
    [[nodiscard]] QAccessibleInterface *row(int number) const
    {
        return interfaceOf(*m_table).child(number);
    }
    [[nodiscard]] QStringList actionsOf(int number) const
    {
        return row(number)->actionInterface()->actionNames();
    }
    void act(int number, const QString &action) const
    {
        row(number)->actionInterface()->doAction(action);
        QCoreApplication::processEvents();
    }

    Rows m_rows{{u"a"_s, u"b"_s, u"c"_s}};
    KORVENWindow m_window{KORVENWindow::Surface::opaque};
    CellTableView *m_table;

    const QString m_open = QAccessibleActionInterface::pressAction();
    const QString m_menu = QAccessibleActionInterface::showMenuAction();
    const QString m_select = QAccessibleActionInterface::toggleAction();
    const QString m_focus = QAccessibleActionInterface::setFocusAction();
};

TEST_F(AccessibleControlsTest, namesAndPathsAreLabels)
{
    NameLabel label;
    label.setText(u"/home/ada"_s);
    EXPECT_EQ(interfaceOf(label).role(), QAccessible::StaticText);
    EXPECT_EQ(interfaceOf(label).text(QAccessible::Name), u"/home/ada"_s);
}

TEST_F(AccessibleControlsTest, theMainWindowIsAWindow)
{
    EXPECT_EQ(interfaceOf(m_window).role(), QAccessible::Window);
    EXPECT_EQ(interfaceOf(m_window).text(QAccessible::Name), u"Tessaly"_s);
}

TEST_F(AccessibleControlsTest, sheetsAreDialogsAndAlertsAreAlerts)
{
    WindowSheet sheet(m_window, std::make_unique<QWidget>());
    sheet.setAccessibleName(u"Choices"_s);
    EXPECT_EQ(interfaceOf(sheet).role(), QAccessible::Dialog);
    EXPECT_TRUE(interfaceOf(sheet).state().modal);

    auto *alert = MessageAlert::begin(m_window, u"Message"_s, u"More of it"_s);
    EXPECT_EQ(interfaceOf(*alert).role(), QAccessible::AlertMessage);
    EXPECT_TRUE(interfaceOf(*alert).state().modal);
    EXPECT_EQ(interfaceOf(*alert).text(QAccessible::Name), u"Message"_s);
    EXPECT_EQ(interfaceOf(*alert).text(QAccessible::Description), u"More of it"_s);
}

TEST_F(AccessibleControlsTest, groupsOfASheetAreGroupsWithTheirLabel)
{
    QWidget panel;
    QLabel heading(u"Colours"_s, &panel);
    SheetGroup group(&panel);
    heading.setBuddy(&group);
    EXPECT_EQ(interfaceOf(group).role(), QAccessible::Grouping);
    const auto relations = interfaceOf(group).relations(QAccessible::Label);
    ASSERT_EQ(relations.size(), 1);
    EXPECT_EQ(relations[0].first->object(), &heading);
}

TEST_F(AccessibleControlsTest, aTableIsAListOfItsRows)
{
    QAccessibleInterface &list = interfaceOf(*m_table);
    EXPECT_EQ(list.role(), QAccessible::List);
    ASSERT_EQ(list.childCount(), 3);
    EXPECT_EQ(list.child(3), nullptr);
    EXPECT_EQ(list.child(-1), nullptr);
    for (int number = 0; number < 3; ++number) {
        QAccessibleInterface *item = row(number);
        ASSERT_NE(item, nullptr);
        EXPECT_EQ(item, row(number)) << "each row is made once";
        EXPECT_EQ(item->role(), QAccessible::ListItem);
        EXPECT_EQ(item->text(QAccessible::Name), m_rows.names[number] + u", row"_s);
        EXPECT_EQ(item->parent(), &list);
        EXPECT_EQ(list.indexOfChild(item), number);
        EXPECT_EQ(item->rect().height(), m_table->rowHeight());
        const QPoint middle = item->rect().center();
        EXPECT_EQ(list.childAt(middle.x(), middle.y()), item);
    }
}

TEST_F(AccessibleControlsTest, rowsSayWhatTheyAreInTheTable)
{
    m_table->selectRow(1);
    EXPECT_FALSE(row(0)->state().selected);
    EXPECT_TRUE(row(1)->state().selected);
    EXPECT_TRUE(row(1)->state().selectable);
    EXPECT_FALSE(row(1)->state().disabled);
    EXPECT_FALSE(row(1)->state().invisible);
    EXPECT_FALSE(row(1)->state().focused);
    m_table->setFixedHeight(m_table->rowHeight());
    EXPECT_TRUE(row(2)->state().invisible) << "it is out of sight";
    m_window.activateWindow();
    m_table->setFocus();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&m_window));
    EXPECT_TRUE(row(1)->state().focused);
    EXPECT_EQ(interfaceOf(*m_table).focusChild(), row(1));
}

TEST_F(AccessibleControlsTest, rowsOfferWhatTheirSourceDoes)
{
    EXPECT_EQ(actionsOf(0), (QStringList{m_open, m_menu, m_select, m_focus}));
    EXPECT_EQ(actionsOf(1), (QStringList{m_select, m_focus}));
    EXPECT_EQ(actionsOf(2), (QStringList{m_open, m_select, m_focus}));

    act(2, m_open);
    act(0, m_menu);
    EXPECT_EQ(m_rows.log, (QStringList{u"open 2"_s, u"menu 0"_s}));
    EXPECT_EQ(m_table->selectedRow(), 0);
    act(1, m_open);
    act(1, m_menu);
    EXPECT_EQ(m_rows.log.size(), 2) << "what is not offered is not done";
    act(1, m_select);
    EXPECT_EQ(m_table->selectedRow(), 1);
}

TEST_F(AccessibleControlsTest, rowsBelowASheetCannotBeUsed)
{
    QAccessibleInterface *first = row(0);
    first->actionInterface()->doAction(m_open); // and then, before it is done, a sheet opens
    auto *alert = MessageAlert::begin(m_window, u"Message"_s, u"More"_s);
    QCoreApplication::processEvents();
    EXPECT_TRUE(row(0)->state().disabled);
    EXPECT_EQ(actionsOf(0), QStringList());
    act(0, m_open);
    act(0, m_select);
    EXPECT_FALSE(interfaceOf(*m_table).tableInterface()->selectRow(0));
    EXPECT_EQ(m_rows.log, QStringList());
    EXPECT_EQ(m_table->selectedRow(), -1);
    alert->buttons().first()->click();
    act(0, m_open);
    EXPECT_EQ(m_rows.log, QStringList{u"open 0"_s});
}

TEST_F(AccessibleControlsTest, nothingBelowAModalDialogCanBeUsed)
{
    auto *button = new QPushButton(m_window.contentWidget());
    button->show();
    const auto pressButton = [button] {
        interfaceOf(*button).actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCoreApplication::processEvents();
    };
    const QSignalSpy presses(button, &QPushButton::pressed); // the click comes later
    m_table->setFocus();
    for (const auto modality : {Qt::WindowModal, Qt::ApplicationModal}) {
        m_rows.log.clear();
        row(0)->actionInterface()->doAction(m_open); // and then, before it is done, a dialog opens
        QDialog dialog(&m_window);
        dialog.setWindowModality(modality);
        dialog.show();
        EXPECT_TRUE(dialog.isEnabled());
        EXPECT_TRUE(row(0)->state().disabled);
        EXPECT_TRUE(interfaceOf(*button).state().disabled);
        pressButton();
        act(0, m_open);
        EXPECT_EQ(m_rows.log, QStringList());
        EXPECT_EQ(presses.size(), 0);

        dialog.hide();
        EXPECT_EQ(m_window.focusWidget(), m_table);
        act(0, m_open);
        EXPECT_EQ(m_rows.log, QStringList{u"open 0"_s});
    }
    pressButton();
    EXPECT_EQ(presses.size(), 1);
}

TEST_F(AccessibleControlsTest, actionsAreForTheRowsThatWereThere)
{
    row(0)->actionInterface()->doAction(m_open);
    row(1)->actionInterface()->doAction(m_select);
    m_rows.names = QStringList{u"x"_s, u"y"_s};
    m_table->reloadData();
    QCoreApplication::processEvents();
    EXPECT_EQ(m_rows.log, QStringList());
    EXPECT_EQ(m_table->selectedRow(), -1);
}

TEST_F(AccessibleControlsTest, rowsOfAHiddenTableCannotBeUsed)
{
    m_table->hide();
    EXPECT_TRUE(row(0)->state().invisible);
    EXPECT_EQ(actionsOf(0), QStringList());
}

TEST_F(AccessibleControlsTest, otherRowsAreOtherItems)
{
    const QAccessible::Id before = QAccessible::uniqueId(row(0));
    m_rows.names = QStringList{u"x"_s};
    m_table->reloadData();
    // What Qt does at that moment while assistive technology is there.
    QAccessibleTableModelChangeEvent event(m_table, QAccessibleTableModelChangeEvent::ModelReset);
    interfaceOf(*m_table).tableInterface()->modelChange(&event);
    EXPECT_EQ(QAccessible::accessibleInterface(before), nullptr);
    EXPECT_EQ(interfaceOf(*m_table).childCount(), 1);
    EXPECT_EQ(row(0)->text(QAccessible::Name), u"x, row"_s);
}

class SpokenNoticeTest : public AccessibleControlsTest {
protected:
    /// What was given to screen readers to speak.
    [[nodiscard]] QString spoken() const
    {
        const auto *notice = m_window.findChild<SpokenNotice *>();
        return notice != nullptr ? notice->accessibleName() : QString();
    }
};

TEST_F(SpokenNoticeTest, isANotificationThatIsNotSeen)
{
    SpokenNotice::say(m_window, u"one"_s);
    SpokenNotice::say(m_window, u"two"_s);
    SpokenNotice::say(m_window, QString());
    EXPECT_EQ(spoken(), u"two"_s);
    const auto notices = m_window.findChildren<SpokenNotice *>();
    ASSERT_EQ(notices.size(), 1);
    EXPECT_EQ(interfaceOf(*notices[0]).role(), QAccessible::Notification);
    EXPECT_FALSE(interfaceOf(*notices[0]).state().invisible) << "else it is not spoken";
    EXPECT_TRUE(notices[0]->size().isEmpty());
}

TEST_F(SpokenNoticeTest, aTableSpeaksItsFirstRows)
{
    m_rows.names = QStringList{u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s, u"f"_s};
    m_table->reloadData();
    m_table->speakRows();
    EXPECT_EQ(spoken(), u"6 items: a, row; b, row; c, row; d, row; e, row"_s);
}

TEST_F(SpokenNoticeTest, aTableWithoutRowsOrOutOfSightSaysNothing)
{
    m_table->hide();
    m_table->speakRows();
    m_table->show();
    m_rows.names.clear();
    m_table->reloadData();
    m_table->speakRows();
    EXPECT_EQ(spoken(), QString());
}

} // namespace
} // namespace tessaly
