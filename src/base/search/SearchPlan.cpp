#include "base/search/SearchPlan.h"

#include "base/search/SearchPlanParser.h"

#include <cstdlib>
#include <limits>

namespace tavrin {

namespace {

using Kind = SearchCondition::Kind;

bool isBlank(char character)
{
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

/// An optional minus, digits with at most one point among them, blanks on either side.
bool isNumber(const char* text)
{
    while (isBlank(*text))
        ++text;
    if (*text == '-')
        ++text;
    if (!isDigit(text[0]) && (text[0] != '.' || !isDigit(text[1])))
        return false;
    while (isDigit(*text))
        ++text;
    if (*text == '.')
        ++text;
    while (isDigit(*text))
        ++text;
    while (isBlank(*text))
        ++text;
    return *text == '\0';
}

void putAttribute(SearchCondition& condition, const RootAttribute& attribute)
{
    SearchConstant& constant = condition.constant;
    const std::optional<std::string> value = attribute(constant.root, constant.text);
    constant = {SearchConstant::Kind::Text, value.value_or(std::string()), 0, {}};
    // Nothing is equal to an attribute that is not there, and nothing differs from it.
    if (!value && (condition.kind == Kind::Equals || condition.kind == Kind::Differs))
        condition = SearchCondition{Kind::Never, {}, {}, false, {}};
}

} // namespace

std::optional<SearchPlan> SearchPlan::parse(std::string_view expression)
{
    return SearchPlanParser(expression).plan();
}

double xpathNumber(const std::string& text)
{
    return isNumber(text.c_str()) ? std::strtod(text.c_str(), nullptr)
                                  : std::numeric_limits<double>::quiet_NaN();
}

SearchCondition withAttributes(SearchCondition condition, const RootAttribute& attribute)
{
    for (SearchCondition& member : condition.members)
        member = withAttributes(std::move(member), attribute);
    if (condition.constant.kind == SearchConstant::Kind::RootAttribute)
        putAttribute(condition, attribute);
    return condition;
}

bool narrows(const SearchCondition& before, const SearchCondition& next)
{
    if (before.kind != next.kind || before.members.size() != next.members.size())
        return false;
    const std::string& longer = next.constant.text;
    switch (before.kind) {
    case Kind::AllOf:
    case Kind::AnyOf:
        for (std::size_t i = 0; i < before.members.size(); ++i) {
            if (!narrows(before.members[i], next.members[i]))
                return false;
        }
        return true;
    case Kind::Contains:
        return before.text == next.text && longer.find(before.constant.text) != std::string::npos;
    case Kind::BeginsWith:
        return before.text == next.text &&
               longer.compare(0, before.constant.text.size(), before.constant.text) == 0;
    default: // a longer text below `not` finds more
        return before == next;
    }
}

} // namespace tavrin
