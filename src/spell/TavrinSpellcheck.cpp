#include "spell/TavrinSpellcheck.h"

#include "base/files/FileWriter.h"
#include "base/values/Twips.h"
#include "frame/control_frame/FailurePolicy.h"
#include "frame/control_frame/Trace.h"
#include "frame/desktop/Desktop.h"
#include "frame/host_contracts/Host.h"
#include "frame/host_contracts/RemovableWord.h"
#include "spell/LateTextBox.h"
#include "spell/SpellcheckIcon.h"
#include "spell/SpellingEngine.h"
#include "spell/modInstanceCounter.h"

#include <QDir>
#include <QFileInfo>
#include <QPaintEvent>
#include <QPainter>
#include <QPointer>

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace tavrin {

namespace {

constexpr int Side = 32;         // pixels
constexpr int NoSupportFile = 5; // the host's code
constexpr int RightToAddWords = 1;

const QString ErrorTitle = QStringLiteral("Error");
const QString MainDictionary = QStringLiteral("vssp_ae.dct");
const QString CustomDictionaryFile = QStringLiteral("custom.dic");

/// A host that names no folder must not have its files looked for in the folder that happens to be the
/// working one.
QString pathOf(const QString& folder, const QString& name)
{
    if (folder.isEmpty())
        throw Error(QStringLiteral("The host names no folder for the spelling dictionaries"));
    return QDir::toNativeSeparators(QDir(folder).filePath(name));
}

/// Tells the failure that is being handled; whatever the person answers has no effect.
void showWithCancel(QWidget* parent, const QString& prefix)
{
    const Error error = Error::fromCurrentException();
    desktop().messageBoxes->show(parent, prefix + error.Description, BoxIcon::Critical, ErrorTitle,
                                 BoxButtons::OkCancel);
}

} // namespace

/// The engine, and what the control knows of the check that runs.
class TavrinSpellcheck::Private
{
public:
    explicit Private(TavrinSpellcheck& control);

    bool checkText(QObject* txt);
    bool initialize();
    void loadDictionaries();
    void takeDictionaries();
    void vsSpellCheck_CheckEnded(int abandoned);
    void vsSpellCheck_UserAction(int code);
    void addWord();
    void takeBackWord(const QString& word);

    TavrinSpellcheck& q;

    std::unique_ptr<SpellingEngine> vsSpellCheck;
    Subscription m_checkEnded;
    Subscription m_userAction;
    Subscription m_wordTakenBack;
    bool m_initialized = false;
    bool m_loadFailed = false;
    bool m_completed = false;
    struct AddedWord
    {
        QString word;
        std::unique_ptr<tvCustomDictionary> dictionary; // that added it
    };
    std::vector<AddedWord> m_addedWords; // of the check that runs
};

TavrinSpellcheck::Private::Private(TavrinSpellcheck& control)
    : q(control)
    , vsSpellCheck(spellingEngineFactory()())
{
    m_checkEnded =
        vsSpellCheck->CheckEnded.subscribe([this](int& abandoned) { vsSpellCheck_CheckEnded(abandoned); });
    m_userAction = vsSpellCheck->UserAction.subscribe([this](int& code) { vsSpellCheck_UserAction(code); });
    m_wordTakenBack =
        vsSpellCheck->WordTakenBack.subscribe([this](const QString& word) { takeBackWord(word); });
}

TavrinSpellcheck::TavrinSpellcheck(QWidget* parent, const ControlSite& site)
    : UserControl(parent, site)
    , d(std::make_unique<Private>(*this))
{
    setFixedSize(Side, Side); // a hidden control hears of no resize
    begin();
}

TavrinSpellcheck::~TavrinSpellcheck() = default;

QSize TavrinSpellcheck::sizeHint() const
{
    return {Side, Side};
}

void TavrinSpellcheck::CheckSpelling(QObject* txt)
{
    const QPointer<TavrinSpellcheck> self(this); // the form may be closed meanwhile
    CheckSpellingWithResult(txt);
    desktop().messageBoxes->tell(self, QStringLiteral("Spell check complete."), BoxIcon::Information,
                                 QStringLiteral("Spell Check"));
}

bool TavrinSpellcheck::CheckSpellingWithResult(QObject* txt)
{
    bool completed = false;
    reportInBox(this, QStringLiteral("Unexpected error occurred during spell-check: "), ErrorTitle,
                [&] { completed = d->checkText(txt); });
    return completed;
}

bool TavrinSpellcheck::Private::checkText(QObject* txt)
{
    const auto isGone = [self = QPointer<TavrinSpellcheck>(&q)] { return self.isNull(); };
    const LateTextBox box(txt);
    if (!m_initialized && !initialize())
        return false;
    if (m_loadFailed) {
        desktop().messageBoxes->tell(
            &q,
            QStringLiteral("Cannot perform spell-checking because the spell-checker did not load properly. "
                           "Try restarting the application."),
            BoxIcon::Critical, ErrorTitle);
        return false;
    }
    continueOnError([&] { box.SetFocus(); }); // a field that loses the focus may close the form
    if (isGone())
        return false;
    const bool mayAdd = currentHost().session().HasPermission(QStringLiteral("_Global"), RightToAddWords);
    if (isGone())
        return false;
    vsSpellCheck->SetAllowAdd(mayAdd);
    vsSpellCheck->SetShowDialog(true);
    vsSpellCheck->CheckWindow(box.hWnd());
    if (isGone())
        return false;
    // A box that died during its check has no selection to be reset.
    if (txt && !box.isAlive())
        return m_completed;
    box.SetSelStart(0);
    box.SetSelLength(0);
    return m_completed;
}

/// False when the control has died meanwhile: the host works, and boxes are open.
bool TavrinSpellcheck::Private::initialize()
{
    const QPointer<TavrinSpellcheck> self(&q);
    ++modInstanceCounter::InstanceCount;
    if (modInstanceCounter::InstanceCount == 1) {
        TAVRIN_TRACE_LINE(QStringLiteral("Syncing custom dictionary (first instance)"));
        q.SyncCustomDictionary();
    } else {
        TAVRIN_TRACE_LINE(QStringLiteral("Not syncing custom dictionary (instance #%1)")
                              .arg(modInstanceCounter::InstanceCount));
    }
    if (!self)
        return false;
    loadDictionaries();
    // cppcheck-suppress identicalConditionAfterEarlyExit; the host may have deleted the control
    if (!self)
        return false;
    m_initialized = true;
    return true;
}

void TavrinSpellcheck::Private::loadDictionaries()
{
    const QPointer<TavrinSpellcheck> self(&q);
    // The file on the disk serves when there is no newer one to be had.
    continueOnError([] { currentHost().environment().RefreshSupportFile(MainDictionary); });
    try {
        takeDictionaries();
    } catch (...) {
        desktop().messageBoxes->tell(
            self,
            Error::fromCurrentException().Description +
                QStringLiteral("\r\n\r\nThere was a problem loading the spell-check dictionary. The file may "
                               "be missing or locked by another application or user."),
            BoxIcon::Critical, ErrorTitle);
        if (self)
            m_loadFailed = true;
    }
}

void TavrinSpellcheck::Private::takeDictionaries()
{
    const QPointer<TavrinSpellcheck> self(&q);
    Environment& environment = currentHost().environment();
    const QString folder = environment.GetDictionaryFolder();
    if (!self)
        return;
    const QString main = pathOf(folder, MainDictionary);
    if (!QFileInfo(main).isFile())
        throw Error(QStringLiteral("Could not find spell-checking dictionary file '%1'").arg(main),
                    environment.GetErrorNumber(NoSupportFile));
    vsSpellCheck->SetMainDictionaryPath(main);
    const QString custom = pathOf(folder, CustomDictionaryFile);
    if (!QFileInfo(custom).isFile())
        replaceFile(custom, QByteArray());
    vsSpellCheck->SetCustomDictionaryPath(custom);
}

void TavrinSpellcheck::SyncCustomDictionary()
{
    const QPointer<TavrinSpellcheck> self(this);
    try {
        currentHost().hostServices().SyncCustomDictionaryFile();
        if (!self)
            return;
        d->vsSpellCheck->SetCustomDictionaryPath(QString());
        const QString folder = currentHost().environment().GetDictionaryFolder();
        if (self)
            d->vsSpellCheck->SetCustomDictionaryPath(pathOf(folder, CustomDictionaryFile));
    } catch (...) {
        showWithCancel(self,
                       QStringLiteral("Error synchronizing custom spell-check dictionary from database: "));
    }
}

void TavrinSpellcheck::Private::vsSpellCheck_CheckEnded(int abandoned)
{
    m_completed = abandoned == 0;
    m_addedWords.clear(); // with the dialog goes the way to take them back
}

void TavrinSpellcheck::Private::vsSpellCheck_UserAction(int code)
{
    if (code == SpellingEngine::WordAdded)
        addWord();
}

void TavrinSpellcheck::Private::addWord()
{
    const QPointer<TavrinSpellcheck> self(&q);
    try {
        const QString word =
            vsSpellCheck->CheckedText().mid(vsSpellCheck->BadWordStart(), vsSpellCheck->BadWordLength());
        auto dictionary = currentHost().newCustomDictionary();
        dictionary->AddWord(word);
        if (self)
            m_addedWords.push_back({word, std::move(dictionary)});
    } catch (...) {
        showWithCancel(self, QStringLiteral("Error adding word to database: "));
    }
}

void TavrinSpellcheck::Private::takeBackWord(const QString& word)
{
    const auto added = std::find_if(m_addedWords.rbegin(), m_addedWords.rend(),
                                    [&](const AddedWord& one) { return one.word == word; });
    if (added == m_addedWords.rend())
        return; // the database never had it
    const QPointer<TavrinSpellcheck> self(&q);
    const auto dictionary = std::move(added->dictionary);
    m_addedWords.erase(std::next(added).base());
    try {
        if (auto* removable = dynamic_cast<RemovableWord*>(dictionary.get()))
            removable->TakeBack();
    } catch (...) {
        showWithCancel(self, QStringLiteral("Error removing word from database: "));
    }
}

void TavrinSpellcheck::UserControl_Resize()
{
    continueOnError([this] { Size(toTwips(Side), toTwips(Side)); });
}

void TavrinSpellcheck::paintEvent(QPaintEvent*)
{
    if (ambient().UserMode())
        return; // on a running form there is nothing to see
    QPainter painter(this);
    paintSpellcheckIcon(painter, palette());
}

} // namespace tavrin
