#include "attachments/section/CoverImage.h"

#include "attachments/files/modAttachments.h"
#include "attachments/section/CameraPicture.h"
#include "base/values/Variant.h"
#include "frame/control_frame/FailurePolicy.h"
#include "frame/host_contracts/Host.h"
#include "frame/host_contracts/HostObjects.h"
#include "widgets/drawing/BoxShape.h"
#include "widgets/drawing/ConstituentLook.h"
#include "widgets/drawing/Placement.h"
#include "widgets/labels/Label.h"
#include "widgets/panels/GroupBox.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPointer>

namespace tavrin {

namespace {

constexpr double FontPoints = 8.25;
constexpr Twips NoImageWidth = 1425;
constexpr Twips NoImageHeight = 1455;

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

/// The constituents, the collection that is followed, and the picture.
class CoverImage::Private
{
public:
    explicit Private(CoverImage& control)
        : q(control)
    {
    }

    void makeConstituents();
    void follow(const tvTableCollectionPtr& attachments);
    void m_attachments_PrimaryStatusChanged(const QVariant& vPrimarySeqNo);
    void ShowCover();
    void ShowNoCover();
    void SetPicture(const QImage& picture, const QString& description);
    QRectF placeOfPicture() const;

    CoverImage& q;

    BoxShape* shpBorder = nullptr;
    GroupBox* picNoImage = nullptr;
    CameraPicture* imgIcon = nullptr;
    Label* Label1 = nullptr;

    QImage m_picture;                   // the background, in pixels of the screen
    quint64 m_turn = 0;                 // how often the cover has been shown: the newest one stays
    tvTableCollectionPtr m_attachments; // nullptr in the designer
    Subscription m_primaryStatusChanged;
};

CoverImage::CoverImage(QWidget* parent, const ControlSite& site)
    : UserControl(parent, site)
    , d(std::make_unique<Private>(*this))
{
    if (ambient().UserMode()) { // in the designer no host makes collections
        const tvTableCollectionPtr none = currentHost().newTableCollection();
        none->SetItemClass(QString::fromLatin1(modAttachments::ItemClass));
        d->follow(none);
    }
    d->makeConstituents();
    setAccessibleName(QStringLiteral("Cover image"));
    installAccessibleRole<CoverImage, QAccessible::Graphic>();
    resize(sizeHint());
    begin();
}

CoverImage::~CoverImage() = default;

void CoverImage::Private::makeConstituents()
{
    shpBorder = new BoxShape(&q);
    picNoImage = new GroupBox(&q);
    imgIcon = new CameraPicture(picNoImage);
    Label1 = new Label(picNoImage);

    shpBorder->setObjectName(QStringLiteral("shpBorder"));
    picNoImage->setObjectName(QStringLiteral("picNoImage"));
    imgIcon->setObjectName(QStringLiteral("imgIcon"));
    Label1->setObjectName(QStringLiteral("Label1"));

    shpBorder->SetFilled(false);
    picNoImage->SetBackColor(q.FrameBackColor());
    const auto font = std::make_shared<Font>();
    font->SetName(QStringLiteral("Segoe UI"));
    font->SetSize(FontPoints);
    Label1->SetFont(font);
    Label1->SetAutoSize(false);
    Label1->SetCaption(QStringLiteral("No cover image"));
    Label1->SetForeColor(SystemColor::GreyText);
    Label1->setAlignment(Qt::AlignCenter);
    q.setAccessibleDescription(Label1->Caption());

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
    d->follow(childOf<tvTableCollection>(required(record, QStringLiteral("record")),
                                         QStringLiteral("Attachments")));
    d->ShowCover();
}

void CoverImage::BoundSection_WriteData(const tvBusinessObjectPtr&) {}

void CoverImage::Private::follow(const tvTableCollectionPtr& attachments)
{
    m_primaryStatusChanged = attachments->PrimaryStatusChanged.subscribe(
        [this](const QVariant& vPrimarySeqNo) { m_attachments_PrimaryStatusChanged(vPrimarySeqNo); });
    m_attachments = attachments;
}

void CoverImage::Private::m_attachments_PrimaryStatusChanged(const QVariant& vPrimarySeqNo)
{
    if (IsNull(vPrimarySeqNo))
        ShowNoCover();
    else
        ShowCover();
}

// The cover

void CoverImage::Private::ShowCover()
{
    // While the thumbnail is fetched the host may close the form, or the cover may be shown anew.
    const QPointer<CoverImage> self(&q);
    const quint64 turn = ++m_turn;
    picNoImage->hide();
    QImage picture;
    QString name;
    const qint32 primary = !m_attachments || m_attachments->Count() == 0 ? 0 : m_attachments->PrimaryIndex();
    if (primary != 0) {
        const tvTableRowPtr row = m_attachments->Item(primary);
        // As many pixels as the screen has there.
        const qreal density = q.devicePixelRatioF();
        const auto onScreen = [density](Twips length) { return static_cast<Twips>(length * density); };
        picture =
            modAttachments::GetAttachmentThumbnail(*row, onScreen(q.ScaleWidth()), onScreen(q.ScaleHeight()));
        picture.setDevicePixelRatio(density);
        name = picture.isNull() ? QString() : spokenName(*row);
    }
    if (!self || turn != m_turn)
        return;
    SetPicture(picture, name);
    picNoImage->setVisible(m_picture.isNull());
}

void CoverImage::Private::ShowNoCover()
{
    ++m_turn;
    SetPicture({}, {});
    picNoImage->show();
}

void CoverImage::Private::SetPicture(const QImage& picture, const QString& description)
{
    m_picture = picture;
    q.setAccessibleDescription(picture.isNull() ? Label1->Caption() : description);
    q.update();
}

void CoverImage::UserControl_Resize()
{
    const QPointer<CoverImage> self(this);
    continueOnError([this] { d->ShowCover(); },
                    [&] {
                        if (self)
                            moveTo(*d->shpBorder, 0, 0, ScaleWidth(), ScaleHeight());
                    },
                    [&] {
                        if (self)
                            moveTo(*d->picNoImage, ScaleWidth() / 2 - widthOf(*d->picNoImage) / 2,
                                   ScaleHeight() / 2 - heightOf(*d->picNoImage) / 2);
                    });
}

QRectF CoverImage::Private::placeOfPicture() const
{
    QSizeF size = m_picture.deviceIndependentSize();
    const bool isOfThisSize = qAbs(size.width() - q.width()) < 1 && qAbs(size.height() - q.height()) < 1;
    if (isOfThisSize)
        return {QPointF(0, 0), size}; // pixel by pixel
    // One of the size before, while the next is fetched.
    size.scale(q.rect().size(), Qt::KeepAspectRatio);
    return {QPointF((q.width() - size.width()) / 2, (q.height() - size.height()) / 2), size};
}

void CoverImage::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    QPainterPath insideOfBorder; // its corners are round
    insideOfBorder.addRoundedRect(QRectF(rect()), BoxShape::Radius, BoxShape::Radius);
    painter.fillPath(insideOfBorder, FrameBackColor().resolve(palette()));
    painter.setClipPath(insideOfBorder);
    if (!d->m_picture.isNull())
        painter.drawImage(d->placeOfPicture(), d->m_picture);
}

} // namespace tavrin
