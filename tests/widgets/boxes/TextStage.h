#pragma once

#include "support/Keys.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QClipboard>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QKeySequence>
#include <QLineEdit>
#include <QMimeData>
#include <QTest>
#include <QWidget>

// What the tests of boxes for texts share.

namespace tavrin::test {

/// A window with a text box that has the focus, above a line edit, and what a person does with the box.
class TextStage
{
public:
    /// The window takes the box over.
    explicit TextStage(QWidget* shown)
        : m_box(shown)
    {
        window.resize(300, 200);
        m_box->setParent(&window);
        m_box->setGeometry(0, 0, 300, 150);
        other->setGeometry(0, 160, 300, 30);
        window.show();
        window.activateWindow();
        m_box->setFocus();
    }
    bool isReady() { return QTest::qWaitForWindowActive(&window) && m_box->hasFocus(); }
    void press(QKeySequence::StandardKey keys)
    {
        QTest::keySequence(window.windowHandle(), QKeySequence(keys));
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(window.windowHandle(), key, modifiers);
    }
    void type(const QString& text) { typeInto(window.windowHandle(), text); }
    void paste(const QString& text)
    {
        QApplication::clipboard()->setText(text);
        press(QKeySequence::Paste);
    }
    void paste(const QMimeData& data)
    {
        auto* copy = new QMimeData; // which the clipboard takes
        for (const QString& format : data.formats())
            copy->setData(format, data.data(format));
        if (data.hasImage())
            copy->setImageData(data.imageData());
        QApplication::clipboard()->setMimeData(copy);
        press(QKeySequence::Paste);
    }
    /// An input method's text, which replaces as many units as `replaced` before the caret.
    void commit(const QString& text, int replaced = 0)
    {
        QInputMethodEvent event;
        event.setCommitString(text, -replaced, replaced);
        QApplication::sendEvent(m_box, &event);
    }
    void drop(const QString& text)
    {
        auto* area = qobject_cast<QAbstractScrollArea*>(m_box);
        QWidget* target = area ? area->viewport() : m_box;
        QMimeData data;
        data.setText(text);
        const QPointF place(5, 5);
        QDragEnterEvent enter(place.toPoint(), Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(target, &enter);
        QDropEvent event(place, Qt::CopyAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(target, &event);
    }

    QWidget window;
    QLineEdit* other = new QLineEdit(&window);

private:
    QWidget* m_box;
};

} // namespace tavrin::test
