#include "sections/frmMultiValueSelect.h"

#include "base/failure/Guard.h"
#include "base/values/Variant.h"
#include "frame/control_frame/FailurePolicy.h"
#include "frame/host_contracts/Host.h"
#include "widgets/drawing/Placement.h"
#include "widgets/labels/TextLink.h"
#include "widgets/lists/ListBox.h"

#include <QKeyEvent>
#include <QLabel>
#include <QSet>

namespace tavrin {

namespace {

constexpr Twips Margin = 120;
constexpr Twips AboveLink = 30;
constexpr double LabelFontSize = 8.25;
constexpr double LinkFontSize = 9.75;

} // namespace

frmMultiValueSelect::frmMultiValueSelect(QWidget* parent)
    : Form(parent)
    , Label1(new QLabel(this))
    , lstChoices(new ListBox(this))
    , lnkOK(new TextLink(this))
{
    setObjectName(QStringLiteral("frmMultiValueSelect"));
    setWindowTitle(QStringLiteral("Select one or more items"));

    Label1->setObjectName(QStringLiteral("Label1"));
    Label1->setTextFormat(Qt::PlainText);
    Label1->setWordWrap(true);
    Label1->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    QFont small = Label1->font();
    small.setPointSizeF(LabelFontSize);
    Label1->setFont(small);
    Label1->setText(
        QStringLiteral("Select one or more choices from the list below, and click \"Done\" when finished:"));
    moveTo(*Label1, Margin, 180, 3495, 375);

    lstChoices->setObjectName(QStringLiteral("lstChoices"));
    lstChoices->setAccessibleName(QStringLiteral("Choices"));
    lstChoices->SetMultiSelect(true);
    moveTo(*lstChoices, Margin, 720, 3555, 2985);

    lnkOK->setObjectName(QStringLiteral("lnkOK"));
    const auto font = std::make_shared<tavrin::Font>();
    font->SetName(QStringLiteral("Segoe UI"));
    font->SetSize(LinkFontSize);
    font->SetBold(true);
    lnkOK->SetFont(font);
    lnkOK->SetCaption(QStringLiteral("Done"));
    lnkOK->SetForeColor(SystemColor::Highlight);
    lnkOK->SetHoverUnderline(true);
    // Wider than laid out where the platform's font is.
    constexpr int room = 3; // for the mark of the focus
    const QSize own = lnkOK->sizeHint() + QSize(2 * room, 0);
    moveTo(*lnkOK, 3180, 3780, 495, 255);
    lnkOK->resize(lnkOK->size().expandedTo(own));
    m_done = lnkOK->Click.subscribe([this] { lnkOK_Click(); });

    setMinimumSize(toPixels(2400), toPixels(2400));
    SetInnerSize(3780, 4095);
    lstChoices->setFocus();
}

frmMultiValueSelect::~frmMultiValueSelect() = default;

void frmMultiValueSelect::LoadValues(TableNumber tableNo, const QVariantList& existing)
{
    lstChoices->Clear();
    for (const TableValue& value : currentHost().hostServices().GetTableValues(tableNo, false).Items)
        lstChoices->AddItem(value.DisplayText, ToLong(value.Value));
    QSet<qint32> taken;
    for (const QVariant& code : existing)
        taken.insert(ToInteger(code)); // 16 bits: this is meant
    for (int i = lstChoices->ListCount() - 1; i >= 0; --i) {
        if (taken.contains(lstChoices->ItemData(i)))
            lstChoices->RemoveItem(i);
    }
    if (lstChoices->ListCount() > 0)
        lstChoices->SetListIndex(0);
}

qint32 frmMultiValueSelect::ChoiceCount() const
{
    return lstChoices->ListCount();
}

QList<qint32> frmMultiValueSelect::SelectedValues() const
{
    QList<qint32> values;
    for (int i = 0; i < lstChoices->ListCount(); ++i) {
        if (lstChoices->Selected(i))
            values.append(lstChoices->ItemData(i));
    }
    return values;
}

void frmMultiValueSelect::lnkOK_Click()
{
    m_confirmed = true;
    hide();
}

void frmMultiValueSelect::reject()
{
    m_confirmed = false; // also when it comes behind "Done"
    Form::reject();
}

void frmMultiValueSelect::keyPressEvent(QKeyEvent* event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isEnter) {
        Form::keyPressEvent(event);
        return;
    }
    event->accept();
    if (!event->isAutoRepeat()) // the Enter that has opened the dialog may still be held down
        guard("frmMultiValueSelect_KeyDown", [this] { lnkOK_Click(); });
}

void frmMultiValueSelect::Form_Resize()
{
    continueOnError(
        [this] {
            const Twips top = toTwips(lstChoices->y());
            moveTo(*lstChoices, Margin, top, ScaleWidth() - 2 * Margin,
                   ScaleHeight() - top - (heightOf(*lnkOK) + AboveLink));
        },
        [this] {
            moveTo(*lnkOK, ScaleWidth() - widthOf(*lnkOK) - Margin,
                   toTwips(lstChoices->y()) + heightOf(*lstChoices) + AboveLink);
        });
}

} // namespace tavrin
