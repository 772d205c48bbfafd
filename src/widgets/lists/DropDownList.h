#pragma once

#include "base/export/Export.h"
#include "base/failure/Event.h"
#include "base/lists/DropdownTarget.h"

#include <QPointer>
#include <QWidget>

#include <memory>
#include <vector>

class QListView;
class QMouseEvent;

namespace tavrin {

/// The list part of a combo box: entries of a text and 32-bit data that open below the widget's place.
///
/// The widget itself paints nothing; something else, such as a text box, covers it. The list is a window of
/// its own that never takes the focus or the keyboard. It closes on a press of the mouse outside, when the
/// widget loses the focus or is hidden, and when its window is left; it follows the window when that moves.
///
/// While the widget has the focus, the arrow keys, Page Up and Down, Home and End select, and a letter
/// selects the next entry that begins with it. A selection by key or by code raises `Click`; the mouse marks
/// the row below it only, and a click closes the list first, then selects and raises `Click`, also on the
/// selected row. The open list has its keys before the shortcuts of the window.
class TAVRIN_COMPANION_EXPORT DropDownList : public QWidget, public DropdownTarget
{
    Q_OBJECT

public:
    explicit DropDownList(QWidget* parent = nullptr);
    ~DropDownList() override;

    void Clear() override;
    void AddItem(const QString& text, qint32 itemData) override;
    int ListCount() const override { return static_cast<int>(m_entries.size()); }
    QString List(int index) const override;
    qint32 ItemData(int index) const override;
    int ListIndex() const override { return m_listIndex; }
    /// An index outside the list selects nothing.
    void SetListIndex(int index) override;
    /// Text of the selected entry; "" for none.
    QString Text() const { return List(m_listIndex); }

    /// The box that covers the widget, and that answers Escape, Enter and the arrow down over the open list:
    /// they are no shortcuts of the window then. Only the open list has keys of its own: one that closes
    /// while it has the focus gives it to the box, unless the focus is elsewhere already.
    void setBox(QWidget* box) { m_box = box; }

    /// Shows the list. Nothing happens while the widget is hidden or disabled.
    void Open();
    void Close();
    bool IsOpen() const;

    Event<> Click;
    /// Key code by reference, shift state.
    Event<int&, int> KeyDown;

protected:
    void setEntryData(int index, qint32 data);
    void setEntryText(int index, const QString& text);
    /// Whether a press of the mouse there leaves the list open.
    virtual bool keepsOpenAt(const QWidget*) const { return false; }

    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    static constexpr int VisibleRows = 12;

    class Model;
    struct Entry
    {
        QString text;
        qint32 data;
    };

    void makePopup();
    void entriesChanged();
    void refreshPopup();
    void markSelection();
    void placePopup();
    int contentWidth() const;
    bool isInsidePopup(const QObject* object) const;
    bool answersRelease(const QMouseEvent& event);
    void choose(int index);
    bool moveBy(int keyCode);
    /// A command of the window and no letter of an entry.
    static bool isShortcut(const QKeyEvent& event);
    bool typeAhead(const QString& text);

    std::vector<Entry> m_entries;
    int m_listIndex = -1;
    QPointer<QWidget> m_box;
    // A frame; a child of the window, which may die before this widget. As a QWidget, since Qt asks for it
    // while it dies, when it is no frame any more.
    QPointer<QWidget> m_popup;
    QListView* m_view = nullptr; // lives in the popup
    std::unique_ptr<Model> m_model;
    bool m_viewIsStale = true;
};

} // namespace tavrin
