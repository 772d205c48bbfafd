#include "base/lists/DropdownTarget.h"
#include "base/lists/GridCombo.h"
#include "base/values/Variant.h"
#include "frame/host_contracts/Host.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>

#include <algorithm>

namespace tavrin {

struct ListFilling::Private
{
    Host* host = nullptr;
};

ListFilling::ListFilling()
    : d(std::make_unique<Private>())
{
}

ListFilling::ListFilling(Host& host)
    : d(std::make_unique<Private>(Private{&host}))
{
}

ListFilling::~ListFilling() = default;

QList<ListedValue> ListFilling::listedValues(TableNumber table, bool includeInactive, const QVariant& value)
{
    HostServices& services = (d->host ? *d->host : currentHost()).hostServices();
    const QList<TableValue> active = services.GetTableValues(table, false).Items;
    const auto isValue = [&value](const TableValue& entry) { return SameValue(entry.Value, value); };
    const bool mayBeInactive =
        !IsNull(value) && !IsEmpty(value) && std::none_of(active.begin(), active.end(), isValue);

    QList<ListedValue> listed;
    if (!includeInactive && !mayBeInactive) {
        for (const TableValue& entry : active)
            listed.append({entry, true});
        return listed;
    }
    // Both lists have the table's order.
    auto next = active.begin();
    for (const TableValue& entry : services.GetTableValues(table, true).Items) {
        const bool isActive = next != active.end() && SameValue(next->Value, entry.Value);
        if (isActive)
            ++next;
        if (isActive || includeInactive || isValue(entry))
            listed.append({entry, isActive});
    }
    return listed;
}

void ListFilling::FillTableCombo(TableNumber table, DropdownTarget& combo, bool includeInactive,
                                 const QVariant& value, bool reserved)
{
    Q_UNUSED(reserved)
    combo.Clear();
    combo.AddItem(QString(), 0);
    int selected = 0;
    for (const auto& [entry, isActive] : listedValues(table, includeInactive, value)) {
        if (SameValue(entry.Value, value))
            selected = combo.ListCount();
        combo.AddItem(entry.DisplayText, ToLong(entry.Value));
    }
    if (selected > 0)
        combo.SetListIndex(selected);
}

void ListFilling::FillTableGrid(TableNumber table, GridCombo& combo, bool includeInactive,
                                const QVariant& value, bool reserved)
{
    Q_UNUSED(reserved)
    combo.ResetArray();
    GridArray& array = combo.Array();
    array.AppendRow({QString(), QString(), Null(), Null()});
    for (const auto& [entry, isActive] : listedValues(table, includeInactive, value))
        array.AppendRow({entry.ID, entry.DisplayText, entry.Value, QString::number(isActive ? 1 : 0)});
    combo.Rebind();
}

QImage ListFilling::FitPicture(const QImage& picture, int height, int width, int mode, bool flag,
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
