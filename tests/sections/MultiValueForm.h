#pragma once

#include "sections/MultiValue.h"
#include "support/Fakes.h"
#include "testing/FakeHost.h"
#include "widgets/labels/TextLink.h"
#include "widgets/lists/ListBox.h"

#include <QLineEdit>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

namespace tavrin::test {

inline constexpr TableNumber WeaponTable = 302;

/// Three codes: 11 Handgun, 12 Rifle, 13 Knife.
inline QList<TableValue> weapons()
{
    return {{QStringLiteral("H"), QStringLiteral("Handgun"), 11},
            {QStringLiteral("R"), QStringLiteral("Rifle"), 12},
            {QStringLiteral("K"), QStringLiteral("Knife"), 13}};
}

/// The columns of the child rows; the first is their key.
inline const QStringList WeaponColumns{QStringLiteral("SeqNo"), QStringLiteral("WeaponNo"),
                                       QStringLiteral("Remark")};

/// Child rows, one for each value.
inline std::shared_ptr<FakeCollection> rowsOf(const QVariantList& values)
{
    auto rows = std::make_shared<FakeCollection>(WeaponColumns);
    for (const QVariant& value : values)
        fieldOf(*rows->AddNew(), QStringLiteral("WeaponNo"))->SetValue(value);
    return rows;
}

/// Puts a value into a row, whose number counts from 1.
inline void putField(tvTableCollection& rows, int row, const QString& name, const QVariant& value)
{
    fieldOf(*rows.Item(row), name)->SetValue(value);
}

inline QVariantList fieldsOf(tvTableCollection& rows, const QString& name)
{
    QVariantList values;
    for (const tvTableRowPtr& row : rows)
        values << fieldOf(*row, name)->Value();
    return values;
}

inline QVariantList weaponsOf(tvTableCollection& rows)
{
    return fieldsOf(rows, QStringLiteral("WeaponNo"));
}

inline QStringList entriesOf(const ListBox& list)
{
    QStringList texts;
    for (int i = 0; i < list.ListCount(); ++i)
        texts << list.List(i);
    return texts;
}

/// A form with one control over the table of weapons, and another box to go to.
struct MultiValueForm
{
    MultiValueForm()
        : installation(host)
    {
        host.setTable(WeaponTable, weapons());
        window.resize(400, 300);
        control = new MultiValue(&window, {QStringLiteral("Weapons"), nullptr});
        control->setGeometry(20, 20, 200, 160);
        other = new QLineEdit(&window);
        other->setGeometry(20, 220, 200, 30);
        list = control->findChild<ListBox*>(QStringLiteral("lstValues"));
        add = control->findChild<TextLink*>(QStringLiteral("lnkAdd"));
        remove = control->findChild<TextLink*>(QStringLiteral("lnkDelete"));
        QObject::connect(control, &MultiValue::ValueAdded, &window,
                         [this] { events << QStringLiteral("ValueAdded %1").arg(control->Count()); });
        QObject::connect(control, &MultiValue::ValueRemoved, &window,
                         [this] { events << QStringLiteral("ValueRemoved %1").arg(control->Count()); });
        window.show();
        window.activateWindow();
        control->setFocus();
    }

    bool isReady()
    {
        return QTest::qWaitForWindowActive(&window) && list && add && remove && list->hasFocus();
    }

    BoundControl& contract() const { return *control; }
    void fill(const tvTableCollectionPtr& rows) const { contract().FillControl(&binding, {}, rows); }
    void fill(const QVariantList& values) const { fill(rowsOf(values)); }
    void save(const tvTableCollectionPtr& rows) const { contract().SetValue(&binding, {}, rows); }
    /// The values, as a save into a record without rows gives them.
    QVariantList values() const
    {
        const auto rows = rowsOf({});
        save(rows);
        return weaponsOf(*rows);
    }
    QStringList entries() const { return entriesOf(*list); }
    QStringList take() { return std::exchange(events, {}); }
    /// A key where the window system would give it.
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(window.windowHandle(), key, modifiers);
    }
    /// A repeat of a key that is held down.
    void repeat(Qt::Key key)
    {
        QTest::simulateEvent(window.windowHandle(), true, key, {}, QString(), true, -1);
    }
    void click(const QWidget* widget)
    {
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {},
                          widget->mapTo(&window, widget->rect().center()));
    }
    void clickRow(int row)
    {
        const QPoint place = list->visualRect(list->model()->index(row, 0)).center();
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, list->viewport()->mapTo(&window, place));
    }

    FakeHost host;
    HostInstallation installation;
    BoundBinding binding{QStringLiteral("WeaponNo"), WeaponTable};
    QWidget window;
    QPointer<MultiValue> control;
    QLineEdit* other = nullptr;
    ListBox* list = nullptr;
    TextLink* add = nullptr;
    TextLink* remove = nullptr;
    QStringList events;
};

} // namespace tavrin::test
