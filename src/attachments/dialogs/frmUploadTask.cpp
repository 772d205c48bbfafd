#include "attachments/dialogs/frmUploadTask.h"

#include "attachments/dialogs/FileUpload.h"
#include "base/failure/Guard.h"
#include "widgets/drawing/Placement.h"
#include "widgets/labels/WrapLabel.h"
#include "widgets/panels/FlowPanel.h"
#include "widgets/panels/GroupBox.h"
#include "widgets/panels/ScrollPanel.h"

#include <QApplication>
#include <QPointer>
#include <QPushButton>
#include <QScreen>

#include <algorithm>

namespace tavrin {

namespace {

constexpr Twips FormWidth = 4635;
constexpr Twips ScrollPanelHeight = 5400;
constexpr Twips RetryHeight = 1395;
constexpr Twips Margin = 120;
constexpr Twips ButtonTop = 900;
constexpr Twips ButtonWidth = 1215;
constexpr Twips ButtonHeight = 375;
constexpr Twips BesideWords = 180; // from a button's word to its side
constexpr Twips AboveWords = 45;
constexpr Twips BelowLine = 240;
constexpr int ShareOfScreen = 4;

Twips bottomOf(const QWidget& widget)
{
    return toTwips(widget.y() + widget.height());
}

} // namespace

frmUploadTask::frmUploadTask(QWidget* parent)
    : Form(parent)
    , scrollPanel(new ScrollPanel(this))
    , flowPanel(new FlowPanel)
    , m_template(nullptr)
    , picRetry(new GroupBox(this))
    , lblRetry(new WrapLabel(picRetry))
    , cmdRetry(new QPushButton(picRetry))
    , cmdSkip(new QPushButton(picRetry))
{
    setObjectName(QStringLiteral("frmUploadTask"));
    setWindowTitle(QStringLiteral("Uploading attachments..."));
    build();
    m_template = new FileUpload(flowPanel, {QStringLiteral("Upload")});
    m_template->hide();
    connectGuarded(cmdRetry, &QPushButton::clicked, this, "cmdRetry_Click", [this] { cmdRetry_Click(); });
    connectGuarded(cmdSkip, &QPushButton::clicked, this, "cmdSkip_Click", [this] { cmdSkip_Click(); });
    setFormHeight(0); // nothing but the frame until there are lines
}

frmUploadTask::~frmUploadTask() = default;

void frmUploadTask::build()
{
    scrollPanel->setObjectName(QStringLiteral("ScrollPanel"));
    scrollPanel->setAccessibleName(QStringLiteral("Files"));
    scrollPanel->viewport()->setBackgroundRole(QPalette::Base);
    scrollPanel->viewport()->setAutoFillBackground(true);
    moveTo(*scrollPanel, 0, 0, FormWidth, ScrollPanelHeight);
    flowPanel->setObjectName(QStringLiteral("FlowPanel"));
    flowPanel->resize(toPixels(FormWidth), 0);
    scrollPanel->SetContent(flowPanel);
    flowPanel->setAutoFillBackground(false); // Qt has set it: the colour is the viewport's

    const QString question = QStringLiteral("Not all files were uploaded. What do you want to do with the "
                                            "files that could not be uploaded?");
    picRetry->setObjectName(QStringLiteral("picRetry"));
    picRetry->setAccessibleName(question);
    picRetry->setEnabled(false); // covered, and out of the keys' reach too
    lblRetry->SetCaption(question);
    cmdRetry->setObjectName(QStringLiteral("cmdRetry"));
    cmdRetry->setText(QStringLiteral("Retry"));
    cmdRetry->setDefault(true);
    cmdSkip->setObjectName(QStringLiteral("cmdSkip"));
    cmdSkip->setText(QStringLiteral("Skip"));
    layOutStrip();

    setTabOrder(cmdRetry, cmdSkip);
    setTabOrder(cmdSkip, scrollPanel);
    scrollPanel->raise();
}

/// As designed, and larger where the font needs more.
void frmUploadTask::layOutStrip()
{
    moveTo(*lblRetry, Margin, Margin, FormWidth - 2 * Margin, ButtonTop - Margin); // its height is its own
    const QFontMetrics font = cmdRetry->fontMetrics();
    const int words =
        std::max(font.horizontalAdvance(cmdRetry->text()), font.horizontalAdvance(cmdSkip->text()));
    const Twips width = std::max(ButtonWidth, toTwips(words) + 2 * BesideWords);
    const Twips height = std::max(ButtonHeight, toTwips(font.height()) + 2 * AboveWords);
    const Twips below = bottomOf(*lblRetry);
    const Twips top = below > ButtonTop ? below + Margin : ButtonTop;
    const Twips skipLeft = FormWidth - Margin - width;
    moveTo(*cmdSkip, skipLeft, top, width, height);
    moveTo(*cmdRetry, skipLeft - Margin - width, top, width, height);
    picRetry->resize(toPixels(FormWidth), toPixels(std::max(RetryHeight, top + height + Margin)));
}

void frmUploadTask::Start(QWidget* Owner)
{
    if (m_files.isEmpty())
        return;
    SetBusy(!m_activated); // already, so that no early Escape drops the files
    ShowModal(Owner);
}

void frmUploadTask::Form_Activate()
{
    if (m_activated)
        return;
    m_activated = true;
    placeOverOwner();
    const QPointer<frmUploadTask> self(this);
    QApplication::processEvents();
    if (self)
        work();
}

/// One pass. What stops it as a whole closes the dialog, so that the person is not left with a dead one; the
/// caller still gets what has been uploaded.
void frmUploadTask::work()
{
    const QPointer<frmUploadTask> self(this);
    try {
        UploadFiles();
    } catch (...) {
        if (self) {
            endWork();
            hide();
        }
        throw;
    }
}

void frmUploadTask::UploadFiles()
{
    SetBusy(true);
    picRetry->setEnabled(false);
    setCursor(Qt::BusyCursor);
    unloadLines();
    const Twips limit = std::min(toTwips(screen()->size().height()) / ShareOfScreen, scrollPanel->Height());
    scrollPanel->SetHeight(limit);

    const QPointer<frmUploadTask> self(this);
    const QStringList files = m_files;
    for (const QString& path : files) {
        FileUpload& line = addLine(path);
        // A window of Qt is measured without its frame: its height is its inner one.
        setFormHeight(std::min(limit, heightOf(*flowPanel)));
        scrollPanel->SetHeight(ScaleHeight());
        scrollPanel->RefreshView();
        if (bottomOf(line) > scrollPanel->Height())
            scrollPanel->ScrollTo(bottomOf(line) - scrollPanel->Height());
        QApplication::processEvents();
        if (!self)
            return;
        line.Start();
        if (!self)
            return;
    }
    endWork();

    m_files.clear();
    Twips rowHeight = 0;
    for (const Line& line : m_lines) {
        if (line.upload->Failed()) {
            m_files.append(line.upload->Filename());
            rowHeight = std::max(rowHeight, line.upload->Height());
        } else {
            line.upload->hide();
        }
    }
    if (m_files.isEmpty())
        hide();
    else
        showRetry(rowHeight);
}

void frmUploadTask::showRetry(Twips rowHeight)
{
    layOutStrip(); // the font may have changed
    scrollPanel->SetHeight(std::min(rowHeight + BelowLine, tallestRetryPanel()));
    setFormHeight(scrollPanel->Height() + heightOf(*picRetry));
    arrange();
    scrollPanel->ScrollTo(0);
    cmdRetry->setFocus();
}

void frmUploadTask::endWork()
{
    unsetCursor();
    SetBusy(false);
    picRetry->setEnabled(true);
}

FileUpload& frmUploadTask::addLine(const QString& path)
{
    auto* line = new FileUpload(flowPanel, {QStringLiteral("Upload")});
    m_lines.push_back({line, line->UploadComplete.subscribe([this](const UploadedFile& uploaded) {
                           m_uploaded.append(uploaded);
                       }),
                       line->UploadFailed.subscribe([this](const QString&) { arrange(); })});
    const auto above = static_cast<Twips>(m_lines.size() - 1);
    moveTo(*line, leftOf(*m_template), m_template->Height() * above + toTwips(m_template->y()));
    line->SetFile(path);
    line->show();
    arrange();
    return *line;
}

void frmUploadTask::unloadLines()
{
    for (const Line& line : m_lines)
        delete line.upload;
    m_lines.clear();
}

void frmUploadTask::arrange()
{
    flowPanel->Arrange();
    scrollPanel->RefreshView();
}

void frmUploadTask::setFormHeight(Twips inner)
{
    setFixedSize(toPixels(FormWidth), toPixels(inner));
    keepOnScreen();
}

/// A window that comes up without height is not placed by itself.
void frmUploadTask::placeOverOwner()
{
    if (!parentWidget())
        return;
    const QRect owner = parentWidget()->frameGeometry();
    const QRect room = screen()->availableGeometry();
    const int left = std::min(owner.center().x() - width() / 2, room.right() + 1 - frameGeometry().width());
    move(std::max(left, room.left()), std::max(owner.top() + owner.height() / 3, room.top()));
}

/// The dialog came up without a line and grows downwards.
void frmUploadTask::keepOnScreen()
{
    const int beyond = frameGeometry().bottom() - screen()->availableGeometry().bottom();
    if (isVisible() && beyond > 0)
        move(x(), std::max(screen()->availableGeometry().top(), y() - beyond));
}

/// However long a reason is, the question below it stays on the screen.
Twips frmUploadTask::tallestRetryPanel() const
{
    const int frame = frameGeometry().height() - height();
    return toTwips(screen()->availableGeometry().height() - frame - picRetry->height());
}

void frmUploadTask::Form_Resize()
{
    moveTo(*picRetry, 0, ScaleHeight() - heightOf(*picRetry));
}

void frmUploadTask::cmdRetry_Click()
{
    work();
}

void frmUploadTask::cmdSkip_Click()
{
    m_files.clear();
    hide();
}

void frmUploadTask::reject()
{
    if (!isBusy())
        cmdSkip_Click();
}

} // namespace tavrin
