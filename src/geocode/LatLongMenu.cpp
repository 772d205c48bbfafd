#include "base/failure/Guard.h"
#include "geocode/LatLongPrivate.h"
#include "widgets/boxes/KeyCodes.h"
#include "widgets/boxes/TextBox.h"
#include "widgets/panels/PopupMenu.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>

namespace tavrin {

void LatLong::Private::buildMenu()
{
    mnuCoordinates = new PopupMenu(QStringLiteral("Coordinates"), &q);
    mnuCoordinates->setObjectName(QStringLiteral("mnuCoordinates"));
    // 'C' is the one of "Copy" in the menu of a box.
    mnuCopyCoordinates = mnuCoordinates->AddItem(QStringLiteral("Copy coordinates"), u'o');
    mnuCopyCoordinates->setObjectName(QStringLiteral("mnuCopyCoordinates"));
    m_subscriptions.push_back(mnuCopyCoordinates->Click.subscribe([this] { mnuCopyCoordinates_Click(); }));
    for (TextBox* box : {txtLat, txtLong})
        box->installEventFilter(&q); // for its context menu
}

QString LatLong::Private::shownCoordinates() const
{
    QStringList texts{txtLat->Text(), txtLong->Text()};
    texts.removeAll(QString());
    return texts.join(QStringLiteral(", "));
}

void LatLong::Private::mnuCopyCoordinates_Click()
{
    QApplication::clipboard()->setText(shownCoordinates());
}

void LatLong::Private::openMenu(QWidget& widget, const QPoint& place)
{
    mnuCopyCoordinates->setEnabled(!shownCoordinates().isEmpty());
    m_openMenu = mnuCoordinates;
    auto* box = qobject_cast<TextBox*>(&widget);
    if (box && box->isEnabled()) {
        m_openMenu = box->createStandardContextMenu();
        m_openMenu->setAttribute(Qt::WA_DeleteOnClose);
        m_openMenu->addSeparator();
        m_openMenu->addAction(mnuCopyCoordinates);
    }
    m_openMenu->popup(widget.mapToGlobal(place));
}

void LatLong::changeEvent(QEvent* event)
{
    UserControl::changeEvent(event);
    if (event->type() == QEvent::EnabledChange && !isEnabled() && d->m_openMenu)
        d->m_openMenu->close(); // it would take neither key nor mouse any more
}

void LatLong::contextMenuEvent(QContextMenuEvent* event)
{
    event->accept();
    if (event->reason() != QContextMenuEvent::Keyboard) // the press of that key has opened it already
        guard("LatLong_ContextMenu", [&] { d->openMenu(*this, event->pos()); });
}

bool LatLong::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::ContextMenu || (watched != d->txtLat && watched != d->txtLong))
        return UserControl::eventFilter(watched, event);
    const auto& request = *static_cast<QContextMenuEvent*>(event);
    event->accept();
    if (request.reason() != QContextMenuEvent::Keyboard)
        guard("LatLong_ContextMenu", [&] { d->openMenu(*static_cast<QWidget*>(watched), request.pos()); });
    return true;
}

void LatLong::keyPressEvent(QKeyEvent* event)
{
    if (!isMenuKey(*event)) {
        UserControl::keyPressEvent(event);
        return;
    }
    event->accept();
    if (event->isAutoRepeat())
        return;
    guard("LatLong_ContextMenu", [this] {
        QWidget* holder = QApplication::focusWidget();
        QWidget& widget = holder && isAncestorOf(holder) ? *holder : *this;
        d->openMenu(widget, widget.rect().bottomLeft());
    });
}

} // namespace tavrin
