#pragma once

#include <cstdint>

class ILogManager;
class IZVApplicationInformation;
class IZVCompression;
class IZVDateServices;
class IZVFileTypes;
class IZVNamedLocks;
class IZVSettings;
class IZVStringTools;

// The tools library as its callers see it: the services that every process and every library of the product shares. A getter that
// gives null is an absent service. All objects belong to the library and live as long as it is loaded.
class IZVTools
{
public:
    // The version of this interface; the getter of the library gives null for another one.
    static constexpr int32_t InterfaceVersion = 200048;

    // Called after the load, by the process with what it knows of itself, which must outlive the library's use. A second call
    // changes nothing. flag is passed on as the process got it. False when the library cannot serve; GetLoadError then tells why.
    virtual bool Initialize(int32_t flag, IZVApplicationInformation* applicationInformation) = 0;
    // The reason of a failed Initialize, empty when it has none to tell.
    virtual const wchar_t* GetLoadError() = 0;
    // What Initialize was given, with the settings of the environment on top.
    virtual IZVApplicationInformation* GetApplicationInformation() = 0;
    // The settings store, opened by the first setting that is asked for.
    virtual IZVSettings* GetSettings(bool create) = 0;
    // What the extension of a file says of it.
    virtual IZVFileTypes* GetFileTypes(bool create) = 0;
    // Search and comparison of texts.
    virtual IZVStringTools* GetTools(bool create) = 0;
    // The date services of a number. Number 1 reads dates; the library has no other.
    virtual IZVDateServices* GetDateServices(int32_t number) = 0;
    // Decoders of compressed bytes.
    virtual IZVCompression* GetCompression(bool create) = 0;
    // The place of a service that the library does not give; it gives null.
    virtual void* GetThreadServices(bool create) = 0;
    // Locks between processes.
    virtual IZVNamedLocks* GetNamedLocks(bool create) = 0;
    // The log manager, or null. With create false none is made for the call.
    virtual ILogManager* GetLogManager(bool create) = 0;

protected:
    ~IZVTools() = default;
};
