#pragma once

#include "base/values/Color.h"
#include "widgets/drawing/SharedFont.h"
#include "widgets/lists/DropDownList.h"

#include <QImage>

namespace tavrin {

/// A flat drop-down: one entry of a list shows in a box, beside an icon if there is one, and the others open
/// below. The person can only pick.
///
/// Arrow keys, Page Up and Down, Home, End and letters select, open or closed; Alt+Down, F4 and Space open
/// and close, Enter and Escape close, Ctrl+C copies the text of the choice. Each selection raises `Click`, by
/// code too; a click on the entry that is selected already raises it as well. The wheel changes nothing.
class FlatDropdown : public DropDownList
{
    Q_OBJECT

public:
    explicit FlatDropdown(QWidget* parent = nullptr);

    /// Index of the entry that was added last; -1 while there is none.
    int NewIndex() const { return ListCount() - 1; }
    /// Gives an entry its data. An index outside the list is ignored.
    void SetItemData(int index, qint32 data) { setEntryData(index, data); }
    using DropDownList::AddItem;
    void AddItem(const QString& text) { AddItem(text, 0); }
    /// Replaces the text of an entry.
    void SetList(int index, const QString& text) { setEntryText(index, text); }

    /// The first entry that is a choice; those before it, such as "(None)", stand for none and are not
    /// copied. 0 by default.
    void SetFirstChoice(int index) { m_firstChoice = index; }

    /// Shared by reference; the height follows it.
    const FontPtr& Font() const { return m_font.get(); }
    void SetFont(const FontPtr& font) { m_font.set(font); }
    /// Shown before the text, as high as the line; a null image for none.
    const QImage& Icon() const { return m_icon; }
    void SetIcon(const QImage& icon);
    Color BackColor() const { return m_backColor; }
    void SetBackColor(Color color);
    Color ForeColor() const { return m_foreColor; }
    void SetForeColor(Color color);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool keepsOpenAt(const QWidget* pressed) const override { return pressed == this; }

private:
    void toggle();

    SharedFont m_font;
    int m_firstChoice = 0;
    QImage m_icon;
    Color m_backColor = SystemColor::WindowBackground;
    Color m_foreColor = SystemColor::WindowText;
    Subscription m_repaint;
};

} // namespace tavrin
