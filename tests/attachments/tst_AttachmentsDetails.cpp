#include "AttachmentsForm.h"
#include "support/OtherDensity.h"

#include <QScrollBar>

#include <functional>

using namespace Qt::StringLiterals;
using namespace tavrin;
using tavrin::test::AttachmentsForm;
using tavrin::test::NumberedRows;
using tavrin::test::Unhandled;

namespace {

/// "preview", "kind" or "nothing".
QString shown(const AttachmentsForm& form)
{
    const bool preview = !form.child<QLabel>("imgThumbnail")->isHidden();
    const bool kind = !form.child<GroupBox>("picNoThumbnail")->isHidden();
    return preview && kind ? u"both"_s : preview ? u"preview"_s : kind ? u"kind"_s : u"nothing"_s;
}

/// Which of the pane's constituents are disabled.
QStringList disabled(const AttachmentsForm& form)
{
    QStringList names;
    for (const char* name : {"Label1", "Label2", "Label3", "chkDefault", "imgThumbnail", "picNoThumbnail",
                             "shpThumbnailBorder", "txtComment", "txtDescription"}) {
        if (!form.child<QWidget>(name)->isEnabled())
            names << QString::fromLatin1(name);
    }
    return names;
}

QString caption(const AttachmentsForm& form, const char* label)
{
    return form.child<Label>(label)->Caption();
}

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
            fields << std::make_shared<tavrin::test::FakeField>(name, value, name == u"SeqNo"_s);
    }
    return std::make_shared<tavrin::test::FakeRow>(fields);
}

int thumbnailsAsked(const AttachmentsForm& form)
{
    return static_cast<int>(form.host.state().log.count(u"GetThumbnailPath"_s));
}

} // namespace

