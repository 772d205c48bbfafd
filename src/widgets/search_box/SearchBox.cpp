#include "widgets/search_box/SearchBox.h"

#include "base/failure/Guard.h"
#include "widgets/boxes/KeyCodes.h"
#include "widgets/drawing/ConstituentLook.h"
#include "widgets/lists/ListKeys.h"
#include "widgets/search_box/SuggestionPopup.h"

#include <QKeyEvent>

#include <limits>

namespace tavrin {

SearchBox::SearchBox(QWidget* parent)
    : TextBox(parent)
    , m_font([this] {
        setFont(wholeFont(m_font));
        fontChanged();
    })
    , m_list(std::make_unique<SuggestionPopup>(
          *this, [this](PictureSurface& picture, int row, bool highlighted) {
              DrawItem.raise(picture, m_result.at(static_cast<std::size_t>(row)), m_query, highlighted);
          }))
{
    m_listSubscriptions.push_back(m_list->RowClicked.subscribe([this](int row) { take(row); }));
    m_listSubscriptions.push_back(
        m_list->HighlightChanged.subscribe([this] { setAccessibleDescription(m_list->description()); }));
    m_listSubscriptions.push_back(m_list->CloseWanted.subscribe([this] { CloseList(); }));
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
    m_list.reset(); // its rows are painted from what lives here
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
    m_isForgotten = false;
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

void SearchBox::ForgetSelection()
{
    CloseList();
    m_isForgotten = true;
    m_selected = {};
    m_selectedText.clear();
    SetText(QString());
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
    return ListIsOpen() && m_list->highlightedRow() >= 0 && m_resultText == text();
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
        if (typed.isEmpty() && (m_isForgotten || !m_selected.isNull()))
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
    m_list->open(listOwner() ? *listOwner() : *window(), static_cast<int>(m_result.size()));
    if (m_result.size() == 1 && !query.isEmpty())
        m_list->setHighlightedRow(0);
    setAccessibleDescription(m_list->description());
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

void SearchBox::SetListWidth(Twips width)
{
    m_list->setWidth(width);
}

void SearchBox::setListAnchor(QWidget* anchor)
{
    m_list->setAnchor(anchor);
}

bool SearchBox::ListIsOpen() const
{
    return m_list->isOpen();
}

void SearchBox::CloseList()
{
    if (!ListIsOpen())
        return;
    m_list->close();
    m_result = Suggestions(); // with its memory, which a form of many boxes would keep for nothing
    setAccessibleDescription(QString());
}

// Keys

bool SearchBox::answersKey(const QKeyEvent& event)
{
    const int key = event.key();
    if (togglesList(event)) {
        if (ListIsOpen())
            CloseList();
        else
            openByPerson();
        return true;
    }
    if (ListIsOpen() && key == Qt::Key_Escape) {
        CloseList();
        return true;
    }
    if (ListIsOpen() && isEnterKey(event)) {
        if (canTake())
            take(m_list->highlightedRow());
        return true;
    }
    if (event.modifiers() & ~Qt::KeypadModifier)
        return false;
    if (m_isForgotten && text().isEmpty() && (key == Qt::Key_Delete || key == Qt::Key_Backspace)) {
        ClearSelection(); // there is no text to delete, but what the followers may still hold
        return true;
    }
    if (ListIsOpen())
        return m_list->moveHighlight(keyCodeOf(event));
    if (key != Qt::Key_Down)
        return false;
    openByPerson();
    return true;
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
    if (wasComposing && isEnterKey(*event))
        event->accept(); // it ended the composition; the form's default button is not meant
    answerEdit();
}

bool SearchBox::event(QEvent* event)
{
    if (ListIsOpen() && claimsListKey(*event, ListKeys::Moving))
        return true; // the open list has it, and no shortcut of the window
    if (event->type() == QEvent::KeyPress && !m_isComposing) {
        if (isTabKey(*static_cast<QKeyEvent*>(event)) && canTake()) {
            const QPointer<SearchBox> self(this);
            guard("SearchBox_Tab", [&] { take(m_list->highlightedRow()); });
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
    m_list->scroll(event);
    event->accept(); // also at the end of the list: a page that scrolls would close it
}

} // namespace tavrin
