#pragma once

#include "app/controls/tables/RowActions.hpp"

class QWidget;

namespace tessaly {

/// One way to look at a result, such as its rows. A view follows the signals of the ResultModel
/// that it was made with, hands what the user selects back to the model, and knows no other view:
/// several of them can show one model at the same time. What RowActions offers is done with the
/// item that is selected in the view.
///
/// Threads: the main thread.
class ResultView : public RowActions {
public:
    /// What to put into a layout, and to give the keyboard to by setFocus(). It may have an owner
    /// of its own; its methods are called only while it lives.
    [[nodiscard]] virtual QWidget &widget() const = 0;

    /// Has screen readers speak what the view shows now. Does nothing while it is out of sight.
    virtual void speak() = 0;
};

} // namespace tessaly
