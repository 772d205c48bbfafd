#include "attachments/files/modAttachments.h"
#include "attachments/section/AttachmentsPrivate.h"
#include "base/values/Variant.h"
#include "widgets/boxes/CheckBox.h"
#include "widgets/boxes/TextArea.h"
#include "widgets/boxes/TextBox.h"
#include "widgets/drawing/BoxShape.h"
#include "widgets/drawing/Placement.h"
#include "widgets/labels/Label.h"
#include "widgets/panels/GroupBox.h"

#include <QIcon>
#include <QLabel>
#include <QPixmap>
#include <QPointer>
#include <QScrollBar>

#include <algorithm>

namespace tavrin {

namespace {

const QString Description = QStringLiteral("Description");
const QString Notes = QStringLiteral("Notes");
const QString FileName = QStringLiteral("FileName");

QString textOf(tvTableRow& row, const QString& field)
{
    return ToText(fieldOf(row, field)->Value());
}

/// What stands behind the last point of the name; "" without one.
QString extensionOf(const QString& path)
{
    const QString name = modAttachments::GetFileNameOnly(path);
    const auto point = name.lastIndexOf(u'.');
    return point < 0 ? QString() : name.mid(point + 1);
}

bool HasContainer(const QWidget& control)
{
    return !control.isWindow() && control.parentWidget();
}

} // namespace

// The constituents

void Attachments::Private::buildDetails()
{
    // In tab order.
    Label3 = new Label(fraDetails);
    imgThumbnail = new QLabel(fraDetails);
    picNoThumbnail = new GroupBox(fraDetails);
    imgFileIcon = new QLabel(picNoThumbnail);
    lblFileType = new Label(picNoThumbnail);
    chkDefault = new CheckBox(fraDetails);
    Label1 = new Label(fraDetails);
    txtDescription = new TextBox(fraDetails);
    Label2 = new Label(fraDetails);
    txtComment = new TextArea(fraDetails);
    shpThumbnailBorder = new BoxShape(fraDetails);

    Label3->SetCaption(QStringLiteral("Preview"));
    chkDefault->SetCaption(QStringLiteral("Cover image"));
    Label1->SetCaption(QStringLiteral("Description"));
    Label2->SetCaption(QStringLiteral("Comment"));
    Label1->setBuddy(txtDescription);
    Label2->setBuddy(txtComment);
    txtDescription->setAccessibleName(Label1->Caption());
    txtComment->setAccessibleName(Label2->Caption());
    imgThumbnail->setMargin(1); // the border stays in sight
    imgThumbnail->setAlignment(Qt::AlignCenter);
    imgThumbnail->hide();
    picNoThumbnail->SetBackColor(SystemColor::WindowBackground);
    picNoThumbnail->hide();
    imgFileIcon->setAlignment(Qt::AlignCenter);
    lblFileType->SetAutoSize(false);
    lblFileType->setAlignment(Qt::AlignCenter);
    lblFileType->SetForeColor(SystemColor::WindowText);

    nameDetails();
    placeDetails();
    m_subscriptions.push_back(txtDescription->Change.subscribe([this] { txtDescription_Change(); }));
    m_subscriptions.push_back(chkDefault->Click.subscribe([this] { chkDefault_Click(); }));
}

void Attachments::Private::nameDetails()
{
    const std::pair<QWidget*, const char*> names[] = {{Label3, "Label3"},
                                                      {imgThumbnail, "imgThumbnail"},
                                                      {shpThumbnailBorder, "shpThumbnailBorder"},
                                                      {picNoThumbnail, "picNoThumbnail"},
                                                      {imgFileIcon, "imgFileIcon"},
                                                      {lblFileType, "lblFileType"},
                                                      {chkDefault, "chkDefault"},
                                                      {Label1, "Label1"},
                                                      {txtDescription, "txtDescription"},
                                                      {Label2, "Label2"},
                                                      {txtComment, "txtComment"}};
    for (const auto& [widget, name] : names)
        widget->setObjectName(QString::fromLatin1(name));
}

void Attachments::Private::placeDetails()
{
    // A text that needs more room than designed gets it.
    const auto place = [](QWidget& widget, Twips left, Twips top, Twips width, Twips height) {
        moveTo(widget, left, top, width, std::max(height, toTwips(widget.sizeHint().height())));
    };
    const Twips coverWidth = std::max<Twips>(1395, toTwips(chkDefault->sizeHint().width()));
    moveTo(*Label3, 180, 180);
    moveTo(*imgThumbnail, 180, 420, 1395, 1845);
    shpThumbnailBorder->setGeometry(imgThumbnail->geometry());
    moveTo(*imgFileIcon, 540, 540, 360, 360);
    place(*lblFileType, 45, 960, 1305, 255);
    place(*chkDefault, 180, 2400, coverWidth, 195);
    moveTo(*Label1, 1755, 180);
    place(*txtDescription, 1755, 420, 4395, 345);
    moveTo(*Label2, 1755, 900);
    moveTo(*txtComment, 1755, 1140, 6075, 1425);
}

QObject* Attachments::CommentsTextBox() const
{
    return d->txtComment;
}

// The row

qint32 Attachments::Private::shownIndex() const
{
    return indexOf(*m_attachments, m_shownRow);
}

tvTableRowPtr Attachments::Private::shownRow() const
{
    const qint32 index = shownIndex();
    return index == 0 ? nullptr : m_attachments->Item(index);
}

void Attachments::Private::ShowDetails()
{
    EnableDetails(m_attachments->Count() >= 1);
    m_shownRow = nullptr; // until both boxes hold the texts of one row
    ++m_detailsTurn;
    if (m_attachments->Count() == 0) {
        lblFilename->SetCaption(QString());
        fitFilename();
        txtDescription->SetText(QString());
        txtComment->SetText(QString());
        chkDefault->SetValue(CheckBox::Unchecked);
        imgThumbnail->setPixmap(QPixmap());
        imgThumbnail->hide();
        picNoThumbnail->hide();
        return;
    }
    const tvTableRowPtr row = m_attachments->Item(m_attachments->Position());
    try {
        fillTexts(row);
    } catch (...) {
        EnableDetails(false); // what would be typed has no row
        throw;
    }
    const bool isImage = modAttachments::IsImageAttachment(*row);
    chkDefault->setVisible(isImage);
    const QPointer<Attachments> self(&q); // a follower of the cover may delete the control
    const quint64 turn = m_detailsTurn;
    chkDefault->SetValue(m_attachments->CurrentIsPrimary() && isImage ? CheckBox::Checked
                                                                      : CheckBox::Unchecked);
    if (self && turn == m_detailsTurn) // and may bind another record
        showThumbnail(*row);
}

void Attachments::Private::fillTexts(const tvTableRowPtr& row)
{
    lblFilename->SetCaption(modAttachments::GetAttachmentDisplayName(*row));
    fitFilename();
    txtDescription->SetText(textOf(*row, Description));
    txtDescription->SetMaxLength(fieldOf(*row, Description)->MaxLength());
    txtComment->SetText(textOf(*row, Notes));
    txtComment->SetMaxLength(fieldOf(*row, Notes)->MaxLength());
    m_shownRow = row;
    ScrollTextToTop(*txtComment);
}

/// As wide as the name is, but never under the count.
void Attachments::Private::fitFilename()
{
    constexpr Twips gap = 180;
    lblFilename->SetAutoSize(true);
    const Twips room = leftOf(*lblCountLabel) - leftOf(*lblFilename) - gap;
    if (widthOf(*lblFilename) <= room)
        return;
    lblFilename->SetAutoSize(false);
    lblFilename->resize(std::max(toPixels(room), 0), lblFilename->height());
}

void Attachments::Private::showThumbnail(tvTableRow& row)
{
    // A host may let the person act while it fetches the file, and the pane then shows something newer.
    const QPointer<Attachments> self(&q);
    const quint64 turn = m_detailsTurn;
    const qreal density = q.devicePixelRatioF(); // sharp on dense screens too
    const auto onScreen = [density](Twips length) { return static_cast<Twips>(length * density); };
    QImage thumbnail = modAttachments::GetAttachmentThumbnail(row, onScreen(widthOf(*imgThumbnail)),
                                                              onScreen(heightOf(*imgThumbnail)));
    if (!self || turn != m_detailsTurn)
        return;
    if (thumbnail.isNull()) {
        ShowFileKind(row);
    } else {
        thumbnail.setDevicePixelRatio(density);
        imgThumbnail->setPixmap(QPixmap::fromImage(thumbnail));
        imgThumbnail->setAccessibleName(QStringLiteral("Preview of ") + lblFilename->Caption());
    }
    ShowPreview(!thumbnail.isNull());
}

void Attachments::Private::ShowPreview(bool visible)
{
    imgThumbnail->setVisible(visible);
    picNoThumbnail->setVisible(!visible);
}

void Attachments::Private::ShowFileKind(tvTableRow& row)
{
    const QString fileName = textOf(row, FileName);
    const QString kind = IconKeyForFile(fileName);
    imgFileIcon->setPixmap(imglIcons.value(kind).pixmap(imgFileIcon->size(), q.devicePixelRatioF()));
    imgFileIcon->setAccessibleName(kind);
    lblFileType->SetCaption(extensionOf(fileName));
}

void Attachments::Private::SaveDetails()
{
    const tvTableRowPtr row = shownRow();
    if (!row)
        return; // after a row that could not be shown the boxes still hold texts of another one
    const QString description = txtDescription->Text(); // a follower of the fields may delete the control
    const QString notes = txtComment->Text();
    fieldOf(*row, Description)->SetValue(description);
    fieldOf(*row, Notes)->SetValue(notes);
}

void Attachments::Private::EnableDetails(bool enabled)
{
    for (QWidget* control : q.findChildren<QWidget*>()) {
        if (HasContainer(*control) && control->parentWidget() == fraDetails)
            control->setEnabled(enabled);
    }
}

void Attachments::Private::ScrollTextToTop(TextArea& box)
{
    box.moveCursor(QTextCursor::Start);
    box.verticalScrollBar()->setValue(box.verticalScrollBar()->minimum());
}

// What the person does

void Attachments::Private::txtDescription_Change()
{
    const tvTableRowPtr row = shownRow();
    if (!row)
        return;
    const tvFieldPtr field = fieldOf(*row, Description);
    if (ToText(field->Value()) == txtDescription->Text())
        return;
    const QPointer<Attachments> self(&q); // a follower may delete the control, or bind another record
    const quint64 turn = m_detailsTurn;
    field->SetValue(txtDescription->Text());
    if (self && turn == m_detailsTurn && shownIndex() != 0)
        UpdateRow(*row);
}

void Attachments::Private::chkDefault_Click()
{
    const qint32 index = shownIndex();
    if (index == 0 ||
        chkDefault->isHidden()) // of a file that is no image, which the host may have made the cover
        return;
    const tvTableCollectionPtr attachments = m_attachments; // a follower of the cover may bind another record
    const bool isCover = index == attachments->PrimaryIndex();
    const bool isTicked = chkDefault->Value() == CheckBox::Checked;
    if (isTicked != isCover) // the person has chosen; the box else follows what is so
        noteChosenCover();
    if (isTicked)
        attachments->SetPrimaryValue(fieldOf(*attachments->Item(index), attachments->KeyColumn())->Value());
    else if (isCover)
        attachments->SetPrimaryValue(Null());
}

} // namespace tavrin
