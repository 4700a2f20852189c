#pragma once

#include <cstdint>

class ILogManager;
class IZVStringTools;

// The tools library as its callers see it: the services that every process and every library of the product shares. A getter that gives
// null is an absent service. All objects belong to the library and live as long as it is loaded.
class IZVTools
{
public:
    // The version of this interface; the getter of the library gives null for another one.
    static constexpr int32_t InterfaceVersion = 200048;

    // Called once after the load. flag and applicationInfo are passed on as the loading process got them.
    virtual bool Initialize(int32_t flag, void* applicationInfo) = 0;
    // Called once before the library is unloaded.
    virtual void Uninitialize() = 0;
    // Places of services that no caller reaches yet; each gives null.
    virtual void* GetApplicationInformation() = 0;
    virtual void* GetSettings(bool create) = 0;
    virtual void* GetFileTypes(bool create) = 0;
    // Search and comparison of texts.
    virtual IZVStringTools* GetTools(bool create) = 0;
    virtual void* GetDateServices(bool create) = 0;
    virtual void* GetCompression(bool create) = 0;
    virtual void* GetThreadServices(bool create) = 0;
    virtual void* GetNamedLocks(bool create) = 0;
    // The log manager, or null. With create false none is made for the call.
    virtual ILogManager* GetLogManager(bool create) = 0;

protected:
    ~IZVTools() = default;
};
