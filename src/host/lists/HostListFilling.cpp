#include "host/lists/HostListFilling.h"

#include "base/values/Variant.h"
#include "widgets/grid_combo/GridCombo.h"
#include "widgets/lists/DropdownTarget.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>

namespace tavrin {

HostListFilling::HostListFilling(const HostListsHolder& lists)
    : m_lists(lists)
{
}

QList<CodeValueRow> HostListFilling::choices(TableNumber table, bool includeInactive,
                                             const QVariant& value) const
{
    QList<CodeValueRow> rows;
    for (const CodeValueRow& row : m_lists.Lists->codeValues(table)) {
        if (row.Active || includeInactive || SameValue(row.ValueNo, value))
            rows << row;
    }
    return rows;
}

void HostListFilling::FillTableCombo(TableNumber table, DropdownTarget& combo, bool includeInactive,
                                     const QVariant& value, bool reserved)
{
    Q_UNUSED(reserved)
    combo.Clear();
    combo.AddItem(QString(), 0);
    int selected = 0;
    for (const CodeValueRow& row : choices(table, includeInactive, value)) {
        if (SameValue(row.ValueNo, value))
            selected = combo.ListCount();
        combo.AddItem(row.DisplayText, row.ValueNo);
    }
    if (selected > 0)
        combo.SetListIndex(selected);
}

void HostListFilling::FillTableGrid(TableNumber table, GridCombo& combo, bool includeInactive,
                                    const QVariant& value, bool reserved)
{
    Q_UNUSED(reserved)
    combo.ResetArray();
    GridArray& array = combo.Array();
    array.AppendRow({QString(), QString(), Null(), Null()});
    for (const CodeValueRow& row : choices(table, includeInactive, value))
        array.AppendRow({row.Id, row.DisplayText, row.ValueNo, QString::number(row.Active ? 1 : 0)});
    combo.Rebind();
}

QImage HostListFilling::FitPicture(const QImage& picture, int height, int width, int mode, bool flag,
                                   Color backColor, bool reserved)
{
    Q_UNUSED(mode)
    Q_UNUSED(reserved)
    if (picture.isNull() || height <= 0 || width <= 0)
        return {};
    const QSize box(width, height);
    QSize size = picture.size();
    if (flag || size.width() > width || size.height() > height)
        size.scale(box, Qt::KeepAspectRatio);
    // A very long and thin picture would lose its short side.
    size = size.expandedTo(QSize(1, 1));

    QImage fitted(box, QImage::Format_ARGB32_Premultiplied);
    fitted.fill(backColor.resolve(QGuiApplication::palette()));
    QPainter painter(&fitted);
    painter.drawImage(QPoint((width - size.width()) / 2, (height - size.height()) / 2),
                      picture.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    return fitted;
}

} // namespace tavrin
