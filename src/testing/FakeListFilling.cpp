#include "testing/FakeListFilling.h"

#include "base/values/Variant.h"

using namespace Qt::StringLiterals;

namespace tavrin::testing {

namespace {

class FakeListFilling final : public ListFilling, Recorder
{
public:
    using Recorder::Recorder;

    void FillTableCombo(TableNumber table, DropdownTarget& combo, bool includeInactive, const QVariant& value,
                        bool reserved) override
    {
        asked(u"FillTableCombo %1"_s.arg(table));
        ListFilling::FillTableCombo(table, combo, includeInactive, value, reserved);
    }
    void FillTableGrid(TableNumber table, GridCombo& combo, bool includeInactive, const QVariant& value,
                       bool reserved) override
    {
        asked(u"FillTableGrid %1 %2 %3 %4"_s.arg(table).arg(ToText(includeInactive), ToText(value),
                                                            ToText(reserved)));
        ListFilling::FillTableGrid(table, combo, includeInactive, value, reserved);
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

protected:
    QList<ListedValue> listedValues(TableNumber table, bool includeInactive, const QVariant& value) override
    {
        QList<ListedValue> listed;
        for (const TableValue& entry : state()->valuesOf(table, includeInactive, value))
            listed.append({entry, state()->isActive(table, entry)});
        return listed;
    }
};

} // namespace

std::unique_ptr<ListFilling> makeFakeListFilling(StatePtr state)
{
    return std::make_unique<FakeListFilling>(std::move(state));
}

} // namespace tavrin::testing
