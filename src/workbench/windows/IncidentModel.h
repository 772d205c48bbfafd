#pragma once

#include "host/records/RecordStore.h"

#include <QAbstractTableModel>

namespace tavrin::workbench {

/// The incidents of a search, one a row.
class IncidentModel final : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column
    {
        CaseNo,
        Reported,
        Summary,
        Address,
        City,
        Status,
        ColumnCount
    };

    IncidentModel(QString dateFormat, QObject* parent);

    void setIncidents(QList<IncidentSummary> incidents);
    /// 0 outside the list.
    qint64 incidentNo(int row) const;
    /// -1 when the incident is not in the list.
    int rowOf(qint64 incidentNo) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QString m_dateFormat;
    QList<IncidentSummary> m_incidents;
};

} // namespace tavrin::workbench
