#include "attachments/section/AttachmentsCase.h"
#include "support/OtherDensity.h"

#include <QScrollBar>

using namespace Qt::StringLiterals;
using namespace tavrin;
using test::AttachmentsForm;
using test::NumberedRows;

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

int thumbnailsAsked(const AttachmentsForm& form)
{
    return static_cast<int>(form.host.state().log.count(u"GetThumbnailPath"_s));
}

} // namespace

/// What the pane below the list of `Attachments` shows.
class tst_AttachmentsDetails : public test::AttachmentsCase
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
        if (hasRead)
            m_form->read();
        QCOMPARE(disabled(*m_form).size(), 9);
        QVERIFY(m_form->child<GroupBox>("fraDetails")->isEnabled());
        // Only direct children: what stands deeper follows its container.
        QVERIFY(!m_form->child<QLabel>("imgFileIcon")->testAttribute(Qt::WA_ForceDisabled));
        QCOMPARE(shown(*m_form), u"nothing"_s);
        QCOMPARE(caption(*m_form, "lblFilename"), QString());
        QCOMPARE(m_form->description->Text(), QString());
        QCOMPARE(m_form->comment->Text(), QString());
        QCOMPARE(m_form->cover->Value(), 0);
    }

    void aRecordWithoutAttachmentsBlanksThePaneOfTheOneBefore()
    {
        m_form->addThree();
        m_form->rows->SetPosition(2);
        m_form->rows->SetPrimaryValue(102);
        m_form->read();
        QCOMPARE(m_form->cover->Value(), 1);
        const auto none = std::make_shared<NumberedRows>();
        m_form->record->SetItem(u"Attachments"_s, none);
        m_form->read();
        QCOMPARE(disabled(*m_form).size(), 9);
        QCOMPARE(shown(*m_form), u"nothing"_s);
        QVERIFY(m_form->child<QLabel>("imgThumbnail")->pixmap(Qt::ReturnByValue).isNull());
        QCOMPARE(m_form->description->Text(), QString());
        QCOMPARE(m_form->comment->Text(), QString());
        QCOMPARE(caption(*m_form, "lblFilename"), QString());
        QCOMPARE(m_form->cover->Value(), 0);
        QCOMPARE(none->primaries, QStringList());
        QCOMPARE(m_form->rows->primaries.last(), u"102"_s);
        QCOMPARE(m_form->text(2, "Notes"), u"two"_s);
    }

    void aDocumentShowsItsKindAndExtension()
    {
        m_form->addThree();
        m_form->read();
        QCOMPARE(disabled(*m_form), QStringList());
        QCOMPARE(shown(*m_form), u"kind"_s);
        QCOMPARE(caption(*m_form, "lblFilename"), u"report.docx"_s);
        QCOMPARE(caption(*m_form, "lblFileType"), u"docx"_s);
        QCOMPARE(m_form->child<QLabel>("imgFileIcon")->accessibleName(), u"file"_s);
        QVERIFY(!m_form->child<QLabel>("imgFileIcon")->pixmap(Qt::ReturnByValue).isNull());
        QVERIFY(m_form->cover->isHidden());
        QCOMPARE(m_form->description->Text(), u"first"_s);
        QCOMPARE(m_form->comment->Text(), u"one"_s);
        QCOMPARE(thumbnailsAsked(*m_form), 0);
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
        const tvTableRowPtr row = m_form->addRow(u"x.txt"_s);
        AttachmentsForm::set(*row, "FileName", name);
        m_form->read();
        QCOMPARE(caption(*m_form, "lblFileType"), extension);
    }

    void anImageShowsItsThumbnailFittedToTheBox()
    {
        m_form->addThree();
        m_form->rows->SetPosition(2);
        m_form->read();
        QCOMPARE(shown(*m_form), u"preview"_s);
        const QPixmap picture = m_form->child<QLabel>("imgThumbnail")->pixmap(Qt::ReturnByValue);
        QCOMPARE(picture.deviceIndependentSize().toSize(), QSize(93, 123));
        QCOMPARE(picture.toImage().pixelColor(4, 4), QColor(Qt::darkCyan));
        QCOMPARE(m_form->child<QLabel>("imgThumbnail")->accessibleName(), u"Preview of door.png"_s);
        QVERIFY(!m_form->cover->isHidden());
        QCOMPARE(m_form->cover->Value(), 0);
    }

    void anImageWithoutThumbnailShowsTheImageIcon()
    {
        m_form->addThree();
        const auto* icon = m_form->child<QLabel>("imgFileIcon");
        m_form->read();
        const QImage ofADocument = icon->pixmap(Qt::ReturnByValue).toImage();
        QVERIFY(!ofADocument.isNull());
        m_form->rows->SetPosition(3);
        m_form->read();
        QVERIFY(!icon->pixmap(Qt::ReturnByValue).isNull());
        QVERIFY(icon->pixmap(Qt::ReturnByValue).toImage() != ofADocument);
        QCOMPARE(shown(*m_form), u"kind"_s);
        QCOMPARE(m_form->child<QLabel>("imgFileIcon")->accessibleName(), u"image"_s);
        QCOMPARE(caption(*m_form, "lblFileType"), u"png"_s);
        QVERIFY(!m_form->cover->isHidden());
    }

    void aThumbnailThatCannotBeMadeIsNoError_data()
    {
        QTest::addColumn<QString>("failing");
        for (const char* operation :
             {"new ThumbnailService", "GetThumbnailPath", "new Downloader", "LoadPicture", "FitPicture"})
            QTest::newRow(operation) << QString::fromLatin1(operation);
        QTest::newRow("Download") << QString();
    }
    void aThumbnailThatCannotBeMadeIsNoError()
    {
        QFETCH(QString, failing);
        m_form->addThree();
        m_form->rows->SetPosition(2);
        m_form->read();
        QCOMPARE(shown(*m_form), u"preview"_s);
        if (failing.isEmpty())
            m_form->host.state().transferFailures.insert(u"thumbnail of door.png"_s, u"gone"_s);
        else
            m_form->host.state().failures.emplace(failing, Error(u"gone"_s));
        m_form->read();
        QCOMPARE(shown(*m_form), u"kind"_s);
        QCOMPARE(caption(*m_form, "lblFileType"), u"png"_s);
        QVERIFY(!m_form->cover->isHidden());
        QCOMPARE(m_form->description->Text(), u"second"_s);
        QCOMPARE(m_form->boxes.shown().size(), 0);
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
        AttachmentsForm& form = *m_form;
        form.addThree();
        form.rows->SetPosition(2);
        bool met = false;
        form.host.state().duringTransfer = [&](const QString&, qint64, qint64) {
            if (std::exchange(met, true))
                return;
            if (next.isEmpty())
                form.record->SetItem(u"Attachments"_s, std::make_shared<NumberedRows>());
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
        AttachmentsForm& form = *m_form;
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
        AttachmentsForm& form = *m_form;
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
        const QString name = QString(150, u'n') + u".txt"_s;
        m_form->addRow(name);
        m_form->addRow(u"short.txt"_s);
        QVERIFY(m_form->open());
        const auto* label = m_form->child<Label>("lblFilename");
        QCOMPARE(label->Caption(), name);
        QCOMPARE(label->toolTip(), name);
        QVERIFY(label->geometry().right() < m_form->child<Label>("lblCountLabel")->geometry().left());
        m_form->click(m_form->placeOfLine(1));
        QCOMPARE(label->width(), label->sizeHint().width());
        QCOMPARE(label->toolTip(), QString());
    }

    void eachSelectionFetchesTheThumbnailAgain()
    {
        m_form->addThree();
        m_form->rows->SetPosition(2);
        m_form->read();
        QCOMPARE(thumbnailsAsked(*m_form), 1);
        QVERIFY(m_form->show());
        m_form->click(m_form->placeOfLine(0));
        QCOMPARE(thumbnailsAsked(*m_form), 1);
        m_form->click(m_form->placeOfLine(1));
        QCOMPARE(thumbnailsAsked(*m_form), 2);
    }

    void theCommentShowsFromItsTopAlsoWhenTheOneBeforeWasReadToItsEnd()
    {
        const QString lines = QString(u"line\r\n"_s).repeated(60);
        m_form->addRow(u"a.txt"_s, u"first"_s, lines);
        m_form->addRow(u"b.txt"_s, u"second"_s, lines + u"and more"_s);
        m_form->addRow(u"c.txt"_s, u"third"_s, lines);
        QVERIFY(m_form->open());
        QScrollBar* bar = m_form->comment->verticalScrollBar();
        for (const int line : {1, 2, 0}) {
            m_form->comment->moveCursor(QTextCursor::End);
            QVERIFY(bar->value() > 0);
            m_form->click(m_form->placeOfLine(line));
            QCOMPARE(m_form->comment->textCursor().position(), 0);
            QVERIFY(bar->maximum() > 0);
            QCOMPARE(bar->value(), 0);
        }
    }

    // Keyboard and screen readers

    void tabWalksFromTheListOverTheLinkAndTheCoverToTheTexts()
    {
        m_form->addThree();
        m_form->rows->SetPosition(2);
        QVERIFY(m_form->open());
        QStringList names{m_form->window.focusWidget()->objectName()};
        for (int i = 0; i < 4; ++i) {
            m_form->press(Qt::Key_Tab);
            names << m_form->window.focusWidget()->objectName();
        }
        QCOMPARE(names, QStringList({u"lvwFiles"_s, u"lnkAddAttachments"_s, u"chkDefault"_s,
                                     u"txtDescription"_s, u"txtComment"_s}));
    }

    void thePartsAreNamedForScreenReaders()
    {
        QCOMPARE(m_form->description->accessibleName(), u"Description"_s);
        QCOMPARE(m_form->comment->accessibleName(), u"Comment"_s);
        QCOMPARE(m_form->cover->Caption(), u"Cover image"_s);
        QCOMPARE(m_form->section->CommentsTextBox(), m_form->comment);
    }
};

TAVRIN_TEST_MAIN(tst_AttachmentsDetails)
#include "tst_AttachmentsDetails.moc"
