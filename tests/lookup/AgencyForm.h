#pragma once

#include "base/values/Variant.h"
#include "frame/control_frame/PropertyBag.h"
#include "lookup/AgencyPicker.h"
#include "support/Fakes.h"
#include "testing/FakeHost.h"
#include "widgets/grid_combo/GridComboBox.h"
#include "widgets/grid_combo/GridTable.h"
#include "widgets/labels/Label.h"

#include <QLineEdit>
#include <QTest>

#include <memory>
#include <utility>

namespace tavrin::test {

inline void setAgencies(FakeHost& host)
{
    host.setTable(Tables::Agency, {{QStringLiteral("AP"), QStringLiteral("Aston Police"), 10},
                                   {QStringLiteral("BF"), QStringLiteral("Bell Fire"), 20},
                                   {QStringLiteral("CS"), QStringLiteral("County Sheriff"), 30},
                                   {QStringLiteral("DP"), QStringLiteral("Dale Patrol"), 40}});
    host.state().inactive[Tables::Agency] = {20};
}

/// Notes the events of a picker, each by its name.
inline void follow(AgencyPicker& picker, QStringList& told)
{
    QObject::connect(&picker, &AgencyPicker::Change, &picker, [&] { told << QStringLiteral("Change"); });
    QObject::connect(&picker, &AgencyPicker::ItemSelect, &picker,
                     [&] { told << QStringLiteral("ItemSelect"); });
}

/// What an `AgencyForm` notes of a choice of the person's: "10 Aston Police".
inline QStringList chosen(const QString& agency)
{
    return {QStringLiteral("ItemSelect ") + agency, QStringLiteral("Change ") + agency};
}

/// A form with one picker that was restored from an empty bag, and what the picker told.
struct AgencyForm
{
    explicit AgencyForm(const PropertyBag& bag = {})
        : installation(host)
        , window(std::make_unique<QWidget>())
    {
        setAgencies(host);
        picker = new AgencyPicker(window.get(), {QStringLiteral("agency"), &bag});
        combo = picker->findChild<GridComboBox*>(QStringLiteral("tdbcValues"));
        label = picker->findChild<Label*>(QStringLiteral("lblDescription"));
        other = new QLineEdit(window.get());
        other->setGeometry(10, 150, 100, 24);
        picker->setGeometry(10, 10, 350, picker->height());
        window->resize(400, 300);
        QObject::connect(picker, &AgencyPicker::Change, window.get(), [this] { note("Change"); });
        QObject::connect(picker, &AgencyPicker::ItemSelect, window.get(), [this] { note("ItemSelect"); });
        QObject::connect(picker, &UserControl::PropertyChanged, window.get(),
                         [this](const QString& key) { reported << key; });
        window->show();
        window->activateWindow();
        picker->setFocus();
        host.state().log.clear();
    }

    bool isReady() { return QTest::qWaitForWindowActive(window.get()) && combo->hasFocus(); }
    TavrinControl& contract() const { return *picker; }
    static UsedValues used(const QVariantList& values) { return std::make_shared<QVariantList>(values); }
    /// The event, with the value and the label as they then are.
    void note(const char* event)
    {
        told << QStringLiteral("%1 %2 %3")
                    .arg(QLatin1String(event), ToText(picker->Value()), label->Caption());
    }
    /// By a click of the mouse, or by Enter.
    void chooseInList(int row, bool byClick) const
    {
        combo->OpenList();
        auto* table = window->findChild<GridTable*>(QStringLiteral("rows"));
        table->setMarkedRow(row);
        if (byClick)
            QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                              table->visualRect(table->model()->index(row - 1, 0)).center());
        else
            QTest::keyClick(combo, Qt::Key_Return);
    }
    QStringList take() { return std::exchange(told, {}); }
    QVariantList values() const
    {
        QVariantList list;
        for (int row = 1; row <= combo->Array().UpperBound(); ++row)
            list << combo->Array().Value(row, 2);
        return list;
    }

    FakeHost host;
    HostInstallation installation;
    std::unique_ptr<QWidget> window;
    AgencyPicker* picker;
    GridComboBox* combo;
    Label* label;
    QLineEdit* other;
    QStringList told;
    QStringList reported;
};

} // namespace tavrin::test
