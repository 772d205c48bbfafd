#pragma once

#include "base/values/Variant.h"
#include "widgets/grid_combo/GridComboBox.h"

#include <QLineEdit>
#include <QTest>

#include <memory>
#include <utility>

namespace tavrin::test {

/// A window with a grid combo and somewhere else for the focus to go, and what the combo told.
class GridStage
{
public:
    GridStage()
        : window(new QWidget)
    {
        window->setGeometry(100, 100, 300, 200);
        combo = new GridComboBox(window.get());
        combo->setGeometry(10, 10, 120, combo->height());
        combo->Columns(0).SetCaption(QStringLiteral("Id"));
        combo->Columns(1).SetCaption(QStringLiteral("Text"));
        combo->Columns(2).SetVisible(false);
        combo->Columns(3).SetVisible(false);
        other = new QLineEdit(window.get());
        other->setGeometry(10, 120, 150, 24);
        m_keep = combo->RowChange.subscribe([this] {
            told << QStringLiteral("row %1%2")
                        .arg(ToText(combo->Bookmark()),
                             combo->ListIsOpen() ? QStringLiteral(" open") : QString());
        });
        window->show();
        window->activateWindow();
        combo->setFocus();
    }

    bool isReady() { return QTest::qWaitForWindowActive(window.get()) && combo->hasFocus(); }
    /// An empty row and these, each with a long text and its number as the value.
    void fill(const QStringList& shortTexts)
    {
        combo->ResetArray();
        combo->Array().AppendRow({QString(), QString(), Null(), Null()});
        for (int i = 0; i < shortTexts.size(); ++i)
            combo->Array().AppendRow({shortTexts.at(i), QStringLiteral("long ") + shortTexts.at(i),
                                      10 * (i + 1), QStringLiteral("1")});
        combo->Rebind();
    }
    void fill(int count)
    {
        QStringList texts;
        for (int i = 1; i <= count; ++i)
            texts << QStringLiteral("entry %1").arg(i);
        fill(texts);
    }
    QStringList take() { return std::exchange(told, {}); }
    void key(int key, Qt::KeyboardModifiers modifiers = {}) const
    {
        QTest::keyClick(combo, static_cast<Qt::Key>(key), modifiers);
    }
    GridTable* table() const { return window->findChild<GridTable*>(); }
    QPoint middleOfRow(int row) const
    {
        return {20, table()->rowViewportPosition(row - 1) + table()->rowHeight() / 2};
    }
    void clickRow(int row, Qt::MouseButton button = Qt::LeftButton) const
    {
        QTest::mouseClick(table()->viewport(), button, {}, middleOfRow(row));
    }

    std::unique_ptr<QWidget> window;
    GridComboBox* combo;
    QLineEdit* other;
    QStringList told;

private:
    Subscription m_keep;
};

} // namespace tavrin::test
