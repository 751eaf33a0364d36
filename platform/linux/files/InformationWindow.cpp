#include "platform/linux/files/InformationWindow.hpp"

#include "app/controls/text/MiddleElidedLabel.hpp"
#include "app/controls/theme/IconDrawing.hpp"
#include "app/controls/theme/Theme.hpp"
#include "engine/tree/FilePath.hpp"
#include "engine/tree/PrintableText.hpp"
#include "engine/tree/SizeText.hpp"
#include "platform/DateTexts.hpp"
#include "platform/linux/files/ItemInformation.hpp"

#include <QFont>
#include <QFormLayout>
#include <QFrame>
#include <QHBoxLayout>
#include <QIcon>
#include <QLocale>
#include <QMimeDatabase>
#include <QPainter>
#include <QShortcut>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <system_error>
#include <utility>

#include <sys/stat.h>

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

constexpr int iconSize = 64;
constexpr int usualWidth = 420;
constexpr int margin = 20;
constexpr int sectionMargin = 12;
constexpr int sectionSpacing = 6;
constexpr int titleGap = 14;

// Qt writes "::" of a namespace as "--" in a selector. Every label has a transparent border, so
// that the ring of the focus moves no text.
QString informationStyleSheet()
{
    using namespace theme::information;
    return styleSheetWithColors(uR"(
        tessaly--InformationWindow { background: @window; }
        QLabel { color: @text; border: 1px solid transparent; border-radius: 3px;
                 selection-background-color: @selection; selection-color: @text; }
        QLabel:focus { border-color: @focusRing; }
        QLabel[part="caption"] { color: @caption; }
        QFrame#section { background: @section; border-radius: 6px; }
    )"_s,
                                {{"window"_L1, window},
                                 {"text"_L1, text},
                                 {"selection"_L1, selection},
                                 {"focusRing"_L1, focusRing},
                                 {"caption"_L1, caption},
                                 {"section"_L1, section}});
}

/// The icon of the item, smooth at every scale.
class IconLabel final : public QLabel {
public:
    // Painted from the icon and not set as a pixmap: a pixmap would be blurred after the window
    // moves to a screen with another scale.
    explicit IconLabel(QIcon icon) : m_icon(std::move(icon)) { setFixedWidth(iconSize + 2); }

    [[nodiscard]] QSize sizeHint() const override { return {iconSize + 2, iconSize + 2}; }

protected:
    void paintEvent(QPaintEvent * /*event*/) override
    {
        QPainter painter(this);
        drawIcon(painter, m_icon, {iconSize, iconSize}, rect());
    }

private:
    const QIcon m_icon;
};

QString textOf(const std::string &bytes)
{
    return QString::fromStdString(tree::printableText(bytes));
}

// From what is known already: QMimeDatabase would open the file itself, on the main thread, and a
// file system that does not answer would block the window.
QMimeType mimeTypeOf(const ItemInformation &item)
{
    const QMimeDatabase types;
    // Only regular files are told by name and content. A folder named "photo.png" is not an image.
    switch (item.mode & S_IFMT) {
    case S_IFDIR:
        return types.mimeTypeForName(u"inode/directory"_s);
    case S_IFLNK:
        return types.mimeTypeForName(u"inode/symlink"_s);
    case S_IFIFO:
        return types.mimeTypeForName(u"inode/fifo"_s);
    case S_IFSOCK:
        return types.mimeTypeForName(u"inode/socket"_s);
    case S_IFCHR:
        return types.mimeTypeForName(u"inode/chardevice"_s);
    case S_IFBLK:
        return types.mimeTypeForName(u"inode/blockdevice"_s);
    default:
        break;
    }
    // Without the content, which may not be readable, the name alone decides.
    const QString name = textOf(tree::fileName(item.path));
    return item.beginning
               ? types.mimeTypeForFileNameAndData(name, QByteArray::fromStdString(*item.beginning))
               : types.mimeTypeForFile(name, QMimeDatabase::MatchExtension);
}

