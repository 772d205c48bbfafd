#pragma once

#include "base/failure/Event.h"
#include "base/values/Color.h"

#include <QPoint>
#include <QTableView>

#include <memory>
#include <unordered_map>

namespace tavrin {

/// How one row of a grid shows.
struct GridRowStyle
{
    Color ForeColor = SystemColor::WindowText;
};

/// What a `GridTable` shows: rows counted from 1, columns from 0.
class GridTableSource
{
public:
    virtual ~GridTableSource() = default;
    virtual int rowCount() const = 0;
    virtual int columnCount() const = 0;
    virtual QString caption(int column) const = 0;
    virtual bool isShown(int column) const = 0;
    virtual QString text(int row, int column) const = 0;
    /// Asked once for each row that is painted. Must not throw.
    virtual GridRowStyle style(int row) const = 0;
};

/// The open list of a grid combo: rows of one height below a header, of which only those in view are asked
/// for. It never takes the focus, and nothing in it can be edited.
///
/// One row is marked. The mouse marks the row below it only when it moves itself, not when rows come to lie
/// below it. A list without rows shows one grey line.
class GridTable final : public QTableView
{
    Q_OBJECT

public:
    GridTable(const GridTableSource& source, QWidget* parent);
    ~GridTable() override;

    /// Takes over what the source has now; no row is marked then.
    void refresh();
    /// 0 for none.
    int markedRow() const;
    /// Scrolls so that the row is in view.
    void setMarkedRow(int row);
    /// So that its neighbours on both sides show.
    void centreMarkedRow();
    /// Rows of one page.
    int pageRows() const;
    int rowHeight() const;
    int headerHeight() const;
    /// The size at which the first page shows whole.
    QSize pageSize() const;

    /// Bears the row.
    Event<int> RowClicked;
    /// The mouse or code has marked another row.
    Event<> MarkChanged;

    /// The style of a row, kept for as long as the list is painted once.
    const GridRowStyle& styleOf(int row) const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    class Model;
    int rowAtPlace(const QPoint& place) const;
    void fitColumns();

    const GridTableSource& m_source;
    std::unique_ptr<Model> m_model;
    mutable std::unordered_map<int, GridRowStyle> m_styles;
    QPoint m_mouse; // on the screen, when it last moved
    int m_contentWidth = 0;
};

} // namespace tavrin
