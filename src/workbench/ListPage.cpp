#include "ListPage.h"

#include "Theme.h"
#include "base/Variant.h"
#include "frame/host_contracts/Host.h"

#include <QDate>
#include <QHeaderView>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace tavrin::workbench {

namespace {

struct Section
{
    const char* collection;
    const char* title;
    const char* nameField;
};

constexpr Section PeopleSections[] = {{"Victims", QT_TR_NOOP("Victims"), "VictimName"},
                                      {"Witnesses", QT_TR_NOOP("Witnesses"), "WitnessName"},
                                      {"Others", QT_TR_NOOP("Other people"), "OtherName"}};

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

void addNone(QTreeWidgetItem* section)
{
    if (section->childCount() == 0)
        (new QTreeWidgetItem(section, {QStringLiteral("None recorded")}))->setDisabled(true);
}

} // namespace

ListPage::ListPage()
    : RecordPage(tr("People"))
    , m_list(new CalmTree(this))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 16, 24, 16);
    layout->addWidget(m_list);
    m_list->setObjectName(QStringLiteral("people"));
    m_list->setAccessibleName(title());
    m_list->setHeaderLabels({tr("Name"), tr("Details")});
    m_list->setIndentation(16);
    m_list->setUniformRowHeights(true);
    m_list->setAlternatingRowColors(true);
    m_list->header()->setStretchLastSection(true);
    m_list->header()->resizeSection(0, 320);
    m_list->header()->setMinimumHeight(lineHeight(m_list->fontMetrics()));
}

void ListPage::load(Record& record)
{
    m_list->clear();
    for (const Section& people : PeopleSections) {
        QTreeWidgetItem* section = addSection(m_list, tr(people.title));
        for (const RecordRowPtr& row : record.collection(QString::fromLatin1(people.collection))->rows()) {
            const QString born = textOf(*row, "DateOfBirth");
            new QTreeWidgetItem(section, {textOf(*row, people.nameField),
                                          born.isEmpty() ? QString() : tr("Born %1").arg(born)});
        }
        addNone(section);
    }
}

} // namespace tavrin::workbench
