#include "workbench/pages/RecordPage.h"

#include "base/failure/Guard.h"

#include <QKeySequence>
#include <QPushButton>

#include <algorithm>

namespace tavrin::workbench {

void RecordPage::add(std::unique_ptr<FieldBinding> binding)
{
    m_subscriptions.push_back(binding->Edited.subscribe([this] { Edited.raise(); }));
    m_bindings.push_back(std::move(binding));
}

void RecordPage::load(Record& record)
{
    for (const auto& binding : m_bindings)
        binding->load(*record.mainRow());
}

bool RecordPage::differs(Record& record) const
{
    return std::any_of(m_bindings.begin(), m_bindings.end(),
                       [&](const auto& binding) { return binding->differs(*record.mainRow()); });
}

void RecordPage::store(Record& record)
{
    for (const auto& binding : m_bindings)
        binding->store(*record.mainRow());
}

QPushButton* RecordPage::makeSpellingButton(const QString& caption)
{
    auto* button = new QPushButton(caption, this);
    button->setObjectName(QStringLiteral("spelling"));
    button->setToolTip(tr("Check the spelling (%1)").arg(QKeySequence(Qt::Key_F7).toString()));
    connectGuarded(button, &QPushButton::clicked, this, "RecordPage_Spelling",
                   [this] { SpellingAsked.raise(); });
    return button;
}

std::optional<FieldProblem> RecordPage::firstProblem() const
{
    for (const auto& binding : m_bindings) {
        if (const QString problem = binding->problem(); !problem.isEmpty())
            return FieldProblem{binding->widget(), problem};
    }
    return std::nullopt;
}

const FieldBinding* RecordPage::bindingOf(const QString& fieldName) const
{
    for (const auto& binding : m_bindings) {
        if (binding->fieldName().compare(fieldName, Qt::CaseInsensitive) == 0)
            return binding.get();
    }
    return nullptr;
}

} // namespace tavrin::workbench
