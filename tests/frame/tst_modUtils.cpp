#include "base/failure/Error.h"
#include "base/values/Variant.h"
#include "frame/modUtils.h"
#include "support/FakeGridCombo.h"
#include "support/FakeHost.h"
#include "support/ProbeControl.h"
#include "support/TestCase.h"
#include "widgets/drawing/PictureSurface.h"

#include <QDir>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using tavrin::DrawMode;
using tavrin::Error;
using tavrin::Null;
using tavrin::Twips;
using tavrin::test::FakeGridCombo;
using tavrin::test::FakeHost;
using tavrin::test::ProbeControl;
namespace modUtils = tavrin::modUtils;

namespace {

constexpr tavrin::TableNumber Agencies = tavrin::Tables::Agency;

/// Notes each call. A character is 100 twips wide and 200 high.
class RecordingPicture final : public tavrin::PictureSurface
{
public:
    Twips CurrentX() const override { return m_x; }
    void SetCurrentX(Twips x) override
    {
        m_x = x;
        calls << u"x %1"_s.arg(x);
    }
    Twips CurrentY() const override { return m_y; }
    void SetCurrentY(Twips y) override
    {
        m_y = y;
        calls << u"y %1"_s.arg(y);
    }
    void SetFont(const tavrin::Font&) override {}
    void SetFontName(const QString&) override {}
    double FontSize() const override { return 9; }
    void SetFontSize(double) override {}
    void SetForeColor(tavrin::Color) override {}
    void EndLine() override {}
    Twips Width() const override { return 0; }
    void SetWidth(Twips) override {}
    Twips Height() const override { return 0; }
    void SetHeight(Twips) override {}
    bool FontBold() const override { return m_bold; }
    void SetFontBold(bool bold) override
    {
        m_bold = bold;
        calls << (bold ? u"bold"_s : u"not bold"_s);
    }
    void SetDrawMode(DrawMode mode) override { calls << u"mode %1"_s.arg(static_cast<int>(mode)); }
    Twips TextWidth(const QString& text) const override { return 100.0F * static_cast<float>(text.size()); }
    Twips TextHeight(const QString&) const override { return 200; }
    void Print(const QString& text) override
    {
        calls << u"print \"%1\" at %2"_s.arg(text).arg(m_x);
        m_x += TextWidth(text);
    }
    void DrawBox(Twips x1, Twips y1, Twips x2, Twips y2, tavrin::Color color) override
    {
        calls << u"box %1 %2 %3 %4 %5"_s.arg(x1).arg(y1).arg(x2).arg(y2).arg(color.value(), 8, 16,
                                                                             QLatin1Char('0'));
        m_x = x2;
        m_y = y2;
    }

    void start(Twips x, Twips y, bool bold = false)
    {
        m_x = x;
        m_y = y;
        m_bold = bold;
    }
    QStringList prints() const { return calls.filter(u"print "_s); }
    QStringList boxes() const { return calls.filter(u"box "_s); }

    QStringList calls;

private:
    Twips m_x = 0;
    Twips m_y = 0;
    bool m_bold = false;
};

void makeFile(const QString& path)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
}

} // namespace

