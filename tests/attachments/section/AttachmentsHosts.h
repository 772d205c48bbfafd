#pragma once

#include "attachments/section/AttachmentsForm.h"

#include <QTest>

// For tests that run with each kind of host.

namespace tavrin::test {

inline void addHosts()
{
    QTest::addColumn<bool>("makesRowsAnew");
    QTest::newRow("a host that keeps its rows") << false;
    QTest::newRow("a host that makes rows anew") << true;
}

/// Adds three rows to those of the host.
inline void prepare(AttachmentsForm& form)
{
    QFETCH_GLOBAL(bool, makesRowsAnew);
    if (makesRowsAnew)
        form.rows->makeRowsAnew();
    form.addThree();
}

} // namespace tavrin::test
