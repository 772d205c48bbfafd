#include "base/failure/Error.h"
#include "frame/control_frame/ControlRegister.h"
#include "support/ProbeControl.h"
#include "support/RaisedError.h"
#include "support/TestCase.h"

using namespace Qt::StringLiterals;
using tavrin::ControlRegister;
using tavrin::ControlSite;
using tavrin::Error;
using tavrin::PropertyBag;
using tavrin::test::ProbeControl;
using tavrin::test::raisedBy;

class tst_ControlRegister : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aRegisteredClassIsMadeBelowItsParentWithItsSite()
    {
        ControlRegister classes;
        classes.add<ProbeControl>(u"Test.Probe"_s);
        PropertyBag bag;
        bag.WriteProperty(u"First"_s, 7, 0);
        QWidget parent;
        tavrin::UserControl* control = classes.create(u"Test.Probe"_s, &parent, {u"name"_s, &bag});
        QCOMPARE(control->parentWidget(), &parent);
        QCOMPARE(control->objectName(), u"name"_s);
        QCOMPARE(qobject_cast<ProbeControl*>(control)->first, 7);
        auto* fresh = qobject_cast<ProbeControl*>(classes.create(u"Test.Probe"_s, &parent, {}));
        QVERIFY(fresh != control);
        QCOMPARE(fresh->take(), QStringList({u"Initialize"_s, u"InitProperties"_s}));
    }

    void aClassThatIsNotRegisteredRaisesWithItsName()
    {
        ControlRegister classes;
        classes.add<ProbeControl>(u"Test.Probe"_s);
        QVERIFY(!classes.contains(u"Test.Other"_s));
        QWidget parent;
        const Error error = raisedBy([&] { classes.create(u"Test.Other"_s, &parent, {}); });
        QCOMPARE(error.Description, u"There is no control of the class Test.Other"_s);
        QVERIFY(parent.children().isEmpty());
    }

    void aSecondFactoryForANameTakesThePlaceOfTheFirst()
    {
        ControlRegister classes;
        QStringList made;
        for (const QString& name : {u"first"_s, u"second"_s}) {
            classes.add(u"Test.Probe"_s, [&made, name](QWidget* parent, const ControlSite& site) {
                made << name;
                return new ProbeControl(parent, site);
            });
        }
        QWidget parent;
        classes.create(u"Test.Probe"_s, &parent, {});
        QCOMPARE(made, QStringList({u"second"_s}));
        QCOMPARE(classes.classNames(), QStringList({u"Test.Probe"_s}));
    }

    void theClassNamesAreSorted()
    {
        ControlRegister classes;
        QCOMPARE(classes.classNames(), QStringList());
        for (const QString& name : {u"B"_s, u"C"_s, u"A"_s})
            classes.add<ProbeControl>(name);
        QCOMPARE(classes.classNames(), QStringList({u"A"_s, u"B"_s, u"C"_s}));
        QVERIFY(classes.contains(u"C"_s));
    }
};

TAVRIN_TEST_MAIN(tst_ControlRegister)
#include "tst_ControlRegister.moc"
