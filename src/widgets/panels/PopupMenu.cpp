#include "widgets/panels/PopupMenu.h"

#include "base/failure/Guard.h"

#include <QCoreApplication>

namespace tavrin {

MenuItem::MenuItem(const QString& caption, QChar accessKey, QObject* parent)
    : QAction(parent)
    , m_accessKey(accessKey)
{
    SetCaption(caption);
    connect(this, &QAction::triggered, this, [this] {
        // Not here, where Qt needs the menu once more.
        QMetaObject::invokeMethod(
            this, [this] { guard("MenuItem_Click", [this] { Click.raise(); }); }, Qt::QueuedConnection);
    });
}

void MenuItem::SetCaption(const QString& caption)
{
    m_caption = caption;
    QString shown = caption;
    shown.replace(u'&', QStringLiteral("&&"));
    const auto place = shown.indexOf(m_accessKey, 0, Qt::CaseInsensitive);
    if (place >= 0)
        shown.insert(place, u'&');
    setText(shown);
}

PopupMenu::PopupMenu(const QString& caption, QWidget* owner)
    : QMenu(caption, owner)
{
}

MenuItem* PopupMenu::AddItem(const QString& caption, QChar accessKey)
{
    auto* item = new MenuItem(caption, accessKey, this);
    addAction(item);
    return item;
}

void PopupMenu::PopUp(const QWidget& widget, Twips x, Twips y)
{
    popup(widget.mapToGlobal(QPoint(toPixels(x), toPixels(y))));
}

void PopupMenu::Dismiss()
{
    close();
    for (QAction* item : actions())
        QCoreApplication::removePostedEvents(item, QEvent::MetaCall);
}

} // namespace tavrin
