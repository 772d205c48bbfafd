#pragma once

#include "base/values/Twips.h"

#include <QScrollArea>

namespace tavrin {

/// A window onto a content that may be higher than itself. It never scrolls sideways: its bar stands over
/// the right side of the content, which so keeps its width when the bar comes.
///
///     auto* scroll = new ScrollPanel(form);
///     scroll->SetContent(panel);
///     panel->Arrange();
///     scroll->RefreshView();
///     scroll->ScrollTo(toTwips(row->y()));
class ScrollPanel : public QScrollArea
{
    Q_OBJECT

public:
    explicit ScrollPanel(QWidget* parent = nullptr);

    Twips Height() const { return toTwips(height()); }
    /// A negative height counts as 0.
    void SetHeight(Twips height);

    /// Takes the content over; the one before is deleted.
    void SetContent(QWidget* content);
    /// Takes notice of the content's present height. To be called after it has changed, while hidden too.
    void RefreshView();
    /// Brings what is `top` below the content's upper edge to the panel's, or as near as the content goes.
    void ScrollTo(Twips top);
    /// How far it is scrolled.
    Twips ScrollTop() const;
};

} // namespace tavrin
