#include "lookup/ComboPicker.h"

#include "base/values/Variant.h"
#include "frame/control_frame/FailurePolicy.h"
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

ComboPicker::ComboPicker(QWidget* parent, const ControlSite& site, NumberedList& list)
    : SearchPicker(parent, site, *new AutoCompleteComboBox)
    , acComboBox(findChild<AutoCompleteComboBox*>())
    , lblDescription(new Label(this))
    , m_list(list)
{
    acComboBox->setObjectName(QStringLiteral("acComboBox"));
    lblDescription->setObjectName(QStringLiteral("lblDescription"));
    lblDescription->SetAutoSize(false);
    moveTo(*lblDescription, FirstLabelLeft, 0);
    acComboBox->SetShowClearButton(true);
    acComboBox->SetPlaceholder(PlaceholderText);
    setFocusPolicy(Qt::StrongFocus);
    setFocusProxy(acComboBox);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    resize(ComboPicker::sizeHint());
}

// Properties

void ComboPicker::SetValue(const QVariant& value)
{
    putNumber(value, m_list);
}

bool ComboPicker::Enabled() const
{
    return acComboBox->isEnabledTo(this); // a form that is disabled for a while does not count
}

void ComboPicker::SetEnabled(bool enabled)
{
    acComboBox->SetEnabled(enabled);
    acComboBox->SetPlaceholder(enabled ? PlaceholderText : QString());
    Q_EMIT PropertyChanged(QStringLiteral("Enabled"));
}

void ComboPicker::SetShowName(bool show)
{
    m_showName = show;
    lblDescription->setVisible(show);
    UserControl_Resize();
    Q_EMIT PropertyChanged(QStringLiteral("ShowName"));
}

// Choosing

QString ComboPicker::boxText(const XmlNode& item)
{
    return m_list.shortText(item);
}

void ComboPicker::selectionChanged()
{
    lblDescription->SetCaption(QString());
    const XmlNode& item = acComboBox->SelectedItem();
    if (item.isNull()) {
        m_value = Null();
        acComboBox->SetText(QString());
    } else {
        m_value = m_list.number(item);
        lblDescription->SetCaption(m_list.longText(item));
    }
    update();
    Q_EMIT Change();
}

void ComboPicker::selectionForgotten()
{
    lblDescription->SetCaption(QString());
}

void ComboPicker::applyRowFont(PictureSurface& picture)
{
    // A plain one first: of the list's, what is not set here would come through, such as italic.
    picture.SetFont(tavrin::Font(QFont(QString())));
    picture.SetFontName(QStringLiteral("Segoe UI"));
    picture.SetFontSize(9);
    picture.SetFontBold(true);
}

// Lifecycle and layout

void ComboPicker::applyFont()
{
    lblDescription->SetFont(Font());
    acComboBox->SetFont(Font());
    UserControl_Resize(); // the combo box has the height of its font
}

void ComboPicker::UserControl_AmbientChanged(const QString& propertyName)
{
    if (propertyName == QLatin1String("DisplayName"))
        showDisplayName();
}

Twips ComboPicker::labelLeft() const
{
    return widthOf(*acComboBox) + leftOf(*acComboBox) + BesideCombo;
}

void ComboPicker::UserControl_Resize()
{
    if (m_inResize)
        return;
    const QScopedValueRollback inResize(m_inResize, true);
    Twips comboHeight = 0;
    continueOnError(
        [&] {
            const QSize size(toPixels(ShowName() ? comboWidth() : ScaleWidth()), acComboBox->height());
            acComboBox->resize(size);
        },
        [&] { acComboBox->SetListWidth(listWidth()); }, [&] { comboHeight = heightOf(*acComboBox); },
        [&] { placeLabel(); },
        [&] {
            if (Height() != comboHeight)
                SetHeight(comboHeight);
        },
        [&] {
            if (widthOf(*acComboBox) > Width()) {
                SetWidth(widthOf(*acComboBox));
                acComboBox->SetListWidth(listWidth());
            }
        },
        [&] { lblDescription->resize(lblDescription->width(), height()); });
    updateGeometry();
}

QSize ComboPicker::sizeHint() const
{
    return {toPixels(UsualWidth), acComboBox->height()};
}

QSize ComboPicker::minimumSizeHint() const
{
    // Without the name the combo box is as wide as the control, which must stay able to shrink.
    const int width = ShowName() ? toPixels(comboWidth()) : acComboBox->minimumSizeHint().width();
    return {width, acComboBox->height()};
}

} // namespace tavrin
