#include "component/ContractCalls.h"

#include "base/values/Variant.h"
#include "component/Handles.h"
#include "component/RecordText.h"
#include "frame/host_contracts/Contracts.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <limits>
#include <optional>

namespace tavrin {

namespace {

/// One call of a contract.
struct ContractCall
{
    TvHandle handle;
    const QString& operation;
    const QVariantList& arguments;

    bool is(const char* name) const
    {
        return operation.compare(QLatin1String(name), Qt::CaseInsensitive) == 0;
    }
    void wantArguments(qsizetype least, qsizetype most) const
    {
        if (arguments.size() < least || arguments.size() > most)
            throw CallError(
                TV_E_BADPARAMCOUNT,
                QStringLiteral("\"%1\" does not take %2 arguments").arg(operation).arg(arguments.size()));
    }
    [[noreturn]] void refuse(const QString& contract) const
    {
        throw CallError(TV_E_MEMBERNOTFOUND,
                        QStringLiteral("The contract %1 has no operation \"%2\"").arg(contract, operation));
    }
    [[noreturn]] void refuseArgument(const QString& what) const
    {
        throw CallError(TV_E_TYPEMISMATCH, QStringLiteral("\"%1\" wants %2").arg(operation, what),
                        Error::TypeMismatchNumber);
    }
    /// A record by its handle or as JSON; nullptr for Empty, Null and the handle 0.
    HostObjectPtr record(qsizetype index) const
    {
        const QVariant value = arguments.value(index);
        if (value.typeId() == qMetaTypeId<HostObjectPtr>())
            return value.value<HostObjectPtr>();
        if (value.typeId() == QMetaType::QString)
            return recordFromText(value.toString());
        const bool isNothing =
            IsNull(value) || IsEmpty(value) || (value.canConvert<QObject*>() && !value.value<QObject*>());
        if (!isNothing)
            refuseArgument(QStringLiteral("a record, or the JSON of one"));
        return nullptr;
    }
    template <typename Kind>
    std::shared_ptr<Kind> as(const HostObjectPtr& record, const QString& what) const
    {
        auto kind = std::dynamic_pointer_cast<Kind>(record);
        if (record && !kind)
            refuseArgument(what);
        return kind;
    }
};

QVariant callField(TavrinControl& contract, const ContractCall& call)
{
    if (call.is("GetValue")) {
        call.wantArguments(0, 0);
        return raisingException([&] { return contract.GetValue(); });
    }
    if (!call.is("SetValue"))
        call.refuse(QStringLiteral("TavrinControl"));
    call.wantArguments(1, 2);
    UsedValues used;
    const QVariant values = call.arguments.value(1);
    if (values.typeId() == QMetaType::QVariantList)
        used = std::make_shared<QVariantList>(values.toList());
    else if (!IsEmpty(values) && !IsNull(values))
        call.refuseArgument(QStringLiteral("a list of the used values"));
    raisingException([&] { contract.SetValue(call.arguments.first(), used); });
    return {};
}

std::optional<BoundBinding> bindingFrom(const ContractCall& call)
{
    const QVariant value = call.arguments.first();
    if (IsNull(value) || IsEmpty(value))
        return std::nullopt;
    const QJsonDocument json = value.typeId() == QMetaType::QString
                                   ? QJsonDocument::fromJson(value.toString().toUtf8())
                                   : QJsonDocument();
    if (!json.isObject())
        call.refuseArgument(QStringLiteral("a binding as the JSON {\"FieldName\": ..., \"TableNo\": ...}"));
    const QJsonValue field = json[QStringLiteral("FieldName")];
    if (!field.isUndefined() && !field.isString())
        call.refuseArgument(QStringLiteral("a text as the binding's FieldName"));
    const QJsonValue table = json[QStringLiteral("TableNo")];
    constexpr qint64 noNumber = std::numeric_limits<qint64>::max();
    const qint64 number = table.isUndefined() ? Tables::None : table.toInteger(noNumber);
    if (number < std::numeric_limits<TableNumber>::min() || number > std::numeric_limits<TableNumber>::max())
        call.refuseArgument(QStringLiteral("a whole number as the binding's TableNo"));
    return BoundBinding{field.toString(), static_cast<TableNumber>(number)};
}

QVariant callRows(BoundControl& contract, const ContractCall& call)
{
    const bool fills = call.is("FillControl");
    if (!fills && !call.is("SetValue"))
        call.refuse(QStringLiteral("BoundControl"));
    call.wantArguments(3, 3);
    const std::optional<BoundBinding> binding = bindingFrom(call);
    const auto rows = call.as<tvTableCollection>(call.record(2), QStringLiteral("a collection"));
    raisingException([&] {
        if (fills)
            contract.FillControl(binding ? &*binding : nullptr, call.arguments.at(1), rows);
        else
            contract.SetValue(binding ? &*binding : nullptr, call.arguments.at(1), rows);
    });
    return fills || !rows ? QVariant() : QVariant(textOfRecord(rows));
}

QVariant callSection(BoundSection& contract, const ContractCall& call)
{
    const QString wanted = QStringLiteral("a record, and no collection");
    if (call.is("ReadData")) {
        call.wantArguments(1, 1);
        const auto record = call.as<tvBusinessObject>(call.record(0), wanted);
        handles().lastRecord(call.handle) = record;
        raisingException([&] { contract.ReadData(record); });
        return {};
    }
    if (!call.is("WriteData"))
        call.refuse(QStringLiteral("BoundSection"));
    call.wantArguments(0, 1);
    const HostObjectPtr given = call.arguments.isEmpty() ? handles().lastRecord(call.handle) : call.record(0);
    const auto record = call.as<tvBusinessObject>(given, wanted);
    raisingException([&] { contract.WriteData(record); });
    return record ? QVariant(textOfRecord(record)) : QVariant();
}

} // namespace

QVariant callContract(TvHandle handle, const QString& operation, const QVariantList& arguments)
{
    UserControl& control = handles().control(handle);
    const ContractCall call{handle, operation, arguments};
    if (auto* field = dynamic_cast<TavrinControl*>(&control))
        return callField(*field, call);
    if (auto* rows = dynamic_cast<BoundControl*>(&control))
        return callRows(*rows, call);
    if (auto* section = dynamic_cast<BoundSection*>(&control))
        return callSection(*section, call);
    throw CallError(TV_E_NOINTERFACE, QStringLiteral("%1 has no contract").arg(control.typeName()));
}

} // namespace tavrin
