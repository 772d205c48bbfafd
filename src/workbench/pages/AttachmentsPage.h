#pragma once

#include "workbench/pages/RecordPage.h"

#include <QTimer>

namespace tavrin {
class Attachments;
class TextArea;
} // namespace tavrin

namespace tavrin::workbench {

/// The files of an incident.
class AttachmentsPage final : public RecordPage
{
    Q_OBJECT

public:
    AttachmentsPage();

    void load(Record& record) override;
    /// A comment that was typed waits in its box until another file is clicked or the record is saved.
    bool differs(Record& record) const override;
    void store(Record& record) override;
    QWidget* spelledText() const override;

private:
    Attachments* m_attachments;
    TextArea* m_comment;
    Subscription m_recordChanged;
    QTimer m_tellLater;
    bool m_loading = false;
};

} // namespace tavrin::workbench
