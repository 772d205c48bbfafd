#include "attachments/section/AttachmentsStage.h"
#include "attachments/section/PrimaryRule.h"

using namespace Qt::StringLiterals;
using namespace tavrin;
using namespace tavrin::test;

namespace {

/// A collection with a file for each letter: upper case for an image, lower case for a document. The letter's
/// code is the key of its row.
struct Files
{
    explicit Files(const QString& letters, const QString& cover)
        : installation(host)
    {
        for (const QChar letter : letters)
            add(letter);
        if (!cover.isEmpty())
            rows->SetPrimaryValue(cover.at(0).unicode());
        told = rows->PrimaryStatusChanged.subscribe(
            [this](const QVariant& key) { changes << (IsNull(key) ? u"-"_s : letterOf(key)); });
    }
    tvTableRowPtr add(QChar letter) const
    {
        return addFile(*rows, letter.unicode(), letter.isUpper() ? u"a.png"_s : u"a.txt"_s);
    }
    QString cover() const
    {
        const qint32 index = rows->PrimaryIndex();
        return index == 0 ? u"-"_s : letterOf(fieldOf(*rows->Item(index), u"SeqNo"_s)->Value());
    }
    static QString letterOf(const QVariant& key)
    {
        return QString(QChar(static_cast<char16_t>(ToLong(key))));
    }

    FakeHost host;
    HostInstallation installation;
    std::shared_ptr<FakeCollection> rows = newAttachmentRows();
    Subscription told;
    QStringList changes;
};

} // namespace

class tst_PrimaryRule : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void anAddedFile_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("cover");
        QTest::addColumn<QString>("added");
        QTest::addColumn<QStringList>("changes");
        QTest::addColumn<QString>("after");
        QTest::newRow("a first document sets the cover to Null")
            << u""_s << u""_s << u"d"_s << QStringList{u"-"_s} << u"-"_s;
        QTest::newRow("a second document does not touch it")
            << u"d"_s << u""_s << u"e"_s << QStringList() << u"-"_s;
        QTest::newRow("a first image is the cover")
            << u""_s << u""_s << u"A"_s << QStringList{u"A"_s} << u"A"_s;
        QTest::newRow("a first image behind documents is the cover")
            << u"de"_s << u""_s << u"A"_s << QStringList{u"A"_s} << u"A"_s;
        QTest::newRow("a further image is not") << u"A"_s << u"A"_s << u"B"_s << QStringList() << u"A"_s;
        QTest::newRow("a document behind the cover changes nothing")
            << u"A"_s << u"A"_s << u"d"_s << QStringList() << u"A"_s;
        QTest::newRow("an image becomes the cover that somebody had taken away")
            << u"A"_s << u""_s << u"B"_s << QStringList{u"B"_s} << u"B"_s;
    }
    void anAddedFile()
    {
        QFETCH(QString, before);
        QFETCH(QString, cover);
        QFETCH(QString, added);
        QFETCH(QStringList, changes);
        QFETCH(QString, after);
        Files files(before, cover);
        PrimaryRule::added(*files.rows, *files.add(added.at(0)));
        QCOMPARE(files.changes, changes);
        QCOMPARE(files.cover(), after);
    }

    void theKeyIsThatOfTheCollectionWhateverItsColumn()
    {
        FakeHost host;
        const HostInstallation installation(host);
        FakeCollection rows({u"Id"_s, u"SeqNo"_s, u"FileName"_s});
        const auto add = [&](int id, int seqNo, const QString& fileName) {
            const tvTableRowPtr row = rows.NewItem();
            fieldOf(*row, u"Id"_s)->SetValue(id);
            fieldOf(*row, u"SeqNo"_s)->SetValue(seqNo);
            fieldOf(*row, u"FileName"_s)->SetValue(fileName);
            rows.Add(row);
            return row;
        };
        add(81, 2, u"a.txt"_s);
        const tvTableRowPtr first = add(82, 1, u"a.png"_s);
        PrimaryRule::added(rows, *first);
        QCOMPARE(rows.PrimaryIndex(), 2);
        add(83, 82, u"b.png"_s); // whose number is the key of another
        rows.SetPosition(2);
        rows.RemoveCurrent(false);
        PrimaryRule::removed(rows, *first);
        QCOMPARE(rows.PrimaryIndex(), 2);
    }

    void aRemovedFile_data()
    {
        QTest::addColumn<QString>("left");
        QTest::addColumn<QString>("cover");
        QTest::addColumn<QString>("gone");
        QTest::addColumn<QStringList>("changes");
        QTest::addColumn<QString>("after");
        QTest::newRow("removing A leaves the cover on B")
            << u"B"_s << u"B"_s << u"A"_s << QStringList{u"B"_s} << u"B"_s;
        QTest::newRow("removing B moves the cover that was chosen by hand from C to A, which is meant")
            << u"AC"_s << u"C"_s << u"B"_s << QStringList{u"A"_s} << u"A"_s;
        QTest::newRow("removing the cover moves it to the first image")
            << u"dBC"_s << u""_s << u"A"_s << QStringList{u"B"_s} << u"B"_s;
        QTest::newRow("removing the last image sets Null")
            << u"de"_s << u""_s << u"A"_s << QStringList{u"-"_s} << u"-"_s;
        QTest::newRow("removing the only file sets Null")
            << u""_s << u""_s << u"A"_s << QStringList{u"-"_s} << u"-"_s;
        QTest::newRow("removing a document leaves the cover alone")
            << u"AB"_s << u"B"_s << u"d"_s << QStringList() << u"B"_s;
        QTest::newRow("removing a document leaves no cover alone")
            << u"A"_s << u""_s << u"d"_s << QStringList() << u"-"_s;
    }
    void aRemovedFile()
    {
        QFETCH(QString, left);
        QFETCH(QString, cover);
        QFETCH(QString, gone);
        QFETCH(QStringList, changes);
        QFETCH(QString, after);
        Files files(left, cover);
        const auto elsewhere = newAttachmentRows();
        const tvTableRowPtr row =
            addFile(*elsewhere, gone.at(0).unicode(), gone.at(0).isUpper() ? u"a.png"_s : u"a.txt"_s);
        PrimaryRule::removed(*files.rows, *row);
        QCOMPARE(files.changes, changes);
        QCOMPARE(files.cover(), after);
    }
};

TAVRIN_TEST_MAIN(tst_PrimaryRule)
#include "tst_PrimaryRule.moc"
