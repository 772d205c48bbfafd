#include "component/ClassRegister.h"
#include "frame/host_contracts/Host.h"
#include "frame/modUtils.h"
#include "support/RaisedError.h"
#include "support/TestCase.h"
#include "testing/FakeDesktop.h"
#include "testing/Unhandled.h"

#include <QCoreApplication>
#include <QPointer>
#include <QStringList>
#include <QWidget>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

/// Overrides nothing.
class BareHost : public Host
{
};

/// A person who tries everything: types into each box of the control and presses each of its buttons.
void workWith(QWidget& control)
{
    for (const QPointer<QWidget> part : control.findChildren<QWidget*>()) {
        if (!part || !part->isVisible())
            continue;
        QTest::mouseClick(part, Qt::LeftButton);
        if (part && part->focusPolicy() != Qt::NoFocus) {
            part->setFocus();
            QTest::keyClicks(part, u"ab"_s);
        }
        if (part)
            QTest::keyClick(part, Qt::Key_Down);
        if (part)
            QTest::keyClick(part, Qt::Key_Escape);
    }
    QCoreApplication::sendPostedEvents();
}

/// Each failure that nobody caught, once and without its place.
QStringList textsOf(const Unhandled& unhandled)
{
    QStringList texts;
    for (const QString& text : unhandled.texts)
        texts << text.mid(text.indexOf(u": "_s) + 2);
    texts.removeDuplicates();
    return texts;
}

} // namespace

/// Every control over a host that offers nothing.
class tst_BareHost : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void aControlTellsInOneErrorWhatItMisses_data()
    {
        QTest::addColumn<QString>("refusal");  // of the call that makes the control
        QTest::addColumn<QStringList>("told"); // while a person works with it
        const auto row = [](const char* control, const QString& refusal, const QStringList& told) {
            QTest::newRow(control) << refusal << told;
        };
        const QString collection = u"The host does not offer Host.newTableCollection"_s;
        row("AgencyPicker", {}, {});
        row("Attachments", collection, {});
        row("AutoCompleteField", {}, {});
        row("CoverImage", collection, {});
        row("EmployeePicker", {}, {u"The host does not offer Host.newEmployeeListCache"_s});
        row("FlatEmployeePicker", {}, {u"The host does not offer Host.newEmployeeListCache"_s});
        row("FlatUserPicker", {}, {u"The host does not offer Host.newUsersCache"_s});
        row("LatLong", {}, {});
        row("MultiValue", {},
            {u"Nothing can be added to this list yet: it has not been filled from a record."_s});
        row("NibrsOffensePicker", u"The host does not offer the component NIBRS.Singletons"_s, {});
        row("OffensePicker", {}, {u"The host does not offer Host.newOffenseListCache"_s});
        row("SuspRelList", {}, {});
        row("TavrinDropdown", {}, {});
        row("TavrinSpellcheck", {}, {});
    }
    void aControlTellsInOneErrorWhatItMisses()
    {
        QFETCH(QString, refusal);
        QFETCH(QStringList, told);
        const QString control = u"TVBoundControls."_s + QString::fromLatin1(QTest::currentDataTag());
        BareHost host;
        const HostInstallation installed(host);
        modUtils::ReleaseNibrsModule();
        FakeMessageBoxes boxes;
        Unhandled unhandled;
        QWidget window;
        window.resize(600, 400);
        const Error error = raisedBy([&] {
            UserControl* made = publicControls().create(control, &window, {u"control"_s});
            made->resize(500, 300);
            window.show();
            QVERIFY(QTest::qWaitForWindowExposed(&window));
            workWith(window);
            delete made;
        });
        QCOMPARE(error.Description, refusal);
        QCOMPARE(error.Number, refusal.isEmpty() ? 0 : Error::NoSuchComponentNumber);
        QCOMPARE(textsOf(unhandled), told);
        QCOMPARE(boxes.texts(), QStringList());
    }

    void noControlIsLeftOut() { QCOMPARE(publicControls().classNames().size(), 14); }
};

TAVRIN_TEST_MAIN(tst_BareHost)
#include "tst_BareHost.moc"
