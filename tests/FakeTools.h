#pragma once

#include "contracts/ILogManager.h"
#include "contracts/IZVStringTools.h"
#include "contracts/IZVTools.h"
#include "core/string/ZVString.h"

#include <algorithm>
#include <string>
#include <vector>

// A log manager that formats every line and keeps it as "category|scope|text" in UTF-8.
class FakeLogManager final : public ILogManager
{
public:
    void SetCategoryMask(uint32_t) override {}
    uint32_t GetCategoryMask() override { return UINT32_MAX; }

    void LogWide(uint32_t category, const wchar_t* scopeName, const wchar_t* format, const ZVFormatRecord* const* arguments,
                 int32_t argumentCount) override
    {
        ZVString line = ZVFormat(L"%d|%s|", category, scopeName);
        if (arguments == nullptr)
            line += format;
        else
            line.AppendFormatList(format, arguments, argumentCount);
        char* bytes = line.GetUTF8();
        Lines.emplace_back(bytes);
        delete[] bytes;
    }

    void LogNarrow(uint32_t category, const wchar_t* scopeName, const char* format, const ZVFormatRecord* const* arguments,
                   int32_t argumentCount) override
    {
        LogWide(category, scopeName, ZVString::FromUTF8(format), arguments, argumentCount);
    }

    void Flush() override {}
    const wchar_t* GetFilePath() override { return L""; }
    void AddCustomOutput(ILogManagerCustomOutput* item) override { Outputs.push_back(item); }
    void RemoveCustomOutput(ILogManagerCustomOutput* item) override { std::erase(Outputs, item); }

    std::vector<std::string> Lines;
    std::vector<ILogManagerCustomOutput*> Outputs;
};

// A tools object with nothing but a log manager. A test that needs another service derives from it.
class FakeTools : public IZVTools
{
public:
    bool Initialize(int32_t, IZVApplicationInformation*) override { return true; }
    const wchar_t* GetLoadError() override { return L""; }
    IZVApplicationInformation* GetApplicationInformation() override { return nullptr; }
    IZVSettings* GetSettings(bool) override { return nullptr; }
    IZVFileTypes* GetFileTypes(bool) override { return nullptr; }
    IZVStringTools* GetTools(bool) override { return nullptr; }
    IZVDateServices* GetDateServices(int32_t) override { return nullptr; }
    IZVCompression* GetCompression(bool) override { return nullptr; }
    void* GetThreadServices(bool) override { return nullptr; }
    IZVNamedLocks* GetNamedLocks(bool) override { return nullptr; }
    ILogManager* GetLogManager(bool) override { return &Manager; }

    virtual ~FakeTools() = default;

    FakeLogManager Manager;
};
