#pragma once

#include "attachments/section/Attachments.h"
#include "base/values/Variant.h"
#include "frame/memory_records/MemoryField.h"
#include "frame/memory_records/MemoryRow.h"
#include "support/Keys.h"
#include "support/NextModal.h"
#include "support/TestCase.h"
#include "testing/FakeDesktop.h"
#include "testing/FakeHost.h"
#include "testing/Unhandled.h"
#include "widgets/boxes/CheckBox.h"
#include "widgets/boxes/TextArea.h"
#include "widgets/boxes/TextBox.h"
#include "widgets/labels/Label.h"
#include "widgets/labels/TextLink.h"
#include "widgets/lists/ListView.h"
#include "widgets/panels/GroupBox.h"
#include "widgets/panels/PopupMenu.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>

namespace tavrin::test {

/// Rows of attachments: what is added gets the next number, as a host gives it. Their texts have limits.
class NumberedRows final : public tvTableCollection
{
public:
    static constexpr int DescriptionLength = 20;
    static constexpr int NotesLength = 200;

    /// A row that stands nowhere yet.
    static tvTableRowPtr makeRow(bool isNew)
    {
        const auto field = [](const char* name, qint32 length = 0) {
            const QString text = QString::fromLatin1(name);
            return std::make_shared<MemoryField>(text, Null(), text == QLatin1String("SeqNo"), length);
        };
        return std::make_shared<MemoryRow>(
            QList<tvFieldPtr>{field("SeqNo"), field("FileName"), field("OriginalFileName"), field("FolderNo"),
                              field("Description", DescriptionLength), field("Notes", NotesLength),
                              field("UserId"), field("UserDate")},
            isNew);
    }

    QString KeyColumn() const override { return QStringLiteral("SeqNo"); }
    tvTableRowPtr NewItem() override { return makeRow(true); }
    tvTableRowPtr AddNew() override
    {
        const tvTableRowPtr row = NewItem();
        Add(row);
        m_rows.SetPosition(static_cast<qint16>(Count()));
        return row;
    }
    void Add(const tvTableRowPtr& row) override
    {
        if (beforeAdding)
            beforeAdding(*row);
        const auto key = fieldOf(*row, KeyColumn());
        if (IsNull(key->Value()))
            key->SetValue(++m_last);
        m_rows.Add(row);
        if (afterAdding)
            afterAdding();
    }
    void RemoveCurrent(bool immediately) override
    {
        if (removalFailure)
            throw Error(*removalFailure);
        const qint32 index = Position();
        const tvTableRowPtr row = Item(index);
        m_rows.RemoveCurrent(immediately);
        ItemRemovedEx.raise(index, row);
    }
    qint32 Count() const override { return m_rows.Count(); }
    tvTableRowPtr Item(qint32 index) override { return m_rows.Item(index); }
    void SetItemClass(const QString& name) override { m_rows.SetItemClass(name); }
    qint16 Position() const override { return m_rows.Position(); }
    void SetPosition(qint16 position) override { m_rows.SetPosition(position); }
    bool CurrentIsPrimary() const override { return m_rows.CurrentIsPrimary(); }
    void SetPrimaryValue(const QVariant& key) override
    {
        primaries << (IsNull(key) ? QStringLiteral("Null") : ToText(key));
        m_rows.SetPrimaryValue(key);
        PrimaryStatusChanged.raise(key);
    }
    qint32 PrimaryIndex() const override { return m_rows.PrimaryIndex(); }

    /// How many times a row was asked for.
    qint64 reads() const { return m_rows.reads; }
    /// From now on each call that gives a row makes an object for it.
    void makeRowsAnew() { m_rows.makesRowsAnew = true; }

    const QList<bool>& removedImmediately() const { return m_rows.removedImmediately; }

