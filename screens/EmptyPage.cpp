#include "screens/EmptyPage.hpp"

#include "app/controls/buttons/KORVENButton.hpp"
#include "app/controls/interface/InterfaceFile.hpp"
#include "app/controls/theme/Theme.hpp"
#include "engine/tree/LUMFileContainer.hpp"

#include <QLabel>

namespace tessaly {

EmptyPage::EmptyPage(QWidget &view)
    : m_page(outlet<QWidget>(view, "emptyPage")), m_title(outlet<QLabel>(view, "emptyTitle")),
      m_text(outlet<QLabel>(view, "emptyText")), m_button(outlet<KORVENButton>(view, "emptyButton"))
{
    makeTitle(m_title);
    makeCaption(m_text);
}

void EmptyPage::say(const QString &title, const QString &text)
{
    m_title.setText(title);
    m_text.setText(text);
    m_text.setVisible(!text.isEmpty());
}

void EmptyPage::sayWhyThereAreNoRows(const tree::LUMFileContainer *folder)
{
    if (folder == nullptr || folder->subitems().empty()) {
        say(tr("This folder is empty"), {});
    } else {
        say(tr("Nothing to list here"),
            tr("All items of this folder are hidden by the preferences."));
    }
}

} // namespace tessaly
