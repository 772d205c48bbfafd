#include "base/failure/Error.h"
#include "frame/control_frame/Extender.h"
#include "support/ProbeControl.h"
#include "support/RaisedError.h"
#include "support/TestCase.h"
#include "testing/FakeHost.h"

using namespace Qt::StringLiterals;
using tavrin::Color;
using tavrin::Error;
using tavrin::test::FakeHost;
using tavrin::test::ProbeControl;
using tavrin::test::raisedBy;
namespace SystemColor = tavrin::SystemColor;

class tst_Extender : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aContainersBackColorIsItsProperty()
    {
        QWidget container;
        container.setProperty("BackColor", QVariant::fromValue(Color::rgb(1, 2, 3)));
        ProbeControl control(&container);
        QCOMPARE(control.extender().Container().BackColor(), Color::rgb(1, 2, 3));
        QCOMPARE(control.extender().Container().widget(), &container);
        QCOMPARE(control.ambient().BackColor(), Color::rgb(1, 2, 3));
    }

    void aContainerWithoutBackColorRaisesAndTheAmbientOneIsTheButtonFace_data()
    {
        QTest::addColumn<QVariant>("property");
        QTest::newRow("no property") << QVariant();
        QTest::newRow("a text") << QVariant(u"red"_s);
    }
    void aContainerWithoutBackColorRaisesAndTheAmbientOneIsTheButtonFace()
    {
        QFETCH(QVariant, property);
        QWidget container;
        container.setProperty("BackColor", property);
        ProbeControl control(&container);
        const Error error = raisedBy([&] { control.extender().Container().BackColor(); });
        QCOMPARE(error.Number, Error::NoSuchMemberNumber);
        QCOMPARE(control.ambient().BackColor(), SystemColor::ButtonFace);
    }

    void aControlWithoutContainerHasAmbientValuesAllTheSame()
    {
        ProbeControl control(nullptr, {u"name"_s});
        QCOMPARE(control.ambient().DisplayName(), u"name"_s);
        QCOMPARE(control.ambient().BackColor(), SystemColor::ButtonFace);
        QCOMPARE(control.ambient().ScaleUnits(), u"Twip"_s);
        QCOMPARE(control.ambient().Font()->toQFont(), control.font());
        QVERIFY(control.extender().Container().widget() == nullptr);
        QVERIFY_EXCEPTION_THROWN(control.extender().Container().BackColor(), Error);
    }

    void ambientValuesAreReadAfreshAtEachCall()
    {
        QWidget container;
        const ProbeControl control(&container);
        QCOMPARE(control.ambient().ScaleUnits(), u"Twip"_s);
        container.setProperty("ScaleUnits", u"Pixel"_s);
        QCOMPARE(control.ambient().ScaleUnits(), u"Pixel"_s);
        container.setFont(QFont(u"Tavrin Sans"_s, 31));
        QCOMPARE(control.ambient().Font()->Name(), u"Tavrin Sans"_s);
        QCOMPARE(control.ambient().Font()->Size(), 31.0);
    }

    void theAmbientFontIsACopy()
    {
        QWidget container;
        const ProbeControl control(&container);
        const QFont before = container.font();
        control.ambient().Font()->SetSize(55);
        QCOMPARE(container.font(), before);
        QVERIFY(control.ambient().Font()->Size() != 55);
    }

    void thePlaceIsInTheContainersUnits_data()
    {
        QTest::addColumn<QVariant>("units");
        QTest::addColumn<QRectF>("place");
        QTest::newRow("none told") << QVariant() << QRectF(150, 300, 1500, 600);
        QTest::newRow("twips") << QVariant(u"Twip"_s) << QRectF(150, 300, 1500, 600);
        QTest::newRow("pixels") << QVariant(u"Pixel"_s) << QRectF(10, 20, 100, 40);
        QTest::newRow("points") << QVariant(u"Point"_s) << QRectF(7.5, 15, 75, 30);
        QTest::newRow("characters") << QVariant(u"Character"_s) << QRectF(1.25, 1.25, 12.5, 2.5);
    }
    void thePlaceIsInTheContainersUnits()
    {
        QFETCH(QVariant, units);
        QFETCH(QRectF, place);
        FakeHost host;
        const tavrin::HostInstallation installed(host);
        QWidget container;
        container.setProperty("ScaleUnits", units);
        ProbeControl control(&container);
        control.setGeometry(10, 20, 100, 40);
        const QRectF read(control.extender().Left(), control.extender().Top(), control.extender().Width(),
                          control.extender().Height());
        QCOMPARE(read, place);
        control.setGeometry(0, 0, 1, 1);
        control.extender().Move(static_cast<float>(place.x()), static_cast<float>(place.y()),
                                static_cast<float>(place.width()), static_cast<float>(place.height()));
        QCOMPARE(control.geometry(), QRect(10, 20, 100, 40));
        control.extender().SetWidth(static_cast<float>(place.width() / 2));
        QCOMPARE(control.geometry(), QRect(10, 20, 50, 40));
        control.extender().SetHeight(static_cast<float>(place.height() / 2));
        QCOMPARE(control.geometry(), QRect(10, 20, 50, 20));
    }

    void aContainerInTwipsAsksNoHost()
    {
        QWidget container;
        ProbeControl control(&container); // no host is installed at all
        control.extender().Move(150, 300, 1500, 600);
        QCOMPARE(control.geometry(), QRect(10, 20, 100, 40));
        container.setProperty("ScaleUnits", u"Pixel"_s);
        QVERIFY_EXCEPTION_THROWN(control.extender().Left(), Error);
    }
};

TAVRIN_TEST_MAIN(tst_Extender)
#include "tst_Extender.moc"
