#include "attachments/section/Attachments.h"

#include "attachments/files/FileKindIcons.h"
#include "attachments/files/ModuleKey.h"
#include "attachments/files/NoAttachments.h"
#include "attachments/files/modAttachments.h"
#include "attachments/section/AttachmentsPrivate.h"
#include "attachments/section/PrimaryRule.h"
#include "frame/control_frame/FailurePolicy.h"
#include "frame/host_contracts/Host.h"
#include "frame/host_contracts/HostObjects.h"
#include "widgets/boxes/CheckBox.h"
#include "widgets/boxes/TextArea.h"
#include "widgets/drawing/BoxShape.h"
#include "widgets/drawing/Placement.h"
#include "widgets/labels/Label.h"
#include "widgets/labels/TextLink.h"
#include "widgets/lists/ListView.h"
#include "widgets/panels/GroupBox.h"
#include "widgets/panels/PopupMenu.h"

#include <QLabel>
#include <QPointer>
#include <QStyle>

namespace tavrin {

namespace {

constexpr int AddRight = 10;
constexpr int DeleteRight = 20;

// Sizes as designed, in twips.
constexpr Twips DesignWidth = 7995;
constexpr Twips ListHeight = 2535;
constexpr Twips ToolbarTop = 2520;
constexpr Twips ToolbarHeight = 315;
constexpr Twips CaptionTop = 3000;
constexpr Twips PaneTop = 3240;
constexpr Twips PaneHeight = 2775;
constexpr Twips Gap = 180; // below and beside the comment

tvTableCollectionPtr newAttachments(bool isRunTime)
{
    if (!isRunTime)
        return std::make_shared<NoAttachments>();
    tvTableCollectionPtr attachments = currentHost().newTableCollection();
    attachments->SetItemClass(QString::fromLatin1(modAttachments::ItemClass));
    return attachments;
}

} // namespace

Attachments::Attachments(QWidget* parent, const ControlSite& site)
    : UserControl(parent, site)
    , d(std::make_unique<Private>(*this))
{
    d->follow(newAttachments(ambient().UserMode()));
    d->build();
    d->EnableDetails(false);
    d->m_contextMenuTimer.SetInterval(1);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    resize(sizeHint());
    begin();
}

Attachments::~Attachments() = default;

// The constituents

void Attachments::Private::build()
{
    // In tab order.
    lvwFiles = new ListView(&q);
    picToolbar = new GroupBox(&q);
    lnkAddAttachments = new TextLink(picToolbar);
    Label4 = new Label(picToolbar);
    buildUndo();
    lblFilename = new Label(&q);
    lblCountLabel = new Label(&q);
    lblCount = new Label(&q);
    fraDetails = new GroupBox(&q);
    buildDetails();
    picUpdating = new GroupBox(&q); // lies over the list
    lblUpdating = new Label(picUpdating);

    imglIcons = {{QString::fromLatin1(FileKindIcons::File), FileKindIcons::file()},
                 {QString::fromLatin1(FileKindIcons::Image), FileKindIcons::image()}};
    lnkAddAttachments->SetCaption(QStringLiteral("Browse for files"));
    lnkAddAttachments->SetForeColor(SystemColor::Highlight);
    lnkAddAttachments->SetHoverUnderline(true);
    Label4->SetCaption(QStringLiteral("or drag-and-drop files into the attachment area above."));
    lblCountLabel->SetCaption(QStringLiteral("Attachments:"));
    lblUpdating->SetAutoSize(false);
    lblUpdating->setAlignment(Qt::AlignCenter);
    lblUpdating->SetCaption(QStringLiteral("Refreshing attachments list..."));
    lblUpdating->SetForeColor(SystemColor::WindowText);
    picUpdating->SetBackColor(SystemColor::WindowBackground);
    picUpdating->hide();
    q.setFocusPolicy(Qt::StrongFocus);
    q.setFocusProxy(lvwFiles);

    nameConstituents();
    SetupList();
    placeConstituents();
    UpdateCount();
    m_subscriptions.push_back(
        lvwFiles->ItemClick.subscribe([this](const QString& key) { lvwFiles_ItemClick(key); }));
    buildActions();
}

void Attachments::Private::nameConstituents()
{
    const std::pair<QWidget*, const char*> names[] = {{lvwFiles, "lvwFiles"},
                                                      {picUpdating, "picUpdating"},
                                                      {lblUpdating, "lblUpdating"},
                                                      {picToolbar, "picToolbar"},
                                                      {lnkAddAttachments, "lnkAddAttachments"},
                                                      {Label4, "Label4"},
                                                      {lblFilename, "lblFilename"},
                                                      {lblCountLabel, "lblCountLabel"},
                                                      {lblCount, "lblCount"},
                                                      {fraDetails, "fraDetails"}};
    for (const auto& [widget, name] : names)
        widget->setObjectName(QString::fromLatin1(name));
    lvwFiles->setAccessibleName(QStringLiteral("Attachments"));
    fraDetails->setAccessibleName(QStringLiteral("Attachment details"));
}

void Attachments::Private::placeConstituents()
{
    moveTo(*lvwFiles, 0, 0, DesignWidth, ListHeight);
    moveTo(*picToolbar, 0, ToolbarTop, DesignWidth, ToolbarHeight);
    moveTo(*lnkAddAttachments, 45, 60);
    constexpr Twips besideLink = 1290 - 45 - 1200;
    const Twips linkEnd = leftOf(*lnkAddAttachments) + widthOf(*lnkAddAttachments);
    moveTo(*Label4, std::max<Twips>(1290, linkEnd + besideLink), 60);
    moveTo(*lblFilename, 0, CaptionTop);
    moveTo(*lblCountLabel, 6780, CaptionTop);
    moveTo(*lblCount, 7800, CaptionTop);
    moveTo(*fraDetails, 0, PaneTop, DesignWidth, PaneHeight);
    lvwFiles->raise(); // the strip begins over its last line of pixels, which shows the focus
    picUpdating->raise();
}

// The record

void Attachments::BoundSection_ReadData(const tvBusinessObjectPtr& record)
{
    d->readFrom(record);
}

void Attachments::Private::readFrom(const tvBusinessObjectPtr& record)
{
    const QString moduleKey = GetModuleKeyFromBO(record);
    Session& session = currentHost().session();
    const bool canAdd = session.HasPermission(moduleKey, AddRight);
    const bool canDelete = session.HasPermission(moduleKey, DeleteRight);
    const auto attachments = childOf<tvTableCollection>(*record, QStringLiteral("Attachments"));
    // All that can be refused has been asked for: a record that cannot be bound changes nothing.
    const bool isAnother = attachments != m_attachments; // a host may read again behind each save
    if (isAnother)
        mnuAttachments->Dismiss(); // it is about the record before
    m_canAdd = canAdd;
    m_canDelete = canDelete;
    follow(attachments);
    m_record = record;
    const QPointer<Attachments> self(&q); // a follower of the cover may delete the control
    if (isAnother) {
        forgetRemoved();
        if (!self || attachments != m_attachments) // and so may one of the focus, or bind another record
            return;
    }
    try {
        UpdateMenus();
        RefreshList();
        SelectRow(m_attachments->Position());
    } catch (...) {
        if (self && !m_shownRow)
            EnableDetails(false); // the pane still shows the record before
        throw;
    }
}

void Attachments::BoundSection_WriteData(const tvBusinessObjectPtr&)
{
    reportInBox(this, QString(), QStringLiteral("Error"), [this] { d->SaveDetails(); });
}

void Attachments::Private::follow(tvTableCollectionPtr attachments)
{
    m_itemRemoved =
        attachments->ItemRemovedEx.subscribe([this](qint32 nRemovedIndex, const tvTableRowPtr& objItem) {
            m_attachments_ItemRemovedEx(nRemovedIndex, objItem);
        });
    m_attachments = std::move(attachments);
    m_shownRow = nullptr; // a row of another collection may have its key
    ++m_detailsTurn;
}

// The cover

void Attachments::Private::m_attachments_ItemRemovedEx(qint32, const tvTableRowPtr& objItem)
{
    tvTableRow& row = required(objItem, QStringLiteral("row that was removed"));
    const tvTableCollectionPtr attachments = m_attachments; // a follower of the cover may bind another record
    PrimaryRule::removed(*attachments, row);
}

// Layout

void Attachments::UserControl_Resize()
{
    d->layOut();
}

void Attachments::Private::layOut()
{
    // Continue on error.
    const Twips w = q.ScaleWidth();
    const Twips h = q.ScaleHeight();
    const auto topOf = [](const QWidget& widget) { return toTwips(widget.y()); };
    const auto setWidth = [](QWidget& widget, Twips width) {
        widget.resize(std::max(toPixels(width), 0), widget.height());
    };
    continueOnError(
        [&] { setWidth(*lvwFiles, w); }, [&] { ResizeLastColumn(); }, [&] { setWidth(*picToolbar, w); },
        [&] { placeUndo(); },
        [&] { moveTo(*fraDetails, leftOf(*fraDetails), topOf(*fraDetails), w, h - topOf(*fraDetails)); },
        [&] {
            moveTo(*picNoThumbnail, leftOf(*imgThumbnail) + TwipsPerPixel,
                   topOf(*imgThumbnail) + TwipsPerPixel, widthOf(*imgThumbnail) - 2 * TwipsPerPixel,
                   heightOf(*imgThumbnail) - 2 * TwipsPerPixel);
        },
        [&] { moveTo(*chkDefault, leftOf(*imgThumbnail), topOf(*chkDefault)); },
        [&] {
            moveTo(*txtComment, leftOf(*txtComment), topOf(*txtComment),
                   widthOf(*txtComment->parentWidget()) - Gap - leftOf(*txtComment),
                   heightOf(*txtComment->parentWidget()) - Gap - topOf(*txtComment));
        },
        [&] { shpThumbnailBorder->setGeometry(imgThumbnail->geometry()); }, [&] { LayoutCountLabels(); },
        [&] {
            const Twips edge = toTwips(q.style()->pixelMetric(QStyle::PM_DefaultFrameWidth));
            moveTo(*picUpdating, leftOf(*lvwFiles) + edge, topOf(*lvwFiles) + edge,
                   widthOf(*lvwFiles) - 2 * edge, heightOf(*lvwFiles) - 2 * edge);
        },
        [&] {
            const Twips height = toTwips(lblUpdating->sizeHint().height());
            moveTo(*lblUpdating, 0, heightOf(*picUpdating) / 2 - height / 2, widthOf(*picUpdating), height);
        });
}

QSize Attachments::sizeHint() const
{
    return {std::max(toPixels(DesignWidth), d->m_listWidth), toPixels(PaneTop + PaneHeight)};
}

QSize Attachments::minimumSizeHint() const
{
    return {toPixels(DesignWidth) / 4 * 3, toPixels(PaneTop + PaneHeight)};
}

} // namespace tavrin
