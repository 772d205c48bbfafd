#include "base/values/Variant.h"
#include "lookup/FlatPickerForm.h"
#include "support/RaisedError.h"
#include "support/TestCase.h"

#include <QVariantList>

using namespace tavrin;
using namespace Qt::StringLiterals;
using tavrin::test::Journal;
using tavrin::test::raisedBy;
using tavrin::test::usedValues;
using tavrin::test::UserForm;

namespace {

const QVariant Jack = u"user:jobrien"_s;
const QVariant Ann = u"user:asmith"_s;
const QVariant Traffic = u"team:3"_s;
const QVariant Nobody = u"user:nobody"_s;

/// Gives a user a display name, so that the tag's whole text is so long.
void nameJack(UserForm& form, qsizetype length)
{
    const qsizetype kind = QStringLiteral(" (user)").size();
    form.host.state().userNames.insert(u"jobrien"_s, QString(length - kind, u'n'));
}

} // namespace

/// The value, the choice and the tag of `FlatUserPicker`.
class tst_FlatUserPicker : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Putting the value

    void aUserShowsAsATagWithItsKind()
    {
        UserForm form;
        form.picker->SetValue(Jack);
        QCOMPARE(form.picker->Value(), Jack);
        QVERIFY(form.tag->isVisible());
        QCOMPARE(form.tag->Caption(), u"Jack O'Brien (user)"_s);
        QCOMPARE(form.tag->ToolTipText(), QString());
        QCOMPARE(form.box->Text(), u"Jack O'Brien"_s);
    }

    void aTeamShowsAsATagWithItsKind()
    {
        UserForm form;
        form.picker->SetValue(Traffic);
        QCOMPARE(form.picker->Value(), Traffic);
        QCOMPARE(form.tag->Caption(), u"TRAF (team)"_s);
        QCOMPARE(form.box->Text(), u"TRAF"_s);
    }

    void aRecordThatIsInactiveIsStillFound_data()
    {
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("caption");
        QTest::newRow("user") << u"user:7"_s << u"Hanna Old (user)"_s;
        QTest::newRow("team") << u"team:9"_s << u"OLD (team)"_s;
    }
    void aRecordThatIsInactiveIsStillFound()
    {
        QFETCH(QString, value);
        QFETCH(QString, caption);
        UserForm form;
        form.picker->SetValue(value);
        QCOMPARE(form.tag->Caption(), caption);
        QVERIFY(form.tag->isVisible());
    }

    void userAndTeamOfTheSameNumberAreToldApart()
    {
        UserForm form;
        form.picker->SetValue(u"user:7"_s);
        QCOMPARE(form.tag->Caption(), u"Hanna Old (user)"_s);
        form.picker->SetValue(u"team:7"_s);
        QCOMPARE(form.tag->Caption(), u"K9 (team)"_s);
    }

    void anIdentifierIsCutAtItsOwnColon()
    {
        UserForm form;
        form.picker->SetValue(u"user:asmith:jobrien"_s);
        QCOMPARE(form.tag->Caption(), u"Ann Smith (user)"_s);
        QCOMPARE(form.picker->Value(), QVariant(u"user:asmith:jobrien"_s)); // stored as it was put
    }

    void anIdentifierIsATextAndNoExpression_data()
    {
        QTest::addColumn<QString>("value");
        QTest::newRow("condition") << u"user:x' or '1'='1"_s;
        QTest::newRow("team's condition") << u"team:3' or '1'='1"_s;
        QTest::newRow("apostrophe") << u"user:'"_s;
        QTest::newRow("both quotes") << u"user:'\""_s;
        QTest::newRow("bracket") << u"team:]"_s;
        QTest::newRow("nothing") << u"user:"_s;
        QTest::newRow("no team") << u"team:"_s;
        QTest::newRow("NUL") << u"user:jobrien"_s + QChar(0);
        QTest::newRow("lone surrogate") << u"user:"_s + QChar(0xD800);
        QTest::newRow("10,000 apostrophes") << u"user:"_s + QString(10'000, u'\'');
        QTest::newRow("100,000 characters") << u"team:"_s + QString(100'000, u'3');
    }
    void anIdentifierIsATextAndNoExpression()
    {
        QFETCH(QString, value);
        UserForm form;
        form.picker->SetValue(value); // nothing is found, and nothing raised
        QCOMPARE(form.picker->Value(), QVariant(value));
        QVERIFY(form.box->SelectedItem().isNull());
        QVERIFY(!form.tag->isVisible());
    }

    void anotherPrefixIsRefusedWithTheWholeValueAndNothingIsChanged_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("text");
        QTest::newRow("other prefix") << QVariant(u"group:4"_s) << u"group:4"_s;
        QTest::newRow("case") << QVariant(u"User:jobrien"_s) << u"User:jobrien"_s;
        QTest::newRow("no colon") << QVariant(u"user"_s) << u"user"_s;
        QTest::newRow("space in front") << QVariant(u" user:9"_s) << u" user:9"_s;
        QTest::newRow("number") << QVariant(12) << u"12"_s;
        QTest::newRow("quotes") << QVariant(u"it's %1"_s) << u"it's %1"_s;
    }
    void anotherPrefixIsRefusedWithTheWholeValueAndNothingIsChanged()
    {
        QFETCH(QVariant, value);
        QFETCH(QString, text);
        UserForm form;
        form.picker->SetValue(Jack);
        Journal journal(form.picker);
        const XmlNode item = form.box->SelectedItem();
        const Error error = raisedBy([&] { form.picker->SetValue(value); });
        QCOMPARE(error.Description, u"Unrecognized value format '"_s + text + u"'"_s);
        QCOMPARE(error.Number, 5);
        QCOMPARE(form.picker->Value(), Jack);
        QCOMPARE(form.tag->Caption(), u"Jack O'Brien (user)"_s);
        QVERIFY(form.tag->isVisible());
        QVERIFY(form.box->SelectedItem() == item);
        QCOMPARE(journal.entries, QStringList());
    }

    void aRefusedValueOfTheHostLeavesItsValueBeforeInForce()
    {
        UserForm form;
        form.contract().SetValue(u"user:7"_s, nullptr);
        QVERIFY_EXCEPTION_THROWN(form.contract().SetValue(u"?"_s, nullptr), Error);
        form.picker->SetValue(Null());
        QVERIFY(form.found(u"hanna"_s).contains(u"Hanna Old User (7)"_s));
    }

    void aValueThatIsInNeitherListStaysAndIsTold_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::newRow("user") << Nobody;
        QTest::newRow("team") << QVariant(u"team:44"_s);
    }
    void aValueThatIsInNeitherListStaysAndIsTold()
    {
        QFETCH(QVariant, value);
        UserForm form;
        Journal journal(form.picker);
        journal.seen = [&] { return form.picker->Value(); };
        form.contract().SetValue(value, nullptr);
        QCOMPARE(form.contract().GetValue(), value);
        QCOMPARE(journal.entries, QStringList({u"Change"_s, u"Value"_s}));
        QVERIFY(IsNull(journal.values.at(0))); // the box has cleared, and the value comes behind that
        QCOMPARE(journal.values.at(1), value);
    }

    void aValueThatIsInNeitherListShowsTheTagBeforeOnlyFromTheNextRefreshOn()
    {
        UserForm form;
        form.picker->SetValue(Jack);
        form.picker->SetValue(Nobody);
        QVERIFY(!form.tag->isVisible());
        QVERIFY(form.box->isVisible());
        QCOMPARE(form.box->Text(), QString());
        form.picker->SetRequired(true);
        QVERIFY(form.tag->isVisible());
        QCOMPARE(form.tag->Caption(), u"Jack O'Brien (user)"_s); // odd, and meant
    }

    void anEmptyTextClearsAndStaysAnEmptyText()
    {
        UserForm form;
        form.picker->SetValue(Jack);
        Journal journal(form.picker);
        journal.seen = [&] { return form.picker->Value(); };
        form.picker->SetValue(QString());
        QVERIFY(!IsNull(form.picker->Value()));
        QCOMPARE(form.picker->Value(), QVariant(QString()));
        QVERIFY(form.box->SelectedItem().isNull());
        QCOMPARE(form.box->Text(), QString());
        QVERIFY(!form.tag->isVisible());
        QCOMPARE(journal.entries, QStringList({u"Change"_s, u"Value"_s}));
        QVERIFY(IsNull(journal.values.at(0)));
    }

    void nullOverNullStillReportsTheValue()
    {
        UserForm form;
        Journal journal(form.picker);
        form.picker->SetValue(Null());
        QCOMPARE(journal.entries, QStringList({u"Change"_s, u"Value"_s}));
        QVERIFY(IsNull(form.picker->Value()));
    }

    void puttingTheCurrentValueAgainDoesNothingAtAll()
    {
        UserForm form;
        form.picker->SetValue(Jack);
        Journal journal(form.picker);
        const int calls = form.host.calls();
        form.picker->SetValue(Jack);
        QCOMPARE(journal.entries, QStringList());
        QCOMPARE(form.host.calls(), calls);
    }

    void theChangeIsRaisedWithTheNewValueBeforeTheReport()
    {
        UserForm form;
        Journal journal(form.picker);
        journal.seen = [&] {
            return QVariantList{form.picker->Value(), form.tag->Caption(), form.tag->isVisible()};
        };
        form.picker->SetValue(Jack);
        QCOMPARE(journal.entries, QStringList({u"Change"_s, u"Value"_s}));
        QCOMPARE(journal.values.at(0), QVariant(QVariantList{Jack, u"Jack O'Brien (user)"_s, true}));
    }

    void aFollowerMayDeleteThePickerAtItsChange()
    {
        UserForm form;
        connect(form.picker, &SearchPicker::Change, this, [&] { delete form.picker; });
        QPointer<FlatUserPicker> picker(form.picker);
        picker->SetValue(Jack);
        QVERIFY(!picker);
    }

    void aPutInsideChangeStandsWithItsTag_data()
    {
        QTest::addColumn<QVariant>("inner");
        QTest::addColumn<QString>("caption");
        QTest::newRow("a team") << Traffic << u"TRAF (team)"_s;
        QTest::newRow("a user") << Ann << u"Ann Smith (user)"_s;
        QTest::newRow("nothing") << Null() << QString();
        QTest::newRow("in neither list") << Nobody << QString();
    }
    void aPutInsideChangeStandsWithItsTag()
    {
        QFETCH(QVariant, inner);
        QFETCH(QString, caption);
        for (const bool byContract : {false, true}) {
            UserForm form;
            connect(form.picker, &SearchPicker::Change, this, [&, isFirst = true]() mutable {
                if (std::exchange(isFirst, false))
                    form.picker->SetValue(inner);
            });
            if (byContract)
                form.contract().SetValue(Jack, nullptr);
            else
                form.picker->SetValue(Jack);
            QCOMPARE(form.picker->Value(), inner);
            QCOMPARE(form.contract().GetValue(), inner);
            if (caption.isEmpty()) {
                QVERIFY(!form.tag->isVisible());
                QCOMPARE(form.box->Text(), QString());
            } else {
                QVERIFY(form.tag->isVisible());
                QCOMPARE(form.tag->Caption(), caption);
            }
        }
    }

    // The host's contract

    void theHostsValueOfBeforeIsInForceWhileTheNewOneIsPutAndTheUsedValuesAreNew()
    {
        UserForm form;
        form.picker->SetRemoveUsedValues(true);
        form.contract().SetValue(u"user:7"_s, usedValues({Ann}));
        QStringList rows;
        connect(form.picker, &SearchPicker::Change, this, [&] {
            form.picker->SetShowName(false); // which lets the list open over a value
            rows = form.found(QString());
        });
        form.contract().SetValue(Jack, usedValues({u"user:9"_s}));
        QVERIFY(rows.contains(u"Hanna Old User (7)"_s));      // the old value is still held
        QVERIFY(rows.contains(u"Ann Smith User (asmith)"_s)); // no longer used
        QVERIFY(!rows.contains(u"Ninel Zed User (9)"_s));
        QVERIFY(!form.found(QString()).contains(u"Hanna Old User (7)"_s));
    }

    void theUsedValuesAreSharedWithTheHost()
    {
        UserForm form;
        form.picker->SetRemoveUsedValues(true);
        const UsedValues used = usedValues({});
        form.contract().SetValue(Null(), used);
        QCOMPARE(form.found(u"ann s"_s).size(), 1);
        used->append(Ann);
        QCOMPARE(form.found(u"ann s"_s).size(), 0);
    }

    void noUsedValuesCountAsNone()
    {
        UserForm form;
        form.picker->SetRemoveUsedValues(true);
        form.contract().SetValue(Null(), nullptr);
        QCOMPARE(form.found(u"ann s"_s).size(), 1);
    }

    void thePersonsChoiceLeavesTheHostsValueInForce()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.contract().SetValue(u"user:7"_s, nullptr);
        form.picker->SetValue(Null());
        form.choose(u"ann s"_s);
        QCOMPARE(form.picker->Value(), Ann);
        form.clickLink();
        QVERIFY(form.found(QString()).contains(u"Hanna Old User (7)"_s));
    }

    // Choosing

    void aChoiceRaisesChangeThenItemSelectAndReportsNothing()
    {
        UserForm form;
        QVERIFY(form.isReady());
        Journal journal(form.picker);
        form.choose(u"smith"_s);
        QCOMPARE(journal.entries, QStringList({u"Change"_s, u"ItemSelect"_s}));
        QCOMPARE(form.picker->Value(), Ann);
    }

    void aTeamThatIsChosenBecomesTheValue()
    {
        UserForm form;
        QVERIFY(form.isReady());
        form.choose(u"traffic"_s);
        QCOMPARE(form.picker->Value(), Traffic);
    }

    void aChoiceByMouseRaisesTheSame()
    {
        UserForm form;
        QVERIFY(form.isReady());
        Journal journal(form.picker);
        form.type(u"smith"_s);
        QTest::mouseClick(form.list()->viewport(), Qt::LeftButton, Qt::NoModifier,
                          form.list()->rowRect(0).center());
        QCOMPARE(journal.entries, QStringList({u"Change"_s, u"ItemSelect"_s}));
        QCOMPARE(form.picker->Value(), Ann);
        QVERIFY(!form.box->ListIsOpen());
    }

    void aNodeOfAnotherNameGivesAnEmptyValueAndEmptyTexts()
    {
        UserForm form;
        form.picker->SetIncludeInactive(true);
        form.host.state().users = tavrin::test::xmlOf(u"<Users><Other><UserId>1</UserId></Other></Users>"_s);
        form.host.setTable(Tables::Team, {});
        QCOMPARE(form.found(QString()), QStringList{QString()});
        form.press(Qt::Key_Down);
        form.press(Qt::Key_Return);
        QCOMPARE(form.picker->Value(), QVariant(QString()));
        QCOMPARE(form.tag->Caption(), QString());
        QCOMPARE(form.tag->ToolTipText(), QString());
    }

    void aRecordWithoutAChildElementShowsEmptyTextInItsPlace()
    {
        UserForm form;
        QVERIFY(form.isReady());
        QCOMPARE(form.found(u"bare"_s), QStringList{u"User (bare)"_s});
        form.picker->SetValue(u"user:bare"_s);
        QCOMPARE(form.tag->Caption(), u" (user)"_s);
        form.host.state().users =
            tavrin::test::xmlOf(u"<Users><UserAccount><IsActive>True</IsActive></UserAccount></Users>"_s);
        form.host.state().hub.CacheRefreshed.raise({});
        form.picker->SetShowName(false);
        QCOMPARE(form.found(QString()).first(), u"User ()"_s);
        form.press(Qt::Key_Down);
        form.press(Qt::Key_Return);
        QCOMPARE(form.picker->Value(), QVariant(u"user:"_s));
    }

    // The tag's text

    void aNameOf29CharactersShowsWholeAndALongerOneIsCutWithTheWholeAsToolTip_data()
    {
        QTest::addColumn<int>("length");
        QTest::addColumn<bool>("cut");
        QTest::newRow("28") << 28 << false;
        QTest::newRow("29") << 29 << false;
        QTest::newRow("30") << 30 << true;
        QTest::newRow("300") << 300 << true;
    }
    void aNameOf29CharactersShowsWholeAndALongerOneIsCutWithTheWholeAsToolTip()
    {
        QFETCH(int, length);
        QFETCH(bool, cut);
        UserForm form;
        nameJack(form, length);
        form.picker->SetValue(Jack);
        const QString whole = QString(length - 7, u'n') + u" (user)"_s;
        QCOMPARE(whole.size(), length);
        QCOMPARE(form.tag->Caption(), cut ? whole.left(26) + u"..."_s : whole);
        QCOMPARE(form.tag->ToolTipText(), cut ? whole : QString());
    }

    void theToolTipOfALongNameGoesWithTheNextChoice()
    {
        UserForm form;
        nameJack(form, 40);
        form.picker->SetValue(Jack);
        QVERIFY(!form.tag->ToolTipText().isEmpty());
        form.picker->SetValue(Ann);
        QCOMPARE(form.tag->ToolTipText(), QString());
    }
};

TAVRIN_TEST_MAIN(tst_FlatUserPicker)
#include "tst_FlatUserPicker.moc"