class tst_modUtils : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
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
        try {
            modUtils::Ceiling(2147483647.5);
            QFAIL("no error");
        } catch (const Error& error) {
            QCOMPARE(error.Number, Error::OverflowNumber);
        }
    }

    void resizeTwipsSetsTheSizeOnAContainerInTwips()
    {
        FakeHost host;
        const tavrin::HostInstallation installed(host);
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
        const tavrin::HostInstallation installed(host);
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
            << u"ResizeTwips error: Error resizing instance of ProbeControl (No host is installed on this thread)"_s;
    }
    void aFailingResizeTwipsNamesTheTypeAndKeepsTheDescription()
    {
        QFETCH(bool, hasHost);
        QFETCH(QString, units);
        FakeHost host;
        host.failWith(Error(u"scale %1 unknown"_s, 1234, u"somewhere"_s));
        std::optional<tavrin::HostInstallation> installed;
        if (hasHost)
            installed.emplace(host);
        QWidget container;
        container.setProperty("ScaleUnits", units);
        ProbeControl control(&container);
        const QSize before = control.size();
        try {
            modUtils::ResizeTwips(control, 3000, 450);
            QFAIL("no error");
        } catch (const Error& error) {
            QCOMPARE(error.Number, 5);
            QTEST(error.Description, "description");
        }
        QCOMPARE(control.size(), before);
    }

    void resizeTwipsNeedsNoHostForAContainerInTwipsAsInADesigner()
    {
        QVERIFY_EXCEPTION_THROWN(tavrin::currentHost(), Error);
        QWidget container;
        ProbeControl control(&container);
        modUtils::ResizeTwips(control, 3000, 450);
        QCOMPARE(control.size(), QSize(200, 30));
        QCOMPARE(control.extender().Width(), 3000.0F);
        QCOMPARE(control.extender().Height(), 450.0F);
    }

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

    void printHighlightedWithNoMatchPrintsTheTextInOnePiece_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("search");
        QTest::newRow("no match") << u"Arson"_s << u"x"_s;
        QTest::newRow("empty search") << u"Arson"_s << u""_s;
        QTest::newRow("longer search") << u"Arson"_s << u"Arson!"_s;
    }
    void printHighlightedWithNoMatchPrintsTheTextInOnePiece()
    {
        QFETCH(QString, text);
        QFETCH(QString, search);
        RecordingPicture picture;
        picture.start(50, 10);
        modUtils::PrintHighlighted(picture, text, search);
        QCOMPARE(picture.calls, QStringList({u"not bold"_s, u"mode 13"_s, u"print \"Arson\" at 50"_s}));
    }

    void printHighlightedWithTwoMatchesDrawsTwoBoxesInThisVeryOrder()
    {
        RecordingPicture picture;
        picture.start(30, 15);
        modUtils::PrintHighlighted(picture, u"xAbyaBz"_s, u"ab"_s);
        QCOMPARE(picture.calls, QStringList({u"not bold"_s, u"mode 13"_s, u"print \"x\" at 30"_s, //
                                             u"bold"_s,     u"mode 9"_s,  u"box 130 15 330 215 00fce77e"_s,
                                             u"x 130"_s,    u"y 15"_s,    u"print \"Ab\" at 130"_s, //
                                             u"not bold"_s, u"mode 13"_s, u"print \"y\" at 330"_s,  //
                                             u"bold"_s,     u"mode 9"_s,  u"box 430 15 630 215 00fce77e"_s,
                                             u"x 430"_s,    u"y 15"_s,    u"print \"aB\" at 430"_s, //
                                             u"not bold"_s, u"mode 13"_s, u"print \"z\" at 630"_s}));
        QCOMPARE(picture.CurrentX(), 730.0F); // behind the text
        QCOMPARE(picture.CurrentY(), 15.0F);
        QVERIFY(!picture.FontBold());
    }

    void aMatchAtTheVeryStartPrintsAnEmptyPieceFirst()
    {
        RecordingPicture picture;
        modUtils::PrintHighlighted(picture, u"Abc"_s, u"a"_s);
        QCOMPARE(picture.prints(),
                 QStringList({u"print \"\" at 0"_s, u"print \"A\" at 0"_s, u"print \"bc\" at 100"_s}));
    }

    void aMatchAtTheEndPrintsAnEmptyPieceLast()
    {
        RecordingPicture picture;
        modUtils::PrintHighlighted(picture, u"abc"_s, u"BC"_s);
        QCOMPARE(picture.prints(),
                 QStringList({u"print \"a\" at 0"_s, u"print \"bc\" at 100"_s, u"print \"\" at 300"_s}));
    }

    void matchesInARowDoNotOverlap()
    {
        RecordingPicture picture;
        modUtils::PrintHighlighted(picture, u"aaaaa"_s, u"aa"_s);
        QCOMPARE(picture.prints(),
                 QStringList({u"print \"\" at 0"_s, u"print \"aa\" at 0"_s, u"print \"\" at 200"_s,
                              u"print \"aa\" at 200"_s, u"print \"a\" at 400"_s}));
        QCOMPARE(picture.boxes().size(), 2);
    }

    void aPictureThatWasBoldStaysBoldBetweenTheMatchesAndAfterwards()
    {
        RecordingPicture picture;
        picture.start(0, 0, true);
        modUtils::PrintHighlighted(picture, u"xay"_s, u"a"_s);
        QCOMPARE(picture.calls.filter(u"bold"_s), QStringList({u"bold"_s, u"bold"_s, u"bold"_s}));
        QVERIFY(picture.FontBold());
    }

    void matchesKeepTheTextsOwnCaseAlsoBeyondASCII()
    {
        RecordingPicture picture;
        modUtils::PrintHighlighted(picture, u"M\u00DCLLER"_s, u"\u00FCl"_s);
        QCOMPARE(picture.prints(), QStringList({u"print \"M\" at 0"_s, u"print \"\u00DCL\" at 100"_s,
                                                u"print \"LER\" at 300"_s}));
    }

    void theNibrsModuleIsCreatedOnFirstUseAndKept()
    {
        const auto release = qScopeGuard([] { modUtils::ReleaseNibrsModule(); });
        FakeHost host;
        host.state().nibrsCodes = {{u"09A"_s, u"Murder"_s}};
        const tavrin::HostInstallation installed(host);
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
        const tavrin::HostInstallation installed(host);
        for (int attempt = 0; attempt < 2; ++attempt) {
            try {
                modUtils::NibrsModule();
                QFAIL("no error");
            } catch (const Error& error) {
                QCOMPARE(error.Number, Error::NoSuchComponentNumber);
            }
        }
        host.state().hasNibrs = true;
        QVERIFY(modUtils::NibrsModule() != nullptr);
        QCOMPARE(host.calls(), 3);
    }

    void initGridComboGivesAnEmptyArrayRowOneAndNoText()
    {
        FakeGridCombo combo;
        combo.Array().AppendRow({u"a"_s, u"b"_s, 3, true});
        modUtils::InitGridCombo(combo);
        QCOMPARE(combo.log, QStringList({u"reset"_s, u"rebind 0"_s, u"bookmark 1"_s, u"text \"\""_s}));
        QCOMPARE(combo.Array().UpperBound(), 0);
    }

    void fillGridComboInitsThenLetsTheHostFill()
    {
        FakeHost host;
        host.setTable(Agencies, {{u"A"_s, u"Agency A"_s, 1}, {u"B"_s, u"Agency B"_s, 2}});
        host.state().inactive[Agencies] = {2};
        const tavrin::HostInstallation installed(host);
        FakeGridCombo combo;
        modUtils::FillGridCombo(combo, Agencies, 2, false);
        QCOMPARE(host.state().log, QStringList({u"FillTableGrid 997 False 2 False"_s}));
        QCOMPARE(combo.values(), QVariantList({Null(), 1, 2}));
        QCOMPARE(combo.log.mid(0, 4),
                 QStringList({u"reset"_s, u"rebind 0"_s, u"bookmark 1"_s, u"text \"\""_s}));
        modUtils::FillGridCombo(combo, Agencies, Null(), true);
        QCOMPARE(host.state().log.last(), u"FillTableGrid 997 True  False"_s);
        QCOMPARE(combo.values(), QVariantList({Null(), 1, 2})); // filled anew, not twice
    }

    void selectGridComboValue_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<int>("row");
        QTest::addColumn<QVariant>("result");
        QTest::newRow("Null selects row 1") << Null() << 1 << Null();
        QTest::newRow("found") << QVariant(20) << 3 << QVariant(20);
        QTest::newRow("found as text") << QVariant(u"20"_s) << 3 << QVariant(20);
        QTest::newRow("found as double") << QVariant(20.0) << 3 << QVariant(20);
        QTest::newRow("first of two") << QVariant(30) << 4 << QVariant(30);
        QTest::newRow("not there selects row 1 and gives its value") << QVariant(99) << 1 << QVariant(7);
    }
    void selectGridComboValue()
    {
        QFETCH(QVariant, value);
        QFETCH(int, row);
        QFETCH(QVariant, result);
        FakeGridCombo combo;
        for (const int number : {7, 10, 20, 30, 30})
            combo.Array().AppendRow({QVariant(), QVariant(), number, true});
        const QVariant selected = modUtils::SelectGridComboValue(combo, value);
        QCOMPARE(combo.Bookmark(), QVariant(row));
        QCOMPARE(selected, result);
        QCOMPARE(tavrin::IsNull(selected), tavrin::IsNull(result));
        QCOMPARE(combo.log.size(), 1);
    }

    void removeUsedGridValues_data()
    {
        QTest::addColumn<QVariantList>("used");
        QTest::addColumn<QVariant>("current");
        QTest::addColumn<QVariantList>("left");
        const QVariant null = Null();
        QTest::newRow("none") << QVariantList() << null << QVariantList({null, 10, 20, 20, 30});
        QTest::newRow("one") << QVariantList({10}) << null << QVariantList({null, 20, 20, 30});
        QTest::newRow("only the first row of a value")
            << QVariantList({20}) << null << QVariantList({null, 10, 20, 30});
        QTest::newRow("both rows of a value that is used twice")
            << QVariantList({20, 20}) << null << QVariantList({null, 10, 30});
        QTest::newRow("Null stays") << QVariantList({null}) << null << QVariantList({null, 10, 20, 20, 30});
        QTest::newRow("the current value stays")
            << QVariantList({10, 30}) << QVariant(30) << QVariantList({null, 20, 20, 30});
        QTest::newRow("the current value as another type stays")
            << QVariantList({30}) << QVariant(30.0) << QVariantList({null, 10, 20, 20, 30});
        QTest::newRow("the current value as a text stays")
            << QVariantList({10, 30}) << QVariant(u"30"_s) << QVariantList({null, 20, 20, 30});
        QTest::newRow("the current value stays though it is used as a text")
            << QVariantList({u"10"_s, u"30"_s}) << QVariant(30) << QVariantList({null, 20, 20, 30});
        QTest::newRow("a text that is not the current number goes")
            << QVariantList({u"3"_s, u"30"_s}) << QVariant(3) << QVariantList({null, 10, 20, 20});
        QTest::newRow("text") << QVariantList({u"30"_s}) << null << QVariantList({null, 10, 20, 20});
        QTest::newRow("not there") << QVariantList({99}) << null << QVariantList({null, 10, 20, 20, 30});
        QTest::newRow("all") << QVariantList({30, 20, 10, 20}) << null << QVariantList({null});
    }
    void removeUsedGridValues()
    {
        QFETCH(QVariantList, used);
        QFETCH(QVariant, current);
        QFETCH(QVariantList, left);
        FakeGridCombo combo;
        for (const QVariant& value : {Null(), QVariant(10), QVariant(20), QVariant(20), QVariant(30)})
            combo.Array().AppendRow({QVariant(), QVariant(), value, true});
        modUtils::RemoveUsedGridValues(combo, used, current);
        QCOMPARE(combo.values(), left);
        QCOMPARE(combo.log, QStringList({u"rebind %1"_s.arg(left.size())})); // once, at the end
    }

    void theFirstRowIsNeverRemovedWhateverItHolds()
    {
        FakeGridCombo combo;
        for (const int number : {10, 20})
            combo.Array().AppendRow({QVariant(), QVariant(), number, true});
        modUtils::RemoveUsedGridValues(combo, {10}, Null());
        QCOMPARE(combo.values(), QVariantList({10, 20}));
    }

    void anInstalledHostGivesWayToTheOneBefore()
    {
        QVERIFY_EXCEPTION_THROWN(tavrin::currentHost(), Error);
        FakeHost outer;
        FakeHost inner;
        {
            const tavrin::HostInstallation first(outer);
            {
                const tavrin::HostInstallation second(inner);
                QCOMPARE(&tavrin::currentHost(), &inner);
            }
            QCOMPARE(&tavrin::currentHost(), &outer);
        }
        QVERIFY_EXCEPTION_THROWN(tavrin::currentHost(), Error);
    }
};

TAVRIN_TEST_MAIN(tst_modUtils)
#include "tst_modUtils.moc"