QString kindOf(const ItemInformation &item)
{
    QString kind = mimeTypeOf(item).comment();
    if (!kind.isEmpty()) {
        // The database's texts begin in lower case, as parts of a sentence.
        kind[0] = kind[0].toUpper();
    }
    return kind;
}

/// What the theme has for the kind of item, or else what the style has.
QIcon iconOf(const ItemInformation &item, const QStyle &style)
{
    const QMimeType type = mimeTypeOf(item);
    QStyle::StandardPixmap standard = QStyle::SP_FileIcon;
    if (S_ISDIR(item.mode)) {
        standard = QStyle::SP_DirIcon;
    } else if (S_ISLNK(item.mode)) {
        standard = QStyle::SP_FileLinkIcon;
    }
    // Themes have few icons of single types and most of the generic ones. Without any theme, as on
    // a bare X server, the style's own icon is left.
    const QIcon ownIcon = QIcon::fromTheme(type.iconName());
    const QIcon icon = ownIcon.isNull() ? QIcon::fromTheme(type.genericIconName()) : ownIcon;
    return icon.isNull() ? style.standardIcon(standard) : icon;
}

/// The number by which tr() chooses the plural form; larger ones have the form of the largest.
int formFor(std::uint64_t count)
{
    // tr() takes an int. A cast of a larger number could come out negative, or as 1.
    return static_cast<int>(std::min<std::uint64_t>(count, std::numeric_limits<int>::max()));
}

QString byteCountText(std::uint64_t byteCount)
{
    const QString size = QString::fromStdString(tree::sizeText(static_cast<double>(byteCount)));
    // The singular is a text of its own: in English no translation is loaded, and without one tr()
    // returns the same text for every number.
    return byteCount == 1 ? InformationWindow::tr("%1 (1 byte)").arg(size)
                          : InformationWindow::tr("%1 (%2 bytes)", nullptr, formFor(byteCount))
                                .arg(size, QLocale().toString(byteCount));
}

QString entryCountText(const std::optional<std::uint64_t> &count)
{
    if (!count) {
        return InformationWindow::tr("This folder cannot be read");
    }
    return *count == 1 ? InformationWindow::tr("1 item")
                       : InformationWindow::tr("%1 items", nullptr, formFor(*count))
                             .arg(QLocale().toString(*count));
}

/// What three bits of permissions allow, in words.
/// Callers shift the bits of the owner and the group to those of the others.
QString allowedText(mode_t bits, bool isFolder)
{
    QStringList words;
    if ((bits & S_IROTH) != 0) {
        words.append(InformationWindow::tr("read"));
    }
    if ((bits & S_IWOTH) != 0) {
        words.append(InformationWindow::tr("write"));
    }
    if ((bits & S_IXOTH) != 0) {
        words.append(isFolder ? InformationWindow::tr("enter") : InformationWindow::tr("run"));
    }
    return words.isEmpty() ? InformationWindow::tr("no access") : words.join(u", "_s);
}

/// "rwxr-xr-x", with the letters that programs of the command line show for the special bits.
QString modeText(mode_t mode)
{
    QString text = u"rwxrwxrwx"_s;
    for (int place = 0; place < text.size(); ++place) {
        if ((mode & (S_IRUSR >> static_cast<unsigned>(place))) == 0) {
            text[place] = u'-';
        }
    }
    const auto mark = [&](mode_t bit, int place, QChar letter) {
        if ((mode & bit) != 0) {
            // As ls prints it: a capital letter says that the bit is set and that nobody can
            // execute.
            text[place] = text[place] == u'-' ? letter.toUpper() : letter;
        }
    };
    mark(S_ISUID, 2, u's');
    mark(S_ISGID, 5, u's');
    mark(S_ISVTX, 8, u't');
    return text;
}

} // namespace

