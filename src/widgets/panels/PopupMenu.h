#pragma once

#include "base/failure/Event.h"
#include "base/values/Twips.h"

#include <QAction>
#include <QMenu>

namespace tavrin {

/// One line of a `PopupMenu`.
class MenuItem : public QAction
{
    Q_OBJECT

public:
    /// `accessKey` chooses the line while the menu is open; it is underlined where the caption has it first.
    MenuItem(const QString& caption, QChar accessKey, QObject* parent);

    /// The words as they stand; an '&' is shown.
    QString Caption() const { return m_caption; }
    void SetCaption(const QString& caption);

    /// The person has chosen the line, and the menu has closed. It follows when control returns to the event
    /// loop, unless the item is gone by then. A handler may delete the menu.
    Event<> Click;

private:
    QString m_caption;
    QChar m_accessKey;
};

/// A menu that opens at a place: arrow keys, Enter and access keys choose, Escape closes.
class PopupMenu : public QMenu
{
    Q_OBJECT

public:
    explicit PopupMenu(const QString& caption, QWidget* owner);

    MenuItem* AddItem(const QString& caption, QChar accessKey);
    /// Opens the menu at a place of `widget`, and returns at once.
    void PopUp(const QWidget& widget, Twips x, Twips y);
    /// Closes the menu, and drops what has been chosen in it while nobody has been told yet.
    void Dismiss();
};

} // namespace tavrin
