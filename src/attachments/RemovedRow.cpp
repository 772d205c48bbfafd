#include "RemovedRow.h"

#include "base/Variant.h"

namespace tavrin {

namespace {

const QString FileName = QStringLiteral("FileName");
const QString Notes = QStringLiteral("Notes");

QVariant keyOf(const tvTableCollection& attachments, tvTableRow& row)
{
    return fieldOf(row, attachments.KeyColumn())->Value();
}

QVariant coverOf(tvTableCollection& attachments)
{
    const qint32 index = attachments.PrimaryIndex();
    return index == 0 ? Null() : keyOf(attachments, *attachments.Item(index));
}

bool hasKey(tvTableCollection& attachments, const QVariant& key)
{
    for (const tvTableRowPtr& row : attachments) {
        if (!IsNull(key) && SameValue(keyOf(attachments, *row), key))
            return true;
    }
    return false;
}

} // namespace

RemovedRow::RemovedRow(tvTableCollection& attachments, qint32 index, QString name, QString notes)
    : m_row(attachments.Item(index))
    , m_name(std::move(name))
    , m_notes(std::move(notes))
    , m_key(keyOf(attachments, *m_row))
    , m_coverBefore(coverOf(attachments))
    , m_coverAfter(m_coverBefore)
{
}

void RemovedRow::noteRemoval(tvTableCollection& attachments)
{
    m_coverAfter = coverOf(attachments);
}

qint32 RemovedRow::indexIn(tvTableCollection& attachments) const
{
    const qint32 index = indexOf(attachments, m_row);
    if (index == 0)
        return 0;
    // The key may have been given to another file meanwhile.
    const tvFieldPtr file = fieldOf(*attachments.Item(index), FileName);
    return SameValue(file->Value(), fieldOf(*m_row, FileName)->Value()) ? index : 0;
}

void RemovedRow::putBack(tvTableCollection& attachments)
{
    if (indexIn(attachments) != 0)
        return;
    append(attachments);
    const tvFieldPtr notes = fieldOf(*m_row, Notes);
    if (ToText(notes->Value()) != m_notes)
        notes->SetValue(m_notes);
    restoreCover(attachments);
}

void RemovedRow::append(tvTableCollection& attachments)
{
    const bool isKeyFree = !hasKey(attachments, m_key);
    if (isKeyFree) {
        try {
            attachments.Add(m_row);
            return;
        } catch (...) {
            if (indexIn(attachments) != 0)
                throw; // the collection has taken it, and somebody else has failed
        }
    }
    const tvTableRowPtr copy = copyFor(attachments, isKeyFree);
    attachments.Add(copy);
    m_row = copy;
}

tvTableRowPtr RemovedRow::copyFor(tvTableCollection& attachments, bool withKey) const
{
    const tvTableRowPtr copy = attachments.NewItem();
    const QString keyColumn = attachments.KeyColumn();
    for (int index = 1; index <= m_row->FieldCount(); ++index) {
        const tvFieldPtr field = m_row->Item(index);
        const bool isKey = field->Name().compare(keyColumn, Qt::CaseInsensitive) == 0;
        if ((isKey && !withKey) || std::dynamic_pointer_cast<tvLinkField>(field))
            continue; // the new row has them of its own
        fieldOf(*copy, field->Name())->SetValue(field->Value());
    }
    return copy;
}

void RemovedRow::restoreCover(tvTableCollection& attachments) const
{
    const QVariant present = coverOf(attachments);
    const bool wasCover = !IsNull(m_key) && SameValue(m_coverBefore, m_key);
    const QVariant before = wasCover ? keyOf(attachments, *m_row) : m_coverBefore;
    if (!SameValue(present, m_coverAfter) || SameValue(present, before))
        return;
    if (IsNull(before) || hasKey(attachments, before))
        attachments.SetPrimaryValue(before);
}

} // namespace tavrin
