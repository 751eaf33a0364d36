#include "preview/CardView.hpp"

#include "app/controls/text/WrappingLabel.hpp"
#include "app/controls/theme/Theme.hpp"
#include "engine/tree/SizeText.hpp"
#include "preview/FileTypeIcon.hpp"
#include "preview/PaintedView.hpp"
#include "preview/PreviewTheme.hpp"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QVBoxLayout>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace tessaly {

namespace {

constexpr int maxIconSide = 112;
constexpr int minIconSide = 32;
constexpr int iconGap = 8; ///< below the icon

QString sizeLine(std::uint64_t byteCount)
{
    const QString bytes = QLocale().toString(static_cast<qulonglong>(byteCount));
    // tr() chooses the plural by an int, and a cast could come out negative.
    const auto form =
        static_cast<int>(std::min<std::uint64_t>(byteCount, std::numeric_limits<int>::max()));
    //: %1 is a size ("1.50 MB"), %2 the same in bytes ("1,500,000")
    return CardView::tr("%1 (%2 bytes)", nullptr, form)
        .arg(QString::fromStdString(tree::sizeText(static_cast<double>(byteCount))), bytes);
}

QString dateLine(const QDateTime &date)
{
    return QLocale().toString(date, QLocale::ShortFormat);
}

/// A centred label of the card.
template <typename Label>
Label *addLabel(QVBoxLayout &layout, int pixelSize, QFont::Weight weight, const QColor &color)
{
    auto *label = new Label;
    setTextStyle(*label, pixelSize, weight, color);
    label->setAlignment(Qt::AlignCenter);
    // A file's name may look like HTML, and a label would load the images that it names.
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    layout.addWidget(label);
    return label;
}

} // namespace

CardView::CardView(QWidget *parent)
    : QScrollArea(parent),
      m_icon(new PaintedView([this](QPainter &painter) { paintIcon(painter); })),
      m_rows(new QFormLayout)
{
    auto *sheet = new QWidget;
    auto *layout = new QVBoxLayout(sheet);
    layout->setContentsMargins(20, 8, 20, 8);
    layout->setSpacing(0);
    layout->addStretch(1);
    m_icon->setMaximumHeight(maxIconSide + iconGap);
    // The icon shrinks first in a low window, since the texts say more.
    layout->addWidget(m_icon, 1000); // the height that the others leave
    m_name = addLabel<WrappingLabel>(*layout, 18, QFont::DemiBold, theme::preview::text);
    // A name may have 255 bytes without a space.
    m_name->setMaxLineCount(4);
    m_type = addLabel<QLabel>(*layout, 13, QFont::Normal, theme::preview::dimText);
    layout->addSpacing(8);
    m_rows->setLabelAlignment(Qt::AlignRight);
    m_rows->setHorizontalSpacing(12);
    m_rows->setVerticalSpacing(4);
    auto *centered = new QHBoxLayout;
    centered->addStretch();
    centered->addLayout(m_rows);
    centered->addStretch();
    layout->addLayout(centered);
    layout->addSpacing(8);
    m_message = addLabel<QLabel>(*layout, 13, QFont::Normal, theme::preview::message);
    layout->addStretch(1);

    setFrameShape(NoFrame);
    setFocusPolicy(Qt::NoFocus); // the window handles the keys
    setWidget(sheet);
    // A low window scrolls instead of clipping the rows.
    setWidgetResizable(true);
    // After setWidget(), which sets it to true.
    sheet->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    setAccessibleName(tr("About the file"));
}

void CardView::paintIcon(QPainter &painter) const
{
    const int side = std::min(m_icon->width(), m_icon->height() - iconGap);
    if (side >= minIconSide) {
        drawFileTypeIcon(painter, m_info, {(m_icon->width() - side) / 2, 0, side, side});
    }
}

void CardView::addRow(const QString &label, const QString &value)
{
    auto *left = new QLabel(label);
    auto *right = new QLabel(value);
    for (QLabel *text : {left, right}) {
        text->setTextFormat(Qt::PlainText);
        setTextColor(*text, text == left ? theme::preview::dimText : theme::preview::text);
    }
    m_rows->addRow(left, right);
}

void CardView::show(const PreviewInfo &info, const QString &message)
{
    m_info = info;
    m_icon->update();
    m_name->setText(info.name);
    m_type->setText(info.type);
    m_message->setText(message);
    // An empty label would still take a line.
    m_message->setVisible(!message.isEmpty());
    // Rebuilt for each file, since not every file system has every date.
    while (m_rows->rowCount() > 0) {
        m_rows->removeRow(0);
    }
    if (info.status.kind == PreviewFileStatus::Kind::regular) {
        addRow(tr("Size"), sizeLine(info.status.byteCount));
    }
    if (info.status.created.isValid()) {
        addRow(tr("Created"), dateLine(info.status.created));
    }
    if (info.status.modified.isValid()) {
        addRow(tr("Changed"), dateLine(info.status.modified));
    }
    // The card never has the focus, so a screen reader would not come to the labels by Tab.
    setAccessibleDescription(text());
}

QString CardView::text() const
{
    QStringList lines{m_name->text(), m_type->text()};
    for (int row = 0; row < m_rows->rowCount(); ++row) {
        const auto textAt = [&](QFormLayout::ItemRole role) {
            return qobject_cast<QLabel *>(m_rows->itemAt(row, role)->widget())->text();
        };
        lines << textAt(QFormLayout::LabelRole) + u": "_s + textAt(QFormLayout::FieldRole);
    }
    lines << m_message->text();
    return lines.join(u'\n');
}

} // namespace tessaly
