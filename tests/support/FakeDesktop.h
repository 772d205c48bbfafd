#pragma once

#include "frame/desktop/Desktop.h"

#include <QList>

#include <utility>

namespace tavrin::test {

/// One message box that was shown.
struct ShownBox
{
    QString text;
    BoxIcon icon;
    QString title;
    BoxButtons buttons;
    QWidget* parent;
};

/// Answers message boxes by a script and keeps their exact words. While it lives it takes the place of the
/// real ones; then those come back.
///
///     FakeMessageBoxes boxes;
///     boxes.answerWith({BoxAnswer::No});
///     ...
///     QCOMPARE(boxes.texts(), QStringList({u"Remove it?"_s}));
class FakeMessageBoxes
{
public:
    FakeMessageBoxes()
        : m_script(std::make_shared<Script>())
        , m_before(std::exchange(desktop().messageBoxes, m_script))
    {
    }
    FakeMessageBoxes(const FakeMessageBoxes&) = delete;
    FakeMessageBoxes& operator=(const FakeMessageBoxes&) = delete;
    ~FakeMessageBoxes() { desktop().messageBoxes = m_before; }

    /// The answers to the next boxes, in their order. A box beyond them is answered Ok.
    void answerWith(const QList<BoxAnswer>& answers) { m_script->answers = answers; }

    /// The boxes that were shown since the last `take`.
    const QList<ShownBox>& shown() const { return m_script->shown; }
    QList<ShownBox> take() { return std::exchange(m_script->shown, {}); }
    QStringList texts() const
    {
        QStringList list;
        for (const ShownBox& box : m_script->shown)
            list << box.text;
        return list;
    }
    /// Scripted answers that no box has asked for yet.
    qsizetype answersLeft() const { return m_script->answers.size(); }

private:
    struct Script final : MessageBoxes
    {
        BoxAnswer show(QWidget* parent, const QString& text, BoxIcon icon, const QString& title,
                       BoxButtons buttons) override
        {
            shown.append({text, icon, title, buttons, parent});
            return answers.isEmpty() ? BoxAnswer::Ok : answers.takeFirst();
        }

        QList<BoxAnswer> answers;
        QList<ShownBox> shown;
    };

    std::shared_ptr<Script> m_script;
    std::shared_ptr<MessageBoxes> m_before;
};

} // namespace tavrin::test