InformationWindow::InformationWindow(const ItemInformation &item, const DateTexts &dates)
{
    setAttribute(Qt::WA_QuitOnClose, false); // the program ends with its main window
    setWindowTitle(tr("Information about “%1”").arg(textOf(tree::fileName(item.path))));
    setStyleSheet(informationStyleSheet());
    // A QDialog closes on Escape, but not on Ctrl+W.
    connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this, &QDialog::close);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(sectionSpacing);
    addHeader(item, *column);
    // After an error the mode, the dates and the owner are zeros, which would look like facts.
    if (item.error != 0) {
        addProblem(item, *column);
    } else {
        addGeneral(item, *column);
        addDates(item, dates, *column);
        addPermissions(item, *column);
    }
    column->addStretch();
    alignCaptions();
    // A width of our own: the labels' size hints have room for whole paths, which may be wider than
    // the screen.
    resize(usualWidth, sizeHint().height());
}

void InformationWindow::addHeader(const ItemInformation &item, QVBoxLayout &column)
{
    auto *name = new MiddleElidedLabel(textOf(tree::fileName(item.path)));
    name->setObjectName(u"name"_s);
    QFont large = name->font();
    // Relative, since the desktop's font may be of any size.
    large.setPointSizeF(large.pointSizeF() * 1.3);
    large.setBold(true);
    name->setFont(large);

    auto *texts = new QVBoxLayout;
    texts->setSpacing(0);
    // The stretches keep the name and the kind in the middle of the icon's height.
    texts->addStretch();
    texts->addWidget(name);
    if (item.error == 0) {
        auto *kind = new MiddleElidedLabel(kindOf(item));
        kind->setObjectName(u"kind"_s);
        texts->addWidget(kind);
    }
    texts->addStretch();

    auto *header = new QHBoxLayout;
    header->setSpacing(titleGap);
    header->addWidget(new IconLabel(iconOf(item, *style())));
    // The texts take the width that the icon leaves, so that a long name is elided there.
    header->addLayout(texts, 1);
    column.addLayout(header);
}

void InformationWindow::addGeneral(const ItemInformation &item, QVBoxLayout &column)
{
    QFormLayout &rows = addSection(tr("General"), column);
    // A folder has no size here: its own bytes say nothing about its content, and the content would
    // have to be scanned.
    if (S_ISDIR(item.mode)) {
        addRow(rows, u"contains"_s, tr("Contains"), entryCountText(item.entryCount));
    } else if (S_ISLNK(item.mode)) {
        const QString target = textOf(item.target);
        addRow(rows, u"target"_s, tr("Leads to"),
               item.isTargetThere ? target : tr("%1 (not there)").arg(target));
    } else if (S_ISREG(item.mode)) {
        addRow(rows, u"size"_s, tr("Size"), byteCountText(item.byteCount));
    }
    addRow(rows, u"where"_s, tr("Where"), textOf(tree::parentPath(item.path)));
}

void InformationWindow::addDates(const ItemInformation &item, const DateTexts &dates,
                                 QVBoxLayout &column)
{
    const auto textOf = [&](std::chrono::sys_seconds time) {
        return QString::fromStdString(dates.text(time, DateStyle::longer, DateStyle::shortest));
    };
    QFormLayout &rows = addSection(tr("Dates"), column);
    // Not every file system records it, and a row without a value would raise questions.
    if (item.created) {
        addRow(rows, u"created"_s, tr("Created"), textOf(*item.created));
    }
    addRow(rows, u"modified"_s, tr("Modified"), textOf(item.modified));
    addRow(rows, u"accessed"_s, tr("Last opened"), textOf(item.accessed));
}

