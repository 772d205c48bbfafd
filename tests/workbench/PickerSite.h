#pragma once

#include "base/values/Variant.h"
#include "lookup/SearchPicker.h"
#include "widgets/search_box/SuggestionView.h"
#include "workbench/Site.h"
#include "workbench/pages/PickerRows.h"

#include <QApplication>
#include <QPushButton>
#include <QTest>
#include <QVariantList>

namespace tavrin::test {

inline const QString K9Handler = QStringLiteral("K9Handler");
inline const QString Assignments = QStringLiteral("Assignments");
inline const QString AssignedTo = QStringLiteral("AssignedTo");
inline const QString Offenses = QStringLiteral("Offenses");
inline const QString OffenseNo = QStringLiteral("OffenseNo");

/// A site with an incident that has the rows that a test wants.
struct PickerSite : Site
{
    using Site::Site;

    void storeRows(const QString& collection, const QString& field, const QVariantList& values)
    {
        const RecordPtr record = workspace->store().load(incidentNo);
        const RecordCollectionPtr rows = record->collection(collection);
        while (rows->Count() > 0)
            rows->RemoveCurrent(false);
        for (const QVariant& value : values)
            fieldOf(*rows->AddNew(), field)->SetValue(value);
        workspace->store().save(*record);
    }
    QList<PickerRow*> lines(const QString& collection) const
    {
        auto lines = window->findChild<PickerRows*>(collection)->findChildren<PickerRow*>();
        lines.removeIf([](const PickerRow* line) { return line->isHidden(); });
        return lines;
    }
    QVariantList values(const QString& collection) const
    {
        QVariantList values;
        for (const PickerRow* line : lines(collection))
            values << line->value();
        return values;
    }
    QPushButton* addButton(const QString& collection) const
    {
        return window->findChild<QPushButton*>(QStringLiteral("add") + collection);
    }
    void remove(const QString& collection, int line) const
    {
        layOut();
        QTest::mouseClick(lines(collection).at(line)->findChild<QPushButton*>(QStringLiteral("remove")),
                          Qt::LeftButton);
    }
    SearchPicker& add(const QString& collection) const
    {
        layOut();
        QTest::mouseClick(addButton(collection), Qt::LeftButton);
        return lines(collection).last()->picker();
    }
};

/// Types into the picker's box; the texts of the rows that are then offered.
inline QStringList offered(SearchPicker& picker, const QString& text)
{
    picker.setFocus();
    QWidget* box = QApplication::focusWidget();
    QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(box, Qt::Key_Backspace);
    QTest::keyClicks(QApplication::focusWidget(), text);
    QStringList rows;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window->objectName() != QLatin1String("suggestionList") || !window->isVisible())
            continue;
        const auto* list = window->findChild<SuggestionView*>();
        for (int row = 0; row < list->rowCount(); ++row)
            rows << list->rowText(row);
    }
    return rows;
}

/// Chooses the only row that the text finds.
inline void choose(SearchPicker& picker, const QString& text)
{
    QCOMPARE(offered(picker, text).size(), 1);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    QVERIFY(!IsNull(picker.GetValue()));
}

/// In a picker whose box holds what is chosen.
inline void clear(SearchPicker& picker)
{
    picker.setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Delete);
    QVERIFY(IsNull(picker.GetValue()));
}

} // namespace tavrin::test
