#include "frame/control_frame/ContainerPalette.h"
#include "support/ProbeControl.h"
#include "support/TestCase.h"

#include <QScrollArea>
#include <QTabWidget>

using namespace Qt::StringLiterals;
using tavrin::Color;
using tavrin::test::plain;
using tavrin::test::ProbeControl;
using tavrin::test::windowOf;

namespace {

const QColor Red(200, 20, 10);
const QColor Green(20, 200, 10);
const QColor Blue(20, 30, 200);

/// A page on a red window, with a control on it.
struct Stage
{
    Stage()
    {
        window.resize(300, 200);
        window.setPalette(windowOf(Red));
        page->resize(200, 100);
        control->resize(50, 20);
        control->take();
    }
    bool show()
    {
        window.show();
        const bool isSeen = QTest::qWaitForWindowExposed(&window);
        control->take();
        return isSeen;
    }
    QStringList told() const { return control->journal().filter(u"AmbientChanged"_s); }
    QStringList take() const { return control->take().filter(u"AmbientChanged"_s); }
    Color color() const { return control->ambient().BackColor(); }

    QWidget window;
    QWidget* page = new QWidget(&window);
    ProbeControl* control = new ProbeControl(page);
};

/// How often a widget was painted.
class PaintCount : public QObject
{
    Q_OBJECT

public:
    explicit PaintCount(QWidget& widget) { widget.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
    int count = 0;
};

const QStringList Once{u"AmbientChanged BackColor"_s};

} // namespace

/// Another colour of the container that the container itself does not tell of, or not at once.
class tst_ContainerWatch : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aStyleSheetOfAShownPageIsTold()
    {
        Stage stage;
        QVERIFY(stage.show());
        stage.page->setStyleSheet(u"background: rgb(20, 200, 10)"_s);
        QCOMPARE(stage.take(), Once); // at once, before anything is painted
        QCOMPARE(stage.color(), plain(Green));
    }

    void aStyleSheetFromBeforeTheFormIsShownIsToldWhenItIs_data()
    {
        QTest::addColumn<bool>("ofTheWindow");
        QTest::newRow("of the page") << false;
        QTest::newRow("of the window") << true;
    }
    void aStyleSheetFromBeforeTheFormIsShownIsToldWhenItIs()
    {
        QFETCH(bool, ofTheWindow);
        Stage stage;
        stage.page->setObjectName(u"page"_s);
        QWidget& owner = ofTheWindow ? stage.window : *stage.page;
        owner.setStyleSheet(u"#page { background: rgb(20, 200, 10) }"_s);
        QCOMPARE(stage.told(), QStringList());
        stage.window.show();
        QCOMPARE(stage.take(), Once);
        QCOMPARE(stage.color(), plain(Green));
    }

    void theColourIsToldBehindTheShow()
    {
        Stage stage;
        stage.page->setPalette(windowOf(Green));
        stage.page->setAutoFillBackground(true);
        QCOMPARE(stage.told(), QStringList()); // Qt tells nobody
        stage.window.show();
        QStringList journal = stage.control->take();
        journal.removeAll(u"Resize"_s);
        QCOMPARE(journal, QStringList({u"Show"_s, u"AmbientChanged BackColor"_s}));
    }

    void aFilledBackgroundOfAShownPageIsToldWhenItIsPainted()
    {
        Stage stage;
        QVERIFY(stage.show());
        stage.page->setPalette(windowOf(Green));
        QCOMPARE(stage.told(), QStringList()); // it is looked through
        stage.page->setAutoFillBackground(true);
        QTRY_COMPARE(stage.told(), Once);
        QCOMPARE(stage.color(), plain(Green));
        stage.take();
        PaintCount paints(*stage.page);
        stage.page->update();
        QTRY_VERIFY(paints.count > 0);
        QCOMPARE(stage.told(), QStringList()); // it is the same
        stage.page->setAutoFillBackground(false);
        QTRY_COMPARE(stage.told(), Once);
        QCOMPARE(stage.color(), plain(Red));
    }

