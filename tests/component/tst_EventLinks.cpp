#include "component/HostedTest.h"
#include "lookup/EmployeePicker.h"
#include "testing/Unhandled.h"

#include <QPointer>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;
using namespace tavrin::test;
using tavrin::EmployeePicker;

namespace {

/// What a program's callback was told, and what it answers.
struct Listener
{
    static TvResult hear(TvControl control, const char* event, TvVariant* arguments, int32_t count,
                         void* context)
    {
        auto& self = *static_cast<Listener*>(context);
        self.events << QString::fromLatin1(event);
        self.control = control;
        self.arguments = count;
        if (self.answer)
            self.answer(arguments);
        return self.result;
    }

    QStringList events;
    TvControl control = 0;
    int arguments = -1;
    std::function<void(TvVariant*)> answer;
    TvResult result = TV_S_OK;
};

} // namespace

/// Events of controls, as callbacks of programs get them.
class tst_EventLinks : public tavrin::test::HostedTest
{
    Q_OBJECT

private Q_SLOTS:
    void init() override
    {
        HostedTest::init();
        m_made = std::make_unique<Made>("EmployeePicker");
        m_listener = {};
    }
    void cleanup() override
    {
        m_made.reset();
        HostedTest::cleanup();
    }

    void anEventReachesItsCallback()
    {
        subscribe("change");
        putValue(11);
        QCOMPARE(m_listener.events, QStringList({u"Change"_s}));
        QCOMPARE(m_listener.control, m_made->handle);
        QCOMPARE(m_listener.arguments, 0);
    }

    void theFrameTellsWhatMustBeSaved()
    {
        QString key;
        m_listener.answer = [&](TvVariant* arguments) { key = QString::fromUtf8(arguments[0].value.text); };
        subscribe("PropertyChanged");
        const TvVariant no = of(false);
        QCOMPARE(functions().Put(m_made->handle, "ShowName", &no), TV_S_OK);
        QCOMPARE(key, u"ShowName"_s);
        QCOMPARE(m_listener.arguments, 1);
    }

    void anAnswerByReferenceReachesTheControl()
    {
        int officer = 0;
        m_listener.answer = [&](TvVariant* arguments) {
            officer = arguments[0].value.integer;
            QCOMPARE(arguments[1].type, int(TV_BOOLEAN));
            QCOMPARE(arguments[1].value.boolean, 0);
            arguments[1].value.boolean = 1;
        };
        subscribe("Filter");
        QVERIFY(isExcluded(11));
        QCOMPARE(officer, 11);
        QCOMPARE(m_listener.arguments, 2);
    }

    void anAnswerOfAnotherTypeIsToldAndLeavesTheArgument()
    {
        const Unhandled unhandled;
        m_listener.answer = [](TvVariant* arguments) { library().SetText(&arguments[1], "perhaps"); };
        subscribe("Filter");
        QVERIFY(!isExcluded(11));
        QCOMPARE(unhandled.texts.size(), 1);
        QVERIFY(unhandled.texts.first().startsWith(u"Filter: "_s));
    }

    void aCallbackThatFailsIsToldOf()
    {
        const Unhandled unhandled;
        m_listener.answer = [](TvVariant*) { library().RaiseError(9, "me", "I have no time"); };
        m_listener.result = TV_E_EXCEPTION;
        subscribe("Change");
        putValue(11);
        QCOMPARE(unhandled.texts, QStringList({u"Change: I have no time"_s}));
        m_listener.answer = {};
        m_listener.result = TV_E_FAIL;
        putValue(12);
        QCOMPARE(unhandled.texts.last(), u"Change: The handler of Change has failed with 0x80004005"_s);
    }

    void aProgramHearsOfFailuresThatNobodyCaught()
    {
        QStringList heard;
        const auto hear = [](const TvError* error, const char* where, void* context) {
            *static_cast<QStringList*>(context)
                << u"%1 %2 %3"_s.arg(error->number)
                       .arg(QString::fromUtf8(error->description), QString::fromUtf8(where));
        };
        QCOMPARE(library().SetUnhandled(hear, &heard), TV_S_OK);
        m_listener.answer = [](TvVariant*) { library().RaiseError(9, nullptr, "I have no time"); };
        m_listener.result = TV_E_EXCEPTION;
        subscribe("Change");
        putValue(11);
        QCOMPARE(library().SetUnhandled(nullptr, nullptr), TV_S_OK);
        QCOMPARE(heard, QStringList({u"9 I have no time Change"_s}));
    }

