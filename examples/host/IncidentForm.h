#pragma once

#include <QString>
#include <QVariant>
#include <QWidget>

#include <TVBoundControls/Contracts.h>
#include <TVBoundControls/MemoryRecord.h>
#include <memory>

class QLabel;

namespace tavrin {
class AgencyPicker;
class MultiValue;
class SuspRelList;
} // namespace tavrin

/// One incident on the screen: an agency, its weapons, and how the suspect is related to the victims.
class IncidentForm : public QWidget
{
public:
    explicit IncidentForm(QWidget* parent = nullptr);

    /// Shows a record, which the form keeps. A form can be opened again with another one. Raises what the
    /// host raises.
    void open(const std::shared_ptr<tavrin::MemoryRecord>& incident);
    /// Writes what the form shows into the record and saves it. False when that is refused: the reason stands
    /// below the fields, and what was entered stays as it is.
    bool save();

    QString reason() const;
    tavrin::AgencyPicker& agency() { return *m_agency; }
    tavrin::MultiValue& weapons() { return *m_weapons; }

private:
    void fieldEdited();
    void tell(const QString& text);

    tavrin::AgencyPicker* m_agency;
    tavrin::MultiValue* m_weapons;
    tavrin::SuspRelList* m_relations;
    QLabel* m_message;
    const tavrin::BoundBinding m_weaponBinding;
    std::shared_ptr<tavrin::MemoryRecord> m_incident;
    QVariant m_shownAgency;
    bool m_isOpening = false;
};
