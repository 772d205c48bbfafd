#pragma once

#include <QAbstractItemModel>
#include <QApplication>
#include <QCompleter>
#include <QLineEdit>
#include <QTest>
#include <QWidget>

// What benchmarks share that type into a box and wait for its list.

namespace tavrin::bench {

inline void activate(QWidget& window, QWidget& focus)
{
    window.show();
    window.activateWindow();
    focus.setFocus();
    const bool active = QTest::qWaitForWindowActive(&window);
    Q_UNUSED(active)
}

/// A completer that finds a text anywhere in its entries and ignores case.
inline void findAnywhere(QCompleter& completer)
{
    completer.setFilterMode(Qt::MatchContains);
    completer.setCaseSensitivity(Qt::CaseInsensitive);
}

/// An active line edit with such a completer, the rival of boxes that search while somebody types.
struct CompletedEdit
{
    explicit CompletedEdit(QAbstractItemModel& model)
        : completer(new QCompleter(&model, &edit))
    {
        findAnywhere(*completer);
        edit.setCompleter(completer);
        edit.resize(400, 30);
        activate(edit, edit);
    }
    CompletedEdit(const CompletedEdit&) = delete;
    CompletedEdit& operator=(const CompletedEdit&) = delete;
    /// Types the last key of a query, until the list is painted.
    void typeLast(const QString& query)
    {
        QTest::keyClicks(&edit, query.right(1));
        QApplication::processEvents();
    }

    QLineEdit edit;
    QCompleter* completer;
};

} // namespace tavrin::bench
