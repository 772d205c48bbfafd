#include "base/failure/Error.h"
#include "sections/MultiValueForm.h"
#include "support/Members.h"
#include "support/TestCase.h"
#include "testing/Unhandled.h"

#include <QAccessible>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// The control by itself: its members, its birth, its colours, its keys and its layout.
class tst_MultiValue : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // The members

    void theMembersStandInThePublishedOrder()
    {
        const QMetaObject& meta = MultiValue::staticMetaObject;
        QCOMPARE(ownProperties(meta), QStringList({u"Count"_s, u"Enabled"_s}));
        QVERIFY(!meta.property(meta.indexOfProperty("Count")).isWritable());
        const auto info = [&meta](const char* key) {
            return QString::fromLatin1(meta.classInfo(meta.indexOfClassInfo(key)).value());
        };
        QCOMPARE(info("ClassName"), u"TVBoundControls.MultiValue"_s);
        QCOMPARE(info("DefaultInterface"), u"_MultiValue"_s);
        QCOMPARE(info("EventInterface"), u"__MultiValue"_s);
        QVERIFY(meta.indexOfSignal("ValueAdded()") >= 0);
        QVERIFY(meta.indexOfSignal("ValueRemoved()") >= 0);
    }

    void enabledIsSavedAndTrueByDefault()
    {
        MultiValueForm form;
        PropertyBag bag;
        form.control->WriteProperties(bag);
        QVERIFY(bag.entries().empty()); // the default need not be saved
        form.control->SetEnabled(false);
        form.control->WriteProperties(bag);
        QCOMPARE(bag.entries().size(), 1U);
        QCOMPARE(bag.entries().front().key, u"Enabled"_s);
        QCOMPARE(bag.ReadProperty(u"Enabled"_s, {}), QVariant(false));
        const MultiValue restored(nullptr, {u"Other"_s, &bag});
        QVERIFY(!restored.Enabled());
        const PropertyBag empty;
        const MultiValue plain(nullptr, {u"Other"_s, &empty});
        QVERIFY(plain.Enabled());
    }

    void settingEnabledReportsTheChangeAndThenRebuildsTheList()
    {
        MultiValueForm form;
        form.fill({11, 12});
        form.host.state().log.clear();
        QStringList order;
        connect(form.control, &UserControl::PropertyChanged, &form.window,
                [&](const QString& key) { order << key << form.host.state().log; });
        form.control->SetEnabled(false);
        QCOMPARE(order, QStringList({u"Enabled"_s}));
        QCOMPARE(form.host.state().log, QStringList({u"new TableCodeCache"_s, u"GetDescription 302"_s,
                                                     u"GetDescription 302"_s, u"ShadeColor"_s}));
        QVERIFY(!form.control->Enabled());
        QVERIFY(!form.add->isEnabled());
        QVERIFY(!form.list->isEnabled());
        form.control->SetEnabled(true);
        QVERIFY(form.add->isEnabled());
    }

    void enabledIsItsOwnAndNotItsWindows()
    {
        MultiValueForm form;
        form.window.setEnabled(false);
        QVERIFY(form.control->Enabled());
    }

    void aFollowerOfEnabledMayDeleteTheControl()
    {
        MultiValueForm form;
        connect(form.control, &UserControl::PropertyChanged, &form.window,
                [&](const QString&) { delete form.control.data(); });
        form.control->SetEnabled(false);
        QVERIFY(!form.control);
    }

    // Birth

    void aNewControlIsEmptyAndAsksForNoTable()
    {
        MultiValueForm form;
        QCOMPARE(form.control->Count(), 0);
        QCOMPARE(form.entries(), QStringList());
        QCOMPARE(form.host.state().log, QStringList({u"ShadeColor"_s}));
        QVERIFY(!form.remove->isEnabled());
        QVERIFY(form.add->isEnabled());
    }

    void aFailingHostAtBirthReachesWhoeverMakesTheControl()
    {
        FakeHost host;
        const HostInstallation installation(host);
        host.failWith(Error(u"no colours"_s, 61));
        QVERIFY_THROWS_EXCEPTION(Error, MultiValue());
        PropertyBag bag;
        bag.WriteProperty(u"Enabled"_s, false, true);
        QVERIFY_THROWS_EXCEPTION(Error, MultiValue(nullptr, {u"Restored"_s, &bag}));
    }

    void itLivesInADesignerWithoutAHost()
    {
        const DesignTime design;
        const MultiValue control;
        QCOMPARE(control.Count(), 0);
    }

    // Colours

    void itsBackgroundIsTheHostsShadeOfTheContainers()
    {
        FakeHost host;
        const HostInstallation installation(host);
        QWidget container;
        container.setProperty("BackColor", QVariant::fromValue(Color::rgb(200, 100, 50)));
        const MultiValue control(&container);
        QCOMPARE(control.FrameBackColor(), Color::rgb(170, 85, 43)); // the factor is 0.4
    }

    void aChangeOfTheThemeShadesAnew()
    {
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.host.state().log.clear();
        const QPalette before = QApplication::palette();
        const auto restore = qScopeGuard([&before] { QApplication::setPalette(before); });
        QApplication::setPalette(QPalette(QColor(40, 50, 60)));
        QTRY_COMPARE(form.host.state().log, QStringList({u"ShadeColor"_s}));
        QCoreApplication::processEvents();
        QCOMPARE(form.host.state().log.size(), 1); // once
    }

    void aContainerOfAnotherColourShadesAnew()
    {
        FakeHost host;
        const HostInstallation installation(host);
        QWidget window;
        auto* container = new QWidget(&window);
        const auto* control = new MultiValue(container);
        QPalette palette;
        palette.setColor(QPalette::Window, QColor(200, 100, 50));
        window.setPalette(palette);
        QCOMPARE(control->FrameBackColor(), Color::rgb(170, 85, 43));
        container->setProperty("BackColor", QColor(100, 50, 200));
        QCOMPARE(control->FrameBackColor(), Color::rgb(85, 43, 170));
    }

    void aContainersColourThatNobodyTellsOfShadesAnew_data()
    {
        QTest::addColumn<std::function<void(QWidget&)>>("color");
        using Coloring = std::function<void(QWidget&)>;
        QTest::newRow("a style sheet")
            << Coloring([](QWidget& page) { page.setStyleSheet(u"background: rgb(200, 100, 50)"_s); });
        QTest::newRow("a filled background") << Coloring([](QWidget& page) {
            page.setPalette(QPalette(QColor(200, 100, 50)));
            page.setAutoFillBackground(true);
        });
    }
    void aContainersColourThatNobodyTellsOfShadesAnew()
    {
        QFETCH(std::function<void(QWidget&)>, color);
        FakeHost host;
        const HostInstallation installation(host);
        for (const bool isShownFirst : {false, true}) {
            QWidget window;
            window.resize(400, 300);
            auto* page = new QWidget(&window);
            page->resize(400, 300);
            const auto* control = new MultiValue(page);
            if (isShownFirst)
                window.show();
            color(*page);
            window.show();
            QTRY_COMPARE(control->FrameBackColor(), Color::rgb(170, 85, 43));
        }
    }

    void aFillTakesTheColourAsItIsThen()
    {
        MultiValueForm form;
        form.window.hide();
        const Color before = form.control->FrameBackColor();
        QWidget page(&form.window);
        form.control->setParent(&page);
        page.setPalette(QPalette(QColor(200, 100, 50)));
        page.setAutoFillBackground(true);
        form.fill({11});
        QCOMPARE(form.control->FrameBackColor(), Color::rgb(170, 85, 43));
        page.setAutoFillBackground(false);
        form.control->show();
        form.window.show();
        QCOMPARE(form.control->FrameBackColor(), before);
    }

    void theLinksLookAsDesigned()
    {
        MultiValueForm form;
        for (const TextLink* link : {form.add, form.remove}) {
            QCOMPARE(link->Font()->Name(), u"Arial"_s);
            QCOMPARE(link->Font()->Size(), 18.0);
            QVERIFY(link->Font()->Bold());
            QCOMPARE(link->DisabledColor().value(), 0x80000011U);
            QCOMPARE(link->ForeColor().value(), 0x80000012U);
        }
    }

    // Keyboard and screen readers

    void tabGoesThroughListAndLinksAndOut()
    {
        MultiValueForm form;
        QVERIFY(form.isReady());
        form.fill({11});
        form.press(Qt::Key_Down);
        QCOMPARE(form.list->ListIndex(), 0);
        QList<QWidget*> path;
        for (int i = 0; i < 3; ++i) {
            form.press(Qt::Key_Tab);
            path << QApplication::focusWidget();
        }
        QCOMPARE(path, QList<QWidget*>({form.add, form.remove, form.other}));
    }

    void screenReadersKnowTheParts()
    {
        MultiValueForm form;
        const auto nameOf = [](QWidget* widget) {
            return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
        };
        QCOMPARE(nameOf(form.list), u"Values"_s);
        QCOMPARE(nameOf(form.add), u"Add values"_s);
        QCOMPARE(nameOf(form.remove), u"Remove the selected value"_s);
        QCOMPARE(form.add->Caption(), u"+"_s);
        QCOMPARE(form.remove->Caption(), u"-"_s);
    }

    // Layout

    void resizingPlacesTheParts_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::newRow("as designed") << QSize(165, 137);
        QTest::newRow("large") << QSize(400, 300);
        QTest::newRow("odd") << QSize(201, 99);
    }
    void resizingPlacesTheParts()
    {
        QFETCH(QSize, size);
        MultiValueForm form;
        form.control->resize(size);
        const int overEdge = 8; // 120 twips
        QCOMPARE(form.list->geometry(),
                 QRect(-1, -1, size.width() + 2, size.height() - (form.add->height() - overEdge)));
        QCOMPARE(form.add->pos(), QPoint(8, -1 + form.list->height() - 2));
        QCOMPARE(form.remove->pos(), QPoint(8 + 2 * form.add->width(), form.add->y()));
        QCOMPARE(form.add->height(), 29);
        QVERIFY(form.add->width() >= 14);
        QVERIFY(form.remove->width() >= 8);
    }

    void aControlWithoutRoomLaysOutWithoutFailure()
    {
        const Unhandled unhandled;
        MultiValueForm form;
        form.control->resize(3, 3);
        QCOMPARE(form.list->height(), 0);
        QCOMPARE(unhandled.texts, QStringList());
    }
};

TAVRIN_TEST_MAIN(tst_MultiValue)
#include "tst_MultiValue.moc"
