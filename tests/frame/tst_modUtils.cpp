#include "base/failure/Error.h"
#include "frame/modUtils.h"
#include "support/ProbeControl.h"
#include "support/RaisedError.h"
#include "support/TestCase.h"
#include "testing/FakeHost.h"

#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>

#include <cmath>
#include <optional>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

void makeFile(const QString& path)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
}

} // namespace

/// Numbers, sizes, names of files, and the host's services.
class tst_modUtils : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Numbers

    void minAndMaxGiveTheSmallerAndTheLargerAndForEqualValuesTheSecond()
    {
        QCOMPARE(modUtils::MinOf(1.5, 2), 1.5);
        QCOMPARE(modUtils::MinOf(2, -3), -3.0);
        QCOMPARE(modUtils::MaxOf(1.5, 2), 2.0);
        QCOMPARE(modUtils::MaxOf(2, -3), 2.0);
        // The two zeros are equal, and their signs tell them apart.
        QVERIFY(std::signbit(modUtils::MinOf(0.0, -0.0)));
        QVERIFY(!std::signbit(modUtils::MinOf(-0.0, 0.0)));
        QVERIFY(std::signbit(modUtils::MaxOf(0.0, -0.0)));
        QVERIFY(!std::signbit(modUtils::MaxOf(-0.0, 0.0)));
    }

    void ceilingIsTheSmallestIntegerNotBelow_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<int>("ceiling");
        QTest::newRow("2.0 is 2") << 2.0 << 2;
        QTest::newRow("2.1 is 3") << 2.1 << 3;
        QTest::newRow("-2.1 is -2") << -2.1 << -2;
        QTest::newRow("-2.0") << -2.0 << -2;
        QTest::newRow("2.5") << 2.5 << 3;
        QTest::newRow("just above") << 2.0000001 << 3;
        QTest::newRow("-0.5") << -0.5 << 0;
        QTest::newRow("largest") << 2147483646.5 << 2147483647;
    }
    void ceilingIsTheSmallestIntegerNotBelow()
    {
        QFETCH(double, value);
        QTEST(modUtils::Ceiling(value), "ceiling");
    }

    void aCeilingThatDoesNotFitRaisesOverflow()
    {
        QCOMPARE(raisedBy([] { modUtils::Ceiling(2147483647.5); }).Number, Error::OverflowNumber);
    }

    // Sizes

    void resizeTwipsSetsTheSizeOnAContainerInTwips()
    {
        FakeHost host;
        const HostInstallation installed(host);
        QWidget container;
        ProbeControl control(&container);
        modUtils::ResizeTwips(control, 3000, 450);
        QCOMPARE(control.size(), QSize(200, 30));
        QCOMPARE(control.Width(), 3000.0F);
        QCOMPARE(host.state().log, QStringList({u"ScaleModeFromUnits Twip"_s}));
    }

    void resizeTwipsKeepsItsTwipsOnAContainerInOtherUnits_data()
    {
        QTest::addColumn<QString>("units");
        QTest::addColumn<float>("width");
        QTest::addColumn<float>("height");
        QTest::newRow("pixels") << u"Pixel"_s << 200.0F << 30.0F;
        QTest::newRow("points") << u"Point"_s << 150.0F << 22.5F;
        QTest::newRow("characters") << u"Character"_s << 25.0F << 1.875F;
    }
    void resizeTwipsKeepsItsTwipsOnAContainerInOtherUnits()
    {
        QFETCH(QString, units);
        FakeHost host;
        const HostInstallation installed(host);
        QWidget container;
        container.setProperty("ScaleUnits", units);
        ProbeControl control(&container);
        modUtils::ResizeTwips(control, 3000, 450);
        QCOMPARE(control.size(), QSize(200, 30));
        QTEST(control.extender().Width(), "width");
        QTEST(control.extender().Height(), "height");
        QVERIFY(host.state().log.contains(u"ScaleModeFromUnits "_s + units));
    }

    void aFailingResizeTwipsNamesTheTypeAndKeepsTheDescription_data()
    {
        QTest::addColumn<bool>("hasHost");
        QTest::addColumn<QString>("units");
        QTest::addColumn<QString>("description");
        QTest::newRow("failing host")
            << true << u"Twip"_s
            << u"ResizeTwips error: Error resizing instance of ProbeControl (scale %1 unknown)"_s;
        QTest::newRow("other units and no host")
            << false << u"Pixel"_s
            << u"ResizeTwips error: Error resizing instance of ProbeControl (No host is installed on this "
               "thread; a HostInstallation must live before the first control is made)"_s;
    }
    void aFailingResizeTwipsNamesTheTypeAndKeepsTheDescription()
    {
        QFETCH(bool, hasHost);
        QFETCH(QString, units);
        FakeHost host;
        host.failWith(Error(u"scale %1 unknown"_s, 1234, u"somewhere"_s));
        std::optional<HostInstallation> installed;
        if (hasHost)
            installed.emplace(host);
        QWidget container;
        container.setProperty("ScaleUnits", units);
        ProbeControl control(&container);
        const QSize before = control.size();
        const Error error = raisedBy([&] { modUtils::ResizeTwips(control, 3000, 450); });
        QCOMPARE(error.Number, 5);
        QTEST(error.Description, "description");
        QCOMPARE(control.size(), before);
    }

    void resizeTwipsNeedsNoHostForAContainerInTwipsAsInADesigner()
    {
        QVERIFY_EXCEPTION_THROWN(currentHost(), Error);
        QWidget container;
        ProbeControl control(&container);
        modUtils::ResizeTwips(control, 3000, 450);
        QCOMPARE(control.size(), QSize(200, 30));
        QCOMPARE(control.extender().Width(), 3000.0F);
        QCOMPARE(control.extender().Height(), 450.0F);
    }

    // Names of files

    void uniqueFileNameOfAFreePathIsThatPath()
    {
        const QTemporaryDir folder;
        QCOMPARE(modUtils::UniqueFileName(folder.filePath(u"a.txt"_s)), folder.filePath(u"a.txt"_s));
        QCOMPARE(modUtils::UniqueFileName(folder.filePath(u"none/a.txt"_s)),
                 folder.filePath(u"none/a.txt"_s));
    }

    void uniqueFileNameOfATakenPathWithoutExtensionAddsOneInParenthesesWithNoTrailingDot()
    {
        const QTemporaryDir folder;
        makeFile(folder.filePath(u"report"_s));
        QCOMPARE(modUtils::UniqueFileName(folder.filePath(u"report"_s)), folder.filePath(u"report (1)"_s));
    }

    void aNameTakenByAFolderCountsAsTaken()
    {
        const QTemporaryDir folder;
        QVERIFY(QDir(folder.path()).mkdir(u"a.txt"_s));
        QVERIFY(QDir(folder.path()).mkdir(u"a (1).txt"_s));
        QCOMPARE(modUtils::UniqueFileName(folder.filePath(u"a.txt"_s)), folder.filePath(u"a (2).txt"_s));
    }

    void aNameTakenByADanglingLinkCountsAsTaken()
    {
        const QTemporaryDir folder;
        QVERIFY(QFile::link(folder.filePath(u"nowhere"_s), folder.filePath(u"a.txt"_s)));
        QCOMPARE(modUtils::UniqueFileName(folder.filePath(u"a.txt"_s)), folder.filePath(u"a (1).txt"_s));
    }

    void uniqueFileNameOfAFolderWithATrailingSeparatorNamesItsSibling()
    {
        const QTemporaryDir folder;
        QVERIFY(QDir(folder.path()).mkdir(u"f"_s));
        QCOMPARE(modUtils::UniqueFileName(folder.filePath(u"f/"_s)), folder.filePath(u"f (1)"_s));
    }

    void uniqueFileNameCountsOnFromTheGivenName_data()
    {
        QTest::addColumn<QStringList>("taken");
        QTest::addColumn<QString>("unique");
        QTest::newRow("second") << QStringList({u"a.txt"_s}) << u"a (1).txt"_s;
        QTest::newRow("third") << QStringList({u"a.txt"_s, u"a (1).txt"_s}) << u"a (2).txt"_s;
        QTest::newRow("gap") << QStringList({u"a.txt"_s, u"a (2).txt"_s}) << u"a (1).txt"_s;
        QTest::newRow("numbered itself") << QStringList({u"a (1).txt"_s}) << u"a (1) (1).txt"_s;
        QTest::newRow("several dots") << QStringList({u"a.tar.gz"_s}) << u"a.tar (1).gz"_s;
        QTest::newRow("dot at the end") << QStringList({u"a."_s}) << u"a (1)"_s;
        QTest::newRow("dot at the start") << QStringList({u".a"_s}) << u" (1).a"_s;
        QTest::newRow("per cent and digit")
            << QStringList({u"50%1 of %2%3.txt"_s}) << u"50%1 of %2%3 (1).txt"_s;
        QTest::newRow("per cent in the extension") << QStringList({u"a.%1"_s}) << u"a (1).%1"_s;
    }
    void uniqueFileNameCountsOnFromTheGivenName()
    {
        QFETCH(QStringList, taken);
        QFETCH(QString, unique);
        const QTemporaryDir folder;
        for (const QString& name : taken)
            makeFile(folder.filePath(name));
        QCOMPARE(modUtils::UniqueFileName(folder.filePath(taken.first())), folder.filePath(unique));
    }

    void isValidFolderName_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("valid");
        QTest::newRow("empty") << u""_s << false;
        QTest::newRow("blanks alone") << u"   "_s << false;
        QTest::newRow("a letter between blanks") << u" a "_s << true;
        QTest::newRow("a letter and a question mark") << u"a?"_s << false;
        for (const QChar character : u"<>:\"/\\|?*"_s)
            QTest::addRow("with U+%04X", character.unicode()) << u"a"_s + character + u"b"_s << false;
        QTest::newRow("other signs") << u"a.b,c;d'e(f)[g]%1"_s << true;
        QTest::newRow("dots") << u".."_s << true;
        QTest::newRow("look-alike") << u"a\uFF1F"_s << true;
    }
    void isValidFolderName()
    {
        QFETCH(QString, name);
        QTEST(modUtils::IsValidFolderName(name), "valid");
    }

    void theNineInvalidCharactersAreInTheirOrder()
    {
        QCOMPARE(modUtils::InvalidNameCharacters(), u"<>:\"/\\|?*"_s);
    }

    // The host

    void anInstalledHostGivesWayToTheOneBefore()
    {
        QVERIFY_EXCEPTION_THROWN(currentHost(), Error);
        FakeHost outer;
        FakeHost inner;
        {
            const HostInstallation first(outer);
            {
                const HostInstallation second(inner);
                QCOMPARE(&currentHost(), &inner);
            }
            QCOMPARE(&currentHost(), &outer);
        }
        QVERIFY_EXCEPTION_THROWN(currentHost(), Error);
    }

    void theNibrsModuleIsCreatedOnFirstUseAndKept()
    {
        const auto release = qScopeGuard([] { modUtils::ReleaseNibrsModule(); });
        FakeHost host;
        host.state().nibrsCodes = {{u"09A"_s, u"Murder"_s}};
        const HostInstallation installed(host);
        QCOMPARE(host.calls(), 0);
        const auto module = modUtils::NibrsModule();
        QCOMPARE(module->GetNibrsOffenseCodeList(), host.state().nibrsCodes);
        QCOMPARE(modUtils::NibrsModule(), module);
        QCOMPARE(host.state().log, QStringList({u"create NIBRS.Singletons"_s, u"GetNibrsOffenseCodeList"_s}));
    }

    void aHostWithoutTheNibrsComponentFailsAtEachUseUntilItHasOne()
    {
        const auto release = qScopeGuard([] { modUtils::ReleaseNibrsModule(); });
        FakeHost host;
        host.state().hasNibrs = false;
        const HostInstallation installed(host);
        for (int attempt = 0; attempt < 2; ++attempt)
            QCOMPARE(raisedBy([] { modUtils::NibrsModule(); }).Number, Error::NoSuchComponentNumber);
        host.state().hasNibrs = true;
        QVERIFY(modUtils::NibrsModule() != nullptr);
        QCOMPARE(host.calls(), 3);
    }
};

TAVRIN_TEST_MAIN(tst_modUtils)
#include "tst_modUtils.moc"
