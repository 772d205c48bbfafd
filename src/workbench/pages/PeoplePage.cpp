#include "workbench/pages/PeoplePage.h"

#include "base/failure/Guard.h"
#include "base/values/Variant.h"
#include "frame/host_contracts/Host.h"
#include "workbench/application/Theme.h"

#include <QDate>
#include <QFocusEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace tavrin::workbench {

namespace {

/// What the people of one collection are.
struct Kind
{
    const char* collection;
    const char* title;
    const char* nameField;
    const char* add;
    const char* addName;
};

constexpr Kind Kinds[] = {{"Victims", QT_TRANSLATE_NOOP("PeoplePage", "Victims"), "VictimName",
                           QT_TRANSLATE_NOOP("PeoplePage", "Add &victim"), "addVictim"},
                          {"Witnesses", QT_TRANSLATE_NOOP("PeoplePage", "Witnesses"), "WitnessName",
                           QT_TRANSLATE_NOOP("PeoplePage", "Add &witness"), "addWitness"},
                          {"Others", QT_TRANSLATE_NOOP("PeoplePage", "Other people"), "OtherName",
                           QT_TRANSLATE_NOOP("PeoplePage", "Add &other person"), "addOther"}};
constexpr int KindCount = static_cast<int>(std::size(Kinds));

RecordCollection& peopleOf(const Record& record, int kind)
{
    return *record.collection(QString::fromLatin1(Kinds[kind].collection));
}

/// The text of a field that only some of the collections have.
QString textOf(tvTableRow& row, const char* name)
{
    const auto field = std::dynamic_pointer_cast<tvField>(row.Item(QString::fromLatin1(name)));
    if (!field || IsNull(field->Value()))
        return {};
    const QVariant value = field->Value();
    return value.typeId() == QMetaType::QDate
               ? value.toDate().toString(currentHost().hostServices().DateDisplayFormat())
               : ToText(value);
}

/// A list in which nothing is current until the person goes to it with a key or the mouse; the first heading
/// would look chosen otherwise.
class CalmTree final : public QTreeWidget
{
public:
    using QTreeWidget::QTreeWidget;

protected:
    void focusInEvent(QFocusEvent* event) override
    {
        const bool nothing = !currentIndex().isValid();
        QTreeWidget::focusInEvent(event);
        if (nothing)
            selectionModel()->setCurrentIndex({}, QItemSelectionModel::NoUpdate);
    }
};

QTreeWidgetItem* addSection(QTreeWidget* list, const QString& title)
{
    auto* section = new QTreeWidgetItem(list, {title});
    QFont font = list->font();
    font.setBold(true);
    section->setFont(0, font);
    section->setFirstColumnSpanned(true);
    section->setSizeHint(0, QSize(0, lineHeight(list->fontMetrics()))); // of all rows, as they are uniform
    section->setExpanded(true);
    return section;
}

} // namespace

PeoplePage::PeoplePage()
    : RecordPage(tr("People"))
    , m_list(new CalmTree(this))
    , m_name(new QLineEdit(this))
    , m_remove(new QPushButton(tr("Re&move"), this))
{
    build();
    connectGuarded(m_list, &QTreeWidget::currentItemChanged, this, "PeoplePage_GoTo",
                   [this] { showCurrent(); });
    connectGuarded(m_name, &QLineEdit::textEdited, this, "PeoplePage_Name",
                   [this](const QString& name) { nameEdited(name); });
    for (int kind = 0; kind < KindCount; ++kind)
        connectGuarded(m_adds.at(static_cast<std::size_t>(kind)), &QPushButton::clicked, this,
                       "PeoplePage_Add", [this, kind] { add(kind); });
    connectGuarded(m_remove, &QPushButton::clicked, this, "PeoplePage_Remove", [this] { removeCurrent(); });
}

void PeoplePage::build()
{
    m_list->setObjectName(QStringLiteral("people"));
    m_list->setAccessibleName(title());
    m_list->setHeaderLabels({tr("Name"), tr("Details")});
    m_list->setIndentation(16);
    m_list->setUniformRowHeights(true);
    m_list->setAlternatingRowColors(true);
    m_list->header()->setStretchLastSection(true);
    m_list->header()->resizeSection(0, 320);
    m_list->header()->setMinimumHeight(lineHeight(m_list->fontMetrics()));
    m_name->setObjectName(QStringLiteral("personName"));
    m_name->setAccessibleName(tr("Name"));
    m_name->setTextMargins(3, 2, 3, 2);
    auto* label = new QLabel(tr("&Name"), this);
    label->setBuddy(m_name);
    m_remove->setObjectName(QStringLiteral("removePerson"));

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(8);
    for (const Kind& kind : Kinds) {
        m_adds.push_back(new QPushButton(tr(kind.add), this));
        m_adds.back()->setObjectName(QLatin1String(kind.addName));
        buttons->addWidget(m_adds.back());
    }
    buttons->addStretch(1);
    buttons->addWidget(m_remove);
    auto* name = new QHBoxLayout;
    name->setSpacing(12);
    name->addWidget(label);
    name->addWidget(m_name, 1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 16, 24, 16);
    layout->setSpacing(8);
    layout->addWidget(m_list, 1);
    layout->addLayout(name);
    layout->addLayout(buttons);
    setTabOrder(m_list, m_name);
    setTabOrder(m_name, m_adds.front());
    for (std::size_t i = 1; i < m_adds.size(); ++i)
        setTabOrder(m_adds[i - 1], m_adds[i]);
    setTabOrder(m_adds.back(), m_remove);
}

