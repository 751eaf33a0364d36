// The window of a build whose maker has set addresses: all but the one on Twitter.

#include "app/window/ProgramVersion.hpp"
#include "app/window/VendorUrls.hpp"
#include "tests/app/window/WindowTest.hpp"

#include <QApplication>
#include <QMenu>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

using Names = std::vector<std::string>;
using Item = ApplicationMenu::Item;

/// Whether the menu, or one in it, has the item.
bool offers(const QMenu &menu, const QAction &item)
{
    for (const QAction *action : menu.actions()) {
        if (action == &item || (action->menu() != nullptr && offers(*action->menu(), item))) {
            return true;
        }
    }
    return false;
}

class VendorLinksTest : public WindowTest {};

TEST_F(VendorLinksTest, areInTheMenuWhenTheyAreSet)
{
    openWindow();
    for (const Item item : {Item::webHelp, Item::website, Item::support, Item::storePage,
                            Item::facebook, Item::google}) {
        EXPECT_TRUE(offers(menu(), action(item))) << qPrintable(action(item).text());
        action(item).trigger();
    }
    EXPECT_EQ(m_services.urls.opened,
              (Names{"https://maker.test/tessalyhelp.html", "https://maker.test/",
                     "https://maker.test/support.html", "macappstore://maker.test/id42",
                     "https://maker.test/facebook", "https://maker.test/google"}));

    EXPECT_FALSE(offers(menu(), action(Item::twitter)));
    action(Item::twitter).trigger();
    EXPECT_EQ(m_services.urls.opened.size(), 6U);
}

TEST_F(VendorLinksTest, theHelpHasItsKey)
{
    openWindow();
    QTest::keyClick(&window(), Qt::Key_F1);
    EXPECT_EQ(m_services.urls.opened, Names{"https://maker.test/tessalyhelp.html"});
}

TEST_F(VendorLinksTest, aStoreThatIsSetIsReasonEnoughToAskForARating)
{
    m_services.settings.setText("KORVENRate_version_num", std::string(programVersion()));
    m_services.settings.setInteger("KORVENRate_run_count", 2);
    bool isAsked = false;
    QTimer answer;
    QObject::connect(&answer, &QTimer::timeout, &answer, [&] {
        if (QWidget *box = QApplication::activeModalWidget()) {
            isAsked = true;
            answer.stop();
            box->close();
        }
    });
    answer.start();
    makeWindow();
    window().show();
    EXPECT_TRUE(QTest::qWaitFor([&] { return isAsked; }));
    EXPECT_EQ(m_services.urls.asked, Names{});
}

} // namespace
} // namespace tessaly
