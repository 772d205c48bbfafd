#include "designer/DesignerRun.h"
#include "designer/UiForms.h"
#include "support/TestCase.h"

#include <QDomDocument>

using namespace tavrin;
using namespace tavrin::test;

namespace {

QStringList texts(const QJsonValue& list)
{
    QStringList texts;
    for (const QJsonValue& text : list.toArray())
        texts << text.toString();
    return texts;
}

QJsonObject edit(const char* object, const char* property, const char* kind, const QJsonValue& value = {})
{
    return {{QStringLiteral("object"), QString::fromLatin1(object)},
            {QStringLiteral("property"), QString::fromLatin1(property)},
            {QStringLiteral("kind"), QString::fromLatin1(kind)},
            {QStringLiteral("value"), value}};
}

QString instanceName(const QString& control)
{
    return control.left(1).toLower() + control.mid(1);
}

std::unique_ptr<UserControl> dropped(const QString& control)
{
    const DesignTime designer;
    return std::unique_ptr<UserControl>(
        publicControls().create(QStringLiteral("TVBoundControls.") + control, nullptr, {}));
}

/// All controls as they are when they were dropped, each on its place.
QByteArray droppedControls()
{
    QString widgets;
    for (const QString& control : controlNames())
        widgets += uiControl(control, {}, instanceName(control));
    return uiForm(widgets);
}

/// The properties of one control in a saved form, in their order; of those that every widget has, the place
/// alone.
QStringList savedProperties(const QString& fileName, const QString& name)
{
    QFile file(fileName);
    QDomDocument document;
    if (!file.open(QIODevice::ReadOnly) || !document.setContent(&file))
        return {QStringLiteral("no form")};
    QStringList properties;
    const QDomNodeList widgets = document.elementsByTagName(QStringLiteral("widget"));
    for (int i = 0; i < widgets.size(); ++i) {
        const QDomElement widget = widgets.at(i).toElement();
        if (widget.attribute(QStringLiteral("name")) != name)
            continue;
        for (QDomElement property = widget.firstChildElement(QStringLiteral("property")); !property.isNull();
             property = property.nextSiblingElement(QStringLiteral("property"))) {
            const QString key = property.attribute(QStringLiteral("name"));
            if (key.at(0).isUpper() || key == QLatin1String("geometry"))
                properties << property.attribute(QStringLiteral("name"));
        }
    }
    return properties;
}

QStringList keysOf(const QString& control)
{
    QStringList keys;
    for (const SavedProperty& property : dropped(control)->savedProperties())
        keys << property.key;
    return keys;
}

} // namespace

/// Two runs of Qt Designer: on a form with all controls as dropped, which is edited there, and on one with
/// all of them set.
class tst_DesignerItself : public TestCase
{
    Q_OBJECT

private:
    DesignerRun m_dropped;
    DesignerRun m_set;
    QString m_droppedForm;
    QString m_setForm;

