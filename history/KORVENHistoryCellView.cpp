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
    InterfaceFile::registerWidget<KORVENHistoryCellView>("KORVENHistoryCellView");
    InterfaceFile::Loaded loaded = InterfaceFile::load(name);
    auto *cell = qobject_cast<KORVENHistoryCellView *>(loaded.root.get());
    if (cell == nullptr) {
        qCWarning(cellLog, "%s has no cell: %s", qUtf8Printable(name),
                  qUtf8Printable(loaded.error));
        return nullptr;
    }
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
    if (m_scanKey == scanKey) {
        return;
    }
    m_scanKey = scanKey;
    if (m_imageView != nullptr) {
        m_imageView->setImage(artworkIcon(imageName), imageName); // which forgets a press
        m_deleteButton->setDown(false);
    }
}

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
        KORVENHistoryStore::sharedStore().removeItemCrashSafe(key);
    } catch (const NamedException &exception) {
        qCWarning(cellLog, "The scan was not deleted: %s", exception.what());
    }
}

} // namespace tessaly
