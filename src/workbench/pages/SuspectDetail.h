#pragma once

#include "host/records/Record.h"
#include "workbench/bindings/CodeBinding.h"
#include "workbench/pages/FormLoading.h"

#include <QWidget>

#include <memory>
#include <vector>

class QGridLayout;

namespace tavrin {
class BoundSection;
class ListView;
class UserControl;
} // namespace tavrin

namespace tavrin::workbench {

/// The fields and the sections of the suspect at the current position of a record's suspects.
class SuspectDetail final : public QWidget
{
    Q_OBJECT

public:
    /// The form's drop-downs stand in lines of two, its sections below each other.
    SuspectDetail(const LoadedForm& form, QStringList& problems, QWidget* parent);

    /// What the person has typed into the name.
    QString name() const;
    QWidget* nameField() const { return m_bindings.front()->widget(); }

    void load(Record& record);
    /// Something was edited since `load` or `store`.
    bool differs(Record& record) const;
    /// Writes all into the record. A section that is not complete is written as far as it goes.
    void store(Record& record);
    /// Raises a `SectionRefusal` for the first section that is not complete; `load` or `store` must have been
    /// called for the same suspect.
    void check(Record& record) const;

    Event<> Edited;

protected:
    void showEvent(QShowEvent* event) override;

private:
    struct Section
    {
        BoundSection* bound;
        UserControl* control; // the same object
        ListView* list;       // in it
        QStringList loaded;   // what the list held when it was last the same as the record

        QStringList rows() const;
    };

    void addControl(UserControl* control, const FormFile::Control& form);
    void addCode(std::unique_ptr<CodeBinding> binding);
    void addSection(UserControl* control, BoundSection* bound, const QString& label);
    void addBinding(std::unique_ptr<FieldBinding> binding);
    void edited();
    void storeName();
    static tvTableRow& suspect(Record& record);

    QGridLayout* m_grid;
    int m_row = 0;
    int m_half = 0;                                        // where the next drop-down goes
    std::vector<std::unique_ptr<FieldBinding>> m_bindings; // the name is the first
    std::vector<CodeBinding*> m_codes;                     // of them
    std::vector<Section> m_sections;
    std::vector<Subscription> m_subscriptions;
    tvTableRowPtr m_suspect; // that was loaded last
    bool m_loading = false;
};

} // namespace tavrin::workbench
