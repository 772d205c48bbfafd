#include "testing/FakeGridCombo.h"

#include "base/values/Variant.h"

namespace tavrin::testing {

struct FakeGridCombo::Private
{
    GridArray array;
    QVariant bookmark = Null();
    QString text = QStringLiteral("old text");
};

FakeGridCombo::FakeGridCombo()
    : d(std::make_unique<Private>())
{
}

FakeGridCombo::~FakeGridCombo() = default;

GridArray& FakeGridCombo::Array()
{
    return d->array;
}

void FakeGridCombo::ResetArray()
{
    d->array = {};
    log << QStringLiteral("reset");
}

void FakeGridCombo::Rebind()
{
    log << QStringLiteral("rebind %1").arg(d->array.UpperBound());
}

QVariant FakeGridCombo::Bookmark() const
{
    return d->bookmark;
}

void FakeGridCombo::SetBookmark(const QVariant& row)
{
    d->bookmark = row;
    log << QStringLiteral("bookmark ") + ToText(row);
}

void FakeGridCombo::SetText(const QString& text)
{
    d->text = text;
    log << QStringLiteral("text \"%1\"").arg(text);
}

QString FakeGridCombo::text() const
{
    return d->text;
}

QVariantList FakeGridCombo::values() const
{
    QVariantList list;
    for (int row = 1; row <= d->array.UpperBound(); ++row)
        list << d->array.Value(row, 2);
    return list;
}

} // namespace tavrin::testing
