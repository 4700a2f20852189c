#pragma once

#include <string>

// The words, signs and quoted texts of a condition, one after the other.
class CFilterTokens
{
public:
    enum class Kind
    {
        End,
        Word,
        SingleQuoted,
        DoubleQuoted,
        Sign,  // a comparison or a parenthesis
    };

    struct Token
    {
        Kind What = Kind::End;
        std::string Text;  // without the quotation marks
        size_t Place = 0;  // in bytes from the beginning
    };

    // Throws std::runtime_error, as Next does, if there is no token.
    explicit CFilterTokens(const std::string& text);

    const Token& Get() const { return m_token; }
    void Next();
    // A word in any case, which is passed when it is there.
    bool TakeWord(const char* word);
    bool TakeSign(const char* sign);
    // Throws with the place of the token.
    [[noreturn]] void Fail(const std::string& reason) const;

private:
    void ReadQuoted(char mark);

    std::string m_text;
    size_t m_next = 0;
    Token m_token;
};
