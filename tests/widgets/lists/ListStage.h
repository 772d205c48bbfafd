#pragma once

#include "base/failure/Error.h"
#include "support/TestCase.h"
#include "testing/Unhandled.h"
#include "widgets/lists/ListView.h"

#include <QLineEdit>
#include <QPointer>
#include <QTest>

// What the tests of the list in columns share.

namespace tavrin::test {

/// A window with a list that notes its events, of a column that holds texts only and two that show, and
/// another box.
struct ListStage
{
    ListStage()
    {
        window.resize(420, 240);
        list->setGeometry(10, 10, 400, 180);
        other->setGeometry(10, 200, 400, 24);
        list->AddColumnHeader(QStringLiteral("key"), {}, 0);
        list->AddColumnHeader(QStringLiteral("name"), QStringLiteral("Name"), 3000);
        list->AddColumnHeader(QStringLiteral("word"), QStringLiteral("Word"), 1500);
        keep.push_back(list->MouseDown.subscribe([this](int button, int, Twips x, Twips y) {
            log << QStringLiteral("down %1 %2").arg(button).arg(selected());
            place = QPoint(toPixels(x), toPixels(y));
        }));
        keep.push_back(list->ItemClick.subscribe(
            [this](const QString& key) { log << QStringLiteral("click %1 %2").arg(key, selected()); }));
        keep.push_back(list->DblClick.subscribe([this] { log << QStringLiteral("double ") + selected(); }));
    }
    /// Rows with the keys "a", "b", ... and their names.
    void add(const QStringList& names)
    {
        for (const QString& name : names) {
            const QString key(QChar(u'a' + list->Count()));
            list->AddItem(key, key);
            list->SetSubItem(key, QStringLiteral("name"), name);
        }
    }
    bool show()
    {
        window.show();
        window.activateWindow();
        list->setFocus();
        return QTest::qWaitForWindowActive(&window) && list->hasFocus();
    }
    QString selected() const { return list->SelectedItem().value_or(QStringLiteral("-")); }
    QStringList keys() const
    {
        QStringList all;
        for (int i = 0; i < list->Count(); ++i)
            all << list->Key(i);
        return all;
    }
    QRect rectOfRow(int row, int column = 0) const
    {
        return list->visualRect(list->model()->index(row, column));
    }
    QPoint placeOfRow(int row, int column = 0) const
    {
        return list->viewport()->mapTo(&window, rectOfRow(row, column).center());
    }
    void click(const QPoint& at, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseClick(window.windowHandle(), button, {}, at);
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(window.windowHandle(), key, modifiers);
    }
    QStringList take() { return std::exchange(log, {}); }

    QWidget window;
    QPointer<ListView> list = new ListView(&window);
    QLineEdit* other = new QLineEdit(&window);
    QStringList log;
    QPoint place;
    std::vector<Subscription> keep;
};

/// The number of the error that the work raises; 0 when it raises none.
inline int numberOf(const std::function<void()>& work)
{
    try {
        work();
    } catch (const Error& error) {
        return error.Number;
    }
    return 0;
}

} // namespace tavrin::test
