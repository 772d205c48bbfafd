// Writes a picture of each state of the attachments into the folder that is named on the command line; with
// QT_SCALE_FACTOR=2 a few large ones.

#include "attachments/section/Attachments.h"
#include "base/values/Variant.h"
#include "frame/memory_records/MemoryField.h"
#include "frame/memory_records/MemoryRow.h"
#include "pictures/ForwardingHost.h"
#include "pictures/Pictures.h"
#include "support/Fakes.h"
#include "testing/FakeRecords.h"
#include "widgets/lists/ListView.h"
#include "workbench/application/Theme.h"

#include <QDateTime>
#include <QLineEdit>
#include <QPainterPath>
#include <QTest>

#include <functional>

using namespace tavrin;
using namespace Qt::StringLiterals;
using tavrin::test::FakeCollection;
using tavrin::test::FakeRecord;

namespace {

/// The fake host with pictures that fit as those of the reference host.
class PictureHost final : public test::ForwardingHost
{
public:
    ListFilling& listFilling() override { return m_filling; }

private:
    ListFilling m_filling;
};

struct File
{
    const char* name;
    const char* description;
    const char* notes;
    const char* user;
};

const File Files[] = {
    {"Front window.png", "Broken front window", "Taken from the street, before the glass was cleared away.",
     "mmoss"},
    {"Statement Kettlewell.docx", "Statement of the shopkeeper", "Signed on the next day.", "rquill"},
    {"Back door.png", "Marks beside the lock", "", "mmoss"},
    {"Inventory.xlsx", "What is missing", "", "rquill"},
    {"Insurance letter of the owner of the neighbouring shop.pdf",
     "Letter of the insurance about the earlier damage of the same window", "", "dfenwick"},
    {"Till.png", "Till, opened by force", "", "mmoss"},
};

/// A window with a hole, as a thumbnail.
QImage photo()
{
    QImage picture(186, 246, QImage::Format_RGB32);
    picture.fill(QColor(92, 84, 78));
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(QRect(24, 30, 138, 170), QColor(150, 178, 196));
    painter.setPen(QPen(QColor(230, 226, 218), 8));
    painter.drawRect(QRect(24, 30, 138, 170));
    painter.drawLine(93, 30, 93, 200);
    QPainterPath hole;
    hole.addPolygon(QPolygonF(QList<QPointF>{{112, 84},
                                             {128, 78},
                                             {136, 96},
                                             {152, 104},
                                             {138, 118},
                                             {134, 140},
                                             {118, 126},
                                             {104, 130},
                                             {110, 108}}));
    painter.fillPath(hole, QColor(34, 36, 42));
    return picture;
}

/// A form with the section and somewhere else for the focus to go.
struct Stage
{
    Stage(bool dark, int files)
        : installation(host)
    {
        workbench::applyTheme(dark);
        host.fake.state().settings.insert(u"_Global/Attachments Folder"_s, u"/store"_s);
        for (int i = 0; i < files; ++i)
            add(i);
        record->SetItem(u"Attachments"_s, rows);
        section = new Attachments(&window);
        window.resize(section->sizeHint() + QSize(40, 24));
        section->setGeometry(20, 12, section->sizeHint().width(), section->sizeHint().height());
        other->setGeometry(-100, -100, 10, 10);
        list = section->findChild<ListView*>(u"lvwFiles"_s);
    }
    void add(int index)
    {
        const File& file = Files[index];
        QList<tvFieldPtr> fields;
        const auto put = [&fields](const QString& field, const QVariant& value) {
            fields << std::make_shared<MemoryField>(field, value);
        };
        const QString stored = u"2014\\03\\"_s + QString::fromUtf8(file.name);
        host.fake.state().thumbnails.insert(u"/store\\"_s + stored, u"thumbnail"_s);
        host.fake.state().pictures.insert(u"thumbnail"_s, photo());
        put(u"SeqNo"_s, index + 1);
        put(u"FileName"_s, stored);
        put(u"OriginalFileName"_s, QString::fromUtf8(file.name));
        put(u"Description"_s, QString::fromUtf8(file.description));
        put(u"Notes"_s, QString::fromUtf8(file.notes));
        put(u"UserId"_s, QString::fromUtf8(file.user));
        put(u"UserDate"_s, QDateTime({2016, 2, 1 + index}, {13, 5, 7}));
        put(u"FolderNo"_s, Null());
        rows->Add(std::make_shared<MemoryRow>(fields, false)); // saved: removing it takes a right
    }
    /// Shows the file at this index, counted from 1, which is the cover when it is the first.
    void open(qint16 current)
    {
        if (current > 0) {
            rows->SetPosition(current);
            rows->SetPrimaryValue(1);
        }
        static_cast<BoundSection&>(*section).ReadData(record);
        window.show();
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window))
            throw Error(u"the form did not come up"_s);
        other->setFocus();
    }
    void allow() { host.fake.state().permissions << u"Incident/10"_s << u"Incident/20"_s; }
    void openMenu()
    {
        list->setFocus();
        QTest::keyClick(window.windowHandle(), Qt::Key_Menu);
        const auto isOpen = [] {
            return QApplication::activePopupWidget() && QApplication::activePopupWidget()->isVisible();
        };
        if (!QTest::qWaitFor(isOpen))
            throw Error(u"the menu did not open"_s);
    }

    PictureHost host;
    HostInstallation installation;
    std::shared_ptr<FakeRecord> record = std::make_shared<FakeRecord>();
    std::shared_ptr<FakeCollection> rows = std::make_shared<FakeCollection>(
        QStringList{u"SeqNo"_s, u"FileName"_s, u"OriginalFileName"_s, u"FolderNo"_s, u"Description"_s,
                    u"Notes"_s, u"UserId"_s, u"UserDate"_s});
    QWidget window;
    Attachments* section;
    ListView* list;
    QLineEdit* other = new QLineEdit(&window);
};

