#include "designer/UiForm.h"
#include "designer/UiForms.h"
#include "support/TestCase.h"

#include <QDir>
#include <QFile>
#include <QPluginLoader>
#include <QRegularExpression>

using namespace tavrin;
using namespace tavrin::test;

namespace {

const QString Plugin = QStringLiteral(TAVRIN_DESIGNER_PLUGINS "/designer/libTVBoundControlsDesigner.so");

/// A copy of the plugin that says it was built for another Qt.
bool writePluginOfAnotherQt(const QString& fileName)
{
    QFile file(Plugin);
    QFile copy(fileName);
    if (!file.open(QIODevice::ReadOnly) || !copy.open(QIODevice::WriteOnly))
        return false;
    QByteArray content = file.readAll();
    // Behind the note's name stand the version of the format, and Qt's major and minor version.
    const QByteArray note("qt-project!\0\1\6", 14);
    const auto place = content.indexOf(note);
    if (place < 0)
        return false;
    content[place + note.size()] = 99;
    return copy.write(content) == content.size();
}

/// What Qt says of it, with the plugin's name before it.
QRegularExpression refusal()
{
    return QRegularExpression(
        QStringLiteral("libOther\\.so:\\s+Plugin uses incompatible Qt library \\(6\\.99"));
}

QString fileWith(const QTemporaryDir& folder, const QByteArray& content)
{
    QFile file(folder.filePath(QStringLiteral("form.ui")));
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() ? file.fileName()
                                                                                    : QString();
}

} // namespace

