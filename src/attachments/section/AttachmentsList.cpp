#include "attachments/files/FileKindIcons.h"
#include "attachments/files/modAttachments.h"
#include "attachments/section/AttachmentsPrivate.h"
#include "base/failure/Error.h"
#include "base/values/Variant.h"
#include "frame/control_frame/FailurePolicy.h"
#include "frame/desktop/Desktop.h"
#include "frame/host_contracts/Host.h"
#include "widgets/drawing/Placement.h"
#include "widgets/labels/Label.h"
#include "widgets/lists/ListView.h"

#include <QDateTime>
#include <QFontMetrics>
#include <QStyle>

#include <exception>

namespace tavrin {

namespace {

const QString SeqNo = QStringLiteral("SeqNo");
const QString FilenameColumn = QStringLiteral("Filename");
const QString FileName = QStringLiteral("FileName"); // the field, and the cell below that column
const QString Description = QStringLiteral("Description");
const QString UserId = QStringLiteral("UserId");
const QString UserDate = QStringLiteral("UserDate");

const QString Updated = QStringLiteral("UPDATED");
constexpr int CellSize = 32; // pixels

/// Key of the row's line.
QString lineKey(tvTableRow& row)
{
    return QString::number(ToLong(fieldOf(row, SeqNo)->Value()));
}

QString textOf(tvTableRow& row, const QString& field)
{
    return ToText(fieldOf(row, field)->Value());
}

/// "" without a date; a text that is no date as it stands.
QString shownDate(const QVariant& value)
{
    const QString format = currentHost().hostServices().DateDisplayFormat();
    const QDateTime date = IsNull(value) ? QDateTime() : value.toDateTime();
    return date.isValid() ? date.toString(format) : ToText(value);
}

} // namespace

// Setting up

void Attachments::Private::SetupList()
{
    CopyImageList();
    lvwFiles->setIconSize(QSize(CellSize, CellSize));
    lvwFiles->SetRowHeight(CellSize);
    lvwFiles->SetAllowColumnReorder(false);
    lvwFiles->SetHideSelection(true);
    lvwFiles->SetBorder(false);
    lvwFiles->SetMouseDownFirst(true);

    const QFontMetrics metrics(q.font());
    const Twips W = toTwips(metrics.horizontalAdvance(u'W'));
    lvwFiles->AddColumnHeader(SeqNo, QString(), 0);
    lvwFiles->AddColumnHeader(FilenameColumn, QStringLiteral("Filename"), 15 * W);
    lvwFiles->AddColumnHeader(Description, QStringLiteral("Description"), 20 * W);
    lvwFiles->AddColumnHeader(UserId, QStringLiteral("Uploaded By"), 8 * W);
    lvwFiles->AddColumnHeader(UserDate, QStringLiteral("Upload Date"), 5 * W);

    // The last column takes what is left; a date stays readable also when that is little.
    const int date = std::max(metrics.horizontalAdvance(QStringLiteral("00/00/0000")),
                              metrics.horizontalAdvance(QStringLiteral("Upload Date"))) +
                     metrics.averageCharWidth() * 2;
    lvwFiles->SetMinimumColumnWidth(std::max(5 * W, toTwips(date)));
    const int edge = q.style()->pixelMetric(QStyle::PM_DefaultFrameWidth);
    m_listWidth = toPixels((15 + 20 + 8) * W) + std::max(toPixels(5 * W), date) + 2 * edge +
                  q.style()->pixelMetric(QStyle::PM_ScrollBarExtent);
}

void Attachments::Private::CopyImageList()
{
    ImageList.clear();
    for (auto icon = imglIcons.cbegin(); icon != imglIcons.cend(); ++icon)
        ImageList.insert(icon.key(), FileKindIcons::padded(icon.value(), CellSize, CellSize));
}

QString Attachments::Private::IconKeyForFile(const QString& name)
{
    return QString::fromLatin1(currentHost().images().IsImageFile(name) ? FileKindIcons::Image
                                                                        : FileKindIcons::File);
}

// The lines

void Attachments::Private::RefreshList()
{
    for (int index = 0; index < lvwFiles->Count(); ++index)
        lvwFiles->SetTag(lvwFiles->Key(index), QString());
    QStringList keys;
    std::exception_ptr failure; // of a cell; the lines come in step with the rows all the same
    const auto update = [&](tvTableRow& row) {
        try {
            UpdateRow(row);
        } catch (...) {
            failure = std::current_exception();
            lvwFiles->SetTag(lineKey(row), Updated);
        }
    };
    for (const tvTableRowPtr& row : *m_attachments) {
        update(*row);
        keys << lineKey(*row);
    }
    QStringList gone;
    for (int index = 0; index < lvwFiles->Count(); ++index) {
        const QString key = lvwFiles->Key(index);
        if (lvwFiles->Tag(key).isEmpty())
            gone << key;
    }
    lvwFiles->Remove(gone);
    if (!hasLinesInOrder(keys)) {
        lvwFiles->Clear();
        for (const tvTableRowPtr& row : *m_attachments)
            update(*row);
    }
    lvwFiles->viewport()->update();
    ResizeLastColumn();
    UpdateCount();
    if (failure)
        std::rethrow_exception(failure);
}

/// Lines are reused from record to record, but the line at an index must be that of the row at this index:
/// another file would be opened or removed otherwise.
bool Attachments::Private::hasLinesInOrder(const QStringList& keys) const
{
    if (keys.size() != lvwFiles->Count())
        return true; // rows that share a line cannot be told apart anyway
    for (int index = 0; index < lvwFiles->Count(); ++index) {
        if (lvwFiles->Key(index) != keys.at(index))
            return false;
    }
    return true;
}

void Attachments::Private::UpdateRow(tvTableRow& row)
{
    const QString line = lineKey(row);
    if (!lvwFiles->Contains(line))
        lvwFiles->AddItem(line, line);
    const QString kind = IconKeyForFile(textOf(row, FileName));
    const QString name = modAttachments::GetAttachmentDisplayName(row);
    lvwFiles->SetSubItemIcon(line, FileName, ImageList.value(kind), kind);
    lvwFiles->SetSubItem(line, FileName, name);
    lvwFiles->SetSubItemToolTip(line, FileName, name);
    const QString description = textOf(row, Description);
    lvwFiles->SetSubItem(line, Description, description);
    lvwFiles->SetSubItemToolTip(line, Description, description);
    lvwFiles->SetSubItem(line, UserId, textOf(row, UserId));
    lvwFiles->SetSubItem(line, UserDate, shownDate(fieldOf(row, UserDate)->Value()));
    lvwFiles->SetTag(line, Updated);
}

void Attachments::Private::SelectRow(qint32 index)
{
    lvwFiles->SetSelectedItem(std::nullopt);
    if (m_attachments->Count() != 0) {
        if (index != m_attachments->Position())
            m_attachments->SetPosition(ToInteger(index));
        const QString line = lineKey(*m_attachments->Item(index));
        if (lvwFiles->Contains(line)) {
            lvwFiles->EnsureVisible(line);
            lvwFiles->SetDropHighlight(line);
            lvwFiles->SetSelectedItem(line);
        }
    }
    ShowDetails();
}

qint32 Attachments::Private::rowOfLine(const QString& line)
{
    const auto isOf = [&](qint32 index) { return lineKey(*m_attachments->Item(index)) == line; };
    const qint32 count = m_attachments->Count();
    const qint32 likely = lvwFiles->IndexOf(line) + 1;
    if (likely <= count && isOf(likely))
        return likely;
    for (qint32 index = 1; index <= count; ++index) { // the host has added or removed rows
        if (isOf(index))
            return index;
    }
    throw Error(QStringLiteral("The attachment has been removed from the record."));
}

void Attachments::Private::lvwFiles_ItemClick(const QString& line)
{
    const QPointer<Attachments> self(&q);
    const bool done = reportInBox(&q, QStringLiteral("Unexpected error handling item click: "),
                                  QStringLiteral("Attachments"), [&] { takeLine(rowOfLine(line)); });
    // The line that is selected is the one whose details show, so that nobody types into another row.
    if (!done && self)
        lvwFiles->SetSelectedItem(lvwFiles->DropHighlight());
}

void Attachments::Private::takeLine(qint32 index)
{
    const tvTableCollectionPtr attachments = m_attachments;
    if (index == shownIndex()) {
        if (index != attachments->Position()) // the host has moved it
            attachments->SetPosition(ToInteger(index));
        return;
    }
    const QPointer<Attachments> self(&q); // a follower of the fields may delete the control
    SaveDetails();
    if (!self || attachments != m_attachments) // or bind another record
        return;
    if (const tvTableRowPtr left = shownRow())
        UpdateRow(*left);
    attachments->SetPosition(ToInteger(index));
    SelectRow(index);
}

// Layout

void Attachments::Private::ResizeLastColumn()
{
    // Continue on error.
    continueOnError([this] {
        const int edge = q.style()->pixelMetric(QStyle::PM_DefaultFrameWidth);
        Twips available = widthOf(*lvwFiles) - lvwFiles->ColumnLeft(UserDate) - 2 * toTwips(edge);
        if (lvwFiles->HasVerticalScrollBar())
            available -= toTwips(q.style()->pixelMetric(QStyle::PM_ScrollBarExtent));
        if (available >= 0) // a column has no negative width
            lvwFiles->SetColumnWidth(UserDate, available);
    });
}

void Attachments::Private::UpdateCount()
{
    lblCount->SetCaption(QString::number(m_attachments->Count()));
    LayoutCountLabels();
}

void Attachments::Private::LayoutCountLabels()
{
    // Continue on error.
    constexpr Twips gap = 60;
    continueOnError([this] { lblCount->move(toPixels(q.ScaleWidth() - widthOf(*lblCount)), lblCount->y()); },
                    [this] {
                        const Twips left = leftOf(*lblCount) - widthOf(*lblCountLabel) - gap;
                        lblCountLabel->move(toPixels(left), lblCountLabel->y());
                    },
                    [this] { fitFilename(); });
}

} // namespace tavrin