    /// What was made the primary value, call by call.
    QStringList primaries;
    std::optional<Error> removalFailure;
    /// May refuse a row.
    std::function<void(tvTableRow&)> beforeAdding;
    /// Stands for whoever hears of a row from the record.
    std::function<void()> afterAdding;

private:
    mutable FakeCollection m_rows;
    qint32 m_last = 100;
};

/// An incident without attachments, a store and a folder for downloads that are real, and the section on a
/// form "Incident 7".
struct AttachmentsForm
{
    AttachmentsForm()
        : installation(host)
    {
        store.mkpath(QStringLiteral("2014/03"));
        downloads.mkpath(QStringLiteral("."));
        workplace.mkpath(QStringLiteral("."));
        host.state().settings.insert(QStringLiteral("_Global/Attachments Folder"), store.path());
        host.state().downloadsFolder = downloads.path();
        host.state().userId = QStringLiteral("moss");
        host.state().permissions << QStringLiteral("Incident/10") << QStringLiteral("Incident/20");
        record->SetItem(QStringLiteral("Attachments"), rows);
        window.setWindowTitle(QStringLiteral("Incident 7"));
        window.resize(620, 460);
        section = new Attachments(&window);
        section->setGeometry(10, 10, 600, 420);
        list = child<ListView>("lvwFiles");
        description = child<TextBox>("txtDescription");
        comment = child<TextArea>("txtComment");
        cover = child<CheckBox>("chkDefault");
        link = child<TextLink>("lnkAddAttachments");
        menu = section->findChild<PopupMenu*>(QStringLiteral("mnuAttachments"));
    }

    bool show()
    {
        window.show();
        window.activateWindow();
        section->setFocus();
        return QTest::qWaitForWindowActive(&window) && list->hasFocus();
    }

    template <typename Widget>
    Widget* child(const char* name) const
    {
        return section->findChild<Widget*>(QString::fromLatin1(name));
    }
    MenuItem* item(const char* name) const { return menu->findChild<MenuItem*>(QString::fromLatin1(name)); }

    // The record

    /// Adds a row whose stored file has the name as its content.
    tvTableRowPtr addRow(const QString& name, const QVariant& rowDescription = Null(),
                         const QVariant& notes = Null(), bool isNew = false) const
    {
        const tvTableRowPtr row = NumberedRows::makeRow(isNew);
        const QString stored = QStringLiteral("2014\\03\\20160201130507_") + name;
        set(*row, "FileName", stored);
        set(*row, "OriginalFileName", name);
        set(*row, "Description", rowDescription);
        set(*row, "Notes", notes);
        rows->Add(row);
        writeFile(storedPath(stored), name.toUtf8());
        return row;
    }
    /// A report, a photo with a thumbnail and a photo without; the report is the current one.
    void addThree() const
    {
        addRow(QStringLiteral("report.docx"), QStringLiteral("first"), QStringLiteral("one"));
        addImage(QStringLiteral("door.png"));
        addRow(QStringLiteral("lock.png"), QStringLiteral("third"), QStringLiteral("three"));
    }
    void addImage(const QString& name) const
    {
        const tvTableRowPtr row = addRow(name, QStringLiteral("second"), QStringLiteral("two"));
        const QString thumbnail = QStringLiteral("thumbnail of ") + name;
        host.state().thumbnails.insert(store.path() + u'\\' + text(*row, "FileName"), thumbnail);
        QImage picture(8, 8, QImage::Format_RGB32);
        picture.fill(Qt::darkCyan);
        host.state().pictures.insert(thumbnail, picture);
    }
    /// From now on the record has another collection, without rows.
    void replaceRows()
    {
        rows = std::make_shared<NumberedRows>();
        record->SetItem(QStringLiteral("Attachments"), rows);
    }
    QString storedPath(QString fileName) const { return store.filePath(fileName.replace(u'\\', u'/')); }

    static void set(tvTableRow& row, const char* field, const QVariant& value)
    {
        fieldOf(row, QString::fromLatin1(field))->SetValue(value);
    }
    static QVariant value(tvTableRow& row, const char* field)
    {
        return fieldOf(row, QString::fromLatin1(field))->Value();
    }
    static QString text(tvTableRow& row, const char* field) { return ToText(value(row, field)); }
    QString text(int index, const char* field) const { return text(*rows->Item(index), field); }
    QStringList fileNames() const
    {
        QStringList names;
        for (const tvTableRowPtr& row : *rows)
            names << text(*row, "OriginalFileName");
        return names;
    }

