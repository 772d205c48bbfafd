#include "designer/UiForm.h"
#include "designer/UiForms.h"
#include "lookup/EmployeePicker.h"
#include "support/TestCase.h"
#include "testing/Unhandled.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

/// A host that is installed, and a form that is loaded.
struct Application
{
    Application()
        : installation(host)
    {
        fillHost(host);
    }

    /// Notes the problems without the file's name.
    std::unique_ptr<QWidget> load(const QByteArray& content)
    {
        const QString fileName = folder.filePath(u"form.ui"_s);
        QFile file(fileName);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            return {};
        file.close();
        problems.clear();
        std::unique_ptr<QWidget> form(loadUiForm(fileName, nullptr, problems));
        problems.replaceInStrings(QRegularExpression(u'^' + QRegularExpression::escape(fileName + u": "_s)),
                                  {});
        return form;
    }

    FakeHost host;
    HostInstallation installation;
    QTemporaryDir folder;
    QStringList problems;
};

} // namespace

/// What a form holds that a control, or Qt, cannot take.
class tst_UiFormContent : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aValueThatAControlCannotTakeLeavesItsOwn_data()
    {
        QTest::addColumn<QString>("control");
        QTest::addColumn<QString>("property");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("words");
        QTest::newRow("yes or no from a text")
            << u"EmployeePicker"_s << u"RemoveUsedValues"_s << u"<string>red</string>"_s << u"a <string>"_s;
        QTest::newRow("yes or no from other words")
            << u"EmployeePicker"_s << u"RemoveUsedValues"_s << u"<bool>yes</bool>"_s << u"\"yes\""_s;
        QTest::newRow("number from a text")
            << u"AutoCompleteField"_s << u"TableNo"_s << u"<string>302</string>"_s << u"a <string>"_s;
        QTest::newRow("number from letters")
            << u"TavrinDropdown"_s << u"TableNumber"_s << u"<number>many</number>"_s << u"\"many\""_s;
        QTest::newRow("value from a font") << u"AutoCompleteField"_s << u"Value"_s
                                           << u"<font><pointsize>9</pointsize></font>"_s << u"a <font>"_s;
        QTest::newRow("text from a colour")
            << u"FlatUserPicker"_s << u"Caption"_s << u"<color><red>1</red></color>"_s << u"a <color>"_s;
        QTest::newRow("picture from a text")
            << u"TavrinDropdown"_s << u"Icon"_s << u"<string>icon.png</string>"_s << u"a <string>"_s;
        QTest::newRow("colour from letters")
            << u"EmployeePicker"_s << u"BackColor"_s
            << u"<color><red>much</red><green>0</green><blue>0</blue></color>"_s << u"\"much\""_s;
        QTest::newRow("a font's size from letters")
            << u"EmployeePicker"_s << u"Font"_s << u"<font><pointsize>big</pointsize></font>"_s
            << u"\"big\""_s;
    }
    void aValueThatAControlCannotTakeLeavesItsOwn()
    {
        QFETCH(QString, control);
        QFETCH(QString, property);
        QFETCH(QString, value);
        QFETCH(QString, words);
        const Unhandled unhandled;
        Application application;
        const std::unique_ptr<QWidget> plain = application.load(uiForm(uiControl(control, {})));
        const std::unique_ptr<QWidget> form =
            application.load(uiForm(uiControl(control, uiProperty(property, value))));
        QCOMPARE(
            application.problems,
            QStringList(u"control \"it\": The property %1 cannot be read from %2."_s.arg(property, words)));
        QCOMPARE(savedState(*form->findChild<UserControl*>(u"it"_s)),
                 savedState(*plain->findChild<UserControl*>(u"it"_s)));
        QCOMPARE(unhandled.texts, QStringList());
    }

    void eachOfTwoControlsOfOneNameIsToldOfItself()
    {
        Application application;
        const QString colour = uiProperty(u"BackColor"_s, u"<number>255</number>"_s);
        const std::unique_ptr<QWidget> form = application.load(
            uiForm(uiControl(u"EmployeePicker"_s, colour) + uiControl(u"TavrinDropdown"_s, colour)));
        QCOMPARE(application.problems,
                 QStringList(u"control \"it\": TavrinDropdown has no property BackColor."_s));
        QCOMPARE(form->findChild<EmployeePicker*>()->BackColor(), Color(255));
    }

    void whatAControlCannotTakeIsToldOfAClassOfTheFormsOwnThatExtendsIt()
    {
        Application application;
        QByteArray xml =
            uiForm(uiControl(u"EmployeePicker"_s, uiProperty(u"Colour"_s, u"<number>2</number>"_s) +
                                                      uiProperty(u"ShowName"_s, u"<bool>false</bool>"_s)))
                .replace("tavrin::EmployeePicker", "host::OwnPicker");
        xml.replace("</ui>", "<customwidgets><customwidget><class>host::OwnPicker</class>"
                             "<extends>tavrin::EmployeePicker</extends></customwidget></customwidgets></ui>");
        const std::unique_ptr<QWidget> form = application.load(xml);
        QCOMPARE(application.problems,
                 QStringList({u"control \"it\": EmployeePicker has no property Colour."_s,
                              u"widget \"it\": There is no class host::OwnPicker."_s}));
        QVERIFY(!form->findChild<EmployeePicker*>(u"it"_s)->ShowName());
    }

    void aSetterThatFailsIsToldOnceAndTheRestStands()
    {
        const Unhandled unhandled;
        Application application;
        application.host.failWith(Error(u"The host is away."_s, 17));
        const QString properties = uiProperty(u"ListAllAgencies"_s, u"<bool>true</bool>"_s) +
                                   uiProperty(u"ShowName"_s, u"<bool>false</bool>"_s);
        const std::unique_ptr<QWidget> form = application.load(uiForm(
            uiControl(u"AgencyPicker"_s, properties, u"first"_s) +
            uiControl(u"AutoCompleteField"_s, uiProperty(u"TableNo"_s, u"<number>302</number>"_s)) +
            uiControl(u"EmployeePicker"_s, uiProperty(u"Value"_s, u"<string>'</string>"_s), u"third"_s)));
        QCOMPARE(application.problems.size(), 3);
        QCOMPARE(application.problems.at(0),
                 u"control \"first\": The property ListAllAgencies: The host is away."_s);
        QCOMPARE(application.problems.at(1), u"control \"it\": The property TableNo: The host is away."_s);
        QVERIFY(application.problems.at(2).startsWith(u"control \"third\": The property Value: "_s));
        QCOMPARE(unhandled.texts, QStringList());
        QCOMPARE(form->findChild<UserControl*>(u"first"_s)->property("ShowName"), QVariant(false));
        // Once the form is there, they go where they always go.
        form->findChild<UserControl*>(u"first"_s)->setProperty("ListAllAgencies", false);
        QCOMPARE(unhandled.texts.size(), 1);
        application.host.failWith({});
    }

    void aPictureIsTakenFromTheFormsFolder()
    {
        Application application;
        QImage picture(16, 16, QImage::Format_ARGB32);
        picture.fill(QColor(200, 40, 40));
        QVERIFY(QDir(application.folder.path()).mkpath(u"pictures"_s));
        QVERIFY(picture.save(application.folder.filePath(u"pictures/icon.png"_s)));
        const std::unique_ptr<QWidget> form = application.load(uiForm(
            uiControl(u"TavrinDropdown"_s, uiProperty(u"Icon"_s, u"<pixmap>pictures/icon.png</pixmap>"_s))));
        QCOMPARE(application.problems, QStringList());
        QCOMPARE(form->findChild<UserControl*>(u"it"_s)->property("Icon").value<QImage>().pixelColor(8, 8),
                 QColor(200, 40, 40));
    }

    void aPictureThatCannotBeReadIsTold_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("reason");
        QTest::newRow("missing") << QByteArray() << u"File not found"_s;
        QTest::newRow("no picture") << QByteArray("no picture") << u"Unsupported image format"_s;
    }
    void aPictureThatCannotBeReadIsTold()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, reason);
        Application application;
        QFile file(application.folder.filePath(u"icon.png"_s));
        if (!content.isEmpty())
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        file.close();
        const QString picture = u"<pixmap>icon.png</pixmap>"_s;
        const std::unique_ptr<QWidget> form = application.load(uiForm(
            uiControl(u"TavrinDropdown"_s, uiProperty(u"Icon"_s, picture)) +
            u"<widget class=\"QLabel\" name=\"label\"><property name=\"pixmap\">%1</property></widget>"_s.arg(
                picture)));
        const QString words = u"%1: The picture icon.png of the property %2 cannot be read: %3."_s;
        QCOMPARE(application.problems, QStringList({words.arg(u"control \"it\""_s, u"Icon"_s, reason),
                                                    words.arg(u"widget \"label\""_s, u"pixmap"_s, reason)}));
        QVERIFY(form->findChild<UserControl*>(u"it"_s)->property("Icon").value<QImage>().isNull());
    }

    void aClassThatDoesNotExistIsToldAndWhatStandsOnItStays_data()
    {
        QTest::addColumn<QString>("className");
        QTest::addColumn<QString>("base");
        QTest::newRow("unknown") << u"NoSuchWidget"_s << QString();
        QTest::newRow("misspelt") << u"tavrn::AgencyPicker"_s << QString();
        QTest::newRow("with a base") << u"OwnBox"_s << u"QGroupBox"_s;
        QTest::newRow("with an unknown base") << u"OwnBox"_s << u"NoSuchWidget"_s;
        QTest::newRow("its own base") << u"OwnBox"_s << u"OwnBox"_s;
    }
    void aClassThatDoesNotExistIsToldAndWhatStandsOnItStays()
    {
        QFETCH(QString, className);
        QFETCH(QString, base);
        Application application;
        QByteArray xml = uiForm(u"<widget class=\"%1\" name=\"bad\">%2</widget>"_s.arg(
            className, uiControl(u"EmployeePicker"_s, {})));
        if (!base.isEmpty())
            xml.replace("</ui>", u"<customwidgets><customwidget><class>%1</class><extends>%2</extends>"
                                 "</customwidget></customwidgets></ui>"_s.arg(className, base)
                                     .toUtf8());
        const std::unique_ptr<QWidget> form = application.load(xml);
        QCOMPARE(application.problems,
                 QStringList(u"widget \"bad\": There is no class %1."_s.arg(className)));
        auto* bad = form->findChild<QWidget*>(u"bad"_s);
        QVERIFY(bad && bad->findChild<EmployeePicker*>(u"it"_s));
        QCOMPARE(bad->inherits("QGroupBox"), base == "QGroupBox"_L1);
    }

    void theClassesOfQtItselfAreKnown()
    {
        Application application;
        QString widgets;
        const QStringList classes{u"Line"_s,          u"QFrame"_s,           u"QSplitter"_s,
                                  u"QTabWidget"_s,    u"QDialogButtonBox"_s, u"QScrollArea"_s,
                                  u"QStackedWidget"_s};
        for (const QString& name : classes)
            widgets += u"<widget class=\"%1\" name=\"%1\"/>"_s.arg(name);
        const std::unique_ptr<QWidget> form = application.load(uiForm(widgets));
        QCOMPARE(application.problems, QStringList());
        for (const QString& name : classes)
            QVERIFY2(form->findChild<QWidget*>(name), qPrintable(name));
    }

    void aTextKeepsEverySign()
    {
        Application application;
        const std::unique_ptr<QWidget> form = application.load(uiForm(uiControl(
            u"FlatUserPicker"_s,
            uiProperty(u"Caption"_s,
                       u"<string notr=\"true\"> a &amp; &lt;b&gt;&#9;<![CDATA[<c>]]>\n ä </string>"_s))));
        QCOMPARE(application.problems, QStringList());
        QCOMPARE(form->findChild<UserControl*>(u"it"_s)->property("Caption").toString(),
                 u" a & <b>\t<c>\n ä "_s);
    }
};

TAVRIN_TEST_MAIN(tst_UiFormContent)
#include "tst_UiFormContent.moc"
