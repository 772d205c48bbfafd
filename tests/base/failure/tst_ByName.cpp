#include "base/failure/ByName.h"
#include "support/RaisedError.h"
#include "support/TestCase.h"
#include "testing/Unhandled.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::test::raisedBy;
using tavrin::test::Unhandled;

namespace {

void putWithoutHost()
{
    byName("TableNo", [] { throw Error(u"There is no host"_s); });
}

} // namespace

class tst_ByName : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aFailureGoesToTheHandlerOfUnhandledErrors()
    {
        Unhandled unhandled;
        putWithoutHost();
        QCOMPARE(unhandled.texts, QStringList{u"TableNo: There is no host"_s});
    }

    void aFailurePassesToACallerThatAskedForIt()
    {
        Unhandled unhandled;
        const RaiseByName raise;
        QCOMPARE(raisedBy(putWithoutHost).Description, u"There is no host"_s);
        QCOMPARE(unhandled.texts, QStringList());
    }

    void onlyTheFirstPropertyPassesItsFailureOn()
    {
        Unhandled unhandled;
        {
            const RaiseByName raise;
            byName("Value", [] { putWithoutHost(); });
        }
        QCOMPARE(unhandled.texts, QStringList{u"TableNo: There is no host"_s});
        {
            const RaiseByName raise;
        }
        putWithoutHost();
        QCOMPARE(unhandled.texts.size(), 2);
    }
};

TAVRIN_TEST_MAIN(tst_ByName)

#include "tst_ByName.moc"
