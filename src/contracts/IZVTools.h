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

// The tools library as its callers see it: services for every process and every library of the product. If a getter returns null,
// the service is absent. All objects belong to the library and live as long as it is loaded.
class IZVTools
{
public:
    // The version of this interface; the getter of the library returns null for any other.
    static constexpr int32_t InterfaceVersion = 200048;

    // Called by the process after it has loaded the library, with information that must live as long as the library is used. A
    // second call changes nothing. flag is passed on unchanged. False if the library cannot be used; GetLoadError then says why.
    virtual bool Initialize(int32_t flag, IZVApplicationInformation* applicationInformation) = 0;
    // The reason why Initialize failed, or empty.
    virtual const wchar_t* GetLoadError() = 0;
    // What Initialize was given, overridden by the environment.
    virtual IZVApplicationInformation* GetApplicationInformation() = 0;
    // The settings store, which is opened by the first access to a setting.
    virtual IZVSettings* GetSettings(bool create) = 0;
    // What the extension of a file says about it.
    virtual IZVFileTypes* GetFileTypes(bool create) = 0;
    // Search and comparison of texts.
    virtual IZVStringTools* GetTools(bool create) = 0;
    // The date services with a number. Number 1 reads dates; there is no other.
    virtual IZVDateServices* GetDateServices(int32_t number) = 0;
    // Decoders of compressed bytes.
    virtual IZVCompression* GetCompression(bool create) = 0;
    // Always null: the place of a service that this library does not have.
    virtual void* GetThreadServices(bool create) = 0;
    // Locks between processes.
    virtual IZVNamedLocks* GetNamedLocks(bool create) = 0;
    // The log manager, or null. With create false none is created by the call.
    virtual ILogManager* GetLogManager(bool create) = 0;

protected:
    ~IZVTools() = default;
};
