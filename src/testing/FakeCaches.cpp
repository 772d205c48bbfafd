#include "testing/FakeCaches.h"

#include "base/values/Variant.h"
#include "frame/host_contracts/RemovableWord.h"

using namespace Qt::StringLiterals;

namespace tavrin::testing {

namespace {

class FakeTableCodeCache final : public TableCodeCache, Recorder
{
public:
    using Recorder::Recorder;

    XmlDocument Document(TableNumber table) override
    {
        const FakeHostState& state = asked(u"TableCodeCache.Document %1"_s.arg(table));
        XmlDocument document;
        const XmlNode list = document.appendChild(document.createElement(u"TableCodes"_s));
        for (const TableValue& value : state.tables.value(table)) {
            const XmlNode code = list.appendElement(u"TableCode"_s);
            code.appendElement(u"ValueNo"_s, ToText(value.Value));
            code.appendElement(u"ValueCode"_s, value.ID);
            code.appendElement(u"ValueDesc"_s, value.DisplayText);
            code.appendElement(u"ActiveFlag"_s, QString::number(state.isActive(table, value) ? 1 : 0));
        }
        return document;
    }
    QString GetDescription(TableNumber table, const QVariant& code) override
    {
        const FakeHostState& state = asked(u"GetDescription %1"_s.arg(table));
        for (const TableValue& value : state.tables.value(table)) {
            if (SameValue(value.Value, code))
                return value.DisplayText;
        }
        return {};
    }
};

class FakeEmployees final : public EmployeeListCache, Recorder
{
public:
    using Recorder::Recorder;

    XmlDocument Document() override { return asked(u"EmployeeListCache.Document"_s).employees; }
    QString ShortText(const QVariant& officerNo) override
    {
        return asked(u"EmployeeListCache.ShortText"_s).employeeShortTexts.value(ToText(officerNo));
    }
    QString FullText(const QVariant& officerNo) override
    {
        return asked(u"EmployeeListCache.FullText"_s).employeeFullTexts.value(ToText(officerNo));
    }
};

class FakeOffenses final : public OffenseListCache, Recorder
{
public:
    using Recorder::Recorder;

    XmlDocument Document() override { return asked(u"OffenseListCache.Document"_s).offenses; }
    QString ShortText(const QVariant& offenseNo) override
    {
        return asked(u"OffenseListCache.ShortText"_s).offenseShortTexts.value(ToText(offenseNo));
    }
    QString FullText(const QVariant& offenseNo) override
    {
        return asked(u"OffenseListCache.FullText"_s).offenseFullTexts.value(ToText(offenseNo));
    }
};

class FakeUsers final : public UsersCache, Recorder
{
public:
    using Recorder::Recorder;

    XmlDocument Document() override { return asked(u"UsersCache.Document"_s).users; }
    QString UserDisplayName(const QString& userId) override
    {
        return asked(u"UserDisplayName"_s).userNames.value(userId);
    }
};

class FakeDictionary final : public tvCustomDictionary, public RemovableWord, Recorder
{
public:
    using Recorder::Recorder;

    void AddWord(const QString& word) override
    {
        asked(u"AddWord"_s).addedWords << word;
        m_word = word;
    }
    void TakeBack() override { asked(u"TakeBack"_s).addedWords.removeOne(m_word); }

private:
    QString m_word;
};

class FakeNibrsModule final : public NibrsModuleService, Recorder
{
public:
    using Recorder::Recorder;

    QList<QPair<QString, QString>> GetNibrsOffenseCodeList() override
    {
        return asked(u"GetNibrsOffenseCodeList"_s).nibrsCodes;
    }
};

} // namespace

std::unique_ptr<TableCodeCache> makeFakeTableCodeCache(StatePtr state)
{
    return std::make_unique<FakeTableCodeCache>(std::move(state));
}

std::unique_ptr<EmployeeListCache> makeFakeEmployeeListCache(StatePtr state)
{
    return std::make_unique<FakeEmployees>(std::move(state));
}

std::unique_ptr<OffenseListCache> makeFakeOffenseListCache(StatePtr state)
{
    return std::make_unique<FakeOffenses>(std::move(state));
}

std::unique_ptr<UsersCache> makeFakeUsersCache(StatePtr state)
{
    return std::make_unique<FakeUsers>(std::move(state));
}

std::unique_ptr<tvCustomDictionary> makeFakeCustomDictionary(StatePtr state)
{
    return std::make_unique<FakeDictionary>(std::move(state));
}

std::shared_ptr<NibrsModuleService> makeFakeNibrsModule(StatePtr state)
{
    return std::make_shared<FakeNibrsModule>(std::move(state));
}

} // namespace tavrin::testing
