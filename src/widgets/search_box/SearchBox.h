#pragma once

#include "base/values/Twips.h"
#include "base/xml/XmlNodes.h"
#include "widgets/boxes/TextBox.h"
#include "widgets/drawing/SharedFont.h"

#include <memory>
#include <vector>

namespace tavrin {

class PictureSurface;
class SuggestionPopup;

/// The result of a search: XML nodes in their order.
using Suggestions = XmlNodes;

/// A text box that suggests: what `AutoCompleteTextBox` and `AutoCompleteComboBox` have in common.
///
/// It holds no data of its own. At each change of the text by the person it asks by `SearchRequested`, shows
/// the result in a list below, and asks by `DrawItem` to paint the rows that come into view. The list never
/// takes the focus or the keyboard:
///
/// | key | does |
/// |---|---|
/// | Down, Up, Page Down, Page Up | move the highlight; Down opens a closed list |
/// | Alt+Down, F4 | open the list, or close it |
/// | Enter, Tab | take the highlighted row |
/// | Escape | closes the list and leaves the text |
///
/// Enter and Escape mean an open list whatever the shift state. A row is taken only while the text is the one
/// that it was found for. A single match is highlighted by itself. Emptying the text drops the chosen item;
/// any other text that was typed and not chosen gives way to the chosen item's when the focus leaves the box.
/// What an input method composes is left alone until it is there.
class SearchBox : public TextBox
{
    Q_OBJECT

public:
    /// The chosen item; a null node for none.
    const XmlNode& SelectedItem() const { return m_selected; }

    /// Grey hint in the empty box.
    QString Placeholder() const { return placeholderText(); }
    void SetPlaceholder(const QString& text) { setPlaceholderText(text); }

    /// Shared by reference; the list has it too.
    const FontPtr& Font() const { return m_font.get(); }
    void SetFont(const FontPtr& font) { m_font.set(font); }

    bool Enabled() const { return isEnabled(); }

    /// Width of the list; rows that tell that they are wider make it wider. 0, the default, is the anchor's.
    void SetListWidth(Twips width);

    /// Shortest text that is searched for; 0, the default, searches for the empty text too.
    int MinQueryLength() const { return m_minQueryLength; }
    void SetMinQueryLength(int length) { m_minQueryLength = length; }

    /// Makes `node` the chosen item and shows its text. Raises `SelectionChanged` before it returns; an error
    /// in a handler reaches the caller. A null node clears.
    void SelectItem(const XmlNode& node);
    /// Drops the chosen item, and raises `SelectionChanged` also when there was none. The text is left to the
    /// handler.
    void ClearSelection();
    /// Drops the chosen item and the text without a word, where followers may hold a value that has no item.
    /// Until the next choice the person's emptying of the box, and Delete or Backspace in the empty one,
    /// clear as if an item were chosen.
    void ForgetSelection();

    /// The text that the person has typed and not chosen; "" for none.
    QString TypedText() const;

    bool ListIsOpen() const;
    void CloseList();
    /// The query of the result that the list shows.
    const QString& Query() const { return m_query; }

    /// Query, and the result by reference.
    Event<const QString&, Suggestions&> SearchRequested;
    /// Surface, item, query, and whether the row is the highlighted one. The handler tells the row's size by
    /// the surface's width and height.
    Event<PictureSurface&, const XmlNode&, const QString&, bool> DrawItem;
    /// The text of an item in the box, by reference.
    Event<const XmlNode&, QString&> GetItemText;
    Event<> SelectionChanged;
    /// The person has taken an item; behind `SelectionChanged`.
    Event<const XmlNode&> ItemPicked;

protected:
    explicit SearchBox(QWidget* parent);
    ~SearchBox() override;

    /// Opens the list for a query, which need not be the text. An error of the search reaches the caller.
    void openList(const QString& query);
    /// Opens the list for what was typed; for everything where the box shows the chosen item's text.
    void openByPerson();
    /// What the list opens below, and is as wide as: the box, unless another widget that holds it is named.
    void setListAnchor(QWidget* anchor);
    /// The window that the list belongs to; nullptr for the box's own.
    virtual QWidget* listOwner() const { return nullptr; }
    /// The person empties the box.
    void clearByPerson();
    virtual void fontChanged() {}

    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void answerEdit();
    void search();
    bool answersKey(const QKeyEvent& event);
    bool canTake() const;
    void take(int row);
    QString itemText(const XmlNode& item);

    XmlNode m_selected;
    QString m_selectedText; // as it was when the item was chosen
    bool m_isForgotten = false;
    SharedFont m_font;
    int m_minQueryLength = 0;
    std::unique_ptr<SuggestionPopup> m_list;
    std::vector<Subscription> m_listSubscriptions;
    Suggestions m_result;
    QString m_query;
    QString m_resultText; // of the box when the result was asked for
    bool m_isComposing = false;
    bool m_isEdited = false; // by the person, and not answered yet
};

} // namespace tavrin
