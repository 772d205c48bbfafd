#include "attachments/dialogs/FileUploadStage.h"
#include "support/Fonts.h"
#include "support/Looks.h"

#include <QAccessible>

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

/// Where the parts of a line stand, and what eyes and screen readers get.
class tst_FileUploadLooks : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    // Layout

    void thePartsStandAtTheirPlaces()
    {
        const FileUploadStage stage;
        QCOMPARE(stage.line->size(), QSize(309, 49));
        QCOMPARE(stage.part<QWidget>("imgIcon")->geometry(), QRect(8, 16, 20, 20));
        QCOMPARE(stage.part<QWidget>("lblFilename")->pos(), QPoint(40, 12));
        QCOMPARE(stage.bar()->geometry(), QRect(40, 32, 229, 9));
        QCOMPARE(stage.part<QWidget>("lblStatus")->pos(), QPoint(40, 32));
        QCOMPARE(stage.part<QWidget>("lblStatus")->width(), 228);
        QCOMPARE(stage.part<Label>("lblFilename")->Caption(), u"..."_s);
    }

    void aLongPathEndsWhereTheBarEndsAndStandsWholeInTheToolTip()
    {
        const FileUploadStage stage;
        const QString path = u"/"_s + QString(200, u'W') + u"/Report.pdf"_s;
        stage.line->SetFile(path);
        const auto* label = stage.part<Label>("lblFilename");
        QCOMPARE(label->geometry().right(), stage.bar()->geometry().right());
        QCOMPARE(label->toolTip(), path);
        stage.line->SetFile(u"a"_s);
        QVERIFY(label->width() < 40);
        QCOMPARE(label->toolTip(), QString());
    }

    void lineBreaksInANameAreShownAsBlanksOnOneLine()
    {
        const FileUploadStage stage;
        stage.line->SetFile(u"/a.pdf"_s);
        const auto* name = stage.part<Label>("lblFilename");
        const QRect oneLine = name->geometry();
        const QString path = u"/a\nb\rc"_s + QChar(QChar::LineSeparator) + u"d"_s +
                             QChar(QChar::ParagraphSeparator) + u"e.pdf"_s;
        stage.line->SetFile(path);
        QCOMPARE(stage.line->Filename(), path);
        QCOMPARE(name->Caption(), u"/a b c d e.pdf"_s);
        QCOMPARE(name->height(), oneLine.height());
        QVERIFY(name->geometry().bottom() < stage.bar()->y());
    }

    void theBarAndTheReasonFollowTheWidthAndTheHeightFollowsWhatShows()
    {
        FileUploadStage stage;
        QVERIFY(stage.show());
        stage.line->resize(380, 200);
        QCOMPARE(stage.bar()->geometry(), QRect(40, 32, 300, 9));
        QCOMPARE(stage.part<QWidget>("lblStatus")->width(), 300);
        QCOMPARE(stage.line->height(), 32 + 9 + 8); // without a reason the bar ends the line
        const QString path = stage.file(u"a.txt"_s);
        stage.line->SetFile(path);
        stage.fail({path}, LongReason);
        stage.line->Start();
        const int wide = stage.line->height();
        stage.line->resize(200, wide);
        QCOMPARE(stage.part<QWidget>("lblStatus")->width(), 120);
        QVERIFY(stage.line->height() > wide);
    }

    void aLargerFontMovesTheBarBelowTheName_data()
    {
        QTest::addColumn<int>("points");
        QTest::newRow("14 points") << 14;
        QTest::newRow("18 points") << 18;
    }
    void aLargerFontMovesTheBarBelowTheName()
    {
        QFETCH(int, points);
        const ApplicationFontSize large(points);
        FileUploadStage stage;
        const QString path = stage.file(u"Report.pdf"_s);
        stage.line->SetFile(path);
        const auto* name = stage.part<Label>("lblFilename");
        const auto* status = stage.part<WrapLabel>("lblStatus");
        QVERIFY(name->height() >= name->fontMetrics().height());
        QVERIFY(name->height() > 20); // else the font has not come
        QVERIFY(stage.bar()->y() > name->geometry().bottom());
        QCOMPARE(stage.line->height(), stage.bar()->geometry().bottom() + 1 + 8);
        QVERIFY(stage.show());
        stage.fail({path}, LongReason);
        stage.line->Start();
        QCOMPARE(name->pos(), QPoint(40, 12));
        QVERIFY(status->y() > name->geometry().bottom());
        QCOMPARE(status->y(), stage.bar()->y());
        QCOMPARE(stage.line->height(), status->geometry().bottom() + 1 + 8);
    }

    void aLineWithoutRoomIsNoFailure()
    {
        FileUploadStage stage;
        QVERIFY(stage.show());
        stage.line->resize(10, 10);
        QCOMPARE(stage.bar()->width(), 0);
    }

    // What eyes and screen readers get

    void screenReadersAreToldOfTheStatus()
    {
        FileUploadStage stage;
        const QString path = stage.file(u"a.txt"_s);
        stage.line->SetFile(path);
        const auto words = [&] { return stage.line->accessibleDescription(); };
        const auto iconName = [&] { return stage.part<UploadIcon>("imgIcon")->accessibleName(); };
        QCOMPARE(words(), u"Not started"_s);
        QCOMPARE(iconName(), u"File"_s);
        stage.watch(words);
        stage.line->Start();
        QCOMPARE(stage.seen, QStringList({u"Not started"_s, u"Uploading"_s}));
        QCOMPARE(words(), u"Uploaded"_s);
        QCOMPARE(iconName(), u"Uploaded"_s);
        stage.fail({path});
        stage.line->Start();
        QCOMPARE(words(), u"Failed: The disk is full."_s);
        QCOMPARE(iconName(), u"Failed"_s);
        QCOMPARE(QAccessible::queryAccessibleInterface(stage.line)->role(), QAccessible::Grouping);
    }

    void theSignsDifferAndAnUnknownKeyIsAnError()
    {
        UploadIcon icon;
        icon.resize(20, 20);
        QList<QImage> pictures;
        for (const auto& key : {u"file"_s, u"success"_s, u"error"_s}) {
            icon.SetKey(key);
            const QImage picture = imageOf(icon);
            QVERIFY2(!pictures.contains(picture), qPrintable(key));
            pictures << picture;
        }
        QVERIFY_EXCEPTION_THROWN(icon.SetKey(u"other"_s), Error);
        QCOMPARE(icon.Key(), u"error"_s);
    }

    void theBarIsFilledByItsShare()
    {
        TransferBar bar;
        bar.resize(200, 9);
        bar.setValue(25);
        const QImage image = imageOf(bar);
        const QColor filled = bar.palette().color(QPalette::Highlight);
        QCOMPARE(image.pixelColor(30, 4), filled);
        QCOMPARE(image.pixelColor(48, 4), filled);
        QVERIFY(image.pixelColor(52, 4) != filled);
        QVERIFY(image.pixelColor(190, 4) != filled);
    }
};

TAVRIN_TEST_MAIN(tst_FileUploadLooks)
#include "tst_FileUploadLooks.moc"
