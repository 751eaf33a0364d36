#include "app/controls/alerts/AlertPanel.hpp"

#include "app/controls/buttons/KORVENButton.hpp"
#include "app/controls/tables/IconView.hpp"
#include "resources/Artwork.hpp"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>

namespace tessaly {

namespace {

constexpr int iconSize = 64;
constexpr int maxTextWidth = 480;
constexpr int margin = 24;
constexpr int betweenIconAndTexts = 18;
constexpr int betweenTexts = 8;
constexpr int betweenButtons = 9;

QLabel *makeLabel(const QString &text, bool isBold)
{
    auto *label = new QLabel(text);
    // A text may hold the name of a file, which may look like markup.
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    QFont font = label->font();
    font.setBold(isBold);
    label->setFont(font);
    // A QLabel with word wrap prefers short lines, whatever room there is.
    label->setMinimumWidth(std::min(label->fontMetrics().size(0, text).width() + 1, maxTextWidth));
    return label;
}

} // namespace

AlertPanel::AlertPanel(const QString &messageText, const QString &informativeText,
                       const QStringList &buttonTitles, QWidget *parent)
    : QWidget(parent), m_text(messageText), m_informativeText(informativeText)
{
    auto *icon = new IconView;
    icon->setImageSize({iconSize, iconSize});
    icon->setImage(applicationIcon());

    auto *texts = new QVBoxLayout;
    texts->setSpacing(betweenTexts);
    texts->addWidget(makeLabel(messageText, true));
    texts->addWidget(makeLabel(informativeText, false));
    texts->addStretch();

    auto *above = new QHBoxLayout;
    above->setSpacing(betweenIconAndTexts);
    above->addWidget(icon, 0, Qt::AlignTop);
    above->addLayout(texts, 1);

    auto *row = new QHBoxLayout;
    row->setSpacing(betweenButtons);
    row->addStretch();
    for (const QString &title : buttonTitles) {
        auto *button = new KORVENButton(title);
        button->setAutoDefault(true); // Return presses the one that has the keyboard
        const int number = static_cast<int>(m_buttons.size());
        connect(button, &KORVENButton::clicked, this, [this, number] { Q_EMIT pressed(number); });
        m_buttons.append(button);
        row->addWidget(button);
    }

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(betweenIconAndTexts);
    layout->addLayout(above, 1);
    layout->addLayout(row);
}

} // namespace tessaly
