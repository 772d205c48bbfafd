#include "frame/modUtils.h"
#include "support/TestCase.h"
#include "widgets/drawing/PictureSurface.h"

#include <QStringList>

using namespace Qt::StringLiterals;
using namespace tavrin;

namespace {

/// Notes each call. A character is 100 twips wide and 200 high.
class RecordingPicture final : public PictureSurface
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
    void SetFont(const Font&) override {}
    void SetFontName(const QString&) override {}
    double FontSize() const override { return 9; }
    void SetFontSize(double) override {}
    void SetForeColor(Color) override {}
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
    void DrawBox(Twips x1, Twips y1, Twips x2, Twips y2, Color color) override
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

} // namespace

/// Texts with what was searched for marked in them.
class tst_modUtilsHighlight : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
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
};

TAVRIN_TEST_MAIN(tst_modUtilsHighlight)
#include "tst_modUtilsHighlight.moc"
