#include "widgets/search_box/SuggestionViewAccessible.h"

#include "widgets/search_box/SuggestionView.h"

#include <QPointer>

namespace tavrin {

namespace {

/// One row, known by its number: whatever the list shows there now.
class RowAccessible final : public QAccessibleInterface
{
public:
    RowAccessible(SuggestionView* view, int row)
        : m_view(view)
        , m_row(row)
    {
    }

    int row() const { return m_row; }

    bool isValid() const override { return m_view && m_row < m_view->rowCount(); }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(m_view); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    void setText(QAccessible::Text, const QString&) override {}
    QAccessible::Role role() const override { return QAccessible::ListItem; }

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name && isValid() ? m_view->rowText(m_row) : QString();
    }
    QRect rect() const override
    {
        if (!isValid())
            return {};
        const QRect place = m_view->rowRect(m_row);
        return {m_view->viewport()->mapToGlobal(place.topLeft()), place.size()};
    }
    QAccessible::State state() const override
    {
        QAccessible::State state;
        if (!isValid()) {
            state.invalid = true;
            return state;
        }
        const bool highlighted = m_view->highlightedRow() == m_row;
        state.selectable = true;
        state.focusable = true;
        state.selected = highlighted;
        state.active = highlighted;
        state.offscreen = !m_view->viewport()->rect().intersects(m_view->rowRect(m_row));
        return state;
    }

private:
    QPointer<SuggestionView> m_view;
    int m_row;
};

QAccessibleInterface* makeInterface(const QString& className, QObject* object)
{
    auto* view = qobject_cast<SuggestionView*>(object);
    return view && className == QLatin1String(SuggestionView::staticMetaObject.className())
               ? new SuggestionViewAccessible(view)
               : nullptr;
}

} // namespace

SuggestionViewAccessible::SuggestionViewAccessible(SuggestionView* view)
    : QAccessibleWidget(view, QAccessible::List)
{
}

SuggestionViewAccessible::~SuggestionViewAccessible()
{
    for (const auto& [row, id] : m_rows)
        QAccessible::deleteAccessibleInterface(id);
}

void SuggestionViewAccessible::install()
{
    static const bool installed = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    Q_UNUSED(installed)
}

void SuggestionViewAccessible::tellHighlight(SuggestionView& view)
{
    if (!QAccessible::isActive())
        return;
    QAccessibleEvent event(&view, QAccessible::Selection);
    event.setChild(view.highlightedRow());
    QAccessible::updateAccessibility(&event);
}

SuggestionView& SuggestionViewAccessible::view() const
{
    return *static_cast<SuggestionView*>(widget());
}

int SuggestionViewAccessible::childCount() const
{
    return view().rowCount();
}

QAccessibleInterface* SuggestionViewAccessible::child(int index) const
{
    if (index < 0 || index >= childCount())
        return nullptr;
    const auto known = m_rows.find(index);
    if (known != m_rows.end())
        return QAccessible::accessibleInterface(known->second);
    auto* row = new RowAccessible(&view(), index);
    m_rows.emplace(index, QAccessible::registerAccessibleInterface(row));
    return row;
}

int SuggestionViewAccessible::indexOfChild(const QAccessibleInterface* child) const
{
    const auto* row = dynamic_cast<const RowAccessible*>(child);
    return row && row->parent() == this ? row->row() : -1;
}

QAccessibleInterface* SuggestionViewAccessible::childAt(int x, int y) const
{
    return child(view().rowAt(view().viewport()->mapFromGlobal(QPoint(x, y))));
}

QAccessibleInterface* SuggestionViewAccessible::focusChild() const
{
    return child(view().highlightedRow());
}

} // namespace tavrin
