#include "PickerRow.h"

#include "base/Guard.h"
#include "base/Variant.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QScopedValueRollback>

namespace tavrin::workbench {

namespace {

bool isYes(const tvField& flag)
{
    return !IsNull(flag.Value()) && ToBoolean(flag.Value());
}

} // namespace

PickerRow::PickerRow(SearchPicker* picker, RowFields fields, QWidget* parent)
    : QWidget(parent)
    , m_fields(std::move(fields))
    , m_picker(picker)
    , m_remove(nullptr)
    , m_value(*picker)
{
    picker->setParent(this);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(12);
    layout->addWidget(picker);
    if (!m_fields.flag.isEmpty()) {
        m_flag = new QCheckBox(m_fields.flagLabel, this);
        m_flag->setObjectName(m_fields.flag);
        m_flag->setChecked(true);
        connectGuarded(m_flag, &QCheckBox::clicked, this, "PickerRow_Flag", [this] { Edited.raise(); });
        layout->addWidget(m_flag);
    }
    m_remove = new QPushButton(tr("Remove"), this);
    m_remove->setObjectName(QStringLiteral("remove"));
    m_remove->setFlat(true); // many in a column
    QPalette quiet = m_remove->palette();
    quiet.setColor(QPalette::ButtonText, quiet.color(QPalette::Link));
    m_remove->setPalette(quiet);
    connectGuarded(m_remove, &QPushButton::clicked, this, "PickerRow_Remove",
                   [this] { RemoveAsked.raise(); });
    layout->addWidget(m_remove);
    if (picker->sizePolicy().horizontalPolicy() == QSizePolicy::Fixed)
        layout->addStretch(1);
    connectGuarded(picker, &SearchPicker::Change, this, "PickerRow_Change", [this] { pickerChanged(); });
}

void PickerRow::pickerChanged()
{
    if (m_loading)
        return;
    m_value.touched();
    Edited.raise();
}

QWidget* PickerRow::chainBehind(QWidget* before) const
{
    // Either the picker or its box, whichever takes the focus now: Qt would move just one of the two.
    QWidget* box = m_picker->focusProxy();
    for (QWidget* next :
         {box ? box : m_picker, static_cast<QWidget*>(m_flag), static_cast<QWidget*>(m_remove)}) {
        if (next) {
            setTabOrder(before, next);
            before = next;
        }
    }
    return before;
}

void PickerRow::load(const tvTableRowPtr& stored)
{
    const QScopedValueRollback loading(m_loading, true);
    m_stored = stored;
    m_value.load(stored ? fieldOf(*stored, m_fields.value)->Value() : Null(), m_usedValues);
    if (stored && m_flag)
        m_flag->setChecked(isYes(*fieldOf(*stored, m_fields.flag)));
}

bool PickerRow::isEmpty() const
{
    return IsNull(value()) && (!m_stored || m_value.differs(*fieldOf(*m_stored, m_fields.value)));
}

bool PickerRow::flagDiffers() const
{
    return m_flag && m_flag->isChecked() != isYes(*fieldOf(*m_stored, m_fields.flag));
}

bool PickerRow::differs() const
{
    if (!m_stored)
        return !isEmpty();
    return m_value.differs(*fieldOf(*m_stored, m_fields.value)) || flagDiffers();
}

void PickerRow::releaseIfCleared()
{
    if (isEmpty())
        m_stored = nullptr;
}

void PickerRow::store(tvTableCollection& rows)
{
    if (isEmpty())
        return;
    const bool isNew = !m_stored;
    if (isNew)
        m_stored = rows.AddNew();
    m_value.store(*fieldOf(*m_stored, m_fields.value));
    if (m_flag && (isNew || flagDiffers()))
        fieldOf(*m_stored, m_fields.flag)->SetValue(m_flag->isChecked());
}

} // namespace tavrin::workbench
