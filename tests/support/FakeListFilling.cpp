#include "support/FakeListFilling.h"

#include "base/values/Variant.h"
#include "widgets/grid_combo/GridCombo.h"
#include "widgets/lists/DropdownTarget.h"

using namespace Qt::StringLiterals;

namespace tavrin::test {

namespace {

class FakeListFilling final : public ListFilling, Recorder
{
public:
    using Recorder::Recorder;

    void FillTableCombo(TableNumber table, DropdownTarget& combo, bool includeInactive, const QVariant& value,
                        bool) override
    {
        const FakeHostState& state = asked(u"FillTableCombo %1"_s.arg(table));
        combo.Clear();
        combo.AddItem(QString(), 0);
        int selected = 0;
        for (const TableValue& entry : state.valuesOf(table, includeInactive, value)) {
            if (SameValue(entry.Value, value))
                selected = combo.ListCount();
            combo.AddItem(entry.DisplayText, ToLong(entry.Value));
        }
        if (selected > 0)
            combo.SetListIndex(selected);
    }
    void FillTableGrid(TableNumber table, GridCombo& combo, bool includeInactive, const QVariant& value,
                       bool reserved) override
    {
        const FakeHostState& state = asked(u"FillTableGrid %1 %2 %3 %4"_s.arg(table).arg(
            ToText(includeInactive), ToText(value), ToText(reserved)));
        combo.Array().AppendRow({QString(), QString(), Null(), Null()});
        for (const TableValue& entry : state.valuesOf(table, includeInactive, value)) {
            combo.Array().AppendRow(
                {entry.ID, entry.DisplayText, entry.Value, state.activeFlag(table, entry)});
        }
        combo.Rebind();
    }
    QImage FitPicture(const QImage& picture, int height, int width, int mode, bool flag, Color backColor,
                      bool reserved) override
    {
        const QString given = u"height %1 width %2 mode %3 flag %4 colour %5 reserved %6"_s.arg(height)
                                  .arg(width)
                                  .arg(mode)
                                  .arg(flag ? -1 : 0)
                                  .arg(backColor.value(), 0, 16)
                                  .arg(reserved ? -1 : 0);
        const auto& fit = asked(u"FitPicture"_s, given).fitPicture;
        if (fit)
            return fit(picture, height, width, backColor);
        QImage fitted(width, height, QImage::Format_RGB32);
        fitted.fill(picture.isNull() ? backColor.resolve(QPalette()) : picture.pixelColor(0, 0));
        return fitted;
    }
};

} // namespace

std::unique_ptr<ListFilling> makeFakeListFilling(StatePtr state)
{
    return std::make_unique<FakeListFilling>(std::move(state));
}

} // namespace tavrin::test
