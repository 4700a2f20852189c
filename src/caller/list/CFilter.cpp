#include "caller/list/CFilter.h"

#include "caller/film/ReadTime.h"
#include "caller/list/CFilterTokens.h"
#include "caller/list/FilmColumn.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <optional>
#include <string_view>

namespace
{
using nlohmann::json;
using TokenKind = CFilterTokens::Kind;

// Parentheses and "not" within each other. The database's parser remembers a hundred tokens, of which one level can take six.
constexpr int MaximumDepth = 12;

// Comparisons in all. The database takes expressions that are twice as deep.
constexpr int MaximumComparisons = 500;

struct NumberUnit
{
    char Letter;
    double Factor;
};

constexpr NumberUnit NumberUnits[] = {
    {'k', 1e3 },
    {'m', 1e6 },
    {'g', 1e9 },
    {'t', 1e12},
};

std::optional<double> ReadNumber(const std::string& text)
{
    double number = 0;
    const char* const end = text.data() + text.size();
    const auto [after, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || !std::isfinite(number))
        return std::nullopt;
    if (after == end)
        return number;
    for (const NumberUnit& unit : NumberUnits)
        if (end - after == 1 && tolower(static_cast<unsigned char>(*after)) == unit.Letter)
            return number * unit.Factor;
    if (const std::optional<int64_t> milliseconds = ReadTime(text))
        return static_cast<double>(*milliseconds) / 1000;
    return std::nullopt;
}

// How far a value may be from a number that was typed with decimals: 23.976 means all that is rounded to it. A number without decimals is
// exact.
double GetTolerance(const std::string& text)
{
    const size_t point = text.find('.');
    const bool isPlain = point != std::string::npos && text.find_first_not_of("+-0123456789.") == std::string::npos;
    return isPlain ? 0.5 * std::pow(10, -static_cast<double>(text.size() - point - 1)) : 0;
}

// A name of a condition as an expression of SQL.
struct Operand
{
    enum class Kind
    {
        Text,
        Number,
        Words,
        Key,  // of the worker's results, of any kind
    };

    Kind What = Kind::Text;
    std::string SQL;       // of a column
    std::string Key = {};  // its path in the facts
    std::string Name;
};

// A pattern of LIKE in which the text stands for itself; the escape character is "\".
std::string MakePattern(const std::string& before, const std::string& text, const std::string& after)
{
    std::string pattern = before;
    for (const char letter : text)
    {
        if (letter == '%' || letter == '_' || letter == '\\')
            pattern += '\\';
        pattern += letter;
    }
    return pattern + after;
}

// Turns the text into SQL, from the weakest operator to the strongest. A comparison with what is not known is false, so that "not" and "!="
// are what they say.
class Parser
{
public:
    Parser(const std::string& text, std::vector<json>& values) : m_tokens(text), m_values(values) {}

    std::string ParseAll()
    {
        const std::string sql = ParseOr();
        if (m_tokens.Get().What != TokenKind::End)
            m_tokens.Fail("\"" + m_tokens.Get().Text + "\" is not expected there");
        return sql;
    }

private:
    std::string ParseOr()
    {
        std::string sql = ParseAnd();
        if (!m_tokens.TakeWord("or"))
            return sql;
        do
            sql += " OR " + ParseAnd();
        while (m_tokens.TakeWord("or"));
        return "(" + sql + ")";
    }

    std::string ParseAnd()
    {
        std::string sql = ParseNot();
        if (!m_tokens.TakeWord("and"))
            return sql;
        do
            sql += " AND " + ParseNot();
        while (m_tokens.TakeWord("and"));
        return "(" + sql + ")";
    }

    std::string ParseNot()
    {
        if (++m_depth > MaximumDepth)
            m_tokens.Fail("it is nested too deeply");
        std::string sql;
        if (m_tokens.TakeWord("not"))
            sql = "NOT " + ParseNot();
        else if (m_tokens.TakeSign("("))
        {
            sql = ParseOr();
            if (!m_tokens.TakeSign(")"))
                m_tokens.Fail("a ) is missing");
        }
        else
            sql = ParseComparison();
        --m_depth;
        return sql;
    }

