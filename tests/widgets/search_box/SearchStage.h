#pragma once

#include "base/failure/Error.h"
#include "support/Keys.h"
#include "widgets/drawing/PictureSurface.h"
#include "widgets/search_box/AutoCompleteTextBox.h"
#include "widgets/search_box/SuggestionView.h"

#include <QAction>
#include <QDialog>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QMenu>
#include <QMimeData>
#include <QPointer>
#include <QPushButton>
#include <QTest>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace tavrin::test {

/// A form with a search box between two line edits and a default button, and what the box told. It finds the
/// items that contain the query.
template <typename Box = AutoCompleteTextBox>
class SearchStage
{
public:
    explicit SearchStage(const QPoint& place = {100, 100})
        : window(new QDialog)
    {
        window->setGeometry(QRect(place, QSize(400, 300)));
        before = new QLineEdit(window);
        before->setGeometry(20, 10, 200, 26);
        box = new Box(window);
        box->setGeometry(20, 50, 200, 26);
        after = new QLineEdit(window);
        after->setGeometry(20, 250, 200, 26);
        standard = new QPushButton(window);
        standard->setGeometry(300, 250, 80, 26);
        standard->setDefault(true);
        QObject::connect(standard, &QPushButton::clicked, window,
                         [this] { told << QStringLiteral("form's enter"); });
        QObject::connect(window, &QDialog::rejected, window,
                         [this] { told << QStringLiteral("form's escape"); });
        subscribe();
        window->show();
        window->activateWindow();
        box->setFocus();
    }
    SearchStage(const SearchStage&) = delete;
    SearchStage& operator=(const SearchStage&) = delete;
    ~SearchStage() { delete window.data(); }

    bool isReady() { return QTest::qWaitForWindowActive(window) && box->hasFocus(); }
    /// Items of these texts; what was there is gone.
    void fill(const QStringList& texts)
    {
        m_items = XmlDocument();
        m_items.loadXML(QStringLiteral("<Items/>"));
        items.clear();
        for (const QString& text : texts)
            items.push_back(m_items.documentElement().appendElement(QStringLiteral("Item"), text));
    }
    /// "item 0", "item 1" and so on.
    void fill(int count)
    {
        QStringList texts;
        for (int i = 0; i < count; ++i)
            texts << QStringLiteral("item %1").arg(i);
        fill(texts);
    }

    QStringList take() { return std::exchange(told, {}); }
    void key(int key, Qt::KeyboardModifiers modifiers = {}) const
    {
        QTest::keyClick(window->windowHandle(), static_cast<Qt::Key>(key), modifiers);
    }
    void type(const QString& text) const { typeInto(window->windowHandle(), text); }

    QFrame* popup() const { return window->template findChild<QFrame*>(QStringLiteral("suggestionList")); }
    SuggestionView* view() const
    {
        return popup() ? popup()->template findChild<SuggestionView*>() : nullptr;
    }
    int highlighted() const { return view()->highlightedRow(); }
    int rows() const { return box->ListIsOpen() ? view()->rowCount() : -1; }
    QRect boxOnScreen() const { return {box->mapToGlobal(QPoint(0, 0)), box->size()}; }
    QPoint rowOnScreen(int row) const
    {
        return view()->viewport()->mapToGlobal(view()->rowRect(row).center());
    }
    /// As the window system would: into the list's window.
    void clickRow(int row, Qt::MouseButton button = Qt::LeftButton) const
    {
        QTest::mouseClick(popup()->windowHandle(), button, {}, popup()->mapFromGlobal(rowOnScreen(row)));
    }
    /// Moves the pointer, of which the list hears where it lies there.
    void movePointer(const QPoint& onScreen) const
    {
        QCursor::setPos(onScreen);
        QCoreApplication::processEvents();
        if (!box->ListIsOpen() || !popup()->geometry().contains(onScreen))
            return;
        // The offscreen platform does not know which window lies above.
        QWidget* rows = view()->viewport();
        QMouseEvent event(QEvent::MouseMove, rows->mapFromGlobal(onScreen), onScreen, Qt::NoButton,
                          Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(rows, &event);
    }

    QPointer<QDialog> window;
    QLineEdit* before;
    QPointer<Box> box;
    QLineEdit* after;
    QPushButton* standard;
    Suggestions items;
    QStringList told;
    int drawn = 0;
    /// Run at the end of each event, whose name they get.
    std::function<void(const QString& event)> onEvent;

private:
    void happened(const QString& event, const QString& what = {})
    {
        told << (what.isNull() ? event : event + QLatin1Char(' ') + what);
        if (onEvent)
            onEvent(event);
    }
    void subscribe()
    {
        m_keep.push_back(box->SearchRequested.subscribe([this](const QString& query, Suggestions& result) {
            for (const XmlNode& item : items) {
                if (item.text().contains(query, Qt::CaseInsensitive))
                    result.push_back(item);
            }
            happened(QStringLiteral("search"), QLatin1Char('\'') + query + QLatin1Char('\''));
        }));
        m_keep.push_back(box->DrawItem.subscribe(
            [this](PictureSurface& picture, const XmlNode& item, const QString&, bool) {
                ++drawn;
                if (onDraw)
                    onDraw(item);
                picture.Print(item.text());
                picture.SetWidth(picture.CurrentX());
                picture.EndLine();
                picture.SetHeight(picture.CurrentY());
            }));
        m_keep.push_back(
            box->GetItemText.subscribe([](const XmlNode& item, QString& text) { text = item.text(); }));
        m_keep.push_back(box->SelectionChanged.subscribe([this] {
            const XmlNode& item = box->SelectedItem();
            happened(QStringLiteral("chosen"), item.isNull() ? QStringLiteral("none") : item.text());
        }));
        m_keep.push_back(box->ItemPicked.subscribe(
            [this](const XmlNode& item) { happened(QStringLiteral("picked"), item.text()); }));
    }

    XmlDocument m_items;
    std::vector<Subscription> m_keep;

public:
    std::function<void(const XmlNode& item)> onDraw;
};

/// What an input method tells: `preedit` is being composed, `commit` is done.
inline void compose(SearchStage<>& stage, const QString& preedit, const QString& commit = {})
{
    QInputMethodEvent event(preedit, {});
    event.setCommitString(commit);
    QCoreApplication::sendEvent(stage.box, &event);
}

/// Drops a text behind the box's own.
inline void drop(SearchStage<>& stage, const QString& text)
{
    QMimeData data;
    data.setText(text);
    const QPoint place(stage.box->width() - 5, 10);
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(stage.box, &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent event(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(stage.box, &event);
}

/// Chooses a command of the box's own context menu.
inline void command(SearchStage<>& stage, const QString& name)
{
    const std::unique_ptr<QMenu> menu(stage.box->createStandardContextMenu());
    for (QAction* action : menu->actions()) {
        if (action->text().remove(u'&').startsWith(name)) {
            QVERIFY(action->isEnabled());
            action->trigger();
            return;
        }
    }
    QFAIL(qPrintable(name));
}

/// A form whose box has a list of this many rows open.
class OpenStage : public SearchStage<>
{
public:
    explicit OpenStage(int count = 3, const QPoint& place = {100, 100})
        : SearchStage(place)
    {
        m_isReady = isReady();
        fill(count);
        key(Qt::Key_F4);
        take();
    }
    bool isOpen() const { return m_isReady && box->ListIsOpen(); }

private:
    bool m_isReady;
};

} // namespace tavrin::test
