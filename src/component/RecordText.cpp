#include "component/RecordText.h"

#include "base/values/Variant.h"
#include "component/CallResult.h"
#include "component/Values.h"
#include "frame/memory_records/MemoryCollection.h"
#include "frame/memory_records/MemoryField.h"
#include "frame/memory_records/MemoryRecord.h"
#include "frame/memory_records/MemoryRow.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace tavrin {

namespace {

constexpr int Deepest = 32;
constexpr qsizetype MostRows = std::numeric_limits<qint16>::max();

CallError wrong(const QString& where, const QString& what)
{
    return {TV_E_INVALIDARG,
            u"The record's text is wrong at %1: %2"_s.arg(where.isEmpty() ? u"its top"_s : where, what)};
}

QJsonObject objectAt(const QJsonValue& value, const QString& where)
{
    if (!value.isObject())
        throw wrong(where, u"no object"_s);
    return value.toObject();
}

QJsonArray arrayAt(const QJsonValue& value, const QString& where)
{
    if (!value.isArray())
        throw wrong(where, u"no list"_s);
    return value.toArray();
}

/// A whole number becomes a Long, one that no double can hold an integer of 64 bits, any other a double.
QVariant numberFrom(const QJsonValue& value)
{
    const double number = value.toDouble();
    if (std::floor(number) == number && std::abs(number) <= std::numeric_limits<qint32>::max())
        return static_cast<qint32>(number);
    constexpr qint64 none = 0;
    const qint64 whole = value.toInteger(none);
    return std::abs(number) >= LastExact && whole != none ? QVariant(whole) : QVariant(number);
}

QVariant fieldValue(const QJsonValue& value, const QString& where)
{
    switch (value.type()) {
    case QJsonValue::Null:
        return Null();
    case QJsonValue::Bool:
        return value.toBool();
    case QJsonValue::String:
        return value.toString();
    case QJsonValue::Double:
        return numberFrom(value);
    case QJsonValue::Object: {
        const QDateTime moment = QDateTime::fromString(value[u"date"].toString(), Qt::ISODate);
        if (moment.isValid())
            return moment;
        break;
    }
    default:
        break;
    }
    throw wrong(where, u"no value of a field"_s);
}

QJsonValue jsonOf(const QVariant& value)
{
    if (IsNull(value) || IsEmpty(value))
        return QJsonValue::Null;
    if (value.typeId() == QMetaType::QDateTime || value.typeId() == QMetaType::QDate)
        return QJsonObject{{u"date"_s, isoText(value.toDateTime())}};
    const CallError refused(TV_E_TYPEMISMATCH, u"A field holds a value that no text can hold"_s);
    if (value.typeId() == QMetaType::ULongLong &&
        value.toULongLong() > static_cast<quint64>(std::numeric_limits<qint64>::max()))
        throw refused;
    QJsonValue json = QJsonValue::fromVariant(value);
    if (json.isNull() || json.isObject() || json.isArray())
        throw refused;
    return json;
}

/// A record whose text told its parent. The parent need not hold it, and the record keeps it alive.
class TextRecord final : public MemoryRecord
{
public:
    using MemoryRecord::MemoryRecord;

