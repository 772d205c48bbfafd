#include "attachments/section/AttachmentsCase.h"
#include "frame/memory_records/MemoryField.h"
#include "frame/memory_records/MemoryRow.h"

#include <functional>

using namespace Qt::StringLiterals;
using namespace tavrin;
using test::AttachmentsForm;
using test::NumberedRows;
using test::Unhandled;

namespace {

/// A field that can refuse to be read, and tells when it is written.
class FailingField final : public tvField
{
public:
    FailingField(QString name, QVariant value)
        : m_name(std::move(name))
        , m_value(std::move(value))
    {
    }
    QVariant Value() const override
    {
        if (fails)
            throw Error(u"the field cannot be read"_s);
        return m_value;
    }
    void SetValue(const QVariant& value) override
    {
        m_value = value;
        if (written)
            written();
    }
    QString Name() const override { return m_name; }
    bool IsKey() const override { return false; }
    qint32 MaxLength() const override { return 0; }

    bool fails = false;
    std::function<void()> written;

private:
    QString m_name;
    QVariant m_value;
};

/// A picture whose row has this field among its own.
tvTableRowPtr rowWith(const tvFieldPtr& special)
{
    QList<tvFieldPtr> fields;
    for (const char* column : {"SeqNo", "FileName", "OriginalFileName", "FolderNo", "Description", "Notes",
                               "UserId", "UserDate"}) {
        const QString name = QString::fromLatin1(column);
        const QVariant value = name == u"SeqNo"_s ? QVariant(301) : u"n.png"_s;
        if (name == special->Name())
            fields << special;
        else
            fields << std::make_shared<tavrin::MemoryField>(name, value, name == u"SeqNo"_s);
    }
    return std::make_shared<tavrin::MemoryRow>(fields);
}

} // namespace

/// The description and the comment of `Attachments`, and the row that they belong to.
class tst_AttachmentsTexts : public test::AttachmentsCase
{
    Q_OBJECT

private Q_SLOTS:
    void aTypedDescriptionReachesTheRowAndTheLineWithEachKey()
    {
        QVERIFY(m_form->openThree());
        m_form->typeDescription(u"x"_s);
        QCOMPARE(m_form->text(1, "Description"), u"firstx"_s);
        QCOMPARE(m_form->list->SubItem(u"101"_s, u"Description"_s), u"firstx"_s);
        m_form->type(u"y"_s);
        QCOMPARE(m_form->text(1, "Description"), u"firstxy"_s);
        QCOMPARE(m_form->list->SubItem(u"101"_s, u"Description"_s), u"firstxy"_s);
        QCOMPARE(m_form->text(1, "Notes"), u"one"_s);
        QCOMPARE(m_form->text(2, "Description"), u"second"_s);
    }

    void aTypedCommentWaitsForTheSave()
    {
        QVERIFY(m_form->openThree());
        m_form->typeComment(u"a "_s);
        QCOMPARE(m_form->text(1, "Notes"), u"one"_s);
        m_form->write();
        QCOMPARE(m_form->text(1, "Notes"), u"a one"_s);
    }

    void aLeftClickOnAnotherLineSavesTheComment()
    {
        QVERIFY(m_form->openThree());
        m_form->typeComment(u"a "_s);
        m_form->click(m_form->placeOfLine(1));
        QCOMPARE(m_form->text(1, "Notes"), u"a one"_s);
        QCOMPARE(m_form->comment->Text(), u"two"_s);
        QCOMPARE(m_form->text(2, "Notes"), u"two"_s);
    }

    void aRightClickOnAnotherLineLosesTheCommentAsItIsMeant()
    {
        QVERIFY(m_form->openThree());
        m_form->typeComment(u"a "_s);
        m_form->click(m_form->placeOfLine(1), Qt::RightButton);
        QCOMPARE(m_form->comment->Text(), u"two"_s);
        QTRY_VERIFY(m_form->menu->isVisible());
        m_form->menu->close();
        m_form->click(m_form->placeOfLine(0));
        QCOMPARE(m_form->comment->Text(), u"one"_s);
        QCOMPARE(m_form->text(1, "Notes"), u"one"_s);
        QCOMPARE(m_form->text(2, "Notes"), u"two"_s);
    }

