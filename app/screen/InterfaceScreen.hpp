#pragma once

#include "app/controls/buttons/PressGuard.hpp"
#include "app/controls/interface/InterfaceFile.hpp"
#include "app/screen/Screen.hpp"

#include <QPointer>
#include <QString>
#include <QWidget>

#include <vector>

class QLabel;
class QStackedWidget;

namespace tessaly {

/// Base of the screens that are laid out in an interface file: loads the file, owns the view, and
/// shows either what there is or a page that says why there is nothing.
///
/// It is no QObject, so that a screen may derive from one of its own. List that base first: this
/// one uses it until it is destroyed.
///
/// Destructor:     a derived class calls closeView() in its own, since the view calls what it is
///                 connected to for as long as it lives.
/// Interface file: a stack of pages, one of which is "emptyPage" with the labels "emptyTitle" and
///                 "emptyText".
/// Threads:        the main thread.
class InterfaceScreen : public Screen {
public:
    ~InterfaceScreen() override;
    Q_DISABLE_COPY_MOVE(InterfaceScreen)

    [[nodiscard]] QWidget *view() const noexcept final { return m_view; }

    /// Gives the buttons their older look on release 10.7, and calls setUp().
    void awakeFromNib() final;
    /// Until awakeFromNib() has been called.
    [[nodiscard]] bool firstRunFlag() const noexcept { return m_firstRunFlag; }

protected:
    /// Loads the view. `object`: the derived class as the QObject that it is.
    InterfaceScreen(QObject &object, const QString &nibName);

    /// The one-time set-up.
    virtual void setUp() = 0;

    /// The widget of the view with this name, which has to be there.
    template <typename Widget>
    [[nodiscard]] Widget &find(QAnyStringView name) const
    {
        return outlet<Widget>(*m_view, name);
    }
    /// Connects buttons and actions of the view, all of which have to be there.
    void wire(const std::vector<WiredAction> &actions);

    /// Destroys the view. Does nothing without one.
    void closeView() { delete m_view; }

    /// Guards the buttons that it is given against double clicks.
    [[nodiscard]] PressGuard &pressGuard() noexcept { return m_pressGuard; }

    /// Shows a page of the stack that "emptyPage" is in.
    void showPage(QWidget &page);
    /// What the page says in place of rows. Without a text, the title stands alone.
    void setEmptyTexts(const QString &title, const QString &text);
    void showEmptyPage();

private:
    QObject &m_object;
    PressGuard m_pressGuard;
    bool m_firstRunFlag = true;
    QPointer<QWidget> m_view;
    // Outlets: the view owns them.
    QStackedWidget *m_pages = nullptr;
    QWidget *m_emptyPage = nullptr;
    QLabel *m_emptyTitle = nullptr;
    QLabel *m_emptyText = nullptr;
};

} // namespace tessaly
