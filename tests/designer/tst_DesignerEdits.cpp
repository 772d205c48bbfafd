#include "designer/DesignerRun.h"
#include "designer/UiForms.h"
#include "support/TestCase.h"

#include <QDomDocument>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

/// One thing that a person does with a property in the property editor.
struct Edit
{
    const char* property;
    const char* kind;
    QJsonValue value = {};
};

/// A control of the form that is edited, and what is saved of it.
struct Case
{
    const char* name;
    QString control;
    QString held; ///< the properties that the form holds before
    std::vector<Edit> edits;
    QStringList saved;
};

const QString ChosenText =
    uiProperty(u"Value"_s, u"<number>12</number>"_s) + uiProperty(u"Text"_s, u"<string>Handgun</string>"_s);
const QString White =
    uiProperty(u"BackColor"_s, u"<color><red>255</red><green>255</green><blue>255</blue></color>"_s);
const QStringList BothSaved{u"TableNo=0"_s, u"Value=12"_s, u"Text=Handgun*"_s};
constexpr int ButtonFace = static_cast<int>(0x8000000FU);

std::vector<Case> undoCases()
{
    return {
        {"a colour undone",
         u"EmployeePicker"_s,
         {},
         {{"BackColor", "color", u"#f0e090"_s}, {"BackColor", "undo"}},
         {}},
        {"a colour undone and done again",
         u"EmployeePicker"_s,
         {},
         {{"BackColor", "color", u"#f0e090"_s}, {"BackColor", "undo"}, {"BackColor", "redo"}},
         {u"BackColor=240 224 144"_s}},
        {"a system colour undone",
         u"EmployeePicker"_s,
         {},
         {{"BackColor", "number", ButtonFace}, {"BackColor", "undo"}},
         {}},
        {"back to a system colour",
         u"NibrsOffensePicker"_s,
         uiProperty(u"BackColor"_s, u"<number>-2147483633</number>"_s),
         {{"BackColor", "color", u"#112233"_s}, {"BackColor", "undo"}},
         {u"BackColor=-2147483633"_s}},
        {"a fixed colour that looks like the start",
         u"EmployeePicker"_s,
         White,
         {{"BackColor", "color", u"#112233"_s}, {"BackColor", "undo"}},
         {u"BackColor=255 255 255"_s}},
        {"a fixed colour put anew",
         u"OffensePicker"_s,
         White,
         {{"ShowName", "boolean", false}},
         {u"ShowName=false"_s, u"BackColor=255 255 255"_s}},
        {"a reset undone",
         u"EmployeePicker"_s,
         White,
         {{"BackColor", "reset"}, {"BackColor", "undo"}},
         {u"BackColor=255 255 255"_s}},
        {"a reset undone and done again",
         u"EmployeePicker"_s,
         White,
         {{"BackColor", "reset"}, {"BackColor", "undo"}, {"BackColor", "redo"}},
         {}},
        {"a number undone",
         u"AutoCompleteField"_s,
         {},
         {{"Value", "number", 12}, {"Value", "undo"}},
         {u"TableNo=0"_s}},
        {"a zero", u"AutoCompleteField"_s, {}, {{"Value", "number", 0}}, {u"TableNo=0"_s, u"Value=0"_s}},
        {"a text undone", u"NibrsOffensePicker"_s, {}, {{"Value", "text", u"13A"_s}, {"Value", "undo"}}, {}},
        {"a font undone",
         u"FlatUserPicker"_s,
         {},
         {{"Font", "font", u"DejaVu Serif,13,-1,5,400,1,0,0,0,0"_s}, {"Font", "undo"}},
         {}},
        {"an emptied text takes the value along",
         u"AutoCompleteField"_s,
         ChosenText,
         {{"Text", "text", u""_s}},
         {u"TableNo=0"_s}},
        {"an emptied text undone",
         u"AutoCompleteField"_s,
         ChosenText,
         {{"Text", "text", u""_s}, {"Text", "undo"}},
         BothSaved},
        {"an emptied text undone and done again",
         u"AutoCompleteField"_s,
         ChosenText,
         {{"Text", "text", u""_s}, {"Text", "undo"}, {"Text", "redo"}},
         {u"TableNo=0"_s}},
        {"a text that was reset, undone",
         u"AutoCompleteField"_s,
         ChosenText,
         {{"Text", "reset"}, {"Text", "undo"}},
         BothSaved},
        // The designer takes two changes of one property that follow each other for one.
        {"a text typed anew, undone",
         u"AutoCompleteField"_s,
         ChosenText,
         {{"Text", "text", u""_s}, {"Text", "text", u"Rifle"_s}, {"Text", "undo"}},
         BothSaved},
        {"a text typed anew, undone and done again",
         u"AutoCompleteField"_s,
         ChosenText,
         {{"Text", "text", u""_s}, {"Text", "text", u"Rifle"_s}, {"Text", "undo"}, {"Text", "redo"}},
         {u"TableNo=0"_s, u"Text=Rifle*"_s}},
        {"several changes undone",
         u"AutoCompleteField"_s,
         ChosenText,
         {{"Text", "text", u""_s},
          {"Enabled", "boolean", false},
          {"Text", "text", u"Rifle"_s},
          {"Text", "undo"},
          {"Text", "undo"},
          {"Text", "undo"}},
         BothSaved},
        {"a colour that does not last", u"FlatUserPicker"_s, {}, {{"BackColor", "color", u"#112233"_s}}, {}},
        // What a form holds and the designer does not know how to edit stays, and no host is asked.
        {"a value that the record gives",
         u"EmployeePicker"_s,
         uiProperty(u"Value"_s, u"<number>12</number>"_s),
         {{"ShowName", "boolean", false}},
         {u"ShowName=false"_s, u"Value=12"_s}},
        {"a value that is a text",
         u"FlatUserPicker"_s,
         uiProperty(u"Value"_s, u"<string notr=\"true\">user:asmith</string>"_s),
         {{"Required", "boolean", true}},
         {u"Required=true"_s, u"Value=user:asmith"_s}},
        // A text is for translators only where the form says so.
        {"a text that is put",
         u"FlatUserPicker"_s,
         {},
         {{"Caption", "text", u"Assigned to"_s}},
         {u"Caption=Assigned to"_s}},
        {"a text that is put and reset and put",
         u"FlatUserPicker"_s,
         {},
         {{"Caption", "text", u"Assigned to"_s}, {"Caption", "reset"}, {"Caption", "text", u"For"_s}},
         {u"Caption=For"_s}},
        {"a text that is reset, undone",
         u"FlatUserPicker"_s,
         {},
         {{"Caption", "text", u"Assigned to"_s}, {"Caption", "reset"}, {"Caption", "undo"}},
         {u"Caption=Assigned to"_s}},
        {"a text that is a variant",
         u"NibrsOffensePicker"_s,
         {},
         {{"Value", "text", u"13A"_s}},
         {u"Value=13A"_s}},
        {"a text for translators changed",
         u"FlatUserPicker"_s,
         uiProperty(u"Caption"_s, u"<string>Assigned to</string>"_s),
         {{"Caption", "text", u"For"_s}},
         {u"Caption=For*"_s}},
        {"a text for translators emptied, undone",
         u"FlatUserPicker"_s,
         uiProperty(u"Caption"_s, u"<string>Assigned to</string>"_s),
         {{"Caption", "text", u""_s}, {"Caption", "undo"}},
         {u"Caption=Assigned to*"_s}},
        {"a name of the host's",
         u"SuspRelList"_s,
         {},
         {{"OtherItemName", "text", u"victim"_s}},
         {u"OtherItemName=victim"_s}},
    };
}

