#include "base/failure/Error.h"

namespace tavrin {

Error::Error(QString description, int number, QString source)
    : Number(number)
    , Source(std::move(source))
    , Description(std::move(description))
    , m_what(Description.toStdString())
{
}

Error Error::fromCurrentException()
{
    try {
        throw;
    } catch (const Error& error) {
        return error;
    } catch (const std::exception& error) {
        return Error(QString::fromUtf8(error.what()));
    } catch (...) {
        return Error(QStringLiteral("Unknown error"));
    }
}

} // namespace tavrin
