#pragma once

#include "base/export/Export.h"
#include "frame/control_frame/UserControl.h"
#include "frame/host_contracts/Contracts.h"

#include <memory>

namespace tavrin {

/// The cover of a record: the primary image among its attachments.
///
///     auto* cover = new CoverImage(page);
///     cover->ReadData(record); // record->Item("Attachments") holds the rows
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
    /// Shows no cover until `ReadData`. Raises what the host raises when it makes a collection, which the
    /// designer does without.
    explicit CoverImage(QWidget* parent = nullptr, const ControlSite& site = {});
    ~CoverImage() override;

    /// Room for the sign that there is no cover, in pixels.
    QSize sizeHint() const override;

protected:
    void UserControl_Resize() override;
    void paintEvent(QPaintEvent* event) override;

private:
    /// Shows the cover of the record, and follows it; keeps the collection, not the record. Raises error 91
    /// without a record or when it has no attachments; what was shown then stays.
    void BoundSection_ReadData(const tvBusinessObjectPtr& record) override;
    /// Nothing: the section writes nothing.
    void BoundSection_WriteData(const tvBusinessObjectPtr& record) override;

    class Q_DECL_HIDDEN Private;
    std::unique_ptr<Private> d;
};

} // namespace tavrin
