#pragma once

#include "spell/HunspellSpeller.h"
#include "spell/SpellTestSupport.h"
#include "spell/frmSpelling.h"
#include "support/TestCase.h"
#include "widgets/boxes/TextBox.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextEdit>
#include <QTimer>

#include <functional>

// What the tests of the spelling dialog share.

namespace tavrin::test {

/// A workstation's folder with the real dictionary and an empty custom one.
class SpellingFolder
{
public:
    SpellingFolder()
    {
        putFile(main(), supportFile());
        putFile(custom(), {});
    }

    QString path() const { return m_folder.path(); }
    QString main() const { return m_folder.filePath(QStringLiteral("vssp_ae.dct")); }
    QString custom() const { return m_folder.filePath(QStringLiteral("custom.dic")); }
    QByteArray customWords() const { return bytesOf(custom()); }

private:
    QTemporaryDir m_folder;
};

/// The real dictionary with the folder's custom one. Loading takes its time, so all tests of a program share
/// the speller.
inline std::shared_ptr<HunspellSpeller> spellerOf(const SpellingFolder& folder)
{
    static const auto speller = [&] {
        auto loaded = std::make_shared<HunspellSpeller>();
        loaded->setMainDictionary(folder.main());
        return loaded;
    }();
    speller->setCustomDictionary(folder.custom());
    return speller;
}

/// The parts of an open spelling dialog.
class Dialog
{
public:
    explicit Dialog(frmSpelling& form)
        : form(form)
    {
    }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const
    {
        QTest::keyClick(form.windowHandle(), key, modifiers);
    }
    void click(const char* name) const { QTest::mouseClick(button(name), Qt::LeftButton); }
    template <typename Part>
    Part* part(const char* name) const
    {
        return form.findChild<Part*>(QString::fromLatin1(name));
    }
    QPushButton* button(const char* name) const { return part<QPushButton>(name); }
    TextBox* changeTo() const { return part<TextBox>("txtChangeTo"); }
    QListWidget* list() const { return part<QListWidget>("lstSuggestions"); }
    QString message() const { return part<QLabel>("lblMessage")->text(); }
    QString sentence() const { return part<QTextEdit>("txtSentence")->toPlainText(); }
    /// What is underlined in the sentence.
    QString marked() const
    {
        QString text;
        const QTextBlock block = part<QTextEdit>("txtSentence")->document()->begin();
        for (auto piece = block.begin(); !piece.atEnd(); ++piece) {
            if (piece.fragment().charFormat().fontUnderline())
                text += piece.fragment().text();
        }
        return text;
    }

    frmSpelling& form;
};

/// A person before the modal spelling dialog: takes each step once the dialog is the active window. A step
/// that returns false is tried again. A dialog that is still open behind the last step is closed, and so is
/// one that no step gets further with: no test waits for a person.
class Person
{
public:
    using Step = std::function<bool(const Dialog&)>;

    explicit Person(QList<Step> steps)
        : m_steps(std::move(steps))
    {
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { look(); });
        m_timer.start(1);
    }
    Person(const Person&) = delete;
    Person& operator=(const Person&) = delete;

    static Step click(const char* button)
    {
        return [button](const Dialog& dialog) {
            dialog.click(button);
            return true;
        };
    }

    bool came() const { return m_came; }
    /// Whether the steps were taken, none too few and none too many.
    bool isDone() const { return m_came && m_steps.isEmpty() && !m_closed; }

private:
    void look()
    {
        auto* form = qobject_cast<frmSpelling*>(QApplication::activeModalWidget());
        if (!form || !form->isVisible() || m_acting)
            return;
        if (!m_came)
            m_waiting.start();
        m_came = true;
        constexpr qint64 patience = 10'000; // milliseconds
        if (m_steps.isEmpty() || m_waiting.elapsed() > patience) {
            m_closed = true;
            form->close();
            return;
        }
        m_acting = true;
        const Step step = m_steps.first();
        if (step(Dialog(*form))) {
            m_steps.removeFirst();
            m_waiting.start();
        }
        m_acting = false;
    }

    QList<Step> m_steps;
    QTimer m_timer;
    QElapsedTimer m_waiting;
    bool m_came = false;
    bool m_closed = false;
    bool m_acting = false;
};

} // namespace tavrin::test
