#include "system/file/ZVFileSearch.h"

#include "core/containers/ZVOwnedPtrArray.h"
#include "core/containers/ZVUniqueList.h"
#include "system/file/ZVFileFinder.h"
#include "system/filename/ZVPathLayout.h"

#include <memory>

namespace
{
// What tells a folder from every other, whatever name leads to it.
struct FolderIdentity
{
    explicit FolderIdentity(const ZVFileInfo& folder) : Device(folder.GetStatus().st_dev), Inode(folder.GetStatus().st_ino) {}

    uint32_t GetHash() const { return static_cast<uint32_t>(Inode ^ (Inode >> 32) ^ Device); }
    bool operator==(const FolderIdentity&) const = default;

    dev_t Device;
    ino_t Inode;
};
}

// One walk, with the listings of the folders that it is in, from the outermost to the one that it reads, and with all folders
// that it has been in.
class ZVFileSearch::Walk
{
public:
    explicit Walk(ZVFileSearch& search) : m_search(search) {}

    void Run()
    {
        const ZVFileInfo root(m_search.m_folder);
        if (!root.IsDirectory())
            return;
        Enter(root);
        ZVFileInfo entry;
        while (m_listings.GetCount() > 0 && !m_search.IsCancelled() && !m_search.IsFull())
        {
            if (m_listings[m_listings.GetCount() - 1]->GetNext(entry))
                Take(entry);
            else
                m_listings.RemoveAt(m_listings.GetCount() - 1);
        }
    }

private:
    void Enter(const ZVFileInfo& folder)
    {
        if (!m_entered.Add(FolderIdentity(folder)))
            return;
        auto listing = std::make_unique<ZVFileFinder>();
        listing->Find(folder.GetFilename());
        m_listings.Add(listing.get());
        listing.release();
    }

    void Take(const ZVFileInfo& entry)
    {
        if ((entry.GetMode() & m_search.m_skipMask) != 0)
            return;
        if (entry.IsDirectory())
            TakeFolder(entry);
        else if (m_search.Passes(entry.GetPath()))
        {
            m_search.m_results->Add(entry.GetPath());
            m_search.m_totalSize += entry.GetSize();
        }
    }

    void TakeFolder(const ZVFileInfo& folder)
    {
        const ZVString name = m_search.m_skipsHiddenFolders ? folder.GetName() : ZVString();
        if (name.StartsWith(L'.') && name.GetLength() >= 2)
            return;
        if (m_search.m_includesFolders)
            m_search.m_results->Add(folder.GetPath());
        if (m_search.m_isRecursive)
            Enter(folder);
    }

    ZVFileSearch& m_search;
    ZVOwnedPtrArray<ZVFileFinder> m_listings;
    ZVUniqueList<FolderIdentity, const FolderIdentity&> m_entered;
};

ZVFileSearch::ZVFileSearch(const ZVString& folder, const ZVString& filter, bool recursive) : m_isRecursive(recursive)
{
    // An empty folder must not become the root.
    if (!folder.IsEmpty())
        m_folder = ZVPathLayout::WithClosingSlash(folder);
    AddFilter(filter);
}

void ZVFileSearch::AddFilter(const ZVString& extension)
{
    if (!extension.IsEmpty())
        m_filters.Add(extension);
}

void ZVFileSearch::AddFilters(const ZVStringArray& extensions)
{
    for (const ZVString& extension : extensions)
        AddFilter(extension);
}

const ZVStringArray& ZVFileSearch::GetResults()
{
    WalkOnce();
    return *m_results;
}

int32_t ZVFileSearch::GetResults(ZVStringArray& array)
{
    WalkOnce();
    if (&array != m_results)
        for (const ZVString& path : *m_results)
            array.Add(path);
    return array.GetCount();
}

int64_t ZVFileSearch::GetTotalSize()
{
    WalkOnce();
    return m_totalSize;
}

void ZVFileSearch::WalkOnce()
{
    if (m_isWalked)
        return;
    m_isWalked = true;
    Walk(*this).Run();
}

bool ZVFileSearch::Passes(const ZVString& path) const
{
    if (m_filters.GetCount() == 0)
        return true;
    const wchar_t* extension = path.GetText() + ZVPathLayout::Of(path).ExtensionStart;
    for (const ZVString& filter : m_filters)
        if (filter.IsEqual(extension, false))
            return true;
    return false;
}
