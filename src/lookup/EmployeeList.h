#pragma once

#include "lookup/NumberedList.h"

namespace tavrin {

class PictureSurface;

/// The host's employees, as both employee pickers search and show them.
class EmployeeList final : public NumberedList
{
public:
    /// Asks whether to leave an employee out: the officer's number, and the answer by reference.
    using Filter = std::function<void(qint32 officerNo, bool& exclude)>;

    EmployeeList();
    using NumberedList::search;

    /// Restricts a search to handlers of dogs.
    static QString k9HandlersOnly();
    /// Those of the employees whom the filter does not exclude. It is asked once for each, by 0 for one
    /// without a number. Raises error 6 for a number outside 32 bits.
    static XmlNodes filtered(XmlNodes employees, const Filter& filter);

    /// The search of both pickers: handlers of dogs only, if so wanted, and less those whom the filter
    /// excludes, if there is one.
    XmlNodes search(const QString& query, SearchOptions options, bool k9HandlersOnly, const Filter& filter);

    /// Officer id and name with the match marked, and the badge in a column of its own. The picture has its
    /// font already.
    void drawRow(PictureSurface& picture, const XmlNode& employee, const QString& query) const;
};

} // namespace tavrin
