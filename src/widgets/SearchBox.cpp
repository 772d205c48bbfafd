#include "SearchBox.h"

#include "PopupFrame.h"
#include "SuggestionView.h"
#include "base/Guard.h"

#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>
#include <limits>

namespace tavrin {

namespace {

/// The frame's line and the margin around the list, on either side.
constexpr int AroundList = 4;

QRect onScreen(const QWidget& widget)
{
    return {widget.mapToGlobal(QPoint(0, 0)), widget.size()};
}

} // namespace

SearchBox::SearchBox(QWidget* parent)
    : TextBox(parent)
    , m_font([this] {
        setFont(m_font.get()->toQFont());
        fontChanged();
    })
    , m_anchor(this)
{
    setMaxLength(std::numeric_limits<int>::max()); // a pasted text is searched for whole
    connect(this, &QLineEdit::textEdited, this, [this] {
        // The line edit is still at work, and the handlers of a search may delete it. Keys and input methods
        // answer the edit as soon as they are through; this is for the commands of the menu.
        m_isEdited = true;
        QMetaObject::invokeMethod(this, &SearchBox::answerEdit, Qt::QueuedConnection);
    });
    connect(this, &QLineEdit::textChanged, this, [this] {
        if (!m_isEdited && text() != m_resultText)
            CloseList(); // a text set by code leaves no list of another text
    });
}

SearchBox::~SearchBox()
{
    delete m_popup.data(); // its view paints what lives here
}

// Choosing

QString SearchBox::itemText(const XmlNode& item)
{
    QString text;
    if (!item.isNull())
        GetItemText.raise(item, text);
    return text;
}

void SearchBox::SelectItem(const XmlNode& node)
{
    const QPointer<SearchBox> self(this);
    const QString text = itemText(node); // a failure of the host changes nothing
    if (!self)
        return;
    CloseList();
    m_selected = node;
    m_selectedText = text;
    if (!node.isNull()) {
        SetText(text);
        if (self && !hasFocus())
            setCursorPosition(0); // where the place is narrow, the start shows
    }
    if (self)
        SelectionChanged.raise();
}

QString SearchBox::TypedText() const
{
    return isModified() && text() != m_selectedText ? text() : QString();
}

void SearchBox::ClearSelection()
{
    SelectItem({});
}

void SearchBox::clearByPerson()
{
    const QPointer<SearchBox> self(this);
    SetText(QString());
    if (self)
        ClearSelection();
}

bool SearchBox::canTake() const
{
    return ListIsOpen() && m_view->highlightedRow() >= 0 && m_resultText == text();
}

void SearchBox::take(int row)
{
    const XmlNode item = m_result.at(static_cast<std::size_t>(row)); // the handlers may search again
    const QPointer<SearchBox> self(this);
    SelectItem(item);
    if (!self)
        return;
    setSelection(static_cast<int>(text().size()), -static_cast<int>(text().size())); // typing replaces it
    ItemPicked.raise(item);
}

// Searching

void SearchBox::answerEdit()
{
    if (m_isComposing || !std::exchange(m_isEdited, false))
        return;
    guard("SearchBox_Edited", [this] {
        const QPointer<SearchBox> self(this);
        const QString typed = text();
        if (typed.isEmpty() && !m_selected.isNull())
            ClearSelection();
        if (self && text() == typed) // a follower may have put another choice
            search();
    });
}

void SearchBox::search()
{
    if (text().size() < m_minQueryLength)
        CloseList();
    else
        openList(text());
}

void SearchBox::openList(const QString& query)
{
    const QPointer<SearchBox> self(this);
    const QString textBefore = text();
    Suggestions result;
    try {
        SearchRequested.raise(query, result);
    } catch (...) {
        if (self)
            CloseList();
        throw;
    }
    if (!self)
        return;
    if (!isVisible() || !isEnabled() || text() != textBefore) {
        CloseList();
        return;
    }
    m_result = std::move(result);
    m_query = query;
    m_resultText = textBefore;
    makeList();
    m_view->setFont(font());
    m_view->setRows(static_cast<int>(m_result.size()), listWidth() - AroundList);
    placeList();
    if (!m_popup->isVisible()) {
        qApp->installEventFilter(this);
        m_popup->show();
    }
    if (m_result.size() == 1 && !query.isEmpty())
        m_view->setHighlightedRow(0);
    highlightChanged();
}

void SearchBox::openByPerson()
{
    // The text of the chosen item is no query: the person wants to see what else there is.
    const bool typed = !text().isEmpty() && (m_selected.isNull() || text() != m_selectedText);
    const QString query = typed ? text() : QString();
    if (query.size() >= m_minQueryLength)
        openList(query);
}

// The list

void SearchBox::makeList()
{
    QWidget* owner = listOwner() ? listOwner() : window();
    if (m_popup && m_popup->parentWidget() == owner)
        return;
    delete m_popup.data(); // the box has gone to another window
    m_popup = newPopupFrame(owner);
    m_popup->setObjectName(QStringLiteral("suggestionList"));
    m_view = new SuggestionView(
        [this](PictureSurface& picture, int row, bool highlighted) {
            DrawItem.raise(picture, m_result.at(static_cast<std::size_t>(row)), m_query, highlighted);
        },
        m_popup);
    m_viewSubscriptions.clear();
    m_viewSubscriptions.push_back(m_view->RowClicked.subscribe([this](int row) { take(row); }));
    m_viewSubscriptions.push_back(m_view->HighlightChanged.subscribe([this] { highlightChanged(); }));
    auto* layout = new QVBoxLayout(m_popup);
    layout->setContentsMargins(1, 1, 1, 1);
    layout->setSizeConstraint(QLayout::SetNoConstraint);
    layout->addWidget(m_view);
}

const QWidget& SearchBox::anchor() const
{
    if (m_anchor)
        return *m_anchor;
    return *this;
}

int SearchBox::listWidth() const
{
    return m_listWidth > 0 ? toPixels(m_listWidth) : anchor().width();
}

void SearchBox::placeList()
{
    m_place = onScreen(anchor());
    const QSize frame(AroundList, AroundList);
    const QSize page = m_view->pageSize();
    const QSize wanted = QSize(std::max(page.width(), listWidth() - frame.width()), page.height());
    m_popup->setGeometry(popupPlace(m_place, wanted + frame, m_view->rowHeight() + frame.height(),
                                    screen()->availableGeometry()));
}

bool SearchBox::ListIsOpen() const
{
    return m_popup && m_popup->isVisible();
}

void SearchBox::CloseList()
{
    if (!ListIsOpen())
        return;
    qApp->removeEventFilter(this);
    m_popup->hide();
    m_result = Suggestions(); // with its memory, which a form of many boxes would keep for nothing
    m_view->setRows(0, 0);
    setAccessibleDescription(QString());
}

void SearchBox::highlightChanged()
{
    if (!m_view)
        return;
    const int row = m_view->highlightedRow();
    setAccessibleDescription(row < 0 ? m_view->accessibleDescription()
                                     : tr("%1, %2 of %3")
                                           .arg(m_view->rowText(row), QString::number(row + 1),
                                                QString::number(m_view->rowCount())));
}

// Keys

namespace {

/// A key that means the list as long as it is open.
bool isListKey(const QKeyEvent& event)
{
    if ((event.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier)
        return false;
    switch (event.key()) {
    case Qt::Key_Escape:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Down:
    case Qt::Key_Up:
    case Qt::Key_PageDown:
    case Qt::Key_PageUp:
        return true;
    default:
        return false;
    }
}

} // namespace

bool SearchBox::moveHighlight(int key)
{
    const int now = m_view->highlightedRow();
    const int page = m_view->pageRows();
    const int last = m_view->rowCount() - 1;
    int next = now;
    switch (key) {
    case Qt::Key_Down:
        next = now + 1;
        break;
    case Qt::Key_Up:
        next = now - 1;
        break;
    case Qt::Key_PageDown:
        next = now + page;
        break;
    case Qt::Key_PageUp:
        next = now - page;
        break;
    default:
        return false;
    }
    if (last >= 0)
        m_view->setHighlightedRow(std::clamp(next, 0, last));
    return true;
}

bool SearchBox::answersKey(const QKeyEvent& event)
{
    const int key = event.key();
    const auto modifiers = event.modifiers() & ~Qt::KeypadModifier;
    const bool toggles = (key == Qt::Key_F4 && !modifiers) ||
                         (modifiers == Qt::AltModifier && (key == Qt::Key_Down || key == Qt::Key_Up));
    if (toggles) {
        if (ListIsOpen())
            CloseList();
        else
            openByPerson();
        return true;
    }
    if (modifiers)
        return false;
    if (!ListIsOpen()) {
        if (key != Qt::Key_Down)
            return false;
        openByPerson();
        return true;
    }
    if (key == Qt::Key_Escape) {
        CloseList();
        return true;
    }
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        if (canTake())
            take(m_view->highlightedRow());
        return true; // an open list asks for a choice; the form's default button is not meant
    }
    return moveHighlight(key);
}

void SearchBox::keyPressEvent(QKeyEvent* event)
{
    const QPointer<SearchBox> self(this);
    bool answered = false;
    const bool wasComposing = m_isComposing;
    if (!wasComposing && !isReadOnly()) {
        guard("SearchBox_KeyPress", [&] {
            answered = true; // a failure has answered the key as well
            answered = answersKey(*event);
        });
    }
    if (!self || answered) {
        event->accept();
        return;
    }
    TextBox::keyPressEvent(event);
    if (!self)
        return;
    if (wasComposing && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter))
        event->accept(); // it ended the composition; the form's default button is not meant
    answerEdit();
}

