#pragma once

#include "base/failure/Error.h"
#include "base/values/Variant.h"
#include "frame/memory_records/MemoryField.h"
#include "frame/memory_records/MemoryRow.h"
#include "geocode/LatLong.h"
#include "support/TestCase.h"
#include "testing/FakeDesktop.h"
#include "testing/FakeRecords.h"
#include "widgets/boxes/FlatOptionButton.h"
#include "widgets/boxes/TextBox.h"
#include "widgets/labels/FontIconLabel.h"
#include "widgets/labels/Label.h"
#include "widgets/labels/TextLink.h"
#include "widgets/panels/GroupBox.h"

#include <QPointer>

#include <map>

// What the tests of the coordinates share.

namespace tavrin::test {

inline const QString ManualMode = QStringLiteral("manual");
inline const QString OnSaveMode = QStringLiteral("on save");
inline const QString PoorMatch = QStringLiteral("Lat/long may be incorrect.");
inline const QString NotFound = QStringLiteral("Address not found.");
inline const QString Failed = QStringLiteral("A geocoding error occurred.");

/// A record with a location row, which notes what is written to it and may refuse.
class LocationRecord
{
public:
    explicit LocationRecord(bool isNew = false)
        : record(std::make_shared<FakeRecord>())
    {
        QList<tvFieldPtr> fields;
        for (const char* name :
             {"Latitude", "Longitude", "GeocodeOnSave", "GeocodeStatus", "GeocodeAccuracy",
              "GeocodeAccuracyType", "GeocodeError", "GeocodeInputAddress", "GeocodeOutputAddress"}) {
            auto field = std::make_shared<Field>(*this, QString::fromLatin1(name));
            m_fields[field->Name()] = field.get();
            fields << field;
        }
        record->SetItem(QStringLiteral("LocationName"), std::make_shared<MemoryRow>(fields, isNew));
    }
    LocationRecord(const LocationRecord&) = delete;
    LocationRecord& operator=(const LocationRecord&) = delete;

    QVariant get(const char* name) const { return m_fields.at(QString::fromLatin1(name))->value; }
    void put(const char* name, const QVariant& value)
    {
        m_fields.at(QString::fromLatin1(name))->value = value;
    }
    /// A choice of coordinates that are worked out at each save, and what came of the last time.
    void putGeocoded(const QVariant& status)
    {
        put("GeocodeOnSave", true);
        put("GeocodeStatus", status);
    }
    void putCoordinates(const QVariant& latitude, const QVariant& longitude)
    {
        put("Latitude", latitude);
        put("Longitude", longitude);
    }

    std::shared_ptr<FakeRecord> record;
    /// "Latitude=51.5", in their order.
    QStringList written;
    /// The field of this name raises when it is read or written.
    QString failing;
    /// Runs behind each write.
    std::function<void()> follower;

private:
    struct Field final : tvField
    {
        Field(LocationRecord& location, QString name)
            : m_location(location)
            , m_name(std::move(name))
        {
        }
        QVariant Value() const override
        {
            check();
            return value;
        }
        void SetValue(const QVariant& newValue) override
        {
            check();
            value = newValue;
            m_location.written << m_name + u'=' + ToText(newValue);
            if (m_location.follower)
                m_location.follower();
        }
        QString Name() const override { return m_name; }
        bool IsKey() const override { return false; }
        qint32 MaxLength() const override { return 0; }

        QVariant value = Null();

    private:
        void check() const
        {
            if (m_location.failing == m_name)
                throw Error(QStringLiteral("no ") + m_name);
        }

        LocationRecord& m_location;
        QString m_name;
    };

    std::map<QString, Field*> m_fields;
};

/// A window with the control, and what is seen of it.
class LatLongStage
{
public:
    LatLongStage()
    {
        window.resize(400, 300);
        other = new QLineEdit(&window);
        other->setGeometry(10, 260, 80, 24);
        control = new LatLong(&window, {QStringLiteral("coordinates"), nullptr});
        window.show();
        window.activateWindow();
    }
    bool isReady() { return QTest::qWaitForWindowActive(&window); }

    template <typename Widget>
    Widget* child(const char* name) const
    {
        return control->findChild<Widget*>(QString::fromLatin1(name));
    }
    TextBox* lat() const { return child<TextBox>("txtLat"); }
    TextBox* lon() const { return child<TextBox>("txtLong"); }
    FlatOptionButton* option(int index) const
    {
        return child<FlatOptionButton>(index == 1 ? "optGeocodeOnSave1" : "optGeocodeOnSave0");
    }
    TextLink* details() const { return child<TextLink>("lnkViewDetails"); }

    void read(const LocationRecord& location) const { section().ReadData(location.record); }
    void write(const LocationRecord& location) const { section().WriteData(location.record); }
    BoundSection& section() const { return *control; }

    /// A click where the window system would give one.
    void click(const QWidget* widget) const
    {
        QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {},
                          widget->mapTo(&window, QPoint(8, widget->height() / 2)));
    }
    void press(Qt::Key key) const { QTest::keyClick(window.windowHandle(), key); }

    /// The text of the warning as it is seen; "" while there is none.
    QString warning() const
    {
        auto* label = child<FontIconLabel>("lblWarning");
        return label->isVisible() ? label->Caption() : QString();
    }
    /// `ManualMode` or `OnSaveMode`, with whether the boxes can be typed in; anything else is no good.
    QString mode() const
    {
        if (lat()->isEnabled() != lon()->isEnabled() || lat()->BackColor() != lon()->BackColor())
            return QStringLiteral("the boxes differ");
        if (option(0)->Value() == option(1)->Value())
            return QStringLiteral("both options or none");
        const Color expected = lat()->isEnabled() ? Color(0x80000005U) : Color(0x8000000FU);
        if (lat()->BackColor() != expected)
            return QStringLiteral("wrong colour");
        if (option(0)->Value() != lat()->isEnabled())
            return QStringLiteral("boxes against the option");
        return option(0)->Value() ? ManualMode : OnSaveMode;
    }

    /// One box tells of the failure of a member of the control; it is gone behind this.
    void checkFailure(const QString& member, const QString& description)
    {
        const QList<ShownBox> shown = boxes.take();
        QCOMPARE(shown.size(), 1);
        QCOMPARE(
            shown.first().text,
            QStringLiteral("An unexpected error occurred in LatLong in %1: %2").arg(member, description));
        QCOMPARE(shown.first().title, QStringLiteral("Error"));
        QCOMPARE(shown.first().icon, BoxIcon::Critical);
        QCOMPARE(shown.first().buttons, BoxButtons::Ok);
    }
    /// The failure of a write while no record could be read.
    void checkNothingIsRead()
    {
        checkFailure(QStringLiteral("BoundSection_WriteData"),
                     QStringLiteral("No coordinates have been read, so none are written."));
    }

    FakeMessageBoxes boxes;
    QWidget window;
    QLineEdit* other;
    QPointer<LatLong> control;
};

} // namespace tavrin::test