/// The pane below the list of `Attachments`.
class tst_AttachmentsDetails : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // What shows

    void withoutRowsThePaneIsDisabledAndBlank_data()
    {
        QTest::addColumn<bool>("hasRead");
        QTest::newRow("before the first record") << false;
        QTest::newRow("a record without attachments") << true;
    }
    void withoutRowsThePaneIsDisabledAndBlank()
    {
        QFETCH(bool, hasRead);
        AttachmentsForm form;
        if (hasRead)
            form.read();
        QCOMPARE(disabled(form).size(), 9);
        QVERIFY(form.child<GroupBox>("fraDetails")->isEnabled());
        // Only direct children: what stands deeper follows its container.
        QVERIFY(!form.child<QLabel>("imgFileIcon")->testAttribute(Qt::WA_ForceDisabled));
        QCOMPARE(shown(form), u"nothing"_s);
        QCOMPARE(caption(form, "lblFilename"), QString());
        QCOMPARE(form.description->Text(), QString());
        QCOMPARE(form.comment->Text(), QString());
        QCOMPARE(form.cover->Value(), 0);
    }

    void aRecordWithoutAttachmentsBlanksThePaneOfTheOneBefore()
    {
        AttachmentsForm form;
        form.addThree();
        form.rows->SetPosition(2);
        form.rows->SetPrimaryValue(102);
        form.read();
        QCOMPARE(form.cover->Value(), 1);
        const auto none = std::make_shared<NumberedRows>();
        form.record->setItem(u"Attachments"_s, none);
        form.read();
        QCOMPARE(disabled(form).size(), 9);
        QCOMPARE(shown(form), u"nothing"_s);
        QVERIFY(form.child<QLabel>("imgThumbnail")->pixmap(Qt::ReturnByValue).isNull());
        QCOMPARE(form.description->Text(), QString());
        QCOMPARE(form.comment->Text(), QString());
        QCOMPARE(caption(form, "lblFilename"), QString());
        QCOMPARE(form.cover->Value(), 0);
        QCOMPARE(none->primaries, QStringList());
        QCOMPARE(form.rows->primaries.last(), u"102"_s);
        QCOMPARE(form.text(2, "Notes"), u"two"_s);
    }

    void aDocumentShowsItsKindAndExtension()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QCOMPARE(disabled(form), QStringList());
        QCOMPARE(shown(form), u"kind"_s);
        QCOMPARE(caption(form, "lblFilename"), u"report.docx"_s);
        QCOMPARE(caption(form, "lblFileType"), u"docx"_s);
        QCOMPARE(form.child<QLabel>("imgFileIcon")->accessibleName(), u"file"_s);
        QVERIFY(!form.child<QLabel>("imgFileIcon")->pixmap(Qt::ReturnByValue).isNull());
        QVERIFY(form.cover->isHidden());
        QCOMPARE(form.description->Text(), u"first"_s);
        QCOMPARE(form.comment->Text(), u"one"_s);
        QCOMPARE(thumbnailsAsked(form), 0);
    }

    void theExtensionIsWhatStandsBehindTheLastPoint_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("extension");
        QTest::newRow("none") << u"report"_s << QString();
        QTest::newRow("two") << u"a.tar.gz"_s << u"gz"_s;
        QTest::newRow("empty") << u"report."_s << QString();
        QTest::newRow("in the folder's name only") << u"v1.2\\report"_s << QString();
    }
    void theExtensionIsWhatStandsBehindTheLastPoint()
    {
        QFETCH(QString, name);
        QFETCH(QString, extension);
        AttachmentsForm form;
        const tvTableRowPtr row = form.addRow(u"x.txt"_s);
        AttachmentsForm::set(*row, "FileName", name);
        form.read();
        QCOMPARE(caption(form, "lblFileType"), extension);
    }

    void anImageShowsItsThumbnailFittedToTheBox()
    {
        AttachmentsForm form;
        form.addThree();
        form.rows->SetPosition(2);
        form.read();
        QCOMPARE(shown(form), u"preview"_s);
        const QPixmap picture = form.child<QLabel>("imgThumbnail")->pixmap(Qt::ReturnByValue);
        QCOMPARE(picture.deviceIndependentSize().toSize(), QSize(93, 123));
        QCOMPARE(picture.toImage().pixelColor(4, 4), QColor(Qt::darkCyan));
        QCOMPARE(form.child<QLabel>("imgThumbnail")->accessibleName(), u"Preview of door.png"_s);
        QVERIFY(!form.cover->isHidden());
        QCOMPARE(form.cover->Value(), 0);
    }

    void anImageWithoutThumbnailShowsTheImageIcon()
    {
        AttachmentsForm form;
        form.addThree();
        const auto* icon = form.child<QLabel>("imgFileIcon");
        form.read();
        const QImage ofADocument = icon->pixmap(Qt::ReturnByValue).toImage();
        QVERIFY(!ofADocument.isNull());
        form.rows->SetPosition(3);
        form.read();
        QVERIFY(!icon->pixmap(Qt::ReturnByValue).isNull());
        QVERIFY(icon->pixmap(Qt::ReturnByValue).toImage() != ofADocument);
        QCOMPARE(shown(form), u"kind"_s);
        QCOMPARE(form.child<QLabel>("imgFileIcon")->accessibleName(), u"image"_s);
        QCOMPARE(caption(form, "lblFileType"), u"png"_s);
        QVERIFY(!form.cover->isHidden());
    }

    void aThumbnailThatCannotBeMadeIsNoError()
    {
        AttachmentsForm form;
        form.addThree();
        form.host.state().pictures.clear(); // loading raises
        form.rows->SetPosition(2);
        form.read();
        QCOMPARE(shown(form), u"kind"_s);
        QCOMPARE(form.boxes.shown().size(), 0);
    }

    void aRowThatIsShownWhileAThumbnailIsFetchedKeepsItsOwnPreview_data()
    {
        QTest::addColumn<QString>("next");
        QTest::addColumn<QString>("preview");
        QTest::newRow("a document") << u"report.docx"_s << u"kind"_s;
        QTest::newRow("an image without thumbnail") << u"lock.png"_s << u"kind"_s;
        QTest::newRow("no row at all") << QString() << u"nothing"_s;
    }
    void aRowThatIsShownWhileAThumbnailIsFetchedKeepsItsOwnPreview()
    {
        QFETCH(QString, next);
        QFETCH(QString, preview);
        AttachmentsForm form;
        form.addThree();
        form.rows->SetPosition(2);
        bool met = false;
        form.host.state().duringTransfer = [&](const QString&, qint64, qint64) {
            if (std::exchange(met, true))
                return;
            if (next.isEmpty())
                form.record->setItem(u"Attachments"_s, std::make_shared<NumberedRows>());
            else
                form.rows->SetPosition(static_cast<qint16>(form.fileNames().indexOf(next) + 1));
            form.read();
        };
        form.read();
        QVERIFY(met);
        QCOMPARE(caption(form, "lblFilename"), next);
        QCOMPARE(shown(form), preview);
    }

    void ofOneRowThatIsShownTwiceTheNewerPreviewStays()
    {
        AttachmentsForm form;
        form.addThree();
        form.rows->SetPosition(2);
        int fitted = 0;
        form.host.state().fitPicture = [&](const QImage&, int height, int width, Color) {
            QImage picture(width, height, QImage::Format_RGB32);
            picture.fill(++fitted == 1 ? Qt::blue : Qt::red); // the newer one is fetched inside of the older
            return picture;
        };
        bool met = false;
        form.host.state().duringTransfer = [&](const QString&, qint64, qint64) {
            if (!std::exchange(met, true))
                form.read();
        };
        form.read();
        QCOMPARE(fitted, 2);
        QCOMPARE(shown(form), u"preview"_s);
        const QPixmap picture = form.child<QLabel>("imgThumbnail")->pixmap(Qt::ReturnByValue);
        QCOMPARE(picture.toImage().pixelColor(4, 4), QColor(Qt::blue));
    }

    void onADenseScreenTheThumbnailHasThePixelsOfTheScreen()
    {
        if (!qEnvironmentVariableIsSet("QT_SCALE_FACTOR")) {
            QVERIFY(tavrin::test::passesAtDensity(u"1.5"_s));
            return;
        }
        AttachmentsForm form;
        form.addThree();
        form.rows->SetPosition(2);
        QVERIFY(form.show());
        QCOMPARE(form.section->devicePixelRatioF(), 1.5);
        form.read();
        const QPixmap picture = form.child<QLabel>("imgThumbnail")->pixmap(Qt::ReturnByValue);
        QCOMPARE(picture.size(), QSize(140, 185)); // 93 x 123 places, rounded up
        QCOMPARE(picture.devicePixelRatio(), 1.5);
    }

    void aLongNameIsCutBeforeTheCountAndStandsWholeInTheToolTip()
    {
        AttachmentsForm form;
        const QString name = QString(150, u'n') + u".txt"_s;
        form.addRow(name);
        form.addRow(u"short.txt"_s);
        form.read();
        QVERIFY(form.show());
        const auto* label = form.child<Label>("lblFilename");
        QCOMPARE(label->Caption(), name);
        QCOMPARE(label->toolTip(), name);
        QVERIFY(label->geometry().right() < form.child<Label>("lblCountLabel")->geometry().left());
        form.click(form.placeOfLine(1));
        QCOMPARE(label->width(), label->sizeHint().width());
        QCOMPARE(label->toolTip(), QString());
    }

    void eachSelectionFetchesTheThumbnailAgain()
    {
        AttachmentsForm form;
        form.addThree();
        form.rows->SetPosition(2);
        form.read();
        QCOMPARE(thumbnailsAsked(form), 1);
        QVERIFY(form.show());
        form.click(form.placeOfLine(0));
        QCOMPARE(thumbnailsAsked(form), 1);
        form.click(form.placeOfLine(1));
        QCOMPARE(thumbnailsAsked(form), 2);
    }

    void theCommentShowsFromItsTop()
    {
        AttachmentsForm form;
        form.addRow(u"a.txt"_s, u"first"_s, u"short"_s);
        form.addRow(u"b.txt"_s, u"second"_s, QString(u"line\r\n"_s).repeated(60));
        form.read();
        QVERIFY(form.show());
        form.click(form.placeOfLine(1));
        QCOMPARE(form.comment->textCursor().position(), 0);
        QVERIFY(form.comment->verticalScrollBar()->maximum() > 0);
        QCOMPARE(form.comment->verticalScrollBar()->value(), 0);
    }

    // The texts

    void aTypedDescriptionReachesTheRowAndTheLineWithEachKey()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        form.description->setFocus();
        form.description->end(false);
        form.type(u"x"_s);
        QCOMPARE(form.text(1, "Description"), u"firstx"_s);
        QCOMPARE(form.list->SubItem(u"101"_s, u"Description"_s), u"firstx"_s);
        form.type(u"y"_s);
        QCOMPARE(form.text(1, "Description"), u"firstxy"_s);
        QCOMPARE(form.list->SubItem(u"101"_s, u"Description"_s), u"firstxy"_s);
        QCOMPARE(form.text(1, "Notes"), u"one"_s);
        QCOMPARE(form.text(2, "Description"), u"second"_s);
    }

    void aTypedCommentWaitsForTheSave()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        form.comment->setFocus();
        form.type(u"a "_s);
        QCOMPARE(form.text(1, "Notes"), u"one"_s);
        form.write();
        QCOMPARE(form.text(1, "Notes"), u"a one"_s);
    }

    void aLeftClickOnAnotherLineSavesTheComment()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        form.comment->setFocus();
        form.type(u"a "_s);
        form.click(form.placeOfLine(1));
        QCOMPARE(form.text(1, "Notes"), u"a one"_s);
        QCOMPARE(form.comment->Text(), u"two"_s);
        QCOMPARE(form.text(2, "Notes"), u"two"_s);
    }

    void aRightClickOnAnotherLineLosesTheCommentAsItIsMeant()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        form.comment->setFocus();
        form.type(u"a "_s);
        form.click(form.placeOfLine(1), Qt::RightButton);
        QCOMPARE(form.comment->Text(), u"two"_s);
        QTRY_VERIFY(form.menu->isVisible());
        form.menu->close();
        form.click(form.placeOfLine(0));
        QCOMPARE(form.comment->Text(), u"one"_s);
        QCOMPARE(form.text(1, "Notes"), u"one"_s);
        QCOMPARE(form.text(2, "Notes"), u"two"_s);
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
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        form.comment->setFocus();
        form.type(u"a "_s);
        form.click(form.placeOfLine(0), button);
        QCOMPARE(form.comment->Text(), u"a one"_s);
        QCOMPARE(form.text(1, "Notes"), u"one"_s);
        if (button == Qt::RightButton) {
            QTRY_VERIFY(form.menu->isVisible());
            form.menu->close();
        }
    }

    void aSaveMakesEmptyTextsOfNullAlsoWhenNothingWasTypedAsItIsMeant()
    {
        AttachmentsForm form;
        const tvTableRowPtr row = form.addRow(u"a.txt"_s);
        form.read();
        QCOMPARE(form.description->Text(), QString());
        QCOMPARE(form.comment->Text(), QString());
        QVERIFY(IsNull(AttachmentsForm::value(*row, "Description")));
        QVERIFY(IsNull(AttachmentsForm::value(*row, "Notes")));
        form.write();
        for (const char* field : {"Description", "Notes"}) {
            const QVariant value = AttachmentsForm::value(*row, field);
            QCOMPARE(value.typeId(), int(QMetaType::QString));
            QVERIFY(!IsNull(value));
            QCOMPARE(value.toString(), QString());
        }
    }

    void aSaveWithoutRowsDoesNothing()
    {
        AttachmentsForm form;
        form.read();
        form.write();
        QCOMPARE(form.boxes.shown().size(), 0);
    }

    void aDescriptionLongerThanItsFieldIsShownAndSavedWhole()
    {
        AttachmentsForm form;
        const QString longText = u"a description of forty-two units, all told"_s;
        QVERIFY(longText.size() > NumberedRows::DescriptionLength);
        form.addRow(u"a.txt"_s, u"short"_s);
        form.addRow(u"b.txt"_s, longText);
        form.read();
        QVERIFY(form.show());
        form.click(form.placeOfLine(1)); // the limit of the first row must not cut it either
        QCOMPARE(form.description->Text(), longText);
        QCOMPARE(form.text(2, "Description"), longText);
        form.write();
        QCOMPARE(form.text(2, "Description"), longText);
    }

    void showingAVeryLongDescriptionForTheFirstTimeDoesNotCutIt()
    {
        AttachmentsForm form;
        const QString longText(40000, u'x');
        form.addRow(u"a.txt"_s, longText);
        form.read();
        QCOMPARE(form.description->Text(), longText);
        QCOMPARE(form.text(1, "Description"), longText);
        form.write();
        QCOMPARE(form.text(1, "Description"), longText);
    }

    void theTextsAreLimitedToTheirFields()
    {
        AttachmentsForm form;
        form.addRow(u"a.txt"_s);
        form.read();
        QVERIFY(form.show());
        QCOMPARE(form.description->MaxLength(), 20);
        QCOMPARE(form.comment->MaxLength(), 200);
        form.description->setFocus();
        form.type(QString(25, u'd'));
        QCOMPARE(form.text(1, "Description"), QString(20, u'd'));
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
        AttachmentsForm form;
        form.addRow(u"a.txt"_s, u"first"_s, notes);
        form.read();
        form.write();
        QCOMPARE(form.text(1, "Notes"), notes);
    }

    void anEditedCommentHasTheLineEndsOfTheOtherWorkstations()
    {
        AttachmentsForm form;
        form.addRow(u"a.txt"_s, u"first"_s, u"one\ntwo"_s);
        form.read();
        QVERIFY(form.show());
        form.comment->setFocus();
        form.type(u"a"_s);
        form.press(Qt::Key_Return);
        form.write();
        QCOMPARE(form.text(1, "Notes"), u"a\r\none\r\ntwo"_s);
    }

    void undoingBringsNoTextOfAnotherRow()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        form.click(form.placeOfLine(1));
        form.description->setFocus();
        QTest::keySequence(form.window.windowHandle(), QKeySequence(QKeySequence::Undo));
        QCOMPARE(form.description->Text(), u"second"_s);
        form.comment->setFocus();
        QTest::keySequence(form.window.windowHandle(), QKeySequence(QKeySequence::Undo));
        QCOMPARE(form.comment->Text(), u"two"_s);
    }

    void showingARowWritesNothing()
    {
        AttachmentsForm form;
        const tvTableRowPtr row = form.addRow(u"a.txt"_s);
        form.addThree();
        form.read();
        QVERIFY(form.show());
        form.rows->SetPosition(2);
        form.read();
        QVERIFY(IsNull(AttachmentsForm::value(*row, "Description")));
        QVERIFY(IsNull(AttachmentsForm::value(*row, "Notes")));
        QCOMPARE(form.rows->primaries, QStringList());
    }

    void aFailureWhileTypingDoesNotCrossQtAndTheTextStays()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        const Unhandled unhandled;
        form.description->setFocus();
        form.description->end(false);
        form.host.failWith(Error(u"no images"_s));
        form.type(u"x"_s);
        form.host.failWith({});
        QCOMPARE(unhandled.texts, QStringList{u"TextBox_Change: no images"_s});
        QCOMPARE(form.boxes.shown().size(), 0);
        QCOMPARE(form.text(1, "Description"), u"firstx"_s);
    }

    void theTextsOfARecordNeverReachARowOfOneThatCouldNotBeShown()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        const auto others = std::make_shared<NumberedRows>();
        const tvTableRowPtr broken = std::make_shared<tavrin::test::FakeRow>(
            QList<tvFieldPtr>{std::make_shared<tavrin::test::FakeField>(u"SeqNo"_s, 1, true),
                              std::make_shared<tavrin::test::FakeField>(u"Description"_s, u"theirs"_s),
                              std::make_shared<tavrin::test::FakeField>(u"Notes"_s, u"theirs"_s)});
        others->Add(broken);
        form.record->setItem(u"Attachments"_s, others);
        QVERIFY_THROWS_EXCEPTION(Error, form.read());
        form.write();
        QCOMPARE(AttachmentsForm::text(*broken, "Description"), u"theirs"_s);
        QCOMPARE(AttachmentsForm::text(*broken, "Notes"), u"theirs"_s);
    }

    void aCommentNeverReachesANewRowWhoseTextsCouldNotBeShown()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        const tvTableRowPtr broken = std::make_shared<tavrin::test::FakeRow>(
            QList<tvFieldPtr>{std::make_shared<tavrin::test::FakeField>(u"SeqNo"_s, 104, true),
                              std::make_shared<tavrin::test::FakeField>(u"FileName"_s, u"b.txt"_s),
                              std::make_shared<tavrin::test::FakeField>(u"Description"_s, u"theirs"_s)});
        const auto others = std::make_shared<NumberedRows>();
        others->Add(broken);
        form.record->setItem(u"Attachments"_s, others);
        QVERIFY_THROWS_EXCEPTION(Error, form.read());
        QVERIFY(!form.description->isEnabled());
        QVERIFY(!form.comment->isEnabled());
        form.write();
        form.description->SetText(u"typed"_s);
        form.cover->SetValue(CheckBox::Checked);
        QCOMPARE(AttachmentsForm::text(*broken, "Description"), u"theirs"_s);
        QCOMPARE(others->primaries, QStringList());
    }

    void aRowWhoseCommentCannotBeReadKeepsItsTextsFromThoseOfTheRowBefore()
    {
        AttachmentsForm form;
        form.addThree();
        form.read();
        QVERIFY(form.show());
        const auto notes = std::make_shared<FailingField>(u"Notes"_s, u"theirs"_s);
        const auto others = std::make_shared<NumberedRows>();
        others->Add(rowWith(notes));
        notes->fails = true;
        form.record->setItem(u"Attachments"_s, others);
        QVERIFY_THROWS_EXCEPTION(Error, form.read());
        QCOMPARE(form.comment->Text(), u"one"_s);
        notes->fails = false;
        form.write();
        QCOMPARE(notes->Value().toString(), u"theirs"_s);
        form.read();
        QVERIFY(form.comment->isEnabled());
        QCOMPARE(form.comment->Text(), u"theirs"_s);
    }

    void afterARecordThatCouldNotBeListedNothingActsOnItsRows()
    {
        AttachmentsForm form;
        form.addThree();
        form.rows->SetPosition(2);
        form.read();
        QVERIFY(form.show());
        const auto others = std::make_shared<NumberedRows>();
        const auto date = std::make_shared<FailingField>(u"UserDate"_s, Null());
        others->Add(rowWith(date));
        others->SetPosition(1);
        form.record->setItem(u"Attachments"_s, others);
        date->fails = true;
        QVERIFY_THROWS_EXCEPTION(Error, form.read());
        date->fails = false;
        QVERIFY(!form.description->isEnabled());
        form.cover->SetValue(CheckBox::Checked);
        form.press(Qt::Key_Delete);
        form.press(Qt::Key_Return);
        form.item("mnuOpen")->trigger();
        form.item("mnuRemove")->trigger();
        QCOMPARE(others->Count(), 1);
        QCOMPARE(others->primaries, QStringList());
        QCOMPARE(form.shell.opened(), QStringList());
        QCOMPARE(form.boxes.shown().size(), 0);
    }

    void savingOnAClickMayDeleteTheSection()
    {
        AttachmentsForm form;
        const auto notes = std::make_shared<FailingField>(u"Notes"_s, u"noted"_s);
        form.rows->Add(rowWith(notes));
        form.addRow(u"b.txt"_s);
        form.rows->SetPosition(1);
        form.read();
        QVERIFY(form.show());
        notes->written = [&form] { delete form.section.data(); };
        form.click(form.placeOfLine(1));
        QVERIFY(form.section.isNull());
        QCOMPARE(form.rows->Position(), 1);
        QCOMPARE(form.boxes.shown().size(), 0);
    }

    void savingOnAClickMayBindAnotherRecordWhoseRowStaysCurrent()
    {
        AttachmentsForm form;
        const auto notes = std::make_shared<FailingField>(u"Notes"_s, u"noted"_s);
        form.rows->Add(rowWith(notes));
        form.addRow(u"b.txt"_s);
        form.rows->SetPosition(1);
        form.read();
        QVERIFY(form.show());
        const auto others = std::make_shared<NumberedRows>();
        for (int i = 0; i < 3; ++i) {
            const tvTableRowPtr row = NumberedRows::makeRow(false);
            AttachmentsForm::set(*row, "FileName", u"other.txt"_s);
            others->Add(row);
        }
        others->SetPosition(1);
        notes->written = [&] {
            form.record->setItem(u"Attachments"_s, others);
            form.read();
        };
        form.click(form.placeOfLine(1));
        QCOMPARE(others->Position(), 1);
        QCOMPARE(form.marked(), u"101"_s);
        QCOMPARE(form.list->Count(), 3);
        QCOMPARE(form.boxes.shown().size(), 0);
    }

    void typingMayBindAnotherRecordWhoseListStaysItsOwn()
    {
        AttachmentsForm form;
        const auto text = std::make_shared<FailingField>(u"Description"_s, u"old"_s);
        form.rows->Add(rowWith(text));
        form.rows->SetPosition(1);
        form.read();
        QVERIFY(form.show());
        const auto none = std::make_shared<NumberedRows>();
        text->written = [&] {
            form.record->setItem(u"Attachments"_s, none);
            form.read();
        };
        form.description->setFocus();
        form.type(u"x"_s);
        QCOMPARE(form.list->Count(), 0);
    }

    // The cover

    void selectingADocumentThatIsThePrimaryRowClearsNothing()
    {
        AttachmentsForm form;
        form.addThree();
        form.rows->SetPosition(2);
        form.rows->SetPrimaryValue(102);
        form.read();
        QVERIFY(form.show());
        QCOMPARE(form.cover->Value(), 1);
        form.rows->SetPrimaryValue(101);
        form.rows->primaries.clear();
        form.click(form.placeOfLine(0));
        QCOMPARE(form.cover->Value(), 0);
        QCOMPARE(form.rows->primaries, QStringList());
        QCOMPARE(form.rows->PrimaryIndex(), 1);
    }

    void checkingTheBoxMovesTheCoverAndTheOldOneShowsUnchecked()
    {
        AttachmentsForm form;
        form.addThree();
        form.rows->SetPosition(2);
        form.rows->SetPrimaryValue(102);
        form.read();
        QVERIFY(form.show());
        QCOMPARE(form.cover->Value(), 1);
        form.click(form.placeOfLine(2));
        QCOMPARE(form.cover->Value(), 0);
        form.rows->primaries.clear();
        form.click(form.cover);
        QCOMPARE(form.cover->Value(), 1);
        QCOMPARE(form.rows->primaries, QStringList{u"103"_s});
        form.click(form.placeOfLine(1));
        QCOMPARE(form.cover->Value(), 0);
        QCOMPARE(form.rows->PrimaryIndex(), 3);
    }

    void clearingTheBoxOnTheCoverLeavesTheRecordWithoutOne()
    {
        AttachmentsForm form;
        form.addThree();
        form.rows->SetPosition(2);
        form.rows->SetPrimaryValue(102);
        form.read();
        QVERIFY(form.show());
        form.rows->primaries.clear();
        form.cover->setFocus();
        form.press(Qt::Key_Space);
        QCOMPARE(form.rows->primaries, QStringList{u"Null"_s});
        QCOMPARE(form.rows->PrimaryIndex(), 0);
    }

    void selectingADocumentHidesTheBoxAndChangesNoCover()
    {
        AttachmentsForm form;
        form.addThree();
        form.rows->SetPosition(2);
        form.rows->SetPrimaryValue(102);
        form.read();
        QVERIFY(form.show());
        QCOMPARE(form.cover->Value(), 1);
        form.rows->primaries.clear();
        form.click(form.placeOfLine(0));
        QVERIFY(form.cover->isHidden());
        QCOMPARE(form.cover->Value(), 0);
        QCOMPARE(form.rows->primaries, QStringList());
        QCOMPARE(form.rows->PrimaryIndex(), 2);
    }

    void showingTheCoverRaisesTheClickThatWritesTheSameCover()
    {
        AttachmentsForm form;
        form.addThree();
        form.rows->SetPrimaryValue(102);
        form.read();
        QVERIFY(form.show());
        form.rows->primaries.clear();
        form.click(form.placeOfLine(1));
        QCOMPARE(form.rows->primaries, QStringList{u"102"_s});
        QCOMPARE(form.cover->Value(), 1);
    }

    void aFollowerOfTheCoverMayDeleteTheSection()
    {
        AttachmentsForm form;
        form.addThree();
        form.rows->SetPrimaryValue(102);
        form.read();
        form.rows->SetPosition(2);
        const Subscription deleting =
            form.rows->PrimaryStatusChanged.subscribe([&](const QVariant&) { delete form.section.data(); });
        form.read();
        QVERIFY(form.section.isNull());
    }

    // Keyboard and screen readers

    void tabWalksFromTheListOverTheLinkAndTheCoverToTheTexts()
    {
        AttachmentsForm form;
        form.addThree();
        form.rows->SetPosition(2);
        form.read();
        QVERIFY(form.show());
        QStringList names{form.window.focusWidget()->objectName()};
        for (int i = 0; i < 4; ++i) {
            form.press(Qt::Key_Tab);
            names << form.window.focusWidget()->objectName();
        }
        QCOMPARE(names, QStringList({u"lvwFiles"_s, u"lnkAddAttachments"_s, u"chkDefault"_s,
                                     u"txtDescription"_s, u"txtComment"_s}));
    }

    void thePartsAreNamedForScreenReaders()
    {
        AttachmentsForm form;
        QCOMPARE(form.description->accessibleName(), u"Description"_s);
        QCOMPARE(form.comment->accessibleName(), u"Comment"_s);
        QCOMPARE(form.cover->Caption(), u"Cover image"_s);
        QCOMPARE(form.section->CommentsTextBox(), form.comment);
    }
};

TAVRIN_TEST_MAIN(tst_AttachmentsDetails)
#include "tst_AttachmentsDetails.moc"