    QJsonObject noted(const QString& control) const
    {
        return m_dropped.report.value(QStringLiteral("controls"))
            .toObject()
            .value(instanceName(control))
            .toObject();
    }
    QJsonObject edited(const char* name) const
    {
        return m_dropped.report.value(QStringLiteral("edited"))
            .toObject()
            .value(QLatin1String(name))
            .toObject();
    }

private Q_SLOTS:
    void initTestCase()
    {
        if (const QString missing = DesignerRun::missing(); !missing.isEmpty())
            QSKIP(qPrintable(missing));
        m_droppedForm = m_dropped.path(QStringLiteral("dropped.ui"));
        QFile form(m_droppedForm);
        QVERIFY(form.open(QIODevice::WriteOnly) && form.write(droppedControls()) > 0);
        form.close();
        QVERIFY(QDir().mkpath(m_dropped.path(QStringLiteral("data/TVBoundControls"))));
        QVERIFY(QFile::copy(QStringLiteral(TAVRIN_DATA "/code_tables/tables.csv"),
                            m_dropped.path(QStringLiteral("data/TVBoundControls/tables.csv"))));
        const QJsonArray edits{
            edit("employeePicker", "BackColor", "color", QStringLiteral("#f0e090")),
            edit("employeePicker", "ForeColor", "number", static_cast<int>(0x8000000FU)),
            edit("employeePicker", "ShowName", "boolean", false),
            edit("flatUserPicker", "Font", "font", QStringLiteral("DejaVu Serif,13,-1,5,400,1,0,0,0,0")),
            edit("flatUserPicker", "Caption", "text", QStringLiteral("Assigned to")),
            edit("flatUserPicker", "Required", "boolean", true),
            edit("flatUserPicker", "Required", "undo"),
            edit("nibrsOffensePicker", "Value", "text", QStringLiteral("13A")),
            edit("autoCompleteField", "Value", "number", 12),
            edit("autoCompleteField", "Text", "text", QStringLiteral("12 - Handgun")),
            edit("offensePicker", "BackColor", "color", QStringLiteral("#112233")),
            edit("offensePicker", "BackColor", "reset"),
            edit("tavrinDropdown", "TableNumber", "number", 312),
        };
        // Set by the script that writes the documentation's pictures.
        const QString pictures = qEnvironmentVariable("TAVRIN_DESIGNER_PICTURES");
        const QString tablePicture =
            pictures.isEmpty() ? QString() : pictures + QStringLiteral("/code-tables.png");
        const QString fault =
            m_dropped.run(m_droppedForm, {{QStringLiteral("edits"), edits},
                                          {QStringLiteral("table"), QStringLiteral("weapon")},
                                          {QStringLiteral("tablePicture"), tablePicture}});
        QVERIFY2(fault.isEmpty(), qPrintable(fault));

        m_setForm = m_set.path(QStringLiteral("AllControls.ui"));
        QVERIFY(QFile::copy(QStringLiteral(TAVRIN_FORMS "/AllControls.ui"), m_setForm));
        QVERIFY(
            QFile::copy(QStringLiteral(TAVRIN_FORMS "/icon.png"), m_set.path(QStringLiteral("icon.png"))));
        QVERIFY(QFile::setPermissions(m_setForm, QFile::ReadOwner | QFile::WriteOwner));
        const QString second = m_set.run(m_setForm, {{QStringLiteral("table"), QStringLiteral("weapon")},
                                                     {QStringLiteral("pictures"), pictures}});
        QVERIFY2(second.isEmpty(), qPrintable(second));
    }

    void theGroupStandsInThePaletteWithEveryControl()
    {
        const QJsonObject palette = m_dropped.report.value(QStringLiteral("palette")).toObject();
        const QString group = QStringLiteral("Tavrin Bound User Controls");
        QStringList names = texts(palette.value(group));
        names.sort();
        QCOMPARE(names, controlNames());
        QVERIFY(texts(m_dropped.report.value(QStringLiteral("groups"))).contains(group));
    }

    void designerHasNothingToComplainOf()
    {
        for (const DesignerRun* run : {&m_dropped, &m_set})
            QCOMPARE(run->output, QString());
    }

    void thePropertyEditorShowsTheSavedPropertiesInTheirOrder_data() { addControlRows(); }
    void thePropertyEditorShowsTheSavedPropertiesInTheirOrder()
    {
        QFETCH(QString, control);
        const QJsonObject report = noted(control);
        QCOMPARE(report.value(QStringLiteral("class")).toString(), QStringLiteral("tavrin::") + control);
        const std::unique_ptr<UserControl> fresh = dropped(control);
        QStringList own;
        for (const QString& name : texts(report.value(QStringLiteral("properties")))) {
            if (fresh->metaObject()->indexOfProperty(qPrintable(name)) >=
                UserControl::staticMetaObject.propertyCount())
                own << name;
        }
        QCOMPARE(own, keysOf(control));
        // And so does the editor itself, under the control's name.
        const QStringList shown = texts(report.value(QStringLiteral("shown")));
        QVERIFY(shown.contains(QStringLiteral("objectName")));
        QStringList shownOwn;
        for (const QString& name : shown) {
            if (own.contains(name))
                shownOwn << name;
        }
        QCOMPARE(shownOwn, own);
        QCOMPARE(shown.contains(control), !own.isEmpty());
        QCOMPARE(shown.contains(QStringLiteral("enabled")), !own.contains(QStringLiteral("Enabled")));
        QCOMPARE(shown.contains(QStringLiteral("font")), !own.contains(QStringLiteral("Font")));
    }

