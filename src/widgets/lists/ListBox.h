#pragma once

#include "base/export/Export.h"
#include "base/failure/Event.h"

#include <QListView>

#include <vector>

namespace tavrin {

/// A plain list box: entries of a text and 32-bit data, of which one or several can be selected.
///
/// Arrow keys, Page Up and Down, Home and End select, letters select the entry that begins with them. Where
/// several can be selected, Shift extends the selection, Ctrl adds to it, and Ctrl+A selects all. An entry
/// that is too long is cut at the right and stands whole in its tool tip. An index outside the list gives
/// nothing and changes nothing.
class TAVRIN_COMPANION_EXPORT ListBox : public QListView
{
    Q_OBJECT

public:
    explicit ListBox(QWidget* parent = nullptr);
    ~ListBox() override;

    /// Whether several entries can be selected at once; False at first.
    bool MultiSelect() const { return selectionMode() == QAbstractItemView::ExtendedSelection; }
    void SetMultiSelect(bool several);

    /// Raises no `Click`, like every change of the list that takes a selected entry away.
    void Clear();
    void AddItem(const QString& text, qint32 itemData = 0);
    /// The entries behind it move up. Nothing is selected when it was the selected one.
    void RemoveItem(int index);
    int ListCount() const { return static_cast<int>(m_entries.size()); }
    /// Text of an entry; "" outside the list.
    QString List(int index) const;
    /// Data of an entry; 0 outside the list.
    qint32 ItemData(int index) const;
    void SetItemData(int index, qint32 data);

    /// The selected entry, where several can be selected the one that the keyboard is at; -1 for none.
    int ListIndex() const;
    /// Selects this entry alone; an index outside the list selects nothing. Raises `Click` when that changes
    /// something.
    void SetListIndex(int index);
    /// Text of the entry at `ListIndex`; "" for none.
    QString Text() const { return List(ListIndex()); }

    bool Selected(int index) const;
    /// Where only one can be selected, the one before loses its selection. Raises `Click` when that changes
    /// something.
    void SetSelected(int index, bool selected);

    /// Raised after the selection has changed, by the person or by code, and for each click on an entry. A
    /// failure of a handler reaches the code that has changed the selection. A handler must not delete the
    /// list at once.
    Event<> Click;

    QSize minimumSizeHint() const override;

protected:
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    bool viewportEvent(QEvent* event) override;

private:
    class Model;
    struct Entry
    {
        QString text;
        qint32 data;
    };

    bool isInside(int index) const { return index >= 0 && index < ListCount(); }
    QModelIndex modelIndex(int index) const;
    bool isCut(const QModelIndex& index) const;
    bool selectFirstBy(const QKeyEvent& event);

    std::vector<Entry> m_entries;
    Model* m_model;
    bool m_byCode = false;      // the selection is being changed by code, which raises `Click` itself
    bool m_pressRaised = false; // the press of the mouse has raised `Click` already
};

} // namespace tavrin
