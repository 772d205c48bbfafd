#pragma once

#include "NumberedList.h"

namespace tavrin {

class PictureSurface;

/// The host's employees, as both employee pickers search and show them.
class EmployeeList final : public NumberedList
{
public:
    /// Restricts a search to handlers of dogs.
    static QString k9HandlersOnly();

    EmployeeList();

    /// Leaves out those whom the host's filter excludes: called once for each row, with the officer's number
    /// and an answer by reference. A record without a number counts as 0; one that does not fit into 32 bits
    /// raises error 6.
    std::vector<XmlNode> filtered(std::vector<XmlNode> employees,
                                  const std::function<void(qint32 officerNo, bool& exclude)>& filter) const;

    /// Officer id and name with the match marked, and the badge in a column of its own. The picture has its
    /// font already.
    void drawRow(PictureSurface& picture, const XmlNode& employee, const QString& query) const;
};

} // namespace tavrin
