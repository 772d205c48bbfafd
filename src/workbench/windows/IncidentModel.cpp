#include "workbench/windows/IncidentModel.h"

namespace tavrin::workbench {

IncidentModel::IncidentModel(QString dateFormat, QObject* parent)
    : QAbstractTableModel(parent)
    , m_dateFormat(std::move(dateFormat))
{
}

void IncidentModel::setIncidents(QList<IncidentSummary> incidents)
{
    beginResetModel();
    m_incidents = std::move(incidents);
    endResetModel();
}

qint64 IncidentModel::incidentNo(int row) const
{
    return row >= 0 && row < m_incidents.size() ? m_incidents.at(row).IncidentNo : 0;
}

int IncidentModel::rowOf(qint64 incidentNo) const
{
    for (int row = 0; row < m_incidents.size(); ++row) {
        if (m_incidents.at(row).IncidentNo == incidentNo)
            return row;
    }
    return -1;
}

int IncidentModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_incidents.size());
}

int IncidentModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant IncidentModel::data(const QModelIndex& index, int role) const
{
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return {};
    const IncidentSummary& incident = m_incidents.at(index.row());
    switch (index.column()) {
    case CaseNo:
        return incident.CaseNo;
    case Reported:
        return incident.ReportedAt.toString(m_dateFormat + QStringLiteral(" HH:mm"));
    case Summary:
        return incident.Summary;
    case Address:
        return incident.Address;
    case City:
        return incident.City;
    case Status:
        return incident.Status;
    default:
        return {};
    }
}

QVariant IncidentModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole)
        return QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    if (role != Qt::DisplayRole)
        return {};
    const QStringList names{tr("Case"),    tr("Reported"), tr("Summary"),
                            tr("Address"), tr("City"),     tr("Status")};
    return names.value(section);
}

} // namespace tavrin::workbench
