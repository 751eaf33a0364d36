#pragma once

#include <QCoreApplication>
#include <QString>

class QLabel;
class QWidget;

namespace tessaly {

class KORVENButton;
namespace tree {
class LUMFileContainer;
} // namespace tree

/// What a scan screen shows in place of rows: a title, a text below it, and a button that scans.
///
/// Threads: the main thread.
class EmptyPage final {
    Q_DECLARE_TR_FUNCTIONS(EmptyPage)

public:
    /// The page of this view, which must outlive this.
    explicit EmptyPage(QWidget &view);

    [[nodiscard]] QWidget &widget() const noexcept { return m_page; }
    /// The view presses it for the user, under the name "emptyButton".
    [[nodiscard]] KORVENButton &button() const noexcept { return m_button; }

    void say(const QString &title, const QString &text);
    /// Says why there are no rows of a folder: it is empty, or all that it holds is hidden. Of no
    /// folder it says the former.
    void sayWhyThereAreNoRows(const tree::LUMFileContainer *folder);

private:
    QWidget &m_page;
    QLabel &m_title;
    QLabel &m_text;
    KORVENButton &m_button;
};

} // namespace tessaly
