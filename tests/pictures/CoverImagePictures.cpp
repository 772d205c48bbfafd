// Writes a picture of each state of the cover into the folder that is named on the command line; with
// QT_SCALE_FACTOR=2 the large ones.

#include "attachments/section/CoverImage.h"
#include "base/values/Variant.h"
#include "pictures/Pictures.h"
#include "support/TestCase.h"
#include "testing/FakeHost.h"
#include "testing/FakeRecords.h"
#include "workbench/application/Theme.h"

#include <QLabel>
#include <QTemporaryDir>

using namespace tavrin;

namespace {

constexpr QSize SmallCover(111, 113);
constexpr QSize LargeCover(180, 140);

/// A house at dusk, as somebody might have photographed it.
QImage photo()
{
    QImage image(640, 480, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sky(0, 0, 0, 340);
    sky.setColorAt(0, QColor(62, 88, 124));
    sky.setColorAt(1, QColor(226, 178, 140));
    painter.fillRect(image.rect(), sky);
    painter.fillRect(0, 340, 640, 140, QColor(74, 86, 62));
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(150, 118, 96));
    painter.drawRect(190, 210, 260, 170);
    painter.setBrush(QColor(92, 58, 52));
    painter.drawPolygon(QPolygonF({QPointF(165, 214), QPointF(320, 110), QPointF(475, 214)}));
    painter.setBrush(QColor(58, 44, 40));
    painter.drawRect(296, 290, 48, 90);
    painter.setBrush(QColor(250, 220, 140));
    painter.drawRect(216, 250, 50, 46);
    painter.drawRect(374, 250, 50, 46);
    return image;
}

/// A host with one thumbnail, which fits it as the reference host does.
class HostWithThumbnail
{
public:
    HostWithThumbnail()
    {
        const QString path = m_folder.filePath(QStringLiteral("thumbnail.png"));
        if (!photo().save(path))
            throw Error(QStringLiteral("%1 cannot be written").arg(path));
        m_host.state().settings.insert(QStringLiteral("_Global/Attachments Folder"),
                                       QStringLiteral("/store"));
        m_host.state().thumbnails.insert(QStringLiteral("/store\\house.png"), path);
        m_host.state().fitPicture = [this](const QImage& picture, int height, int width, Color ground) {
            return m_filling.FitPicture(picture, height, width, 1, true, ground, false);
        };
    }

private:
    QTemporaryDir m_folder;
    ListFilling m_filling;
    test::FakeHost m_host;
    HostInstallation m_installation{m_host};
};

tvBusinessObjectPtr record(bool withCover)
{
    const auto rows = std::make_shared<test::FakeCollection>(
        QStringList{QStringLiteral("SeqNo"), QStringLiteral("FileName"), QStringLiteral("OriginalFileName"),
                    QStringLiteral("FolderNo")});
    const tvTableRowPtr row = rows->AddNew();
    fieldOf(*row, QStringLiteral("SeqNo"))->SetValue(1);
    fieldOf(*row, QStringLiteral("FileName"))->SetValue(QStringLiteral("house.png"));
    if (withCover)
        rows->SetPrimaryValue(1);
    auto owner = std::make_shared<test::FakeRecord>();
    owner->SetItem(QStringLiteral("Attachments"), rows);
    return owner;
}

void writeCover(const QString& folder, const QString& name, const QSize& size, bool withCover, bool dark)
{
    workbench::applyTheme(dark);
    QWidget window;
    auto* title = new QLabel(QStringLiteral("Incident 2014-000317\nBurglary, 14 Harbor Street"), &window);
    title->move(24 + size.width(), 20);
    title->adjustSize();
    window.resize(title->x() + title->width() + 20, size.height() + 32);
    auto* cover = new CoverImage(&window);
    cover->setGeometry(QRect(QPoint(12, 16), size));
    window.show();
    static_cast<BoundSection*>(cover)->ReadData(record(withCover));
    test::writePicture(window, folder, name);
}

} // namespace

TAVRIN_PICTURES(CoverImage)(int argc, char** argv)
{
    return test::writePictures(argc, argv, [](const QString& folder, bool isLarge) {
        const HostWithThumbnail host;
        const QString ending = isLarge ? QStringLiteral("-200") : QString();
        for (const bool dark : {false, true}) {
            const QString theme = dark ? QStringLiteral("-dark") : QString();
            writeCover(folder, QStringLiteral("CoverImage/shown") + theme + ending, SmallCover, true, dark);
            writeCover(folder, QStringLiteral("CoverImage/none") + theme + ending, SmallCover, false, dark);
            writeCover(folder, QStringLiteral("CoverImage/large") + theme + ending, LargeCover, true, dark);
            writeCover(folder, QStringLiteral("CoverImage/large-none") + theme + ending, LargeCover, false,
                       dark);
        }
    });
}
