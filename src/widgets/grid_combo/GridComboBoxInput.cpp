// Keys, mouse and focus of the grid combo.

#include "base/failure/Guard.h"
#include "widgets/boxes/KeyCodes.h"
#include "widgets/grid_combo/GridComboBox.h"
#include "widgets/lists/ListKeys.h"
#include "widgets/lists/PopupFrame.h"

#include <QApplication>
#include <QKeyEvent>
#include <QScrollBar>

#include <algorithm>

namespace tavrin {

namespace {

constexpr int ClosedPage = 11; // rows that a page key passes while the list is closed

} // namespace

void GridComboBox::toggleList()
{
    if (ListIsOpen())
        CloseList();
    else
        OpenList();
}

void GridComboBox::take(int row)
{
    CloseList();
    if (hasRow(row)) // the list may not have heard yet that the row is gone
        SetBookmark(row);
}

int GridComboBox::keyRow() const
{
    if (ListIsOpen())
        return m_table->markedRow();
    return hasRow(m_row) ? m_row : 0;
}

void GridComboBox::moveTo(int row)
{
    if (ListIsOpen())
        m_table->setMarkedRow(row);
    else if (hasRow(row))
        SetBookmark(row);
}

// Keys

bool GridComboBox::moveBy(int keyCode)
{
    const int page = ListIsOpen() ? m_table->pageRows() : ClosedPage;
    const std::optional<int> target = rowByKey(keyCode, keyRow(), page, 1, rowCount());
    if (target && rowCount() > 0)
        moveTo(*target);
    return target.has_value();
}

int GridComboBox::rowOfText(const QString& text, int from) const
{
    for (int step = 0; step < rowCount(); ++step) {
        const int row = (std::max(from, 1) - 1 + step) % rowCount() + 1;
        if (this->text(row, 0).startsWith(text, Qt::CaseInsensitive))
            return row;
    }
    return 0;
}

bool GridComboBox::typeAhead(const QString& text)
{
    if (text.isEmpty() || !text.at(0).isPrint())
        return false;
    if (!m_sinceTyped.isValid() || m_sinceTyped.hasExpired(QApplication::keyboardInputInterval()))
        m_typed.clear();
    m_sinceTyped.start();
    const bool goesOn = !m_typed.isEmpty();
    m_typed += text;
    // A longer text may still be the row where its beginning was found; a first letter asks for the next row,
    // and so does the same letter again unless a row begins with two of it.
    int row = rowOfText(m_typed, goesOn ? keyRow() : keyRow() + 1);
    if (row == 0 && goesOn && m_typed == QString(m_typed.size(), m_typed.at(0)))
        row = rowOfText(m_typed.left(1), keyRow() + 1);
    if (row != 0)
        moveTo(row);
    return true;
}

bool GridComboBox::answersListKey(int key)
{
    if (!ListIsOpen())
        return false;
    switch (key) {
    case Qt::Key_Escape:
        CloseList();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        take(m_table->markedRow());
        return true;
    default:
        return false;
    }
}

bool GridComboBox::answersKey(const QKeyEvent& event)
{
    const int key = event.key();
    const auto modifiers = event.modifiers() & ~Qt::KeypadModifier;
    if (togglesList(event)) {
        toggleList();
        return true;
    }
    if (answersListKey(key)) // whatever the shift state
        return true;
    const QPointer<GridComboBox> self(this); // a handler may close the form
    if (!modifiers && moveBy(keyCodeOf(event))) {
        if (self)
            m_typed.clear();
        return true;
    }
    if (modifiers & ~Qt::ShiftModifier)
        return false;
    const bool isTyping =
        !m_typed.isEmpty() && !m_sinceTyped.hasExpired(QApplication::keyboardInputInterval());
    if (key == Qt::Key_Space && !isTyping) {
        OpenList();
        return true;
    }
    return typeAhead(event.text());
}

void GridComboBox::keyPressEvent(QKeyEvent* event)
{
    const QPointer<GridComboBox> self(this); // a handler may close the form
    bool answered = false;
    guard("GridComboBox_KeyPress", [&] {
        answered = true; // a failure has answered the key as well
        answered = answersKey(*event);
    });
    if (!self || answered)
        event->accept();
    else
        QWidget::keyPressEvent(event);
}

bool GridComboBox::event(QEvent* event)
{
    if (ListIsOpen() && claimsListKey(*event, ListKeys::MovingAndEnds))
        return true; // the open list has it, and no shortcut of the window
    if (copiesText(*event, m_text))
        return true;
    if (event->type() == QEvent::KeyPress && ListIsOpen()) {
        if (isTabKey(*static_cast<QKeyEvent*>(event))) {
            const QPointer<GridComboBox> self(this);
            guard("GridComboBox_Tab", [&] { take(m_table->markedRow()); });
            if (!self)
                return true;
        }
    }
    return QWidget::event(event); // which moves the focus on
}

// Mouse

void GridComboBox::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        toggleList();
}

void GridComboBox::wheelEvent(QWheelEvent* event)
{
    if (ListIsOpen())
        QApplication::sendEvent(m_table->verticalScrollBar(), event);
    else
        event->ignore(); // a page scrolls on, whatever box the mouse passes
}

// What closes the list

void GridComboBox::focusInEvent(QFocusEvent* event)
{
    QWidget::focusInEvent(event);
    update();
}

void GridComboBox::focusOutEvent(QFocusEvent* event)
{
    QWidget::focusOutEvent(event);
    m_typed.clear();
    CloseList();
    update();
}

void GridComboBox::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    CloseList();
}

void GridComboBox::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::EnabledChange && !isEnabled())
        CloseList();
    update();
}

bool GridComboBox::eventFilter(QObject* watched, QEvent* event)
{
    const auto* widget = qobject_cast<QWidget*>(watched);
    if (!widget || !ListIsOpen())
        return QWidget::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        if (widget != this && widget != m_popup && !m_popup->isAncestorOf(widget))
            CloseList();
        break;
    case QEvent::Move:
    case QEvent::Resize:
        if ((widget == this || widget->isAncestorOf(this)) && placeOnScreen(*this) != m_place)
            CloseList();
        break;
    case QEvent::WindowDeactivate:
        if (widget == window())
            CloseList();
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace tavrin
