#include "component/SetterRow.h"
#include "support/TestCase.h"
#include "widgets/lists/DropDownList.h"

using namespace tavrin;
using namespace Qt::StringLiterals;
using namespace tavrin::test;

namespace {

const QStringList ChangeThenValue{u"Change"_s, u"Value"_s};

std::function<void(const Stage&)> put(const char* name, const QVariant& value)
{
    return [=](const Stage& stage) { stage.control->setProperty(name, value); };
}

std::vector<Setter> textAndDropDownSetters()
{
    return {
        {"AutoCompleteField",
         "Enabled",
         true,
         false,
         {{"the box", enabled("txtSearch")}, {"the list", enabled("lstMatches")}}},
        {"AutoCompleteField", "TableNo", Weapons, Races},
        {"AutoCompleteField", "IncludeInactiveValues", false, true},
        // The colours follow the report.
        {"AutoCompleteField",
         "Value",
         Null(),
         12,
         {{"background", backColorOf<TextBox>("txtSearch"), Dependent::BehindReport},
          {"text's colour", foreColorOf<TextBox>("txtSearch"), Dependent::BehindReport}},
         {u"Value"_s},
         [](const Stage& stage) { stage.control->setProperty("ForeColor", color(0x123456)); }},
        {"AutoCompleteField",
         "Text",
         u"one"_s,
         u"two"_s,
         {{"the box", [](const Stage& stage) { return stage.part<TextBox>("txtSearch").Text(); }}}},
        {"AutoCompleteField",
         "BackColor",
         color(1),
         color(2),
         {{"the box", backColorOf<TextBox>("txtSearch")}}},
        {"AutoCompleteField",
         "ForeColor",
         color(1),
         color(2),
         {{"the box", foreColorOf<TextBox>("txtSearch")}}},

        {"TavrinDropdown",
         "Font",
         fontOf(9),
         fontOf(24),
         {{"height", frameHeight}, {"the box", fontSizeOf<FlatDropdown>("cboItems")}}},
        {"TavrinDropdown",
         "Icon",
         icon(8),
         icon(12),
         {{"the box", [](const Stage& stage) { return stage.part<FlatDropdown>("cboItems").Icon(); }}}},
        {"TavrinDropdown", "TableNumber", Weapons, Races, {{"entries once shown", entriesOnceShown}}},
        // The selection that the setter changes reports as well, and raises Change.
        {"TavrinDropdown",
         "Value",
         Null(),
         24,
         {{"row", [](const Stage& stage) { return stage.part<FlatDropdown>("cboItems").ListIndex(); }}},
         {u"Value"_s, u"Change"_s, u"Value"_s},
         [](const Stage& stage) {
             stage.control->setProperty("TableNumber", Races);
             entriesOnceShown(stage);
         }},

        {"NibrsOffensePicker",
         "Enabled",
         true,
         false,
         {{"the frame", frameEnabled}, {"the box", enabled("cboNibrsCode")}}},
        {"NibrsOffensePicker",
         "Value",
         Null(),
         u"09A"_s,
         {{"text", property("Text")}, {"whether it is Null", property("ValueIsNull")}},
         ChangeThenValue},
        {.control = "NibrsOffensePicker",
         .property = "Value",
         .first = Null(),
         .second = u"09A"_s,
         .dependents = {{"whether it is Null", property("ValueIsNull")},
                        {"text", property("Text"), Dependent::Never}},
         .state = "in the designer",
         .inDesigner = true},
        {"NibrsOffensePicker",
         "Font",
         fontOf(9),
         fontOf(24),
         {{"height", frameHeight}, {"the box", fontSizeOf<FlatDropdown>("cboNibrsCode")}}},
        {"NibrsOffensePicker",
         "ForeColor",
         color(1),
         color(2),
         {{"the box", foreColorOf<FlatDropdown>("cboNibrsCode")}}},
        {"NibrsOffensePicker",
         "BackColor",
         color(1),
         color(2),
         {{"the box", backColorOf<FlatDropdown>("cboNibrsCode")}}},
    };
}

std::vector<Setter> agencySetters()
{
    return {
        {"AgencyPicker",
         "BackColor",
         color(1),
         color(2),
         {{"the combo", backColorOf<GridComboBox>("tdbcValues")}}},
        {"AgencyPicker",
         "ForeColor",
         color(1),
         color(2),
         {{"the combo", foreColorOf<GridComboBox>("tdbcValues")}}},
        {"AgencyPicker",
         "Font",
         fontOf(9),
         fontOf(24),
         {{"height", frameHeight},
          {"the combo", fontSizeOf<GridComboBox>("tdbcValues")},
          {"the label", fontSizeOf<Label>("lblDescription")}}},
        // Nothing is reported: a put is the host's contract.
        {"AgencyPicker",
         "Value",
         10,
         30,
         {{"the label", captionOf("lblDescription")},
          {"long text", property("FullText")},
          {"short text", property("ShortText")}},
         {u"Change"_s},
         put("Value", 10)},
        {"AgencyPicker", "Enabled", true, false, {{"the combo", enabled("tdbcValues")}}},
        {"AgencyPicker",
         "ShowName",
         true,
         false,
         {{"the label", hidden("lblDescription")}, {"the combo", placeOf("tdbcValues")}}},
        {"AgencyPicker", "ListAllAgencies", false, true, {{"rows", agencies}}},
        // The chosen row stands elsewhere then, which is no other choice.
        {.control = "AgencyPicker",
         .property = "ListAllAgencies",
         .first = false,
         .second = true,
         .dependents = {{"rows", agencies},
                        {"bookmark", bookmark},
                        {"value", property("Value"), Dependent::Never},
                        {"the label", captionOf("lblDescription"), Dependent::Never},
                        {"long text", property("FullText"), Dependent::Never},
                        {"short text", property("ShortText"), Dependent::Never}},
         .prepare = put("Value", 30),
         .state = "with a chosen value"},
        {"AgencyPicker",
         "RemoveUsedValues",
         false,
         true,
         {{"rows of the next record", agenciesBesideAUsedOne}}},
    };
}

/// What both combo pickers have.
std::vector<Setter> comboSetters(const char* control, const QVariant& value, const char* listAll)
{
    return {
        {control, "BackColor", color(1), color(2), {{"the box", backColorOf<SearchBox>("acComboBox")}}},
        {control, "ForeColor", color(1), color(2), {{"the box", foreColorOf<SearchBox>("acComboBox")}}},
        {control,
         "Font",
         fontOf(9),
         fontOf(24),
         {{"height", frameHeight},
          {"the box", fontSizeOf<SearchBox>("acComboBox")},
          {"the label", fontSizeOf<Label>("lblDescription")}}},
        {control,
         "Value",
         Null(),
         value,
         {{"the label", captionOf("lblDescription")},
          {"the box", [](const Stage& stage) { return stage.part<SearchBox>("acComboBox").Text(); }}},
         ChangeThenValue},
        {control,
         "Enabled",
         true,
         false,
         {{"the box", enabled("acComboBox")},
          {"its hint",
           [](const Stage& stage) { return stage.part<SearchBox>("acComboBox").Placeholder(); }}}},
        {control,
         "ShowName",
         true,
         false,
         {{"the label", hidden("lblDescription")}, {"the box", placeOf("acComboBox")}}},
        {control, listAll, false, true, {{"the next search", found}}},
    };
}

/// What both flat pickers have.
std::vector<Setter> flatSetters(const char* control, const QVariant& value)
{
    return {
        {control,
         "Caption",
         QString(),
         u"Officer"_s,
         {{"the label", captionOf("lblCaption")}, {"height", frameHeight}}},
        {control,
         "Required",
         false,
         true,
         {{"the label", captionOf("lblCaption")}},
         {u"Required"_s},
         put("Caption", u"Officer"_s)},
        {control, "BackColor", color(1), color(2), {{"the box", backColorOf<SearchBox>("acTextBox")}}},
        {control, "ForeColor", color(1), color(2), {{"the box", foreColorOf<SearchBox>("acTextBox")}}},
        {control,
         "Font",
         fontOf(9),
         fontOf(24),
         {{"height", frameHeight},
          {"the box", fontSizeOf<SearchBox>("acTextBox")},
          {"the tag", fontSizeOf<Tag>("tagName")}}},
        {control,
         "Value",
         Null(),
         value,
         {{"the tag", hidden("tagName")},
          {"the box", placeOf("acTextBox")},
          {"the sign", [](const Stage& stage) { return stage.part<Link>("lnkDropDown").Symbol(); }}},
         ChangeThenValue},
        {control,
         "Enabled",
         true,
         false,
         {{"the frame", frameEnabled},
          {"the colour", backColorOf<BoxShape>("shpBorder")},
          {"the hint", [](const Stage& stage) { return stage.part<SearchBox>("acTextBox").Placeholder(); }}}},
        {control,
         "ShowName",
         true,
         false,
         {{"the tag", hidden("tagName")}, {"the box", placeOf("acTextBox")}},
         {u"ShowName"_s},
         put("Value", value)},
    };
}

std::vector<Setter> sectionSetters()
{
    return {
        {"MultiValue", "Enabled", true, false, {{"the frame", frameEnabled}}},
        {"SuspRelList", "OtherCollectionTag", u"One"_s, u"Two"_s},
        {"SuspRelList", "OtherItemName", u"One"_s, u"Two"_s},
        {"SuspRelList", "OtherItemSeqName", u"One"_s, u"Two"_s},
        {"SuspRelList", "Enabled", true, false, {{"the frame", frameEnabled}}},
    };
}

std::vector<Setter> makeSetters()
{
    std::vector<Setter> all = textAndDropDownSetters();
    const auto add = [&all](std::vector<Setter> more) { all.insert(all.end(), more.begin(), more.end()); };
    add(agencySetters());
    const Dependent nextSearch{"the next search", found};
    add(comboSetters("EmployeePicker", 11, "ListAllEmployees"));
    add(comboSetters("OffensePicker", 31, "ListAllOffenses"));
    add(flatSetters("FlatEmployeePicker", 11));
    add(flatSetters("FlatUserPicker", u"user:asmith"_s));
    add({{"EmployeePicker", "K9HandlersOnly", false, true, {nextSearch}},
         {"FlatEmployeePicker", "K9HandlersOnly", false, true, {nextSearch}},
         {"FlatEmployeePicker", "ListAllEmployees", false, true, {nextSearch}},
         {"FlatUserPicker", "IncludeInactive", false, true, {nextSearch}}});
    const auto use = [](const QVariant& value) {
        return [value](const Stage& stage) {
            stage.contract().SetValue(Null(), tavrin::test::usedValues({value}));
        };
    };
    const auto removeUsed = [&](const char* control, const QVariant& used) {
        return Setter{control,      "RemoveUsedValues",      false,    true,
                      {nextSearch}, {u"RemoveUsedValues"_s}, use(used)};
    };
    add({removeUsed("EmployeePicker", 11), removeUsed("OffensePicker", 31),
         removeUsed("FlatEmployeePicker", 11), removeUsed("FlatUserPicker", u"user:asmith"_s)});
    add({{.control = "FlatUserPicker",
          .property = "Value",
          .first = Null(),
          .second = u"user:nobody"_s,
          .dependents = {{"the tag", hidden("tagName"), Dependent::Never}},
          .events = ChangeThenValue,
          .state = "in no list",
          .heldIn = {{u"Change"_s, Null()}}}}); // the cleared box tells first
    add(sectionSetters());
    return all;
}

const std::vector<Setter>& setters()
{
    static const std::vector<Setter> all = makeSetters();
    return all;
}

/// Looks at the control inside each event that reaches its followers.
class Follower : public QObject
{
    Q_OBJECT

public:
    Follower(const Stage& stage, const Setter& setter)
        : m_stage(stage)
        , m_setter(setter)
    {
        connect(stage.control, &UserControl::PropertyChanged, this, &Follower::follow);
        for (const char* signal : {"Change()", "ItemSelect()"}) {
            const QMetaObject& meta = *stage.control->metaObject();
            const int index = meta.indexOfSignal(signal);
            if (index >= 0)
                connect(stage.control, meta.method(index), this,
                        staticMetaObject.method(staticMetaObject.indexOfSlot(signal)));
        }
    }