void InformationWindow::addPermissions(const ItemInformation &item, QVBoxLayout &column)
{
    // The kernel keeps three groups of three bits, the owner's on top.
    constexpr unsigned ownerShift = 6;
    constexpr unsigned groupShift = 3;
    const bool isFolder = S_ISDIR(item.mode);
    const auto allowed = [&](unsigned shift) { return allowedText(item.mode >> shift, isFolder); };
    QFormLayout &rows = addSection(tr("Permissions"), column);
    if (S_ISLNK(item.mode)) { // has none of its own, whatever its mode says
        addRow(rows, u"owner"_s, tr("Owner"), textOf(item.owner));
        addRow(rows, u"group"_s, tr("Group"), textOf(item.group));
        return;
    }
    addRow(rows, u"owner"_s, tr("Owner"),
           tr("%1: %2").arg(textOf(item.owner), allowed(ownerShift)));
    addRow(rows, u"group"_s, tr("Group"),
           tr("%1: %2").arg(textOf(item.group), allowed(groupShift)));
    addRow(rows, u"others"_s, tr("Others"), allowed(0));
    addRow(rows, u"mode"_s, tr("In short"), modeText(item.mode));
}

void InformationWindow::addProblem(const ItemInformation &item, QVBoxLayout &column)
{
    QString text;
    // The two usual reasons in words of our own. The system's text says less, but covers every
    // other error.
    switch (item.error) {
    case ENOENT:
    case ENOTDIR:
        text = tr("This item is not there any more.");
        break;
    case EACCES:
        text = tr("You are not permitted to look into the folder of this item.");
        break;
    default:
        text = tr("This item cannot be looked at: %1.")
                   .arg(QString::fromStdString(std::generic_category().message(item.error)));
    }
    auto *problem = new QLabel(text);
    problem->setObjectName(u"problem"_s);
    // It can be selected, since error texts are looked up elsewhere.
    problem->setTextFormat(Qt::PlainText);
    problem->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    // Texts of the system have any length.
    problem->setWordWrap(true);
    column.addSpacing(sectionSpacing);
    column.addWidget(problem);
    // The path is known without asking the system, and may show what is wrong.
    addRow(addSection(tr("General"), column), u"where"_s, tr("Where"),
           textOf(tree::parentPath(item.path)));
}

QFormLayout &InformationWindow::addSection(const QString &title, QVBoxLayout &column)
{
    auto *heading = new QLabel(title);
    QFont bold = heading->font();
    bold.setBold(true);
    heading->setFont(bold);
    column.addSpacing(sectionSpacing);
    column.addWidget(heading);

    auto *section = new QFrame;
    section->setObjectName(u"section"_s);
    // The heading is a label of its own. Without this name a screen reader would announce the frame
    // without a title.
    section->setAccessibleName(title);
    auto *rows = new QFormLayout(section);
    rows->setContentsMargins(sectionMargin, sectionMargin, sectionMargin, sectionMargin);
    // Some styles keep fields at their size hints, and elided values would have no room to grow.
    rows->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    column.addWidget(section);
    return *rows;
}

void InformationWindow::addRow(QFormLayout &rows, const QString &objectName, const QString &caption,
                               const QString &value)
{
    auto *captionLabel = new QLabel(caption);
    captionLabel->setProperty("part", u"caption"_s);
    captionLabel->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto *valueLabel = new MiddleElidedLabel(value);
    valueLabel->setObjectName(objectName);
    // The value can have the focus, and would be read without its caption.
    valueLabel->setAccessibleDescription(caption);
    // Accessibility takes the value's name from its buddy.
    captionLabel->setBuddy(valueLabel);
    rows.addRow(captionLabel, valueLabel);
    m_captions.append(captionLabel);
}

void InformationWindow::alignCaptions()
{
    // Each section is a form layout of its own, so their columns of captions would have different
    // widths.
    int widest = 0;
    for (const QLabel *caption : m_captions) {
        // A style sheet applies at the first show. Before that the size hint lacks the border.
        caption->ensurePolished();
        widest = std::max(widest, caption->sizeHint().width());
    }
    for (QLabel *caption : m_captions) {
        caption->setFixedWidth(widest);
    }
}

} // namespace tessaly
