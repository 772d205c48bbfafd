#pragma once

#include "base/export/Export.h"
#include "base/failure/Event.h"

#include <QMetaType>
#include <QString>
#include <QVariant>

#include <memory>

namespace tavrin {

class tvBusinessObject;
class tvField;
class tvTableCollection;
class tvTableRow;

/// Anything that `Item` can give: a record, a row, a collection or a field. Shared by reference.
class TAVRIN_EXPORT HostObject
{
public:
    HostObject() = default;
    HostObject(const HostObject&) = delete;
    HostObject& operator=(const HostObject&) = delete;
    virtual ~HostObject() = default;
};

/// A record, a row, a collection or a field, and all who use it; in a `QVariant`, a reference to a field.
using HostObjectPtr = std::shared_ptr<HostObject>;
using tvBusinessObjectPtr = std::shared_ptr<tvBusinessObject>;   ///< nullptr where there is no record
using tvFieldPtr = std::shared_ptr<tvField>;                     ///< nullptr where there is no column
using tvTableCollectionPtr = std::shared_ptr<tvTableCollection>; ///< nullptr where there are no rows
using tvTableRowPtr = std::shared_ptr<tvTableRow>;               ///< nullptr where there is no row

/// A record of the host, such as an incident or a location.
class TAVRIN_EXPORT tvBusinessObject : public HostObject
{
public:
    /// The child of this name: a row, a collection, another record, or in a row a field.
    /// nullptr when there is none; the caller tests that. Names compare without case.
    ///
    /// A collection that several sections show, such as the attachments, is the same object at each call
    /// while its record is open: they hear of each other by its events. All else may be made at each call.
    virtual HostObjectPtr Item(const QString& name) = 0;

    /// The name of the record's class, such as "tvIncidentBO"; sections with rights of their own find their
    /// module by it. "" for a row and for a part that is no module's record.
    virtual QString ClassName() const { return {}; }
};

/// One column of one row.
class TAVRIN_EXPORT tvField : public HostObject
{
public:
    /// Null when the field is empty.
    virtual QVariant Value() const = 0;
    /// A plain value, or the object from `Session::MakeFieldReference`, which links the two fields: this one
    /// then takes the other's value, also one that is assigned only when the record is saved.
    virtual void SetValue(const QVariant& value) = 0;
    /// The column's name.
    virtual QString Name() const = 0;
    /// Part of the row's key.
    virtual bool IsKey() const = 0;
    /// The longest text that the field takes, in UTF-16 units; 0 where no length is set.
    virtual qint32 MaxLength() const = 0;
};

/// The column that links a row to the record above it.
class TAVRIN_EXPORT tvLinkField : public tvField
{
};

/// One row of a table.
///
/// Rows are told apart by the value of their key column, not by their objects, of which a host may make one
/// at each call. Each object stands for its row as long as somebody holds it, wherever the row stands in its
/// collection, and keeps the row's values also when the row has been removed.
class TAVRIN_EXPORT tvTableRow : public tvBusinessObject
{
public:
    using tvBusinessObject::Item;
    /// The column at `index`, counted from 1; nullptr outside.
    virtual tvFieldPtr Item(int index) = 0;
    /// Number of the columns.
    virtual int FieldCount() const = 0;
    /// The row has never been saved.
    virtual bool IsNew() const = 0;
};

/// The column of this name. Raises an `Error` that names it when the row has none.
TAVRIN_EXPORT tvFieldPtr fieldOf(tvTableRow& row, const QString& name);

/// An ordered collection of rows, counted from 1, with a current position.
///
/// The events are raised inside the call that causes them, and an exception of a handler reaches its caller.
class TAVRIN_EXPORT tvTableCollection : public HostObject
{
public:
    /// Goes through the rows by their index, for range-based loops. It asks the collection anew at each step;
    /// a row that is added or removed meanwhile shifts what is behind it.
    class Iterator
    {
    public:
        // Made by `begin` and `end`.
        Iterator(tvTableCollection* rows, qint32 index)
            : m_rows(rows)
            , m_index(index)
        {
        }
        tvTableRowPtr operator*() const { return m_rows->Item(m_index); }
        Iterator& operator++()
        {
            ++m_index;
            return *this;
        }
        bool operator!=(const Iterator& other) const { return m_index != other.m_index; }

    private:
        tvTableCollection* m_rows;
        qint32 m_index;
    };

    /// Name of the key column.
    virtual QString KeyColumn() const = 0;
    /// A row of the collection's class, not yet added.
    virtual tvTableRowPtr NewItem() = 0;
    /// Appends a new empty row, makes it current and returns it.
    virtual tvTableRowPtr AddNew() = 0;
    /// Appends a row made by `NewItem`, or one that `RemoveCurrent` has taken out: that one keeps its key
    /// where no other row has it by now, and is the saved row again if it was. One that a save has
    /// deleted in between is refused with an `Error`, or becomes a new row: kept as a saved one it would be
    /// lost with the next save.
    virtual void Add(const tvTableRowPtr& row) = 0;
    /// Removes the row at `Position`, then raises `ItemRemoved` and `ItemRemovedEx`. With `immediately` the
    /// row leaves the database at once, else with the next save.
    virtual void RemoveCurrent(bool immediately) = 0;
    /// Number of the rows.
    virtual qint32 Count() const = 0;
    /// The row at `index`, counted from 1. Raises an `Error` outside.
    virtual tvTableRowPtr Item(qint32 index) = 0;
    /// Class name of the rows, for a collection that a control makes for itself.
    virtual void SetItemClass(const QString& name) = 0;
    /// Index of the current row, counted from 1; 0 while the collection is empty.
    virtual qint16 Position() const = 0;
    virtual void SetPosition(qint16 position) = 0;
    /// Whether the current row is the primary one.
    virtual bool CurrentIsPrimary() const = 0;
    /// Makes the row with this key the primary one, Null makes none. Raises `PrimaryStatusChanged`.
    virtual void SetPrimaryValue(const QVariant& key) = 0;
    /// Index of the primary row, counted from 1; 0 for none.
    virtual qint32 PrimaryIndex() const = 0;

    /// For range-based loops, in which `row` is a `tvTableRowPtr`.
    Iterator begin() { return {this, 1}; }
    Iterator end() { return {this, Count() + 1}; }

    /// A row was removed: its key's value.
    Event<const QVariant&> ItemRemoved;
    /// The same, behind `ItemRemoved`: the index that the row had, counted from 1, and the row.
    Event<qint32, const tvTableRowPtr&> ItemRemovedEx;
    /// Another row is the primary one: its key's value, Null when there is none any more.
    Event<const QVariant&> PrimaryStatusChanged;
};

/// Whether both stand for one row of the collection: they are one object, or have one key other than Null.
TAVRIN_EXPORT bool isSameRow(const tvTableCollection& rows, const tvTableRowPtr& one,
                             const tvTableRowPtr& other);

/// Where the row stands in the collection, counted from 1; 0 when it is not there. Looks at the current row
/// first. nullptr stands nowhere.
TAVRIN_EXPORT qint32 indexOf(tvTableCollection& rows, const tvTableRowPtr& row);

} // namespace tavrin

Q_DECLARE_METATYPE(tavrin::HostObjectPtr)
