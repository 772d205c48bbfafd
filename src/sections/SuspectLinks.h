#pragma once

#include "frame/host_contracts/Records.h"

#include <QHash>

#include <vector>

namespace tavrin {

/// The link rows of one suspect, for one read or write of all parties.
///
/// Numbers compare as numbers, whatever their types; texts equal texts only, and Null equals Null.
///
/// Each search gives what a walk from the first row gives: the first row whose field equals the value. But
/// a row is read once only, when the walk first comes to it; so that all searches together cost one walk.
/// What somebody else adds, removes or changes meanwhile starts the walk anew. Nothing is read, and no
/// collection asked for, before the first search.
class SuspectLinks
{
public:
    /// The collection is a child of the suspect's record.
    SuspectLinks(tvBusinessObjectPtr suspect, QString collectionName, QString fieldName);

    /// The first row whose field equals the value; nullptr when none does.
    tvTableRowPtr find(const QVariant& value);
    /// A new row, the current one.
    tvTableRowPtr add();
    /// Puts the code into the first row whose field equals the party's "SeqNo". Where there is none a new row
    /// gets it, with references to that number and to the one of the current suspect; a failure on the way
    /// takes that row back.
    void relate(tvTableRow& party, const tvTableCollectionPtr& suspects, const QString& code);
    /// Removes the first row whose field equals the value, with the next save. Raises error 6 where the row
    /// is out of the range of a position.
    void remove(const QVariant& value);

private:
    struct Link
    {
        QVariant value;
        qint32 ordinal; // counted from 0, removed rows included
    };

    tvTableCollection& links();
    QVariant valueAt(qint32 ordinal);
    qint32 positionOf(qint32 ordinal) const;
    /// Ordinal of the first row; -1 for none.
    qint32 locate(const QVariant& value);
    qint32 walkOnTo(const QVariant& value);
    void startAnew();
    /// Removes the row that was added last.
    void takeBack(qint32 index);

    tvBusinessObjectPtr m_suspect;
    QString m_collectionName;
    QString m_fieldName;
    tvTableCollectionPtr m_links;
    QHash<QString, std::vector<Link>> m_known; // rows that the walk has passed
    std::vector<qint32> m_removed;             // ordinals, ascending
    qint32 m_walked = 0;
    qint32 m_count = 0; // rows that there should be
};

} // namespace tavrin