    void aBuiltPageThatIsPutIntoAScrollAreaIsTold_data()
    {
        QTest::addColumn<bool>("shown");
        QTest::newRow("on a form that is shown") << true;
        QTest::newRow("on a form that is shown later") << false;
    }
    void aBuiltPageThatIsPutIntoAScrollAreaIsTold()
    {
        QFETCH(bool, shown);
        QWidget window;
        window.setPalette(windowOf(Red));
        window.resize(300, 200);
        QScrollArea area(&window);
        auto* page = new QWidget;
        auto* control = new ProbeControl(page);
        page->setPalette(windowOf(Green));
        if (shown)
            window.show();
        area.setWidget(page); // which looks through it first, and then has it fill its background
        window.show();
        QCOMPARE(control->ambient().BackColor(), plain(Green));
        // From the page's own colour to the area's, and back.
        QTRY_COMPARE(control->journal().filter(u"AmbientChanged BackColor"_s).size(), 3);
        control->take();
        page->setPalette(windowOf(Red));
        QCOMPARE(control->take().filter(u"AmbientChanged"_s), Once); // and nothing stale hides it
    }

    void theModeOfATabPagesTabsIsTold()
    {
        QWidget window;
        window.setPalette(windowOf(Red));
        window.resize(300, 200);
        QTabWidget tabs(&window);
        tabs.resize(300, 200);
        auto* page = new QWidget;
        auto* control = new ProbeControl(page);
        tabs.addTab(page, u"Page"_s);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        const Color pane = control->ambient().BackColor();
        control->take();
        tabs.setDocumentMode(true);
        QTRY_COMPARE(control->journal().filter(u"AmbientChanged"_s), Once);
        QCOMPARE(control->ambient().BackColor(), plain(Red));
        QVERIFY(pane != plain(Red));
    }

    void aHiddenControlIsToldWhenItIsShown()
    {
        Stage stage;
        QVERIFY(stage.show());
        stage.control->hide();
        stage.control->take();
        stage.page->setPalette(windowOf(Green));
        stage.page->setAutoFillBackground(true);
        QCoreApplication::processEvents();
        QCOMPARE(stage.told(), QStringList());
        stage.control->show();
        QCOMPARE(stage.take(), Once);
    }

    void aFollowerMayDeleteTheControlBeforeTheWindowIsPainted()
    {
        Stage stage;
        QVERIFY(stage.show());
        QPointer<ProbeControl> control(stage.control);
        control->during = [&control](const QString& what) {
            if (what.startsWith(u"AmbientChanged"_s))
                delete control;
        };
        auto* other = new ProbeControl(stage.page);
        other->show();
        other->take();
        stage.page->setPalette(windowOf(Green));
        stage.page->setAutoFillBackground(true);
        QTRY_VERIFY(!control);
        QTRY_COMPARE(other->journal().filter(u"AmbientChanged"_s), Once);
    }

    void whatWasTakenIsWhatTheNextColourDiffersFrom()
    {
        Stage stage;
        stage.page->setPalette(windowOf(Green));
        stage.page->setAutoFillBackground(true);
        QCOMPARE(stage.control->TakeAmbientBackColor(), plain(Green));
        stage.page->setAutoFillBackground(false);
        stage.window.show();
        QCOMPARE(stage.take(), Once); // the same as at first, and not as taken
        stage.page->setAutoFillBackground(true);
        QCOMPARE(stage.control->ambient().BackColor(), plain(Green)); // only read
        QTRY_COMPARE(stage.told(), Once);
    }

    void whatTheContainerOffersIsTheColourThatIsKnown()
    {
        Stage stage;
        stage.page->setProperty("BackColor", Blue);
        QCOMPARE(stage.take(), Once);
        stage.window.setPalette(windowOf(Green));
        QCOMPARE(stage.take(), QStringList()); // it is not seen
        stage.page->setProperty("BackColor", QVariant());
        QCOMPARE(stage.take(), Once);
        QCOMPARE(stage.color(), plain(Green));
        stage.window.setPalette(windowOf(Blue)); // as the container had it
        QCOMPARE(stage.take(), Once);
        QCOMPARE(stage.color(), plain(Blue));
    }
};

TAVRIN_TEST_MAIN(tst_ContainerWatch)
#include "tst_ContainerWatch.moc"
