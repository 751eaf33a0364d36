#include "preview/CardView.hpp"

#include "engine/tree/SizeText.hpp"
#include "preview/PreviewColors.hpp"
#include "preview/WrappedLabel.hpp"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLocale>
#include <QPainter>
#include <QPainterPath>
#include <QVBoxLayout>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace tessaly {

namespace {

constexpr int iconSideMax = 112;
constexpr int iconSideMin = 32;
constexpr int iconGap = 8;

QPixmap drawnSheet(const PreviewInfo &info, int side, qreal ratio)
{
    QPixmap pixmap(QSize(side, side) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(side / 100.0, side / 100.0);
    QPainterPath sheet;
    sheet.moveTo(22, 6);
    sheet.lineTo(60, 6);
    sheet.lineTo(80, 26);
    sheet.lineTo(80, 94);
    sheet.lineTo(22, 94);
    sheet.closeSubpath();
    QLinearGradient shade(0, 6, 0, 94);
    shade.setColorAt(0, QColor(0xFA, 0xFA, 0xFA));
    shade.setColorAt(1, QColor(0xD8, 0xDA, 0xDE));
    painter.setPen(QPen(QColor(0, 0, 0, 90), 1));
    painter.setBrush(shade);
    painter.drawPath(sheet);
    QPainterPath corner;
    corner.moveTo(60, 6);
    corner.lineTo(60, 26);
    corner.lineTo(80, 26);
    corner.closeSubpath();
    painter.setBrush(QColor(0xC2, 0xC6, 0xCC));
    painter.drawPath(corner);

    constexpr qsizetype maxEndingLength = 5;
    const qsizetype dot = info.name.lastIndexOf(u'.');
    const QString ending = info.name.mid(dot + 1).toUpper();
    if (dot > 0 && !ending.isEmpty() && ending.size() <= maxEndingLength) {
        QFont font = painter.font();
        font.setPixelSize(15);
        font.setBold(true);
        painter.setFont(font);
        painter.setPen(QColor(0x70, 0x76, 0x80));
        painter.drawText(QRectF(22, 60, 58, 24), Qt::AlignCenter, ending);
    }
    return pixmap;
}

QString sizeLine(std::uint64_t byteCount)
{
    const QString bytes = QLocale().toString(static_cast<qulonglong>(byteCount));
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

template <typename Label = QLabel>
Label *addLabel(QVBoxLayout *layout, int pixelSize, QFont::Weight weight, const QColor &color)
{
    auto *label = new Label;
    QFont font = label->font();
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    label->setFont(font);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, color);
    label->setPalette(palette);
    label->setAlignment(Qt::AlignCenter);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    layout->addWidget(label);
    return label;
}

} // namespace

QPixmap fileTypePixmap(const PreviewInfo &info, int side, qreal devicePixelRatio)
{
    const QIcon icon = QIcon::fromTheme(info.iconName);
    return icon.isNull() ? drawnSheet(info, side, devicePixelRatio)
                         : icon.pixmap(QSize(side, side), devicePixelRatio);
}

/// The icon of a file's type, as large as the room allows, with a gap below it.
class CardView::TypeIcon final : public QWidget {
public:
    TypeIcon() { setMaximumHeight(iconSideMax + iconGap); }

    void show(const PreviewInfo &info)
    {
        m_info = info;
        update();
    }

    /// Gets the height that the others leave.
    [[nodiscard]] QSize sizeHint() const override { return {iconSideMax, 0}; }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        const int side = std::min(width(), height() - iconGap);
        if (side >= iconSideMin) {
            QPainter(this).drawPixmap((width() - side) / 2, 0,
                                      fileTypePixmap(m_info, side, devicePixelRatioF()));
        }
    }

private:
    PreviewInfo m_info;
};

CardView::CardView(QWidget *parent)
    : QScrollArea(parent), m_icon(new TypeIcon), m_rows(new QFormLayout)
{
    auto *sheet = new QWidget;
    auto *layout = new QVBoxLayout(sheet);
    layout->setContentsMargins(20, 8, 20, 8);
    layout->setSpacing(0);
    layout->addStretch(1);
    layout->addWidget(m_icon, 1000);
    m_name = addLabel<WrappedLabel>(layout, 18, QFont::DemiBold, preview_colors::text);
    m_type = addLabel(layout, 13, QFont::Normal, preview_colors::dimText);
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
    m_message = addLabel(layout, 13, QFont::Normal, QColor(0xF2, 0xC1, 0x66));
    layout->addStretch(1);

    setFrameShape(NoFrame);
    setFocusPolicy(Qt::NoFocus); // the window has the keys
    setWidget(sheet);
    setWidgetResizable(true);
    sheet->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    setAccessibleName(tr("About the file"));
}

void CardView::addRow(const QString &label, const QString &value)
{
    auto *left = new QLabel(label);
    auto *right = new QLabel(value);
    for (QLabel *text : {left, right}) {
        text->setTextFormat(Qt::PlainText);
        QPalette palette = text->palette();
        palette.setColor(QPalette::WindowText,
                         text == left ? preview_colors::dimText : preview_colors::text);
        text->setPalette(palette);
    }
    m_rows->addRow(left, right);
}

void CardView::show(const PreviewInfo &info, const QString &message)
{
    m_icon->show(info);
    m_name->setText(info.name);
    m_type->setText(info.type);
    m_message->setText(message);
    m_message->setVisible(!message.isEmpty());
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
