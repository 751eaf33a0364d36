#include "app/window/Pages.hpp"

#include "drives/KORVENDriveViewController.hpp"
#include "history/KORVENHistoryViewController.hpp"
#include "platform/Services.hpp"
#include "screens/KORVENHomeViewController.hpp"
#include "screens/KORVENScanViewController.hpp"

#include <utility>

using namespace Qt::StringLiterals;

namespace tessaly {

Pages::Pages(const Services &services)
{
    m_drives = add(std::make_unique<KORVENDriveViewController>(
                       services.volumes, services.applications, services.fileManager),
                   u"DriveCell"_s, tr("&Drives"));
    m_home = add(std::make_unique<KORVENHomeViewController>(services), u"FolderCell"_s,
                 tr("&Home Folder"));
    m_scan = add(std::make_unique<KORVENScanViewController>(services), u"ScanCell"_s,
                 tr("&Folder Scan"));
    m_history =
        add(std::make_unique<KORVENHistoryViewController>(services.dates, services.documents),
            u"HistoryCell"_s, tr("H&istory"));
}

void Pages::awakeFromNib()
{
    for (const Page &page : m_all) {
        page.screen->awakeFromNib();
    }
}

Pages::~Pages()
{
    // By hand, since the standard does not say in which order a vector destroys its elements. The
    // history has to be the last one: workers of the scan screens may add a record until they end.
    for (Page &page : m_all) {
        page.screen.reset();
    }
}

template <typename PageScreen>
PageScreen *Pages::add(std::unique_ptr<PageScreen> screen, const QString &cellIdentifier,
                       const QString &menuTitle)
{
    PageScreen *added = screen.get();
    m_all.push_back({std::move(screen), cellIdentifier, menuTitle});
    return added;
}

} // namespace tessaly
