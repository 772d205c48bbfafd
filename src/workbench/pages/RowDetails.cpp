#include "workbench/pages/RowDetails.h"

#include "base/failure/Error.h"
#include "base/failure/Guard.h"
#include "base/values/Variant.h"
#include "host/records/PartOfRecord.h"
#include "lookup/NibrsOffensePicker.h"
#include "sections/MultiValue.h"

#include <QGridLayout>
#include <QJsonArray>
#include <QLabel>
#include <QScopedValueRollback>

#include <algorithm>

namespace tavrin::workbench {

namespace {

constexpr int Indent = 16;
constexpr int ListHeight = 104;
constexpr int CodeStretch = 4; // a code stands with its description
constexpr int ListStretch = 3;

QString hostText(const QJsonObject& host, const char* key)
{
    return host.value(QLatin1String(key)).toString();
}

} // namespace

bool RowDetails::isWanted(const QJsonObject& host)
{
    return !hostText(host, "code").isEmpty() || !host.value(QLatin1String("lists")).toArray().isEmpty();
}

QString RowDetails::problem(const QJsonObject& host)
{
    const auto& collections = incidentSchema().Collections;
    const QJsonArray lists = host.value(QLatin1String("lists")).toArray();
    for (const QJsonValue value : lists) {
        const QJsonObject list = value.toObject();
        const QString name = hostText(list, "collection");
        const auto found = std::find_if(collections.begin(), collections.end(),
                                        [&name](const CollectionSchema& c) { return c.Name == name; });
        if (found == collections.end())
            return tr("The record has no collection %1.").arg(name);
        const TableSchema& table = found->Table;
        const QString parent = hostText(host, "collection");
        if (std::none_of(table.Columns.begin(), table.Columns.end(),
                         [&parent](const ColumnSchema& column) { return column.Parent == parent; }))
            return tr("The rows of %1 do not belong to rows of %2.").arg(name, parent);
        const QString field = hostText(list, "field");
        if (table.indexOf(field) < 0)
            return tr("The table %1 has no field %2.").arg(table.Table, field);
    }
    return {};
}

RowDetails::RowDetails(const QJsonObject& host, QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("details"));
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(Indent, 0, 0, 8);
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(4);
    if (!hostText(host, "code").isEmpty())
        addCode(host, *grid);
    const QJsonArray lists = host.value(QLatin1String("lists")).toArray();
    for (const QJsonValue list : lists)
        addList(list.toObject(), *grid);
}

void RowDetails::addCode(const QJsonObject& host, QGridLayout& grid)
{
    m_codeField = hostText(host, "code");
    const QString label = hostText(host, "codeLabel");
    m_code = new NibrsOffensePicker(this);
    m_code->setObjectName(m_codeField);
    m_code->setAccessibleName(label);
    m_codeValue.emplace(*m_code, *m_code);
    connectGuarded(m_code, &NibrsOffensePicker::Change, this, "RowDetails_Code", [this] {
        if (m_loading)
            return;
        m_codeValue->touched();
        Edited.raise();
    });
    grid.addWidget(new QLabel(label, this), 0, 0);
    grid.addWidget(m_code, 1, 0, Qt::AlignTop);
    grid.setColumnStretch(0, CodeStretch);
}

void RowDetails::addList(const QJsonObject& host, QGridLayout& grid)
{
    const QString label = hostText(host, "label");
    List list;
    list.collection = hostText(host, "collection");
    list.binding = {hostText(host, "field"), host.value(QLatin1String("table")).toInt(Tables::None)};
    list.control = new MultiValue(this);
    list.control->setObjectName(list.collection);
    list.control->setAccessibleName(label);
    list.control->focusProxy()->setAccessibleName(label);
    list.control->setFixedHeight(ListHeight);
    const std::size_t index = m_lists.size();
    for (const auto signal : {&MultiValue::ValueAdded, &MultiValue::ValueRemoved})
        connectGuarded(list.control, signal, this, "RowDetails_List", [this, index] { listEdited(index); });
    const int column = grid.columnCount();
    grid.addWidget(new QLabel(label, this), 0, column);
    grid.addWidget(list.control, 1, column);
    grid.setColumnStretch(column, ListStretch);
    m_lists.push_back(list);
}

void RowDetails::listEdited(std::size_t index)
{
    List& list = m_lists[index];
    list.values = valuesOf(list);
    Edited.raise();
}

// The record

tvTableCollectionPtr RowDetails::rowsOf(const List& list, Record& record, const QString& collection,
                                        const RecordRowPtr& row)
{
    PartOfRecord part(record.shared_from_this(), collection, row);
    auto rows = std::dynamic_pointer_cast<tvTableCollection>(part.Item(list.collection));
    if (!rows)
        throw Error(QStringLiteral("A row of %1 has no rows of %2").arg(collection, list.collection));
    return rows;
}

QVariantList RowDetails::valuesOf(const List& list)
{
    // The control tells its values to a collection only: to one of a record that nobody keeps.
    const RecordPtr record = Record::create(incidentSchema());
    const RecordCollectionPtr rows = record->collection(list.collection);
    BoundControl& contract = *list.control;
    contract.SetValue(&list.binding, {}, rows);
    QVariantList values;
    for (const RecordRowPtr& row : rows->rows())
        values << row->cell(list.binding.FieldName).value();
    return values;
}

void RowDetails::load(Record& record, const QString& collection, const RecordRowPtr& row)
{
    const QScopedValueRollback loading(m_loading, true);
    m_storedCode = row && m_code ? fieldOf(*row, m_codeField) : nullptr;
    if (m_code)
        m_codeValue->load(m_storedCode ? m_storedCode->Value() : Null(), nullptr);
    const RecordPtr empty = Record::create(incidentSchema());
    for (List& list : m_lists) {
        const tvTableCollectionPtr rows =
            row ? rowsOf(list, record, collection, row) : empty->collection(list.collection);
        BoundControl& contract = *list.control;
        contract.FillControl(&list.binding, {}, rows);
        list.loaded = list.values = valuesOf(list);
    }
}

bool RowDetails::differs() const
{
    if (m_code && (m_storedCode ? m_codeValue->differs(*m_storedCode) : !IsNull(m_codeValue->value())))
        return true;
    return std::any_of(m_lists.begin(), m_lists.end(),
                       [](const List& list) { return list.values != list.loaded; });
}

void RowDetails::store(Record& record, const QString& collection, const RecordRowPtr& row)
{
    const tvFieldPtr code = m_code ? fieldOf(*row, m_codeField) : nullptr;
    const bool isNew = m_code && code != m_storedCode;
    m_storedCode = code;
    if (isNew)
        m_storedCode->SetValue(m_codeValue->value());
    else if (m_code)
        m_codeValue->store(*m_storedCode);
    for (List& list : m_lists) {
        const tvTableCollectionPtr rows = rowsOf(list, record, collection, row);
        if (list.values == list.loaded && rows->Count() == list.values.size())
            continue;
        BoundControl& contract = *list.control;
        contract.SetValue(&list.binding, {}, rows);
        list.loaded = list.values;
    }
}

// The keyboard

QWidgetList RowDetails::tabStops() const
{
    QWidgetList stops;
    if (m_code)
        stops << m_code->focusProxy();
    for (const List& list : m_lists) {
        stops << list.control->focusProxy();
        for (const char* link : {"lnkAdd", "lnkDelete"})
            stops << list.control->findChild<QWidget*>(QLatin1String(link));
    }
    return stops;
}

} // namespace tavrin::workbench
