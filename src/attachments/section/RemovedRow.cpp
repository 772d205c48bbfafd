#include "attachments/section/RemovedRow.h"

#include "base/values/Variant.h"

#include <exception>
#include <utility>

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
    std::exception_ptr failure; // the first one; what is left to do is done all the same
    const auto attempt = [&failure](const auto& step) {
        try {
            step();
        } catch (...) {
            if (!failure)
                failure = std::current_exception();
        }
    };
    attempt([&] { append(attachments); });
    if (indexIn(attachments) != 0) {
        attempt([&] { restoreNotes(); });
        attempt([&] { restoreCover(attachments); });
    }
    if (failure)
        std::rethrow_exception(failure);
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
    const tvTableRowPtr former = std::exchange(m_row, copyFor(attachments, isKeyFree));
    try {
        attachments.Add(m_row);
    } catch (...) {
        if (indexIn(attachments) == 0) // otherwise the collection has taken it, as above
            m_row = former;
        throw;
    }
}

tvTableRowPtr RemovedRow::copyFor(tvTableCollection& attachments, bool withKey) const
{
    tvTableRowPtr copy = attachments.NewItem();
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

void RemovedRow::restoreNotes() const
{
    const tvFieldPtr notes = fieldOf(*m_row, Notes);
    if (ToText(notes->Value()) != m_notes)
        notes->SetValue(m_notes);
}

void RemovedRow::restoreCover(tvTableCollection& attachments) const
{
    if (m_isCoverChosen)
        return;
    const QVariant present = coverOf(attachments);
    const bool wasCover = !IsNull(m_key) && SameValue(m_coverBefore, m_key);
    const QVariant before = wasCover ? keyOf(attachments, *m_row) : m_coverBefore;
    if (!SameValue(present, m_coverAfter) || SameValue(present, before))
        return;
    if (IsNull(before) || hasKey(attachments, before))
        attachments.SetPrimaryValue(before);
}

} // namespace tavrin
