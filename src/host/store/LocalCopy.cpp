#include "host/store/LocalCopy.h"

#include "base/files/FileWriter.h"
#include "host/store/AttachmentStore.h"

#include <utility>

namespace tavrin {

LocalCopy::LocalCopy(std::shared_ptr<LocalCopies> copies)
    : m_copies(std::move(copies))
    , m_file(m_copies->create(m_name))
{
}

LocalCopy::~LocalCopy()
{
    if (!m_name.isEmpty())
        m_copies->remove(m_name);
}

void LocalCopy::finish(qint64 expectedLength)
{
    struct stat status = {};
    if (::fstat(m_file.number(), &status) != 0)
        throw SystemError::last();
    if (status.st_size != expectedLength)
        throw StoreProblem(QStringLiteral("the copy in '%1' has not its length").arg(m_copies->path()));
    const QByteArray whole =
        "attachment-" + m_name.mid(static_cast<qsizetype>(qstrlen(TemporaryPrefix))) + ".tmp";
    m_copies->rename(m_name, whole);
    m_name = whole;
}

QString LocalCopy::keep()
{
    QString path = m_copies->handOut(m_name);
    m_name.clear();
    return path;
}

} // namespace tavrin
