#pragma once

#include "spell/SpellingStage.h"
#include "spell/SpellingWalk.h"
#include "widgets/boxes/TextArea.h"

// What the tests of the spelling dialog share.

namespace tavrin::test {

using namespace Qt::StringLiterals;

/// A box with a wrong text, and the dialog over it.
struct DialogStage
{
    explicit DialogStage(const QString& text, bool allowAdd = true)
    {
        window.setGeometry(40, 40, 300, 120);
        area = new TextArea(&window);
        area->setGeometry(10, 10, 280, 100);
        area->SetText(text);
        window.show();
        allows = allowAdd;
    }
    ~DialogStage()
    {
        if (form)
            form->hide();
    }

    bool open()
    {
        walk = std::make_shared<SpellingWalk>(area, spellerOf(folder));
        form = std::make_unique<frmSpelling>(walk, allows);
        form->show();
        form->activateWindow();
        return QTest::qWaitForWindowActive(form.get());
    }
    Dialog dialog() const { return Dialog(*form); }
    QString text() const { return area->toPlainText(); }

    SpellingFolder folder;
    QWidget window;
    QPointer<TextArea> area;
    std::shared_ptr<SpellingWalk> walk;
    std::unique_ptr<frmSpelling> form;
    bool allows = true;
};

} // namespace tavrin::test
