#include "drives/KORVENDriveCellView.hpp"

#include "app/controls/interface/InterfaceFile.hpp"
#include "tests/drives/DriveScreenTest.hpp"
#include "tests/platform/linux/LogLines.hpp"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QToolButton>

#include <future>
#include <thread>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

using Paths = std::vector<std::string>;

class KORVENDriveCellViewTest : public DriveScreenTest {
protected:
    [[nodiscard]] FakeVolumeService &volumes() { return m_services.volumes; }
    [[nodiscard]] const Paths &revealed() const { return m_services.fileManager.revealed(); }
    [[nodiscard]] const Paths &informed() const { return m_services.fileManager.informed(); }
    [[nodiscard]] Paths unmounted()
    {
        EXPECT_TRUE(waitForUnmounts(std::chrono::minutes(1)));
        return volumes().unmounted();
    }
};

TEST_F(KORVENDriveCellViewTest, aRemovableVolumeIsEjectedAlsoIfItIsUnmountable)
{
    for (const Kind kind : {removable, both}) {
        addVolume("stick " + std::to_string(kind), 10, 5, kind);
    }
    openScreen();
    QTest::mouseClick(cell(0).ejectButton(), Qt::LeftButton);
    EXPECT_EQ(volumes().ejected, Paths{"/Volumes/stick 1"}) << "before the click returns";
    QTest::mouseClick(cell(1).ejectButton(), Qt::LeftButton);
    EXPECT_EQ(volumes().ejected, (Paths{"/Volumes/stick 1", "/Volumes/stick 3"}));
    EXPECT_EQ(unmounted(), Paths{});
}

TEST_F(KORVENDriveCellViewTest, aDoubleClickOnEjectLeavesTheVolumeBelowAlone)
{
    addVolume("upper", 20, 5, removable);
    addVolume("lower", 10, 5, removable);
    openScreen();
    QTest::mouseClick(cell(0).ejectButton(), Qt::LeftButton);
    removeVolume("upper"); // the row below moves up, under the pointer
    ASSERT_EQ(shownNames(), (std::vector<std::string>{"lower"}));
    QTest::mouseClick(cell(0).ejectButton(), Qt::LeftButton);
    EXPECT_EQ(volumes().ejected, Paths{"/Volumes/upper"});
    m_now += PressGuard::holdTime;
    QTest::mouseClick(cell(0).ejectButton(), Qt::LeftButton);
    EXPECT_EQ(volumes().ejected, (Paths{"/Volumes/upper", "/Volumes/lower"}));
}

TEST_F(KORVENDriveCellViewTest, anUnmountableVolumeIsUnmountedOnAThreadOfItsOwn)
{
    std::promise<std::thread::id> thread;
    std::promise<void> go;
    volumes().whileUnmounting = [&] {
        thread.set_value(std::this_thread::get_id());
        go.get_future().wait();
    };
    addVolume("a disk with spaces", 10, 5, unmountable);
    openScreen();
    QTest::mouseClick(cell(0).ejectButton(), Qt::LeftButton);
    EXPECT_NE(thread.get_future().get(), std::this_thread::get_id());
    EXPECT_EQ(volumes().unmounted(), Paths{}) << "the click has not waited";
    go.set_value();
    EXPECT_EQ(unmounted(), Paths{"/Volumes/a disk with spaces"});
    EXPECT_EQ(volumes().ejected, Paths{});
}

/// With fonts of that size in points, for as long as it lives.
class FontSize {
public:
    explicit FontSize(double points)
    {
        QFont font = m_before;
        font.setPointSizeF(points);
        QApplication::setFont(font);
    }
    ~FontSize() { QApplication::setFont(m_before); }
    Q_DISABLE_COPY_MOVE(FontSize)

private:
    QFont m_before = QApplication::font();
};

