#include "caller/list/CFilterTokens.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <strings.h>

namespace
{
// The longer ones first.
constexpr std::string_view Signs[] = {"!=", "<=", ">=", "=", "<", ">", "~", "(", ")"};

constexpr std::string_view EndOfWord = " \t\r\n!=<>~()\"'";
constexpr std::string_view Blanks = " \t\r\n";
}

CFilterTokens::CFilterTokens(const std::string& text) : m_text(text)
{
    Next();
}

void CFilterTokens::Next()
{
    m_next = std::min(m_text.find_first_not_of(Blanks, m_next), m_text.size());
    m_token = {.Text = {}, .Place = m_next};
    if (m_next == m_text.size())
        return;
    const std::string_view rest = std::string_view(m_text).substr(m_next);
    if (rest[0] == '"' || rest[0] == '\'')
        return ReadQuoted(rest[0]);
    const auto* const sign = std::ranges::find_if(Signs, [&](std::string_view candidate) { return rest.starts_with(candidate); });
    if (sign == std::end(Signs) && rest[0] == '!')
        Fail("there is a ! without its =");
    m_token.What = sign == std::end(Signs) ? Kind::Word : Kind::Sign;
    m_token.Text = sign == std::end(Signs) ? rest.substr(0, rest.find_first_of(EndOfWord)) : *sign;
    m_next += m_token.Text.size();
}

// A mark that stands twice is one of the text.
void CFilterTokens::ReadQuoted(char mark)
{
    m_token.What = mark == '"' ? Kind::DoubleQuoted : Kind::SingleQuoted;
    for (size_t place = m_next + 1; place < m_text.size(); ++place)
    {
        if (m_text[place] != mark)
            m_token.Text += m_text[place];
        else if (place + 1 < m_text.size() && m_text[place + 1] == mark)
            m_token.Text += m_text[place++];
        else
        {
            m_next = place + 1;
            return;
        }
    }
    Fail("the quotation mark has no end");
}

bool CFilterTokens::TakeWord(const char* word)
{
    if (m_token.What != Kind::Word || strcasecmp(m_token.Text.c_str(), word) != 0)
        return false;
    Next();
    return true;
}

bool CFilterTokens::TakeSign(const char* sign)
{
    if (m_token.What != Kind::Sign || m_token.Text != sign)
        return false;
    Next();
    return true;
}

void CFilterTokens::Fail(const std::string& reason) const
{
    throw std::runtime_error("the condition is wrong at character " + std::to_string(m_token.Place + 1) + ": " + reason);
}