    void eachPropertyHasAnEditorThatFits_data() { addControlRows(); }
    void eachPropertyHasAnEditorThatFits()
    {
        QFETCH(QString, control);
        const QJsonObject types = noted(control).value(QStringLiteral("types")).toObject();
        for (const SavedProperty& property : dropped(control)->savedProperties()) {
            const QString type = types.value(property.key).toString();
            const QString said = property.key + QStringLiteral(" is shown as ") + type;
            switch (property.kind) {
            case PropertyKind::Color:
                QVERIFY2(type == QLatin1String("QColor"), qPrintable(said));
                break;
            case PropertyKind::Font:
                QVERIFY2(type == QLatin1String("QFont"), qPrintable(said));
                break;
            case PropertyKind::Picture:
                QVERIFY2(type.endsWith(QLatin1String("PropertySheetPixmapValue")), qPrintable(said));
                break;
            case PropertyKind::Boolean:
                QVERIFY2(type == QLatin1String("bool"), qPrintable(said));
                break;
            case PropertyKind::Long:
                QVERIFY2(type == QLatin1String("int"), qPrintable(said));
                break;
            default:
                QVERIFY2(type == QLatin1String("int") ||
                             type.endsWith(QLatin1String("PropertySheetStringValue")),
                         qPrintable(said));
            }
        }
    }

    void aDroppedControlHasNothingChangedButWhatAFormMustHold_data() { addControlRows(); }
    void aDroppedControlHasNothingChangedButWhatAFormMustHold()
    {
        QFETCH(QString, control);
        QStringList expected;
        if (control == QLatin1String("AgencyPicker"))
            expected << QStringLiteral("ListAllAgencies");
        if (control == QLatin1String("AutoCompleteField"))
            expected << QStringLiteral("TableNo");
        QStringList changed;
        for (const QString& name : texts(noted(control).value(QStringLiteral("changed")))) {
            if (keysOf(control).contains(name))
                changed << name;
        }
        QCOMPARE(changed, expected);
    }

