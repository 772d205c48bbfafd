#include "AttachmentsForm.h"
#include "attachments/UndoLine.h"

#include <QAccessible>
#include <QShortcut>

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::test::AttachmentsForm;
using tavrin::test::NumberedRows;
using tavrin::test::ShownBox;

namespace {

UndoLine* lineOf(const AttachmentsForm& form)
{
    return form.child<UndoLine>("picUndo");
}

/// What the line says; "" while it is hidden.
QString said(const AttachmentsForm& form)
{
    if (lineOf(form)->isHidden())
        return {};
    return form.child<Label>("lblRemoved")->Caption() + u' ' + form.child<TextLink>("lnkUndo")->Caption();
}

void remove(AttachmentsForm& form, int line)
{
    form.click(form.placeOfLine(line));
    form.press(Qt::Key_Delete);
}

void undo(AttachmentsForm& form)
{
    form.list->setFocus();
    form.press(Qt::Key_Z, Qt::ControlModifier);
}

/// A comment whose follower does something, or fails.
class FollowedNotes final : public tvField
{
public:
    explicit FollowedNotes(QString text)
        : m_value(std::move(text))
    {
    }

    QVariant Value() const override { return m_value; }
    void SetValue(const QVariant& value) override
    {
        if (follower)
            follower();
        m_value = value;
    }
    QString Name() const override { return u"Notes"_s; }
    bool IsKey() const override { return false; }
    qint32 MaxLength() const override { return 0; }

    std::function<void()> follower;

private:
    QVariant m_value;
};

class LinkToRecord final : public tvLinkField
{
public:
    QVariant Value() const override { return 7; }
    void SetValue(const QVariant&) override { throw Error(u"a link is the host's"_s); }
    QString Name() const override { return u"IncidentNo"_s; }
    bool IsKey() const override { return false; }
    qint32 MaxLength() const override { return 0; }
};

/// The columns of a row, with another one in the place of that of its name, or behind them.
tvTableRowPtr rowWith(const tvFieldPtr& other)
{
    const tvTableRowPtr plain = NumberedRows::makeRow(false);
    QList<tvFieldPtr> fields;
    for (int index = 1; index <= plain->FieldCount(); ++index) {
        if (plain->Item(index)->Name() != other->Name())
            fields << plain->Item(index);
    }
    auto row = std::make_shared<tavrin::test::FakeRow>(fields << other, false);
    AttachmentsForm::set(*row, "FileName", u"2014\\03\\special.png"_s);
    AttachmentsForm::set(*row, "OriginalFileName", u"special.png"_s);
    return row;
}

/// Sends a repeat of keys that are held down.
void repeatUndoKeys(AttachmentsForm& form)
{
    QTest::simulateEvent(form.window.windowHandle(), true, Qt::Key_Z, Qt::ControlModifier, QString(), true,
                         -1);
}

/// All fields of a row, as one text.
QString fieldsOf(tvTableRow& row)
{
    QStringList fields;
    for (int index = 1; index <= row.FieldCount(); ++index)
        fields << row.Item(index)->Name() + u'=' + ToText(row.Item(index)->Value());
    return fields.join(u'|');
}

/// The key of the cover; 0 for none.
int coverOf(const AttachmentsForm& form)
{
    const qint32 index = form.rows->PrimaryIndex();
    return index == 0 ? 0 : form.text(index, "SeqNo").toInt();
}

} // namespace

/// Putting removed attachments back.
class tst_AttachmentsUndo : public tavrin::test::TestCase
{
    Q_OBJECT

private:
    static void prepare(AttachmentsForm& form)
    {
        QFETCH_GLOBAL(bool, makesRowsAnew);
        if (makesRowsAnew)
            form.rows->makeRowsAnew();
        form.addThree();
    }
    static bool open(AttachmentsForm& form)
    {
        prepare(form);
        return form.open();
    }

private Q_SLOTS:
    void initTestCase_data()
    {
        QTest::addColumn<bool>("makesRowsAnew");
        QTest::newRow("a host that keeps its rows") << false;
        QTest::newRow("a host that makes rows anew") << true;
    }

    // The line

