#include "attachments/dialogs/frmDownloadFolderPrompt.h"

#include "base/failure/Error.h"
#include "base/failure/Guard.h"
#include "base/values/Twips.h"
#include "frame/modUtils.h"
#include "widgets/boxes/TextBox.h"

#include <QAccessible>
#include <QFile>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tavrin {

namespace {

constexpr int LongestName = 255;
constexpr Twips TextWidth = 5700;
constexpr Twips Margin = 300;
constexpr Twips Gap = 180;
constexpr Twips SmallGap = 60;

QString invalidCharactersText()
{
    return QStringLiteral("Folder name cannot contain any of the following characters: ") +
           modUtils::InvalidNameCharacters();
}

/// How many characters must go from the end of the name until the disk takes it.
qsizetype excessOf(QString name)
{
    qsizetype excess = 0;
    while (QFile::encodeName(name).size() > frmDownloadFolderPrompt::LongestOnDisk) {
        name.chop(name.size() > 1 && name.back().isLowSurrogate() ? 2 : 1);
        ++excess;
    }
    return excess;
}

QString tooLongText(qsizetype excess)
{
    return excess == 1
               ? QStringLiteral("Folder name is too long. Please shorten it by 1 character.")
               : QStringLiteral("Folder name is too long. Please shorten it by %1 characters.").arg(excess);
}

QLabel* newLabel(QWidget* form, const char* name, const QString& text)
{
    auto* label = new QLabel(form);
    label->setObjectName(QString::fromLatin1(name));
    label->setTextFormat(Qt::PlainText); // the characters that are refused look like markup
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    label->setText(text);
    label->setFixedWidth(toPixels(TextWidth));
    return label;
}

QPushButton* newButton(QWidget* form, const char* name, const QString& caption)
{
    auto* button = new QPushButton(caption, form);
    button->setObjectName(QString::fromLatin1(name));
    return button;
}

} // namespace

frmDownloadFolderPrompt::frmDownloadFolderPrompt(QWidget* parent)
    : Form(parent)
    , lblMessage(
          newLabel(this, "lblMessage",
                   QStringLiteral(
                       "All attachments in this record will be downloaded to a new folder in your Downloads "
                       "folder. If desired, you can change the folder name that will be used below.")))
    , lblFolderName(newLabel(this, "lblFolderName", QStringLiteral("Folder Name")))
    , txtFolderName(new TextBox(this))
    , lblError(newLabel(this, "lblError", QString()))
    , cmdDownload(newButton(this, "cmdDownload", QStringLiteral("Download")))
    , cmdCancel(newButton(this, "cmdCancel", QStringLiteral("Cancel")))
{
    setObjectName(QStringLiteral("frmDownloadFolderPrompt"));
    setWindowTitle(QStringLiteral("Download All Attachments"));
    build();
    arrange();
    connectGuarded(cmdDownload, &QPushButton::clicked, this, "cmdDownload_Click",
                   [this] { cmdDownload_Click(); });
    connectGuarded(cmdCancel, &QPushButton::clicked, this, "cmdCancel_Click", [this] { cmdCancel_Click(); });
}

frmDownloadFolderPrompt::~frmDownloadFolderPrompt() = default;

void frmDownloadFolderPrompt::build()
{
    txtFolderName->setObjectName(QStringLiteral("txtFolderName"));
    txtFolderName->setAccessibleName(lblFolderName->text());
    txtFolderName->setMaxLength(LongestName);
    lblFolderName->setBuddy(txtFolderName);
    cmdDownload->setDefault(true);

    // Its room is kept while there is nothing to say: the buttons stay below the mouse.
    QSizePolicy policy = lblError->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    lblError->setSizePolicy(policy);
    lblError->setText(invalidCharactersText()); // the longest
    lblError->setFixedHeight(lblError->heightForWidth(lblError->width()));
    lblError->setText(QString());
    lblError->setVisible(false);
    applyErrorColor();
}

void frmDownloadFolderPrompt::arrange()
{
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(toPixels(SmallGap * 2));
    buttons->addStretch();
    buttons->addWidget(cmdDownload);
    buttons->addWidget(cmdCancel);

    auto* layout = new QVBoxLayout(this);
    const int margin = toPixels(Margin);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(0);
    layout->addWidget(lblMessage);
    layout->addSpacing(toPixels(Gap));
    layout->addWidget(lblFolderName);
    layout->addSpacing(toPixels(SmallGap));
    layout->addWidget(txtFolderName);
    layout->addSpacing(toPixels(SmallGap));
    layout->addWidget(lblError);
    layout->addSpacing(toPixels(Gap));
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    setTabOrder(txtFolderName, cmdDownload);
    setTabOrder(cmdDownload, cmdCancel);
    txtFolderName->setFocus();
}

void frmDownloadFolderPrompt::applyErrorColor()
{
    constexpr QRgb onLight = 0xFFB3261E;
    constexpr QRgb onDark = 0xFFFF9A8F;
    constexpr int middle = 128;
    const bool isDark = palette().color(QPalette::Window).lightness() < middle;
    QPalette colors;
    colors.setColor(QPalette::WindowText, QColor(isDark ? onDark : onLight));
    lblError->setPalette(colors);
}

QString frmDownloadFolderPrompt::FolderName() const
{
    return m_canceled ? QString() : txtFolderName->Text();
}

void frmDownloadFolderPrompt::SetFolderName(const QString& name)
{
    txtFolderName->SetText(name);
}

void frmDownloadFolderPrompt::Validate()
{
    try {
        const QString name = txtFolderName->Text();
        if (name.trimmed().isEmpty())
            throw Error(QStringLiteral("Please enter a folder name."));
        if (!modUtils::IsValidFolderName(name))
            throw Error(invalidCharactersText());
        if (const qsizetype excess = excessOf(name))
            throw Error(tooLongText(excess));
    } catch (...) {
        txtFolderName->setFocus();
        throw;
    }
}

void frmDownloadFolderPrompt::showError(const QString& text)
{
    lblError->setText(text);
    lblError->setVisible(true);
    txtFolderName->setAccessibleDescription(text);
    QAccessibleEvent announcement(lblError, QAccessible::Alert);
    QAccessible::updateAccessibility(&announcement);
}

void frmDownloadFolderPrompt::cmdDownload_Click()
{
    lblError->setVisible(false);
    txtFolderName->setAccessibleDescription(QString());
    try {
        Validate();
        hide();
    } catch (...) {
        showError(Error::fromCurrentException().Description);
    }
}

void frmDownloadFolderPrompt::cmdCancel_Click()
{
    m_canceled = true;
    hide();
}

void frmDownloadFolderPrompt::reject()
{
    guard("cmdCancel_Click", [this] { cmdCancel_Click(); });
}

void frmDownloadFolderPrompt::showEvent(QShowEvent* event)
{
    Form::showEvent(event);
    if (!event->spontaneous())
        txtFolderName->selectAll(); // to be typed over, or kept with Enter
}

void frmDownloadFolderPrompt::changeEvent(QEvent* event)
{
    Form::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyErrorColor();
}

} // namespace tavrin