    void read() { static_cast<BoundSection*>(section)->ReadData(record); }
    void write() { static_cast<BoundSection*>(section)->WriteData(record); }
    bool open()
    {
        read();
        return show();
    }
    bool openThree()
    {
        addThree();
        return open();
    }

    // Files

    static void writeFile(const QString& path, const QByteArray& content)
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    static QByteArray readFile(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing");
    }
    /// A file on the person's disk.
    QString newFile(const QString& name) const
    {
        const QString path = workplace.filePath(name);
        writeFile(path, name.toUtf8());
        return path;
    }

    // The person

    QPoint placeOfLine(int line) const
    {
        const QRect cell = list->visualRect(list->model()->index(line, 0));
        return list->viewport()->mapTo(&window, QPoint(20, cell.center().y()));
    }
    /// Below the lines.
    QPoint emptyPlace() const
    {
        return list->viewport()->mapTo(&window, list->viewport()->rect().bottomLeft() + QPoint(30, -4));
    }
    void click(const QPoint& place, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseClick(window.windowHandle(), button, {}, place);
    }
    void click(const QWidget* widget) { click(widget->mapTo(&window, QPoint(8, widget->height() / 2))); }
    void doubleClick(const QPoint& place)
    {
        QTest::mouseDClick(window.windowHandle(), Qt::LeftButton, {}, place);
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(window.windowHandle(), key, modifiers);
    }
    void type(const QString& what)
    {
        for (const QChar character : what)
            QTest::keyClick(window.windowHandle(), character.toLatin1());
    }
    /// In front of what stands there.
    void typeComment(const QString& what)
    {
        comment->setFocus();
        type(what);
    }
    /// Behind what stands there.
    void typeDescription(const QString& what)
    {
        description->setFocus();
        description->end(false);
        type(what);
    }
    /// Presses keys and keeps them down for three repeats.
    void hold(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        press(key, modifiers);
        for (int repeat = 0; repeat < 3; ++repeat) {
            QKeyEvent event(QEvent::KeyPress, key, modifiers, QString(), true);
            QApplication::sendEvent(list, &event);
        }
    }
    void openMenu(const QPoint& place)
    {
        click(place, Qt::RightButton);
        QTRY_VERIFY(menu->isVisible());
    }
    /// Opens the menu at a line and chooses an item by its key.
    void choose(int line, Qt::Key key)
    {
        openMenu(placeOfLine(line));
        chooseByKey(menu, key);
    }

    /// The only box since the last look, as its text, title and icon; "" for none.
    QString theBox()
    {
        const QList<ShownBox> shown = boxes.take();
        if (shown.isEmpty())
            return {};
        const ShownBox& box = shown.first();
        const QString icon =
            box.icon == BoxIcon::Critical ? QStringLiteral("critical") : QStringLiteral("other");
        return shown.size() > 1 ? QStringLiteral("several boxes") : box.text + u'|' + box.title + u'|' + icon;
    }

    QString selected() const { return list->SelectedItem().value_or(QStringLiteral("none")); }
    QString marked() const { return list->DropHighlight().value_or(QStringLiteral("none")); }

    QTemporaryDir folder;
    QDir store{folder.filePath(QStringLiteral("store"))};
    QDir downloads{folder.filePath(QStringLiteral("Downloads"))};
    QDir workplace{folder.filePath(QStringLiteral("workplace"))};
    mutable FakeHost host;
    HostInstallation installation;
    FakeMessageBoxes boxes;
    FakeFileDialogs dialogs;
    FakeShell shell;
    FakeClock clock{QDateTime(QDate(2016, 2, 1), QTime(13, 5, 7))};
    std::shared_ptr<FakeRecord> record = std::make_shared<FakeRecord>();
    std::shared_ptr<NumberedRows> rows = std::make_shared<NumberedRows>();
    QWidget window;
    QPointer<Attachments> section;
    ListView* list;
    TextBox* description;
    TextArea* comment;
    CheckBox* cover;
    TextLink* link;
    PopupMenu* menu;
};

} // namespace tavrin::test
