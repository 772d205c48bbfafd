#include "testing/FakeDesktop.h"

#include <QWidget>

#include <utility>

namespace tavrin::testing {

namespace {

/// Puts `Script` in the place of one of the desktop's services for as long as it lives.
template <typename Script, typename Service>
class Stand
{
public:
    template <typename... Args>
    explicit Stand(std::shared_ptr<Service> Desktop::*service, Args&&... args)
        : m_service(service)
        , m_script(std::make_shared<Script>(std::forward<Args>(args)...))
        , m_before(std::exchange(desktop().*service, m_script))
    {
    }
    Stand(const Stand&) = delete;
    Stand& operator=(const Stand&) = delete;
    ~Stand() { desktop().*m_service = m_before; }

    Script* operator->() const { return m_script.get(); }

private:
    std::shared_ptr<Service> Desktop::*m_service;
    std::shared_ptr<Script> m_script; // a control may be inside a call of it when this ends
    std::shared_ptr<Service> m_before;
};

struct BoxScript final : MessageBoxes
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

struct FileScript final : FileDialogs
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

struct ShellScript final : Shell
{
    qint64 execute(const QString& path) override
    {
        opened << path;
        return result;
    }

    qint64 result = 33;
    QStringList opened;
};

struct ClockScript final : Clock
{
    explicit ClockScript(QDateTime now)
        : time(std::move(now))
    {
    }
    QDateTime now() override { return time; }

    QDateTime time;
};

} // namespace

struct FakeMessageBoxes::Private
{
    Stand<BoxScript, MessageBoxes> script{&Desktop::messageBoxes};
};

FakeMessageBoxes::FakeMessageBoxes()
    : d(std::make_unique<Private>())
{
}

FakeMessageBoxes::~FakeMessageBoxes() = default;

void FakeMessageBoxes::answerWith(const QList<BoxAnswer>& answers)
{
    d->script->answers = answers;
}

void FakeMessageBoxes::during(std::function<void()> act)
{
    d->script->act = std::move(act);
}

const QList<ShownBox>& FakeMessageBoxes::shown() const
{
    return d->script->shown;
}

QList<ShownBox> FakeMessageBoxes::take()
{
    return std::exchange(d->script->shown, {});
}

QStringList FakeMessageBoxes::texts() const
{
    QStringList list;
    for (const ShownBox& box : shown())
        list << box.text;
    return list;
}

qsizetype FakeMessageBoxes::answersLeft() const
{
    return d->script->answers.size();
}

struct FakeFileDialogs::Private
{
    Stand<FileScript, FileDialogs> script{&Desktop::fileDialogs};
};

FakeFileDialogs::FakeFileDialogs()
    : d(std::make_unique<Private>())
{
}

FakeFileDialogs::~FakeFileDialogs() = default;

void FakeFileDialogs::choose(const QStringList& files)
{
    d->script->files = files;
}

const QStringList& FakeFileDialogs::asked() const
{
    return d->script->asked;
}

struct FakeShell::Private
{
    Stand<ShellScript, Shell> script{&Desktop::shell};
};

FakeShell::FakeShell()
    : d(std::make_unique<Private>())
{
}

FakeShell::~FakeShell() = default;

void FakeShell::answerWith(qint64 result)
{
    d->script->result = result;
}

const QStringList& FakeShell::opened() const
{
    return d->script->opened;
}

struct FakeClock::Private
{
    explicit Private(const QDateTime& now)
        : script(&Desktop::clock, now)
    {
    }

    Stand<ClockScript, Clock> script;
};

FakeClock::FakeClock(const QDateTime& now)
    : d(std::make_unique<Private>(now))
{
}

FakeClock::~FakeClock() = default;

void FakeClock::setNow(const QDateTime& now)
{
    d->script->time = now;
}

} // namespace tavrin::testing
