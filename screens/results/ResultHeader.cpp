#include "screens/results/ResultHeader.hpp"

#include "app/controls/buttons/KORVENButton.hpp"
#include "app/controls/interface/InterfaceFile.hpp"
#include "app/controls/theme/Theme.hpp"

#include <QLabel>

namespace tessaly {

ResultHeader::ResultHeader(QWidget &view)
    : m_backButton(outlet<KORVENButton>(view, "backButton")),
      m_folderLabel(outlet<QLabel>(view, "folderLabel")),
      m_totalLabel(outlet<QLabel>(view, "totalLabel")),
      m_totalCaption(outlet<QLabel>(view, "totalCaption")),
      m_dateLabel(outlet<QLabel>(view, "dateLabel"))
{
    makeTitle(m_totalLabel);
    makeCaption(m_totalCaption);
    makeCaption(m_dateLabel);
}

void ResultHeader::showTotal(const QString &total)
{
    m_totalLabel.setText(total);
    // The caption would otherwise stand alone while there is no result.
    m_totalCaption.setVisible(!total.isEmpty());
}

void ResultHeader::showDate(const QString &date)
{
    m_dateLabel.setText(date);
    m_dateLabel.setVisible(!date.isEmpty());
}

void ResultHeader::showBackButton(bool isShown)
{
    m_backButton.setVisible(isShown);
    // The word says what the path beside it is, at the top level, where no button leads up.
    m_folderLabel.setVisible(!isShown);
}

} // namespace tessaly
