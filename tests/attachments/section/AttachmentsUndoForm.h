#pragma once

#include "attachments/section/AttachmentsForm.h"
#include "attachments/section/AttachmentsHosts.h"
#include "attachments/section/UndoLine.h"
#include "frame/memory_records/MemoryField.h"
#include "frame/memory_records/MemoryRow.h"

#include <functional>

namespace tavrin::test {

using namespace Qt::StringLiterals;

inline UndoLine* lineOf(const AttachmentsForm& form)
{
    return form.child<UndoLine>("picUndo");
}

/// What the line says; "" while it is hidden.
inline QString said(const AttachmentsForm& form)
{
    if (lineOf(form)->isHidden())
        return {};
    return form.child<Label>("lblRemoved")->Caption() + u' ' + form.child<TextLink>("lnkUndo")->Caption();
}

inline void remove(AttachmentsForm& form, int line)
{
    form.click(form.placeOfLine(line));
    form.press(Qt::Key_Delete);
}

/// By the keys, from the list past the link that adds files.
inline void goToUndoLink(AttachmentsForm& form)
{
    form.press(Qt::Key_Tab);
    form.press(Qt::Key_Tab);
}

inline void undo(AttachmentsForm& form)
{
    form.list->setFocus();
    form.press(Qt::Key_Z, Qt::ControlModifier);
}

/// A comment whose follower does something, or fails.
class FollowedNotes final : public tvField
{
public:
    explicit FollowedNotes(QString text)
        : m_value(std::move(text))
    {
    }

    QVariant Value() const override { return m_value; }
    void SetValue(const QVariant& value) override
    {
        if (follower)
            follower();
        m_value = value;
    }
    QString Name() const override { return u"Notes"_s; }
    bool IsKey() const override { return false; }
    qint32 MaxLength() const override { return 0; }

    std::function<void()> follower;

private:
    QVariant m_value;
};

class LinkToRecord final : public tvLinkField
{
public:
    QVariant Value() const override { return 7; }
    void SetValue(const QVariant&) override { throw Error(u"a link is the host's"_s); }
    QString Name() const override { return u"IncidentNo"_s; }
    bool IsKey() const override { return false; }
    qint32 MaxLength() const override { return 0; }
};

/// The columns of a row, with another one in the place of that of its name, or behind them.
inline tvTableRowPtr rowWith(const tvFieldPtr& other)
{
    const tvTableRowPtr plain = NumberedRows::makeRow(false);
    QList<tvFieldPtr> fields;
    for (int index = 1; index <= plain->FieldCount(); ++index) {
        if (plain->Item(index)->Name() != other->Name())
            fields << plain->Item(index);
    }
    auto row = std::make_shared<MemoryRow>(fields << other, false);
    AttachmentsForm::set(*row, "FileName", u"2014\\03\\special.png"_s);
    AttachmentsForm::set(*row, "OriginalFileName", u"special.png"_s);
    return row;
}

/// Sends a repeat of keys that are held down.
inline void repeatUndoKeys(AttachmentsForm& form)
{
    QTest::simulateEvent(form.window.windowHandle(), true, Qt::Key_Z, Qt::ControlModifier, QString(), true,
                         -1);
}

/// All fields of a row, as one text.
inline QString fieldsOf(tvTableRow& row)
{
    QStringList fields;
    for (int index = 1; index <= row.FieldCount(); ++index)
        fields << row.Item(index)->Name() + u'=' + ToText(row.Item(index)->Value());
    return fields.join(u'|');
}

/// The key of the cover; 0 for none.
inline int coverOf(const AttachmentsForm& form)
{
    const qint32 index = form.rows->PrimaryIndex();
    return index == 0 ? 0 : form.text(index, "SeqNo").toInt();
}

inline bool open(AttachmentsForm& form)
{
    prepare(form);
    return form.open();
}

} // namespace tavrin::test
