// What a server sends before a body, and what a caller and a user write into a request: header lines, options, addresses.

#include "Require.h"
#include "core/string/ZVString.h"
#include "siblings/reader/CResourceName.h"
#include "siblings/reader/internet/CAnswer.h"
#include "siblings/reader/internet/CRequest.h"

#include <cstdint>
#include <sstream>
#include <string>

namespace
{
bool HasLineEnd(const std::string& text)
{
    return text.find_first_of(std::string("\r\n\0", 3)) != std::string::npos;
}

void CheckAnswer(const std::string& bytes)
{
    CAnswer answer;
    std::istringstream stream(bytes);
    for (std::string line; std::getline(stream, line);)
        Require(answer.AddLine(line + "\n") == (answer.GetFault() == nullptr));
    Require(answer.GetStatus() == 0 || (answer.GetStatus() >= 100 && answer.GetStatus() <= 999));
    Require(!answer.IsRedirect() || (!answer.IsFinal() && !answer.IsInterim()));
    Require(answer.GetContentLength() >= -1);
    Require(answer.GetRangeStart() >= -1);
    Require(answer.GetRangeTotal() >= -1);
    Require(answer.GetHeaders().empty() || answer.GetHeaders().ends_with("\r\n"));
    Require(answer.GetList("Location").starts_with(answer.GetValue("Location")));
    Require(answer.GetValue("Location").find('\n') == std::string::npos);
}
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    CheckAnswer(bytes);

    // No text of a caller ends a line of the request.
    CRequest request;
    request.SetHeaders(bytes);
    for (const uint32_t leftOut : {uint32_t {0}, CRequest::Conditions, CRequest::Credentials})
        for (const std::string& line : request.GetHeaders(leftOut))
        {
            Require(!line.empty());
            Require(!HasLineEnd(line));
        }
    Require(!request.IsValid() || request.GetRangeStart() >= 0);

    ZVString name;
    name.SetFromUTF8(bytes.c_str());
    if (CResourceName::GetKind(name) == CResourceName::Kind::HTTP)
    {
        const std::string address = CResourceName::GetAddress(name);
        Require(!HasLineEnd(address));
        Require(address.empty() || CResourceName::GetLoggedAddress(address).size() <= address.size());
    }
    Require(!CResourceName::CutFileScheme(name) || CResourceName::DecodePercent(bytes).size() <= bytes.size());
    return 0;
}
