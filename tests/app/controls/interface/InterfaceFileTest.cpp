#include "app/controls/interface/InterfaceFile.hpp"

#include "app/controls/bars/KORVENProgressBar.hpp"
#include "app/controls/buttons/KORVENButton.hpp"
#include "app/controls/buttons/KORVENButtonCell.hpp"

#include <QAction>
#include <QFrame>
#include <QLabel>
#include <QTest>

#include <gtest/gtest.h>

#include <memory>
#include <string>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

class SampleCell : public QFrame {
public:
    using QFrame::QFrame;
};

class OtherCell : public SampleCell {
public:
    using SampleCell::SampleCell;
};

std::unique_ptr<QWidget> sample()
{
    InterfaceFile::Loaded loaded = InterfaceFile::load("Sample");
    EXPECT_EQ(loaded.error.toStdString(), "");
    return std::move(loaded.root);
}

TEST(InterfaceFile, makesTheWidgetsWithTheirNamesAndProperties)
{
    const auto root = sample();
    ASSERT_TRUE(root);
    EXPECT_EQ(root->objectName(), u"Sample"_s);
    EXPECT_EQ(outlet<QLabel>(*root, "nameField").text(), u"A folder"_s);
    EXPECT_EQ(outlet<QFrame>(*root, "line").frameShape(), QFrame::VLine);
}

TEST(InterfaceFile, makesOurOwnControls)
{
    const auto root = sample();
    ASSERT_TRUE(root);
    EXPECT_EQ(outlet<KORVENProgressBar>(*root, "progressBar").accessibleName(),
              u"Part of the whole"_s);
    const auto &scan = outlet<KORVENButton>(*root, "scanButton");
    EXPECT_EQ(scan.text(), u"&Scan"_s);
    EXPECT_EQ(scan.palette().color(QPalette::ButtonText), Qt::white);
    EXPECT_FALSE(scan.icon().pixmap(24).isNull());
    EXPECT_EQ(outlet<KORVENButtonCell>(*root, "closeButton").text(), u"Close"_s);
}

TEST(InterfaceFile, makesNewWidgetsEachTime)
{
    const auto first = sample();
    const auto second = sample();
    ASSERT_TRUE(first && second);
    outlet<QLabel>(*first, "nameField").setText(u"Another"_s);
    EXPECT_EQ(outlet<QLabel>(*second, "nameField").text(), u"A folder"_s);
}

TEST(InterfaceFile, givesTheTopWidgetItsParent)
{
    QWidget parent;
    const InterfaceFile::Loaded loaded = InterfaceFile::load("Sample", &parent);
    ASSERT_TRUE(loaded.root);
    EXPECT_EQ(loaded.root->parent(), &parent);
}

TEST(InterfaceFile, saysWhatIsWrongWithAFile)
{
    struct {
        const char *name;
        const char *reason;
    } const cases[]{
        {"NoSuchFile", "there is no such interface file"},
        {"Broken", "Premature end of document"},
        {"Empty", "Premature end of document"},
        {"../Sample/", "there is no such interface file"},
    };
    for (const auto &[name, reason] : cases) {
        const InterfaceFile::Loaded loaded = InterfaceFile::load(name);
        EXPECT_EQ(loaded.root, nullptr) << name;
        EXPECT_NE(loaded.error.toStdString().find(reason), std::string::npos)
            << loaded.error.toStdString();
        EXPECT_NE(loaded.error.toStdString().find(name), std::string::npos);
    }
}

TEST(InterfaceFile, makesRegisteredClassesOnly)
{
    const InterfaceFile::Loaded refused = InterfaceFile::load("Unregistered");
    EXPECT_EQ(refused.root, nullptr);
    EXPECT_EQ(refused.error,
              u":/tessaly/interface/Unregistered.ui: no class is registered as SampleCell"_s);

    InterfaceFile::registerWidget<SampleCell>("SampleCell");
    const InterfaceFile::Loaded made = InterfaceFile::load("Unregistered");
    EXPECT_NE(dynamic_cast<SampleCell *>(made.root.get()), nullptr) << made.error.toStdString();

    InterfaceFile::registerWidget<OtherCell>("SampleCell");
    const InterfaceFile::Loaded other = InterfaceFile::load("Unregistered");
    EXPECT_NE(dynamic_cast<OtherCell *>(other.root.get()), nullptr) << other.error.toStdString();
}

TEST(InterfaceFile, outletMayBeTheTopWidget)
{
    const auto root = sample();
    ASSERT_TRUE(root);
    EXPECT_EQ(&outlet<QWidget>(*root, "Sample"), root.get());
    EXPECT_EQ(findOutlet<QWidget>(*root, u"Sample"_s), root.get());
}

TEST(InterfaceFile, aMissingOutletEndsTheProgramAndIsNamed)
{
    const auto root = sample();
    ASSERT_TRUE(root);
    for (const char *name : {"sizeField", "scanButton"}) { // is not there; is a button
        EXPECT_EQ(findOutlet<QLabel>(*root, QLatin1StringView(name)), nullptr);
        EXPECT_DEATH(static_cast<void>(outlet<QLabel>(*root, name)),
                     "The interface of Sample has no QLabel \"" + std::string(name) + '"');
    }
}

TEST(InterfaceFile, buttonsAndActionsRunWhatTheyAreWiredTo)
{
    const auto root = sample();
    ASSERT_TRUE(root);
    std::string ran;
    const auto context = std::make_unique<QObject>();
    const QStringList missing = wireActions(*root, *context,
                                            {
                                                {"scanButton", [&ran] { ran += "scan "; }},
                                                {"closeButton", [&ran] { ran += "close "; }},
                                                {"revealAction", [&ran] { ran += "reveal "; }},
                                                {"cancelButton", [&ran] { ran += "never "; }},
                                                {"nameField", [&ran] { ran += "never "; }},
                                            });
    EXPECT_EQ(missing, (QStringList{u"cancelButton"_s, u"nameField"_s}));

    QTest::mouseClick(&outlet<QAbstractButton>(*root, "closeButton"), Qt::LeftButton);
    outlet<QAction>(*root, "revealAction").trigger();
    QTest::keyClick(&outlet<QAbstractButton>(*root, "scanButton"), Qt::Key_Space);
    EXPECT_EQ(ran, "close reveal scan ");
}

TEST(InterfaceFile, wiresAreCutWithTheirContext)
{
    const auto root = sample();
    ASSERT_TRUE(root);
    int runs = 0;
    auto context = std::make_unique<QObject>();
    EXPECT_TRUE(wireActions(*root, *context, {{"scanButton", [&runs] { ++runs; }}}).isEmpty());
    context.reset();
    outlet<QAbstractButton>(*root, "scanButton").click();
    EXPECT_EQ(runs, 0);
}

} // namespace
} // namespace tessaly
