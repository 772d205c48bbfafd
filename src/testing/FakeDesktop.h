#pragma once

#include "base/export/Export.h"
#include "frame/desktop/Desktop.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

class QWidget;

// Stand-ins for what the library reaches the person and the machine through, so that no test waits for a
// person. While one lives it takes the place of the real service on its thread; then that comes back.

namespace tavrin::testing {

/// One message box that was shown.
struct ShownBox
{
    QString text;       ///< its exact words
    BoxIcon icon;       ///< the sign beside them
    QString title;      ///< of its window
    BoxButtons buttons; ///< what the person could answer
    QWidget* parent;    ///< may be nullptr, and may have died since
};

/// Answers message boxes by a script and keeps their exact words.
///
///     FakeMessageBoxes boxes;
///     boxes.answerWith({BoxAnswer::No});
///     ...
///     QCOMPARE(boxes.texts(), QStringList({u"Remove it?"_s}));
class TAVRIN_EXPORT FakeMessageBoxes
{
public:
    FakeMessageBoxes();
    FakeMessageBoxes(const FakeMessageBoxes&) = delete;
    FakeMessageBoxes& operator=(const FakeMessageBoxes&) = delete;
    ~FakeMessageBoxes();

    /// The answers to the next boxes, in their order. A box beyond them is answered Ok.
    void answerWith(const QList<BoxAnswer>& answers);
    /// Happens once, while the next box is shown.
    void during(std::function<void()> act);

    /// The boxes that were shown since the last `take`.
    const QList<ShownBox>& shown() const;
    /// The same, and forgets them.
    QList<ShownBox> take();
    /// The words of `shown`.
    QStringList texts() const;
    /// Scripted answers that no box has asked for yet.
    qsizetype answersLeft() const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

/// Answers questions for files with a set of paths and keeps how it was asked.
class TAVRIN_EXPORT FakeFileDialogs
{
public:
    FakeFileDialogs();
    FakeFileDialogs(const FakeFileDialogs&) = delete;
    FakeFileDialogs& operator=(const FakeFileDialogs&) = delete;
    ~FakeFileDialogs();

    /// The files that the person chooses next; none is a cancel.
    void choose(const QStringList& files);
    /// "title|filter|several" of each question.
    const QStringList& asked() const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

/// Opens nothing, and answers as told.
class TAVRIN_EXPORT FakeShell
{
public:
    FakeShell();
    FakeShell(const FakeShell&) = delete;
    FakeShell& operator=(const FakeShell&) = delete;
    ~FakeShell();

    /// What the next files are answered with, see `Shell::execute`; 33 at first.
    void answerWith(qint64 result);
    /// The paths that were to be opened.
    const QStringList& opened() const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

/// A clock that stands until it is set.
class TAVRIN_EXPORT FakeClock
{
public:
    /// It stands at `now`, in local time.
    explicit FakeClock(const QDateTime& now);
    FakeClock(const FakeClock&) = delete;
    FakeClock& operator=(const FakeClock&) = delete;
    ~FakeClock();

    /// Sets it to another time.
    void setNow(const QDateTime& now);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace tavrin::testing
