#pragma once

#include "base/failure/Error.h"
#include "frame/control_frame/Trace.h"

#include <QPointer>
#include <QString>
#include <QWidget>

#include <utility>

/// What a routine does with a failure. A routine says in its first line which of these it follows; one that
/// says nothing lets its failures pass to its caller.
namespace tavrin {

/// Continue on error: a statement that fails is skipped and the next one runs. For layouts.
template <typename... Statements>
void continueOnError(Statements&&... statements)
{
    const auto attempt = [](auto&& statement) {
        try {
            statement();
        } catch (...) { // NOLINT(bugprone-empty-catch): this is the policy
        }
    };
    (attempt(std::forward<Statements>(statements)), ...);
}

/// The text of a trapped failure: "Unexpected error in <type>.<routine>" with number, source and description.
QString trapText(const QString& typeName, const QString& routine, const Error& error);

/// Trap and go on: a statement that fails is told to the developer's trace and the next one runs. For the
/// events that hand over a property bag.
template <typename... Statements>
void trapAndGoOn(const QString& typeName, const QString& routine, Statements&&... statements)
{
    const auto attempt = [&](auto&& statement) {
        try {
            statement();
        } catch (...) {
            const Error error = Error::fromCurrentException();
            TAVRIN_TRACE_LINE(trapText(typeName, routine, error));
            Q_UNUSED(error)
        }
    };
    (attempt(std::forward<Statements>(statements)), ...);
    Q_UNUSED(typeName)
    Q_UNUSED(routine)
}

/// Add context and raise again: `body` gets a counter in which it notes the number of the statement that it
/// runs. A failure keeps its number; its source becomes "<source> -> <type>.<routine> [line <n>]", and
/// `prefix` stands before its description. For the contract calls of fields with several rows.
template <typename Body>
void addContext(const QString& typeName, const QString& routine, const QString& prefix, Body&& body)
{
    int line = 0;
    try {
        std::forward<Body>(body)(line);
    } catch (...) {
        const Error error = Error::fromCurrentException();
        throw Error(prefix + error.Description, error.Number,
                    QStringLiteral("%1 -> %2.%3 [line %4]")
                        .arg(error.Source, typeName, routine, QString::number(line)));
    }
}

/// Shows `prefix` and the description of the failure that is being handled in a critical box.
void showFailure(QWidget* parent, const QString& prefix, const QString& title);

/// Report in a box and stay up: a failure is shown as `prefix` and its description in a modal box with the
/// critical icon, and the routine returns. For actions of the person and contracts of sections.
/// Returns false when `body` failed.
template <typename Body>
bool reportInBox(QWidget* parent, const QString& prefix, const QString& title, Body&& body)
{
    const QPointer<QWidget> alive(parent); // a follower may delete the control that fails
    try {
        std::forward<Body>(body)();
        return true;
    } catch (...) {
        showFailure(alive, prefix, title);
        return false;
    }
}

} // namespace tavrin