    tvBusinessObjectPtr parent; // nullptr for none
};

/// Where the JSON names none, the names of the fields.
QList<MemoryColumn> columnsFrom(const QJsonValue& value, const QJsonObject& fields, const QString& where)
{
    QList<MemoryColumn> columns;
    if (value.isUndefined()) {
        for (const QString& name : fields.keys())
            columns.append({name});
        return columns;
    }
    for (const QJsonValue one : arrayAt(value, where + u".columns"_s)) {
        const QString name = one.isString() ? one.toString() : one[u"name"].toString();
        if (name.isEmpty())
            throw wrong(where + u".columns"_s, u"a column without a name"_s);
        columns.append({name, one[u"isKey"].toBool(), one[u"maxLength"].toInt(), one[u"isLink"].toBool()});
    }
    return columns;
}

QJsonArray jsonOf(const QList<MemoryColumn>& columns)
{
    QJsonArray list;
    for (const MemoryColumn& column : columns)
        list.append(QJsonObject{{u"name"_s, column.Name},
                                {u"isKey"_s, column.IsKey},
                                {u"maxLength"_s, column.MaxLength},
                                {u"isLink"_s, column.IsLink}});
    return list;
}

std::shared_ptr<MemoryRow> rowFrom(const QJsonObject& json, const QList<MemoryColumn>& columns,
                                   const QString& where)
{
    auto row = std::make_shared<MemoryRow>(columns, json[u"isNew"].toBool());
    const QJsonObject fields = objectAt(json[u"fields"], where + u".fields"_s);
    for (auto field = fields.begin(); field != fields.end(); ++field) {
        const QString place = where + u".fields."_s + field.key();
        const auto target = std::dynamic_pointer_cast<tvField>(row->Item(field.key()));
        if (!target)
            throw wrong(place, u"no such column"_s);
        target->SetValue(fieldValue(field.value(), place));
    }
    return row;
}

QJsonObject fieldsOf(tvTableRow& row)
{
    QJsonObject fields;
    for (int i = 1; i <= row.FieldCount(); ++i)
        fields.insert(row.Item(i)->Name(), jsonOf(row.Item(i)->Value()));
    return fields;
}

/// The name of the key column; where none is told, that of the first key, or else of the first column.
QString keyFrom(const QJsonObject& json, QList<MemoryColumn>& columns, const QString& where)
{
    const QString told = json[u"key"].toString();
    if (columns.isEmpty())
        columns.append({told.isEmpty() ? u"SeqNo"_s : told, true});
    const auto found = std::find_if(columns.begin(), columns.end(), [&](const MemoryColumn& column) {
        return told.isEmpty() ? column.IsKey : column.Name.compare(told, Qt::CaseInsensitive) == 0;
    });
    if (found == columns.end() && !told.isEmpty())
        throw wrong(where + u".key"_s, u"no such column"_s);
    return found == columns.end() ? columns.front().Name : found->Name;
}

void setPosition(MemoryCollection& collection, int position, const QString& where)
{
    if (position < (collection.Count() == 0 ? 0 : 1) || position > collection.Count())
        throw wrong(where, u"The collection has no row %1"_s.arg(position));
    collection.SetPosition(static_cast<qint16>(position));
}

/// The key of a row that the text does not hold makes none primary.
void setPrimary(MemoryCollection& collection, const QVariant& key)
{
    for (const tvTableRowPtr& row : collection) {
        if (!IsNull(key) && SameValue(fieldOf(*row, collection.KeyColumn())->Value(), key)) {
            collection.SetPrimaryValue(key);
            return;
        }
    }
}

QVariant primaryOf(MemoryCollection& collection)
{
    const qint32 index = collection.PrimaryIndex();
    return index == 0 ? Null() : fieldOf(*collection.Item(index), collection.KeyColumn())->Value();
}

std::shared_ptr<MemoryCollection> collectionFrom(const QJsonObject& json, const QString& where)
{
    const QJsonArray rows = arrayAt(json[u"rows"], where + u".rows"_s);
    const QJsonObject first = rows.isEmpty() ? QJsonObject() : rows.at(0)[u"fields"].toObject();
    QList<MemoryColumn> columns = columnsFrom(json[u"columns"], first, where);
    const QString key = keyFrom(json, columns, where);
    if (rows.size() > MostRows)
        throw wrong(where + u".rows"_s, u"more rows than a collection has positions for"_s);
    auto collection = std::make_shared<MemoryCollection>(columns, key);
    collection->SetNumbersRows(false); // rows keep the keys that the text gives them
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const QString place = u"%1.rows[%2]"_s.arg(where).arg(i);
        collection->Add(rowFrom(objectAt(rows.at(i), place), columns, place));
    }
    collection->SetNumbersRows(true);
    if (json.contains(u"position"))
        setPosition(*collection, json[u"position"].toInt(), where);
    if (json.contains(u"primary"))
        setPrimary(*collection, fieldValue(json[u"primary"], where + u".primary"_s));
    return collection;
}

HostObjectPtr partFrom(const QJsonValue& value, const QString& where, int depth);

