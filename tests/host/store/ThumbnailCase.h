#pragma once

#include "host/HostTestSupport.h"
#include "host/TestPictures.h"
#include "host/store/AttachmentStore.h"
#include "host/store/Thumbnails.h"

#include <QLoggingCategory>

#include <memory>

// What the tests of thumbnails share.

namespace tavrin::test {

/// The program that makes them.
inline QString thumbnailer()
{
    return QStringLiteral(TAVRIN_THUMBNAILER);
}

/// A store of pictures, and what makes thumbnails of them.
class ThumbnailCase : public TestCase
{
protected:
    std::optional<QTemporaryDir> m_folder;
    std::optional<QTemporaryDir> m_data; // of all tests
    std::unique_ptr<Database> m_database;
    QString m_base;
    AttachmentStorePtr m_store; // whose folder is `m_base`

    /// A store in this folder. A drive leads to `m_base`.
    AttachmentStorePtr storeIn(const QString& folder, const QString& numberedFolder = {},
                               const QString& drive = {}) const
    {
        m_database->execute(QStringLiteral("DELETE FROM setting"));
        m_database->execute(QStringLiteral("DELETE FROM attachment_folder"));
        const auto set = [this](const QString& section, const QString& key, const QString& value) {
            Statement(*m_database, QStringLiteral("INSERT INTO setting VALUES (?, ?, ?)"))
                .run({section, key, value});
        };
        set(QStringLiteral("_Global"), QStringLiteral("Attachments Folder"), folder);
        if (!drive.isEmpty())
            set(QStringLiteral("_Drives"), drive, m_base);
        if (!numberedFolder.isEmpty())
            Statement(*m_database, QStringLiteral("INSERT INTO attachment_folder VALUES (3, ?)"))
                .run({numberedFolder});
        const auto lists = std::make_shared<HostListsHolder>(HostListsHolder{HostLists::read(*m_database)});
        return std::make_shared<AttachmentStore>(lists, m_data->path());
    }
    static Thumbnails thumbnailsOf(const AttachmentStorePtr& store, const QString& program = thumbnailer(),
                                   int timeLimitMs = Thumbnails::TimeLimitMs)
    {
        return {[store](const QString& path) { return openStoreFile(*store, path); }, program, timeLimitMs};
    }
    Thumbnails thumbnails(const QString& program = thumbnailer(),
                          int timeLimitMs = Thumbnails::TimeLimitMs) const
    {
        return thumbnailsOf(m_store, program, timeLimitMs);
    }
    /// As the row's path comes: the base folder and a stored name with backslashes.
    QString storePath(const char* name) const { return m_base + u'\\' + QString::fromLatin1(name); }
    static QString platformPath(QString path) { return path.replace(u'\\', u'/'); }
    QString put(const char* name, const QByteArray& content) const
    {
        const QString path = storePath(name);
        writeFile(platformPath(path), content);
        return path;
    }
    QString put(const char* name, const QImage& image, const char* format = "png") const
    {
        return put(name, encoded(image, format));
    }
    /// The picture of the thumbnail of a file; a null one when there is none.
    QImage pictureFor(const QString& path) const
    {
        const QString thumbnail = thumbnails().pathFor(path);
        return thumbnail.isEmpty() ? QImage() : QImage(platformPath(thumbnail));
    }
    QString keptFolder() const { return m_base + QStringLiteral("/.thumbnails"); }
    /// The thumbnails there, each as its path from there.
    QStringList kept() const
    {
        QStringList found;
        for (const QString& bucket : filesIn(keptFolder())) {
            for (const QString& name : filesIn(keptFolder() + u'/' + bucket))
                found << bucket + u'/' + name;
        }
        return found;
    }

    /// One serves all tests of a unit.
    void openDatabase()
    {
        m_data.emplace();
        m_database = Database::open(m_data->filePath(QStringLiteral("records.db")),
                                    OpenMode::CreateWhenMissing, impatient());
    }
    void closeDatabase() { m_database.reset(); }

    void init() override
    {
        TestCase::init();
        // What decoders say of hostile pictures.
        QLoggingCategory::setFilterRules(QStringLiteral("qt.gui.*=false"));
        m_folder.emplace();
        m_base = m_folder->filePath(QStringLiteral("store"));
        QVERIFY(QDir().mkpath(m_base));
        m_store = storeIn(m_base);
    }
};

} // namespace tavrin::test
