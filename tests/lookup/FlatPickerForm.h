#pragma once

#include "frame/host_contracts/Contracts.h"
#include "lookup/FlatEmployeePicker.h"
#include "lookup/FlatUserPicker.h"
#include "support/Fakes.h"
#include "testing/FakeHost.h"
#include "widgets/drawing/BoxShape.h"
#include "widgets/labels/Label.h"
#include "widgets/labels/Link.h"
#include "widgets/labels/Tag.h"
#include "widgets/panels/GroupBox.h"
#include "widgets/search_box/AutoCompleteTextBox.h"
#include "widgets/search_box/SuggestionView.h"

#include <QTest>
#include <QVariantList>

namespace tavrin::test {

/// Seven colours that occur in no other set.
inline TextBoxColorSet colorSet(int red)
{
    return {Color::rgb(red, 1, 0), Color::rgb(red, 2, 0), Color::rgb(red, 3, 0), Color::rgb(red, 4, 0),
            Color::rgb(red, 5, 0), Color::rgb(red, 6, 0), Color::rgb(red, 7, 0)};
}

inline TextBoxColors distinctColors()
{
    return {colorSet(10), colorSet(20), colorSet(30)};
}

inline XmlDocument xmlOf(const QString& text)
{
    XmlDocument document;
    document.loadXML(text);
    return document;
}

inline QString userRecord(const QString& id, bool active, const QString& first, const QString& last,
                          const QString& officerId, const QString& badge)
{
    return QStringLiteral("<UserAccount><UserId>%1</UserId><IsActive>%2</IsActive><FirstName>%3</FirstName>"
                          "<LastName>%4</LastName><OfficerId>%5</OfficerId><BadgeNo>%6</BadgeNo>"
                          "</UserAccount>")
        .arg(id, active ? QStringLiteral("True") : QStringLiteral("False"), first, last, officerId, badge);
}

/// Five users, of whom "7" is inactive and "bare" has nothing but a sign-on name.
inline XmlDocument sampleUsers()
{
    return xmlOf(QStringLiteral("<Users>") +
                 userRecord(QStringLiteral("jobrien"), true, QStringLiteral("Jack"),
                            QStringLiteral("O'Brien"), QStringLiteral("K-12"), QStringLiteral("4512")) +
                 userRecord(QStringLiteral("asmith"), true, QStringLiteral("Ann"), QStringLiteral("Smith"),
                            QStringLiteral("A-1"), QStringLiteral("1245")) +
                 userRecord(QStringLiteral("7"), false, QStringLiteral("Hanna"), QStringLiteral("Old"),
                            QStringLiteral("H-0"), QStringLiteral("300")) +
                 userRecord(QStringLiteral("9"), true, QStringLiteral("Ninel"), QStringLiteral("Zed"),
                            QStringLiteral("Z-0"), QStringLiteral("200")) +
                 QStringLiteral("<UserAccount><UserId>bare</UserId><IsActive>True</IsActive></UserAccount>"
                                "</Users>"));
}

inline QString employeeRecord(int number, bool active, const QString& name, const QString& id,
                              const QString& badge, bool handler)
{
    const auto flag = [](bool yes) { return yes ? QStringLiteral("True") : QStringLiteral("False"); };
    return QStringLiteral("<Employee><OfficerNo>%1</OfficerNo><ActiveFlag>%2</ActiveFlag><Name>%3</Name>"
                          "<OfficerId>%4</OfficerId><BadgeNo>%5</BadgeNo><IsK9Handler>%6</IsK9Handler>"
                          "</Employee>")
        .arg(QString::number(number), flag(active), name, id, badge, flag(handler));
}

/// Five employees, of whom 13 is inactive, 14 a handler of dogs, and 15 has nothing but its number.
inline XmlDocument sampleEmployees()
{
    return xmlOf(QStringLiteral("<Employees>") +
                 employeeRecord(11, true, QStringLiteral("O'Brien, Jack"), QStringLiteral("K12"),
                                QStringLiteral("4512"), false) +
                 employeeRecord(12, true, QStringLiteral("Smith, Ann"), QStringLiteral("A1"),
                                QStringLiteral("1245"), false) +
                 employeeRecord(13, false, QStringLiteral("Old, Hanna"), QStringLiteral("H0"),
                                QStringLiteral("300"), false) +
                 employeeRecord(14, true, QStringLiteral("Zed, Ninel"), QStringLiteral("Z0"),
                                QStringLiteral(" "), true) +
                 QStringLiteral("<Employee><OfficerNo>15</OfficerNo><ActiveFlag>True</ActiveFlag></Employee>"
                                "</Employees>"));
}

/// Users, employees, and three teams, of which 9 is inactive.
inline void fillPeople(FakeHost& host)
{
    FakeHostState& state = host.state();
    state.users = sampleUsers();
    state.userNames = {{QStringLiteral("jobrien"), QStringLiteral("Jack O'Brien")},
                       {QStringLiteral("asmith"), QStringLiteral("Ann Smith")},
                       {QStringLiteral("7"), QStringLiteral("Hanna Old")},
                       {QStringLiteral("9"), QStringLiteral("Ninel Zed")}};
    state.employees = sampleEmployees();
    host.setTable(Tables::Team, {{QStringLiteral("TRAF"), QStringLiteral("Traffic Unit"), 3},
                                 {QStringLiteral("K9"), QStringLiteral("Dog Team"), 7},
                                 {QStringLiteral("OLD"), QStringLiteral("Annexed"), 9}});
    state.inactive.insert(Tables::Team, {9});
    state.textBoxColors = distinctColors();
}

/// A host with people, for what needs no window.
struct PeopleSite
{
    PeopleSite()
        : installation(host)
    {
        fillPeople(host);
    }
    FakeHost host;
    HostInstallation installation;
};

/// The events of a picker in their order: "Change", "ItemSelect", and the keys of `PropertyChanged`.
struct Journal
{
    explicit Journal(SearchPicker* picker)
    {
        QObject::connect(picker, &SearchPicker::Change, &receiver, [this] { add(QStringLiteral("Change")); });
        QObject::connect(picker, &SearchPicker::ItemSelect, &receiver,
                         [this] { add(QStringLiteral("ItemSelect")); });
        QObject::connect(picker, &UserControl::PropertyChanged, &receiver,
                         [this](const QString& key) { add(key); });
    }
    void add(const QString& entry)
    {
        entries << entry;
        if (seen)
            values << seen();
    }
    QStringList take() { return std::exchange(entries, {}); }

