#include "base/search/SearchEvaluation.h"

#include <algorithm>

namespace tavrin {

namespace {

using Kind = SearchCondition::Kind;

bool readsText(Kind kind)
{
    return kind != Kind::Always && kind != Kind::Never && kind != Kind::AllOf && kind != Kind::AnyOf &&
           kind != Kind::NoneOf;
}

/// Whether the condition reads whole columns at once, and so costs little; others look at row by row.
bool isSearch(const SearchCondition& condition)
{
    if (!readsText(condition.kind))
        return std::all_of(condition.members.begin(), condition.members.end(), isSearch);
    return condition.kind == Kind::Contains || condition.kind == Kind::BeginsWith;
}

double numberOf(const std::string& text)
{
    return xpathNumber(text);
}

RowSet test(const SearchCondition& condition, const SearchColumn& column, const RowSet& among)
{
    const SearchConstant& constant = condition.constant;
    const bool equal = condition.kind == Kind::Equals;
    const bool isNumber = constant.kind == SearchConstant::Kind::Number;
    if (condition.kind == Kind::HasChild)
        return column.having(among);
    if (condition.kind == Kind::Contains)
        return column.containing(constant.text, among);
    if (condition.kind == Kind::BeginsWith)
        return column.beginningWith(constant.text, among);
    if (condition.eachChild)
        return isNumber ? column.anyEqual(constant.number, equal, among, numberOf)
                        : column.anyEqual(constant.text, equal, among);
    return isNumber ? column.equal(constant.number, equal, among, numberOf)
                    : column.equal(constant.text, equal, among);
}

} // namespace

RowSet SearchEvaluation::run(const SearchCondition& condition, const RowSet& among) const
{
    switch (condition.kind) {
    case Kind::Always:
        return among;
    case Kind::Never:
        return RowSet(among.rows());
    case Kind::AllOf:
        return allOf(condition.members, among);
    case Kind::AnyOf:
        return anyOf(condition.members, among);
    case Kind::NoneOf: {
        RowSet rest = among;
        return rest -= run(condition.members.front(), among);
    }
    default:
        return test(condition, m_columnOf(condition.text), among);
    }
}

RowSet SearchEvaluation::allOf(const std::vector<SearchCondition>& members, const RowSet& among) const
{
    RowSet left = among;
    for (const bool searches : {true, false}) {
        for (const SearchCondition& member : members) {
            if (isSearch(member) == searches && left.count() > 0)
                left = run(member, left);
        }
    }
    return left;
}

RowSet SearchEvaluation::anyOf(const std::vector<SearchCondition>& members, const RowSet& among) const
{
    RowSet found(among.rows());
    RowSet left = among;
    for (const SearchCondition& member : members) {
        const RowSet more = run(member, left);
        found |= more;
        left -= more;
    }
    return found;
}

std::vector<RecordText> SearchEvaluation::textsOf(const SearchCondition& condition)
{
    std::vector<RecordText> texts;
    if (readsText(condition.kind))
        texts.push_back(condition.text);
    for (const SearchCondition& member : condition.members) {
        for (RecordText& text : textsOf(member))
            texts.push_back(std::move(text));
    }
    return texts;
}

} // namespace tavrin
