#include "workbench/pages/NarrativePage.h"

#include "workbench/bindings/PlainBindings.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tavrin::workbench {

NarrativePage::NarrativePage()
    : RecordPage(tr("Narrative"))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 16, 24, 16);
    layout->setSpacing(8);
    FieldBinding& narrative = bind<MemoBinding>(QStringLiteral("Narrative"), tr("Narrati&ve"));
    auto* label = new QLabel(narrative.label(), this);
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    label->setBuddy(narrative.widget());
    narrative.widget()->setAccessibleName(narrative.plainLabel());
    m_text = narrative.widget();
    layout->addWidget(label);
    layout->addWidget(m_text);
    layout->addWidget(makeSpellingButton(tr("Chec&k spelling...")), 0, Qt::AlignLeft);
}

} // namespace tavrin::workbench
