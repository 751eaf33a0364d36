#include "history/KORVENHistoryCellView.hpp"

#include "app/controls/buttons/KORVENButton.hpp"
#include "app/controls/interface/InterfaceFile.hpp"
#include "app/controls/tables/IconView.hpp"
#include "app/controls/text/NameLabel.hpp"
#include "app/controls/theme/Theme.hpp"
#include "app/delegate/KORVENAppDelegate.hpp"
#include "app/delegate/NamedException.hpp"
#include "history/records/KORVENHistoryStore.hpp"
#include "resources/Artwork.hpp"

#include <QLabel>
#include <QLoggingCategory>

using namespace Qt::StringLiterals;

namespace tessaly {

namespace {

Q_LOGGING_CATEGORY(cellLog, "tessaly.history.cell")

const QString imageName = u"history.png"_s;

// In relation to the user's font, which the interface file does not know.
void enlarge(QLabel &label)
{
    constexpr double totalScale = 1.15;
    QFont font = label.font();
    font.setPointSizeF(font.pointSizeF() * totalScale);
    label.setFont(font);
}

} // namespace

KORVENHistoryCellView::KORVENHistoryCellView(QWidget *parent) : QWidget(parent) {}

KORVENHistoryCellView::~KORVENHistoryCellView() = default;

std::unique_ptr<KORVENHistoryCellView>
KORVENHistoryCellView::tableCellViewWithNibNamed(const QString &name,
                                                 const KORVENHistoryViewController * /*owner*/)
{
    // QUiLoader makes a widget of a custom class only if the class was registered under its name.
    InterfaceFile::registerWidget<KORVENHistoryCellView>("KORVENHistoryCellView");
    InterfaceFile::Loaded loaded = InterfaceFile::load(name);
    auto *cell = qobject_cast<KORVENHistoryCellView *>(loaded.root.get());
    if (cell == nullptr) {
        qCWarning(cellLog, "%s has no cell: %s", qUtf8Printable(name),
                  qUtf8Printable(loaded.error));
        return nullptr;
    }
    // The root and the cell are one object, which moves to a pointer of its own type.
    (void)loaded.root.release();
    std::unique_ptr<KORVENHistoryCellView> owned(cell);
    owned->connectOutlets();
    return owned;
}

void KORVENHistoryCellView::connectOutlets()
{
    m_imageView = &outlet<IconView>(*this, "imageView");
    m_scanPath = &outlet<NameLabel>(*this, "scanPath");
    m_scanTotal = &outlet<QLabel>(*this, "scanTotal");
    m_scanDate = &outlet<QLabel>(*this, "scanDate");
    m_deleteButton = &outlet<KORVENButton>(*this, "deleteButton");
    makeCaption(*m_scanDate);
    enlarge(*m_scanTotal);
    m_imageView->setClickable(true);
    connect(m_imageView, &IconView::clicked, this, &KORVENHistoryCellView::imageClicked);
    connect(m_deleteButton, &KORVENButton::clicked, this, &KORVENHistoryCellView::deleteClicked);
}

void KORVENHistoryCellView::setScanKey(const std::optional<std::string> &scanKey)
{
    // A reload fills every cell again. A press of the mouse survives if the cell still shows its
    // record, and must not reach another one.
    if (m_scanKey == scanKey) {
        return;
    }
    m_scanKey = scanKey;
    if (m_imageView != nullptr) {
        m_imageView->setImage(artworkIcon(imageName), imageName); // which forgets a press
        // A QAbstractButton that is not down when the mouse is released does not send clicked().
        m_deleteButton->setDown(false);
    }
}

// By key, through the delegate: the scan is shown by another page, which this layer does not
// include.
void KORVENHistoryCellView::imageClicked()
{
    KORVENAppDelegate::sharedDelegate().loadHistoryItem(m_scanKey.value_or(std::string()));
}

void KORVENHistoryCellView::deleteClicked()
{
    if (!m_scanKey) {
        return; // no record has this key
    }
    const std::string key = *m_scanKey;
    try {
        // Noted on disk first. A kill between deleting the file and saving the list would leave a
        // record that opens nothing.
        KORVENHistoryStore::sharedStore().removeItemCrashSafe(key);
    } catch (const NamedException &exception) {
        qCWarning(cellLog, "The scan was not deleted: %s", exception.what());
    }
}

} // namespace tessaly
