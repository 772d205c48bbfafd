#include "testing/FakeServices.h"

#include "base/values/Variant.h"
#include "frame/memory_records/MemoryRecord.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tavrin::testing {

namespace {

QString path(std::initializer_list<QString> names)
{
    return QStringList(names).join(u'/');
}

class FakeHostServices final : public HostServices, Recorder
{
public:
    using Recorder::Recorder;

    TableValues GetTableValues(TableNumber table, bool includeInactive, const QVariant&, bool) override
    {
        return {asked(u"GetTableValues %1"_s.arg(table)).valuesOf(table, includeInactive)};
    }
    EventHub& Events() override { return asked(u"Events"_s).hub; }
    QString DateDisplayFormat() override { return asked(u"DateDisplayFormat"_s).dateDisplayFormat; }
    tvBusinessObjectPtr GetParentObject(const tvBusinessObjectPtr& record) override
    {
        return asked(u"GetParentObject"_s).parents.value(record.get(), MemoryRecord::OwnerOf(record));
    }
    void SyncCustomDictionaryFile() override { asked(u"SyncCustomDictionaryFile"_s); }
    void NotifyFileUploaded() override { asked(u"NotifyFileUploaded"_s); }
};

class FakeXmlFactory final : public XmlFactory, Recorder
{
public:
    using Recorder::Recorder;

    XmlDocument CreateDocument() override
    {
        asked(u"CreateDocument"_s);
        return XmlFactory::CreateDocument();
    }
};

class FakeSession final : public Session, Recorder
{
public:
    using Recorder::Recorder;

    QString CurrentUserId() override { return asked(u"CurrentUserId"_s).userId; }
    QString GetSetting(const QString& section, const QString& key) override
    {
        const QString setting = path({section, key});
        return asked(u"GetSetting"_s, setting).settings.value(setting);
    }
    bool HasPermission(const QString& module, int right) override
    {
        return asked(u"HasPermission"_s).permissions.contains(path({module, QString::number(right)}));
    }
    bool FieldExists(const QString& module, const QString& table, const QString& field) override
    {
        return !asked(u"FieldExists"_s).missingFields.contains(path({module, table, field}));
    }
    bool IsFieldRequired(const QString& module, const QString& table, const QString& field,
                         const QString& extra) override
    {
        QStringList names{module, table, field};
        if (!extra.isEmpty())
            names << extra;
        return asked(u"IsFieldRequired"_s).requiredFields.contains(names.join(u'/'));
    }
    QVariant MakeFieldReference(const tvFieldPtr& field) override
    {
        asked(u"MakeFieldReference"_s);
        return QVariant::fromValue<HostObjectPtr>(field);
    }
};

class FakeUiServices final : public UiServices, Recorder
{
public:
    using Recorder::Recorder;

    Color ShadeColor(Color color, double factor) override
    {
        asked(u"ShadeColor"_s);
        return UiServices::ShadeColor(color, factor);
    }
    ScaleMode ScaleModeFromUnits(const QString& units) override
    {
        asked(u"ScaleModeFromUnits "_s + units);
        return UiServices::ScaleModeFromUnits(units);
    }
    tavrin::TextBoxColors TextBoxColors() override { return asked(u"TextBoxColors"_s).textBoxColors; }
};

class FakeEnvironment final : public Environment, Recorder
{
public:
    using Recorder::Recorder;

    QString GetDictionaryFolder() override { return asked(u"GetDictionaryFolder"_s).dictionaryFolder; }
    void RefreshSupportFile(const QString& name) override { asked(u"RefreshSupportFile "_s + name); }
    int GetErrorNumber(int code) override
    {
        asked(u"GetErrorNumber"_s, QString::number(code));
        return 1000 + code;
    }
    QString GetDownloadsFolder() override { return asked(u"GetDownloadsFolder"_s).downloadsFolder; }
};

} // namespace

std::unique_ptr<HostServices> makeFakeHostServices(StatePtr state)
{
    return std::make_unique<FakeHostServices>(std::move(state));
}

std::unique_ptr<XmlFactory> makeFakeXmlFactory(StatePtr state)
{
    return std::make_unique<FakeXmlFactory>(std::move(state));
}

std::unique_ptr<Session> makeFakeSession(StatePtr state)
{
    return std::make_unique<FakeSession>(std::move(state));
}

std::unique_ptr<UiServices> makeFakeUiServices(StatePtr state)
{
    return std::make_unique<FakeUiServices>(std::move(state));
}

std::unique_ptr<Environment> makeFakeEnvironment(StatePtr state)
{
    return std::make_unique<FakeEnvironment>(std::move(state));
}

} // namespace tavrin::testing