bool SearchBox::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride && ListIsOpen() &&
        isListKey(*static_cast<QKeyEvent*>(event))) {
        event->accept(); // the open list has it, and no shortcut of the window
        return true;
    }
    if (event->type() == QEvent::KeyPress && !m_isComposing) {
        const auto* press = static_cast<QKeyEvent*>(event);
        const bool isTab = press->key() == Qt::Key_Tab || press->key() == Qt::Key_Backtab;
        if (isTab && !(press->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) && canTake()) {
            const QPointer<SearchBox> self(this);
            guard("SearchBox_Tab", [&] { take(m_view->highlightedRow()); });
            if (!self)
                return true;
        }
    }
    return TextBox::event(event); // which moves the focus on
}

void SearchBox::inputMethodEvent(QInputMethodEvent* event)
{
    const QPointer<SearchBox> self(this);
    m_isComposing = !event->preeditString().isEmpty();
    TextBox::inputMethodEvent(event);
    if (self)
        answerEdit();
}

void SearchBox::dropEvent(QDropEvent* event)
{
    const QPointer<SearchBox> self(this);
    setFocus(Qt::MouseFocusReason); // who drops a text here goes on here
    if (!self)
        return;
    TextBox::dropEvent(event);
    if (self)
        answerEdit();
}

