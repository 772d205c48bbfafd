#include "host/NotOffered.h"

#include "base/Error.h"

namespace tavrin {

namespace {

class MissingCustomDictionary : public tvCustomDictionary
{
public:
    void AddWord(const QString& word) override
    {
        Q_UNUSED(word)
        raiseNotOffered(QStringLiteral("a custom dictionary"));
    }
};

} // namespace

void raiseNotOffered(const QString& what)
{
    throw Error(QStringLiteral("This host does not offer %1").arg(what), Error::NoSuchComponentNumber);
}

std::unique_ptr<tvCustomDictionary> makeMissingCustomDictionary()
{
    return std::make_unique<MissingCustomDictionary>();
}

} // namespace tavrin
