#include "designer/DesignerRun.h"
#include "designer/UiForms.h"
#include "designer/probe/PaletteDrag.h"
#include "support/TestCase.h"

#include <QDomDocument>

using namespace tavrin;
using namespace tavrin::test;

namespace {

/// What stands in a form that was saved, by name: the class of each widget.
QMap<QString, QString> savedWidgets(const QString& fileName)
{
    QFile file(fileName);
    QDomDocument document;
    if (!file.open(QIODevice::ReadOnly) || !document.setContent(&file))
        return {{QStringLiteral("no form"), fileName}};
    QMap<QString, QString> widgets;
    const QDomNodeList elements = document.elementsByTagName(QStringLiteral("widget"));
    for (int i = 0; i < elements.size(); ++i) {
        const QDomElement widget = elements.at(i).toElement();
        widgets.insert(widget.attribute(QStringLiteral("name")), widget.attribute(QStringLiteral("class")));
    }
    return widgets;
}

/// The text of a property of a widget in a saved form; a null one when it is not there.
QString savedProperty(const QString& fileName, const QString& widgetName, const QString& property)
{
    QFile file(fileName);
    QDomDocument document;
    if (!file.open(QIODevice::ReadOnly) || !document.setContent(&file))
        return QStringLiteral("no form");
    const QDomNodeList elements = document.elementsByTagName(QStringLiteral("property"));
    for (int i = 0; i < elements.size(); ++i) {
        const QDomElement element = elements.at(i).toElement();
        if (element.attribute(QStringLiteral("name")) == property &&
            element.parentNode().toElement().attribute(QStringLiteral("name")) == widgetName)
            return element.text().trimmed();
    }
    return {};
}

/// The saved properties of all controls, with their values as the form holds them.
QMap<QString, QString> ownProperties(const QString& fileName)
{
    QFile file(fileName);
    QDomDocument document;
    if (!file.open(QIODevice::ReadOnly) || !document.setContent(&file))
        return {};
    QMap<QString, QString> properties;
    const QDomNodeList elements = document.elementsByTagName(QStringLiteral("property"));
    for (int i = 0; i < elements.size(); ++i) {
        const QDomElement element = elements.at(i).toElement();
        const QDomElement value = element.firstChildElement();
        const QString name = element.attribute(QStringLiteral("name"));
        if (name.at(0).isUpper())
            properties.insert(element.parentNode().toElement().attribute(QStringLiteral("name")) + u'.' +
                                  name,
                              value.tagName() + u' ' + value.text().simplified());
    }
    return properties;
}

bool write(const QString& fileName, const QByteArray& content)
{
    QFile file(fileName);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

/// One that Designer knows.
QString field()
{
    return uiControl(QStringLiteral("AutoCompleteField"), {}, QStringLiteral("autoCompleteField"));
}

QByteArray withCustomWidget(QByteArray form, const char* className)
{
    return form.replace("</ui>", QByteArray("<customwidgets><customwidget><class>") + className +
                                     "</class><extends>QWidget</extends><header>host/Own.h</header>"
                                     "</customwidget></customwidgets></ui>");
}

} // namespace

/// The real Qt Designer, with controls dragged from the palette and with forms that hold what it does not
/// know.
class tst_DesignerForms : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (const QString missing = DesignerRun::missing(); !missing.isEmpty())
            QSKIP(qPrintable(missing));
    }

    void aControlIsDraggedFromThePaletteOntoTheForm_data() { addControlRows(); }
    void aControlIsDraggedFromThePaletteOntoTheForm()
    {
        QFETCH(QString, control);
        if (const QString missing = OwnDisplay::missingForInput(); !missing.isEmpty())
            QSKIP(qPrintable(missing));
        DesignerRun run;
        const QString fileName = run.path(QStringLiteral("drag.ui"));
        QVERIFY(write(fileName, uiForm(field())));
        const QString fault = run.run(fileName, {{QStringLiteral("drag"), control}});
        QVERIFY2(fault.isEmpty(), qPrintable(fault));
        QCOMPARE(run.output, QString());
        const QJsonObject dropped = run.report.value(QStringLiteral("dropped")).toObject();
        QString name = control.left(1).toLower() + control.mid(1);
        if (control == QLatin1String("AutoCompleteField")) // one stands there
            name += QStringLiteral("_2");
        QCOMPARE(dropped.value(QStringLiteral("name")).toString(), name);
        QCOMPARE(dropped.value(QStringLiteral("class")).toString(), QStringLiteral("tavrin::") + control);
        std::unique_ptr<UserControl> fresh;
        {
            const DesignTime designer;
            fresh = std::unique_ptr<UserControl>(
                publicControls().create(QStringLiteral("TVBoundControls.") + control, nullptr, {}));
        }
        const auto number = [&dropped](const char* key) { return dropped.value(QLatin1String(key)).toInt(); };
        QCOMPARE(QSize(number("width"), number("height")), fresh->size());
        const QPoint distance =
            QPoint(number("x"), number("y")) - QPoint(PaletteDrag::DropX, PaletteDrag::DropY);
        QVERIFY2(distance.manhattanLength() < 40, "it stands where nobody dropped it");
        QCOMPARE(savedWidgets(fileName).value(name), QStringLiteral("tavrin::") + control);
    }

    void aClassThatNobodyKnowsIsKeptAndTheOthersLoad_data()
    {
        QTest::addColumn<bool>("declared");
        QTest::newRow("declared among the form's classes") << true;
        QTest::newRow("declared nowhere") << false;
    }
    void aClassThatNobodyKnowsIsKeptAndTheOthersLoad()
    {
        QFETCH(bool, declared);
        DesignerRun run;
        const QString fileName = run.path(QStringLiteral("unknown.ui"));
        const QString own = uiProperty(QStringLiteral("caseNumber"), QStringLiteral("<number>7</number>"));
        QByteArray form =
            uiForm(field() + uiControl(QStringLiteral("NoSuchControl"), own, QStringLiteral("other")) +
                   uiControl(QStringLiteral("LatLong"), {}, QStringLiteral("latLong")));
        if (declared)
            form = withCustomWidget(form, "tavrin::NoSuchControl");
        QVERIFY(write(fileName, form));
        const QString fault = run.run(fileName, {});
        QVERIFY2(fault.isEmpty(), qPrintable(fault));
        QCOMPARE(run.output, QString());
        QVERIFY(run.report.value(QStringLiteral("boxes")).isUndefined());
        const QMap<QString, QString> saved = savedWidgets(fileName);
        QCOMPARE(saved.value(QStringLiteral("other")), QStringLiteral("tavrin::NoSuchControl"));
        QCOMPARE(saved.value(QStringLiteral("latLong")), QStringLiteral("tavrin::LatLong"));
        QCOMPARE(saved.value(QStringLiteral("autoCompleteField")),
                 QStringLiteral("tavrin::AutoCompleteField"));
        QCOMPARE(savedProperty(fileName, QStringLiteral("other"), QStringLiteral("caseNumber")),
                 QStringLiteral("7"));
    }

    void aFormThatIsSavedWhereThePluginIsMissingKeepsWhatItHolds()
    {
        DesignerRun run;
        run.hasPlugin = false;
        const QString fileName = run.path(QStringLiteral("AllControls.ui"));
        const QString original = QStringLiteral(TAVRIN_FORMS "/AllControls.ui");
        QVERIFY(QFile::copy(original, fileName));
        QVERIFY(QFile::setPermissions(fileName, QFile::ReadOwner | QFile::WriteOwner));
        const QString fault = run.run(fileName, {});
        QVERIFY2(fault.isEmpty(), qPrintable(fault));
        QVERIFY(!run.report.value(QStringLiteral("palette"))
                     .toObject()
                     .contains(QStringLiteral("Tavrin Bound User Controls")));
        QVERIFY(run.report.value(QStringLiteral("boxes")).isUndefined());
        QCOMPARE(savedWidgets(fileName), savedWidgets(original));
        const QMap<QString, QString> before = ownProperties(original);
        QVERIFY(before.size() > 30);
        const QMap<QString, QString> after = ownProperties(fileName);
        for (auto property = before.begin(); property != before.end(); ++property) {
            QVERIFY2(after.contains(property.key()), qPrintable(property.key()));
            QCOMPARE(after.value(property.key()), property.value());
        }
    }

    void aPropertyThatNobodyKnowsIsKeptAndTheOthersStand()
    {
        DesignerRun run;
        const QString fileName = run.path(QStringLiteral("property.ui"));
        const QString properties =
            uiProperty(QStringLiteral("NoSuchProperty"), QStringLiteral("<string>lost?</string>")) +
            uiProperty(QStringLiteral("ShowName"), QStringLiteral("<bool>false</bool>"));
        QVERIFY(write(fileName, uiForm(field() + uiControl(QStringLiteral("EmployeePicker"), properties,
                                                           QStringLiteral("picker")))));
        const QString fault = run.run(fileName, {});
        QVERIFY2(fault.isEmpty(), qPrintable(fault));
        QCOMPARE(run.output, QString());
        QVERIFY(run.report.value(QStringLiteral("boxes")).isUndefined());
        QCOMPARE(savedProperty(fileName, QStringLiteral("picker"), QStringLiteral("ShowName")),
                 QStringLiteral("false"));
        QCOMPARE(savedProperty(fileName, QStringLiteral("picker"), QStringLiteral("NoSuchProperty")),
                 QStringLiteral("lost?"));
    }
};

TAVRIN_TEST_MAIN(tst_DesignerForms)
#include "tst_DesignerForms.moc"