struct State
{
    const char* name;
    int files;
    bool isLarge; // also at 200 %
    std::function<void(Stage&)> bring;
};

const State States[] = {
    {"empty", 0, false, [](Stage& form) { form.open(0); }},
    {"image", 3, true, [](Stage& form) { form.open(1); }},
    {"image-focused", 3, false,
     [](Stage& form) {
         form.open(1);
         form.list->setFocus();
     }},
    {"document", 3, false, [](Stage& form) { form.open(2); }},
    {"many", 6, false, [](Stage& form) { form.open(5); }},
    {"removed", 3, true,
     [](Stage& form) {
         form.allow();
         form.open(2);
         form.list->setFocus();
         QTest::keyClick(form.window.windowHandle(), Qt::Key_Delete);
     }},
    {"menu", 3, true,
     [](Stage& form) {
         form.allow();
         form.open(2);
         form.openMenu();
     }},
    {"menu-forbidden", 3, false,
     [](Stage& form) {
         form.open(2);
         form.openMenu();
     }},
    {"busy", 3, false,
     [](Stage& form) {
         form.open(1);
         form.section->setEnabled(false);
         form.section->findChild<QWidget*>(u"picUpdating"_s)->show();
     }},
};

} // namespace

TAVRIN_PICTURES(Attachments)(int argc, char** argv)
{
    return test::writePictures(argc, argv, [](const QString& folder, bool isLarge) {
        for (const State& state : States) {
            for (const bool dark : {false, true}) {
                if (isLarge && !state.isLarge)
                    continue;
                Stage form(dark, state.files);
                state.bring(form);
                test::writePicture(form.window, folder,
                                   u"Attachments/%1%2%3"_s.arg(QLatin1String(state.name),
                                                               QLatin1String(dark ? "-dark" : ""),
                                                               QLatin1String(isLarge ? "-200" : "")));
                if (QWidget* menu = QApplication::activePopupWidget())
                    menu->close();
            }
        }
    });
}
