#pragma once

#include "base/failure/Error.h"
#include "host/records/Record.h"
#include "workbench/bindings/FieldBinding.h"

#include <QWidget>

#include <memory>
#include <optional>
#include <vector>

class QPushButton;

namespace tavrin::workbench {

/// A part of a page that cannot be saved as it is; raised by `RecordPage::storeRows`, with the part in view.
struct SectionRefusal : Error
{
    SectionRefusal(const Error& error, QWidget* refusedField)
        : Error(error)
        , field(refusedField)
    {
    }

    QWidget* field;
};

/// One page of a record window.
class RecordPage : public QWidget
{
    Q_OBJECT

public:
    explicit RecordPage(QString title)
        : m_title(std::move(title))
    {
    }

    const QString& title() const { return m_title; }

    virtual void load(Record& record);
    /// The page holds something that the record does not.
    virtual bool differs(Record& record) const;
    /// Writes the page into the record. Nothing reaches the database.
    virtual void store(Record& record);
    /// Writes the rows of the page's lists into the record, behind the fields of all pages. Raises a
    /// `SectionRefusal` where the person has to do something first.
    virtual void storeRows(Record&) {}
    /// After a save, for what the save itself has filled in.
    virtual void showSaved(Record&) {}
    /// What cannot be saved, the first of it; nothing when all can.
    virtual std::optional<FieldProblem> firstProblem() const;
    /// The field of the page that is bound to this column; nullptr when there is none.
    const FieldBinding* bindingOf(const QString& fieldName) const;

    /// The text whose spelling can be checked; nullptr when the page has none.
    virtual QWidget* spelledText() const { return nullptr; }

    Event<> Edited;
    /// The person wants the spelling of `spelledText` checked.
    Event<> SpellingAsked;

protected:
    /// A button that asks for the check.
    QPushButton* makeSpellingButton(const QString& caption);

    template <typename Binding, typename... Arguments>
    Binding& bind(Arguments&&... arguments)
    {
        auto binding = std::make_unique<Binding>(std::forward<Arguments>(arguments)...);
        Binding& bound = *binding;
        add(std::move(binding));
        return bound;
    }

private:
    void add(std::unique_ptr<FieldBinding> binding);

    QString m_title;
    std::vector<std::unique_ptr<FieldBinding>> m_bindings;
    std::vector<Subscription> m_subscriptions;
};

} // namespace tavrin::workbench
