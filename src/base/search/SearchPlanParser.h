#pragma once

// Private to SearchPlan.cpp.

#include "base/search/SearchPlan.h"

namespace tavrin {

/// Reads the text of an expression from left to right. Whatever it does not know ends it without a plan.
class SearchPlanParser
{
public:
    explicit SearchPlanParser(std::string_view expression)
        : m_rest(expression)
    {
    }

    std::optional<SearchPlan> plan();

private:
    /// What stands between operators and commas.
    struct Operand
    {
        enum class Kind
        {
            Condition,
            Child, ///< the elements of one name, which are compared one by one
            Text,  ///< one text
            Constant,
        };
        Kind kind = Kind::Constant;
        SearchCondition condition = {};
        RecordText text = {}; ///< of a child too
        SearchConstant constant = {};
    };
    using Parsed = std::optional<Operand>;
    using Arguments = std::vector<Operand>;

    std::optional<SearchCondition> condition();
    /// A whole expression; what is in parentheses, brackets and between commas.
    Parsed expression();
    Parsed chain(std::string_view word);
    Parsed equality();
    Parsed operand();
    Parsed inParentheses();
    Parsed rootAttribute();
    Parsed number();
    Parsed literal();
    Parsed nameOrCall();
    Parsed call(std::string_view function);
    bool arguments(Arguments& given);

    static bool isConstantText(const Operand& operand);
    static std::optional<SearchCondition> asCondition(Operand operand);
    static std::optional<RecordText> asText(const Operand& operand);
    static Parsed compared(Operand left, Operand right, SearchCondition::Kind kind);
    static Parsed search(Arguments given, SearchCondition::Kind kind);
    static Parsed translated(const Arguments& given);
    static Parsed concatenated(const Arguments& given);
    static Parsed negated(Arguments given);

    void skipBlanks();
    bool take(char character);
    /// A word that ends where the name ends.
    bool takeWord(std::string_view word);
    /// "" when there is none.
    std::string_view name();
    bool goDeeper();

    std::string_view m_rest;
    int m_depth = 0;
    int m_nested = 0;
};

} // namespace tavrin
