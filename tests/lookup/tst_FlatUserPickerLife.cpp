#include "base/values/Variant.h"
#include "lookup/FlatPickerForm.h"
#include "support/Fonts.h"
#include "support/TestCase.h"

#include <QApplication>
#include <QPointer>

using namespace tavrin;
using namespace tavrin::test;
using namespace Qt::StringLiterals;

/// The life of `FlatUserPicker`: what it follows while it is shown, lists that are renewed, and its end.
class tst_FlatUserPickerLife : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // What it follows

    void showRefreshesAndLaysOut()
    {
        PeopleSite site;
        QWidget form;
        FlatUserPicker picker(&form);
        QLineEdit other(&form);
        other.move(0, 200);
        other.setFocus();
        TextBoxColors& colors = site.host.state().textBoxColors;
        colors.Normal.BorderColor = Color::rgb(200, 0, 0);
        auto* shape = picker.findChild<BoxShape*>(u"shpBorder"_s);
        QVERIFY(shape->BorderColor() != Color::rgb(200, 0, 0));
        const QRect place = shape->geometry();
        shape->setGeometry(1, 1, 1, 1);
        form.show();
        form.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&form));
        QCOMPARE(shape->BorderColor(), Color::rgb(200, 0, 0));
        QCOMPARE(shape->geometry(), place);
        QCOMPARE(shape->width(), picker.width());
    }

    void theFrameFollowsTheContainersBackColour()
    {
        UserForm form;
        QCOMPARE(form.picker->FrameBackColor(), Color(SystemColor::ButtonFace));
        for (const Color color : {Color::rgb(9, 8, 7), Color::rgb(6, 5, 4)}) {
            form.window.setProperty("BackColor", QVariant::fromValue(color));
            QCOMPARE(form.picker->FrameBackColor(), color);
        }
        form.window.setProperty("BackColor", QVariant()); // which takes the member away
        QCOMPARE(form.picker->FrameBackColor(), Color(SystemColor::ButtonFace));
    }

    void aChangeInsideTheFontShowsAtOnceAndReportsNothing()
    {
        UserForm form;
        Journal journal(form.picker);
        const int height = form.picker->height();
        form.picker->Font()->SetSize(form.picker->Font()->Size() * 2);
        QVERIFY(form.picker->height() > height);
        QCOMPARE(form.tag->Font()->Size(), form.picker->Font()->Size() * 0.95);
        QCOMPARE(journal.entries, QStringList());
    }

    void aFontThatWasReplacedIsNoLongerFollowed()
    {
        UserForm form;
        const FontPtr old = form.picker->Font();
        const FontPtr font = fontOf(10);
        form.picker->SetFont(font);
        const QSize size = form.picker->size();
        form.host.state().log.clear();
        old->SetSize(30);
        QCOMPARE(form.host.state().log, QStringList());
        QCOMPARE(form.picker->size(), size);
        QCOMPARE(form.tag->Font()->Size(), 9.5);
        QCOMPARE(form.box->Font(), font);
        QCOMPARE(form.box->font().pointSizeF(), 10.0);
        font->SetSize(20); // the new one is
        QVERIFY(form.picker->height() > size.height());
        QCOMPARE(form.tag->Font()->Size(), 19.0);
    }

    // Caches

    void theListsAreClonedOnceAndAfreshAfterACacheRefresh()
    {
        UserForm form;
        const auto asked = [&](const char* what) {
            return form.host.state().log.count(QString::fromLatin1(what));
        };
        form.found(u"a"_s);
        form.found(u"b"_s);
        form.picker->SetValue(u"user:asmith"_s);
        form.picker->SetValue(u"team:3"_s);
        QCOMPARE(asked("UsersCache.Document"), 1);
        QCOMPARE(asked("TableCodeCache.Document 228"), 1);
        form.host.state().hub.CacheRefreshed.raise({});
        QCOMPARE(asked("UsersCache.Document"), 1); // at the next use, not before
        form.picker->SetShowName(false);
        form.found(u"a"_s);
        QCOMPARE(asked("UsersCache.Document"), 2);
        QCOMPARE(asked("TableCodeCache.Document 228"), 2);
        QCOMPARE(asked("new UsersCache"), 1); // the caches themselves are kept
        QCOMPARE(asked("new TableCodeCache"), 1);
    }

    void aUserWhoIsNewIsFoundOnlyAfterTheCacheRefresh()
    {
        UserForm form;
        QCOMPARE(form.found(u"newman"_s).size(), 0);
        form.host.state().users = xmlOf(
            u"<Users>"_s + userRecord(u"n"_s, true, u"Al"_s, u"Newman"_s, u"N"_s, u"1"_s) + u"</Users>"_s);
        QCOMPARE(form.found(u"newman"_s).size(), 0);
        form.host.state().hub.CacheRefreshed.raise({{u"Users"_s}});
        QCOMPARE(form.found(u"newman"_s).size(), 1);
    }

    void aCacheRefreshTouchesNeitherValueNorTag()
    {
        UserForm form;
        form.picker->SetValue(u"user:asmith"_s);
        Journal journal(form.picker);
        form.host.state().users = XmlDocument();
        form.host.state().userNames.clear();
        form.host.state().hub.CacheRefreshed.raise({});
        QCOMPARE(form.picker->Value(), QVariant(u"user:asmith"_s));
        QCOMPARE(form.tag->Caption(), u"Ann Smith (user)"_s);
        QVERIFY(form.tag->isVisible());
        QCOMPARE(journal.entries, QStringList());
    }

    void aListWithoutRecordsOrWithoutARootFindsNothingAndRaisesNothing()
    {
        UserForm form;
        QVERIFY(!form.found(u"a"_s).isEmpty());
        form.host.state().users = XmlDocument();
        form.host.setTable(Tables::Team, {});
        form.host.state().hub.CacheRefreshed.raise({});
        QCOMPARE(form.found(u"a"_s), QStringList());
        form.picker->SetIncludeInactive(true);
        QCOMPARE(form.found(QString()), QStringList());
        form.picker->SetValue(u"user:asmith"_s);
        QCOMPARE(form.picker->Value(), QVariant(u"user:asmith"_s));
    }

    void theHostsListKeepsItsPropertiesAndIsNotChanged()
    {
        UserForm form;
        const QString before = form.host.state().users.xml();
        QVERIFY(!form.found(u"a"_s).isEmpty());
        QVERIFY(!form.host.state().users.property(u"SelectionLanguage"_s).isValid());
        QCOMPARE(form.host.state().users.xml(), before);
    }

    void whatIsChosenMayGoWithItsList()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.choose(u"smith"_s);
        form.host.state().users = XmlDocument();
        form.host.state().hub.CacheRefreshed.raise({});
        QCOMPARE(form.box->SelectedItem().childElement(u"UserId"_s).text(), u"asmith"_s);
        form.clickLink();
        QVERIFY(IsNull(form.picker->Value()));
    }

    // The end

    void anEndedPickerListensNoLonger()
    {
        PeopleSite site;
        {
            const FlatUserPicker picker;
            QVERIFY(site.host.state().hub.CacheRefreshed.hasHandlers());
        }
        QVERIFY(!site.host.state().hub.CacheRefreshed.hasHandlers());
    }

    void thePickerMayDieWithItsListOpenAndWithTheFocus()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.type(u"smith"_s);
        QVERIFY(form.box->ListIsOpen());
        const QPointer<QWidget> list(form.list()->window());
        QVERIFY(list && list != &form.window && list->isVisible());
        delete form.picker;
        QVERIFY(!list);
        form.host.state().hub.CacheRefreshed.raise({});
        for (const QWidget* window : QApplication::topLevelWidgets())
            QVERIFY(window == &form.window || !window->isVisible());
    }

    void aFollowerMayDeleteThePickerWhileAnEntryIsTaken_data()
    {
        QTest::addColumn<bool>("byMouse");
        QTest::newRow("Enter") << false;
        QTest::newRow("click in the list") << true;
    }
    void aFollowerMayDeleteThePickerWhileAnEntryIsTaken()
    {
        QFETCH(bool, byMouse);
        UserForm form;
        QVERIFY(form.isReady());
        const QPointer<FlatUserPicker> picker(form.picker);
        int selected = 0;
        connect(form.picker, &SearchPicker::ItemSelect, this, [&] {
            ++selected;
            delete form.picker;
        });
        form.type(u"smith"_s);
        const QPointer<QWidget> list(form.list()->window());
        if (byMouse) {
            QTest::mouseClick(form.list()->viewport(), Qt::LeftButton, {}, form.list()->rowRect(0).center());
        } else {
            form.press(Qt::Key_Return);
        }
        QCOMPARE(selected, 1);
        QVERIFY(!picker);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!list);
    }
};

TAVRIN_TEST_MAIN(tst_FlatUserPickerLife)
#include "tst_FlatUserPickerLife.moc"
