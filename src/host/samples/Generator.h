#pragma once

#include "host/database/DataFiles.h"
#include "host/lists/HostRows.h"

namespace tavrin {

/// Makes lists of any length from a seed, for tests and figures: the same seed gives the same rows on every
/// platform, whatever else was asked for before.
class Generator
{
public:
    /// Word lists from the files that are built in, or from those of a folder of the same layout.
    explicit Generator(quint64 seed, const QString& folder = {});

    /// Numbers count up from `firstNumber`; one in ten is inactive, one in twelve a dog handler.
    QList<EmployeeRow> employees(int count, int firstNumber = 1) const;
    /// One user for each of `employees`, with a sign-on name of its own.
    QList<UserRow> users(const QList<EmployeeRow>& employees) const;
    QList<OffenseRow> offenses(int count, int firstNumber = 1) const;
    /// Values of one code table, at most 32,767 of them.
    QList<CodeValueRow> codeValues(int tableNo, int count) const;

private:
    quint64 m_seed;
    QStringList m_firstNames;
    QStringList m_lastNames;
    QStringList m_streets;
    QStringList m_offenseWords;
};

} // namespace tavrin