QString nameOf(std::size_t index)
{
    return u"it%1"_s.arg(index);
}

/// The control's own properties in a saved form: name=value; a text that is offered to translators ends
/// with an asterisk.
QStringList savedOf(const QString& fileName, const QString& name)
{
    QFile file(fileName);
    QDomDocument document;
    if (!file.open(QIODevice::ReadOnly) || !document.setContent(&file))
        return {u"no form"_s};
    QStringList saved;
    const QDomNodeList properties = document.elementsByTagName(u"property"_s);
    for (int i = 0; i < properties.size(); ++i) {
        const QDomElement property = properties.at(i).toElement();
        const QString key = property.attribute(u"name"_s);
        if (property.parentNode().toElement().attribute(u"name"_s) != name || !key.at(0).isUpper())
            continue;
        const QDomElement value = property.firstChildElement();
        QStringList parts;
        for (QDomElement part = value.firstChildElement(); !part.isNull(); part = part.nextSiblingElement())
            parts << part.text();
        const bool isTranslatable = value.tagName() == "string"_L1 && value.attribute(u"notr"_s) != "true"_L1;
        saved << key + u'=' + (parts.isEmpty() ? value.text() : parts.join(u' ')) +
                     (isTranslatable ? u"*"_s : QString());
    }
    return saved;
}

} // namespace

