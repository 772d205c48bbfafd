#include "base/values/Variant.h"
#include "support/ProbeControl.h"
#include "support/TestCase.h"
#include "testing/Unhandled.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QVariantList>

using namespace Qt::StringLiterals;
using tavrin::Color;
using tavrin::Error;
using tavrin::PropertyBag;
using tavrin::test::ProbeControl;
using tavrin::test::Unhandled;

/// How a control reads its saved properties from a bag and writes them there.
class tst_SavedProperties : public tavrin::test::TestCase
{
    Q_OBJECT

    /// A number, a text and a colour, of which only the text can be read.
    static const PropertyBag& wrongTypes()
    {
        static const PropertyBag bag = [] {
            PropertyBag made;
            made.WriteProperty(u"First"_s, u"many"_s, 0);
            made.WriteProperty(u"Second"_s, 12, 0);
            made.WriteProperty(u"Third"_s, u"red"_s, 0);
            return made;
        }();
        return bag;
    }

private Q_SLOTS:
    void savedPropertiesAreWrittenInOrderThroughTheGetters()
    {
        ProbeControl control;
        control.first = 3;
        control.second = u"x"_s;
        control.third = Color(9);
        control.take();
        PropertyBag bag;
        control.WriteProperties(bag);
        QCOMPARE(control.take(),
                 QStringList({u"WriteProperties"_s, u"get First"_s, u"get Second"_s, u"get Third"_s}));
        QStringList keys;
        for (const auto& entry : bag.entries())
            keys << entry.key;
        QCOMPARE(keys, QStringList({u"First"_s, u"Second"_s, u"third"_s})); // one is written in another form
        ProbeControl restored;
        restored.ReadProperties(bag);
        QCOMPARE(restored.first, 3);
        QCOMPARE(restored.second, u"x"_s);
        QCOMPARE(restored.third, Color(9));
    }

    void aPropertyThatFailsLeavesTheFollowingRestoredAndShowsNothing()
    {
        Unhandled unhandled;
        PropertyBag bag;
        bag.WriteProperty(u"First"_s, 5, 0);
        bag.WriteProperty(u"Second"_s, u"kept"_s, {});
        ProbeControl control(nullptr, {{}, &bag}, nullptr, {u"put First"_s});
        QCOMPARE(control.first, 0); // what it had
        QCOMPARE(control.second, u"kept"_s);
        QCOMPARE(control.third, tavrin::SystemColor::WindowText);
        QCOMPARE(unhandled.texts, QStringList());
    }

    void aPropertyThatCannotBeReadBackLeavesTheFollowingSaved()
    {
        ProbeControl control;
        control.second = u"saved"_s;
        control.failing = {u"get First"_s};
        PropertyBag bag;
        control.WriteProperties(bag);
        QVERIFY(!bag.contains(u"First"_s));
        QCOMPARE(bag.ReadProperty(u"Second"_s, {}), QVariant(u"saved"_s));
    }

    void aControlThatDoesNotTrapPassesTheFailureOn()
    {
        PropertyBag bag;
        ProbeControl control(nullptr, {}, nullptr, {}, false);
        control.failing = {u"put Second"_s, u"get Second"_s};
        control.take();
        QVERIFY_EXCEPTION_THROWN(control.ReadProperties(bag), Error);
        QCOMPARE(control.take(), QStringList({u"ReadProperties"_s, u"put First"_s, u"put Second"_s}));
        QVERIFY_EXCEPTION_THROWN(control.WriteProperties(bag), Error);
        QCOMPARE(control.take(), QStringList({u"WriteProperties"_s, u"get First"_s, u"get Second"_s}));
        QVERIFY_EXCEPTION_THROWN(ProbeControl(nullptr, {{}, &bag}, nullptr, {u"put First"_s}, false), Error);
    }

    void aSavedValueOfTheWrongTypeGivesANewControlTheDefaultAndTheOthersAreRestored()
    {
        const ProbeControl control(nullptr, {{}, &wrongTypes()});
        QCOMPARE(control.first, 11);
        QCOMPARE(control.second, u"12"_s);
        QCOMPARE(control.third, tavrin::SystemColor::WindowText);
    }

    void aSavedValueOfTheWrongTypeLeavesALivingControlAsItIsAndTheOthersAreRestored()
    {
        ProbeControl control;
        control.first = 77;
        control.third = Color(5);
        control.ReadProperties(wrongTypes());
        QCOMPARE(control.first, 77);
        QCOMPARE(control.second, u"12"_s);
        QCOMPARE(control.third, Color(5));
    }

    void aSavedValueOfTheWrongTypeReachesTheCallerOfAControlThatDoesNotTrap()
    {
        QVERIFY_EXCEPTION_THROWN(ProbeControl(nullptr, {{}, &wrongTypes()}, nullptr, {}, false), Error);
        ProbeControl control(nullptr, {}, nullptr, {}, false);
        QVERIFY_EXCEPTION_THROWN(control.ReadProperties(wrongTypes()), Error);
    }

#ifdef TAVRIN_TRACE
    void aTrappedFailureIsTracedWithTypeAndRoutine()
    {
        ProbeControl control;
        control.failing = {u"put First"_s, u"get First"_s};
        QTest::ignoreMessage(
            QtDebugMsg,
            QRegularExpression(u"^Unexpected error in ProbeControl\\.ReadProperties: 5, .*put First"_s));
        control.ReadProperties({});
        QTest::ignoreMessage(
            QtDebugMsg,
            QRegularExpression(u"^Unexpected error in ProbeControl\\.WriteProperties: 5, .*get First"_s));
        PropertyBag bag;
        control.WriteProperties(bag);
    }
#endif

    void propertyChangedBearsTheKeyOfTheBag()
    {
        ProbeControl control;
        const QSignalSpy spy(&control, &ProbeControl::PropertyChanged);
        control.ReadProperties({});
        QCOMPARE(QVariantList({spy.at(0).at(0), spy.at(1).at(0), spy.at(2).at(0)}),
                 QVariantList({u"First"_s, u"Second"_s, u"Third"_s}));
        QCOMPARE(spy.size(), 3);
    }
};

TAVRIN_TEST_MAIN(tst_SavedProperties)
#include "tst_SavedProperties.moc"
