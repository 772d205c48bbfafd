#include "attachments/section/PrimaryRule.h"

#include "attachments/files/modAttachments.h"
#include "base/values/Variant.h"

namespace tavrin::PrimaryRule {

namespace {

QVariant keyOf(tvTableCollection& attachments, tvTableRow& row)
{
    return fieldOf(row, attachments.KeyColumn())->Value();
}

} // namespace

void added(tvTableCollection& attachments, tvTableRow& row)
{
    const bool isImage = modAttachments::IsImageAttachment(row);
    if (attachments.Count() == 1 && !isImage)
        attachments.SetPrimaryValue(Null());
    if (attachments.PrimaryIndex() == 0 && isImage)
        attachments.SetPrimaryValue(keyOf(attachments, row));
}

void removed(tvTableCollection& attachments, tvTableRow& row)
{
    if (!modAttachments::IsImageAttachment(row))
        return;
    for (const tvTableRowPtr& left : attachments) {
        if (modAttachments::IsImageAttachment(*left)) {
            attachments.SetPrimaryValue(keyOf(attachments, *left));
            return;
        }
    }
    attachments.SetPrimaryValue(Null());
}

} // namespace tavrin::PrimaryRule