// The list

RecordRowPtr PeoplePage::personOf(const QTreeWidgetItem* item) const
{
    if (!item || !item->parent() || !(item->flags() & Qt::ItemIsEnabled))
        return nullptr;
    const int kind = m_list->indexOfTopLevelItem(item->parent());
    return peopleOf(*m_record, kind)
        .rows()
        .at(static_cast<std::size_t>(item->parent()->indexOfChild(const_cast<QTreeWidgetItem*>(item))));
}

void PeoplePage::showName(QTreeWidgetItem& item, const QString& name)
{
    item.setText(0, name.trimmed().isEmpty() ? tr("(no name)") : name);
    item.setToolTip(0, name);
}

void PeoplePage::addLine(int kind, const RecordRowPtr& person) const
{
    const QString born = textOf(*person, "DateOfBirth");
    auto* item = new QTreeWidgetItem(m_list->topLevelItem(kind),
                                     {QString(), born.isEmpty() ? QString() : tr("Born %1").arg(born)});
    showName(*item, textOf(*person, Kinds[kind].nameField));
}

void PeoplePage::showNone(int kind) const
{
    QTreeWidgetItem* heading = m_list->topLevelItem(kind);
    if (peopleOf(*m_record, kind).rows().empty())
        (new QTreeWidgetItem(heading, {tr("None recorded")}))->setDisabled(true);
}

void PeoplePage::showCurrent()
{
    const RecordRowPtr person = personOf(m_list->currentItem());
    m_name->setEnabled(person != nullptr);
    m_remove->setEnabled(person != nullptr);
    if (!person) {
        m_name->clear();
        return;
    }
    const int kind = m_list->indexOfTopLevelItem(m_list->currentItem()->parent());
    const tvFieldPtr name = fieldOf(*person, QString::fromLatin1(Kinds[kind].nameField));
    m_name->setMaxLength(name->MaxLength() > 0 ? name->MaxLength() : 32767);
    m_name->setText(ToText(name->Value()));
}

// The record

void PeoplePage::load(Record& record)
{
    m_record = record.shared_from_this();
    const QSignalBlocker quiet(m_list);
    m_list->clear();
    for (int kind = 0; kind < KindCount; ++kind) {
        addSection(m_list, tr(Kinds[kind].title));
        for (const RecordRowPtr& person : peopleOf(record, kind).rows())
            addLine(kind, person);
        showNone(kind);
    }
    showCurrent();
}

void PeoplePage::storeRows(Record& record)
{
    for (int kind = 0; kind < KindCount; ++kind) {
        const auto& people = peopleOf(record, kind).rows();
        for (std::size_t i = 0; i < people.size(); ++i) {
            if (!textOf(*people[i], Kinds[kind].nameField).trimmed().isEmpty())
                continue;
            m_list->setCurrentItem(m_list->topLevelItem(kind)->child(static_cast<int>(i)));
            throw SectionRefusal(Error(tr("\"Name\" must be filled in; \"Unknown\" will do.")), m_name);
        }
    }
}

void PeoplePage::add(int kind)
{
    RecordCollection& people = peopleOf(*m_record, kind);
    QTreeWidgetItem* heading = m_list->topLevelItem(kind);
    if (people.rows().empty())
        delete heading->takeChild(0); // the line that tells it
    people.AddNew();
    addLine(kind, people.rows().back());
    m_list->setCurrentItem(heading->child(heading->childCount() - 1));
    heading->setExpanded(true);
    m_list->scrollToItem(m_list->currentItem());
    m_name->setFocus(Qt::OtherFocusReason);
    changed();
}

void PeoplePage::removeCurrent()
{
    QTreeWidgetItem* item = m_list->currentItem();
    if (!personOf(item))
        return;
    QTreeWidgetItem* heading = item->parent();
    const int kind = m_list->indexOfTopLevelItem(heading);
    const int index = heading->indexOfChild(item);
    RecordCollection& people = peopleOf(*m_record, kind);
    people.SetPosition(static_cast<qint16>(index + 1));
    people.RemoveCurrent(false); // and the relationships with it
    {
        const QSignalBlocker quiet(m_list); // the rows and the lines differ meanwhile
        delete heading->takeChild(index);
        showNone(kind);
        const int next = std::min(index, people.Count() - 1);
        m_list->setCurrentItem(next >= 0 ? heading->child(next) : heading);
    }
    showCurrent();
    m_list->setFocus(Qt::OtherFocusReason);
    changed();
}

void PeoplePage::nameEdited(const QString& name)
{
    QTreeWidgetItem* item = m_list->currentItem();
    const RecordRowPtr person = personOf(item);
    if (!person)
        return;
    const int kind = m_list->indexOfTopLevelItem(item->parent());
    fieldOf(*person, QString::fromLatin1(Kinds[kind].nameField))
        ->SetValue(name.isEmpty() ? Null() : QVariant(name));
    showName(*item, name);
    changed();
}

void PeoplePage::changed()
{
    PeopleChanged.raise();
    Edited.raise();
}

} // namespace tavrin::workbench
