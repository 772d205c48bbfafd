#pragma once

#include "attachments/section/Attachments.h"
#include "base/failure/Error.h"
#include "base/values/Variant.h"
#include "support/TestCase.h"
#include "testing/FakeDesktop.h"
#include "testing/FakeHost.h"
#include "testing/Unhandled.h"
#include "widgets/boxes/TextBox.h"
#include "widgets/labels/Label.h"
#include "widgets/lists/ListView.h"
#include "widgets/panels/GroupBox.h"

#include <QDateTime>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTest>

// What the tests of the attachments' frame and list share.

namespace tavrin::test {

/// A collection of attachments.
inline std::shared_ptr<FakeCollection> newAttachmentRows()
{
    return std::make_shared<FakeCollection>(
        QStringList{QStringLiteral("SeqNo"), QStringLiteral("FileName"), QStringLiteral("OriginalFileName"),
                    QStringLiteral("FolderNo"), QStringLiteral("Description"), QStringLiteral("Notes"),
                    QStringLiteral("UserId"), QStringLiteral("UserDate")});
}

inline tvTableRowPtr addFile(FakeCollection& rows, const QVariant& seqNo, const QString& fileName,
                             const QVariant& description = Null())
{
    const tvTableRowPtr row = rows.NewItem();
    fieldOf(*row, QStringLiteral("SeqNo"))->SetValue(seqNo);
    fieldOf(*row, QStringLiteral("FileName"))->SetValue(fileName);
    fieldOf(*row, QStringLiteral("Description"))->SetValue(description);
    rows.Add(row);
    return row;
}

/// A form with the section, of an incident without attachments, and another box.
struct AttachmentsStage
{
    AttachmentsStage()
        : installation(host)
    {
        host.state().settings.insert(QStringLiteral("_Global/Attachments Folder"), QStringLiteral("/store"));
        record->SetItem(QStringLiteral("Attachments"), rows);
        section = new Attachments(&window, {QStringLiteral("ctlAttachments"), nullptr});
        window.resize(section->sizeHint().width() + 40, section->sizeHint().height() + 60);
        section->setGeometry(20, 10, section->sizeHint().width(), section->sizeHint().height());
        other->setGeometry(20, section->geometry().bottom() + 10, 300, 24);
        list = section->findChild<ListView*>(QStringLiteral("lvwFiles"));
        host.state().log.clear();
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
    QString caption(const char* label) const { return child<Label>(label)->Caption(); }
    TextBox* description() const { return child<TextBox>("txtDescription"); }
    QPlainTextEdit* comment() const { return child<QPlainTextEdit>("txtComment"); }

    tvTableRowPtr add(const QVariant& seqNo, const QString& fileName, const QVariant& description = Null())
    {
        return addFile(*rows, seqNo, fileName, description);
    }
    /// A photo and two documents, of which the first is current.
    void addThree()
    {
        add(1, QStringLiteral("2014\\03\\photo.png"), QStringLiteral("Window"));
        add(2, QStringLiteral("2014\\03\\report.docx"), QStringLiteral("Report"));
        add(3, QStringLiteral("2014\\04\\list.txt"), QStringLiteral("List"));
    }
    void read() { boundSection().ReadData(record); }
    bool openThree()
    {
        addThree();
        read();
        return show();
    }
    /// From now on the record has another collection, without rows.
    void replaceRows()
    {
        rows = newAttachmentRows();
        record->SetItem(QStringLiteral("Attachments"), rows);
    }
    void write() { boundSection().WriteData(record); }
    BoundSection& boundSection() { return *section; }
    /// The error that the read of a record raises; its number is 0 when it raises none.
    Error readError(const tvBusinessObjectPtr& from)
    {
        try {
            boundSection().ReadData(from);
        } catch (const Error& error) {
            return error;
        }
        return Error(QString(), 0);
    }

    /// "SeqNo|Filename|Description|UserId|UserDate" of each line.
    QStringList lines() const
    {
        QStringList all;
        for (int index = 0; index < list->Count(); ++index) {
            QStringList cells;
            for (const char* column : {"SeqNo", "Filename", "Description", "UserId", "UserDate"})
                cells << list->SubItem(list->Key(index), QString::fromLatin1(column));
            all << cells.join(u'|');
        }
        return all;
    }
    QStringList keys() const
    {
        QStringList all;
        for (int index = 0; index < list->Count(); ++index)
            all << list->Key(index);
        return all;
    }
    QPoint placeOfLine(int index) const
    {
        return list->viewport()->mapTo(&window, list->visualRect(list->model()->index(index, 0)).center());
    }
    void click(int index, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseClick(window.windowHandle(), button, {}, placeOfLine(index));
    }
    /// Types into the box that describes the current file.
    void describe(const QString& text)
    {
        description()->setFocus();
        description()->selectAll();
        for (const QChar character : text)
            QTest::keyClick(window.windowHandle(), character.toLatin1());
    }
    QString value(const tvTableRowPtr& row, const char* field) const
    {
        return ToText(fieldOf(*row, QString::fromLatin1(field))->Value());
    }

    FakeHost host;
    HostInstallation installation;
    FakeMessageBoxes boxes;
    std::shared_ptr<FakeRecord> record = std::make_shared<FakeRecord>();
    std::shared_ptr<FakeCollection> rows = newAttachmentRows();
    QWidget window;
    QPointer<Attachments> section;
    QLineEdit* other = new QLineEdit(&window);
    ListView* list = nullptr;
};

} // namespace tavrin::test