    std::string ParseComparison()
    {
        if (++m_comparisons > MaximumComparisons)
            m_tokens.Fail("there are more than " + std::to_string(MaximumComparisons) + " comparisons");
        const Operand operand = ParseOperand();
        const CFilterTokens::Token sign = m_tokens.Get();
        if (sign.What != TokenKind::Sign || sign.Text == ")" || sign.Text == "(")
            return MakePresence(operand);
        m_tokens.Next();
        const CFilterTokens::Token value = m_tokens.Get();
        if (value.What == TokenKind::End || value.What == TokenKind::Sign)
            m_tokens.Fail("there is no value after " + sign.Text);
        const std::string sql =
            sign.Text == "!=" ? "NOT " + Compare(operand, "=", value.Text) : Compare(operand, sign.Text, value.Text);
        m_tokens.Next();
        return sql;
    }

    Operand ParseOperand()
    {
        const CFilterTokens::Token name = m_tokens.Get();
        Operand operand {.SQL = {}, .Name = name.Text};
        if (name.What == TokenKind::DoubleQuoted && name.Text.find('"') == std::string::npos)
        {
            operand.What = Operand::Kind::Key;
            operand.Key = "$.\"" + name.Text + "\"";
        }
        else if (name.What == TokenKind::Word)
            SetColumn(operand);
        else
            m_tokens.Fail("the name of a field is expected there");
        m_tokens.Next();
        return operand;
    }

    void SetColumn(Operand& operand) const
    {
        const std::optional<FilmColumn> column = FindFilmColumn(operand.Name);
        if (!column)
            m_tokens.Fail("there is no field \"" + operand.Name + "\"");
        operand.What = static_cast<Operand::Kind>(column->Kind);
        operand.SQL = column->SQL;
    }

    std::string MakePresence(const Operand& operand)
    {
        if (operand.What != Operand::Kind::Key)
            return "(" + operand.SQL + " IS NOT NULL)";
        m_values.emplace_back(operand.Key);
        return "(json_extract(facts, ?) IS NOT NULL)";
    }

    std::string Compare(const Operand& operand, const std::string& sign, const std::string& value)
    {
        const bool isOrder = sign != "=" && sign != "~";
        const std::optional<double> number = ReadNumber(value);
        switch (operand.What)
        {
        case Operand::Kind::Number:
            if (sign == "~" || !number)
                m_tokens.Fail(operand.Name + " is a number");
            return "coalesce(" + CompareNumber(operand.SQL, sign, value, *number) + ", 0)";
        case Operand::Kind::Text:
        case Operand::Kind::Words:
            if (isOrder)
                m_tokens.Fail(operand.Name + " is a text, which can be compared with =, != and ~ alone");
            m_values.emplace_back(MakePattern(GetBefore(operand, sign), value, GetAfter(operand, sign)));
            return "coalesce(" + operand.SQL + " LIKE ? ESCAPE '\\', 0)";
        case Operand::Kind::Key:
            break;
        }
        m_values.emplace_back(operand.Key);
        if (number && sign != "~")
        {
            return "EXISTS (SELECT 1 FROM json_each(facts, ?) WHERE type IN ('integer', 'real') AND " +
                   CompareNumber("value", sign, value, *number) + ")";
        }
        if (isOrder)
            m_tokens.Fail("a text can be compared with =, != and ~ alone");
        const char* const around = sign == "~" ? "%" : "";
        m_values.emplace_back(MakePattern(around, value, around));
        return "EXISTS (SELECT 1 FROM json_each(facts, ?) WHERE value LIKE ? ESCAPE '\\')";
    }

    std::string CompareNumber(const std::string& sql, const std::string& sign, const std::string& text, double number)
    {
        m_values.emplace_back(number);
        if (sign != "=")
            return sql + " " + sign + " ?";
        m_values.emplace_back(GetTolerance(text));
        return "abs(" + sql + " - ?) <= ?";
    }

    static std::string GetBefore(const Operand& operand, const std::string& sign)
    {
        return sign == "~" ? "%" : operand.What == Operand::Kind::Words ? "%;" : "";
    }

    static std::string GetAfter(const Operand& operand, const std::string& sign)
    {
        return sign == "~" ? "%" : operand.What == Operand::Kind::Words ? ";%" : "";
    }

    CFilterTokens m_tokens;
    std::vector<json>& m_values;
    int m_depth = 0;
    int m_comparisons = 0;
};

// The kinds of fields stand for those of operands.
static_assert(static_cast<int>(FieldKind::Text) == static_cast<int>(Operand::Kind::Text));
static_assert(static_cast<int>(FieldKind::Number) == static_cast<int>(Operand::Kind::Number));
static_assert(static_cast<int>(FieldKind::Words) == static_cast<int>(Operand::Kind::Words));
}

CFilter::CFilter(const std::string& text)
{
    m_sql = Parser(text, m_values).ParseAll();
}
