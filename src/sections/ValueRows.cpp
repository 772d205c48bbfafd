#include "sections/ValueRows.h"

#include "base/values/Variant.h"

namespace tavrin {

namespace {

/// Whether a field counts when a row is asked for being empty.
bool isContent(const tvFieldPtr& field, const QString& valueField)
{
    const QString name = field->Name();
    const auto is = [&name](const QString& other) { return name.compare(other, Qt::CaseInsensitive) == 0; };
    return !is(QStringLiteral("LastUpdated")) && !is(QStringLiteral("DateEntered")) && !is(valueField) &&
           !std::dynamic_pointer_cast<tvLinkField>(field) && !field->IsKey();
}

/// Whether a row behind those of the values holds nothing but the value that it had.
bool isRowEmpty(tvTableRow& row, const QString& valueField)
{
    const int count = row.FieldCount();
    for (int i = 1; i <= count; ++i) {
        const tvFieldPtr field = row.Item(i);
        if (isContent(field, valueField) && !IsNull(field->Value()))
            return false;
    }
    return true;
}

} // namespace

void writeValues(const QVariantList& values, const QString& fieldName, tvTableCollection& rows, int& line)
{
    const auto at = [&line](int number) {
        line = number;
        return true;
    };
    const auto count = static_cast<qint32>(values.size());
    while (at(1010) && rows.Count() < count) {
        at(1020);
        rows.AddNew();
    }
    for (qint32 i = 1; i <= count; ++i) {
        at(1030);
        fieldOf(*rows.Item(i), fieldName)->SetValue(values.at(i - 1));
    }
    if (at(1040) && rows.Count() != 0) {
        at(1050);
        tvTableRowPtr last = rows.Item(rows.Count());
        while (at(1060) && rows.Count() > count && isRowEmpty(*last, fieldName)) {
            at(1070);
            rows.SetPosition(ToInteger(rows.Count()));
            at(1080);
            rows.RemoveCurrent(false);
            if (at(1090) && rows.Count() == 0)
                break;
            at(1100);
            last = rows.Item(rows.Count());
        }
    }
    at(1110);
    const qint32 left = rows.Count();
    for (qint32 i = count + 1; i <= left; ++i) {
        at(1120);
        fieldOf(*rows.Item(i), fieldName)->SetValue(Null());
    }
}

} // namespace tavrin