std::shared_ptr<MemoryRecord> businessObjectFrom(const QJsonObject& json, const QString& where, int depth)
{
    auto record = std::make_shared<TextRecord>(json[u"className"].toString());
    const QJsonObject children =
        json.contains(u"children") ? objectAt(json[u"children"], where + u".children"_s) : QJsonObject();
    for (auto child = children.begin(); child != children.end(); ++child) {
        const QString place = where + u".children."_s + child.key();
        if (record->Item(child.key()))
            throw wrong(place, u"another child has this name"_s);
        record->SetItem(child.key(), partFrom(child.value(), place, depth + 1));
    }
    if (json.contains(u"parent"))
        record->parent = std::dynamic_pointer_cast<tvBusinessObject>(
            partFrom(json[u"parent"], where + u".parent"_s, depth + 1));
    return record;
}

HostObjectPtr partFrom(const QJsonValue& value, const QString& where, int depth)
{
    if (depth > Deepest)
        throw wrong(where, u"records too deep in one another"_s);
    const QJsonObject json = objectAt(value, where);
    if (json.contains(u"rows"))
        return collectionFrom(json, where);
    if (json.contains(u"fields"))
        return rowFrom(json, columnsFrom(json[u"columns"], json[u"fields"].toObject(), where), where);
    return businessObjectFrom(json, where, depth);
}

QJsonObject jsonOf(const HostObjectPtr& part);

QJsonObject jsonOf(MemoryCollection& collection)
{
    QJsonArray rows;
    for (const tvTableRowPtr& row : collection)
        rows.append(QJsonObject{{u"isNew"_s, row->IsNew()}, {u"fields"_s, fieldsOf(*row)}});
    return {{u"key"_s, collection.KeyColumn()},
            {u"columns"_s, jsonOf(collection.Columns())},
            {u"rows"_s, rows},
            {u"position"_s, collection.Position()},
            {u"primary"_s, jsonOf(primaryOf(collection))}};
}

QJsonObject jsonOf(const std::shared_ptr<MemoryRecord>& record)
{
    QJsonObject children;
    for (const QString& name : record->ChildNames())
        children.insert(name, jsonOf(record->Item(name)));
    QJsonObject json{{u"className"_s, record->ClassName()}, {u"children"_s, children}};
    // The one that holds the record writes it itself.
    if (const auto own = std::dynamic_pointer_cast<TextRecord>(record); own && own->parent)
        json.insert(u"parent"_s, jsonOf(HostObjectPtr(own->parent)));
    return json;
}

QJsonObject jsonOf(const HostObjectPtr& part)
{
    if (const auto collection = std::dynamic_pointer_cast<MemoryCollection>(part))
        return jsonOf(*collection);
    if (const auto record = std::dynamic_pointer_cast<MemoryRecord>(part))
        return jsonOf(record);
    if (const auto row = std::dynamic_pointer_cast<MemoryRow>(part))
        return {{u"columns"_s, jsonOf(row->Columns())},
                {u"isNew"_s, row->IsNew()},
                {u"fields"_s, fieldsOf(*row)}};
    throw CallError(TV_E_NOINTERFACE, u"The object is no record of the library's"_s);
}

} // namespace

HostObjectPtr recordFromText(const QString& json)
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(json.toUtf8(), &error);
    if (error.error != QJsonParseError::NoError)
        throw wrong(u"byte %1"_s.arg(error.offset), error.errorString());
    if (!document.isObject())
        throw wrong({}, u"no object"_s);
    try {
        return partFrom(document.object(), {}, 0);
    } catch (const CallError&) {
        throw;
    } catch (const Error& raised) {
        throw wrong({}, raised.Description);
    }
}

QString textOfRecord(const HostObjectPtr& record)
{
    return QString::fromUtf8(QJsonDocument(jsonOf(record)).toJson(QJsonDocument::Compact));
}

tvBusinessObjectPtr parentOfRecord(const tvBusinessObjectPtr& record)
{
    const auto own = std::dynamic_pointer_cast<TextRecord>(record);
    return own && own->parent ? own->parent : MemoryRecord::OwnerOf(record);
}

tvTableCollectionPtr newEmptyCollection()
{
    return std::make_shared<MemoryCollection>(QStringList{u"SeqNo"_s});
}

} // namespace tavrin
