#include "workbench/pages/PickerRow.h"

#include "base/failure/Guard.h"
#include "base/values/Variant.h"
#include "workbench/bindings/SearchTyping.h"
#include "workbench/pages/RowDetails.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QScrollArea>
#include <QTimer>

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
    , m_value(*picker, *picker)
{
    picker->setParent(this);
    auto* layout = new QHBoxLayout;
    layout->setSpacing(12);
    layout->addWidget(picker);
    if (!m_fields.flag.isEmpty()) {
        m_flag = new QCheckBox(m_fields.flagLabel, this);
        m_flag->setObjectName(m_fields.flag);
        m_flag->setChecked(true);
        connectGuarded(m_flag, &QCheckBox::clicked, this, "PickerRow_Flag", [this] { Edited.raise(); });
        layout->addWidget(m_flag);
    }
    addRemoveButton(*layout);
    if (picker->sizePolicy().horizontalPolicy() == QSizePolicy::Fixed)
        layout->addStretch(1);
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addLayout(layout);
    if (RowDetails::isWanted(m_fields.details)) {
        m_details = new RowDetails(m_fields.details, this);
        m_details->hide();
        whole->addWidget(m_details);
        m_detailsEdited = m_details->Edited.subscribe([this] { Edited.raise(); });
    }
    connectGuarded(picker, &SearchPicker::Change, this, "PickerRow_Change", [this] { pickerChanged(); });
    followTyping(*picker, [this] {
        if (!m_loading)
            Typed.raise();
    });
}

void PickerRow::addRemoveButton(QHBoxLayout& layout)
{
    m_remove = new QPushButton(tr("Remove"), this);
    m_remove->setObjectName(QStringLiteral("remove"));
    m_remove->setFlat(true); // many in a column
    QPalette quiet = m_remove->palette();
    quiet.setColor(QPalette::ButtonText, quiet.color(QPalette::Link));
    m_remove->setPalette(quiet);
    connectGuarded(m_remove, &QPushButton::clicked, this, "PickerRow_Remove",
                   [this] { RemoveAsked.raise(); });
    layout.addWidget(m_remove);
}

void PickerRow::refreshDetails()
{
    if (m_details)
        m_details->setVisible(!isEmpty());
}

void PickerRow::scrollIntoView()
{
    QTimer::singleShot(0, this, [this] { // when it has its place
        guard("PickerRow_Scroll", [this] {
            for (QWidget* above = parentWidget(); above; above = above->parentWidget()) {
                auto* page = qobject_cast<QScrollArea*>(above);
                if (!page)
                    continue;
                const QPoint corner = mapTo(page->widget(), QPoint());
                page->ensureVisible(corner.x(), corner.y() + height(), 0, 0);
                page->ensureVisible(corner.x(), corner.y(), 0, 0);
                return;
            }
        });
    });
}

void PickerRow::pickerChanged()
{
    if (m_loading)
        return;
    m_value.touched();
    const bool hadDetails = m_details && !m_details->isHidden();
    refreshDetails();
    if (m_details && !hadDetails && !m_details->isHidden())
        scrollIntoView();
    Edited.raise();
}

QWidget* PickerRow::chainBehind(QWidget* before) const
{
    // Either the picker or its box, whichever takes the focus now: Qt would move just one of the two.
    QWidget* box = m_picker->focusProxy();
    QWidgetList stops{box ? box : m_picker, m_flag};
    if (m_details)
        stops << m_details->tabStops();
    stops << m_remove;
    for (QWidget* next : std::as_const(stops)) {
        if (next) {
            setTabOrder(before, next);
            before = next;
        }
    }
    return before;
}

void PickerRow::load(Record& record, const tvTableRowPtr& stored)
{
    const QScopedValueRollback loading(m_loading, true);
    m_stored = stored;
    m_value.load(stored ? fieldOf(*stored, m_fields.value)->Value() : Null(), m_usedValues);
    if (stored && m_flag)
        m_flag->setChecked(isYes(*fieldOf(*stored, m_fields.flag)));
    if (m_details)
        m_details->load(record, m_fields.collection, std::dynamic_pointer_cast<RecordRow>(stored));
    refreshDetails();
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
    if (!m_picker->TypedText().isEmpty())
        return true;
    if (!m_stored)
        return !isEmpty();
    return m_value.differs(*fieldOf(*m_stored, m_fields.value)) || flagDiffers() ||
           (m_details && m_details->differs());
}

void PickerRow::releaseIfCleared()
{
    if (isEmpty())
        m_stored = nullptr;
}

void PickerRow::store(Record& record, tvTableCollection& rows)
{
    if (isEmpty())
        return;
    const bool isNew = !m_stored;
    if (isNew)
        m_stored = rows.AddNew();
    m_value.store(*fieldOf(*m_stored, m_fields.value));
    if (m_flag && (isNew || flagDiffers()))
        fieldOf(*m_stored, m_fields.flag)->SetValue(m_flag->isChecked());
    if (m_details)
        m_details->store(record, m_fields.collection, std::dynamic_pointer_cast<RecordRow>(m_stored));
}

} // namespace tavrin::workbench
