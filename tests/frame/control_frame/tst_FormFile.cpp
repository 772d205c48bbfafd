#include "base/failure/Error.h"
#include "base/values/Variant.h"
#include "frame/control_frame/FormFile.h"
#include "support/ProbeControl.h"
#include "support/RaisedError.h"
#include "support/TestCase.h"

#include <QFile>
#include <QTemporaryDir>
#include <QVariantList>

using namespace Qt::StringLiterals;
using tavrin::ControlRegister;
using tavrin::ControlSite;
using tavrin::Error;
using tavrin::FormFile;
using tavrin::test::ProbeControl;
using tavrin::test::raisedBy;

namespace {

ControlRegister probes()
{
    ControlRegister classes;
    classes.add<ProbeControl>(u"Test.Probe"_s);
    classes.add(u"Test.Failing"_s, [](QWidget*, const ControlSite&) -> tavrin::UserControl* {
        throw Error(u"It cannot be made"_s);
    });
    return classes;
}

FormFile sampleForm()
{
    FormFile form;
    form.title = u"General \u00E9"_s;
    FormFile::Control weapon;
    weapon.className = u"Test.Probe"_s;
    weapon.name = u"Weapon"_s;
    weapon.properties.WriteProperty(u"First"_s, 302, 0);
    weapon.properties.WriteProperty(u"Second"_s, u"a \"text\""_s, u""_s);
    weapon.properties.WriteProperty(u"Third"_s, QVariant::fromValue(tavrin::Color(0x80000008)),
                                    tavrin::Null());
    weapon.host = {
        {u"field"_s, u"WeaponNo"_s}, {u"label"_s, u"&Weapon"_s}, {u"own"_s, QJsonObject{{u"x"_s, 1}}}};
    FormFile::Control plain;
    plain.className = u"Test.Probe"_s;
    plain.name = u"Plain"_s;
    form.controls = {weapon, plain};
    return form;
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<cannot be read>");
}

void put(const QString& path, const QByteArray& content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
}

/// What a program does with a file that somebody damaged: reads it, makes the controls, tells the problems.
void openForm(const QByteArray& content)
{
    QStringList problems;
    const FormFile form = FormFile::fromJson(content, u"f.json"_s, problems);
    QWidget parent;
    const auto controls = form.createControls(probes(), &parent, u"f.json"_s, problems);
    QCOMPARE(controls.size(), form.controls.size());
    for (const QString& problem : problems)
        QVERIFY2(problem.startsWith(u"f.json: "_s) && problem.endsWith(u'.'), qPrintable(problem));
}

} // namespace

