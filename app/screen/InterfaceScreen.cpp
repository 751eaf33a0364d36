#include "app/screen/InterfaceScreen.hpp"

#include "app/controls/buttons/KORVENButton.hpp"
#include "app/controls/theme/Theme.hpp"
#include "app/delegate/KORVENAppDelegate.hpp"

#include <QLabel>
#include <QStackedWidget>

#include <utility>

namespace tessaly {

InterfaceScreen::InterfaceScreen(QObject &object, const QString &nibName)
    : m_object(object), m_pressGuard(&object)
{
    InterfaceFile::Loaded loaded = InterfaceFile::load(nibName);
    if (!loaded.root) {
        // Not an error to handle: the files lie in the program's resources, and a screen without
        // its widgets cannot go on.
        qFatal("%s: %s", qUtf8Printable(nibName), qUtf8Printable(loaded.error));
    }
    // A QPointer from here on: the window's stack owns the view once it is added, and may destroy
    // it before the screen.
    m_view = loaded.root.release();
    m_emptyPage = &find<QWidget>("emptyPage");
    m_emptyTitle = &find<QLabel>("emptyTitle");
    m_emptyText = &find<QLabel>("emptyText");
    m_pages = qobject_cast<QStackedWidget *>(m_emptyPage->parentWidget());
    if (m_pages == nullptr) {
        qFatal("%s: the empty page is no page of a stack", qUtf8Printable(nibName));
    }
    makeTitle(*m_emptyTitle);
    makeCaption(*m_emptyText);
}

InterfaceScreen::~InterfaceScreen()
{
    // Does nothing where the derived class has closed it, as it should.
    closeView();
}

void InterfaceScreen::wire(const std::vector<WiredAction> &actions)
{
    const QStringList missing = wireActions(*m_view, m_object, actions);
    if (!missing.isEmpty()) {
        qFatal("there are no buttons %s", qUtf8Printable(missing.join(u", ")));
    }
}

void InterfaceScreen::awakeFromNib()
{
    if (!std::exchange(m_firstRunFlag, false)) {
        return;
    }
    if (KORVENAppDelegate::sharedDelegate().run10p7Mode()) {
        for (auto *button : m_view->findChildren<KORVENButton *>()) {
            button->set10p7Mode();
        }
    }
    setUp();
}

void InterfaceScreen::showPage(QWidget &page)
{
    m_pages->setCurrentWidget(&page);
}

void InterfaceScreen::setEmptyTexts(const QString &title, const QString &text)
{
    m_emptyTitle->setText(title);
    m_emptyText->setText(text);
    m_emptyText->setVisible(!text.isEmpty());
}

void InterfaceScreen::showEmptyPage()
{
    showPage(*m_emptyPage);
}

} // namespace tessaly
