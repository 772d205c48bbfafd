#pragma once

#include "widgets/search_box/SearchBox.h"

namespace tavrin {

/// A search box without a border of its own, for a control that draws the box around it.
///
///     auto* box = new AutoCompleteTextBox(this);
///     m_search = box->SearchRequested.subscribe([this](const QString& query, Suggestions& results) {
///         results = XmlUtils::NodeListToCollection(m_list.selectNodes(expressionFor(query)));
///     });
///     m_draw = box->DrawItem.subscribe([](PictureSurface& row, const XmlNode& item, const QString& query,
///     bool) {
///         modUtils::PrintHighlighted(row, item.childElement(u"Name"_s).text(), query);
///         row.SetWidth(row.CurrentX());
///         row.EndLine();
///         row.SetHeight(row.CurrentY());
///     });
class AutoCompleteTextBox final : public SearchBox
{
    Q_OBJECT

public:
    explicit AutoCompleteTextBox(QWidget* parent = nullptr);

    /// Colour of the grey hint. Like the box's own colours, it is shown as it is also while the box is
    /// disabled: the control around it chooses them by its state.
    Color PlaceholderColor() const { return m_placeholderColor; }
    void SetPlaceholderColor(Color color);

    /// The window that the list belongs to, by its handle. One that names no window of the program leaves
    /// the list with the box's own.
    void SetOwnerWindow(qint32 hWnd) { m_ownerWindow = hWnd; }
    /// The widget around the box that the list opens below.
    void SetListAnchor(QWidget* anchor) { setListAnchor(anchor); }

    /// Opens the list for this query and takes the focus into the box. An error of the search reaches the
    /// caller.
    void ShowSuggestions(const QString& query);

    /// Exactly the font's line.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    QWidget* listOwner() const override;
    void changeEvent(QEvent* event) override;

private:
    void applyOwnColors();

    Color m_placeholderColor = SystemColor::GreyText;
    qint32 m_ownerWindow = 0;
};

} // namespace tavrin
