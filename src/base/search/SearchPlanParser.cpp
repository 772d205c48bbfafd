#include "base/search/SearchPlanParser.h"

#include <algorithm>

namespace tavrin {

namespace {

using Kind = SearchCondition::Kind;

/// The engine refuses deeper expressions. It counts each operator, argument and step, and so does the parser;
/// close to the engine's limit of 1024 it leaves the decision to it.
constexpr int MostDepth = 1000;
/// Parentheses and calls within one another; the parser recurses.
constexpr int MostNested = 60;
/// What columns are kept for: an expression that reads more would fill the memory with them.
constexpr std::size_t MostTexts = 32;
constexpr std::size_t MostParts = 16;
constexpr std::size_t LongestLiterals = 256; // of one text, in bytes: they stand in each of its rows

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

bool startsName(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           character == '_';
}

bool isModest(const RecordText& text)
{
    std::size_t literals = 0;
    for (const RecordText::Part& part : text.parts)
        literals += part.literal.size();
    return text.parts.size() <= MostParts && literals <= LongestLiterals;
}

/// Whether few and modest texts are read, beside those in `texts`, which gets them.
bool readsLittle(const SearchCondition& condition, std::vector<RecordText>& texts)
{
    if (!condition.text.parts.empty() &&
        std::find(texts.begin(), texts.end(), condition.text) == texts.end()) {
        texts.push_back(condition.text);
        if (texts.size() > MostTexts || !isModest(condition.text))
            return false;
    }
    return std::all_of(condition.members.begin(), condition.members.end(),
                       [&](const SearchCondition& member) { return readsLittle(member, texts); });
}

bool continuesName(char character)
{
    return startsName(character) || isDigit(character) || character == '-' || character == '.';
}

} // namespace

// Tokens

void SearchPlanParser::skipBlanks()
{
    const std::size_t blanks = m_rest.find_first_not_of(" \t\r\n");
    m_rest.remove_prefix(std::min(blanks, m_rest.size()));
}

bool SearchPlanParser::take(char character)
{
    skipBlanks();
    if (m_rest.empty() || m_rest.front() != character)
        return false;
    m_rest.remove_prefix(1);
    return true;
}

std::string_view SearchPlanParser::name()
{
    skipBlanks();
    if (m_rest.empty() || !startsName(m_rest.front()))
        return {};
    const auto end = std::find_if_not(m_rest.begin(), m_rest.end(), continuesName);
    const std::string_view taken = m_rest.substr(0, static_cast<std::size_t>(end - m_rest.begin()));
    m_rest.remove_prefix(taken.size());
    return taken;
}

bool SearchPlanParser::takeWord(std::string_view word)
{
    const std::string_view before = m_rest;
    if (name() == word)
        return true;
    m_rest = before;
    return false;
}

bool SearchPlanParser::goDeeper()
{
    return ++m_depth <= MostDepth;
}

// The path

std::optional<SearchPlan> SearchPlanParser::plan()
{
    SearchPlan plan;
    goDeeper();
    plan.fromDocument = take('/');
    for (;;) {
        const std::string step = take('*') ? "*" : std::string(name());
        if (step.empty())
            return std::nullopt;
        if (!take('/')) {
            plan.record = step;
            break;
        }
        if (!goDeeper())
            return std::nullopt;
        plan.parents.push_back(step);
    }
    if (plan.record == "*" || !take('[') || !goDeeper())
        return std::nullopt;
    std::optional<SearchCondition> found = condition();
    if (!found || !take(']'))
        return std::nullopt;
    skipBlanks();
    if (!m_rest.empty())
        return std::nullopt;
    std::vector<RecordText> texts;
    if (!readsLittle(*found, texts))
        return std::nullopt;
    plan.condition = std::move(*found);
    return plan;
}

// Operators

std::optional<SearchCondition> SearchPlanParser::condition()
{
    Parsed parsed = expression();
    return parsed ? asCondition(std::move(*parsed)) : std::nullopt;
}

SearchPlanParser::Parsed SearchPlanParser::expression()
{
    const int depth = m_depth;
    if (!goDeeper() || ++m_nested > MostNested)
        return std::nullopt;
    Parsed parsed = chain("or");
    m_depth = depth;
    --m_nested;
    return parsed;
}

SearchPlanParser::Parsed SearchPlanParser::chain(std::string_view word)
{
    const bool isOr = word == "or";
    const auto member = [&] { return isOr ? chain("and") : equality(); };
    Parsed first = member();
    if (!first || !takeWord(word))
        return first;
    Operand whole{Operand::Kind::Condition, {}};
    whole.condition.kind = isOr ? Kind::AnyOf : Kind::AllOf;
    Parsed next = std::move(first);
    for (;;) {
        std::optional<SearchCondition> found = next ? asCondition(std::move(*next)) : std::nullopt;
        if (!found)
            return std::nullopt;
        whole.condition.members.push_back(std::move(*found));
        if (whole.condition.members.size() > 1 && !takeWord(word))
            return whole;
        if (!goDeeper())
            return std::nullopt;
        next = member();
    }
}

SearchPlanParser::Parsed SearchPlanParser::equality()
{
    Parsed left = operand();
    if (!left)
        return std::nullopt;
    const bool equal = take('=');
    if (!equal && !take('!'))
        return left;
    if (!equal && (m_rest.empty() || m_rest.front() != '='))
        return std::nullopt;
    if (!equal)
        m_rest.remove_prefix(1);
    if (!goDeeper())
        return std::nullopt;
    Parsed right = operand();
    return right ? compared(std::move(*left), std::move(*right), equal ? Kind::Equals : Kind::Differs)
                 : std::nullopt;
}

SearchPlanParser::Parsed SearchPlanParser::compared(Operand left, Operand right, Kind kind)
{
    if (left.kind == Operand::Kind::Constant)
        std::swap(left, right);
    if (right.kind != Operand::Kind::Constant ||
        (left.kind != Operand::Kind::Child && left.kind != Operand::Kind::Text))
        return std::nullopt;
    Operand result{Operand::Kind::Condition, {}};
    result.condition = {
        kind, {}, std::move(left.text), left.kind == Operand::Kind::Child, std::move(right.constant)};
    return result;
}

// Operands

SearchPlanParser::Parsed SearchPlanParser::operand()
{
    skipBlanks();
    if (m_rest.empty())
        return std::nullopt;
    const char first = m_rest.front();
    if (first == '(')
        return inParentheses();
    if (first == '/')
        return rootAttribute();
    if (first == '\'' || first == '"')
        return literal();
    if (first == '-' || first == '.' || isDigit(first))
        return number();
    return nameOrCall();
}

SearchPlanParser::Parsed SearchPlanParser::inParentheses()
{
    take('(');
    Parsed parsed = expression();
    return parsed && take(')') ? parsed : std::nullopt;
}

SearchPlanParser::Parsed SearchPlanParser::rootAttribute()
{
    Operand found;
    found.constant.kind = SearchConstant::Kind::RootAttribute;
    take('/');
    if (!take('*') && (found.constant.root = name()).empty())
        return std::nullopt;
    if (!take('/') || !take('@') || (found.constant.text = name()).empty())
        return std::nullopt;
    // Declarations of namespaces are no attributes.
    return goDeeper() && found.constant.text != "xmlns" ? Parsed(found) : std::nullopt;
}

SearchPlanParser::Parsed SearchPlanParser::literal()
{
    const std::size_t end = m_rest.find(m_rest.front(), 1);
    if (end == std::string_view::npos)
        return std::nullopt;
    Operand found;
    found.constant.text = m_rest.substr(1, end - 1);
    m_rest.remove_prefix(end + 1);
    return found;
}

SearchPlanParser::Parsed SearchPlanParser::number()
{
    const bool negative = take('-');
    skipBlanks();
    const auto end = std::find_if_not(m_rest.begin(), m_rest.end(),
                                      [](char character) { return isDigit(character) || character == '.'; });
    const std::string digits(m_rest.begin(), end);
    m_rest.remove_prefix(digits.size());
    const bool endsHere = m_rest.empty() || !continuesName(m_rest.front());
    Operand found;
    found.constant.kind = SearchConstant::Kind::Number;
    found.constant.number = (negative ? -1 : 1) * xpathNumber(digits);
    const bool isNumber = found.constant.number == found.constant.number;
    return isNumber && endsHere && goDeeper() ? Parsed(found) : std::nullopt;
}

SearchPlanParser::Parsed SearchPlanParser::nameOrCall()
{
    const std::string_view found = name();
    if (found.empty())
        return std::nullopt;
    if (take('('))
        return call(found);
    Operand child{Operand::Kind::Child, {}};
    child.text.parts.push_back({std::string(found), {}, {}});
    return child;
}

// Functions

bool SearchPlanParser::arguments(Arguments& given)
{
    if (take(')'))
        return true;
    do {
        Parsed next = goDeeper() ? expression() : std::nullopt;
        if (!next)
            return false;
        given.push_back(std::move(*next));
    } while (take(','));
    return take(')');
}

SearchPlanParser::Parsed SearchPlanParser::call(std::string_view function)
{
    Arguments given;
    if (!arguments(given))
        return std::nullopt;
    if (function == "contains" && given.size() == 2)
        return search(std::move(given), Kind::Contains);
    if (function == "starts-with" && given.size() == 2)
        return search(std::move(given), Kind::BeginsWith);
    if (function == "translate" && given.size() == 3)
        return translated(given);
    if (function == "concat" && given.size() >= 2)
        return concatenated(given);
    if (function == "not" && given.size() == 1)
        return negated(std::move(given));
    if ((function == "true" || function == "false") && given.empty())
        return Operand{Operand::Kind::Condition,
                       {function == "true" ? Kind::Always : Kind::Never, {}, {}, false, {}}};
    return std::nullopt;
}

SearchPlanParser::Parsed SearchPlanParser::search(Arguments given, Kind kind)
{
    std::optional<RecordText> text = asText(given[0]);
    const SearchConstant& constant = given[1].constant;
    if (!text || given[0].kind == Operand::Kind::Constant || given[1].kind != Operand::Kind::Constant ||
        constant.kind == SearchConstant::Kind::Number)
        return std::nullopt;
    return Operand{Operand::Kind::Condition, {kind, {}, std::move(*text), false, constant}};
}

SearchPlanParser::Parsed SearchPlanParser::translated(const Arguments& given)
{
    if (!isConstantText(given[1]) || !isConstantText(given[2]))
        return std::nullopt;
    const auto fold = TextFold::translating(given[1].constant.text, given[2].constant.text);
    std::optional<RecordText> text = asText(given[0]);
    if (!fold || !text)
        return std::nullopt;
    if (isConstantText(given[0])) {
        Operand constant = given[0];
        constant.constant.text = fold->of(constant.constant.text);
        return constant;
    }
    for (RecordText::Part& part : text->parts) {
        part.literal = fold->of(part.literal);
        part.fold = part.child.empty() ? TextFold() : part.fold.then(*fold);
    }
    return Operand{Operand::Kind::Text, {}, std::move(*text), {}};
}

SearchPlanParser::Parsed SearchPlanParser::concatenated(const Arguments& given)
{
    if (std::all_of(given.begin(), given.end(), isConstantText)) { // a literal with quotes; often a long one
        Operand constant;
        for (const Operand& operand : given)
            constant.constant.text += operand.constant.text;
        return constant;
    }
    Operand whole{Operand::Kind::Text, {}};
    for (const Operand& operand : given) {
        const std::optional<RecordText> text = asText(operand);
        if (!text)
            return std::nullopt;
        whole.text.parts.insert(whole.text.parts.end(), text->parts.begin(), text->parts.end());
    }
    return whole;
}

SearchPlanParser::Parsed SearchPlanParser::negated(Arguments given)
{
    std::optional<SearchCondition> found = asCondition(std::move(given[0]));
    if (!found)
        return std::nullopt;
    Operand result{Operand::Kind::Condition, {Kind::NoneOf, {}, {}, false, {}}};
    result.condition.members.push_back(std::move(*found));
    return result;
}

// Kinds

bool SearchPlanParser::isConstantText(const Operand& operand)
{
    return operand.kind == Operand::Kind::Constant && operand.constant.kind == SearchConstant::Kind::Text;
}

std::optional<SearchCondition> SearchPlanParser::asCondition(Operand operand)
{
    if (operand.kind == Operand::Kind::Condition)
        return std::move(operand.condition);
    if (operand.kind == Operand::Kind::Child)
        return SearchCondition{Kind::HasChild, {}, std::move(operand.text), false, {}};
    return std::nullopt;
}

std::optional<RecordText> SearchPlanParser::asText(const Operand& operand)
{
    if (operand.kind == Operand::Kind::Child || operand.kind == Operand::Kind::Text)
        return operand.text;
    if (isConstantText(operand))
        return RecordText{{{{}, operand.constant.text, {}}}};
    return std::nullopt;
}

} // namespace tavrin