class tst_FormFile : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aFormSurvivesTheFile()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"form.json"_s);
        sampleForm().save(path);
        QStringList problems;
        const FormFile form = FormFile::load(path, problems);
        QCOMPARE(problems, QStringList());
        QCOMPARE(form.title, sampleForm().title);
        QCOMPARE(form.controls.size(), 2U);
        const FormFile::Control& weapon = form.controls.at(0);
        QCOMPARE(weapon.className, u"Test.Probe"_s);
        QCOMPARE(weapon.name, u"Weapon"_s);
        QCOMPARE(weapon.properties.ReadProperty(u"First"_s, 0), QVariant(302));
        QCOMPARE(weapon.properties.ReadProperty(u"Second"_s, 0), QVariant(u"a \"text\""_s));
        QCOMPARE(weapon.host, sampleForm().controls.at(0).host); // the host's own travels along untouched
        QCOMPARE(form.controls.at(1).name, u"Plain"_s);
        QVERIFY(form.controls.at(1).host.isEmpty());
        QCOMPARE(form.toJson(), contentOf(path));
    }

    void theControlsOfAFormAreMadeWithNameAndProperties()
    {
        QWidget parent;
        QStringList problems;
        const auto controls = sampleForm().createControls(probes(), &parent, u"f.json"_s, problems);
        QCOMPARE(problems, QStringList());
        QCOMPARE(controls.size(), 2U);
        const auto* weapon = qobject_cast<ProbeControl*>(controls.at(0));
        QCOMPARE(weapon->parentWidget(), &parent);
        QCOMPARE(weapon->ambient().DisplayName(), u"Weapon"_s);
        QCOMPARE(weapon->first, 302);
        QCOMPARE(weapon->second, u"a \"text\""_s);
        // A saved control without a value for a property comes up with the default, put by its setter.
        const auto* plain = qobject_cast<ProbeControl*>(controls.at(1));
        QCOMPARE(plain->first, 11);
        QCOMPARE(plain->second, u"two"_s);
    }

    void anUnknownControlIsNamedWithItsFileAndTheOthersAreMade()
    {
        FormFile form = sampleForm();
        form.controls[0].className = u"Test.Nothing"_s;
        QWidget parent;
        QStringList problems;
        const auto controls = form.createControls(probes(), &parent, u"dir/f.json"_s, problems);
        QCOMPARE(problems, QStringList({u"dir/f.json: control \"Weapon\": There is no control of the class "
                                        "Test.Nothing."_s}));
        QVERIFY(controls.at(0) == nullptr);
        QVERIFY(controls.at(1) != nullptr);
    }

    void aControlThatCannotBeMadeIsNamedWithItsFile()
    {
        FormFile form = sampleForm();
        form.controls[0].className = u"Test.Failing"_s;
        QWidget parent;
        QStringList problems;
        const auto controls = form.createControls(probes(), &parent, u"f.json"_s, problems);
        QCOMPARE(problems, QStringList({u"f.json: control \"Weapon\": It cannot be made."_s}));
        QVERIFY(controls.at(0) == nullptr);
        QVERIFY(controls.at(1) != nullptr);
    }

    void brokenJsonGivesAnEmptyFormAndTheLine_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<QString>("start");
        QTest::newRow("empty") << QByteArray() << u"f.json"_s << u"f.json: line 1: "_s;
        QTest::newRow("third line") << QByteArray("{\n\"title\": \"a\",\n\"controls\": [}\n") << u"f.json"_s
                                    << u"f.json: line 3: "_s;
        QTest::newRow("no JSON") << QByteArray("hello") << u"f.json"_s << u"f.json: line 1: "_s;
        QTest::newRow("name with per cent and digit")
            << QByteArray("{\n!") << u"50%2 %3.json"_s << u"50%2 %3.json: line 2: "_s;
    }
    void brokenJsonGivesAnEmptyFormAndTheLine()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, fileName);
        QFETCH(QString, start);
        QStringList problems;
        const FormFile form = FormFile::fromJson(content, fileName, problems);
        QVERIFY(form.controls.empty());
        QCOMPARE(form.title, QString());
        QCOMPARE(problems.size(), 1);
        QVERIFY2(problems.first().startsWith(start) && problems.first().endsWith(u'.'),
                 qPrintable(problems.first()));
    }

    void aPartOfTheWrongTypeIsToldAndTheRestStands_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QStringList>("problems");
        QTest::addColumn<int>("controls");
        const auto row = [](const char* name, const char* content, const QStringList& problems,
                            int controls) {
            QTest::newRow(name) << QByteArray(content) << problems << controls;
        };
        row("a list for the form", "[1]", {u"f.json: The form is not an object."_s}, 0);
        row("a number for the title", R"({"title": 5, "controls": [{"class": "c", "name": "n"}]})",
            {u"f.json: The title is not a text."_s}, 1);
        row("an object for the controls", R"({"title": "t", "controls": {}})",
            {u"f.json: The controls are not a list."_s}, 0);
        row("a text for a control", R"({"controls": ["c", {"class": "c", "name": "n"}]})",
            {u"f.json: Control 1 is not an object."_s}, 1);
        row("a number for the class", R"({"controls": [{"class": 5, "name": "n"}]})",
            {u"f.json: control \"n\": The class is not a text."_s}, 1);
        row("a list for the name", R"({"controls": [{"class": "c", "name": []}]})",
            {u"f.json: control \"\": The name is not a text."_s}, 1);
        row("a list for the properties", R"({"controls": [{"class": "c", "name": "n", "properties": [1]}]})",
            {u"f.json: control \"n\": The properties are not an object."_s}, 1);
        row("a number for what is the host's", R"({"controls": [{"class": "c", "name": "n", "host": 5}]})",
            {u"f.json: control \"n\": The host part is not an object."_s}, 1);
        row("a list for a property",
            R"({"controls": [{"class": "c", "name": "n", "properties": {"Good": 1, "Bad": []}}]})",
            {u"f.json: control \"n\": The value of Bad cannot be read."_s}, 1);
        row("nothing at all", "{}", {}, 0);
        row("what is not known", R"({"version": 7, "controls": []})", {}, 0);
    }
    void aPartOfTheWrongTypeIsToldAndTheRestStands()
    {
        QFETCH(QByteArray, content);
        QFETCH(int, controls);
        QStringList problems;
        const FormFile form = FormFile::fromJson(content, u"f.json"_s, problems);
        QTEST(problems, "problems");
        QCOMPARE(static_cast<int>(form.controls.size()), controls);
    }

    void aSavedValueOfTheWrongTypeGivesTheDefaultAndTheOthersAreRestored()
    {
        QStringList problems;
        const FormFile form = FormFile::fromJson(
            R"({"controls": [{"class": "Test.Probe", "name": "n",
                "properties": {"First": "many", "Second": "kept", "Third": 7}}]})",
            u"f.json"_s, problems);
        QWidget parent;
        const auto controls = form.createControls(probes(), &parent, u"f.json"_s, problems);
        QCOMPARE(problems, QStringList());
        const auto* probe = qobject_cast<ProbeControl*>(controls.at(0));
        QCOMPARE(probe->first, 11);
        QCOMPARE(probe->second, u"kept"_s);
        QCOMPARE(probe->third, tavrin::Color(7));
    }

    void aFileThatCannotBeOpenedIsOneProblem_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("missing") << u"missing.json"_s;
        QTest::newRow("folder") << u"."_s;
    }
    void aFileThatCannotBeOpenedIsOneProblem()
    {
        QFETCH(QString, name);
        const QTemporaryDir folder;
        QStringList problems;
        const FormFile form = FormFile::load(folder.filePath(name), problems);
        QVERIFY(form.controls.empty());
        QCOMPARE(problems.size(), 1);
        QVERIFY(problems.first().startsWith(folder.filePath(name) + u": "_s));
    }

    void aSaveThatFailsKeepsTheOldFile()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"form.json"_s);
        put(path, "old");
        FormFile form = sampleForm();
        form.controls[0].properties.WriteProperty(u"Fourth"_s, QVariantList({1}), 0);
        QVERIFY_EXCEPTION_THROWN(form.save(path), Error);
        QCOMPARE(contentOf(path), QByteArray("old"));
        const Error error = raisedBy([&] { sampleForm().save(folder.filePath(u"none/form.json"_s)); });
        QVERIFY(error.Description.contains(folder.filePath(u"none/form.json"_s)));
    }

    void aFileCutAtAnyByteIsToldAndStaysAsItIs()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"form.json"_s);
        const QByteArray whole = sampleForm().toJson().trimmed();
        for (qsizetype length = 0; length < whole.size(); ++length) {
            const QByteArray cut = whole.left(length);
            put(path, cut);
            QStringList problems;
            const FormFile form = FormFile::load(path, problems);
            QVERIFY2(problems.size() == 1 && form.controls.empty(), qPrintable(QString::number(length)));
            QCOMPARE(contentOf(path), cut);
        }
    }

    void aFileWithAnyBitFlippedNeverEndsTheProgramAndNeverLosesAControlSilently()
    {
        const QByteArray whole = sampleForm().toJson();
        for (qsizetype place = 0; place < whole.size(); ++place) {
            for (int bit = 0; bit < 8; ++bit) {
                QByteArray damaged = whole;
                damaged[place] = static_cast<char>(damaged[place] ^ 1 << bit);
                QStringList problems;
                const FormFile form = FormFile::fromJson(damaged, u"f.json"_s, problems);
                const bool complete = form.controls.size() == 2U;
                const bool keyDamaged = damaged.indexOf("\"controls\"") < 0; // another, unknown member
                QVERIFY2(complete || !problems.isEmpty() || keyDamaged, damaged.constData());
                openForm(damaged);
                if (QTest::currentTestFailed())
                    return;
            }
        }
    }

    void aDamagedFormCanBeMendedAndSavedOverTheDamagedFile()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"form.json"_s);
        put(path, "{ damaged");
        sampleForm().save(path);
        QStringList problems;
        QCOMPARE(FormFile::load(path, problems).controls.size(), 2U);
        QCOMPARE(problems, QStringList());
    }
};

TAVRIN_TEST_MAIN(tst_FormFile)
#include "tst_FormFile.moc"