    QStringList entries;
    /// Looks at something at each event.
    std::function<QVariant()> seen;
    QVariantList values;
    QObject receiver;
};

/// A form with one flat picker between two boxes. It has no layout: the picker takes the size it gives
/// itself.
template <typename Picker>
struct FlatForm : PeopleSite
{
    FlatForm()
        : before(new QLineEdit(&window))
        , picker(new Picker(&window))
        , after(new QLineEdit(&window))
        , box(picker->template findChild<AutoCompleteTextBox*>(QStringLiteral("acTextBox")))
        , link(picker->template findChild<Link*>(QStringLiteral("lnkDropDown")))
        , linkGroup(picker->template findChild<GroupBox*>(QStringLiteral("grpDropDownButton")))
        , label(picker->template findChild<Label*>(QStringLiteral("lblCaption")))
        , tag(picker->template findChild<Tag*>(QStringLiteral("tagName")))
        , shape(picker->template findChild<BoxShape*>(QStringLiteral("shpBorder")))
    {
        window.resize(1200, 400);
        before->move(10, 5);
        picker->move(10, 60);
        after->move(10, 200);
        window.show();
        window.activateWindow();
        before->setFocus();
    }
    bool isReady() { return QTest::qWaitForWindowActive(&window) && before->hasFocus(); }

    /// Types into the search box; the search has run when this returns.
    void type(const QString& text)
    {
        box->setFocus();
        QTest::keyClicks(box, text);
    }
    /// Types what finds one entry, and takes it.
    void choose(const QString& text)
    {
        type(text);
        QTest::keyClick(box, Qt::Key_Return);
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(window.windowHandle(), key, modifiers); // whatever has the focus gets it
    }
    void clickLink() { QTest::mouseClick(link, Qt::LeftButton); }

    SuggestionView* list() { return window.template findChild<SuggestionView*>(); }
    /// What stands in the list's rows.
    QStringList rows()
    {
        QStringList texts;
        if (box->ListIsOpen()) {
            for (int row = 0; row < list()->rowCount(); ++row)
                texts << list()->rowText(row);
        }
        return texts;
    }
    /// The rows that a text finds.
    QStringList found(const QString& text)
    {
        box->ShowSuggestions(text);
        return rows();
    }
    TavrinControl& contract() { return *picker; }

    QWidget window;
    QLineEdit* before;
    Picker* picker;
    QLineEdit* after;
    AutoCompleteTextBox* box;
    Link* link;
    GroupBox* linkGroup;
    Label* label;
    Tag* tag;
    BoxShape* shape;
};

using UserForm = FlatForm<FlatUserPicker>;
using EmployeeForm = FlatForm<FlatEmployeePicker>;

inline UsedValues usedValues(const QVariantList& values)
{
    return std::make_shared<QVariantList>(values);
}

} // namespace tavrin::test
