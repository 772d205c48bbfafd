#pragma once

#include "base/failure/Event.h"
#include "frame/control_frame/FormFile.h"
#include "host/records/Record.h"
#include "workbench/bindings/PickedValue.h"

#include <QVariantList>
#include <QWidget>

#include <optional>

class QGridLayout;

namespace tavrin {
class MultiValue;
class NibrsOffensePicker;
} // namespace tavrin

namespace tavrin::workbench {

/// What stands below the line of a child row, such as an offense: its reporting code, and lists of codes that
/// are rows of other collections.
class RowDetails final : public QWidget
{
    Q_OBJECT

public:
    /// `host` is that part of a line's form: "code" names the row's field of the reporting code, with its
    /// "codeLabel"; "lists" are objects with "collection", "field", "table" and "label".
    RowDetails(const QJsonObject& host, QWidget* parent);
    static bool isWanted(const QJsonObject& host);
    /// Why the incident has no place for one of the lists, in a sentence; "" when it has.
    static QString problem(const QJsonObject& host);

    /// A row of this collection of the record; nullptr for one that is still to be made.
    void load(Record& record, const QString& collection, const RecordRowPtr& row);
    bool differs() const;
    /// Writes into the record. A row that was just made gets everything.
    void store(Record& record, const QString& collection, const RecordRowPtr& row);

    /// Those that take the focus, in the order of the tab key.
    QWidgetList tabStops() const;

    Event<> Edited;

private:
    struct List
    {
        QString collection;
        BoundBinding binding;
        MultiValue* control;
        QVariantList loaded;
        QVariantList values; // as the control has them
    };

    void addCode(const QJsonObject& host, QGridLayout& grid);
    void addList(const QJsonObject& host, QGridLayout& grid);
    void listEdited(std::size_t index);
    static tvTableCollectionPtr rowsOf(const List& list, Record& record, const QString& collection,
                                       const RecordRowPtr& row);
    static QVariantList valuesOf(const List& list);

    QString m_codeField;
    NibrsOffensePicker* m_code = nullptr;
    std::optional<PickedValue> m_codeValue;
    tvFieldPtr m_storedCode; // of the row; nullptr while there is none
    std::vector<List> m_lists;
    bool m_loading = false;
};

} // namespace tavrin::workbench
