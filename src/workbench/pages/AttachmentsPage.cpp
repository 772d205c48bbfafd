#include "workbench/pages/AttachmentsPage.h"

#include "attachments/section/Attachments.h"
#include "base/failure/Guard.h"
#include "base/values/Variant.h"
#include "widgets/boxes/TextArea.h"

#include <QPushButton>
#include <QScopedValueRollback>
#include <QVBoxLayout>

namespace tavrin::workbench {

AttachmentsPage::AttachmentsPage()
    : RecordPage(tr("Attachments"))
    , m_attachments(new Attachments(this))
    , m_comment(m_attachments->findChild<TextArea*>(QStringLiteral("txtComment")))
{
    m_attachments->setObjectName(QStringLiteral("Attachments"));
    m_attachments->setAccessibleName(title());
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 16, 24, 16);
    layout->addWidget(m_attachments);
    layout->addWidget(makeSpellingButton(tr("Chec&k spelling of the comment...")), 0, Qt::AlignRight);
    m_tellLater.setSingleShot(true);
    connectGuarded(&m_tellLater, &QTimer::timeout, this, "AttachmentsPage_Changed",
                   [this] { Edited.raise(); });
    connectGuarded(m_comment, &TextArea::textChanged, this, "AttachmentsPage_Comment", [this] {
        if (!m_loading)
            Edited.raise();
    });
}

void AttachmentsPage::load(Record& record)
{
    RecordPage::load(record);
    const QScopedValueRollback loading(m_loading, true);
    BoundSection& section = *m_attachments;
    section.ReadData(record.shared_from_this());
    // Rows come, go and change in the record itself. What the pages hold may be looked at only after that.
    m_recordChanged = record.Changed.subscribe([this] { m_tellLater.start(); });
}

bool AttachmentsPage::differs(Record& record) const
{
    if (RecordPage::differs(record))
        return true;
    RecordCollection& rows = *record.collection(QStringLiteral("Attachments"));
    if (rows.Count() == 0)
        return false;
    const tvTableRowPtr current = rows.Item(rows.Position());
    return ToText(fieldOf(*current, QStringLiteral("Notes"))->Value()) != m_comment->Text();
}

QWidget* AttachmentsPage::spelledText() const
{
    return qobject_cast<QWidget*>(m_attachments->CommentsTextBox());
}

void AttachmentsPage::store(Record& record)
{
    RecordPage::store(record);
    BoundSection& section = *m_attachments;
    section.WriteData(record.shared_from_this());
}

} // namespace tavrin::workbench
