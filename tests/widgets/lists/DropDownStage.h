#pragma once

#include "widgets/lists/DropDownList.h"

#include <QFrame>
#include <QLineEdit>
#include <QListView>
#include <QTest>

#include <memory>
#include <utility>
#include <vector>

namespace tavrin::test {

/// A window with a line edit, a list below it and a button, and what the list told.
class Stage
{
public:
    explicit Stage(const QPoint& place = {100, 100})
        : window(new QWidget)
    {
        window->setGeometry(QRect(place, QSize(300, 200)));
        edit = new QLineEdit(window.get());
        edit->setGeometry(10, 10, 150, 24);
        list = new DropDownList(window.get());
        list->setGeometry(10, 40, 150, 24);
        other = new QLineEdit(window.get());
        other->setGeometry(10, 120, 150, 24);
        m_keep.push_back(list->Click.subscribe(
            [this] { told << QStringLiteral("click %1%2").arg(list->ListIndex()).arg(state()); }));
        window->show();
        window->activateWindow();
        edit->setFocus();
    }

    bool isReady() { return QTest::qWaitForWindowActive(window.get()) && edit->hasFocus(); }
    void fill(int count)
    {
        for (int i = 0; i < count; ++i)
            list->AddItem(QStringLiteral("entry %1").arg(i), 100 + i);
    }
    QString state() const { return list->IsOpen() ? QStringLiteral(" open") : QString(); }
    QStringList take() { return std::exchange(told, {}); }

    QFrame* popup() const { return window->findChild<QFrame*>(QStringLiteral("dropDown")); }
    QListView* view() const { return popup()->findChild<QListView*>(QStringLiteral("entries")); }
    QRect listOnScreen() const { return {list->mapToGlobal(QPoint(0, 0)), list->size()}; }
    QPoint middleOfRow(int row) const { return view()->visualRect(view()->model()->index(row, 0)).center(); }
    void clickRow(int row, Qt::MouseButton button = Qt::LeftButton) const
    {
        QTest::mouseClick(view()->viewport(), button, {}, middleOfRow(row));
    }

    std::unique_ptr<QWidget> window;
    QLineEdit* edit;
    DropDownList* list;
    QLineEdit* other;
    QStringList told;

private:
    std::vector<Subscription> m_keep;
};

} // namespace tavrin::test
