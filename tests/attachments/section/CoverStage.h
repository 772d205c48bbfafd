#pragma once

#include "attachments/AttachmentRows.h"
#include "attachments/section/CoverImage.h"
#include "support/TestCase.h"
#include "testing/FakeDesktop.h"
#include "testing/FakeHost.h"
#include "testing/Unhandled.h"

#include <QColor>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace tavrin::test {

inline const QColor Red = Qt::red;
inline const QColor Blue = Qt::blue;

/// A form with the control on it, and a record whose rows have colours for pictures.
struct CoverStage
{
    CoverStage()
        : control(new CoverImage(&window))
    {
        host.state().settings.insert(QStringLiteral("_Global/Attachments Folder"), QStringLiteral("/store"));
        record->SetItem(QStringLiteral("Attachments"), rows);
        window.resize(300, 300);
        control->setGeometry(10, 10, 120, 150);
    }

    void show()
    {
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
    }
    void read() const { static_cast<BoundSection*>(control)->ReadData(record); }
    void add(int seqNo, const QString& fileName, const std::optional<QColor>& color = {})
    {
        const tvTableRowPtr row = rows->AddNew();
        put(*row, {{"SeqNo", seqNo}, {"FileName", fileName}, {"OriginalFileName", fileName}});
        if (!color)
            return;
        host.state().thumbnails.insert(
            QStringLiteral("/store\\") + fileName,
            pictureFile(folder, qPrintable(fileName + QStringLiteral(".png")), *color));
    }
    /// A red image, which is the cover.
    void addRedCover()
    {
        add(1, QStringLiteral("a.png"), Red);
        rows->SetPrimaryValue(1);
    }
    void openWithRedCover()
    {
        addRedCover();
        show();
        read();
    }
    /// From now on the record has another collection, without rows.
    void replaceRows()
    {
        rows = std::make_shared<FakeCollection>(attachmentColumns());
        record->SetItem(QStringLiteral("Attachments"), rows);
    }
    QWidget& noImage() const { return *control->findChild<QWidget*>(QStringLiteral("picNoImage")); }
    QWidget& border() const { return *control->findChild<QWidget*>(QStringLiteral("shpBorder")); }
    QColor middle() const { return control->grab().toImage().pixelColor(60, 75); }
    int downloads() { return static_cast<int>(host.state().log.filter(QStringLiteral("Download ")).size()); }
    QStringList takeLog() { return std::exchange(host.state().log, {}); }
    /// Does something in the middle of the next fetch only.
    void meanwhile(std::function<void()> act)
    {
        host.state().duringTransfer = [act = std::move(act), done = false](const QString&, qint64,
                                                                           qint64) mutable {
            if (!std::exchange(done, true))
                act();
        };
    }

    void verifyCover(const QColor& color) const
    {
        QVERIFY(!noImage().isVisible());
        QCOMPARE(middle(), color);
        verifyNoMessage();
    }
    void verifyNoCover() const
    {
        QVERIFY(noImage().isVisible());
        QVERIFY(middle() != Red && middle() != Blue);
        verifyNoMessage();
    }
    void verifyNoMessage() const
    {
        QVERIFY(boxes.shown().isEmpty());
        QCOMPARE(unhandled.texts, QStringList());
    }

    QTemporaryDir folder;
    FakeHost host;
    HostInstallation installation{host};
    FakeMessageBoxes boxes;
    Unhandled unhandled;
    std::shared_ptr<FakeRecord> record = std::make_shared<FakeRecord>();
    std::shared_ptr<FakeCollection> rows = std::make_shared<FakeCollection>(attachmentColumns());
    QWidget window;
    CoverImage* control;
};

} // namespace tavrin::test
