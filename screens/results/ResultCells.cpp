#include "screens/results/ResultCells.hpp"

#include "app/controls/bars/KORVENProgressBar.hpp"
#include "app/controls/bars/WarningColors.hpp"
#include "app/controls/interface/InterfaceFile.hpp"
#include "app/controls/tables/CellTexts.hpp"
#include "app/controls/tables/IconView.hpp"
#include "app/controls/text/NameLabel.hpp"
#include "app/controls/text/NameText.hpp"
#include "app/delegate/KORVENAppDelegate.hpp"
#include "resources/Artwork.hpp"
#include "screens/results/KORVENFolderCellView.hpp"
#include "screens/results/KORVENFolderObject.hpp"
#include "screens/results/KORVENViewController.hpp"
#include "screens/results/ResultRows.hpp"

#include <QLabel>

#include <utility>

using namespace Qt::StringLiterals;

namespace tessaly {

namespace {

const QString cellFile = u"KORVENFolderCell"_s;

/// The row's part of the level, as the bars take it: in single precision, in which the warning
/// colours are decided, too (see docs/conventions.md).
float shareOf(const KORVENFolderObject &row, float total)
{
    return static_cast<float>(row.sizeAsPercent(static_cast<double>(total)));
}

} // namespace

ResultCells::ResultCells(CellTableView &table, KORVENViewController &screen,
                         const QString &identifier, TrashImage trashImage)
    : m_table(table), m_screen(screen),
      m_kind(cellsOf<KORVENFolderCellView>(identifier, cellFile, &screen)),
      m_trashImage(std::move(trashImage))
{
    // QUiLoader knows custom classes by name only. Once for each screen is enough; a cell is loaded
    // for every row in sight.
    InterfaceFile::registerWidget<KORVENFolderCellView>("KORVENFolderCellView");
    m_kind.registerIn(table);
}

QWidget *ResultCells::cellFor(const KORVENFolderObject &row, float total)
{
    auto &cell = static_cast<KORVENFolderCellView &>(m_kind.nextOf(m_table));
    // The cell may have shown a row of the other kind before.
    cell.setAllowsClickDrill(row.folderIsDirectory());
    // A bare cell is made without an owner, so every cell is told its screen here.
    cell.setMyViewController(&m_screen);
    if (cell.folderName() == nullptr) {
        return &cell; // a bare one
    }
    const QString name = textOfName(row.folderName());
    cell.folderName()->setText(name);
    cell.folderName()->setToolTip(nameToolTip(name));
    cell.folderSize()->setText(QString::fromStdString(row.folderSizeAsString()));
    showShare(*cell.folderGraph(), shareOf(row, total));

    const QString image = imageName(row);
    cell.iconImage()->setImage(artworkIcon(image), image);
    cell.iconImage()->setToolTip(row.folderIsDirectory() ? KORVENViewController::tr("Drill down")
                                                         : KORVENViewController::tr("Quick look"));
    return &cell;
}

void ResultCells::showShare(KORVENProgressBar &bar, float share)
{
    bar.setBarPercent(share);
    bar.setToolTip(percentText(share));
    // Cells are reused, so the warning colours of the row before are replaced first.
    bar.setColorsBlue();
    if (KORVENAppDelegate::sharedDelegate().folderGraphColorPreference() != 0) {
        setWarningColors(bar, share);
    }
}

QString ResultCells::imageName(const KORVENFolderObject &row) const
{
    if (!row.folderIsDirectory()) {
        return u"file.png"_s;
    }
    // The two scan screens disagree on the image of an empty trash, which is required.
    return row.folderName() == trashName ? m_trashImage(row) : u"folder.png"_s;
}

QString ResultCells::accessibleText(const KORVENFolderObject &row, float total)
{
    // Whole sentences for the translators, rather than pieces that are put together.
    const QString text = row.folderIsDirectory() ? KORVENViewController::tr("%1, folder, %2, %3")
                                                 : KORVENViewController::tr("%1, file, %2, %3");
    return text.arg(drawableText(textOfName(row.folderName())),
                    QString::fromStdString(row.folderSizeAsString()),
                    percentText(shareOf(row, total)).trimmed());
}

} // namespace tessaly
