#pragma once

#include "siblings/reader/internet/CRequest.h"

#include <string>

struct CCurlLibrary;

// One request of an exchange: the first, or one that a redirect asks for.
struct CHop
{
    std::string Address;
    CRequestMethod Method = CRequestMethod::Get;
    // The address has another scheme, host or port than the first one: what proves who the caller is stays away from there.
    bool IsElsewhere = false;
};

// Which answers lead elsewhere, and where to (RFC 9110, 15.4). libcurl could follow too, but it follows every status from 300 to
// 399, and from https to http.
namespace CRedirect
{
// As many as browsers follow before they suspect a circle.
inline constexpr int Maximum = 20;

bool IsRedirectStatus(int status);

// Changes a hop to the one that its answer leads to, with a status and a location relative to the hop's own address. Null when it
// may be followed, otherwise the reason why not. firstAddress is where the exchange began.
const char* Follow(const CCurlLibrary& library, const std::string& firstAddress, int status, const std::string& location,
                   CHop& hop);
}
