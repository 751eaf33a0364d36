// What the manual page says, by what the program does.

#include "tests/app/window/WindowTest.hpp"

#include <QAbstractButton>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QShortcut>

using namespace Qt::StringLiterals;

namespace tessaly {
namespace {

class ManualTest : public WindowTest {
protected:
    void SetUp() override
    {
        QFile file(QStringLiteral(TESSALY_MANUAL));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        m_manual = QString::fromUtf8(file.readAll());
    }

    /// The lines from a heading to the next one of its kind.
    [[nodiscard]] QString section(const QString &title) const
    {
        const auto begin = m_manual.indexOf(u".SH %1\n"_s.arg(title));
        return m_manual.mid(begin, m_manual.indexOf(u"\n.SH "_s, begin) - begin);
    }

    /// The words in bold of a section's tags.
    [[nodiscard]] QSet<QString> tagsOf(const QString &title) const
    {
        static const QRegularExpression tag(u"^\\.BR? (.+)$"_s,
                                            QRegularExpression::MultilineOption);
        QSet<QString> tags;
        for (auto match = tag.globalMatch(section(title)); match.hasNext();) {
            for (const QString &word : match.next().captured(1).split(u" \", \" "_s)) {
                tags << QString(word).remove(u'"');
            }
        }
        return tags;
    }

    /// All keys of the window, but for the letters of its buttons.
    [[nodiscard]] QList<QKeySequence> keysOfWindow() const
    {
        QList<QKeySequence> keys;
        for (int item = 0; item < static_cast<int>(ApplicationMenu::Item::count); ++item) {
            keys << action(static_cast<ApplicationMenu::Item>(item)).shortcut();
        }
        for (const QShortcut *shortcut : window().findChildren<QShortcut *>()) {
            keys << shortcut->keys();
        }
        for (const QAbstractButton *button : window().findChildren<QAbstractButton *>()) {
            if (button->shortcut() != QKeySequence::mnemonic(button->text())) {
                keys << button->shortcut();
            }
        }
        keys.removeAll(QKeySequence());
        return keys;
    }

    QString m_manual;
};

TEST_F(ManualTest, namesAllKeys)
{
    openWindow();
    m_controller->showPreferenceSheet();
    const QSet<QString> tags = tagsOf(u"KEYS"_s);
    const QList<QKeySequence> keys = keysOfWindow();
    EXPECT_GT(keys.size(), 20);
    for (const QKeySequence &key : keys) {
        const QString name = key == QKeySequence(Qt::Key_Delete) ? u"Delete"_s : key.toString();
        EXPECT_TRUE(tags.contains(name)) << qPrintable(name);
    }
}

TEST_F(ManualTest, namesAllExitStates)
{
    for (const QString &status : {u"0"_s, u"1"_s, u"2"_s}) {
        EXPECT_TRUE(tagsOf(u"EXIT STATUS"_s).contains(status)) << qPrintable(status);
    }
}

TEST_F(ManualTest, namesNoOptionWithoutEffect)
{
    EXPECT_FALSE(m_manual.contains(u"style"_s));
}

} // namespace
} // namespace tessaly
