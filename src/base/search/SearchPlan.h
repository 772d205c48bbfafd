#pragma once

#include "base/search/TextFold.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavrin {

/// A text that an expression reads off a record: the texts of children and constant ones, one behind the
/// other.
struct RecordText
{
    struct Part
    {
        std::string child;   ///< the first child element of this name; "" for a constant part
        std::string literal; ///< of a constant part, folded already
        TextFold fold;       ///< of a child's text
        friend bool operator==(const Part&, const Part&) = default;
    };
    std::vector<Part> parts;
    friend bool operator==(const RecordText&, const RecordText&) = default;
};

/// What a text is compared with.
struct SearchConstant
{
    enum class Kind
    {
        Text,
        Number,
        RootAttribute, ///< the text of an attribute of the document's root, known only when the plan runs
    };
    Kind kind = Kind::Text;
    std::string text; ///< or the attribute's name
    double number = 0;
    std::string root; ///< the name that the root must have; "" for any
    friend bool operator==(const SearchConstant&, const SearchConstant&) = default;
};

/// A test of one record.
struct SearchCondition
{
    enum class Kind
    {
        Always,
        Never,
        AllOf,    ///< the members
        AnyOf,    ///< the members
        NoneOf,   ///< the only member
        HasChild, ///< of the name in `text`
        Contains, ///< `text` holds the constant
        BeginsWith,
        Equals,
        Differs,
    };
    Kind kind = Kind::Always;
    std::vector<SearchCondition> members;
    RecordText text;
    /// Of `Equals` and `Differs`: each child of the name is compared by itself and one of them is enough, so
    /// that neither holds where there is no such child.
    bool eachChild = false;
    SearchConstant constant;
    friend bool operator==(const SearchCondition&, const SearchCondition&) = default;
};

/// An XPath expression of the family that searches build: `Record[condition]`, with element names in front
/// or without.
///
///     SearchPlan::parse("Employee[(ActiveFlag='True') and (contains(Name, 'ADA') or OfficerNo=7)]")
///
/// Conditions are made of `and`, `or`, `not`, `=`, `!=`, `contains`, `starts-with`, `translate` between ASCII
/// alphabets, `concat`, `true`, `false`, literals, numbers, names of children, and attributes of the root as
/// in `/*/@name`.
struct SearchPlan
{
    bool fromDocument = false;        ///< the expression began with a slash
    std::vector<std::string> parents; ///< from the context down to the records' parent; "*" for any element
    std::string record;
    SearchCondition condition;

    /// Nothing for an expression that is not of the family, that is not valid, that nests so deep that it may
    /// not be valid, or that reads more texts than columns are worth keeping for.
    static std::optional<SearchPlan> parse(std::string_view expression);
};

/// The number that XPath reads in a text; NaN for none.
double xpathNumber(const std::string& text);

/// The condition with each attribute of the root put in, which `attribute` gives; nothing for none there.
using RootAttribute =
    std::function<std::optional<std::string>(const std::string& root, const std::string& name)>;
SearchCondition withAttributes(SearchCondition condition, const RootAttribute& attribute);

/// Whether every record that meets `next` is known to meet `before`: they differ in nothing but typed texts,
/// and those of `next` are longer. Neither may name attributes.
bool narrows(const SearchCondition& before, const SearchCondition& next);

} // namespace tavrin
