#pragma once

#include "frame/host_contracts/Host.h"
#include "spell/SpellingStage.h"
#include "spell/TavrinSpellcheck.h"
#include "spell/modInstanceCounter.h"
#include "testing/FakeDesktop.h"
#include "testing/FakeHost.h"

#include <QVBoxLayout>

#include <utility>

// A form with a spell-check control, for the tests of what happens while a check runs.

namespace tavrin::test {

/// Boxes that do something while the first of them is open.
class ActingBoxes
{
public:
    ActingBoxes()
        : m_script(std::make_shared<Script>())
        , m_before(std::exchange(desktop().messageBoxes, m_script))
    {
    }
    ActingBoxes(const ActingBoxes&) = delete;
    ActingBoxes& operator=(const ActingBoxes&) = delete;
    ~ActingBoxes() { desktop().messageBoxes = m_before; }

    void during(std::function<void()> act) { m_script->act = std::move(act); }
    const QStringList& texts() const { return m_script->texts; }

private:
    struct Script final : MessageBoxes
    {
        BoxAnswer show(QWidget*, const QString& text, BoxIcon, const QString&, BoxButtons) override
        {
            texts << text;
            if (act)
                std::exchange(act, nullptr)();
            return BoxAnswer::Ok;
        }

        QStringList texts;
        std::function<void()> act;
    };

    std::shared_ptr<Script> m_script;
    std::shared_ptr<MessageBoxes> m_before;
};

/// Does something when it gets the focus.
class ActingLine final : public QLineEdit
{
public:
    using QLineEdit::QLineEdit;
    std::function<void()> act;

protected:
    void focusInEvent(QFocusEvent* event) override
    {
        QLineEdit::focusInEvent(event);
        if (act)
            std::exchange(act, nullptr)();
    }
};

/// A form that can be closed with all that stands on it, before a host.
struct FormStage
{
    FormStage()
        : installation(host)
    {
        modInstanceCounter::InstanceCount = 0;
        host.state().dictionaryFolder = folder.path();
        host.state().permissions << QStringLiteral("_Global/1");
        auto* layout = new QVBoxLayout(form);
        layout->addWidget(line = new ActingLine(form));
        layout->addWidget(other = new QLineEdit(form));
        control = new TavrinSpellcheck(form);
        line->setText(QStringLiteral("Qxzville teh"));
    }
    ~FormStage() { delete form; }
    FormStage(const FormStage&) = delete;
    FormStage& operator=(const FormStage&) = delete;

    bool show() const
    {
        form->show();
        form->activateWindow();
        return QTest::qWaitForWindowActive(form);
    }
    /// What a program may do at any time: it closes the form, or takes the control alone away.
    void end(bool wholeForm)
    {
        if (wholeForm)
            delete form;
        else
            delete control;
    }
    bool check() const { return control->CheckSpellingWithResult(line); }
    const QStringList& addedWords() { return host.state().addedWords; }
    QStringList& log() { return host.state().log; }

    SpellingFolder folder;
    FakeHost host;
    HostInstallation installation;
    ActingBoxes boxes;
    QPointer<QWidget> form = new QWidget;
    ActingLine* line;
    QLineEdit* other;
    QPointer<TavrinSpellcheck> control;
};

/// A row for each end that `FormStage::end` gives.
inline void addEnds()
{
    QTest::addColumn<bool>("wholeForm");
    QTest::newRow("form") << true;
    QTest::newRow("control alone") << false;
}

} // namespace tavrin::test
