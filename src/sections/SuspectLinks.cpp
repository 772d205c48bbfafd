#include "sections/SuspectLinks.h"

#include "base/values/Variant.h"
#include "frame/control_frame/FailurePolicy.h"
#include "frame/host_contracts/Host.h"
#include "frame/host_contracts/HostObjects.h"

#include <QScopeGuard>

#include <algorithm>

namespace tavrin {

namespace {

const QString OtherKey = QStringLiteral("other");

/// Equal values have equal keys, and unequal ones do not, but for `OtherKey`.
QString keyOf(const QVariant& value)
{
    if (IsNull(value))
        return QStringLiteral("null");
    if (value.typeId() == QMetaType::QString)
        return u's' + value.toString(); // a text never equals a number
    if (IsEmpty(value) || value.typeId() == QMetaType::QByteArray)
        return OtherKey;
    bool isNumber = false;
    const double number = value.toDouble(&isNumber) + 0.0; // no negative zero
    return isNumber ? u'n' + QString::number(number, 'g', 17) : OtherKey;
}

bool isEqual(const QVariant& a, const QVariant& b)
{
    const QString key = keyOf(a);
    return key == keyOf(b) && (key != OtherKey || a == b);
}

} // namespace

SuspectLinks::SuspectLinks(tvBusinessObjectPtr suspect, QString collectionName, QString fieldName)
    : m_suspect(std::move(suspect))
    , m_collectionName(std::move(collectionName))
    , m_fieldName(std::move(fieldName))
{
}

tvTableCollection& SuspectLinks::links()
{
    if (!m_links) {
        m_links = childOf<tvTableCollection>(*m_suspect, m_collectionName);
        m_count = m_links->Count();
    }
    return *m_links;
}

void SuspectLinks::startAnew()
{
    m_known.clear();
    m_removed.clear();
    m_walked = 0;
    m_count = links().Count();
}

qint32 SuspectLinks::positionOf(qint32 ordinal) const
{
    const auto removedBefore = std::lower_bound(m_removed.begin(), m_removed.end(), ordinal);
    return ordinal + 1 - static_cast<qint32>(removedBefore - m_removed.begin());
}

QVariant SuspectLinks::valueAt(qint32 ordinal)
{
    return fieldOf(*links().Item(positionOf(ordinal)), m_fieldName)->Value();
}

qint32 SuspectLinks::walkOnTo(const QVariant& value)
{
    const qint32 end = m_count + static_cast<qint32>(m_removed.size());
    while (m_walked < end) {
        const qint32 ordinal = m_walked;
        const QVariant present = valueAt(ordinal);
        m_known[keyOf(present)].push_back({present, ordinal});
        ++m_walked;
        if (isEqual(present, value))
            return ordinal;
    }
    return -1;
}

qint32 SuspectLinks::locate(const QVariant& value)
{
    if (links().Count() != m_count)
        startAnew();
    for (const Link& link : m_known.value(keyOf(value))) {
        if (!isEqual(link.value, value))
            continue;
        if (isEqual(valueAt(link.ordinal), value))
            return link.ordinal;
        startAnew(); // the row holds another value by now
        break;
    }
    return walkOnTo(value);
}

tvTableRowPtr SuspectLinks::find(const QVariant& value)
{
    const qint32 ordinal = locate(value);
    return ordinal < 0 ? nullptr : links().Item(positionOf(ordinal));
}

tvTableRowPtr SuspectLinks::add()
{
    links().AddNew();
    m_count = links().Count();
    return links().Item(links().Position());
}

void SuspectLinks::takeBack(qint32 index)
{
    tvTableCollection& rows = links();
    if (rows.Count() == index) { // else it was not added, or nobody can tell where it is by now
        rows.SetPosition(ToInteger(index));
        rows.RemoveCurrent(false);
    }
    startAnew();
}

void SuspectLinks::relate(tvTableRow& party, const tvTableCollectionPtr& suspects, const QString& code)
{
    const QString seqNo = QStringLiteral("SeqNo");
    const QString relationNo = QStringLiteral("RelationNo");
    const tvFieldPtr partyNo = fieldOf(party, seqNo);
    if (const tvTableRowPtr row = find(partyNo->Value())) {
        fieldOf(*row, relationNo)->SetValue(code);
        return;
    }
    Session& session = currentHost().session();
    // A row that lacks a number would be saved with the next record, and lead nowhere.
    const qint32 index = m_count + 1;
    auto undo = qScopeGuard([&] { continueOnError([&] { takeBack(index); }); });
    const tvTableRowPtr row = add();
    tvTableCollection& all = required(suspects, QStringLiteral("collection of suspects"));
    fieldOf(*row, m_fieldName)->SetValue(session.MakeFieldReference(partyNo));
    fieldOf(*row, seqNo)->SetValue(session.MakeFieldReference(fieldOf(*all.Item(all.Position()), seqNo)));
    fieldOf(*row, relationNo)->SetValue(code);
    undo.dismiss();
}

void SuspectLinks::remove(const QVariant& value)
{
    const qint32 ordinal = locate(value);
    if (ordinal < 0)
        return;
    links().SetPosition(ToInteger(positionOf(ordinal)));
    links().RemoveCurrent(false);
    auto& known = m_known[keyOf(value)];
    std::erase_if(known, [ordinal](const Link& link) { return link.ordinal == ordinal; });
    m_removed.insert(std::upper_bound(m_removed.begin(), m_removed.end(), ordinal), ordinal);
    --m_count;
}

} // namespace tavrin
