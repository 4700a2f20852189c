#pragma once

#include "core/containers/ZVBuffer.h"
#include "core/string/ZVString.h"

class ZVFilename;

// A form with fields and files as the body of a request (RFC 7578), in UTF-8.
class ZVMultipartForm
{
public:
    // What separates the fields, without the two hyphens before it. Nobody checks that no field contains it.
    static constexpr wchar_t Boundary[] = L"--------ieoau._._+2_8_GoodLuck8.3-ds0d0J0S0Kl234324jfLdsjfdAuaoei-----";

    void AddText(const ZVString& name, const ZVString& value);
    // Adds the bytes of a local file under its bare name, with its content type when the file type registry knows it. False, with
    // nothing added and the cause logged, when the file cannot be read.
    bool AddFile(const ZVString& name, const ZVFilename& file);
    // Ends the form. Nothing is added after that.
    void Finish();

    // The body so far.
    const ZVBuffer& GetBody() const { return m_body; }

private:
    void AppendBoundary(const wchar_t* end);
    void AppendText(const ZVString& text);

    ZVBuffer m_body;
};
