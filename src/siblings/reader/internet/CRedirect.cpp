#include "siblings/reader/internet/CRedirect.h"

#include "siblings/reader/internet/CCurlLibrary.h"
#include "siblings/reader/internet/CHeaderText.h"

#include <algorithm>
#include <iterator>

namespace
{
// Which methods become a GET.
enum class Rewrite
{
    None,
    Post,
    AllButHead,
};

struct RedirectRule
{
    int Status;
    Rewrite BecomesGet;
};

constexpr RedirectRule RedirectRules[] = {
    {301, Rewrite::Post      },
    {302, Rewrite::Post      },
    {303, Rewrite::AllButHead},
    {307, Rewrite::None      },
    {308, Rewrite::None      },
};

const RedirectRule* FindRule(int status)
{
    for (const RedirectRule& rule : RedirectRules)
        if (rule.Status == status)
            return &rule;
    return nullptr;
}

CRequestMethod GetNextMethod(int status, CRequestMethod method)
{
    const RedirectRule* const rule = FindRule(status);
    const Rewrite becomesGet = rule == nullptr ? Rewrite::None : rule->BecomesGet;
    const bool isRewritten = (becomesGet == Rewrite::Post && method == CRequestMethod::Post) ||
                             (becomesGet == Rewrite::AllButHead && method != CRequestMethod::Head);
    return isRewritten ? CRequestMethod::Get : method;
}

// An address in its parts, by the same rules by which libcurl sends it.
class Address
{
public:
    explicit Address(const CCurlLibrary& library) : m_library(library), m_handle(library.curl_url()) {}

    // Goes to an address, or from the present one to a reference relative to it. False, and nothing changed, when it is none.
    bool GoTo(const std::string& reference)
    {
        constexpr unsigned flags = CURLU_URLENCODE | CURLU_ALLOW_SPACE;
        return m_handle != nullptr &&
               m_library.curl_url_set(m_handle.get(), CURLUPART_URL, reference.c_str(), flags) == CURLUE_OK;
    }

    // Empty for a part that is missing.
    std::string Get(CURLUPart part) const
    {
        char* text = nullptr;
        if (m_handle != nullptr)
            m_library.curl_url_get(m_handle.get(), part, &text, CURLU_DEFAULT_PORT);
        const CCurlTextPointer owner(text);
        return text == nullptr ? std::string() : std::string(text);
    }

    bool Is(CURLUPart part, const char* text) const { return CHeaderText::IsEqual(Get(part), text); }

    bool HasSameOrigin(const Address& other) const
    {
        constexpr CURLUPart parts[] = {CURLUPART_SCHEME, CURLUPART_HOST, CURLUPART_PORT};
        return std::all_of(std::begin(parts), std::end(parts), [&](CURLUPart part) { return Is(part, other.Get(part).c_str()); });
    }

private:
    const CCurlLibrary& m_library;
    CCurlAddressPointer m_handle;
};
}

bool CRedirect::IsRedirectStatus(int status)
{
    return FindRule(status) != nullptr;
}

const char* CRedirect::Follow(const CCurlLibrary& library, const std::string& firstAddress, int status,
                              const std::string& location, CHop& hop)
{
    Address first(library);
    Address next(library);
    if (!first.GoTo(firstAddress) || !next.GoTo(hop.Address))
        return "its address cannot be understood";
    const bool wasSecure = next.Is(CURLUPART_SCHEME, "https");
    if (!next.GoTo(location))
        return "it is redirected to what is no address";
    const bool isSecure = next.Is(CURLUPART_SCHEME, "https");
    if (!isSecure && !next.Is(CURLUPART_SCHEME, "http"))
        return "it is redirected to a scheme that is not followed";
    if (wasSecure && !isSecure)
        return "it is redirected from https to http";
    hop = {next.Get(CURLUPART_URL), GetNextMethod(status, hop.Method), !next.HasSameOrigin(first)};
    return nullptr;
}
