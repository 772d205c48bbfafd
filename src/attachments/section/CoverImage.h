#pragma once

#include "base/export/Export.h"
#include "frame/control_frame/UserControl.h"
#include "frame/host_contracts/Contracts.h"

#include <QImage>

namespace tavrin {

class BoxShape;
class CameraPicture;
class GroupBox;
class Label;

/// The cover of a record: the primary image among its attachments.
///
///     auto* cover = new CoverImage(page);
///     static_cast<BoundSection*>(cover)->ReadData(record); // record.Item("Attachments") holds the rows
///
/// It follows the primary row of the collection from then on, whoever moves it, and writes nothing. Each
/// change and each new size fetches the thumbnail anew; the control waits for it. While there is no cover, or
/// none can be had, a quiet sign says so; there is never a message. It has no properties and raises no
/// events.
class TAVRIN_EXPORT CoverImage final : public UserControl, public BoundSection
{
    Q_OBJECT
    Q_CLASSINFO("ClassName", "TVBoundControls.CoverImage")
    Q_CLASSINFO("DefaultInterface", "_CoverImage")

public:
    explicit CoverImage(QWidget* parent = nullptr, const ControlSite& site = {});
    ~CoverImage() override;

    /// Room for the sign that there is no cover.
    QSize sizeHint() const override;

protected:
    void UserControl_Resize() override;
    void paintEvent(QPaintEvent* event) override;

private:
    /// Shows the cover of the record, and follows it. Raises error 91 when the record has no attachments;
    /// what was shown then stays.
    void BoundSection_ReadData(const tvBusinessObjectPtr& record) override;
    /// Nothing: the section writes nothing.
    void BoundSection_WriteData(const tvBusinessObjectPtr& record) override;

    void follow(const tvTableCollectionPtr& attachments);
    void m_attachments_PrimaryStatusChanged(const QVariant& vPrimarySeqNo);
    void ShowCover();
    void ShowNoCover();
    void SetPicture(const QImage& picture, const QString& description);
    QRectF placeOfPicture() const;

    void makeConstituents();

    BoxShape* shpBorder;
    GroupBox* picNoImage;
    CameraPicture* imgIcon;
    Label* Label1;

    QImage m_picture;                   // the background, in pixels of the screen
    quint64 m_turn = 0;                 // how often the cover has been shown: the newest one stays
    tvTableCollectionPtr m_attachments; // nullptr in the designer
    Subscription m_primaryStatusChanged;
};

} // namespace tavrin
