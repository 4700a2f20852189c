#include "mp4/CMp4Saver.h"

#include "mp4/CMp4File.h"
#include "mp4/model/CAtomWriter.h"
#include "mp4/model/Exception.h"
#include "mp4/save/CMp4Comparison.h"
#include "mp4/save/CMp4Layout.h"
#include "mp4/save/CMp4SaveCheck.h"
#include "system/file/ZVFileInfo.h"
#include "system/file/ZVFileSystem.h"
#include "system/file/ZVFolderLock.h"
#include "system/file/ZVSafeReplace.h"
#include "system/filename/ZVNativePath.h"
#include "system/filename/ZVPathLayout.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace
{
constexpr wchar_t TemporaryBase[] = L"TempMp4FileForTagging";
constexpr wchar_t TemporaryExtension[] = L"mp4";

// The bytes of the new file.
class CTemporarySink final : public IAtomSink
{
public:
    explicit CTemporarySink(ZVLockedTemporaryFile& file) : m_file(file) {}

    bool Write(const void* bytes, int64_t count) override
    {
        if (!m_file.Write(bytes, count))
            ThrowException(L"Error %d writing the new file: %s", errno, m_file.GetPath());
        return true;
    }

private:
    ZVLockedTemporaryFile& m_file;
};

bool IsAllowed(const ZVString& path, int rights)
{
    return euidaccess(ZVNativePath(path), rights) == 0;
}
}

CMp4Saver::CMp4Saver(const CFilmToSave& film) : m_film(film) {}

CMp4Saver::~CMp4Saver() = default;

void CMp4Saver::WriteNewFile()
{
    FindTarget();
    CheckVersion();
    CheckFilm();
    CMp4SaveCheck::KeepLongHeaders(m_film.Roots);
    const CMp4Layout layout(m_film.Roots);
    CMp4SaveCheck::CheckMove(m_film.Roots, layout);
    m_newFile = std::make_unique<ZVLockedTemporaryFile>(TemporaryBase, TemporaryExtension);
    if (!m_newFile->IsReady())
        ThrowException(L"Error %d making the new file: %s", m_newFile->GetError(), m_newFile->GetPath());
    m_newSize = layout.GetFileSize();
    CheckSpace();
    Write(layout);
    CheckNewFile();
}

void CMp4Saver::FindTarget()
{
    char resolved[PATH_MAX];
    if (!m_film.Version || realpath(ZVNativePath(m_film.Path), resolved) == nullptr)
        ThrowException(L"There is no such file on this machine: %s", m_film.Path);
    m_target = ZVNativePath::ToText(resolved);
    const ZVFileInfo target(m_target);
    if (!S_ISREG(target.GetMode()))
        ThrowException(L"It is no plain file: %s", m_target);
    if (!IsAllowed(m_target, W_OK))
        ThrowException(L"The file may not be written: %s", m_target);
    const ZVString folder = ZVPathLayout::FolderOf(m_target);
    if (!IsAllowed(folder, W_OK | X_OK))
        ThrowException(L"No file may be replaced in the folder: %s", folder);
    // A film that stands in the folder for temporary files under one of their names would be cleared away as a remnant.
    m_lock = ZVDescriptor(open(ZVNativePath(m_target), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (m_lock.IsOpen() && !ZVFolderLock::Try(m_lock, LOCK_SH) && errno == EWOULDBLOCK)
        ThrowException(L"Another program has the file locked: %s", m_target);
}

void CMp4Saver::CheckVersion() const
{
    if (*m_film.Version != ZVFileVersion(ZVFileInfo(m_target).GetStatus()))
        ThrowException(L"The file was changed after it was opened: %s", m_target);
}

void CMp4Saver::CheckFilm() const
{
    if (m_film.AtomsEnd != m_film.FileSize)
        ThrowException(L"The atoms end at byte %I64d, and the file at %I64d", m_film.AtomsEnd, m_film.FileSize);
    CMp4SaveCheck::TieItems(m_film.Roots);
    CMp4SaveCheck::CheckPlaces(m_film.Roots);
}

// The film stays until the new one is whole, so on its own device there must be room for both.
void CMp4Saver::CheckSpace() const
{
    for (const ZVString& folder : {ZVPathLayout::FolderOf(m_newFile->GetPath()), ZVPathLayout::FolderOf(m_target)})
    {
        int64_t available = 0;
        if (ZVFileSystem::ZVStatFS(folder, nullptr, nullptr, &available) && available < m_newSize)
            ThrowException(L"There is no room for the new file in %s: it needs %I64d bytes, and %I64d are free", folder,
                           m_newSize, available);
    }
}

void CMp4Saver::Write(const CMp4Layout& layout)
{
    const CMovedOffsets moved(m_film.Roots, layout);
    CTemporarySink sink(*m_newFile);
    CAtomWriter writer(sink);
    int64_t expected = 0;
    for (CAtom* const root : m_film.Roots)
    {
        root->Write(writer);
        expected += static_cast<int64_t>(root->GetSize());
        if (writer.GetCount() != expected)
            ThrowException(L"%s has another size than it should", root->GetTypeName());
    }
    writer.Flush();
    if (!m_newFile->Finish())
        ThrowException(L"Error %d writing the new file: %s", errno, m_newFile->GetPath());
}

void CMp4Saver::CheckNewFile() const
{
    CMp4File written(false, 0, true);
    if (m_film.AllowsMissingFTYP)
        written.AllowMissingFTYP();
    written.Open(ZVFilename::FromPath(m_newFile->GetPath()));
    if (!written.ReadAtoms() || !written.Verify())
        ThrowException(L"The new file cannot be read: %s", written.GetLastError());
    for (const int64_t size : {written.GetFileSize(), written.GetAtomsEnd()})
        if (size != m_newSize)
            ThrowException(L"The new file has %I64d bytes and not %I64d", size, m_newSize);
    CMp4SaveCheck::TieItems(written.GetRootAtoms());
    CMp4SaveCheck::CheckPlaces(written.GetRootAtoms());
    CompareFilms(m_film.Roots, written.GetRootAtoms());
}

void CMp4Saver::ReplaceFile()
{
    CheckVersion();
    const ZVReplaceOptions options {
        .MinimumSize = m_newSize, .From = ZVReplaceOptions::Attributes::OfOldFile, .Expected = m_film.Version};
    // It deletes the new file too when it fails.
    m_newFile->HandOver();
    if (!ZVSafeReplace(m_target, m_newFile->GetPath(), options).Run())
        ThrowException(L"The new file could not take the place of the old one, which is as it was: %s", m_target);
}
