#include "lookup/EmployeePicker.h"
#include "lookup/FlatEmployeePicker.h"
#include "lookup/FlatUserPicker.h"
#include "lookup/OffensePicker.h"
#include "support/Fonts.h"
#include "support/TestCase.h"
#include "testing/FakeHost.h"
#include "widgets/search_box/SearchBox.h"
#include "widgets/search_box/SuggestionView.h"

#include <QTest>

using namespace tavrin;
using namespace Qt::StringLiterals;
using tavrin::test::FakeHost;
using tavrin::test::fontOf;

namespace {

XmlDocument xmlOf(const QString& text)
{
    XmlDocument document;
    document.loadXML(text);
    return document;
}

void makeFancy(Font& font)
{
    font.SetItalic(true);
    font.SetUnderline(true);
    font.SetStrikethrough(true);
}

QFont fancy(double size)
{
    Font font;
    makeFancy(font);
    font.SetBold(true);
    font.SetSize(size);
    return font.toQFont();
}

/// A window with one picker over two entries.
struct Stage
{
    Stage()
        : installation(host)
    {
        host.state().employees = xmlOf(
            u"<L><Employee><OfficerNo>1</OfficerNo><OfficerId>A1</OfficerId><Name>Adams, Ann</Name>"
            "<BadgeNo>501</BadgeNo><ActiveFlag>True</ActiveFlag></Employee><Employee><OfficerNo>2</OfficerNo>"
            "<OfficerId>A2</OfficerId><Name>Adamson, Al</Name><ActiveFlag>True</ActiveFlag></Employee></L>"_s);
        host.state().offenses = xmlOf(
            u"<L><Offense><OffenseNo>1</OffenseNo><OffenseId>Ad1</OffenseId><Description>Adding</Description>"
            "<ActiveFlag>1</ActiveFlag></Offense><Offense><OffenseNo>2</OffenseNo><OffenseId>Ad2</OffenseId>"
            "<Description>Addling</Description><ActiveFlag>1</ActiveFlag></Offense></L>"_s);
        host.state().users =
            xmlOf(u"<L><UserAccount><UserId>adams</UserId><IsActive>True</IsActive></UserAccount>"
                  "<UserAccount><UserId>adamson</UserId><IsActive>True</IsActive></UserAccount></L>"_s);
        host.state().userNames = {{u"adams"_s, u"Ann Adams"_s}, {u"adamson"_s, u"Al Adamson"_s}};
    }
    bool place(SearchPicker* made, const FontPtr& font)
    {
        picker.reset(made);
        picker->setParent(&window);
        picker->SetFont(font);
        picker->move(20, 20);
        window.resize(900, 500);
        box = picker->findChild<SearchBox*>();
        window.show();
        window.activateWindow();
        picker->setFocus();
        return QTest::qWaitForWindowActive(&window) && box->hasFocus();
    }
    SuggestionView* view() const { return window.findChild<SuggestionView*>(); }
    /// The list that a typed text finds, with its second row marked.
    QImage list() const
    {
        box->selectAll();
        QTest::keyClicks(box, u"ad"_s);
        QTest::keyClick(box, Qt::Key_Down);
        QTest::keyClick(box, Qt::Key_Down);
        return view()->viewport()->grab().toImage();
    }
    QImage boxImage() const
    {
        box->deselect();
        box->setCursorPosition(0);
        box->CloseList();
        box->setReadOnly(true); // no blinking cursor
        const QImage image = box->grab().toImage();
        box->setReadOnly(false);
        return image;
    }

    FakeHost host;
    HostInstallation installation;
    QWidget window;
    std::unique_ptr<SearchPicker> picker;
    SearchBox* box = nullptr;
};

using Make = SearchPicker* (*)();

template <typename Picker>
SearchPicker* make()
{
    return new Picker;
}

void comboPickers()
{
    QTest::newRow("EmployeePicker") << Make(make<EmployeePicker>);
    QTest::newRow("OffensePicker") << Make(make<OffensePicker>);
}

void flatPickers()
{
    QTest::newRow("FlatEmployeePicker") << Make(make<FlatEmployeePicker>);
    QTest::newRow("FlatUserPicker") << Make(make<FlatUserPicker>);
}

} // namespace

Q_DECLARE_METATYPE(Make)

/// What the search boxes and the rows of their lists look like: as `Font` says, whatever the container's
/// font.
class tst_PickerFonts : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void boxAndListKeepTheirFontWhateverTheContainers_data()
    {
        QTest::addColumn<Make>("make");
        comboPickers();
        flatPickers();
    }
    void boxAndListKeepTheirFontWhateverTheContainers()
    {
        QFETCH(Make, make);
        for (const double size : {9.0, 24.0}) {
            Stage stage;
            QVERIFY(stage.place(make(), fontOf(size)));
            const QImage list = stage.list();
            const QImage box = stage.boxImage();
            const QRect place = stage.picker->geometry();
            stage.window.setFont(fancy(17));
            QCOMPARE(stage.picker->geometry(), place);
            QCOMPARE(stage.list(), list);
            QCOMPARE(stage.boxImage(), box);
            QVERIFY(!stage.box->font().italic());
            QCOMPARE(stage.box->font().pointSizeF(), size);
        }
    }

    void aPickerThatIsMadeOnAContainerWithAnotherFontHasItsOwnAllTheSame_data()
    {
        boxAndListKeepTheirFontWhateverTheContainers_data();
    }
    void aPickerThatIsMadeOnAContainerWithAnotherFontHasItsOwnAllTheSame()
    {
        QFETCH(Make, make);
        Stage plain;
        QVERIFY(plain.place(make(), fontOf(11)));
        const QImage list = plain.list();
        plain.box->CloseList();
        plain.window.hide();
        Stage stage;
        stage.window.setFont(fancy(17));
        QVERIFY(stage.place(make(), fontOf(11)));
        QCOMPARE(stage.list(), list);
        stage.box->CloseList();
    }

    void aChangeInsideTheFontShowsInTheRows_data()
    {
        QTest::addColumn<Make>("make");
        flatPickers();
    }
    void aChangeInsideTheFontShowsInTheRows()
    {
        QFETCH(Make, make);
        Stage expected;
        const FontPtr large = fontOf(24);
        makeFancy(*large);
        QVERIFY(expected.place(make(), large));
        const QImage list = expected.list();
        expected.box->CloseList();
        expected.window.hide();
        Stage stage;
        stage.window.setFont(fancy(14));
        const FontPtr font = fontOf(9);
        QVERIFY(stage.place(make(), font));
        QVERIFY(stage.list() != list);
        stage.box->CloseList();
        font->SetSize(24);
        makeFancy(*font);
        QCOMPARE(stage.list(), list);
        stage.box->CloseList();
    }

    void rowsOfAFixedFontTakeNothingOverFromTheControls_data()
    {
        QTest::addColumn<Make>("make");
        comboPickers();
    }
    void rowsOfAFixedFontTakeNothingOverFromTheControls()
    {
        QFETCH(Make, make);
        Stage stage;
        const FontPtr font = fontOf(9);
        QVERIFY(stage.place(make(), font));
        const QImage list = stage.list();
        stage.box->CloseList();
        makeFancy(*font);
        QVERIFY(stage.box->font().italic());
        QCOMPARE(stage.list(), list);
        stage.box->CloseList();
    }
};

TAVRIN_TEST_MAIN(tst_PickerFonts)
#include "tst_PickerFonts.moc"
