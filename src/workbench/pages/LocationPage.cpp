#include "workbench/pages/LocationPage.h"

#include "base/failure/Error.h"
#include "base/values/Variant.h"
#include "geocode/LatLong.h"
#include "widgets/boxes/FlatOptionButton.h"
#include "widgets/boxes/TextBox.h"
#include "workbench/application/Theme.h"

#include <QLabel>
#include <QScopedValueRollback>
#include <QVBoxLayout>

namespace tavrin::workbench {

namespace {

RecordRowPtr locationOf(const Record& record)
{
    RecordRowPtr row = record.part(QStringLiteral("LocationName"));
    if (!row)
        throw Error(QStringLiteral("The record has no location"));
    return row;
}

} // namespace

LocationPage::LocationPage()
    : RecordPage(tr("Location"))
    , m_coordinates(new LatLong(this))
    , m_latitude(m_coordinates->findChild<TextBox*>(QStringLiteral("txtLat")))
    , m_longitude(m_coordinates->findChild<TextBox*>(QStringLiteral("txtLong")))
    , m_manual(m_coordinates->findChild<FlatOptionButton*>(QStringLiteral("optGeocodeOnSave0")))
{
    auto* heading = new QLabel(tr("Coordinates"), this);
    QFont font = heading->font();
    font.setBold(true);
    heading->setFont(font);
    auto* hint = new QLabel(tr("Each save works them out from the address and the city on the first page, "
                               "unless you enter them yourself."),
                            this);
    hint->setWordWrap(true);
    QPalette palette = hint->palette();
    palette.setColor(QPalette::WindowText, quietText(palette));
    hint->setPalette(palette);
    m_coordinates->setObjectName(QStringLiteral("Coordinates"));
    m_coordinates->setAccessibleName(heading->text());
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 16, 24, 16);
    layout->setSpacing(8);
    layout->addWidget(heading);
    layout->addWidget(hint);
    layout->addSpacing(8);
    layout->addWidget(m_coordinates);
    layout->addStretch(1);
    // Behind the control's own subscriptions: the record then holds the option that was chosen.
    for (FlatOptionButton* option : m_coordinates->findChildren<FlatOptionButton*>())
        m_subscriptions.push_back(option->Click.subscribe([this] { edited(); }));
    for (TextBox* box : {m_latitude, m_longitude})
        m_subscriptions.push_back(box->Change.subscribe([this] { edited(); }));
}

void LocationPage::edited()
{
    if (!m_loading)
        Edited.raise();
}

void LocationPage::load(Record& record)
{
    RecordPage::load(record);
    const QScopedValueRollback loading(m_loading, true);
    const RecordRowPtr row = locationOf(record);
    // What the control sets in a new record is no change of the person's.
    if (row->IsNew())
        row->cell(QStringLiteral("GeocodeOnSave")).noteSaved(true);
    BoundSection& section = *m_coordinates;
    section.ReadData(record.shared_from_this());
}

bool LocationPage::differs(Record& record) const
{
    if (RecordPage::differs(record))
        return true;
    if (!m_manual->Value())
        return false; // the option itself is in the record from the click on
    const RecordRowPtr row = locationOf(record);
    const auto holds = [&](const char* column, const TextBox& box) {
        return ToText(row->cell(QLatin1String(column)).value()) == box.Text();
    };
    return !holds("Latitude", *m_latitude) || !holds("Longitude", *m_longitude);
}

void LocationPage::store(Record& record)
{
    RecordPage::store(record);
    if (!differs(record))
        return; // nobody has chosen: the record keeps that
    BoundSection& section = *m_coordinates;
    section.WriteData(record.shared_from_this());
}

} // namespace tavrin::workbench
