#include "host/store/AttachmentStore.h"

#include "base/files/OpenBeneath.h"
#include "base/values/StorePath.h"
#include "base/values/Variant.h"
#include "host/store/SourceFile.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <cerrno>

namespace tavrin {

namespace {

QStringList componentsOf(const QString& path)
{
    QString slashed = path;
    slashed.replace(u'\\', u'/');
    return slashed.split(u'/', Qt::SkipEmptyParts);
}

bool isAbsolute(const QString& path)
{
    return !path.isEmpty() && StorePath::isSeparator(path.at(0));
}

/// Neither a control character nor half a character of two units, which a file's name would not keep.
void checkCharacters(const QString& path)
{
    const bool isBad =
        std::any_of(path.begin(), path.end(), [](QChar c) { return c.category() == QChar::Other_Control; }) ||
        QString::fromUtf8(path.toUtf8()) != path;
    if (isBad)
        throw StoreProblem(QStringLiteral("its name holds a character that no file in the attachments "
                                          "folder may have"));
}

QList<QByteArray> namesOf(const QStringList& components)
{
    QList<QByteArray> names;
    for (const QString& component : components) {
        if (component == QLatin1String(".") || component == QLatin1String(".."))
            throw StoreProblem(QStringLiteral("the path leads out of the attachments folder"));
        names << QFile::encodeName(component);
    }
    return names;
}

} // namespace

struct AttachmentStore::Base
{
    QString Spelling;
    QStringList Components;

    explicit Base(const QString& spelling)
        : Spelling(spelling)
        , Components(componentsOf(spelling))
    {
    }
    bool leadsTo(const QString& path, const QStringList& components) const
    {
        return isAbsolute(path) == isAbsolute(Spelling) &&
               StorePath::hasDrive(path) == StorePath::hasDrive(Spelling) &&
               components.size() >= Components.size() &&
               std::equal(Components.begin(), Components.end(), components.begin());
    }
};

AttachmentStore::AttachmentStore(std::shared_ptr<const HostListsHolder> lists, QString dataFolder)
    : m_lists(std::move(lists))
    , m_dataFolder(std::move(dataFolder))
{
}

QList<AttachmentStore::Base> AttachmentStore::bases() const
{
    QList<Base> bases;
    const HostLists& lists = *m_lists->Lists;
    const QString setting = lists.setting(QStringLiteral("_Global"), QStringLiteral("Attachments Folder"));
    QStringList spellings = lists.attachmentFolders().values();
    spellings.prepend(setting);
    for (const QString& spelling : std::as_const(spellings)) {
        if (!spelling.isEmpty())
            bases << Base(spelling);
    }
    return bases;
}

/// As the platform spells it; raises when a drive leads nowhere here, or a relative folder out of the data
/// folder.
QString AttachmentStore::platformFolder(const QString& base) const
{
    const QString drive = StorePath::drivePart(base);
    if (!drive.isEmpty()) {
        const QString mapped = m_lists->Lists->setting(QStringLiteral("_Drives"), drive);
        if (mapped.isEmpty())
            throw StoreProblem(QStringLiteral("'%1' leads to no folder at this workstation; the setting "
                                              "\"%1\" under \"_Drives\" can name one")
                                   .arg(drive));
        if (!mapped.startsWith(u'/')) // it would count from wherever the program was started
            throw StoreProblem(QStringLiteral("'%1' leads to '%2', which is no absolute path; the setting "
                                              "\"%1\" under \"_Drives\" must name one")
                                   .arg(drive, mapped));
        const QStringList below = componentsOf(base.mid(drive.size()));
        namesOf(below); // refuses what leads out
        return QDir(mapped).filePath(below.join(u'/'));
    }
    QString folder = base;
    folder.replace(u'\\', u'/');
    if (isAbsolute(folder))
        return folder;
    namesOf(componentsOf(folder));
    return QDir(m_dataFolder).filePath(folder);
}

AttachmentStore::Place AttachmentStore::placeOf(const QString& path) const
{
    checkCharacters(path);
    const QStringList components = componentsOf(path);
    const QList<Base> all = bases();
    const Base* found = nullptr;
    for (const Base& base : all) {
        if (base.leadsTo(path, components) && (!found || found->Components.size() < base.Components.size()))
            found = &base;
    }
    const QString drive = StorePath::drivePart(path);
    if (!found && drive.isEmpty())
        throw StoreProblem(QStringLiteral("the path '%1' lies in no attachments folder").arg(path));
    const QString base = found ? found->Spelling : drive;
    const QStringList below =
        found ? components.mid(found->Components.size()) : componentsOf(path.mid(drive.size()));
    Place place{base, platformFolder(base), !isAbsolute(base) && drive.isEmpty(), namesOf(below)};
    if (place.Names.isEmpty())
        throw StoreProblem(QStringLiteral("the path '%1' names no file").arg(path));
    return place;
}

QString AttachmentStore::platformPath(const QString& path) const
{
    const Place place = placeOf(path);
    return QDir(place.Folder).filePath(QFile::decodeName(place.Names.join('/')));
}

Descriptor AttachmentStore::openBase(const Place& place, Missing missing)
{
    if (missing == Missing::MakeOwn && place.IsOwn)
        QDir().mkpath(place.Folder); // whether it is there is seen when it is opened
    try {
        return openFolder(QFile::encodeName(place.Folder));
    } catch (const SystemError& error) {
        throw StoreProblem(QStringLiteral("the attachments folder '%1' cannot be opened: %2")
                               .arg(place.Folder, error.Description));
    }
}

Descriptor AttachmentStore::openFile(const QString& path) const
{
    const Place place = placeOf(path);
    const Descriptor base = openBase(place);
    try {
        return openRegularFile([&](int flags) { return openBeneath(base, place.Names, flags); });
    } catch (const SystemError& error) {
        if (error.Code == ELOOP || error.Code == EXDEV)
            throw StoreProblem(QStringLiteral("a symbolic link stands in its path"));
        if (error.Code == ENXIO) // a socket
            throw StoreProblem(QStringLiteral("it is not a file"));
        throw;
    }
}

QStringList AttachmentStore::baseFolders() const
{
    QStringList folders;
    for (const Base& base : bases()) {
        try {
            folders << platformFolder(base.Spelling);
        } catch (const StoreProblem&) {
            continue; // one that leads nowhere here
        }
    }
    folders.removeDuplicates();
    return folders;
}

HostAttachmentFolders::HostAttachmentFolders(std::shared_ptr<const HostListsHolder> lists)
    : m_lists(std::move(lists))
{
}

QString HostAttachmentFolders::GetFolderPath(const QVariant& folderNo)
{
    const int number = ToLong(folderNo);
    const std::optional<QString> folder = m_lists->Lists->attachmentFolder(number);
    if (!folder)
        throw Error(QStringLiteral("There is no attachments folder with the number %1.").arg(number));
    return *folder;
}

} // namespace tavrin