    QStringList events;
    QList<QVariantList> seen;

public Q_SLOTS:
    void Change() { follow(u"Change"_s); }
    void ItemSelect() { follow(u"ItemSelect"_s); }

private:
    void follow(const QString& event)
    {
        if (std::exchange(m_isLooking, true))
            return; // what the look itself causes
        events << event;
        seen << lookAt(m_stage, m_setter);
        m_isLooking = false;
    }

    const Stage& m_stage;
    const Setter& m_setter;
    bool m_isLooking = false;
};

} // namespace

/// Every setter of every control, with what a follower sees of the control inside the events that it raises.
class tst_PropertyReports : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void noSetterOfAControlIsLeftOut()
    {
        QStringList declared;
        for (const QString& className : publicControls().classNames()) {
            const Stage stage(className.section(u'.', -1));
            const QMetaObject& meta = *stage.control->metaObject();
            for (int i = UserControl::staticMetaObject.propertyCount(); i < meta.propertyCount(); ++i) {
                if (meta.property(i).isWritable())
                    declared << stage.control->typeName() + u'.' + QLatin1String(meta.property(i).name());
            }
        }
        QStringList listed;
        QStringList names;
        for (const Setter& setter : setters()) {
            listed << setter.member();
            names << setter.name();
        }
        QCOMPARE(names.removeDuplicates(), 0);
        listed.removeDuplicates(); // a property may have a row for each of several states
        declared.sort();
        listed.sort();
        QCOMPARE(listed, declared);
        QCOMPARE(publicControls().classNames().size(), 14);
    }

    void aFollowerSeesWhatTheEventTells_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<bool>("back");
        for (int row = 0; row < static_cast<int>(setters().size()); ++row) {
            const Setter& setter = setters()[static_cast<size_t>(row)];
            QTest::addRow("%s", qPrintable(setter.name())) << row << false;
            QTest::addRow("%s back", qPrintable(setter.name())) << row << true;
        }
    }
    void aFollowerSeesWhatTheEventTells()
    {
        QFETCH(int, row);
        QFETCH(bool, back);
        const Setter& setter = setters()[static_cast<size_t>(row)];
        const Stage stage(QString::fromLatin1(setter.control), setter.inDesigner);
        if (setter.prepare)
            setter.prepare(stage);
        const QVariant& from = back ? setter.second : setter.first;
        const QVariant& to = back ? setter.first : setter.second;
        // What it looks like when nothing is under way.
        const auto settled = [&](const QVariant& value) {
            stage.control->setProperty(setter.property, value);
            return lookAt(stage, setter);
        };
        settled(from);
        const QVariantList after = settled(to);
        const QVariantList before = settled(from);
        QVERIFY2(SameValue(after.first(), to) || after.first() == to, qPrintable(textOf(after.first())));

        const Follower follower(stage, setter);
        stage.control->setProperty(setter.property, to);
        QCOMPARE(lookAt(stage, setter), after);
        QCOMPARE(follower.events, setter.events);
        for (qsizetype event = 0; event < follower.events.size(); ++event) {
            const QVariantList& seen = follower.seen.at(event);
            QCOMPARE(seen.first(), setter.heldIn.value(follower.events.at(event), after.first()));
            for (size_t i = 0; i < setter.dependents.size(); ++i) {
                const Dependent& dependent = setter.dependents[i];
                const auto place = static_cast<qsizetype>(i) + 1;
                const bool changes = dependent.when != Dependent::Never;
                QVERIFY2((before.at(place) != after.at(place)) == changes, dependent.name);
                const bool isDue = dependent.when == Dependent::BeforeReport;
                const QVariant& expected = isDue ? after.at(place) : before.at(place);
                QVERIFY2(seen.at(place) == expected,
                         qPrintable(u"%1 in %2: %3 and not %4"_s.arg(
                             QLatin1String(dependent.name), follower.events.at(event), textOf(seen.at(place)),
                             textOf(expected))));
            }
        }
    }

    void aTextFieldsListIsClosedBeforeItReportsThatItIsDisabled()
    {
        Stage stage(u"AutoCompleteField"_s);
        stage.control->setProperty("TableNo", Weapons);
        auto& list = stage.part<DropDownList>("lstMatches");
        QTest::keyClicks(&stage.part<TextBox>("txtSearch"), u"rifle"_s);
        QTRY_VERIFY(list.IsOpen());
        QStringList reports;
        connect(stage.control, &UserControl::PropertyChanged, stage.control,
                [&](const QString& key) { reports << key + (list.IsOpen() ? u" open"_s : u" closed"_s); });
        stage.control->setProperty("Enabled", false);
        QCOMPARE(reports, QStringList({u"Enabled closed"_s}));
    }

    void aTextFieldsListIsLoadedBehindTheReport_data()
    {
        QTest::addColumn<QByteArray>("property");
        QTest::addColumn<QVariant>("value");
        QTest::newRow("table") << QByteArray("TableNo") << QVariant(Races);
        QTest::newRow("inactive values") << QByteArray("IncludeInactiveValues") << QVariant(true);
    }
    void aTextFieldsListIsLoadedBehindTheReport()
    {
        QFETCH(QByteArray, property);
        QFETCH(QVariant, value);
        Stage stage(u"AutoCompleteField"_s);
        stage.control->setProperty("TableNo", Weapons);
        QStringList& log = stage.host.state().log;
        log.clear();
        QStringList asked;
        connect(stage.control, &UserControl::PropertyChanged, stage.control,
                [&](const QString& key) { asked << key << log; });
        stage.control->setProperty(property.constData(), value);
        QCOMPARE(asked, QStringList({QString::fromLatin1(property)})); // and nothing asked yet
        const TableNumber table = stage.control->property("TableNo").toInt();
        QCOMPARE(log.filter(u"GetTableValues"_s), QStringList({u"GetTableValues %1"_s.arg(table)}));
    }

    void aListOfValuesIsRebuiltBehindItsReport()
    {
        tavrin::test::MultiValueForm form;
        form.fill({11, 12});
        QStringList reports;
        QStringList& log = form.host.state().log;
        connect(form.control, &UserControl::PropertyChanged, &form.window, [&](const QString& key) {
            reports << u"%1 %2 %3"_s.arg(key, form.control->isEnabled() ? u"enabled"_s : u"disabled"_s,
                                         log.isEmpty() ? u"first"_s : log.join(u", "_s));
        });
        log.clear();
        form.control->SetEnabled(false);
        QCOMPARE(reports, QStringList({u"Enabled disabled first"_s}));
        QVERIFY(log.join(u' ').contains(u"GetDescription"_s));
    }
};

TAVRIN_TEST_MAIN(tst_PropertyReports)
#include "tst_PropertyReports.moc"
