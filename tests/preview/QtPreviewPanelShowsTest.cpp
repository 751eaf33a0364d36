#include "app/controls/text/NameLabel.hpp"
#include "app/controls/text/WrappingLabel.hpp"
#include "preview/CardView.hpp"
#include "preview/ImageView.hpp"
#include "preview/MediaView.hpp"
#include "preview/PdfView.hpp"
#include "preview/PreviewHeader.hpp"
#include "preview/PreviewWindow.hpp"
#include "preview/QtPreviewPanels.hpp"
#include "preview/TextView.hpp"
#include "tests/engine/TemporaryFolder.hpp"
#include "tests/preview/PanelItems.hpp"
#include "tests/preview/PreviewFiles.hpp"
#include "tests/preview/WebmFile.hpp"

#include <QAbstractButton>
#include <QAudioDevice>
#include <QLabel>
#include <QMediaDevices>
#include <QScrollBar>
#include <QSlider>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

class QtPreviewPanelShowsTest : public testing::Test {
protected:
    QtPreviewPanelShowsTest()
    {
        m_panels.setController(&m_items);
        window().resize(800, 600);
    }

    [[nodiscard]] PreviewWindow &window() { return m_panels.sharedPreviewPanel().window(); }

    /// Opens a file and waits for its preview; which kind that is.
    QString shown(const std::string &name, const QByteArray &bytes)
    {
        writeFile(m_folder.path(name), bytes);
        return shown(m_folder.path(name));
    }
    QString shown(const std::string &path)
    {
        m_items.paths = {path};
        m_panels.sharedPreviewPanel().makeKeyAndOrderFront();
        m_panels.sharedPreviewPanel().reloadData();
        waitUntil([this] { return window().shownKind() != u"loading"_s; });
        return window().shownKind();
    }

    /// Whether all labels are as high as they have to be, and none needs scrolling.
    static bool isWholeInSight(const CardView &card)
    {
        const auto labels = card.findChildren<QLabel *>();
        return std::all_of(labels.begin(), labels.end(), [&](const QLabel *label) {
            const QRect place(label->mapTo(card.viewport(), QPoint()), label->size());
            const int needed = label->hasHeightForWidth() ? label->heightForWidth(label->width())
                                                          : label->sizeHint().height();
            return label->isHidden() ||
                   (card.viewport()->rect().contains(place) && label->height() >= needed);
        });
    }

    [[nodiscard]] QString note() { return window().noteLabel().text(); }
    [[nodiscard]] QString card() { return window().cardView().text(); }
    /// The colour in the middle of a widget.
    static QColor middle(QWidget &widget)
    {
        const QImage image = widget.grab().toImage();
        return image.pixelColor(image.width() / 2, image.height() / 2);
    }

    const TemporaryFolder m_folder;
    PanelItems m_items;
    QtPreviewPanels m_panels;
};

TEST_F(QtPreviewPanelShowsTest, images)
{
    EXPECT_EQ(shown("a.png", imageBytes("png", {400, 300}, Qt::red)), u"image"_s);
    EXPECT_EQ(middle(window().imageView()), QColor(Qt::red));
    EXPECT_TRUE(note().contains(u"400 × 300"_s)) << note().toStdString();
}

TEST_F(QtPreviewPanelShowsTest, imagesThatMove)
{
    EXPECT_EQ(shown("a.gif", movingGif()), u"image"_s);
    EXPECT_TRUE(window().imageView().isMoving());
    QTest::keyClick(&window(), Qt::Key_Escape);
    EXPECT_FALSE(window().imageView().isMoving());
}

TEST_F(QtPreviewPanelShowsTest, drawings)
{
    EXPECT_EQ(shown("a.svg", "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\" height=\"9\">"
                             "<rect width=\"9\" height=\"9\" fill=\"#0000ff\"/></svg>"),
              u"image"_s);
    EXPECT_EQ(middle(window().imageView()), QColor(Qt::blue));
}

