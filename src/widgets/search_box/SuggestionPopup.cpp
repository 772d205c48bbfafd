#include "widgets/search_box/SuggestionPopup.h"

#include "base/failure/Guard.h"
#include "widgets/boxes/KeyCodes.h"
#include "widgets/lists/ListKeys.h"
#include "widgets/lists/PopupFrame.h"

#include <QApplication>
#include <QFrame>
#include <QMouseEvent>
#include <QScreen>
#include <QScrollBar>

#include <algorithm>

namespace tavrin {

namespace {

/// The frame's line and the margin around the list, on either side.
constexpr int AroundList = 4;

} // namespace

SuggestionPopup::SuggestionPopup(QWidget& box, SuggestionView::RowPainter painter)
    : m_box(box)
    , m_painter(std::move(painter))
    , m_anchor(&box)
{
}

SuggestionPopup::~SuggestionPopup()
{
    m_subscriptions.clear();
    if (m_view)
        m_view->setRows(0, 0); // its painter is the box's
    endPopup(m_window, m_isClicked);
}

// What is in it

void SuggestionPopup::make(QWidget& owner)
{
    if (m_window && m_window->parentWidget() == &owner)
        return;
    delete m_window.data(); // the box has gone to another window
    m_window = newPopupFrame(&owner);
    m_window->setObjectName(QStringLiteral("suggestionList"));
    m_view = new SuggestionView(m_painter, m_window);
    m_subscriptions.clear();
    m_subscriptions.push_back(m_view->RowClicked.subscribe([this](int row) {
        const PopupInUse inUse(this, m_isClicked);
        RowClicked.raise(row);
    }));
    m_subscriptions.push_back(m_view->HighlightChanged.subscribe([this] { HighlightChanged.raise(); }));
    fillPopupFrame(m_window, m_view);
}

void SuggestionPopup::open(QWidget& owner, int rows)
{
    make(owner);
    m_view->setFont(m_box.font());
    m_view->setRows(rows, width() - AroundList);
    place();
    if (!m_window->isVisible()) {
        qApp->installEventFilter(this);
        m_window->show();
    }
}

void SuggestionPopup::close()
{
    if (!isOpen())
        return;
    qApp->removeEventFilter(this);
    m_window->hide();
    m_view->setRows(0, 0);
}

bool SuggestionPopup::isOpen() const
{
    return m_window && m_window->isVisible();
}

bool SuggestionPopup::moveHighlight(int keyCode)
{
    if (keyCode == KeyCode::Home || keyCode == KeyCode::End)
        return false; // they are the text's
    const int last = m_view->rowCount() - 1;
    const std::optional<int> row = rowByKey(keyCode, m_view->highlightedRow(), m_view->pageRows(), 0, last);
    if (row && last >= 0)
        m_view->setHighlightedRow(*row);
    return row.has_value();
}

void SuggestionPopup::scroll(QEvent* wheel)
{
    QApplication::sendEvent(m_view->verticalScrollBar(), wheel);
}

QString SuggestionPopup::description() const
{
    if (!m_view)
        return {};
    const int row = m_view->highlightedRow();
    return row < 0 ? m_view->accessibleDescription()
                   : tr("%1, %2 of %3")
                         .arg(m_view->rowText(row), QString::number(row + 1),
                              QString::number(m_view->rowCount()));
}

// Where it stands

const QWidget& SuggestionPopup::anchor() const
{
    return m_anchor ? *m_anchor : m_box;
}

int SuggestionPopup::width() const
{
    return m_width > 0 ? toPixels(m_width) : anchor().width();
}

void SuggestionPopup::place()
{
    m_place = placeOnScreen(anchor());
    const QSize frame(AroundList, AroundList);
    const QSize page = m_view->pageSize();
    const QSize wanted = QSize(std::max(page.width(), width() - frame.width()), page.height());
    m_window->setGeometry(popupPlace(m_place, wanted + frame, m_view->rowHeight() + frame.height(),
                                     m_box.screen()->availableGeometry()));
}

// What closes it

bool SuggestionPopup::isLeft(QObject* watched, QEvent* event) const
{
    const auto* widget = qobject_cast<QWidget*>(watched);
    if (!widget || !isOpen())
        return false;
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: {
        // By its place: a press that the anchor does not take comes to its parents as well.
        const QPoint place = static_cast<QMouseEvent*>(event)->globalPosition().toPoint();
        return !m_window->geometry().contains(place) && !placeOnScreen(anchor()).contains(place);
    }
    case QEvent::Move:
    case QEvent::Resize:
        return widget == m_box.window() || ((widget == &anchor() || widget->isAncestorOf(&anchor())) &&
                                            placeOnScreen(anchor()) != m_place);
    case QEvent::WindowDeactivate:
        return widget == m_box.window();
    default:
        return false;
    }
}

bool SuggestionPopup::eventFilter(QObject* watched, QEvent* event)
{
    if (isLeft(watched, event))
        guard("SuggestionPopup_CloseWanted", [this] { CloseWanted.raise(); });
    return false;
}

} // namespace tavrin
