#include "frame/control_frame/ContainerColor.h"
#include "frame/control_frame/ContainerPalette.h"
#include "support/ProbeControl.h"
#include "support/TestCase.h"

#include <QApplication>
#include <QScopeGuard>
#include <QScrollArea>
#include <QTabWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;
using tavrin::Color;
using tavrin::colorOf;
using tavrin::shownBackColor;
using tavrin::test::plain;
using tavrin::test::ProbeControl;
using tavrin::test::windowOf;
namespace SystemColor = tavrin::SystemColor;

namespace {

const QColor Yellow(250, 240, 10);
const QColor Blue(20, 30, 200);

} // namespace

class tst_ContainerColor : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aPropertyHoldsAColourInThreeWays_data()
    {
        QTest::addColumn<QVariant>("property");
        QTest::addColumn<QVariant>("color");
        const auto color = [](quint32 value) { return QVariant::fromValue(Color(value)); };
        QTest::newRow("a colour") << color(0x010203) << color(0x010203);
        QTest::newRow("a colour of the system") << color(0x80000005) << color(0x80000005);
        QTest::newRow("a colour of Qt") << QVariant(QColor(1, 2, 3)) << color(0x030201);
        QTest::newRow("a number") << QVariant(0x030201) << color(0x030201);
        QTest::newRow("a system colour's number with a sign")
            << QVariant(static_cast<qint32>(0x8000000F)) << color(0x8000000F);
        QTest::newRow("without a sign") << QVariant(0x8000000FU) << color(0x8000000F);
        QTest::newRow("in 64 bits") << QVariant(qint64(0x8000000F)) << color(0x8000000F);
        QTest::newRow("as a double") << QVariant(255.0) << color(0xFF);
        QTest::newRow("none") << QVariant() << QVariant();
        QTest::newRow("Null") << QVariant::fromValue(nullptr) << QVariant();
        QTest::newRow("a text") << QVariant(u"red"_s) << QVariant();
        QTest::newRow("a text of digits") << QVariant(u"255"_s) << QVariant();
        QTest::newRow("yes") << QVariant(true) << QVariant();
        QTest::newRow("a fraction") << QVariant(1.5) << QVariant();
        QTest::newRow("more than 32 bits") << QVariant(qint64(1) << 32) << QVariant();
        QTest::newRow("less than 32 bits") << QVariant(-(qint64(1) << 31) - 1) << QVariant();
        QTest::newRow("a colour of Qt that is none") << QVariant(QColor()) << QVariant();
        QTest::newRow("one that cannot be seen") << QVariant(QColor(Qt::transparent)) << QVariant();
        QTest::newRow("one that is looked through") << QVariant(QColor(1, 2, 3, 254)) << QVariant();
    }
    void aPropertyHoldsAColourInThreeWays()
    {
        QFETCH(QVariant, property);
        QFETCH(QVariant, color);
        const std::optional<Color> held = colorOf(property);
        QCOMPARE(held ? QVariant::fromValue(*held) : QVariant(), color);
        QWidget container;
        container.setProperty("BackColor", property);
        ProbeControl control(&container);
        QCOMPARE(control.extender().Container().HasBackColor(), color.isValid());
        const Color expected = color.isValid() ? color.value<Color>() : SystemColor::ButtonFace;
        QCOMPARE(control.ambient().BackColor(), expected);
        QCOMPARE(control.ContainerBackColor(), expected);
    }

    void withoutThePropertyItIsTheContainersWindowColour()
    {
        QWidget container;
        const ProbeControl control(&container);
        QCOMPARE(control.ambient().BackColor(), SystemColor::ButtonFace);
        container.setPalette(windowOf(Yellow));
        QCOMPARE(control.ambient().BackColor(), plain(Yellow));
        QCOMPARE(control.ContainerBackColor(), plain(Yellow));
        container.setProperty("BackColor", QVariant::fromValue(Color(5)));
        QCOMPARE(control.ambient().BackColor(), Color(5)); // the property comes first
    }

    void aColourThatTheThemeHasTooStaysTheThemes()
    {
        QWidget container;
        const QPalette before = QApplication::palette();
        const auto restore = qScopeGuard([&before] { QApplication::setPalette(before); });
        container.setPalette(windowOf(before.color(QPalette::Window)));
        QCOMPARE(shownBackColor(container), SystemColor::ButtonFace);
        QWidget page(&container);
        page.setAutoFillBackground(true);
        page.setBackgroundRole(QPalette::Base);
        QCOMPARE(shownBackColor(page), SystemColor::WindowBackground);
        QWidget themed;
        QApplication::setPalette(QPalette(QColor(40, 50, 60)));
        QTRY_COMPARE(shownBackColor(themed), SystemColor::ButtonFace);
        QCOMPARE(shownBackColor(page), SystemColor::WindowBackground);
    }

    void aContainerThatIsLookedThroughShowsWhatItStandsOn()
    {
        QWidget window;
        window.setPalette(windowOf(Blue));
        QWidget outer(&window);
        QWidget inner(&outer);
        QCOMPARE(shownBackColor(inner), plain(Blue));
        inner.setPalette(windowOf(Yellow)); // which nothing is filled with
        QCOMPARE(shownBackColor(inner), plain(Blue));
        inner.setAutoFillBackground(true);
        QCOMPARE(shownBackColor(inner), plain(Yellow));
        inner.setPalette(windowOf(Qt::transparent));
        QCOMPARE(shownBackColor(inner), plain(Blue));
        inner.setAutoFillBackground(false);
        outer.setProperty("BackColor", QColor(1, 2, 3));
        QCOMPARE(shownBackColor(inner), Color::rgb(1, 2, 3));
    }

    void aStyleSheetsBackgroundCounts()
    {
        QWidget window;
        window.setPalette(windowOf(Blue));
        QWidget page(&window);
        page.setStyleSheet(u"background: #faf00a"_s);
        page.ensurePolished();
        QCOMPARE(shownBackColor(page), plain(Yellow));
    }

    void aPageInAScrollAreaHasThePagesColour()
    {
        QWidget window;
        window.setPalette(windowOf(Blue));
        QScrollArea area(&window);
        auto* page = new QWidget;
        page->setPalette(windowOf(Yellow));
        area.setWidget(page);
        QCOMPARE(shownBackColor(*page), plain(Yellow));
        page->setAutoFillBackground(false);
        QCOMPARE(shownBackColor(*page), plain(Blue));
    }

    void aTabPageHasTheColourThatTheStyleDraws_data()
    {
        QTest::addColumn<bool>("inDocumentMode");
        QTest::addColumn<QColor>("window");
        QTest::newRow("pane") << false << QApplication::palette().color(QPalette::Window);
        QTest::newRow("pane on a coloured window") << false << Yellow;
        QTest::newRow("document mode") << true << QApplication::palette().color(QPalette::Window);
        QTest::newRow("document mode on a coloured window") << true << Yellow;
    }
    void aTabPageHasTheColourThatTheStyleDraws()
    {
        QFETCH(bool, inDocumentMode);
        QFETCH(QColor, window);
        QWidget form;
        form.setPalette(windowOf(window));
        QTabWidget tabs;
        (new QVBoxLayout(&form))->addWidget(&tabs);
        tabs.setDocumentMode(inDocumentMode);
        auto* page = new QWidget;
        tabs.addTab(page, u"Page"_s);
        form.resize(300, 200);
        form.show();
        const QColor seen = form.grab().toImage().pixelColor(page->mapTo(&form, page->rect().center()));
        QCOMPARE(shownBackColor(*page).resolve(QApplication::palette()), seen);
        page->setPalette(windowOf(Blue));
        page->setAutoFillBackground(true);
        QCOMPARE(shownBackColor(*page), plain(Blue));
    }
};

TAVRIN_TEST_MAIN(tst_ContainerColor)
#include "tst_ContainerColor.moc"
