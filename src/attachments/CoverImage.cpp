#include "CoverImage.h"

#include "CameraPicture.h"
#include "base/Error.h"
#include "base/Variant.h"
#include "frame/control_frame/FailurePolicy.h"
#include "frame/host_contracts/Host.h"
#include "modAttachments.h"
#include "widgets/BoxShape.h"
#include "widgets/ConstituentLook.h"
#include "widgets/GroupBox.h"
#include "widgets/Label.h"
#include "widgets/Placement.h"

#include <QPainter>
#include <QPainterPath>

namespace tavrin {

namespace {

constexpr int MissingObjectNumber = 91;
constexpr double FontPoints = 8.25;
constexpr Twips NoImageWidth = 1425;
constexpr Twips NoImageHeight = 1455;

tvTableCollectionPtr attachmentsOf(const tvBusinessObjectPtr& record)
{
    if (!record)
        throw Error(QStringLiteral("There is no record"), MissingObjectNumber);
    auto rows = std::dynamic_pointer_cast<tvTableCollection>(record->Item(QStringLiteral("Attachments")));
    if (!rows)
        throw Error(QStringLiteral("There is no Attachments"), MissingObjectNumber);
    return rows;
}

/// What a screen reader says of a cover. A row that cannot name its file still has one.
QString spokenName(tvTableRow& row)
{
    try {
        return modAttachments::GetAttachmentDisplayName(row);
    } catch (...) {
        return {};
    }
}

} // namespace

CoverImage::CoverImage(QWidget* parent, const ControlSite& site)
    : UserControl(parent, site)
{
    if (ambient().UserMode()) { // in the designer no host makes collections
        const tvTableCollectionPtr none = currentHost().newTableCollection();
        none->SetItemClass(QString::fromLatin1(modAttachments::ItemClass));
        follow(none);
    }
    makeConstituents();
    setAccessibleName(QStringLiteral("Cover image"));
    installAccessibleRole<CoverImage, QAccessible::Graphic>();
    resize(sizeHint());
    begin();
}

CoverImage::~CoverImage() = default;

void CoverImage::makeConstituents()
{
    shpBorder = new BoxShape(this);
    picNoImage = new GroupBox(this);
    imgIcon = new CameraPicture(picNoImage);
    Label1 = new Label(picNoImage);

    shpBorder->setObjectName(QStringLiteral("shpBorder"));
    picNoImage->setObjectName(QStringLiteral("picNoImage"));
    imgIcon->setObjectName(QStringLiteral("imgIcon"));
    Label1->setObjectName(QStringLiteral("Label1"));

    shpBorder->SetFilled(false);
    picNoImage->SetBackColor(FrameBackColor());
    const auto font = std::make_shared<Font>();
    font->SetName(QStringLiteral("Segoe UI"));
    font->SetSize(FontPoints);
    Label1->SetFont(font);
    Label1->SetAutoSize(false);
    Label1->SetCaption(QStringLiteral("No cover image"));
    Label1->SetForeColor(SystemColor::GreyText);
    Label1->setAlignment(Qt::AlignCenter);
    setAccessibleDescription(Label1->Caption());

    moveTo(*shpBorder, 0, 0, 375, 375);
    moveTo(*picNoImage, 540, 660, NoImageWidth, NoImageHeight);
    moveTo(*imgIcon, 353, 120, 720, 720);
    moveTo(*Label1, 0, 900, NoImageWidth, 255);
}

QSize CoverImage::sizeHint() const
{
    const int air = 8; // on either side
    return {toPixels(NoImageWidth) + 2 * air, toPixels(NoImageHeight) + 2 * air};
}

// The record

void CoverImage::BoundSection_ReadData(const tvBusinessObjectPtr& record)
{
    follow(attachmentsOf(record));
    ShowCover();
}

void CoverImage::BoundSection_WriteData(const tvBusinessObjectPtr&) {}

void CoverImage::follow(const tvTableCollectionPtr& attachments)
{
    m_primaryStatusChanged = attachments->PrimaryStatusChanged.subscribe(
        [this](const QVariant& vPrimarySeqNo) { m_attachments_PrimaryStatusChanged(vPrimarySeqNo); });
    m_attachments = attachments;
}

void CoverImage::m_attachments_PrimaryStatusChanged(const QVariant& vPrimarySeqNo)
{
    if (IsNull(vPrimarySeqNo))
        ShowNoCover();
    else
        ShowCover();
}

// The cover

void CoverImage::ShowCover()
{
    const QPointer<CoverImage> self(this); // the host may close the form while it fetches the thumbnail
    picNoImage->hide();
    QImage picture;
    QString name;
    const qint32 primary = !m_attachments || m_attachments->Count() == 0 ? 0 : m_attachments->PrimaryIndex();
    if (primary != 0) {
        const tvTableRowPtr row = m_attachments->Item(primary);
        // As many pixels as the screen has there.
        const auto density = static_cast<Twips>(devicePixelRatioF());
        picture =
            modAttachments::GetAttachmentThumbnail(*row, ScaleWidth() * density, ScaleHeight() * density);
        name = picture.isNull() ? QString() : spokenName(*row);
    }
    if (!self)
        return;
    SetPicture(picture, name);
    picNoImage->setVisible(m_picture.isNull());
}

void CoverImage::ShowNoCover()
{
    SetPicture({}, {});
    picNoImage->show();
}

void CoverImage::SetPicture(const QImage& picture, const QString& description)
{
    m_picture = picture;
    setAccessibleDescription(picture.isNull() ? Label1->Caption() : description);
    update();
}

void CoverImage::UserControl_Resize()
{
    const QPointer<CoverImage> self(this);
    continueOnError([this] { ShowCover(); },
                    [&] {
                        if (self)
                            moveTo(*shpBorder, 0, 0, ScaleWidth(), ScaleHeight());
                    },
                    [&] {
                        if (self)
                            moveTo(*picNoImage, ScaleWidth() / 2 - widthOf(*picNoImage) / 2,
                                   ScaleHeight() / 2 - heightOf(*picNoImage) / 2);
                    });
}

void CoverImage::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    QPainterPath insideOfBorder; // its corners are round
    insideOfBorder.addRoundedRect(QRectF(rect()), BoxShape::Radius, BoxShape::Radius);
    painter.fillPath(insideOfBorder, FrameBackColor().resolve(palette()));
    painter.setClipPath(insideOfBorder);
    painter.drawImage(QRectF(rect()), m_picture);
}

} // namespace tavrin
