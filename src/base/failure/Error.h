#pragma once

#include "base/export/Export.h"

#include <QString>

#include <exception>
#include <string>

namespace tavrin {

/// A failure with a number, a source and a description.
///
/// Number 5 is the ordinary one: a text for a person or for the host, without a number that anybody reads.
class TAVRIN_EXPORT Error : public std::exception
{
public:
    /// The ordinary number of a raised failure.
    static constexpr int OrdinaryNumber = 5;
    /// A number does not fit into the type it is converted to.
    static constexpr int OverflowNumber = 6;
    /// A value cannot be converted to the type asked for.
    static constexpr int TypeMismatchNumber = 13;
    /// Null stands where a value must be.
    static constexpr int InvalidUseOfNullNumber = 94;
    /// The object has no such property or operation.
    static constexpr int NoSuchMemberNumber = 438;
    /// The host does not offer a component.
    static constexpr int NoSuchComponentNumber = 429;

    /// `description` is the text for a person; `source` names what raised it, "" where that is not said.
    explicit Error(QString description, int number = OrdinaryNumber, QString source = {});

    /// The exception that is being handled, as an `Error`: itself when it is one, else number 5 with its
    /// text. To be called inside a catch block only.
    static Error fromCurrentException();

    /// The description in UTF-8.
    const char* what() const noexcept override { return m_what.c_str(); }

    /// One of the numbers above, or one of the host's own.
    int Number;
    /// What raised it; "" where that is not said.
    QString Source;
    /// The text for a person.
    QString Description;

private:
    std::string m_what;
};

} // namespace tavrin