    void aClickOnTheCurrentLineKeepsTheTypedCommentAndSavesNothing_data()
    {
        QTest::addColumn<Qt::MouseButton>("button");
        QTest::newRow("left") << Qt::LeftButton;
        QTest::newRow("right") << Qt::RightButton;
    }
    void aClickOnTheCurrentLineKeepsTheTypedCommentAndSavesNothing()
    {
        QFETCH(Qt::MouseButton, button);
        QVERIFY(m_form->openThree());
        m_form->typeComment(u"a "_s);
        m_form->click(m_form->placeOfLine(0), button);
        QCOMPARE(m_form->comment->Text(), u"a one"_s);
        QCOMPARE(m_form->text(1, "Notes"), u"one"_s);
        if (button == Qt::RightButton) {
            QTRY_VERIFY(m_form->menu->isVisible());
            m_form->menu->close();
        }
    }

    void aSaveMakesEmptyTextsOfNullAlsoWhenNothingWasTypedAsItIsMeant()
    {
        const tvTableRowPtr row = m_form->addRow(u"a.txt"_s);
        m_form->read();
        QCOMPARE(m_form->description->Text(), QString());
        QCOMPARE(m_form->comment->Text(), QString());
        QVERIFY(IsNull(AttachmentsForm::value(*row, "Description")));
        QVERIFY(IsNull(AttachmentsForm::value(*row, "Notes")));
        m_form->write();
        for (const char* field : {"Description", "Notes"}) {
            const QVariant value = AttachmentsForm::value(*row, field);
            QCOMPARE(value.typeId(), int(QMetaType::QString));
            QVERIFY(!IsNull(value));
            QCOMPARE(value.toString(), QString());
        }
    }

    void aSaveWithoutRowsDoesNothing()
    {
        m_form->read();
        m_form->write();
        QCOMPARE(m_form->boxes.shown().size(), 0);
    }

    void aDescriptionLongerThanItsFieldIsShownAndSavedWhole()
    {
        const QString longText = u"a description of forty-two units, all told"_s;
        QVERIFY(longText.size() > NumberedRows::DescriptionLength);
        m_form->addRow(u"a.txt"_s, u"short"_s);
        m_form->addRow(u"b.txt"_s, longText);
        QVERIFY(m_form->open());
        m_form->click(m_form->placeOfLine(1)); // the limit of the first row must not cut it either
        QCOMPARE(m_form->description->Text(), longText);
        QCOMPARE(m_form->text(2, "Description"), longText);
        m_form->write();
        QCOMPARE(m_form->text(2, "Description"), longText);
    }

    void showingAVeryLongDescriptionForTheFirstTimeDoesNotCutIt()
    {
        const QString longText(40000, u'x');
        m_form->addRow(u"a.txt"_s, longText);
        m_form->read();
        QCOMPARE(m_form->description->Text(), longText);
        QCOMPARE(m_form->text(1, "Description"), longText);
        m_form->write();
        QCOMPARE(m_form->text(1, "Description"), longText);
    }

    void theTextsAreLimitedToTheirFields()
    {
        m_form->addRow(u"a.txt"_s);
        QVERIFY(m_form->open());
        QCOMPARE(m_form->description->MaxLength(), 20);
        QCOMPARE(m_form->comment->MaxLength(), 200);
        m_form->description->setFocus();
        m_form->type(QString(25, u'd'));
        QCOMPARE(m_form->text(1, "Description"), QString(20, u'd'));
    }

    void aCommentThatNobodyTouchedKeepsItsLineEnds_data()
    {
        QTest::addColumn<QString>("notes");
        QTest::newRow("\\r\\n") << u"one\r\ntwo"_s;
        QTest::newRow("\\n") << u"one\ntwo"_s;
        QTest::newRow("longer than its field") << QString(300, u'x');
    }
    void aCommentThatNobodyTouchedKeepsItsLineEnds()
    {
        QFETCH(QString, notes);
        m_form->addRow(u"a.txt"_s, u"first"_s, notes);
        m_form->read();
        m_form->write();
        QCOMPARE(m_form->text(1, "Notes"), notes);
    }

    void anEditedCommentHasTheLineEndsOfTheOtherWorkstations()
    {
        m_form->addRow(u"a.txt"_s, u"first"_s, u"one\ntwo"_s);
        QVERIFY(m_form->open());
        m_form->typeComment(u"a"_s);
        m_form->press(Qt::Key_Return);
        m_form->write();
        QCOMPARE(m_form->text(1, "Notes"), u"a\r\none\r\ntwo"_s);
    }

