#pragma once

#include "caller/catalog/CStatement.h"
#include "caller/files/CDescriptor.h"
#include "caller/tasks/CFindings.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

// What a file is by its status: when none of it changes, the content is the same. The number of its device is left out, since a disk may
// get another each time it is plugged in.
struct CFileIdentity
{
    int64_t Size = 0;              // in bytes
    int64_t ModificationTime = 0;  // in nanoseconds since 1970
    int64_t Inode = 0;

    bool operator==(const CFileIdentity&) const = default;
};

// What a scan asks of a row.
struct CCatalogRow
{
    int64_t ID = 0;
    CFileIdentity Identity;
    CTaskSet Done;
    CTaskSet Failed;
    bool IsSound = false;
    bool HasVanished = false;
};

// The catalog of a library: an SQLite file with a row for each film. A process that ends at any moment leaves it whole. Several programs
// may read it, one may change it.
//
// What goes wrong is thrown as std::runtime_error with a sentence for the user.
class CCatalog
{
public:
    enum class Access
    {
        Read,
        Change,  // makes the file if it is not there; throws if another program changes it
    };

    CCatalog(const std::filesystem::path& path, Access access);
    CCatalog(const CCatalog&) = delete;
    CCatalog& operator=(const CCatalog&) = delete;
    ~CCatalog();

    // The row of a path, as bytes; nothing if there is none.
    std::optional<CCatalogRow> Find(const std::string& path);
    // Stores what was found out about a file. What other tasks found out about the same content stays.
    void Store(const CFindings& findings, const CFileIdentity& identity);
    // Marks the films below a folder as vanished, but for those of which the function says that they are there; they are no rows of
    // lists then. Returns how many there were.
    int64_t MarkVanished(const std::string& folder, const std::function<bool(int64_t id, const std::string& path)>& isThere);
    // A file that was marked is there again, with the content that it had.
    void MarkPresent(int64_t id);

    // Changes are on the disk after that.
    void Commit();

    // A table of the films: path BLOB, a column for each field by its name, which for words holds ";a;b;", error, vanished, and
    // facts, an object of JSON. The table pictures has a picture for films that have one.
    sqlite3* GetDatabase() const { return m_database.get(); }

private:
    struct Close
    {
        void operator()(sqlite3* database) const { sqlite3_close_v2(database); }
    };

    void Open(const std::filesystem::path& path, Access access);
    void MakeFolder(const std::filesystem::path& path) const;
    void TakeLock(const std::filesystem::path& path);
    int64_t GetNumber(const char* query) const;
    bool IsNew() const;
    void CheckVersion(const std::filesystem::path& path) const;
    void MakeTables();
    void Execute(const char* text) const;
    void Begin();
    bool AddKnown(const CFileIdentity& identity, CFindings& findings);
    void StorePicture(int64_t id, const CFindings& findings);

    std::unique_ptr<sqlite3, Close> m_database;
    CDescriptor m_lock;
    bool m_isChanging = false;
    std::optional<CStatement> m_find;
    std::optional<CStatement> m_known;
    std::optional<CStatement> m_store;
    std::optional<CStatement> m_present;
};
