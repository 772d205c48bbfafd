#include "base/failure/ByName.h"
#include "support/RaisedError.h"
#include "support/TestCase.h"
#include "testing/Unhandled.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::test::raisedBy;
using tavrin::test::Unhandled;

namespace {

void fail()
{
    throw Error(u"There is no host"_s);
}

} // namespace

class tst_ByName : public tavrin::test::TestCase
{
    Q_OBJECT

private:
    QObject m_field;
    QObject m_other;

    void putWithoutHost() const { byName(m_field, "Field.TableNo", fail); }

private Q_SLOTS:
    void aFailureGoesToTheHandlerOfUnhandledErrors()
    {
        Unhandled unhandled;
        putWithoutHost();
        QCOMPARE(unhandled.texts, QStringList{u"Field.TableNo: There is no host"_s});
    }

    void aFailurePassesToACallerThatAskedForIt()
    {
        Unhandled unhandled;
        const RaiseByName raise(m_field, "TableNo");
        QCOMPARE(raisedBy([this] { putWithoutHost(); }).Description, u"There is no host"_s);
        QCOMPARE(unhandled.texts, QStringList());
    }

    void onlyTheFirstTimeTheFailurePasses()
    {
        Unhandled unhandled;
        {
            const RaiseByName raise(m_field, "TableNo");
            byName(m_field, "Field.TableNo", [this] { putWithoutHost(); });
        }
        QCOMPARE(unhandled.texts.size(), 1);
        {
            const RaiseByName raise(m_field, "TableNo");
        }
        putWithoutHost();
        QCOMPARE(unhandled.texts.size(), 2);
    }

    void theFailureOfAnotherPropertyOrObjectDoesNotPass()
    {
        Unhandled unhandled;
        const RaiseByName raise(m_field, "TableNo");
        byName(m_other, "Field.TableNo", fail);
        byName(m_field, "Field.Value", fail);
        byName(m_field, "Field.OtherTableNo", fail);
        QCOMPARE(unhandled.texts.size(), 3);
        QVERIFY(raisedBy([this] { putWithoutHost(); }).Number != 0);
    }

    void anOuterCallerIsAskedForAgainBehindAnInnerOne()
    {
        Unhandled unhandled;
        const RaiseByName outer(m_field, "TableNo");
        {
            const RaiseByName inner(m_other, "Value");
            putWithoutHost();
            QCOMPARE(unhandled.texts.size(), 1);
        }
        QVERIFY(raisedBy([this] { putWithoutHost(); }).Number != 0);
    }
};

TAVRIN_TEST_MAIN(tst_ByName)

#include "tst_ByName.moc"