// What closes the list

void SearchBox::focusOutEvent(QFocusEvent* event)
{
    const QPointer<SearchBox> self(this);
    TextBox::focusOutEvent(event);
    if (!self)
        return;
    m_isComposing = false;
    CloseList();
    const Qt::FocusReason reason = event->reason();
    if (reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason ||
        reason == Qt::MenuBarFocusReason)
        return; // the person comes back
    m_isEdited = false;
    if (!isModified())
        return; // nothing was typed since code set the text
    guard("SearchBox_FocusOut", [&] {
        if (text() != m_selectedText)
            SetText(m_selectedText);
    });
}

void SearchBox::hideEvent(QHideEvent* event)
{
    TextBox::hideEvent(event);
    CloseList();
}

void SearchBox::changeEvent(QEvent* event)
{
    TextBox::changeEvent(event);
    if (event->type() == QEvent::EnabledChange && !isEnabled())
        CloseList();
}

void SearchBox::wheelEvent(QWheelEvent* event)
{
    if (!ListIsOpen()) {
        TextBox::wheelEvent(event);
        return;
    }
    QApplication::sendEvent(m_view->verticalScrollBar(), event);
    event->accept(); // also at the end of the list: a page that scrolls would close it
}

bool SearchBox::eventFilter(QObject* watched, QEvent* event)
{
    const auto* widget = qobject_cast<QWidget*>(watched);
    if (!widget || !ListIsOpen())
        return TextBox::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: {
        // By its place: a press that the anchor does not take comes to its parents as well.
        const QPoint place = static_cast<QMouseEvent*>(event)->globalPosition().toPoint();
        if (!m_popup->geometry().contains(place) && !onScreen(anchor()).contains(place))
            CloseList();
        break;
    }
    case QEvent::Move:
    case QEvent::Resize:
        if (widget == window() ||
            ((widget == &anchor() || widget->isAncestorOf(&anchor())) && onScreen(anchor()) != m_place))
            CloseList();
        break;
    case QEvent::WindowDeactivate:
        if (widget == window())
            CloseList();
        break;
    default:
        break;
    }
    return TextBox::eventFilter(watched, event);
}

} // namespace tavrin