    void aPickerShowsItsName_data()
    {
        QTest::addColumn<QString>("control");
        for (const char* name : {"EmployeePicker", "OffensePicker", "FlatEmployeePicker", "FlatUserPicker",
                                 "NibrsOffensePicker"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void aPickerShowsItsName()
    {
        QFETCH(QString, control);
        QCOMPARE(noted(control).value(QStringLiteral("texts")).toString().trimmed(), instanceName(control));
    }

    void anEditIsSavedAResetAndAnUndoneOneAreNot()
    {
        const QJsonObject employee = edited("employeePicker");
        QCOMPARE(texts(employee.value(QStringLiteral("changed"))).contains(QStringLiteral("BackColor")),
                 true);
        QCOMPARE(savedProperties(m_droppedForm, QStringLiteral("employeePicker")),
                 QStringList({QStringLiteral("ShowName"), QStringLiteral("BackColor"),
                              QStringLiteral("ForeColor"), QStringLiteral("geometry")}));
        QCOMPARE(
            savedProperties(m_droppedForm, QStringLiteral("flatUserPicker")),
            QStringList({QStringLiteral("Font"), QStringLiteral("Caption"), QStringLiteral("geometry")}));
        QCOMPARE(savedProperties(m_droppedForm, QStringLiteral("offensePicker")),
                 QStringList({QStringLiteral("geometry")}));
        QCOMPARE(savedProperties(m_droppedForm, QStringLiteral("autoCompleteField")),
                 QStringList({QStringLiteral("TableNo"), QStringLiteral("Value"), QStringLiteral("Text"),
                              QStringLiteral("geometry")}));
        QCOMPARE(savedProperties(m_droppedForm, QStringLiteral("nibrsOffensePicker")),
                 QStringList({QStringLiteral("Value"), QStringLiteral("geometry")}));
    }

    void aSavedFormLoadsWithWhatWasEdited()
    {
        FakeHost host;
        const HostInstallation installation(host);
        fillHost(host);
        modUtils::ReleaseNibrsModule();
        QFile file(m_droppedForm);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const std::unique_ptr<QWidget> form = loadByQt(file.readAll());
        QVERIFY(form);
        const auto value = [&](const char* name, const char* property) {
            return form->findChild<UserControl*>(QString::fromLatin1(name))->property(property);
        };
        QCOMPARE(value("employeePicker", "BackColor").value<Color>(), Color::rgb(0xF0, 0xE0, 0x90));
        QCOMPARE(value("employeePicker", "ForeColor").value<Color>(), SystemColor::ButtonFace);
        QCOMPARE(value("employeePicker", "ShowName"), QVariant(false));
        const auto font = value("flatUserPicker", "Font").value<FontPtr>();
        QCOMPARE(font->Name(), QStringLiteral("DejaVu Serif"));
        QCOMPARE(font->Size(), 13.0);
        QVERIFY(font->Italic());
        QCOMPARE(value("flatUserPicker", "Caption"), QVariant(QStringLiteral("Assigned to")));
        QCOMPARE(value("flatUserPicker", "Required"), QVariant(false));
        QCOMPARE(value("nibrsOffensePicker", "Value"), QVariant(QStringLiteral("13A")));
        QCOMPARE(value("autoCompleteField", "Value"), QVariant(12));
        QCOMPARE(value("autoCompleteField", "Text").toString(), QStringLiteral("12 - Handgun"));
        QCOMPARE(value("autoCompleteField", "TableNo"), QVariant(302));
        QCOMPARE(value("tavrinDropdown", "TableNumber"), QVariant(312));
        modUtils::ReleaseNibrsModule();
    }

    void aCodeTableIsChosenByItsName()
    {
        QCOMPARE(m_dropped.report.value(QStringLiteral("chosenTable")).toInt(),
                 302); // Type Weapon/Force Involved
        QVERIFY(texts(noted(QStringLiteral("TavrinDropdown")).value(QStringLiteral("menu")))
                    .contains(QStringLiteral("Choose Code Table...")));
        QVERIFY(!texts(noted(QStringLiteral("AgencyPicker")).value(QStringLiteral("menu")))
                     .contains(QStringLiteral("Choose Code Table...")));
    }

    void withoutTheHostsNamesNoTableIsOffered()
    {
        const QJsonObject controls = m_set.report.value(QStringLiteral("controls")).toObject();
        const QJsonObject field = controls.value(QStringLiteral("autoCompleteField")).toObject();
        QVERIFY(!field.isEmpty());
        QVERIFY(!texts(field.value(QStringLiteral("menu"))).contains(QStringLiteral("Choose Code Table...")));
    }

    void aValueOfAnotherKindIsToldAndTheRestStands()
    {
        DesignerRun run;
        const QString fileName = run.path(QStringLiteral("bad.ui"));
        QFile file(fileName);
        const QString bad =
            uiProperty(QStringLiteral("BackColor"), QStringLiteral("<string>red</string>")) +
            uiProperty(QStringLiteral("ShowName"), QStringLiteral("<number>7</number>")) +
            uiProperty(QStringLiteral("Font"), QStringLiteral("<bool>true</bool>")) +
            uiProperty(QStringLiteral("RemoveUsedValues"), QStringLiteral("<bool>true</bool>"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.write(uiForm(uiControl(QStringLiteral("EmployeePicker"), bad, QStringLiteral("bad")) +
                                  uiControl(QStringLiteral("AutoCompleteField"), {},
                                            QStringLiteral("autoCompleteField")))) > 0);
        file.close();
        const QString fault = run.run(fileName, {});
        QVERIFY2(fault.isEmpty(), qPrintable(fault));
        QStringList told = run.output.trimmed().split(u'\n');
        QCOMPARE(told.size(), 3);
        for (const char* property : {"BackColor", "ShowName", "Font"}) {
            const QString words =
                QStringLiteral("The form gives %1 of EmployeePicker \"bad\" a value of the type ")
                    .arg(QLatin1String(property));
            QCOMPARE(told.filter(words).size(), 1);
        }
        QCOMPARE(savedProperties(fileName, QStringLiteral("bad")),
                 QStringList({QStringLiteral("RemoveUsedValues"), QStringLiteral("geometry")}));
    }

    void aFormThatIsOpenedAndSavedKeepsEveryProperty_data() { addControlRows(); }
    void aFormThatIsOpenedAndSavedKeepsEveryProperty()
    {
        QFETCH(QString, control);
        const QString name = instanceName(control);
        QCOMPARE(savedProperties(m_setForm, name),
                 savedProperties(QStringLiteral(TAVRIN_FORMS "/AllControls.ui"), name));
        FakeHost host;
        const HostInstallation installation(host);
        fillHost(host);
        modUtils::ReleaseNibrsModule();
        QByteArray states[2];
        int at = 0;
        for (const QString& fileName : {m_setForm, QStringLiteral(TAVRIN_FORMS "/AllControls.ui")}) {
            QFile file(fileName);
            QVERIFY(file.open(QIODevice::ReadOnly));
            const std::unique_ptr<QWidget> form = loadByQt(file.readAll(), QStringLiteral(TAVRIN_FORMS));
            QVERIFY(form && form->findChild<UserControl*>(name));
            states[at++] = savedState(*form->findChild<UserControl*>(name));
        }
        if (control == QLatin1String("AutoCompleteField")) // whose table was chosen there
            QVERIFY(states[0].contains("302"));
        QCOMPARE(states[0], states[1]);
        modUtils::ReleaseNibrsModule();
    }
};

TAVRIN_TEST_MAIN(tst_DesignerItself)
#include "tst_DesignerItself.moc"
