#pragma once

#include <cstdint>
#include <string>
#include <vector>

enum class CRequestMethod
{
    Get,
    Head,
    Post,
    Put,
};

// What is asked of a server: the caller's header lines with the options taken out of them, and the body.
class CRequest
{
public:
    // Groups of headers that GetHeaders can leave out: those that make an answer depend on a condition or ask for a part, and
    // those that prove who the caller is.
    static constexpr uint32_t Conditions = 1;
    static constexpr uint32_t Credentials = 2;

    // Reads the text of IZVReader::SetHeaders, as UTF-8. A line that is no header is logged and left out. The lines that describe
    // the message itself, "Content-Length", "Transfer-Encoding" and "Expect", are left out too, since the transfer makes them.
    // Nothing that comes out of here can end a line of the request.
    void SetHeaders(const std::string& text);
    // The bytes stay with the caller.
    void SetBody(const void* bytes, int64_t size);

    // False when an option has a value that means nothing.
    bool IsValid() const { return m_isValid; }
    // Without the option POST for a request with a body, and GET for others.
    CRequestMethod GetMethod() const;
    // True when asking again may change something at the server.
    bool HasEffect() const { return GetMethod() == CRequestMethod::Post || GetMethod() == CRequestMethod::Put; }
    // The first byte wanted; 0 for the whole resource.
    int64_t GetRangeStart() const { return m_rangeStart; }
    bool SucceedsOnError() const { return m_succeedsOnError; }
    // The header lines without their ends and without some groups. A request that must not be answered from a cache tells the
    // caches on its way so.
    std::vector<std::string> GetHeaders(uint32_t leftOut) const;
    bool HasHeader(const char* name) const;
    const void* GetBody() const { return m_body; }
    int64_t GetBodySize() const { return m_bodySize; }

private:
    void AddLine(const std::string& line);
    bool SetOption(const std::string& name, const std::string& value);

    std::vector<std::string> m_headers;
    const void* m_body = nullptr;
    int64_t m_bodySize = 0;
    bool m_isValid = true;
    bool m_hasMethod = false;
    CRequestMethod m_method = CRequestMethod::Get;
    int64_t m_rangeStart = 0;
    bool m_usesCache = false;
    bool m_succeedsOnError = false;
};