    void undoingBringsNoTextOfAnotherRow()
    {
        QVERIFY(m_form->openThree());
        m_form->click(m_form->placeOfLine(1));
        m_form->description->setFocus();
        QTest::keySequence(m_form->window.windowHandle(), QKeySequence(QKeySequence::Undo));
        QCOMPARE(m_form->description->Text(), u"second"_s);
        m_form->comment->setFocus();
        QTest::keySequence(m_form->window.windowHandle(), QKeySequence(QKeySequence::Undo));
        QCOMPARE(m_form->comment->Text(), u"two"_s);
    }

    void showingARowWritesNothing()
    {
        const tvTableRowPtr row = m_form->addRow(u"a.txt"_s);
        QVERIFY(m_form->openThree());
        m_form->rows->SetPosition(2);
        m_form->read();
        QVERIFY(IsNull(AttachmentsForm::value(*row, "Description")));
        QVERIFY(IsNull(AttachmentsForm::value(*row, "Notes")));
        QCOMPARE(m_form->rows->primaries, QStringList());
    }

    void aFailureWhileTypingDoesNotCrossQtAndTheTextStays()
    {
        QVERIFY(m_form->openThree());
        const Unhandled unhandled;
        m_form->description->setFocus();
        m_form->description->end(false);
        m_form->host.failWith(Error(u"no images"_s));
        m_form->type(u"x"_s);
        m_form->host.failWith({});
        QCOMPARE(unhandled.texts, QStringList{u"TextBox_Change: no images"_s});
        QCOMPARE(m_form->boxes.shown().size(), 0);
        QCOMPARE(m_form->text(1, "Description"), u"firstx"_s);
    }

    void theTextsOfARecordNeverReachARowOfOneThatCouldNotBeShown()
    {
        m_form->addThree();
        m_form->read();
        const auto others = std::make_shared<NumberedRows>();
        const tvTableRowPtr broken = std::make_shared<tavrin::MemoryRow>(
            QList<tvFieldPtr>{std::make_shared<tavrin::MemoryField>(u"SeqNo"_s, 1, true),
                              std::make_shared<tavrin::MemoryField>(u"Description"_s, u"theirs"_s),
                              std::make_shared<tavrin::MemoryField>(u"Notes"_s, u"theirs"_s)});
        others->Add(broken);
        m_form->record->SetItem(u"Attachments"_s, others);
        QVERIFY_THROWS_EXCEPTION(Error, m_form->read());
        m_form->write();
        QCOMPARE(AttachmentsForm::text(*broken, "Description"), u"theirs"_s);
        QCOMPARE(AttachmentsForm::text(*broken, "Notes"), u"theirs"_s);
    }

    void aCommentNeverReachesANewRowWhoseTextsCouldNotBeShown()
    {
        QVERIFY(m_form->openThree());
        const tvTableRowPtr broken = std::make_shared<tavrin::MemoryRow>(
            QList<tvFieldPtr>{std::make_shared<tavrin::MemoryField>(u"SeqNo"_s, 104, true),
                              std::make_shared<tavrin::MemoryField>(u"FileName"_s, u"b.txt"_s),
                              std::make_shared<tavrin::MemoryField>(u"Description"_s, u"theirs"_s)});
        const auto others = std::make_shared<NumberedRows>();
        others->Add(broken);
        m_form->record->SetItem(u"Attachments"_s, others);
        QVERIFY_THROWS_EXCEPTION(Error, m_form->read());
        QVERIFY(!m_form->description->isEnabled());
        QVERIFY(!m_form->comment->isEnabled());
        m_form->write();
        m_form->description->SetText(u"typed"_s);
        m_form->cover->SetValue(CheckBox::Checked);
        QCOMPARE(AttachmentsForm::text(*broken, "Description"), u"theirs"_s);
        QCOMPARE(others->primaries, QStringList());
    }

