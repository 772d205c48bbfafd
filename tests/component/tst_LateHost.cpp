#include "component/Program.h"
#include "frame/host_contracts/Host.h"
#include "support/RaisedError.h"
#include "support/TestCase.h"

#include <thread>

using namespace Qt::StringLiterals;
using namespace tavrin::test;
using tavrin::currentHost;
using tavrin::Error;

namespace {

const auto Agencies = R"([{"ID": "N", "DisplayText": "North", "Value": 1},
                          {"ID": "S", "DisplayText": "South", "Value": 2, "Active": false}])";

} // namespace

/// A host by one callback.
class tst_LateHost : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aControlFillsItsListFromTheProgram()
    {
        Program program;
        program.answer(u"ListFilling.FillTableGrid/3"_s, Agencies);
        const Made made("AgencyPicker");
        const TvVariant value = of(2);
        QVERIFY2(made.functions.Put(made.handle, "Value", &value) == TV_S_OK, qPrintable(lastDescription()));
        Answer text;
        QCOMPARE(made.functions.Get(made.handle, "FullText", text.out()), TV_S_OK);
        QCOMPARE(text.text(), u"South"_s);
    }

    void argumentsAndResultsTravel()
    {
        Program program;
        QString section;
        program.answers[u"Session.GetSetting/2"_s] = [&](const TvVariant* arguments, TvVariant* result) {
            section = QString::fromUtf8(arguments[0].value.text);
            return library().SetText(result, arguments[1].value.text);
        };
        QCOMPARE(currentHost().session().GetSetting(u"_Global"_s, u"Folder ä"_s), u"Folder ä"_s);
        QCOMPARE(section, u"_Global"_s);
        program.answers[u"Session.HasPermission/2"_s] = [](const TvVariant* arguments, TvVariant* result) {
            result->type = TV_BOOLEAN;
            result->value.boolean = arguments[1].value.integer == 20;
            return TV_S_OK;
        };
        QVERIFY(currentHost().session().HasPermission(u"tvIncidentBO"_s, 20));
        QVERIFY(!currentHost().session().HasPermission(u"tvIncidentBO"_s, 10));
        program.answers[u"Images.LoadPicture/1"_s] = [](const TvVariant*, TvVariant* result) {
            return Program::setBlue(result);
        };
        QCOMPARE(currentHost().images().LoadPicture(u"a.png"_s).pixelColor(1, 1), QColor(Qt::blue));
        program.answer(u"UiServices.TextBoxColors/0"_s, R"({"Focused": {"BackColor": 2147483653}})");
        QCOMPARE(currentHost().uiServices().TextBoxColors().Focused.BackColor.value(), 0x80000005U);
    }

    void valuesOfATableComeAsJson()
    {
        Program program;
        program.answer(u"HostServices.GetTableValues/2"_s, Agencies);
        const auto items = currentHost().hostServices().GetTableValues(997, true).Items;
        QCOMPARE(items.size(), 2);
        QCOMPARE(items.at(1).ID, u"S"_s);
        QCOMPARE(items.at(1).DisplayText, u"South"_s);
        QCOMPARE(items.at(1).Value, QVariant(2));
        program.answer(u"HostServices.GetTableValues/2"_s, "[");
        const Error error = raisedBy([] { currentHost().hostServices().GetTableValues(997, true); });
        QCOMPARE(error.Number, Error::TypeMismatchNumber);
        QVERIFY(
            error.Description.startsWith(u"The host's answer to HostServices.GetTableValues is no JSON"_s));
    }

    void aListIsReadAnewOnlyWhenItsTextIsAnother()
    {
        Program program;
        program.answer(u"UsersCache.Document/0"_s,
                       "<Users><UserAccount><UserId>a</UserId></UserAccount></Users>");
        const auto first = currentHost().newUsersCache()->Document();
        QVERIFY(currentHost().newUsersCache()->Document().sharesTreeWith(first));
        program.answer(u"UsersCache.Document/0"_s, "<Users/>");
        QCOMPARE(currentHost().newUsersCache()->Document().xml(), u"<Users/>"_s);
        program.answer(u"UsersCache.Document/0"_s, "<Users>");
        QVERIFY(raisedBy([] { currentHost().newUsersCache()->Document(); }).Number != 0);
    }

    void whatTheHostDoesNotOfferIsTheDefault()
    {
        Program program;
        QCOMPARE(currentHost().session().CurrentUserId(), QString());
        QVERIFY(!currentHost().session().HasPermission(u"tvIncidentBO"_s, 20));
        QVERIFY(currentHost().images().IsImageFile(u"a.png"_s));
        currentHost().hostServices().NotifyFileUploaded();
        QCOMPARE(program.asked,
                 QStringList({u"Session.CurrentUserId/0"_s, u"Session.HasPermission/2"_s,
                              u"Images.IsImageFile/1"_s, u"HostServices.NotifyFileUploaded/0"_s}));
        const Error error = raisedBy([] { currentHost().newUsersCache()->Document(); });
        QCOMPARE(error.Number, Error::NoSuchComponentNumber);
        QCOMPARE(raisedBy([] { currentHost().createNibrsModule(u"NIBRS.Singletons"_s); }).Number,
                 Error::NoSuchComponentNumber);
    }

    void listsAreFilledFromTheTablesThatTheProgramOffers()
    {
        Program program;
        program.answers[u"HostServices.GetTableValues/2"_s] = [](const TvVariant* arguments,
                                                                 TvVariant* result) {
            return library().SetText(result, arguments[1].value.boolean ? Agencies : "[]");
        };
        const Made made("AgencyPicker");
        const TvVariant value = of(2);
        QVERIFY2(made.functions.Put(made.handle, "Value", &value) == TV_S_OK, qPrintable(lastDescription()));
        Answer text;
        QCOMPARE(made.functions.Get(made.handle, "ShortText", text.out()), TV_S_OK);
        QCOMPARE(text.text(), u"S"_s);
    }

    void nibrsCodesComeAsJson()
    {
        Program program;
        program.answer(u"NIBRS.Singletons.GetNibrsOffenseCodeList/0"_s,
                       R"([["13A", "Assault"], ["09A", "Murder"]])");
        const auto codes = currentHost().createNibrsModule(u"NIBRS.Singletons"_s)->GetNibrsOffenseCodeList();
        QCOMPARE(codes.size(), 2);
        QCOMPARE(codes.at(1).first, u"09A"_s);
        QCOMPARE(codes.at(1).second, u"Murder"_s);
    }

    void whatTheHostRaisesReachesTheCallOfTheProgram()
    {
        Program program;
        program.answers[u"ListFilling.FillTableGrid/3"_s] = [](const TvVariant*, TvVariant*) {
            return library().RaiseError(1234, "my host", "The database is closed");
        };
        const Made made("AgencyPicker");
        const TvVariant value = of(2);
        QCOMPARE(made.functions.Put(made.handle, "Value", &value), TV_E_EXCEPTION);
        QCOMPARE(lastNumber(), 1234);
        QCOMPARE(lastDescription(), u"The database is closed"_s);
        program.answers[u"ListFilling.FillTableGrid/3"_s] = [](const TvVariant*, TvVariant*) {
            return TV_E_FAIL;
        };
        QCOMPARE(made.functions.Put(made.handle, "Value", &value), TV_E_EXCEPTION);
        QCOMPARE(lastDescription(), u"ListFilling.FillTableGrid has failed with 0x80004005"_s);
    }

    void aHostCannotGoWhileItIsAsked()
    {
        Program program;
        program.answers[u"Session.CurrentUserId/0"_s] = [](const TvVariant*, TvVariant* result) {
            if (library().SetHost(nullptr, nullptr) != TV_E_UNEXPECTED)
                return TV_E_FAIL;
            return library().SetText(result, "me");
        };
        QCOMPARE(currentHost().session().CurrentUserId(), u"me"_s);
    }

    void aHostThatIsGoneIsNotAsked()
    {
        std::unique_ptr<tavrin::UsersCache> cache;
        {
            const Program program;
            cache = currentHost().newUsersCache();
        }
        QCOMPARE(raisedBy([&] { cache->Document(); }).Description, u"The host is no longer there"_s);
        QVERIFY(raisedBy([] { currentHost(); }).Number != 0);
    }

    void aRefreshReachesWhoeverListens()
    {
        QCOMPARE(library().RaiseCacheRefreshed(), TV_E_UNEXPECTED);
        const Program program;
        int heard = 0;
        const auto kept = currentHost().hostServices().Events().CacheRefreshed.subscribe(
            [&](const tavrin::CacheRefreshInfo&) { ++heard; });
        QCOMPARE(library().RaiseCacheRefreshed(), TV_S_OK);
        QCOMPARE(heard, 1);
    }

    void aHostBelongsToItsThread()
    {
        const Program program;
        bool hasHost = true;
        std::thread([&] { hasHost = raisedBy([] { currentHost(); }).Number == 0; }).join();
        QVERIFY(!hasHost);
        QVERIFY(raisedBy([] { currentHost(); }).Number == 0);
    }
};

TAVRIN_TEST_MAIN(tst_LateHost)
#include "tst_LateHost.moc"
