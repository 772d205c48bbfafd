#include "base/files/Sha256.h"
#include "support/TestCase.h"

#include <QCryptographicHash>

using tavrin::Sha256;

class tst_Sha256 : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void theHashOfKnownTexts_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("nothing") << QByteArray()
                                 << QByteArray(
                                        "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
        QTest::newRow("abc") << QByteArray("abc")
                             << QByteArray(
                                    "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    }
    void theHashOfKnownTexts()
    {
        QFETCH(QByteArray, text);
        Sha256 hash;
        hash.add(text.constData(), text.size());
        QTEST(hash.result().toHex(), "expected");
    }

    void piecesGiveTheHashOfTheWhole()
    {
        QByteArray data(300007, '\0');
        for (qsizetype i = 0; i < data.size(); ++i)
            data[i] = static_cast<char>(i * 7);
        Sha256 hash;
        for (qsizetype at = 0; at < data.size(); at += 1000)
            hash.add(data.constData() + at, std::min<qsizetype>(1000, data.size() - at));
        QCOMPARE(hash.result(), QCryptographicHash::hash(data, QCryptographicHash::Sha256));
    }
};

TAVRIN_TEST_MAIN(tst_Sha256)
#include "tst_Sha256.moc"