    void whatThePersonRemovesIsSaidInTheStripBesideTheLink_data()
    {
        QTest::addColumn<bool>("byKey");
        QTest::newRow("Delete") << true;
        QTest::newRow("menu") << false;
    }
    void whatThePersonRemovesIsSaidInTheStripBesideTheLink()
    {
        QFETCH(bool, byKey);
        AttachmentsForm form;
        QVERIFY(open(form));
        QCOMPARE(said(form), QString());
        QMap<QString, QRect> before;
        for (const QWidget* part : form.section->findChildren<QWidget*>()) {
            const bool isOfLine = part == lineOf(form) || lineOf(form)->isAncestorOf(part);
            if (!isOfLine && !part->isWindow() && !part->objectName().startsWith(u"qt_"))
                before.insert(part->objectName(), part->geometry());
        }
        const QRect name = form.child<Label>("lblFilename")->geometry(); // goes with the name that shows
        if (byKey)
            form.press(Qt::Key_Delete);
        else
            form.choose(0, Qt::Key_R);
        QCOMPARE(said(form), u"report.docx removed. Undo"_s);
        QCOMPARE(form.child<Label>("lblFilename")->pos(), name.topLeft());
        before.remove(u"lblFilename"_s);
        before.remove({}); // parts of the widgets
        for (auto part = before.cbegin(); part != before.cend(); ++part) {
            QVERIFY2(form.section->findChild<QWidget*>(part.key())->geometry() == part.value(),
                     qPrintable(part.key()));
        }
        const QRect strip = form.child<GroupBox>("picToolbar")->rect();
        const QRect line = lineOf(form)->geometry();
        QVERIFY(strip.contains(line));
        const auto* words = form.child<Label>("Label4"); // which the line lies over
        QCOMPARE(line.left(), words->x());
        QCOMPARE(lineOf(form)->y() + form.child<Label>("lblRemoved")->y(), words->y());
        QCOMPARE(lineOf(form)->y() + form.child<TextLink>("lnkUndo")->y(), form.link->y());
        QCOMPARE(line.right(), strip.right());
        QVERIFY(!line.intersects(form.link->geometry()));
        const QRect undoLink = form.child<TextLink>("lnkUndo")->geometry();
        QVERIFY(lineOf(form)->rect().contains(undoLink));
        QVERIFY(undoLink.left() > form.child<Label>("lblRemoved")->geometry().right());
        QCOMPARE(form.boxes.shown().size(), 0);
    }

    void aLongNameLeavesRoomForTheLinkAtAnyWidth_data()
    {
        QTest::addColumn<int>("width");
        QTest::newRow("as it opens") << 600;
        QTest::newRow("as narrow as it may be") << 400;
        QTest::newRow("wide") << 900;
    }
    void aLongNameLeavesRoomForTheLinkAtAnyWidth()
    {
        QFETCH(int, width);
        AttachmentsForm form;
        prepare(form);
        form.addRow(QString(150, u'W') + u".docx"_s);
        QVERIFY(form.open());
        remove(form, 3);
        form.section->resize(width, 420);
        const auto* line = lineOf(form);
        const auto* link = form.child<TextLink>("lnkUndo");
        const auto* label = form.child<Label>("lblRemoved");
        QCOMPARE(line->geometry().right(), form.child<GroupBox>("picToolbar")->rect().right());
        QVERIFY(line->rect().contains(link->geometry()));
        QVERIFY(!label->geometry().intersects(link->geometry()));
        QCOMPARE(label->toolTip(), QString(150, u'W') + u".docx removed."_s);
    }