/// What Qt Designer saves of controls whose properties were edited there.
class tst_DesignerEdits : public TestCase
{
    Q_OBJECT

private:
    const std::vector<Case> m_cases = undoCases();
    DesignerRun m_run;
    QString m_form;

private Q_SLOTS:
    void initTestCase()
    {
        if (const QString missing = DesignerRun::missing(); !missing.isEmpty())
            QSKIP(qPrintable(missing));
        QString widgets;
        QJsonArray edits;
        for (std::size_t i = 0; i < m_cases.size(); ++i) {
            widgets += uiControl(m_cases[i].control, m_cases[i].held, nameOf(i));
            for (const Edit& edit : m_cases[i].edits)
                edits.append(QJsonObject{{u"object"_s, nameOf(i)},
                                         {u"property"_s, QString::fromLatin1(edit.property)},
                                         {u"kind"_s, QString::fromLatin1(edit.kind)},
                                         {u"value"_s, edit.value}});
        }
        m_form = m_run.path(u"edits.ui"_s);
        QFile file(m_form);
        const QByteArray form =
            uiForm(widgets + uiControl(u"AutoCompleteField"_s, {}, u"autoCompleteField"_s));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(form) == form.size());
        file.close();
        const QString fault = m_run.run(m_form, {{u"edits"_s, edits}});
        QVERIFY2(fault.isEmpty(), qPrintable(fault));
        QCOMPARE(m_run.output, QString());
    }

    void whatIsSavedFollowsUndoRedoAndReset_data()
    {
        QTest::addColumn<int>("row");
        for (std::size_t i = 0; i < m_cases.size(); ++i)
            QTest::newRow(m_cases[i].name) << static_cast<int>(i);
    }
    void whatIsSavedFollowsUndoRedoAndReset()
    {
        QFETCH(int, row);
        const auto index = static_cast<std::size_t>(row);
        QCOMPARE(savedOf(m_form, nameOf(index)), m_cases.at(index).saved);
    }

    void whatNoFormCanKeepIsToldAndTheRestStands()
    {
        DesignerRun run;
        const QString fileName = run.path(u"kept.ui"_s);
        QFile file(fileName);
        const QByteArray form = uiForm(
            uiControl(u"TavrinDropdown"_s, uiProperty(u"Value"_s, u"<number>24</number>"_s) +
                                               uiProperty(u"TableNumber"_s, u"<number>312</number>"_s)) +
            uiControl(u"EmployeePicker"_s, uiProperty(u"FullText"_s, u"<string>Smith</string>"_s),
                      u"other"_s) +
            uiControl(u"AutoCompleteField"_s, {}, u"autoCompleteField"_s));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(form) == form.size());
        file.close();
        const QString fault = run.run(fileName, {});
        QVERIFY2(fault.isEmpty(), qPrintable(fault));
        const QString words = u"The form gives %1 a value, which no form can keep; it is left out."_s;
        QCOMPARE(run.output.trimmed().split(u'\n'),
                 QStringList({words.arg(u"Value of TavrinDropdown \"it\""_s),
                              words.arg(u"FullText of EmployeePicker \"other\""_s)}));
        QCOMPARE(savedOf(fileName, u"it"_s), QStringList(u"TableNumber=312"_s));
    }
};

TAVRIN_TEST_MAIN(tst_DesignerEdits)
#include "tst_DesignerEdits.moc"
