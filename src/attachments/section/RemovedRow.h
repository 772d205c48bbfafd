#pragma once

#include "frame/host_contracts/Records.h"

#include <QString>
#include <QVariant>

namespace tavrin {

/// An attachment that a person has removed, and what it takes to put it back.
///
///     RemovedRow removed(*attachments, index, shownName, typedComment);
///     attachments->RemoveCurrent(false);
///     removed.noteRemoval(*attachments);
///     ...
///     removed.putBack(*attachments);
class RemovedRow
{
public:
    /// The row at `index`, before it goes. `notes` is its comment as it stands in the box.
    RemovedRow(tvTableCollection& attachments, qint32 index, QString name, QString notes);

    const QString& name() const { return m_name; }

    /// To be called when the row has gone and everybody has been told: which row is the cover by now.
    void noteRemoval(tvTableCollection& attachments);

    /// To be called when the person chooses a cover, or none: it stays when the row is put back.
    void noteChosenCover() { m_isCoverChosen = true; }

    /// Appends the row, with its key and fields, and makes the cover what it was, unless somebody has chosen
    /// another one since. A row that the collection does not take any more, since a save has deleted it,
    /// comes back as a copy of its own, with its key where that is free. One that has been put back already
    /// is left as it is. Raises what the collection, the comment or a follower raises, after all that can be
    /// done has been done.
    void putBack(tvTableCollection& attachments);

    /// Where the row stands, counted from 1; 0 while it is removed.
    qint32 indexIn(tvTableCollection& attachments) const;

private:
    void append(tvTableCollection& attachments);
    tvTableRowPtr copyFor(tvTableCollection& attachments, bool withKey) const;
    void restoreNotes() const;
    void restoreCover(tvTableCollection& attachments) const;

    tvTableRowPtr m_row;
    QString m_name;
    QString m_notes;
    QVariant m_key;
    QVariant m_coverBefore; // keys of rows, Null for none
    QVariant m_coverAfter;
    bool m_isCoverChosen = false;
};

} // namespace tavrin