    void aStrangersPutInsideAPutKeepsItsFailureFromTheProgram_data()
    {
        QTest::addColumn<QByteArray>("property");
        QTest::addColumn<bool>("ofItself");
        for (const char* property : {"ShowName", "Enabled", "BackColor", "Value"}) {
            QTest::addRow("%s", property) << QByteArray(property) << false;
            QTest::addRow("%s of itself", property) << QByteArray(property) << true;
        }
    }
    void aStrangersPutInsideAPutKeepsItsFailureFromTheProgram()
    {
        QFETCH(QByteArray, property);
        QFETCH(bool, ofItself);
        const Unhandled unhandled;
        EmployeePicker other;
        auto* picker = qobject_cast<EmployeePicker*>(m_made->object());
        QObject* put = ofItself ? static_cast<QObject*>(picker) : &other;
        bool isInside = false;
        const auto putWrongly = [&] {
            if (!std::exchange(isInside, true)) // its own value tells of itself
                QVERIFY(put->setProperty("Value", u"'"_s));
        };
        connect(picker, &EmployeePicker::PropertyChanged, &other, putWrongly);
        connect(picker, &EmployeePicker::Change, &other, putWrongly);
        const TvVariant value = property == "Value"       ? of(11)
                                : property == "BackColor" ? colored(0x112233)
                                                          : of(false);
        QCOMPARE(functions().Put(m_made->handle, property.constData(), &value), TV_S_OK);
        QCOMPARE(unhandled.texts.size(), 1);
        QVERIFY2(unhandled.texts.constFirst().startsWith(u"EmployeePicker.Value: "_s),
                 qPrintable(unhandled.texts.constFirst()));
    }

    void whatIsUnsubscribedIsNotCalledAgain()
    {
        const uint64_t cookie = subscribe("Change");
        subscribe("Change");
        QCOMPARE(functions().Unsubscribe(m_made->handle, cookie), TV_S_OK);
        QCOMPARE(functions().Unsubscribe(m_made->handle, cookie), TV_S_FALSE);
        putValue(11);
        QCOMPARE(m_listener.events.size(), 1);
    }

    void aCallbackMayUnsubscribeItself()
    {
        const uint64_t cookie = subscribe("Change");
        m_listener.answer = [&](TvVariant*) { functions().Unsubscribe(m_made->handle, cookie); };
        putValue(11);
        putValue(12);
        QCOMPARE(m_listener.events.size(), 1);
    }

    void aCallbackMayDestroyTheControl()
    {
        const QPointer<QObject> object(m_made->object());
        m_listener.answer = [&](TvVariant*) {
            QCOMPARE(functions().Destroy(m_made->handle), TV_S_OK);
            QVERIFY(object); // its event is under way
            Answer held;
            QCOMPARE(functions().Get(m_made->handle, "Value", held.out()), TV_E_HANDLE);
        };
        subscribe("Change");
        const TvVariant value = of(11);
        QCOMPARE(functions().Put(m_made->handle, "Value", &value), TV_S_OK);
        QCOMPARE(m_listener.events.size(), 1);
        QVERIFY(!object);
    }

    void nothingIsToldOfAControlThatIsDestroyed()
    {
        auto* picker = qobject_cast<EmployeePicker*>(m_made->object());
        m_listener.answer = [&](TvVariant*) {
            QCOMPARE(functions().Destroy(m_made->handle), TV_S_OK);
            Q_EMIT picker->Change();
        };
        subscribe("ItemSelect");
        subscribe("Change");
        Q_EMIT picker->ItemSelect();
        QCOMPARE(m_listener.events, QStringList({u"ItemSelect"_s}));
        QCoreApplication::sendPostedEvents(picker, QEvent::DeferredDelete);
    }

    void anEventThatIsNoneIsRefused()
    {
        uint64_t cookie = 7;
        QCOMPARE(functions().Subscribe(m_made->handle, "Value", Listener::hear, nullptr, &cookie),
                 TV_E_MEMBERNOTFOUND);
        QCOMPARE(cookie, 0U);
        QCOMPARE(lastDescription(), u"EmployeePicker has no event \"Value\""_s);
        QCOMPARE(functions().Subscribe(m_made->handle, "destroyed", Listener::hear, nullptr, nullptr),
                 TV_E_MEMBERNOTFOUND);
    }

private:
    const TvClassObject& functions() const { return m_made->functions; }

    uint64_t subscribe(const char* event)
    {
        uint64_t cookie = 0;
        if (functions().Subscribe(m_made->handle, event, Listener::hear, &m_listener, &cookie) != TV_S_OK)
            qFatal("%s", qPrintable(lastDescription()));
        return cookie;
    }

    void putValue(int number) const
    {
        const TvVariant value = of(number);
        QCOMPARE(functions().Put(m_made->handle, "Value", &value), TV_S_OK);
    }

    bool isExcluded(int officer) const
    {
        bool exclude = false;
        Q_EMIT qobject_cast<EmployeePicker*>(m_made->object())->Filter(officer, exclude);
        return exclude;
    }

    std::unique_ptr<Made> m_made;
    Listener m_listener;
};

TAVRIN_TEST_MAIN(tst_EventLinks)
#include "tst_EventLinks.moc"