TEST_F(KORVENDriveCellViewTest, showsItsFiguresWholeAtAnySizeOfTheFonts)
{
    InterfaceFile::registerWidget<KORVENDriveCellView>("KORVENDriveCellView");
    for (const double points : {9.0, 12.0, 16.0, 20.0}) {
        const FontSize size(points);
        const auto cell =
            KORVENDriveCellView::tableCellViewWithNibNamed(u"KORVENDriveCell"_s, nullptr);
        cell->setIsRemoveable(true);
        cell->showEjectControl(false);
        for (QLabel *figure : {cell->driveTotal(), cell->driveUsed(), cell->driveFree()}) {
            figure->setText(u"888.88 GB"_s);
        }
        for (const int width : {520, 600, 840, 1200}) {
            cell->resize(width, cell->heightForWidth(width));
            cell->show();
            ASSERT_TRUE(QTest::qWaitForWindowExposed(cell.get()));
            for (const QLabel *figure :
                 {cell->driveTotal(), cell->driveUsed(), cell->driveFree()}) {
                const QRect place(figure->mapTo(cell.get(), QPoint(0, 0)), figure->size());
                EXPECT_GE(place.width(), figure->sizeHint().width()) << points << ' ' << width;
                EXPECT_TRUE(cell->rect().contains(place)) << points << ' ' << width;
                EXPECT_EQ(figure->visibleRegion().boundingRect(), figure->rect())
                    << points << ' ' << width;
            }
            EXPECT_LE(cell->ejectButton()->geometry().right(), width) << points << ' ' << width;
        }
    }
}

TEST_F(KORVENDriveCellViewTest, rowsAreAsHighAsTheirFiguresTake)
{
    const FontSize size(16);
    addVolume("disk", 10, 5);
    openScreen();
    m_window.resize(1400, 600);
    ASSERT_TRUE(QTest::qWaitFor([this] { return table().viewport()->width() > 1300; }));
    const int before = table().rowHeight();
    m_window.resize(520, 600);
    EXPECT_TRUE(QTest::qWaitFor([&] { return table().rowHeight() > before; }));
    EXPECT_EQ(cell(0).height(), table().rowHeight());
}

TEST_F(KORVENDriveCellViewTest, anyOtherVolumeIsLeftAlone)
{
    addVolume("fixed", 10, 5);
    openScreen();
    cell(0).ejectDrive();
    EXPECT_EQ(unmounted(), Paths{});
    EXPECT_EQ(volumes().ejected, Paths{});
    EXPECT_TRUE(cell(0).ejectButton()->isEnabled());
}

TEST_F(KORVENDriveCellViewTest, theRootIsShownAsItselfButEjectedByItsVolumesPath)
{
    addVolume("/", 10, 5, removable);
    openScreen();
    cell(0).showInFinder();
    cell(0).showInfo();
    cell(0).ejectDrive();
    EXPECT_EQ(revealed(), Paths{"/"});
    EXPECT_EQ(informed(), Paths{"/"});
    EXPECT_EQ(volumes().ejected, Paths{"/Volumes//"});

    cell(0).setIsRemoveable(false);
    cell(0).setIsUnmountable(true);
    cell(0).ejectDrive();
    EXPECT_EQ(unmounted(), Paths{"/Volumes//"});
}

TEST_F(KORVENDriveCellViewTest, pathsAreMadeOfTheNamesBytes)
{
    addVolume("caf\xE9 <b>\n", 10, 5, removable);
    openScreen();
    cell(0).showInFinder();
    cell(0).showInfo();
    cell(0).ejectDrive();
    const Paths path{"/Volumes/caf\xE9 <b>\n"};
    EXPECT_EQ(revealed(), path);
    EXPECT_EQ(informed(), path);
    EXPECT_EQ(volumes().ejected, path);
}

TEST_F(KORVENDriveCellViewTest, theNameOnTheLabelIsWhatActionsGoBy)
{
    addVolume("a", 10, 5, removable);
    openScreen();
    cell(0).driveName()->setText(u"another"_s);
    cell(0).showInFinder();
    cell(0).ejectDrive();
    EXPECT_EQ(revealed(), Paths{"/Volumes/another"});
    EXPECT_EQ(volumes().ejected, Paths{"/Volumes/another"});
}

TEST_F(KORVENDriveCellViewTest, theRowIsBusyUntilTheVolumeIsListedNoMore)
{
    addVolume("stick", 10, 0, both);
    addVolume("other", 10, 5, unmountable);
    openScreen();
    EXPECT_EQ(cell(0).ejectLabel()->text(), u"Eject"_s);
    QTest::mouseClick(cell(0).ejectButton(), Qt::LeftButton);
    EXPECT_FALSE(cell(0).ejectButton()->isEnabled());
    EXPECT_EQ(cell(0).ejectLabel()->text(), u"Ejecting…"_s);
    EXPECT_TRUE(cell(1).ejectButton()->isEnabled());

    m_screen->sortClicked(); // the cells show other rows now
    EXPECT_EQ(shownNames(), (Paths{"other", "stick"}));
    EXPECT_TRUE(cell(0).ejectButton()->isEnabled());
    EXPECT_FALSE(cell(1).ejectButton()->isEnabled());

    removeVolume("stick");
    addVolume("stick", 10, 0, both);
    m_screen->refreshClicked();
    answer();
    EXPECT_EQ(shownNames(), (Paths{"other", "stick"}));
    EXPECT_TRUE(cell(1).ejectButton()->isEnabled());
    EXPECT_EQ(cell(1).ejectLabel()->text(), u"Eject"_s);
}