    void aRowWhoseCommentCannotBeReadKeepsItsTextsFromThoseOfTheRowBefore()
    {
        QVERIFY(m_form->openThree());
        const auto notes = std::make_shared<FailingField>(u"Notes"_s, u"theirs"_s);
        const auto others = std::make_shared<NumberedRows>();
        others->Add(rowWith(notes));
        notes->fails = true;
        m_form->record->SetItem(u"Attachments"_s, others);
        QVERIFY_THROWS_EXCEPTION(Error, m_form->read());
        QCOMPARE(m_form->comment->Text(), u"one"_s);
        notes->fails = false;
        m_form->write();
        QCOMPARE(notes->Value().toString(), u"theirs"_s);
        m_form->read();
        QVERIFY(m_form->comment->isEnabled());
        QCOMPARE(m_form->comment->Text(), u"theirs"_s);
    }

    void afterARecordThatCouldNotBeListedNothingActsOnItsRows()
    {
        m_form->addThree();
        m_form->rows->SetPosition(2);
        QVERIFY(m_form->open());
        const auto others = std::make_shared<NumberedRows>();
        const auto date = std::make_shared<FailingField>(u"UserDate"_s, Null());
        others->Add(rowWith(date));
        others->SetPosition(1);
        m_form->record->SetItem(u"Attachments"_s, others);
        date->fails = true;
        QVERIFY_THROWS_EXCEPTION(Error, m_form->read());
        date->fails = false;
        QVERIFY(!m_form->description->isEnabled());
        m_form->cover->SetValue(CheckBox::Checked);
        m_form->press(Qt::Key_Delete);
        m_form->press(Qt::Key_Return);
        m_form->item("mnuOpen")->trigger();
        m_form->item("mnuRemove")->trigger();
        tavrin::test::letMenusTell();
        QCOMPARE(others->Count(), 1);
        QCOMPARE(others->primaries, QStringList());
        QCOMPARE(m_form->shell.opened(), QStringList());
        QCOMPARE(m_form->boxes.shown().size(), 0);
    }

    void savingOnAClickMayDeleteTheSection()
    {
        const auto notes = std::make_shared<FailingField>(u"Notes"_s, u"noted"_s);
        m_form->rows->Add(rowWith(notes));
        m_form->addRow(u"b.txt"_s);
        m_form->rows->SetPosition(1);
        QVERIFY(m_form->open());
        notes->written = [this] { delete m_form->section.data(); };
        m_form->click(m_form->placeOfLine(1));
        QVERIFY(m_form->section.isNull());
        QCOMPARE(m_form->rows->Position(), 1);
        QCOMPARE(m_form->boxes.shown().size(), 0);
    }

    void savingOnAClickMayBindAnotherRecordWhoseRowStaysCurrent()
    {
        const auto notes = std::make_shared<FailingField>(u"Notes"_s, u"noted"_s);
        m_form->rows->Add(rowWith(notes));
        m_form->addRow(u"b.txt"_s);
        m_form->rows->SetPosition(1);
        QVERIFY(m_form->open());
        const auto others = std::make_shared<NumberedRows>();
        for (int i = 0; i < 3; ++i) {
            const tvTableRowPtr row = NumberedRows::makeRow(false);
            AttachmentsForm::set(*row, "FileName", u"other.txt"_s);
            others->Add(row);
        }
        others->SetPosition(1);
        notes->written = [&] {
            m_form->record->SetItem(u"Attachments"_s, others);
            m_form->read();
        };
        m_form->click(m_form->placeOfLine(1));
        QCOMPARE(others->Position(), 1);
        QCOMPARE(m_form->marked(), u"101"_s);
        QCOMPARE(m_form->list->Count(), 3);
        QCOMPARE(m_form->boxes.shown().size(), 0);
    }

    void typingMayBindAnotherRecordWhoseListStaysItsOwn()
    {
        const auto text = std::make_shared<FailingField>(u"Description"_s, u"old"_s);
        m_form->rows->Add(rowWith(text));
        m_form->rows->SetPosition(1);
        QVERIFY(m_form->open());
        const auto none = std::make_shared<NumberedRows>();
        text->written = [&] {
            m_form->record->SetItem(u"Attachments"_s, none);
            m_form->read();
        };
        m_form->description->setFocus();
        m_form->type(u"x"_s);
        QCOMPARE(m_form->list->Count(), 0);
    }
};

TAVRIN_TEST_MAIN(tst_AttachmentsTexts)
#include "tst_AttachmentsTexts.moc"
