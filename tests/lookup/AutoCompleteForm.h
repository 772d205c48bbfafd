#pragma once

#include "frame/Timer.h"
#include "lookup/AutoCompleteField.h"
#include "support/Fakes.h"
#include "support/Members.h"
#include "testing/FakeHost.h"
#include "widgets/boxes/TextBox.h"
#include "widgets/lists/DropDownList.h"

#include <QLineEdit>
#include <QListView>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>

#include <optional>

namespace tavrin::test {

inline constexpr TableNumber SampleTableNo = 301;

inline TableValue entry(const char* id, const char* text, const QVariant& value)
{
    return {QString::fromUtf8(id), QString::fromUtf8(text), value};
}

inline QList<TableValue> sampleTable()
{
    return {entry("12", "Handgun", 12),      entry("13", "Rifle", 13),
            entry("14", "Shotgun", 14),      entry("HND9", "Nine Millimeter", 15),
            entry("Unknown", "Unknown", 16), entry("O1", "O'Hara's \"Place\"", 17),
            entry("R&D", "Lab (north)", 18)};
}

/// A form with one field over the sample table, and another box to go to.
struct AutoCompleteForm
{
    AutoCompleteForm()
        : installation(host)
    {
        host.setTable(SampleTableNo, sampleTable());
        auto* layout = new QVBoxLayout(&window);
        field = new AutoCompleteField(&window);
        other = new QLineEdit(&window);
        layout->addWidget(field);
        layout->addWidget(other);
        layout->addStretch();
        field->SetTableNo(SampleTableNo);
        box = field->findChild<TextBox*>(QStringLiteral("txtSearch"));
        list = field->findChild<DropDownList*>(QStringLiteral("lstMatches"));
        // Each search takes the value away first, and so tells that it runs.
        QObject::connect(field, &UserControl::PropertyChanged, &window, [this](const QString& key) {
            if (key == QLatin1String("Value"))
                searched = box->Text();
        });
        window.resize(400, 300);
        window.show();
        window.activateWindow();
        field->setFocus();
    }

    bool isReady() { return QTest::qWaitForWindowActive(&window) && box && list && box->hasFocus(); }

    /// Types, and waits until the search for the whole text has run.
    bool search(const QString& text)
    {
        searched.reset();
        QTest::keyClicks(box, text);
        return QTest::qWaitFor([&] { return searched == box->Text(); });
    }
    /// Lets every search that could be pending run: a timer that is started now fires behind them.
    static bool letPendingSearchesRun()
    {
        Timer later;
        later.SetOneShot(true);
        later.SetInterval(60);
        later.Start();
        return QTest::qWaitFor([&] { return !later.isRunning(); });
    }

    QStringList entries() const
    {
        QStringList texts;
        for (int i = 0; i < list->ListCount(); ++i)
            texts << list->List(i);
        return texts;
    }
    void clickRow(int row) const
    {
        for (auto* view : window.findChildren<QListView*>(QStringLiteral("entries"))) {
            if (view->isVisible()) {
                QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier,
                                  view->visualRect(view->model()->index(row, 0)).center());
            }
        }
    }

    FakeHost host;
    HostInstallation installation;
    QWidget window;
    AutoCompleteField* field = nullptr;
    QLineEdit* other = nullptr;
    TextBox* box = nullptr;
    DropDownList* list = nullptr;
    /// The text of the box when the value was last set.
    std::optional<QString> searched;
};

} // namespace tavrin::test
