#include "workbench/pages/PickerRows.h"

#include "base/failure/Error.h"
#include "base/failure/Guard.h"
#include "base/values/Variant.h"
#include "component/ClassRegister.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <QVariantList>

#include <algorithm>

namespace tavrin::workbench {

PickerRows::PickerRows(FormFile::Control form, QLabel* heading, QWidget* parent)
    : QWidget(parent)
    , m_form(std::move(form))
    , m_heading(heading)
    , m_layout(new QVBoxLayout(this))
    , m_add(new QPushButton(hostText("add"), this))
{
    setObjectName(hostText("collection"));
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(8);
    if (m_add->text().isEmpty())
        m_add->setText(tr("&Add"));
    m_add->setObjectName(QStringLiteral("add") + hostText("collection"));
    m_layout->addWidget(m_add, 0, Qt::AlignLeft);
    connectGuarded(m_add, &QPushButton::clicked, this, "PickerRows_Add", [this] { addByPerson(); });
    m_heading->setBuddy(m_add);
}

QString PickerRows::hostText(const char* key) const
{
    return m_form.host.value(QLatin1String(key)).toString();
}

tvTableCollectionPtr PickerRows::collectionOf(Record& record) const
{
    tvTableCollectionPtr rows = record.collection(hostText("collection"));
    if (!rows)
        throw Error(QStringLiteral("The record has no collection %1").arg(hostText("collection")));
    return rows;
}

// The record

void PickerRows::load(Record& record)
{
    m_record = record.weak_from_this();
    const auto before = m_lines;
    for (PickerRow* line : before)
        takeAway(line);
    const tvTableCollectionPtr rows = collectionOf(record);
    for (const tvTableRowPtr& row : *rows)
        addLine(record, row);
    refreshLines();
}

bool PickerRows::keeps(const tvTableRowPtr& stored) const
{
    return std::any_of(m_lines.begin(), m_lines.end(),
                       [&](const PickerRow* line) { return line->stored() == stored; });
}

bool PickerRows::differs(Record& record) const
{
    const tvTableCollectionPtr rows = collectionOf(record);
    for (const tvTableRowPtr& row : *rows) {
        if (!keeps(row))
            return true;
    }
    return std::any_of(m_lines.begin(), m_lines.end(), [](const PickerRow* line) { return line->differs(); });
}

void PickerRows::store(Record& record)
{
    const tvTableCollectionPtr rows = collectionOf(record);
    for (PickerRow* line : m_lines)
        line->releaseIfCleared();
    for (qint32 i = rows->Count(); i >= 1; --i) {
        if (!keeps(rows->Item(i))) {
            rows->SetPosition(static_cast<qint16>(i));
            rows->RemoveCurrent(false);
        }
    }
    for (PickerRow* line : m_lines)
        line->store(record, *rows);
}

std::optional<FieldProblem> PickerRows::firstProblem() const
{
    for (const PickerRow* line : m_lines) {
        if (const QString typed = line->picker().TypedText(); !typed.isEmpty())
            return FieldProblem{&line->picker(), notChosenText(typed, heading())};
    }
    return std::nullopt;
}

// The lines

QString PickerRows::heading() const
{
    return m_heading->text().remove(u'&');
}

PickerRow* PickerRows::addLine(Record& record, const tvTableRowPtr& stored)
{
    const ControlSite site{m_form.name, &m_form.properties};
    auto* picker = qobject_cast<SearchPicker*>(publicControls().create(m_form.className, this, site));
    auto* line = new PickerRow(
        picker,
        {hostText("collection"), hostText("field"), hostText("flag"), hostText("flagLabel"), m_form.host},
        this);
    picker->setAccessibleName(heading());
    if (QWidget* box = picker->focusProxy())
        box->setAccessibleName(heading());
    m_layout->insertWidget(m_layout->count() - 1, line);
    m_subscriptions.push_back(line->Edited.subscribe([this] { linesChanged(); }));
    m_subscriptions.push_back(line->Typed.subscribe([this] { Edited.raise(); }));
    m_subscriptions.push_back(line->RemoveAsked.subscribe([this, line] { removeLine(line); }));
    line->load(record, stored);
    m_lines.push_back(line);
    return line;
}

void PickerRows::addByPerson()
{
    const auto empty =
        std::find_if(m_lines.begin(), m_lines.end(), [](const PickerRow* line) { return line->isEmpty(); });
    const RecordPtr record = m_record.lock();
    if (!record)
        return; // nothing was loaded
    PickerRow* line = empty != m_lines.end() ? *empty : addLine(*record, nullptr);
    refreshLines();
    line->show(); // now, not with the next layout: what is hidden takes no keys
    line->picker().setFocus(Qt::OtherFocusReason);
    line->scrollIntoView();
}

void PickerRows::takeAway(PickerRow* line)
{
    std::erase(m_lines, line);
    m_layout->removeWidget(line);
    line->hide();
    line->deleteLater(); // its button may be under way
}

void PickerRows::removeLine(PickerRow* line)
{
    const auto place =
        static_cast<std::size_t>(std::find(m_lines.begin(), m_lines.end(), line) - m_lines.begin());
    QWidget* next = m_add; // where the keyboard goes on
    if (place + 1 < m_lines.size())
        next = &m_lines[place + 1]->picker();
    next->setFocus(Qt::OtherFocusReason);
    takeAway(line);
    linesChanged();
}

void PickerRows::linesChanged()
{
    refreshLines();
    Edited.raise();
}

void PickerRows::refreshLines()
{
    for (PickerRow* line : m_lines) {
        QVariantList others;
        for (const PickerRow* other : m_lines) {
            if (other != line && !IsNull(other->value()))
                others << other->value();
        }
        line->setUsedValues(others);
    }
    QWidget* last = m_add;
    for (const PickerRow* line : m_lines)
        last = line->chainBehind(last);
    setTabOrder(last, m_add);
    m_heading->setBuddy(m_lines.empty() ? static_cast<QWidget*>(m_add) : &m_lines.front()->picker());
}

} // namespace tavrin::workbench
