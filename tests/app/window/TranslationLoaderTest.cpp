#include "app/window/TranslationLoader.hpp"

#include "app/controls/buttons/KORVENButton.hpp"
#include "app/controls/interface/InterfaceFile.hpp"
#include "app/controls/tables/CellTableView.hpp"
#include "app/controls/text/NameLabel.hpp"
#include "app/window/Sidebar.hpp"

#include <QCoreApplication>
#include <QFile>
#include <QLabel>
#include <QLibraryInfo>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

QString closeText()
{
    return QCoreApplication::translate("tessaly::KORVENWindow", "Close");
}

QString pagesText(int count)
{
    return QCoreApplication::translate("tessaly::PreviewWindow", "%1 pages", nullptr, count);
}

/// The texts of all labels in the interface file, in no order.
QStringList labelsOf(const QString &name)
{
    const InterfaceFile::Loaded loaded = InterfaceFile::load(name);
    QStringList texts;
    if (loaded.root != nullptr) {
        for (const auto *label : loaded.root->findChildren<QLabel *>()) {
            texts << label->text();
        }
        for (const auto *label : loaded.root->findChildren<NameLabel *>()) {
            texts << label->text();
        }
    }
    return texts;
}

TEST(TranslationLoader, textsAreInTheUsersLanguageWhileItLives)
{
    EXPECT_EQ(closeText(), u"Close"_s);
    {
        const TranslationLoader german({u"de-AT"_s, u"de"_s});
        EXPECT_EQ(german.language(), u"de"_s);
        EXPECT_EQ(closeText(), u"Schließen"_s);
    }
    EXPECT_EQ(closeText(), u"Close"_s);
    const TranslationLoader french({u"fr_CA"_s});
    EXPECT_EQ(french.language(), u"fr"_s);
    EXPECT_EQ(closeText(), u"Fermer"_s);
}

TEST(TranslationLoader, interfaceFilesAreTranslated)
{
    EXPECT_TRUE(labelsOf(u"ScanCell"_s).contains(u"Folder Scan"_s));
    const TranslationLoader german({u"de"_s});
    EXPECT_TRUE(labelsOf(u"ScanCell"_s).contains(u"Ordner-Scan"_s));
    EXPECT_FALSE(labelsOf(u"ScanCell"_s).contains(u"Folder Scan"_s));
}

TEST(TranslationLoader, buttonsKeepTheirKeysInEveryLanguage)
{
    for (const QString &language : {u"en"_s, u"de"_s, u"fr"_s}) {
        const TranslationLoader loader({language});
        const InterfaceFile::Loaded loaded = InterfaceFile::load("KORVENScanViewController");
        ASSERT_NE(loaded.root, nullptr) << loaded.error.toStdString();
        EXPECT_EQ(outlet<KORVENButton>(*loaded.root, "scanButton").shortcut(),
                  QKeySequence(Qt::CTRL | Qt::Key_O))
            << qPrintable(language);
        EXPECT_EQ(outlet<KORVENButton>(*loaded.root, "cancelButton").shortcut(),
                  QKeySequence(Qt::Key_Escape))
            << qPrintable(language);
    }
}

TEST(TranslationLoader, titlesOfTheSidebarEndWithAnEllipsisWhereTheyDoNotFit)
{
    int shortenedCount = 0;
    for (const QString &language : {u"de"_s, u"fr"_s}) {
        const TranslationLoader loader({language});
        Sidebar sidebar(
            {{u"DriveCell"_s, {}},
             {u"FolderCell"_s, {}},
             {u"ScanCell"_s, {}},
             {u"HistoryCell"_s, {}}},
            [](const QKeyEvent & /*event*/, const QString & /*typed*/) { return false; });
        QFont font = sidebar.font();
        font.setPointSize(16);
        sidebar.setFont(font);
        sidebar.resize(Sidebar::usualWidth, 400);
        sidebar.show();
        for (int row = 0; row < 4; ++row) {
            const QWidget *cell = sidebar.outlineTable().cellForRow(row);
            ASSERT_NE(cell, nullptr);
            auto *title = cell->findChild<NameLabel *>();
            ASSERT_NE(title, nullptr) << row;
            EXPECT_EQ(title->font().pointSize(), 16);
            if (!title->isShortened()) {
                continue;
            }
            ++shortenedCount;
            const QImage shown = title->grab().toImage();
            title->setText(title->fontMetrics().elidedText(title->text(), Qt::ElideRight,
                                                           title->contentsRect().width()));
            EXPECT_FALSE(title->isShortened());
            EXPECT_EQ(shown, title->grab().toImage()) << qPrintable(title->text());
        }
    }
    EXPECT_GT(shortenedCount, 0);
}

TEST(TranslationLoader, everyNumberHasItsForm)
{
    EXPECT_EQ(pagesText(2), u"%1 pages"_s);
    const TranslationLoader german({u"de"_s});
    EXPECT_EQ(pagesText(0), u"%1 Seiten"_s);
    EXPECT_EQ(pagesText(2), u"%1 Seiten"_s);
    const TranslationLoader french({u"fr"_s});
    EXPECT_EQ(pagesText(0), u"%1 page"_s);
    EXPECT_EQ(pagesText(2), u"%1 pages"_s);
}

TEST(TranslationLoader, firstLanguageThatTheProgramSpeaksIsTaken)
{
    EXPECT_EQ(TranslationLoader::languageFor({u"it-IT"_s, u"it"_s, u"fr-FR"_s, u"de"_s}), u"fr"_s);
    EXPECT_EQ(TranslationLoader::languageFor({u"DE"_s}), u"de"_s);
}

TEST(TranslationLoader, englishIsSpokenByTheTextsThemselves)
{
    // Who prefers English gets it, whatever comes after it.
    const TranslationLoader english({u"en-GB"_s, u"de"_s});
    EXPECT_EQ(english.language(), u"en"_s);
    EXPECT_EQ(closeText(), u"Close"_s);
    EXPECT_EQ(TranslationLoader::languageFor({u"C"_s}), u"en"_s);
    EXPECT_EQ(TranslationLoader::languageFor({}), u"en"_s);
    EXPECT_EQ(TranslationLoader::languageFor({u"../../etc"_s}), u"en"_s);
}

TEST(TranslationLoader, dialogsOfQtSpeakTheSameLanguage)
{
    const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    if (!QFile::exists(folder + u"/qtbase_de.qm"_s)) {
        GTEST_SKIP() << "needs qt6-translations-l10n";
    }
    const auto cancel = [] { return QCoreApplication::translate("QPlatformTheme", "Cancel"); };
    {
        const TranslationLoader german({u"de"_s});
        EXPECT_EQ(cancel(), u"Abbrechen"_s);
    }
    // There are Italian dialogs, but no Italian program.
    const TranslationLoader italian({u"it"_s});
    EXPECT_EQ(cancel(), u"Cancel"_s);
}

} // namespace
} // namespace tessaly
