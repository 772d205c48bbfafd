#include "sections/CollectionTag.h"

#include "frame/host_contracts/HostObjects.h"

#include <QStringList>

namespace tavrin {

tvTableCollectionPtr resolveCollectionTag(const QString& tag, const tvBusinessObjectPtr& record)
{
    const QString invalid = QStringLiteral("Invalid collection tag. ");
    // An empty text has no segments at all.
    const QStringList segments = tag.isEmpty() ? QStringList() : tag.split(u'.');
    if (segments.isEmpty() || segments.size() > 2)
        throw Error(invalid + tag + QStringLiteral(" has too many segments (should be 0 or 1)."));
    tvBusinessObjectPtr parent = record;
    if (segments.size() == 2) {
        parent = std::dynamic_pointer_cast<tvBusinessObject>(
            required(record, QStringLiteral("record")).Item(segments.first()));
        if (!parent)
            throw Error(invalid + segments.first() + QStringLiteral(" should refer to an tvBusinessObject."));
    }
    auto collection = std::dynamic_pointer_cast<tvTableCollection>(
        required(parent, QStringLiteral("record")).Item(segments.last()));
    if (!collection)
        throw Error(invalid + tag + QStringLiteral(" should refer to an tvTableCollection."));
    return collection;
}

} // namespace tavrin
