#include "lookup/ComboPicker.h"

#include "base/values/Variant.h"
#include "frame/control_frame/FailurePolicy.h"
#include "lookup/ComboPickerPrivate.h"
#include "widgets/drawing/PictureSurface.h"
#include "widgets/drawing/Placement.h"
#include "widgets/labels/Label.h"

#include <QScopedValueRollback>

namespace tavrin {

namespace {

const QString PlaceholderText = QStringLiteral("Type to search");
constexpr Twips FirstLabelLeft = 1680;
constexpr Twips BesideCombo = 45;
constexpr Twips UsualWidth = 4500;

} // namespace

ComboPicker::Private::Private(ComboPicker& picker, NumberedList& list)
    : SearchPicker::Private(picker, *new AutoCompleteComboBox)
    , m_numberedList(list)
    , acComboBox(static_cast<AutoCompleteComboBox*>(&m_box))
    , lblDescription(new Label(&q))
{
    acComboBox->setObjectName(QStringLiteral("acComboBox"));
    lblDescription->setObjectName(QStringLiteral("lblDescription"));
    lblDescription->SetAutoSize(false);
    moveTo(*lblDescription, FirstLabelLeft, 0);
    acComboBox->SetShowClearButton(true);
    acComboBox->SetPlaceholder(PlaceholderText);
    q.setFocusPolicy(Qt::StrongFocus);
    q.setFocusProxy(acComboBox);
    q.setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

ComboPicker::ComboPicker(QWidget* parent, const ControlSite& site)
    : SearchPicker(parent, site)
{
}

ComboPicker::Private& ComboPicker::own() const
{
    return static_cast<Private&>(*d);
}

// Properties

void ComboPicker::SetValue(const QVariant& value)
{
    d->putNumber(value, own().m_numberedList);
}

bool ComboPicker::Enabled() const
{
    return own().acComboBox->isEnabledTo(this); // a form that is disabled for a while does not count
}

void ComboPicker::SetEnabled(bool enabled)
{
    own().acComboBox->SetEnabled(enabled);
    own().acComboBox->SetPlaceholder(enabled ? PlaceholderText : QString());
    Q_EMIT PropertyChanged(QStringLiteral("Enabled"));
}

void ComboPicker::SetShowName(bool show)
{
    d->m_showName = show;
    own().lblDescription->setVisible(show);
    own().LayoutControls();
    Q_EMIT PropertyChanged(QStringLiteral("ShowName"));
}

// Choosing

QString ComboPicker::Private::boxText(const XmlNode& item)
{
    return m_numberedList.shortText(item);
}

void ComboPicker::Private::selectionChanged()
{
    lblDescription->SetCaption(QString());
    const XmlNode& item = acComboBox->SelectedItem();
    if (item.isNull()) {
        m_value = Null();
        acComboBox->SetText(QString());
    } else {
        m_value = m_numberedList.number(item);
        lblDescription->SetCaption(m_numberedList.longText(item));
    }
    q.update();
    Q_EMIT q.Change();
}

void ComboPicker::Private::selectionForgotten()
{
    lblDescription->SetCaption(QString());
}

void ComboPicker::Private::applyRowFont(PictureSurface& picture)
{
    // A plain one first: of the list's, what is not set here would come through, such as italic.
    picture.SetFont(tavrin::Font(QFont(QString())));
    picture.SetFontName(QStringLiteral("Segoe UI"));
    picture.SetFontSize(9);
    picture.SetFontBold(true);
}

// Lifecycle and layout

void ComboPicker::Private::applyFont()
{
    lblDescription->SetFont(q.Font());
    acComboBox->SetFont(q.Font());
    LayoutControls(); // the combo box has the height of its font
}

void ComboPicker::UserControl_AmbientChanged(const QString& propertyName)
{
    if (propertyName == QLatin1String("DisplayName"))
        d->showDisplayName();
}

Twips ComboPicker::Private::labelLeft() const
{
    return widthOf(*acComboBox) + leftOf(*acComboBox) + BesideCombo;
}

void ComboPicker::UserControl_Resize()
{
    own().LayoutControls();
}

void ComboPicker::Private::LayoutControls()
{
    if (m_inResize)
        return;
    const QScopedValueRollback inResize(m_inResize, true);
    Twips comboHeight = 0;
    continueOnError(
        [&] {
            const QSize size(toPixels(q.ShowName() ? comboWidth() : q.ScaleWidth()), acComboBox->height());
            acComboBox->resize(size);
        },
        [&] { acComboBox->SetListWidth(listWidth()); }, [&] { comboHeight = heightOf(*acComboBox); },
        [&] { placeLabel(); },
        [&] {
            if (q.Height() != comboHeight)
                q.SetHeight(comboHeight);
        },
        [&] {
            if (widthOf(*acComboBox) > q.Width()) {
                q.SetWidth(widthOf(*acComboBox));
                acComboBox->SetListWidth(listWidth());
            }
        },
        [&] { lblDescription->resize(lblDescription->width(), q.height()); });
    q.updateGeometry();
}

QSize ComboPicker::sizeHint() const
{
    return {toPixels(UsualWidth), own().acComboBox->height()};
}

QSize ComboPicker::minimumSizeHint() const
{
    // Without the name the combo box is as wide as the control, which must stay able to shrink.
    const int width = ShowName() ? toPixels(own().comboWidth()) : own().acComboBox->minimumSizeHint().width();
    return {width, own().acComboBox->height()};
}

} // namespace tavrin
