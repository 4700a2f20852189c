#pragma once

#include <dlfcn.h>

// A library of the system that is opened when it is first needed, since most processes never need it and should not pay for it at
// their start. Unlike ZVLoadLibrary it is none of the product's. It stays open when the object goes.
class ZVRunTimeLibrary
{
public:
    explicit ZVRunTimeLibrary(const char* fileName)
        : m_handle(dlopen(fileName, RTLD_NOW | RTLD_LOCAL)), m_isComplete(m_handle != nullptr)
    {
    }

    bool IsOpen() const { return m_handle != nullptr; }

    // Finds a function and keeps its address in a pointer of the function's type, or null when the library does not have it.
    template <class Function>
    void Bind(const char* name, Function*& function)
    {
        function = m_handle == nullptr ? nullptr : reinterpret_cast<Function*>(dlsym(m_handle, name));
        m_isComplete = m_isComplete && function != nullptr;
    }

    // True when the library is open and every function was found.
    bool IsComplete() const { return m_isComplete; }

private:
    void* m_handle;
    bool m_isComplete;
};
