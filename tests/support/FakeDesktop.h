#pragma once

#include "frame/desktop/Desktop.h"

#include <QDateTime>
#include <QList>

#include <functional>
#include <memory>
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
    /// Happens once, while the next box is shown.
    void during(std::function<void()> act) { m_script->act = std::move(act); }

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
            if (const auto once = std::exchange(act, {}))
                once();
            return answers.isEmpty() ? BoxAnswer::Ok : answers.takeFirst();
        }

        QList<BoxAnswer> answers;
        QList<ShownBox> shown;
        std::function<void()> act;
    };

    std::shared_ptr<Script> m_script;
    std::shared_ptr<MessageBoxes> m_before;
};

/// Answers questions for files with a set of paths and keeps how it was asked.
class FakeFileDialogs
{
public:
    FakeFileDialogs()
        : m_script(std::make_shared<Script>())
        , m_before(std::exchange(desktop().fileDialogs, m_script))
    {
    }
    FakeFileDialogs(const FakeFileDialogs&) = delete;
    FakeFileDialogs& operator=(const FakeFileDialogs&) = delete;
    ~FakeFileDialogs() { desktop().fileDialogs = m_before; }

    /// The files that the person chooses next; none is a cancel.
    void choose(const QStringList& files) { m_script->files = files; }
    /// "title|filter|several" of each question.
    const QStringList& asked() const { return m_script->asked; }

private:
    struct Script final : FileDialogs
    {
        QStringList openFiles(QWidget*, const QString& title, const QString&, const QString& filter,
                              bool several) override
        {
            asked << QStringLiteral("%1|%2|%3").arg(title, filter).arg(several);
            return files;
        }

        QStringList files;
        QStringList asked;
    };

    std::shared_ptr<Script> m_script;
    std::shared_ptr<FileDialogs> m_before;
};

/// Opens nothing, and answers as told.
class FakeShell
{
public:
    FakeShell()
        : m_script(std::make_shared<Script>())
        , m_before(std::exchange(desktop().shell, m_script))
    {
    }
    FakeShell(const FakeShell&) = delete;
    FakeShell& operator=(const FakeShell&) = delete;
    ~FakeShell() { desktop().shell = m_before; }

    void answerWith(qint64 result) { m_script->result = result; }
    const QStringList& opened() const { return m_script->opened; }

private:
    struct Script final : Shell
    {
        qint64 execute(const QString& path) override
        {
            opened << path;
            return result;
        }

        qint64 result = 33;
        QStringList opened;
    };

    std::shared_ptr<Script> m_script;
    std::shared_ptr<Shell> m_before;
};

/// A clock that stands until it is set.
class FakeClock
{
public:
    explicit FakeClock(const QDateTime& now)
        : m_script(std::make_shared<Script>(now))
        , m_before(std::exchange(desktop().clock, m_script))
    {
    }
    FakeClock(const FakeClock&) = delete;
    FakeClock& operator=(const FakeClock&) = delete;
    ~FakeClock() { desktop().clock = m_before; }

    void setNow(const QDateTime& now) { m_script->time = now; }

private:
    struct Script final : Clock
    {
        explicit Script(QDateTime now)
            : time(std::move(now))
        {
        }
        QDateTime now() override { return time; }

        QDateTime time;
    };

    std::shared_ptr<Script> m_script;
    std::shared_ptr<Clock> m_before;
};

} // namespace tavrin::test
