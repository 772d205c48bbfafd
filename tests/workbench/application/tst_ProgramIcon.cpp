#include "support/TestCase.h"
#include "workbench/application/ProgramIcon.h"

#include <QImage>

/// The icon of the workbench's windows.
class tst_ProgramIcon : public tavrin::test::TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void eachSizeIsADrawingOfItsOwn_data()
    {
        QTest::addColumn<int>("size");
        for (const int size : {16, 24, 32, 48, 64, 128, 256})
            QTest::newRow(qPrintable(QString::number(size))) << size;
    }
    void eachSizeIsADrawingOfItsOwn()
    {
        QFETCH(int, size);
        const QImage drawn = tavrin::workbench::programIcon().pixmap(size).toImage();
        QCOMPARE(drawn.size(), QSize(size, size));
        const QImage file(QStringLiteral(":/icons/%1.png").arg(size));
        QCOMPARE(file.size(), QSize(size, size));
        const auto format = QImage::Format_ARGB32_Premultiplied;
        QCOMPARE(drawn.convertToFormat(format), file.convertToFormat(format));
        QVERIFY2(drawn.pixelColor(size / 2, size / 2).alpha() == 255, "its middle shows the ground");
    }
};

TAVRIN_TEST_MAIN(tst_ProgramIcon)
#include "tst_ProgramIcon.moc"