class tst_UiFormFaults : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aPluginBuiltForAnotherQtIsRefusedWithWords()
    {
        const QTemporaryDir folder;
        const QString fileName = folder.filePath(QStringLiteral("libOther.so"));
        QVERIFY(writePluginOfAnotherQt(fileName));
        QTest::ignoreMessage(QtWarningMsg, refusal());
        QPluginLoader loader(fileName); // which reads what the plugin says of itself
        QVERIFY(!loader.load());
        QVERIFY2(loader.errorString().contains(QStringLiteral("uses incompatible Qt library. (6.99")),
                 qPrintable(loader.errorString()));
    }

    void aFormWhosePluginIsMissingSaysSoAndKeepsTheRest()
    {
        const QTemporaryDir folder;
        QVERIFY(writePluginOfAnotherQt(folder.filePath(QStringLiteral("libOther.so"))));
        QTest::ignoreMessage(QtWarningMsg, refusal());
        QUiLoader loader;
        loader.clearPluginPaths();
        loader.addPluginPath(folder.path());
        QByteArray xml =
            uiForm(uiControl(QStringLiteral("AgencyPicker"), {}) +
                   QStringLiteral("<widget class=\"QLineEdit\" name=\"other\"/>"))
                .replace("</ui>", "<customwidgets><customwidget><class>tavrin::AgencyPicker</class>"
                                  "<extends>QWidget</extends></customwidget></customwidgets></ui>");
        QBuffer device(&xml);
        QVERIFY(device.open(QIODevice::ReadOnly));
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(QStringLiteral("unable to create.*tavrin::AgencyPicker")));
        const std::unique_ptr<QWidget> form(loader.load(&device));
        QVERIFY(form);
        QVERIFY(form->findChild<QLineEdit*>(QStringLiteral("other")));
    }

    void aFaultIsToldOnceAndTheRestStands_data()
    {
        QTest::addColumn<QString>("widgets");
        QTest::addColumn<QString>("problem");
        const auto picker = [](const QString& property, const QString& value) {
            return uiControl(QStringLiteral("EmployeePicker"), uiProperty(property, value),
                             QStringLiteral("bad"));
        };
        QTest::newRow("unknown class") << uiControl(QStringLiteral("NoSuchPicker"), {}, QStringLiteral("bad"))
                                       << "control \"bad\": There is no control of the class "
                                          "TVBoundControls.NoSuchPicker.";
        QTest::newRow("unknown property")
            << picker(QStringLiteral("Colour"), QStringLiteral("<bool>true</bool>"))
            << "control \"bad\": EmployeePicker has no property Colour.";
        QTest::newRow("property that can only be read")
            << picker(QStringLiteral("FullText"), QStringLiteral("<string>x</string>"))
            << "control \"bad\": The property FullText can only be read.";
        QTest::newRow("colour that is a text")
            << picker(QStringLiteral("BackColor"), QStringLiteral("<string>red</string>"))
            << "control \"bad\": The property BackColor cannot be read from a <string>.";
        QTest::newRow("font that is a number")
            << picker(QStringLiteral("Font"), QStringLiteral("<number>3</number>"))
            << "control \"bad\": The property Font cannot be read from a <number>.";
        QTest::newRow("yes or no that is a font")
            << picker(QStringLiteral("ShowName"), QStringLiteral("<font><family>Arial</family></font>"))
            << "control \"bad\": The property ShowName cannot be read from a <font>.";
        QTest::newRow("nothing wrong")
            << picker(QStringLiteral("ownName"), QStringLiteral("<string>x</string>")) << "";
    }
    void aFaultIsToldOnceAndTheRestStands()
    {
        QFETCH(QString, widgets);
        QFETCH(QString, problem);
        FakeHost host;
        const HostInstallation installation(host);
        fillHost(host);
        const QTemporaryDir folder;
        const QString good =
            uiControl(QStringLiteral("EmployeePicker"),
                      uiProperty(QStringLiteral("ShowName"), QStringLiteral("<bool>false</bool>")));
        const QString fileName = fileWith(folder, uiForm(widgets + good));
        QStringList problems;
        const std::unique_ptr<QWidget> form(loadUiForm(fileName, nullptr, problems));
        QVERIFY(form);
        QCOMPARE(problems,
                 problem.isEmpty() ? QStringList() : QStringList(fileName + QStringLiteral(": ") + problem));
        auto* rest = form->findChild<UserControl*>(QStringLiteral("it"));
        QVERIFY(rest);
        QCOMPARE(rest->property("ShowName"), QVariant(false));
        QVERIFY(form->findChild<QWidget*>(QStringLiteral("bad")));
    }

    void aControlThatCannotBeMadeIsToldAndTheRestStands()
    {
        FakeHost host;
        const HostInstallation installation(host);
        modUtils::ReleaseNibrsModule();
        host.state().hasNibrs = false;
        const QTemporaryDir folder;
        const QString fileName =
            fileWith(folder, uiForm(uiControl(QStringLiteral("NibrsOffensePicker"), {}) +
                                    QStringLiteral("<widget class=\"QLineEdit\" name=\"o\"/>")));
        QStringList problems;
        const std::unique_ptr<QWidget> form(loadUiForm(fileName, nullptr, problems));
        QVERIFY(form && form->findChild<QLineEdit*>(QStringLiteral("o")));
        QCOMPARE(
            problems,
            QStringList(
                fileName +
                QStringLiteral(": control \"it\": The host does not offer the component NIBRS.Singletons.")));
        modUtils::ReleaseNibrsModule();
    }

    void aFileThatIsNoFormIsOneProblem_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("no XML") << QByteArray("not a form");
        QTest::newRow("cut short") << uiForm(uiControl(QStringLiteral("LatLong"), {})).chopped(40);
    }
    void aFileThatIsNoFormIsOneProblem()
    {
        QFETCH(QByteArray, content);
        const QTemporaryDir folder;
        QStringList problems;
        const std::unique_ptr<QWidget> form(loadUiForm(fileWith(folder, content), nullptr, problems));
        QVERIFY(!form);
        QCOMPARE(problems.size(), 1);
        QVERIFY2(problems.first().contains(QStringLiteral("form.ui: line 1, column ")),
                 qPrintable(problems.first()));
    }

    void aFileThatIsNotThereIsOneProblem()
    {
        QStringList problems;
        QVERIFY(!loadUiForm(QStringLiteral("/nowhere/form.ui"), nullptr, problems));
        QCOMPARE(problems, QStringList(QStringLiteral("/nowhere/form.ui: No such file or directory.")));
    }
};

TAVRIN_TEST_MAIN(tst_UiFormFaults)
#include "tst_UiFormFaults.moc"