TEST_F(QtPreviewPanelShowsTest, drawingsThatReferToDevicesWithoutThem)
{
    ASSERT_EQ(mkfifo(m_folder.path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(shown("a.svg",
                    "<svg xmlns=\"http://www.w3.org/2000/svg\" "
                    "xmlns:xlink=\"http://www.w3.org/1999/xlink\" width=\"9\" height=\"9\">"
                    "<image width=\"9\" height=\"9\" xlink:href=\"pipe\"/>"
                    "<image width=\"9\" height=\"9\" xlink:href=\"/dev/zero\"/></svg>"),
              u"image"_s);
}

TEST_F(QtPreviewPanelShowsTest, texts)
{
    EXPECT_EQ(shown("a.cpp", "int main()\n{\n}\n"), u"text"_s);
    EXPECT_EQ(window().textView().toPlainText(), u"int main()\n{\n}\n"_s);
    EXPECT_TRUE(window().textView().isReadOnly());
}

TEST_F(QtPreviewPanelShowsTest, theStartOfLongTextsWithANote)
{
    writeFile(m_folder.path("a.txt"), QByteArray("0123456789 and more\n").repeated(30'000));
    ASSERT_EQ(truncate(m_folder.path("a.txt").c_str(), 4'000'000'000), 0);
    EXPECT_EQ(shown(m_folder.path("a.txt")), u"text"_s);
    EXPECT_TRUE(note().endsWith(u"… first 256 KB of 4.00 GB"_s)) << note().toStdString();
    EXPECT_EQ(window().textView().toPlainText().size(), 256 * 1024);
}

TEST_F(QtPreviewPanelShowsTest, textsOfOneLineOrOfNothingButLines)
{
    EXPECT_EQ(shown("a.txt", QByteArray(300'000, 'x')), u"text"_s);
    EXPECT_EQ(window().textView().toPlainText().remove(u'\n').size(), 256 * 1024);
    EXPECT_LT(window().textView().toPlainText().indexOf(u'\n'), 2000);
    EXPECT_EQ(shown("b.txt", QByteArray(200'000, '\n')), u"text"_s);
    EXPECT_TRUE(note().endsWith(u"… first 20000 lines of 200.00 KB"_s)) << note().toStdString();
}

TEST_F(QtPreviewPanelShowsTest, textsScrollByKeysWhileArrowsPage)
{
    shown("a.txt", QByteArray("line\n").repeated(1000));
    QTest::keyClick(&window(), Qt::Key_PageDown);
    EXPECT_GT(window().textView().verticalScrollBar()->value(), 0);
    QTest::keyClick(&window(), Qt::Key_End);
    EXPECT_EQ(window().textView().verticalScrollBar()->value(),
              window().textView().verticalScrollBar()->maximum());
    QTest::keyClick(&window(), Qt::Key_Home);
    QTest::keyClick(&window(), Qt::Key_Down);
    EXPECT_EQ(window().textView().verticalScrollBar()->value(), 0);
}

TEST_F(QtPreviewPanelShowsTest, documentsPageByPage)
{
    EXPECT_EQ(shown("a.pdf", pdfBytes(40)), u"document"_s);
    EXPECT_TRUE(note().contains(u"40 pages"_s)) << note().toStdString();
    PdfView &view = window().pdfView();
    waitUntil([&view] {
        view.grab();
        return view.hasPage(0);
    });
    EXPECT_FALSE(view.hasPage(39));
    QTest::keyClick(&window(), Qt::Key_End);
    waitUntil([&view] {
        view.grab();
        return view.hasPage(39);
    });
    EXPECT_FALSE(view.hasPage(20));
}

TEST_F(QtPreviewPanelShowsTest, damagedDocumentsAsACard)
{
    EXPECT_EQ(shown("a.pdf", pdfBytes(3).first(120)), u"card"_s);
    EXPECT_TRUE(card().contains(u"This document cannot be read. It may be damaged."_s));
    EXPECT_EQ(shown("b.pdf", "%PDF-1.7\n%\xE2\xE3\xCF\xD3\n" + QByteArray(5000, '\0')), u"card"_s);
    EXPECT_EQ(shown("c.pdf", pdfBytes(1)), u"document"_s); // the thread is still there
}

TEST_F(QtPreviewPanelShowsTest, videos)
{
    EXPECT_EQ(shown("a.avi", aviBytes({64, 48}, Qt::red, 50)), u"player"_s);
    MediaView &view = window().mediaView();
    waitUntil([&] { return view.hasPicture() || window().shownKind() == u"card"_s; });
    ASSERT_EQ(window().shownKind(), u"player"_s) << card().toStdString();
    EXPECT_GT(view.duration(), 0);
    waitUntil([&view] { return view.isPlaying(); });
    view.togglePlaying();
    waitUntil([&view] { return !view.isPlaying(); });
    QTest::keyClick(&window(), Qt::Key_Escape);
    EXPECT_FALSE(view.hasPicture());
}

TEST_F(QtPreviewPanelShowsTest, sounds)
{
    EXPECT_EQ(shown("a.wav", wavBytes()), u"player"_s);
    MediaView &view = window().mediaView();
    waitUntil([&] { return view.duration() > 0 || window().shownKind() == u"card"_s; });
    EXPECT_EQ(view.duration(), 1000);
}

TEST_F(QtPreviewPanelShowsTest, soundsThatNoDevicePlaysWithTheirLength)
{
    if (!QMediaDevices::audioOutputs().isEmpty()) {
        GTEST_SKIP() << "needs a computer without sound";
    }
    EXPECT_EQ(shown("a.wav", wavBytes()), u"player"_s);
    MediaView &view = window().mediaView();
    waitUntil([&] { return !view.hint().isEmpty() && view.duration() > 0; });
    EXPECT_EQ(view.hint(), u"There is no device to play sounds on."_s);
    EXPECT_EQ(view.findChild<QLabel *>()->text(), u"0:01"_s);
    EXPECT_FALSE(view.findChild<QAbstractButton *>()->isEnabled());
    EXPECT_FALSE(view.findChild<QSlider *>()->isVisible());
    EXPECT_FALSE(view.isPlaying());

    EXPECT_EQ(shown("a.avi", aviBytes({64, 48}, Qt::red, 50)), u"player"_s);
    EXPECT_EQ(view.hint(), QString());
    waitUntil([&view] { return view.isPlaying() && view.duration() > 0; });
    EXPECT_TRUE(view.findChild<QAbstractButton *>()->isEnabled());
    EXPECT_TRUE(view.findChild<QSlider *>()->isVisible());
}

TEST_F(QtPreviewPanelShowsTest, videosOfUnknownLengthWithoutASlider)
{
    EXPECT_EQ(shown("a.webm", webmBytes({64, 48}, Qt::red, 50)), u"player"_s);
    MediaView &view = window().mediaView();
    waitUntil([&] { return view.hasPicture() || window().shownKind() == u"card"_s; });
    ASSERT_EQ(window().shownKind(), u"player"_s) << card().toStdString();
    EXPECT_EQ(view.duration(), 0);
    EXPECT_FALSE(view.findChild<QSlider *>()->isVisible());
    waitUntil([&view] { return view.findChild<QLabel *>()->text() == u"0:01"_s; });
    EXPECT_TRUE(view.findChild<QAbstractButton *>()->isEnabled());
}

TEST_F(QtPreviewPanelShowsTest, videosOfALengthThatTheirContainerTells)
{
    EXPECT_EQ(shown("a.webm", webmBytes({64, 48}, Qt::red, 50, 5000)), u"player"_s);
    MediaView &view = window().mediaView();
    waitUntil([&] { return view.hasPicture() || window().shownKind() == u"card"_s; });
    ASSERT_EQ(view.duration(), 5000);
    auto *slider = view.findChild<QSlider *>();
    EXPECT_TRUE(slider->isVisible());
    slider->setValue(3000);
    waitUntil([slider] { return slider->value() > 3000; }); // it plays on from there
}

TEST_F(QtPreviewPanelShowsTest, damagedVideosAsACard)
{
    EXPECT_EQ(shown("a.avi", aviBytes({64, 48}, Qt::red, 5).first(40)), u"player"_s);
    waitUntil([this] { return window().shownKind() == u"card"_s; });
    EXPECT_TRUE(card().contains(u"This cannot be played"_s)) << card().toStdString();
}

TEST_F(QtPreviewPanelShowsTest, otherFilesAsACard)
{
    EXPECT_EQ(shown("data.bin", QByteArray(1'500'000, '\0')), u"card"_s);
    EXPECT_TRUE(card().startsWith(u"data.bin\n"_s));
    EXPECT_TRUE(card().contains(u"Size: 1.50 MB (1500000 bytes)"_s)) << card().toStdString();
    EXPECT_TRUE(card().contains(u"Changed: "_s));
}

TEST_F(QtPreviewPanelShowsTest, devicesAndMissingFilesAsACard)
{
    ASSERT_EQ(mkfifo(m_folder.path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(shown(m_folder.path("pipe")), u"card"_s);
    EXPECT_TRUE(card().contains(u"Only files have a preview."_s));
    EXPECT_EQ(shown("/dev/zero"), u"card"_s);
    EXPECT_EQ(shown(m_folder.path("gone")), u"card"_s);
    EXPECT_TRUE(card().contains(u"This file is no longer there."_s));
}

TEST_F(QtPreviewPanelShowsTest, theWholeCardInTheSmallestPanel)
{
    ASSERT_EQ(mkfifo(m_folder.path("pipe").c_str(), 0600), 0);
    const std::string twoLines(30, 'W');
    writeFile(m_folder.path("data.bin"), QByteArray(1'500'000, '\0'));
    writeFile(m_folder.path(twoLines), QByteArray(1'500'000, '\0'));
    window().resize(window().minimumSize());
    CardView &view = window().cardView();
    for (const std::string &name : {std::string("data.bin"), std::string("pipe"), twoLines}) {
        ASSERT_EQ(shown(m_folder.path(name)), u"card"_s);
        ASSERT_EQ(window().size(), QSize(360, 260));
        EXPECT_TRUE(QTest::qWaitFor([&] { return isWholeInSight(view); })) << name;
    }
}

TEST_F(QtPreviewPanelShowsTest, longNamesOnACardInLines)
{
    EXPECT_EQ(shown(std::string(200, 'W') + "end.bin", QByteArray(1'500'000, '\0')), u"card"_s);
    QCoreApplication::processEvents();
    auto *label = window().cardView().findChild<WrappingLabel *>();
    const QStringList lines = label->linesIn(label->width()).split(u'\n');
    EXPECT_EQ(lines.size(), 4);
    EXPECT_TRUE(lines.first().startsWith(u"WWWW"_s));
    EXPECT_TRUE(lines.join(QString()).contains(u'…'));
    EXPECT_TRUE(lines.last().endsWith(u"WWend.bin"_s));
    const QImage image = label->grab().toImage();
    for (int y = 0; y < image.height(); ++y) {
        for (const int x : {0, image.width() - 1}) {
            EXPECT_EQ(image.pixel(x, y), image.pixel(0, 0)) << "the text is cut off there";
        }
    }
}

TEST_F(QtPreviewPanelShowsTest, onlyTheLastOfManyFilesThatArePagedThrough)
{
    writeFile(m_folder.path("huge.png"), colorPng(9000, 5000));
    writeFile(m_folder.path("a.pdf"), pdfBytes(3));
    writeFile(m_folder.path("a.txt"), "the last");
    m_items.paths = {m_folder.path("huge.png"), m_folder.path("a.pdf"), m_folder.path("a.txt")};
    m_panels.sharedPreviewPanel().makeKeyAndOrderFront();
    for (int i = 0; i < 20 * 3 + 2; ++i) {
        QTest::keyClick(&window(), Qt::Key_Right);
    }
    waitUntil([this] { return window().shownKind() != u"loading"_s; });
    EXPECT_EQ(window().shownKind(), u"text"_s);
    EXPECT_EQ(window().textView().toPlainText(), u"the last"_s);
    EXPECT_EQ(window().header().titleLabel().text(), u"a.txt — 3 of 3"_s);
}

TEST_F(QtPreviewPanelShowsTest, nothingMoreOnceItIsClosedWhileAFileIsRead)
{
    writeFile(m_folder.path("huge.png"), colorPng(9000, 5000));
    m_items.paths = {m_folder.path("huge.png")};
    m_panels.sharedPreviewPanel().makeKeyAndOrderFront();
    QTest::keyClick(&window(), Qt::Key_Escape);
    EXPECT_EQ(shown("a.txt", "text"), u"text"_s);
    EXPECT_EQ(window().textView().toPlainText(), u"text"_s);
}

} // namespace
} // namespace tessaly