TEST_F(KORVENDriveCellViewTest, theRowIsReadyAgainWhenTheVolumeIsKnownToStay)
{
    addVolume("/", 10, 0, removable);
    addVolume("stick", 10, 1, both);
    addVolume("other", 10, 5, unmountable);
    openScreen();
    for (int row = 0; row < 3; ++row) {
        cell(row).ejectDrive();
    }
    const auto busyRows = [this] {
        std::vector<int> rows;
        for (int row = 0; row < 3; ++row) {
            if (!cell(row).ejectButton()->isEnabled()) {
                rows.push_back(row);
            }
        }
        return rows;
    };
    EXPECT_EQ(busyRows(), (std::vector{0, 1, 2}));
    volumes().refusalListener("/Volumes/stick");
    EXPECT_EQ(busyRows(), (std::vector{0, 2}));
    EXPECT_EQ(cell(1).ejectLabel()->text(), u"Eject"_s);
    volumes().refusalListener("/Volumes//");
    volumes().refusalListener("/Volumes/elsewhere");
    EXPECT_EQ(busyRows(), (std::vector{2}));
    m_screen.reset();
    volumes().refusalListener("/Volumes/other");
}

TEST_F(KORVENDriveCellViewTest, aVolumeInUseStaysAndNothingIsSaid)
{
    addVolume("busy", 10, 5, removable);
    addVolume("busy too", 10, 5, unmountable);
    openScreen();
    const auto windows = QApplication::topLevelWidgets();
    cell(0).ejectDrive();
    cell(1).ejectDrive();
    EXPECT_EQ(unmounted().size(), 1U);
    m_screen->refreshClicked();
    answer();
    QCoreApplication::processEvents();
    EXPECT_EQ(shownNames(), (Paths{"busy", "busy too"}));
    EXPECT_EQ(QApplication::topLevelWidgets(), windows);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(KORVENDriveCellViewTest, theScreenMayGoWhileAVolumeIsBeingUnmounted)
{
    std::promise<void> hasBegun;
    std::promise<void> go;
    volumes().whileUnmounting = [&] {
        hasBegun.set_value();
        go.get_future().wait();
    };
    addVolume("slow", 10, 5, unmountable);
    openScreen();
    cell(0).ejectDrive();
    hasBegun.get_future().wait();
    m_window.close();
    m_screen.reset();
    EXPECT_FALSE(waitForUnmounts(std::chrono::milliseconds(1)));
    go.set_value();
    EXPECT_EQ(unmounted(), Paths{"/Volumes/slow"});
}

TEST_F(KORVENDriveCellViewTest, aClickOnIconOrNameShowsTheVolume)
{
    addVolume("a", 10, 5);
    openScreen();
    for (QWidget *target : {static_cast<QWidget *>(cell(0).driveImage()),
                            static_cast<QWidget *>(cell(0).driveName())}) {
        const std::size_t before = revealed().size();
        QTest::mouseClick(target, Qt::LeftButton, {}, QPoint(4, target->height() / 2));
        EXPECT_TRUE(QTest::qWaitFor([&] { return revealed().size() == before + 1; }));
        EXPECT_EQ(revealed().back(), "/Volumes/a");
        EXPECT_EQ(table().selectedRow(), 0);
    }
}

TEST_F(KORVENDriveCellViewTest, theMenuOffersWhatCanBeDone)
{
    addVolume("fixed", 10, 0);
    addVolume("stick", 10, 5, removable);
    openScreen();
    EXPECT_EQ(titles(*cell(0).popUpMenu({})),
              (QStringList{u"Show in File Manager"_s, u"Show Info"_s}));
    EXPECT_EQ(titles(*cell(1).popUpMenu({})),
              (QStringList{u"Show in File Manager"_s, u"Show Info"_s, u"Eject"_s}));
    cell(1).ejectDrive();
    EXPECT_FALSE(entry(*cell(1).popUpMenu({}), u"Eject"_s).isEnabled());
}

TEST_F(KORVENDriveCellViewTest, theMenuButtonOpensTheMenu)
{
    addVolume("a", 10, 5);
    openScreen();
    auto *menuButton = cell(0).findChild<QToolButton *>(u"menuButton"_s);
    ASSERT_NE(menuButton, nullptr);
    EXPECT_TRUE(menuButton->isVisible());
    QTest::mouseClick(menuButton, Qt::LeftButton);
    const auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    entry(*menu, u"Show Info"_s).trigger();
    EXPECT_EQ(informed(), Paths{"/Volumes/a"});
}

TEST_F(KORVENDriveCellViewTest, theRowWhoseMenuIsOpenIsTheSelectedOne)
{
    addVolume("a", 10, 0);
    addVolume("b", 10, 5);
    openScreen();
    table().selectRow(0);
    QTest::mouseClick(cell(1).findChild<QToolButton *>(u"menuButton"_s), Qt::LeftButton);
    ASSERT_NE(QApplication::activePopupWidget(), nullptr);
    EXPECT_EQ(table().selectedRow(), 1);
    QApplication::activePopupWidget()->close();
    QTest::mouseClick(cell(0).findChild<QToolButton *>(u"menuButton"_s), Qt::LeftButton);
    EXPECT_EQ(table().selectedRow(), 0);
    QApplication::activePopupWidget()->close();
}

TEST_F(KORVENDriveCellViewTest, theMenuActsOnTheRowThatItWasOpenedOn)
{
    addVolume("stick", 10, 5, removable);
    openScreen();
    const QMenu *menu = cell(0).popUpMenu({});
    volumes().entries.clear();
    addVolume("other", 10, 5);
    addVolume("stick", 10, 9, removable);
    m_screen->refreshClicked();
    answer();
    ASSERT_EQ(shownNames(), (Paths{"other", "stick"}));
    entry(*menu, u"Show in File Manager"_s).trigger();
    entry(*menu, u"Show Info"_s).trigger();
    entry(*menu, u"Eject"_s).trigger();
    EXPECT_EQ(revealed(), Paths{"/Volumes/stick"});
    EXPECT_EQ(informed(), Paths{"/Volumes/stick"});
    EXPECT_EQ(volumes().ejected, Paths{"/Volumes/stick"});
    EXPECT_FALSE(cell(1).ejectButton()->isEnabled());
}

TEST_F(KORVENDriveCellViewTest, theClipboardIsNotTouched)
{
    addVolume("a", 10, 5);
    openScreen();
    QApplication::clipboard()->setText(u"the user's own"_s);
    cell(0).showInfo();
    EXPECT_EQ(informed(), Paths{"/Volumes/a"});
    EXPECT_EQ(QApplication::clipboard()->text(), u"the user's own"_s);
}

TEST_F(KORVENDriveCellViewTest, whatIsShownIsLogged)
{
    addVolume("a b", 10, 5);
    openScreen();
    const LogLines log("tessaly.drives");
    cell(0).showInFinder();
    cell(0).showInfo();
    const std::vector<std::string> lines = LogLines::waitFor(4);
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_TRUE(lines[0].starts_with("name: ")) << lines[0];
    EXPECT_NE(lines[0].find("NameLabel"), std::string::npos) << lines[0];
    EXPECT_EQ(lines[1], "startup: /");
    EXPECT_EQ(lines[2], "******************* name: a b");
    EXPECT_EQ(lines[3], "******************* open: /Volumes/a b");
}

TEST_F(KORVENDriveCellViewTest, isLoadedFromItsInterfaceFileAlone)
{
    InterfaceFile::registerWidget<KORVENDriveCellView>("KORVENDriveCellView");
    EXPECT_NE(KORVENDriveCellView::tableCellViewWithNibNamed(u"KORVENDriveCell"_s, nullptr),
              nullptr);
    EXPECT_EQ(KORVENDriveCellView::tableCellViewWithNibNamed(u"NoSuchFile"_s, nullptr), nullptr);
    EXPECT_EQ(KORVENDriveCellView::tableCellViewWithNibNamed(u"DriveCell"_s, nullptr), nullptr);
}

TEST_F(KORVENDriveCellViewTest, aBareCellHasNothingInIt)
{
    KORVENDriveCellView bare;
    bare.setServices(m_services.volumes, m_services.fileManager);
    bare.setDiskType(2);
    bare.showEjectControl(true);
    bare.ejectDrive();
    EXPECT_EQ(bare.driveName(), nullptr);
    EXPECT_EQ(bare.diskType(), 2);
    EXPECT_FALSE(bare.isRemoveable());
    EXPECT_FALSE(bare.isUnmountable());
    EXPECT_EQ(volumes().ejected, Paths{});
}

} // namespace
} // namespace tessaly
