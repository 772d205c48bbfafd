// The layout arithmetic of the flat pickers, in twips.

#include "base/values/Variant.h"
#include "frame/control_frame/FailurePolicy.h"
#include "frame/modUtils.h"
#include "lookup/FlatPickerPrivate.h"
#include "widgets/drawing/BoxShape.h"
#include "widgets/drawing/Placement.h"
#include "widgets/labels/Label.h"
#include "widgets/labels/Link.h"
#include "widgets/labels/Tag.h"
#include "widgets/panels/GroupBox.h"

#include <QFontMetricsF>
#include <QScopedValueRollback>

namespace tavrin {

namespace {

constexpr int StandardLetters = 28; // an empty picker is so many letters "X" wide
constexpr Twips CaptionStep = 60;
constexpr Twips BesideLink = 90;
constexpr Twips DropDownSinks = 30; // the drop-down sign stands lower than the clear sign

} // namespace

Twips FlatPicker::Private::BoxMargin() const
{
    constexpr Twips pixels = 8;
    return UserControl::ScaleY(pixels, ScaleMode::Pixels, ScaleMode::Twips);
}

Twips FlatPicker::Private::MeasureTextWidth(const QString& text) const
{
    return static_cast<Twips>(QFontMetricsF(CloneFont(*q.Font())->toQFont()).horizontalAdvance(text)) *
           TwipsPerPixel;
}

Twips FlatPicker::Private::MeasureTextHeight(const tavrin::Font& font) const
{
    return static_cast<Twips>(QFontMetricsF(CloneFont(font)->toQFont()).height()) * TwipsPerPixel;
}

Twips FlatPicker::Private::captionHeight() const
{
    if (m_caption.isEmpty())
        return 0;
    return CaptionStep *
           static_cast<Twips>(modUtils::Ceiling((heightOf(*lblCaption) + CaptionStep) / CaptionStep));
}

Twips FlatPicker::Private::boxHeight() const
{
    return 2 * BoxMargin() + MeasureTextHeight(*q.Font());
}

Twips FlatPicker::Private::standardWidth() const
{
    return MeasureTextWidth(QString(StandardLetters, QLatin1Char('X')));
}

QSize FlatPicker::sizeHint() const
{
    return {toPixels(own().standardWidth()), toPixels(own().boxHeight() + own().captionHeight())};
}

void FlatPicker::Private::resizeToContent()
{
    const bool standard = m_showName && IsNull(m_value);
    const QScopedValueRollback inLayout(m_inLayout, true);
    modUtils::ResizeTwips(q, standard ? standardWidth() : q.ScaleWidth(), boxHeight() + captionHeight());
}

void FlatPicker::Private::LayoutControls()
{
    if (m_inLayout)
        return;
    moveTo(*lblCaption, 0, 0);
    const Twips caption = captionHeight();
    const Twips box = boxHeight();
    const Twips oldWidth = q.ScaleWidth();
    continueOnError([this] { resizeToContent(); });
    // From the width before: after a shrink the text box has the old width until the next pass.
    const Twips innerWidth = oldWidth - 2 * BoxMargin();
    acTextBox->SetListWidth(q.ScaleWidth());
    acTextBox->SetOwnerWindow(q.hWnd());
    const Twips tagMargin = box / 2 - heightOf(*tagName) / 2;
    placeTag(*tagName, tagMargin);
    moveTo(*shpBorder, 0, caption, q.ScaleWidth(), box);
    placeLink(caption, box);
    continueOnError([&] { placeTextBox(caption, box, innerWidth); });
    q.updateGeometry();
}

void FlatPicker::Private::placeLink(Twips caption, Twips box)
{
    moveTo(*lnkDropDown, 0, 0);
    const Twips width = widthOf(*lnkDropDown);
    const Twips height = heightOf(*lnkDropDown);
    const Twips extra = IsNull(m_value) ? DropDownSinks : 0;
    moveTo(*grpDropDownButton, q.ScaleWidth() - width - BesideLink, box / 2 - height / 2 + caption + extra,
           width, height);
}

void FlatPicker::Private::placeTextBox(Twips caption, Twips box, Twips innerWidth)
{
    const Twips textHeight = MeasureTextHeight(*q.Font());
    const Twips textTop = box / 2 - textHeight / 2 + caption;
    if (showsTag()) {
        const Twips left = 2 * leftOf(*tagName) + widthOf(*tagName);
        // A long tag leaves no width, which counts as 0.
        moveTo(*acTextBox, left, textTop, leftOf(*grpDropDownButton) - left, textHeight);
        showBesideTag();
    } else {
        moveTo(*acTextBox, BoxMargin(), textTop, innerWidth - widthOf(*grpDropDownButton), textHeight);
        showAlone();
    }
}

} // namespace tavrin
