#include "component/HostOperations.h"
#include "support/RaisedError.h"
#include "support/TestCase.h"

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// Every operation of the host's services, as a program hears and answers it.
class tst_LateOperations : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theProgramHearsEachOperationWithItsArgumentsAndAnswersIt_data()
    {
        QTest::addColumn<int>("index");
        for (size_t i = 0; i < operations().size(); ++i)
            QTest::newRow(operations()[i].name) << static_cast<int>(i);
    }
    void theProgramHearsEachOperationWithItsArgumentsAndAnswersIt()
    {
        QFETCH(int, index);
        const Operation& operation = operations()[static_cast<size_t>(index)];
        Program program;
        const QString name = QString::fromLatin1(operation.name);
        program.answers[name] = operation.answer;
        QString result;
        const Error error = raisedBy([&] { result = operation.ask(); });
        QCOMPARE(error.Description, QString());
        QCOMPARE(program.asked, QStringList({name}));
        QCOMPARE(program.told, operation.arguments);
        QCOMPARE(result, operation.result);
    }

    void whatTheProgramRaisesReachesWhoeverAsked_data()
    {
        theProgramHearsEachOperationWithItsArgumentsAndAnswersIt_data();
    }
    void whatTheProgramRaisesReachesWhoeverAsked()
    {
        QFETCH(int, index);
        const Operation& operation = operations()[static_cast<size_t>(index)];
        Program program;
        program.answers[QString::fromLatin1(operation.name)] = [](const TvVariant*, TvVariant*) {
            return library().RaiseError(77, "the host", "Not today");
        };
        const Error error = raisedBy([&] { operation.ask(); });
        QCOMPARE(error.Description, u"Not today"_s);
        QCOMPARE(error.Number, 77);
        QCOMPARE(error.Source, u"the host"_s);
    }

    // Answers of another type

    void anAnswerOfAnotherTypeIsToldWithItsPlace_data()
    {
        QTest::addColumn<QString>("operation");
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("where");
        const auto row = [](const char* name, const QString& operation, const char* answer,
                            const QString& where) {
            QTest::newRow(name) << operation << QByteArray(answer) << where;
        };
        const auto values = u"HostServices.GetTableValues/2"_s;
        row("an object for the list", values, R"({"ID": "G"})", u": no list"_s);
        row("a text for a value", values, R"(["G"])", u" at [0]: no object"_s);
        row("a number for an ID", values, R"([{"ID": 5, "Value": 5}])", u" at [0].ID: no text"_s);
        row("a list for a text", values, R"([{"DisplayText": [], "Value": 5}])",
            u" at [0].DisplayText: no text"_s);
        row("a text for a code", values, R"([{"Value": 1}, {"Value": "2"}])",
            u" at [1].Value: no whole number of 32 bits"_s);
        row("a fraction for a code", values, R"([{"Value": 2.5}])",
            u" at [0].Value: no whole number of 32 bits"_s);
        row("a code out of range", values, R"([{"Value": 3000000000}])",
            u" at [0].Value: no whole number of 32 bits"_s);
        row("no code", values, R"([{"ID": "G"}])", u" at [0].Value: no whole number of 32 bits"_s);
        row("a number for a state", values, R"([{"Value": 1, "Active": 0}])",
            u" at [0].Active: neither true nor false"_s);
        row("a text for a state in a list", u"ListFilling.FillTableGrid/3"_s,
            R"([{"Value": 1, "Active": "no"}])", u" at [0].Active: neither true nor false"_s);
        row("an object for a list's entries", u"ListFilling.FillTableCombo/3"_s, "{}", u": no list"_s);
        const auto colors = u"UiServices.TextBoxColors/0"_s;
        row("a list for the colours", colors, "[]", u": no object"_s);
        row("a list for a state's colours", colors, R"({"Normal": []})", u" at .Normal: no object"_s);
        row("a text for a colour", colors, R"({"Disabled": {"TagForeColor": "red"}})",
            u" at .Disabled.TagForeColor: no colour"_s);
        row("a colour out of range", colors, R"({"Focused": {"BackColor": -1}})",
            u" at .Focused.BackColor: no colour"_s);
        const auto codes = u"NIBRS.Singletons.GetNibrsOffenseCodeList/0"_s;
        row("an object for the codes", codes, R"({"13A": "Assault"})", u": no list"_s);
        row("a text for a code's pair", codes, R"(["13A"])", u" at [0]: no list of two texts"_s);
        row("a code alone", codes, R"([["13A"]])", u" at [0]: no list of two texts"_s);
        row("a number for a code's text", codes, R"([["13A", "Assault"], ["09A", 9]])",
            u" at [1][1]: no text"_s);
        row("a text for a picture", u"Images.LoadPicture/1"_s, "a.png", u": no picture"_s);
        row("a text for a fitted picture", u"ListFilling.FitPicture/6"_s, "a.png", u": no picture"_s);
    }
    void anAnswerOfAnotherTypeIsToldWithItsPlace()
    {
        QFETCH(QString, operation);
        QFETCH(QByteArray, answer);
        QFETCH(QString, where);
        Program program;
        program.answer(operation, answer.constData());
        const auto asked = std::find_if(operations().begin(), operations().end(), [&](const Operation& one) {
            return operation == QLatin1String(one.name);
        });
        QVERIFY(asked != operations().end());
        const Error error = raisedBy([&] { asked->ask(); });
        QCOMPARE(error.Description, u"The host's answer to %1 is wrong%2"_s.arg(
                                        operation.left(operation.lastIndexOf(u'/')), where));
        QCOMPARE(error.Number, Error::TypeMismatchNumber);
    }

    void aTextThatAValueLacksIsEmpty()
    {
        Program program;
        program.answer(u"HostServices.GetTableValues/2"_s, R"([{"Value": 7, "ID": null}])");
        const TableValues values = currentHost().hostServices().GetTableValues(302, true);
        QCOMPARE(values.Items.size(), 1);
        QCOMPARE(values.Items.first().ID, QString());
        QCOMPARE(values.Items.first().DisplayText, QString());
        QCOMPARE(values.Items.first().Value, QVariant(7));
    }

    void valuesThatAreNotInUseComeOnlyWhenAskedFor()
    {
        Program program;
        program.answer(u"HostServices.GetTableValues/2"_s,
                       R"([{"ID": "A", "Value": 1}, {"ID": "B", "Value": 2, "Active": false},
                           {"ID": "C", "Value": 3, "Active": true}])");
        const auto idsOf = [](bool includeInactive) {
            QStringList ids;
            for (const TableValue& value :
                 currentHost().hostServices().GetTableValues(302, includeInactive).Items)
                ids << value.ID;
            return ids;
        };
        QCOMPARE(idsOf(true), QStringList({u"A"_s, u"B"_s, u"C"_s}));
        QCOMPARE(idsOf(false), QStringList({u"A"_s, u"C"_s}));
    }
};

TAVRIN_TEST_MAIN(tst_LateOperations)
#include "tst_LateOperations.moc"
