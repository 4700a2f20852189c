#pragma once

#include "core/string/ZVString.h"

#include <cstdint>

// What the window of a wait message reports to the work that it stands for.
class IZVWaitMessageCallback
{
public:
    // The user does not want to wait any longer.
    virtual void OnWaitMessageCancelled() = 0;
    virtual ~IZVWaitMessageCallback() = default;
};

// How a wait message looks.
struct ZVWaitMessageOptions
{
    ZVString Caption {};  // a load fills in an empty one
    ZVString Text {};
    int32_t DelayMs = 4000;  // before it shows
    bool Flag = true;
    bool Option = false;
};

// A message that something is being waited for.
class IZVWaitMessage
{
public:
    // Changes the text and the percentage that is done, which is -1 when it is not known.
    virtual void SetText(const ZVString& text, int32_t percent) = 0;
    // Takes the message away and frees it. The callback is not called any more.
    virtual void Release() = 0;

protected:
    ~IZVWaitMessage() = default;
};

// Makes wait messages.
class IZVWaitMessageFactory
{
public:
    // Makes a message, or returns null when none can be shown. The callback must outlive it.
    virtual IZVWaitMessage* Create(const ZVWaitMessageOptions& options, IZVWaitMessageCallback& callback) = 0;

protected:
    ~IZVWaitMessageFactory() = default;
};

// The factory of the process; null in a process without windows. Set on the main thread before the first use.
extern IZVWaitMessageFactory* g_pZVWaitMessageFactory;
