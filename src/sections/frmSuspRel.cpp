#include "sections/frmSuspRel.h"

#include "base/failure/Guard.h"
#include "base/values/Variant.h"
#include "frame/desktop/Desktop.h"
#include "frame/host_contracts/Host.h"
#include "frame/host_contracts/HostObjects.h"
#include "sections/RelationPicture.h"
#include "widgets/drawing/Placement.h"
#include "widgets/labels/Label.h"
#include "widgets/lists/FlatDropdown.h"
#include "widgets/panels/GroupBox.h"

#include <QPushButton>

namespace tavrin {

namespace {

constexpr Twips FormWidth = 4215;
constexpr Twips FormHeight = 3240;
constexpr Twips Margin = 120;
constexpr int LeastRelationIndex = 1; // the first row is no choice

/// Places a label, and lets a longer caption or a larger font have more than the place it was designed for,
/// up to the dialog's margin.
void placeLabel(Label& label, Twips left, Twips top, Twips width, Twips height)
{
    const QSize wanted = label.QLabel::sizeHint();
    const Twips room = FormWidth - Margin - left;
    const Twips wide = std::min(std::max(width, toTwips(wanted.width())), std::max(width, room));
    moveTo(label, left, top, wide, std::max(height, toTwips(wanted.height())));
}

/// A combo box is as high as its font needs.
void placeCombo(FlatDropdown& combo, Twips left, Twips top, Twips width, Twips height)
{
    moveTo(combo, left, top, width, std::max(height, toTwips(combo.sizeHint().height())));
}

template <typename Widget>
Widget* named(Widget* widget, const char* name)
{
    widget->setObjectName(QString::fromLatin1(name));
    return widget;
}

} // namespace

frmSuspRel::frmSuspRel(QWidget* parent)
    : Form(parent)
    , Label8(named(new GroupBox(this), "Label8"))
    , Line1(named(new QWidget(this), "Line1"))
    , picHeader(named(new RelationPicture(this), "picHeader"))
    , lblTitle(named(new Label(this), "lblTitle"))
    , lblName(named(new Label(this), "lblName"))
    , cboName(named(new FlatDropdown(this), "cboName"))
    , lblRelationship(named(new Label(this), "lblRelationship"))
    , cboRelationship(named(new FlatDropdown(this), "cboRelationship"))
    , cmdOK(named(new QPushButton(this), "cmdOK"))
    , cmdCancel(named(new QPushButton(this), "cmdCancel"))
{
    setObjectName(QStringLiteral("frmSuspRel"));
    build();
    connectGuarded(cmdOK, &QPushButton::clicked, this, "cmdOK_Click", [this] { cmdOK_Click(); });
    connectGuarded(cmdCancel, &QPushButton::clicked, this, "cmdCancel_Click", [this] { cmdCancel_Click(); });
}

frmSuspRel::~frmSuspRel() = default;

void frmSuspRel::build()
{
    setWindowTitle(QStringLiteral("Suspect/Other Relationship"));
    SetInnerSize(FormWidth, FormHeight);
    setFixedSize(size());

    Label8->SetBackColor(SystemColor::WindowBackground);
    moveTo(*Label8, 0, 0, 5835, 915);
    Line1->setBackgroundRole(QPalette::Mid);
    Line1->setAutoFillBackground(true);
    moveTo(*Line1, 0, 915, 5835, TwipsPerPixel);
    moveTo(*picHeader, 120, 60, 48 * TwipsPerPixel, 48 * TwipsPerPixel);

    const FontPtr bold = std::make_shared<Font>();
    bold->SetName(QStringLiteral("Tahoma"));
    bold->SetBold(true);
    lblTitle->SetFont(bold);
    lblTitle->SetForeColor(SystemColor::WindowText);
    for (Label* label : {lblTitle, lblName, lblRelationship})
        label->SetAutoSize(false);
    lblTitle->SetCaption(QStringLiteral("Suspect/Other Relationship"));
    lblName->SetCaption(QStringLiteral("Other Name"));
    lblRelationship->SetCaption(QStringLiteral("Relationship to Suspect"));
    placeLabel(*lblTitle, 960, 360, 2340, 195);
    placeLabel(*lblName, 120, 1140, 855, 195);
    placeLabel(*lblRelationship, 120, 1920, 1680, 195);

    placeCombo(*cboName, 120, 1380, 3975, 315);
    placeCombo(*cboRelationship, 120, 2160, 3975, 315);

    cmdOK->setText(QStringLiteral("&OK"));
    cmdOK->setDefault(true);
    cmdCancel->setText(QStringLiteral("&Cancel"));
    moveTo(*cmdOK, 1680, 2700, 1215, 375);
    moveTo(*cmdCancel, 3060, 2700, 1035, 375);

    setTabOrder(cboName, cboRelationship);
    setTabOrder(cboRelationship, cmdOK);
    setTabOrder(cmdOK, cmdCancel);
    cboName->setFocus();
}

void frmSuspRel::SetupForm(const QString& otherItemName, const QList<tvTableRowPtr>& choices,
                           const tvTableRowPtr& suspect)
{
    m_otherItemName = otherItemName;
    lblTitle->SetCaption(QStringLiteral("Suspect/") + otherItemName + QStringLiteral(" Relationship"));
    lblName->SetCaption(otherItemName + QStringLiteral(" Name"));
    tvTableRow& suspectRow = required(suspect, QStringLiteral("suspect"));
    lblRelationship->SetCaption(QStringLiteral("Relationship to ") +
                                ToText(fieldOf(suspectRow, QStringLiteral("SuspectName"))->Value()));
    placeLabel(*lblTitle, 960, 360, 2340, 195);
    placeLabel(*lblName, 120, 1140, 855, 195);
    placeLabel(*lblRelationship, 120, 1920, 1680, 195);
    cboName->setAccessibleName(lblName->Caption());
    cboRelationship->setAccessibleName(lblRelationship->Caption());

    cboName->Clear();
    qint32 number = 0;
    for (const tvTableRowPtr& party : choices)
        cboName->AddItem(ToText(fieldOf(*party, otherItemName + QStringLiteral("Name"))->Value()), ++number);
    cboName->SetListIndex(0);
    currentHost().listFilling().FillTableCombo(Tables::SuspectRelationship, *cboRelationship, false, Null(),
                                               false);
    m_choices = choices;
}

tvTableRowPtr frmSuspRel::SelectedItem() const
{
    const qint32 number = cboName->ItemData(cboName->ListIndex());
    if (number < 1 || number > m_choices.size())
        throw Error(QStringLiteral("There is no party %1").arg(number));
    return m_choices.at(number - 1);
}

QVariant frmSuspRel::SelectedRelation() const
{
    const int index = cboRelationship->ListIndex();
    return index < LeastRelationIndex ? Null() : QVariant(cboRelationship->ItemData(index));
}

void frmSuspRel::validate()
{
    if (cboName->ListIndex() < 0) {
        cboName->setFocus();
        throw Error(QStringLiteral("Please select a ") + m_otherItemName.toLower() +
                    QStringLiteral(" first."));
    }
    if (cboRelationship->ListIndex() < LeastRelationIndex) {
        cboRelationship->setFocus();
        throw Error(QStringLiteral("Please select the relationship this ") + m_otherItemName.toLower() +
                    QStringLiteral(" has to the suspect."));
    }
}

void frmSuspRel::cmdOK_Click()
{
    try {
        validate();
        m_success = true;
        hide();
    } catch (...) {
        const Error error = Error::fromCurrentException();
        desktop().messageBoxes->tell(this, error.Description, BoxIcon::Exclamation, QStringLiteral("Error"));
    }
}

void frmSuspRel::reject()
{
    m_success = false; // also when it comes behind OK
    Form::reject();
}

void frmSuspRel::cmdCancel_Click()
{
    hide();
}

} // namespace tavrin