    void whatTheHostRemovesIsNotSaid()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        form.rows->RemoveCurrent(false);
        QCOMPARE(said(form), QString());
    }

    void aRemovalThatFailsIsNotSaid()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        form.rows->removalFailure = Error(u"the row is locked"_s);
        form.press(Qt::Key_Delete);
        QCOMPARE(form.boxes.take().size(), 1);
        QCOMPARE(said(form), QString());
    }

    void aRemovalBehindWhichAFollowerFailsCanBeUndone()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        Subscription failing = form.rows->ItemRemovedEx.subscribe(
            [](qint32, const tvTableRowPtr&) { throw Error(u"the cover is away"_s); });
        form.press(Qt::Key_Delete);
        QCOMPARE(form.boxes.take().size(), 1);
        QCOMPARE(said(form), u"report.docx removed. Undo"_s);
        undo(form);
        QCOMPARE(form.fileNames(), QStringList({u"door.png"_s, u"lock.png"_s, u"report.docx"_s}));
        QCOMPARE(said(form), QString());
    }

    void aRemovalBehindWhichTheSameRecordIsReadAndAFollowerFailsCanBeUndone()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        Subscription failing = form.rows->ItemRemovedEx.subscribe([&form](qint32, const tvTableRowPtr&) {
            form.read(); // and the next row shows
            throw Error(u"the cover is away"_s);
        });
        form.press(Qt::Key_Delete);
        QCOMPARE(form.boxes.take().size(), 1);
        QCOMPARE(said(form), u"report.docx removed. Undo"_s);
        undo(form);
        QCOMPARE(form.fileNames(), QStringList({u"door.png"_s, u"lock.png"_s, u"report.docx"_s}));
    }

    void aScreenReaderTellsWhatTheLinkDoes()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        form.press(Qt::Key_Delete);
        auto* link = QAccessible::queryAccessibleInterface(form.child<TextLink>("lnkUndo"));
        QCOMPARE(link->text(QAccessible::Name), u"Undo"_s);
        QCOMPARE(link->text(QAccessible::Description), u"Puts report.docx back"_s);
    }

    // Undo

    void everyWayPutsTheRowBackWithItsKeyAndFields_data()
    {
        QTest::addColumn<QString>("way");
        for (const char* way : {"click", "Space", "Enter", "Ctrl+Z"})
            QTest::newRow(way) << QString::fromLatin1(way);
    }
    void everyWayPutsTheRowBackWithItsKeyAndFields()
    {
        QFETCH(QString, way);
        AttachmentsForm form;
        prepare(form);
        AttachmentsForm::set(*form.rows->Item(2), "UserId", u"moss"_s);
        AttachmentsForm::set(*form.rows->Item(2), "FolderNo", 3);
        QVERIFY(form.open());
        const QString fields = fieldsOf(*form.rows->Item(2));
        remove(form, 1);
        QCOMPARE(form.rows->Count(), 2);
        if (way == u"click"_s) {
            form.click(form.child<TextLink>("lnkUndo"));
        } else if (way == u"Ctrl+Z"_s) {
            form.press(Qt::Key_Z, Qt::ControlModifier);
        } else {
            form.press(Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget(), form.link);
            form.press(Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget(), form.child<TextLink>("lnkUndo"));
            form.press(way == u"Space"_s ? Qt::Key_Space : Qt::Key_Return);
        }
        // Appending is all that a collection offers.
        QCOMPARE(form.fileNames(), QStringList({u"report.docx"_s, u"lock.png"_s, u"door.png"_s}));
        QCOMPARE(fieldsOf(*form.rows->Item(3)), fields);
        QVERIFY(!form.rows->Item(3)->IsNew());
        QCOMPARE(form.list->Count(), 3);
        QCOMPARE(form.list->Key(2), u"102"_s);
        QCOMPARE(form.selected(), u"102"_s);
        QCOMPARE(form.marked(), u"102"_s);
        QCOMPARE(form.rows->Position(), 3);
        QCOMPARE(form.description->Text(), u"second"_s);
        QCOMPARE(form.child<Label>("lblCount")->Caption(), u"3"_s);
        QCOMPARE(said(form), QString());
        QVERIFY(form.list->hasFocus());
        QCOMPARE(form.boxes.shown().size(), 0);
    }

    void severalRemovalsComeBackTheLastFirst()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        QStringList words;
        for (int i = 0; i < 3; ++i) {
            form.press(Qt::Key_Delete);
            words << said(form);
        }
        QCOMPARE(form.list->Count(), 0);
        QVERIFY(!form.description->isEnabled());
        for (int i = 0; i < 3; ++i) {
            undo(form);
            words << said(form);
        }
        QCOMPARE(words, QStringList({u"report.docx removed. Undo"_s, u"door.png removed. Undo"_s,
                                     u"lock.png removed. Undo"_s, u"door.png removed. Undo"_s,
                                     u"report.docx removed. Undo"_s, QString()}));
        QCOMPARE(form.fileNames(), QStringList({u"lock.png"_s, u"door.png"_s, u"report.docx"_s}));
        QCOMPARE(form.text(1, "SeqNo") + form.text(2, "SeqNo") + form.text(3, "SeqNo"), u"103102101"_s);
        QCOMPARE(form.list->Count(), 3);
        QVERIFY(form.description->isEnabled());
        undo(form); // nothing is left
        QCOMPARE(form.rows->Count(), 3);
    }

    void theLinkKeepsTheFocusWhileThereIsMoreToPutBack()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        form.press(Qt::Key_Delete);
        form.press(Qt::Key_Delete);
        form.press(Qt::Key_Tab);
        form.press(Qt::Key_Tab);
        form.press(Qt::Key_Space);
        QVERIFY(form.child<TextLink>("lnkUndo")->hasFocus());
        form.press(Qt::Key_Space);
        QVERIFY(form.list->hasFocus());
        QCOMPARE(form.rows->Count(), 3);
    }

    void keysThatAreHeldDownPutOneRowBack()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        form.press(Qt::Key_Delete);
        form.press(Qt::Key_Delete);
        form.press(Qt::Key_Z, Qt::ControlModifier);
        for (int repeat = 0; repeat < 3; ++repeat) {
            QKeyEvent event(QEvent::KeyPress, Qt::Key_Z, Qt::ControlModifier, QString(), true);
            QApplication::sendEvent(form.list, &event);
        }
        QCOMPARE(form.rows->Count(), 2);
        QCOMPARE(said(form), u"report.docx removed. Undo"_s);
    }

    void keysThatAreStillDownWhenTheLineHidesDoNotReachTheForm()
    {
        AttachmentsForm form;
        form.addRow(u"a.txt"_s);
        QVERIFY(form.open());
        int taken = 0;
        const QShortcut shortcut(QKeySequence::Undo, &form.window, [&taken] { ++taken; });
        form.press(Qt::Key_Delete);
        QTest::keyPress(form.window.windowHandle(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(form.rows->Count(), 1);
        QCOMPARE(said(form), QString());
        for (int repeat = 0; repeat < 3; ++repeat)
            repeatUndoKeys(form);
        QCOMPARE(taken, 0);
        QTest::keyRelease(form.window.windowHandle(), Qt::Key_Z, Qt::ControlModifier);
        QTest::keyPress(form.window.windowHandle(), Qt::Key_Z, Qt::ControlModifier); // the form's from now on
        repeatUndoKeys(form);
        QTest::keyRelease(form.window.windowHandle(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(taken, 2);
    }

    void theKeysAreTheFormsWhileThereIsNothingToPutBack()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        int taken = 0;
        const QShortcut shortcut(QKeySequence::Undo, &form.window, [&taken] { ++taken; });
        undo(form);
        QCOMPARE(taken, 1);
        form.press(Qt::Key_Delete);
        undo(form);
        QCOMPARE(taken, 1);
        QCOMPARE(form.rows->Count(), 3);
        undo(form);
        QCOMPARE(taken, 2);
    }

    void theKeysInATextUndoWhatIsTypedThere()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        form.press(Qt::Key_Delete);
        form.comment->setFocus();
        form.type(u"a"_s);
        form.press(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(form.comment->Text(), u"two"_s);
        QCOMPARE(form.rows->Count(), 2);
        QCOMPARE(said(form), u"report.docx removed. Undo"_s);
    }

    // The texts

    void aCommentThatWaitedForTheSaveComesBackWithItsRow()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        form.comment->setFocus();
        form.type(u"a "_s);
        form.choose(0, Qt::Key_R);
        QCOMPARE(form.comment->Text(), u"two"_s);
        undo(form);
        QCOMPARE(form.comment->Text(), u"a one"_s);
        QCOMPARE(form.text(3, "Notes"), u"a one"_s);
        QCOMPARE(form.text(1, "Notes"), u"two"_s);
    }

    void aCommentThatNobodyTouchedComesBackAsItWas()
    {
        AttachmentsForm form;
        prepare(form);
        const tvTableRowPtr row = form.addRow(u"null.txt"_s);
        QVERIFY(form.open());
        remove(form, 3);
        undo(form);
        QVERIFY(IsNull(AttachmentsForm::value(*row, "Notes")));
    }

    void theCommentOfTheRowThatShowsIsSavedFirst()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        form.press(Qt::Key_Delete);
        form.comment->setFocus();
        form.type(u"b "_s);
        undo(form);
        QCOMPARE(form.text(1, "Notes"), u"b two"_s);
        QCOMPARE(form.comment->Text(), u"one"_s);
    }

    void savingTheTextsFirstMayDeleteTheSection()
    {
        AttachmentsForm form;
        const auto notes = std::make_shared<FollowedNotes>(u"noted"_s);
        form.rows->Add(rowWith(notes));
        prepare(form);
        QVERIFY(form.open());
        remove(form, 1);
        form.click(form.placeOfLine(0));
        const tavrin::test::Unhandled unhandled;
        notes->follower = [&form] { delete form.section.data(); };
        undo(form);
        QVERIFY(form.section.isNull());
        QCOMPARE(form.rows->Count(), 3);
        QCOMPARE(form.boxes.shown().size(), 0);
        QCOMPARE(unhandled.texts, QStringList());
    }

    void savingTheTextsFirstMayBindAnotherRecordWithItsOwnUndo()
    {
        AttachmentsForm form;
        const auto notes = std::make_shared<FollowedNotes>(u"noted"_s);
        form.rows->Add(rowWith(notes));
        prepare(form);
        QVERIFY(form.open());
        remove(form, 1);
        form.click(form.placeOfLine(0));
        const auto former = form.rows;
        notes->follower = [&] {
            notes->follower = {};
            form.rows = std::make_shared<NumberedRows>();
            form.addRow(u"other.txt"_s);
            form.addRow(u"another.txt"_s);
            form.record->setItem(u"Attachments"_s, form.rows);
            form.read();
            form.press(Qt::Key_Delete);
        };
        undo(form);
        QCOMPARE(former->Count(), 3);
        QCOMPARE(form.fileNames(), QStringList{u"another.txt"_s});
        QCOMPARE(said(form), u"other.txt removed. Undo"_s);
    }

    // The cover

    void theCoverIsWhatItWasBeforeTheRemoval_data()
    {
        QTest::addColumn<int>("cover"); // keys, 0 for none
        QTest::addColumn<int>("line");
        QTest::addColumn<int>("between");
        QTest::newRow("the cover itself") << 102 << 1 << 103;
        QTest::newRow("an image while another is the cover") << 103 << 1 << 103;
        QTest::newRow("an image while none is the cover") << 0 << 1 << 103;
        QTest::newRow("a document") << 103 << 0 << 103;
        QTest::newRow("a document while none is the cover") << 0 << 0 << 0;
    }
    void theCoverIsWhatItWasBeforeTheRemoval()
    {
        QFETCH(int, cover);
        QFETCH(int, line);
        QFETCH(int, between);
        AttachmentsForm form;
        prepare(form);
        if (cover != 0)
            form.rows->SetPrimaryValue(cover);
        QVERIFY(form.open());
        remove(form, line);
        QCOMPARE(coverOf(form), between);
        undo(form);
        QCOMPARE(coverOf(form), cover);
        QCOMPARE(form.cover->Value() == CheckBox::Checked, cover == form.text(3, "SeqNo").toInt());
        QCOMPARE(form.boxes.shown().size(), 0);
    }

    void theLastImageIsTheCoverAgainAndEverybodyIsTold()
    {
        AttachmentsForm form;
        form.addImage(u"door.png"_s);
        form.rows->SetPrimaryValue(101);
        QVERIFY(form.open());
        form.press(Qt::Key_Delete);
        QCOMPARE(coverOf(form), 0);
        QVariantList told;
        const Subscription follower =
            form.rows->PrimaryStatusChanged.subscribe([&](const QVariant& key) { told << key; });
        undo(form);
        QVERIFY(!told.isEmpty());
        QCOMPARE(told.first(), QVariant(101));
        QCOMPARE(coverOf(form), 101);
        QCOMPARE(form.cover->Value(), CheckBox::Checked);
    }

    void aCoverThatWasChosenSinceStays()
    {
        AttachmentsForm form;
        prepare(form);
        form.addImage(u"key.png"_s);
        form.rows->SetPrimaryValue(102);
        QVERIFY(form.open());
        remove(form, 1);
        QCOMPARE(coverOf(form), 103);
        form.click(form.placeOfLine(2));
        form.click(form.cover);
        QCOMPARE(coverOf(form), 104);
        undo(form);
        QCOMPARE(coverOf(form), 104);
        QCOMPARE(form.cover->Value(), CheckBox::Unchecked);
    }

    void aCoverThatWasTakenAwayAndChosenAgainSinceStays()
    {
        AttachmentsForm form;
        prepare(form);
        form.addImage(u"key.png"_s);
        form.rows->SetPrimaryValue(104);
        QVERIFY(form.open());
        remove(form, 1);
        QCOMPARE(coverOf(form), 103);
        form.click(form.placeOfLine(1));
        form.click(form.cover);
        QCOMPARE(coverOf(form), 0);
        form.click(form.cover);
        QCOMPARE(coverOf(form), 103);
        undo(form);
        QCOMPARE(coverOf(form), 103);
    }

    void lookingAtTheCoverIsNoChoice()
    {
        AttachmentsForm form;
        prepare(form);
        form.addImage(u"key.png"_s);
        form.rows->SetPrimaryValue(104);
        QVERIFY(form.open());
        remove(form, 1);
        form.click(form.placeOfLine(0));
        form.click(form.placeOfLine(1));
        QCOMPARE(form.cover->Value(), CheckBox::Checked);
        form.click(form.placeOfLine(2));
        undo(form);
        QCOMPARE(coverOf(form), 104);
    }

    void aCoverThatHasLeftTheRecordSinceIsNotMadeTheCover()
    {
        AttachmentsForm form;
        prepare(form);
        form.addImage(u"key.png"_s);
        form.rows->SetPrimaryValue(104);
        QVERIFY(form.open());
        remove(form, 1);
        QCOMPARE(coverOf(form), 103);
        form.rows->SetPosition(3);
        form.rows->RemoveCurrent(false); // 104, by the host
        QCOMPARE(coverOf(form), 103);
        form.rows->primaries.clear();
        undo(form);
        QCOMPARE(coverOf(form), 103);
        QVERIFY(!form.rows->primaries.contains(u"104"_s));
        QCOMPARE(form.boxes.shown().size(), 0);
    }

    void severalImagesGiveTheCoverBackOneAfterTheOther()
    {
        AttachmentsForm form;
        prepare(form);
        form.rows->SetPrimaryValue(103);
        QVERIFY(form.open());
        remove(form, 2); // the cover goes to 102
        remove(form, 1);
        QCOMPARE(coverOf(form), 0);
        undo(form);
        QCOMPARE(coverOf(form), 102);
        undo(form);
        QCOMPARE(coverOf(form), 103);
    }

    // What the host does meanwhile

    void readingTheSameRowsAgainKeepsWhatWasRemoved()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        form.press(Qt::Key_Delete);
        form.press(Qt::Key_Tab);
        form.press(Qt::Key_Tab);
        form.read();
        QCOMPARE(said(form), u"report.docx removed. Undo"_s);
        QVERIFY(form.child<TextLink>("lnkUndo")->hasFocus());
        undo(form);
        QCOMPARE(form.fileNames(), QStringList({u"door.png"_s, u"lock.png"_s, u"report.docx"_s}));
    }

    void aRecordThatIsReadIsTheHostsToKeep()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        const std::weak_ptr<tvBusinessObject> record = form.record;
        form.record.reset();
        QVERIFY(record.expired());
        form.press(Qt::Key_Delete); // the rows are still there
        QCOMPARE(form.rows->Count(), 2);
    }

    void readingOtherRowsForgetsWhatWasRemoved_data()
    {
        QTest::addColumn<bool>("isNewRecord");
        QTest::newRow("the record with a new collection") << false;
        QTest::newRow("another record") << true;
    }
    void readingOtherRowsForgetsWhatWasRemoved()
    {
        QFETCH(bool, isNewRecord);
        AttachmentsForm form;
        QVERIFY(open(form));
        form.press(Qt::Key_Delete);
        form.press(Qt::Key_Tab);
        form.press(Qt::Key_Tab);
        QVERIFY(form.child<TextLink>("lnkUndo")->hasFocus());
        form.rows = std::make_shared<NumberedRows>();
        form.addThree();
        if (isNewRecord)
            form.record = std::make_shared<tavrin::test::FakeRecord>();
        form.record->setItem(u"Attachments"_s, form.rows);
        const int count = form.rows->Count();
        form.read();
        QCOMPARE(said(form), QString());
        QVERIFY(form.list->hasFocus());
        undo(form);
        QCOMPARE(form.rows->Count(), count);
    }

    void whoeverHearsOfTheFocusThatARecordTakesMayBindAnother()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        form.press(Qt::Key_Delete);
        form.press(Qt::Key_Tab);
        form.press(Qt::Key_Tab);
        const auto bind = [&form](const QString& name) {
            form.rows = std::make_shared<NumberedRows>();
            form.addRow(name, name);
            form.record->setItem(u"Attachments"_s, form.rows);
            form.read();
        };
        bool hasBound = false;
        QObject::connect(qApp, &QApplication::focusChanged, form.section, [&] {
            if (!std::exchange(hasBound, true))
                bind(u"inner.txt"_s);
        });
        bind(u"outer.txt"_s);
        QVERIFY(hasBound);
        QCOMPARE(form.list->Count(), 1);
        QCOMPARE(form.child<Label>("lblFilename")->Caption(), u"inner.txt"_s);
        QCOMPARE(form.description->Text(), u"inner.txt"_s);
        QCOMPARE(said(form), QString());
    }

    void aRecordThatCannotBeBoundLeavesTheUndo()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        form.press(Qt::Key_Delete);
        QVERIFY_THROWS_EXCEPTION(
            Error,
            static_cast<BoundSection*>(form.section)->ReadData(std::make_shared<tavrin::test::FakeRecord>()));
        QCOMPARE(said(form), u"report.docx removed. Undo"_s);
        undo(form);
        QCOMPARE(form.rows->Count(), 3);
    }

    void aRowThatASaveHasDeletedComesBackAsACopyWithItsKey()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        const QString fields = fieldsOf(*form.rows->Item(1));
        form.press(Qt::Key_Delete);
        form.write();
        form.rows->beforeAdding = [](tvTableRow& row) {
            if (!row.IsNew())
                throw Error(u"the row belongs to no record any more"_s);
        };
        undo(form);
        QCOMPARE(form.fileNames(), QStringList({u"door.png"_s, u"lock.png"_s, u"report.docx"_s}));
        QCOMPARE(fieldsOf(*form.rows->Item(3)), fields);
        QVERIFY(form.rows->Item(3)->IsNew());
        QCOMPARE(form.marked(), u"101"_s);
        QCOMPARE(said(form), QString());
        QCOMPARE(form.boxes.shown().size(), 0);
    }

    void aCopyLeavesTheLinksToItsCollection()
    {
        AttachmentsForm form;
        form.rows->Add(rowWith(std::make_shared<LinkToRecord>()));
        prepare(form);
        QVERIFY(form.open());
        form.press(Qt::Key_Delete);
        form.rows->beforeAdding = [](tvTableRow& row) {
            if (!row.IsNew())
                throw Error(u"the row belongs to no record any more"_s);
        };
        undo(form);
        QCOMPARE(form.boxes.shown().size(), 0);
        QCOMPARE(form.fileNames().last(), u"special.png"_s);
        QVERIFY(!form.rows->Item(4)->Item(u"IncidentNo"_s));
    }

    void aRowWhoseKeyIsTakenComesBackOnceAlthoughAFollowerFails()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        remove(form, 0);
        const tvTableRowPtr other = form.addRow(u"other.txt"_s);
        AttachmentsForm::set(*other, "SeqNo", 101);
        form.rows->afterAdding = [] { throw Error(u"the title is away"_s); };
        const QStringList expected = {u"door.png"_s, u"lock.png"_s, u"other.txt"_s, u"report.docx"_s};
        undo(form);
        QCOMPARE(form.boxes.take().first().text,
                 u"Unexpected error putting attachment back: the title is away"_s);
        QCOMPARE(form.fileNames(), expected);
        QCOMPARE(said(form), QString());
        undo(form);
        QCOMPARE(form.fileNames(), expected);
        QCOMPARE(form.list->Count(), 4);
    }

    void aRowWhoseKeyIsTakenAndThatIsRefusedStaysRemoved()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        remove(form, 0);
        const tvTableRowPtr other = form.addRow(u"other.txt"_s);
        AttachmentsForm::set(*other, "SeqNo", 101);
        form.rows->beforeAdding = [](tvTableRow&) { throw Error(u"the record is locked"_s); };
        undo(form);
        QCOMPARE(form.boxes.take().size(), 1);
        QCOMPARE(form.rows->Count(), 3);
        QCOMPARE(said(form), u"report.docx removed. Undo"_s);
        form.rows->beforeAdding = {};
        undo(form);
        QCOMPARE(form.fileNames().last(), u"report.docx"_s);
        QCOMPARE(form.rows->Count(), 4);
        QCOMPARE(said(form), QString());
    }

    void aRowWhoseKeyIsTakenComesBackWithAnother()
    {
        AttachmentsForm form;
        prepare(form);
        form.rows->SetPrimaryValue(102);
        QVERIFY(form.open());
        remove(form, 1);
        const tvTableRowPtr other = form.addRow(u"other.txt"_s); // 104
        AttachmentsForm::set(*other, "SeqNo", 102);
        undo(form);
        QCOMPARE(form.fileNames(),
                 QStringList({u"report.docx"_s, u"lock.png"_s, u"other.txt"_s, u"door.png"_s}));
        QCOMPARE(form.text(3, "SeqNo"), u"102"_s);
        QCOMPARE(form.text(4, "SeqNo"), u"105"_s);
        QCOMPARE(form.text(4, "Description"), u"second"_s);
        QCOMPARE(coverOf(form), 105);
        QCOMPARE(form.marked(), u"105"_s);
        QCOMPARE(form.list->Count(), 4);
    }

    void aRowThatTheHostHasPutBackIsOnlyShown()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        const tvTableRowPtr row = form.rows->Item(1);
        form.press(Qt::Key_Delete);
        form.rows->Add(row);
        undo(form);
        QCOMPARE(form.fileNames(), QStringList({u"door.png"_s, u"lock.png"_s, u"report.docx"_s}));
        QCOMPARE(form.marked(), u"101"_s);
        QCOMPARE(said(form), QString());
    }

    void aFailureIsToldAndTheLineStays()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        form.press(Qt::Key_Delete);
        form.rows->beforeAdding = [](tvTableRow&) { throw Error(u"the record is locked"_s); };
        undo(form);
        const QList<ShownBox> shown = form.boxes.take();
        QCOMPARE(shown.size(), 1);
        QCOMPARE(shown.first().text, u"Unexpected error putting attachment back: the record is locked"_s);
        QCOMPARE(shown.first().title, u"Attachments"_s);
        QCOMPARE(shown.first().icon, BoxIcon::Critical);
        QCOMPARE(form.rows->Count(), 2);
        QCOMPARE(form.list->Count(), 2);
        QCOMPARE(said(form), u"report.docx removed. Undo"_s);
        form.rows->beforeAdding = {};
        undo(form);
        QCOMPARE(form.rows->Count(), 3);
        QCOMPARE(said(form), QString());
    }

    void aFollowerThatFailsBehindTheReturnLeavesTheListInStep()
    {
        AttachmentsForm form;
        prepare(form);
        form.rows->SetPrimaryValue(102);
        QVERIFY(form.open());
        remove(form, 1);
        const Subscription failing = form.rows->PrimaryStatusChanged.subscribe(
            [](const QVariant&) { throw Error(u"the cover is away"_s); });
        undo(form);
        QCOMPARE(form.boxes.take().first().text,
                 u"Unexpected error putting attachment back: the cover is away"_s);
        QCOMPARE(form.rows->Count(), 3);
        QCOMPARE(form.list->Count(), 3);
        QCOMPARE(said(form), QString());
    }

    void aRowThatIsBackAlthoughAFollowerFailedIsThereOnce()
    {
        AttachmentsForm form;
        QVERIFY(open(form));
        form.press(Qt::Key_Delete);
        form.rows->afterAdding = [] { throw Error(u"the title is away"_s); };
        undo(form);
        QCOMPARE(form.boxes.take().first().text,
                 u"Unexpected error putting attachment back: the title is away"_s);
        QCOMPARE(form.fileNames(), QStringList({u"door.png"_s, u"lock.png"_s, u"report.docx"_s}));
        QCOMPARE(form.list->Count(), 3);
        QCOMPARE(said(form), QString());
    }

    void aFollowerThatFailsBehindTheReturnTakesNeitherCommentNorCoverAway()
    {
        AttachmentsForm form;
        prepare(form);
        form.rows->SetPrimaryValue(102);
        QVERIFY(form.open());
        form.click(form.placeOfLine(1));
        form.comment->setFocus();
        form.type(u"a "_s);
        form.choose(1, Qt::Key_R);
        QCOMPARE(coverOf(form), 103);
        form.rows->afterAdding = [] { throw Error(u"the title is away"_s); };
        undo(form);
        QCOMPARE(form.boxes.take().first().text,
                 u"Unexpected error putting attachment back: the title is away"_s);
        QCOMPARE(form.fileNames(), QStringList({u"report.docx"_s, u"lock.png"_s, u"door.png"_s}));
        QCOMPARE(form.text(3, "Notes"), u"a two"_s);
        QCOMPARE(coverOf(form), 102);
        QCOMPARE(said(form), QString());
    }

    void aCommentThatIsRefusedLeavesTheCoverWhatItWas()
    {
        AttachmentsForm form;
        const auto notes = std::make_shared<FollowedNotes>(u"noted"_s);
        form.rows->Add(rowWith(notes));
        prepare(form);
        form.rows->SetPrimaryValue(101);
        QVERIFY(form.open());
        form.comment->setFocus();
        form.type(u"a "_s);
        form.choose(0, Qt::Key_R);
        QCOMPARE(coverOf(form), 103);
        notes->follower = [] { throw Error(u"the comment is locked"_s); };
        undo(form);
        QCOMPARE(form.boxes.take().first().text,
                 u"Unexpected error putting attachment back: the comment is locked"_s);
        QCOMPARE(form.rows->Count(), 4);
        QCOMPARE(coverOf(form), 101);
        QCOMPARE(said(form), QString());
    }

    void aFollowerOfTheReturnMayDeleteTheSection()
    {
        AttachmentsForm form;
        prepare(form);
        form.rows->SetPrimaryValue(102);
        QVERIFY(form.open());
        remove(form, 1);
        const tavrin::test::Unhandled unhandled;
        const Subscription deleting =
            form.rows->PrimaryStatusChanged.subscribe([&](const QVariant&) { delete form.section.data(); });
        undo(form);
        QVERIFY(form.section.isNull());
        QCOMPARE(form.rows->Count(), 3);
        QCOMPARE(form.boxes.shown().size(), 0);
        QCOMPARE(unhandled.texts, QStringList());
    }

    void aFollowerOfTheReturnMayBindAnotherRecord()
    {
        AttachmentsForm form;
        prepare(form);
        form.rows->SetPrimaryValue(102);
        QVERIFY(form.open());
        remove(form, 1);
        const auto former = form.rows;
        const Subscription binding = former->PrimaryStatusChanged.subscribe([&](const QVariant&) {
            form.rows = std::make_shared<NumberedRows>();
            form.addRow(u"other.txt"_s, u"other"_s);
            form.record->setItem(u"Attachments"_s, form.rows);
            form.read();
        });
        undo(form);
        QCOMPARE(former->Count(), 3);
        QCOMPARE(form.fileNames(), QStringList{u"other.txt"_s});
        QCOMPARE(form.list->Count(), 1);
        QCOMPARE(form.description->Text(), u"other"_s);
        QCOMPARE(said(form), QString());
        QCOMPARE(form.boxes.shown().size(), 0);
    }
};

TAVRIN_TEST_MAIN(tst_AttachmentsUndo)
#include "tst_AttachmentsUndo.moc"
