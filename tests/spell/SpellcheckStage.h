#pragma once

#include "frame/host_contracts/Host.h"
#include "spell/HunspellEngine.h"
#include "spell/SpellingStage.h"
#include "spell/TavrinSpellcheck.h"
#include "spell/modInstanceCounter.h"
#include "testing/FakeDesktop.h"
#include "testing/FakeHost.h"
#include "widgets/boxes/TextArea.h"

#include <QVBoxLayout>

// What the tests of the spell-check control share.

namespace tavrin::test {

using namespace Qt::StringLiterals;

inline const QString LoadText =
    u"There was a problem loading the spell-check dictionary. The file may be missing or "
    u"locked by another application or user."_s;
inline const QString CannotText =
    u"Cannot perform spell-checking because the spell-checker did not load properly. "
    u"Try restarting the application."_s;
inline const QString CompleteText = u"Spell check complete."_s;

/// An engine that notes what it is told, and ends its checks as it is told.
class ScriptedEngine final : public SpellingEngine
{
public:
    explicit ScriptedEngine(FakeHostState& state)
        : m_state(state)
    {
    }

    void SetMainDictionaryPath(const QString& path) override { note(u"main "_s + path); }
    void SetCustomDictionaryPath(const QString& path) override { note(u"custom "_s + path); }
    void SetAllowAdd(bool allow) override { note(u"allow-add "_s + QString::number(allow)); }
    void SetShowDialog(bool show) override { note(u"show-dialog "_s + QString::number(show)); }
    void CheckWindow(QWidget* textBox) override
    {
        note(u"check "_s + textBox->objectName());
        if (during)
            during(*this);
        if (ends)
            CheckEnded.raise(*ends);
    }
    QString CheckedText() const override { return text; }
    qsizetype BadWordStart() const override { return start; }
    qsizetype BadWordLength() const override { return length; }

    std::function<void(ScriptedEngine&)> during;
    std::optional<int> ends = 0;
    QString text;
    qsizetype start = 0;
    qsizetype length = 0;
    /// The operation that raises, as it is noted.
    QString failing;

private:
    void note(const QString& operation)
    {
        m_state.log << operation;
        if (operation == failing)
            throw Error(u"no engine"_s);
    }

    FakeHostState& m_state;
};

/// A form with text boxes and spell-check controls, before a host and boxes that answer by themselves.
struct SpellcheckStage
{
    SpellcheckStage()
        : installation(host)
    {
        modInstanceCounter::InstanceCount = 0;
        host.state().dictionaryFolder = folder.path();
        host.state().permissions << u"_Global/1"_s;
        auto* layout = new QVBoxLayout(&window);
        line = new TextBox(&window);
        line->setObjectName(u"line"_s);
        area = new TextArea(&window);
        area->setObjectName(u"area"_s);
        layout->addWidget(line);
        layout->addWidget(area);
    }
    ~SpellcheckStage() { spellingEngineFactory() = before; }

    /// From now on controls get a scripted engine.
    void script()
    {
        spellingEngineFactory() = [this] {
            auto made = std::make_unique<ScriptedEngine>(host.state());
            engine = made.get();
            return made;
        };
    }
    std::unique_ptr<TavrinSpellcheck> newControl() { return std::make_unique<TavrinSpellcheck>(&window); }
    bool show()
    {
        window.show();
        window.activateWindow();
        return QTest::qWaitForWindowActive(&window);
    }
    QStringList& log() { return host.state().log; }
    qsizetype syncs() { return log().count(u"SyncCustomDictionaryFile"_s); }

    SpellingEngineFactory before = spellingEngineFactory();
    SpellingFolder folder;
    FakeHost host;
    HostInstallation installation;
    FakeMessageBoxes boxes;
    QWidget window;
    TextBox* line;
    TextArea* area;
    ScriptedEngine* engine = nullptr;
};

inline void compareBox(const ShownBox& box, const QString& text, BoxIcon icon, const QString& title,
                       BoxButtons buttons)
{
    QCOMPARE(box.text, text);
    QCOMPARE(box.icon, icon);
    QCOMPARE(box.title, title);
    QCOMPARE(box.buttons, buttons);
}

} // namespace tavrin::test
