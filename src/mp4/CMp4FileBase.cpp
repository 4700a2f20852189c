#include "mp4/CMp4FileBase.h"

#include "core/containers/ZVStringHash.h"
#include "mp4/model/Exception.h"
#include "system/file/ZVFileInfo.h"
#include "system/file/ZVSafeReplace.h"
#include "system/loader/ZVReaders.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace
{
// A file through a reader of the reader library.
class CLibraryReader final : public CGeneralReader
{
public:
    explicit CLibraryReader(const ZVString& path) : m_reader(ZVReaders::CreateGeneric(path))
    {
        if (m_reader != nullptr)
            m_reader->Open();
    }

    int64_t Read(void* bytes, int64_t count) override { return m_reader->Read(bytes, count); }
    int64_t Seek(int64_t position) override { return m_reader->Seek(position); }
    int64_t GetLength() override { return IsOpen() ? m_reader->GetSize() : 0; }
    bool IsOpen() override { return m_reader != nullptr && m_reader->IsOpen(); }

private:
    ZVReaderPointer m_reader;
};
}

CMp4FileBase::CMp4FileBase() = default;

CMp4FileBase::~CMp4FileBase() = default;

bool CMp4FileBase::Open(const ZVFilename& filename)
{
    // Asked for before the file is opened: one that is exchanged in between then passes for a changed one.
    ZVFileInfo file(filename.GetPathOnly());
    const bool isMissing = !file.IsFound() || S_ISLNK(file.GetMode());
    if (isMissing && ZVSafeReplace::PutBack(filename.GetPathOnly()))
        file = ZVFileInfo(filename.GetPathOnly());
    const bool isOpen = OpenStream(std::make_unique<CLibraryReader>(filename.GetPathOnly()), filename);
    if (file.IsFound())
        m_source.Version = ZVFileVersion(file.GetStatus());
    return isOpen;
}

bool CMp4FileBase::OpenStream(std::unique_ptr<CGeneralReader> stream, const ZVFilename& filename)
{
    Close();
    m_source.Stream = std::move(stream);
    GetReader().Attach(m_source.Stream.get());
    m_fileSize = GetReader().GetLength();
    m_filename = filename;
    m_source.Path = filename.GetPathOnly();
    return m_source.Stream->IsOpen();
}

// The atoms go first: some of their bytes are still in the file.
void CMp4FileBase::Close()
{
    m_rootAtoms.RemoveAll();
    m_taken.clear();
    GetReader().Attach(nullptr);
    m_source.Stream.reset();
    m_fileSize = 0;
    m_atomsEnd = 0;
    m_source.Version.reset();
}

bool CMp4FileBase::ReadAtoms()
{
    if (!IsOpen())
        return Fail(L"Failed to open file");
    const bool isRead = Guard(
        [&]
        {
            while (std::unique_ptr<CAtom> atom = CAtom::Read(GetReader(), nullptr, UINT64_MAX))
            {
                m_atomsEnd = static_cast<int64_t>(atom->GetPosition() + atom->GetSize());
                AddRootAtom(std::move(atom));
            }
            return true;
        });
    return isRead || ZVStringHash::Equal<false>(m_lastError, ReadPastEnd);
}

void CMp4FileBase::AddRootAtom(std::unique_ptr<CAtom> atom)
{
    m_rootAtoms.Add(atom.get());
    atom.release();
}

std::unique_ptr<CAtom> CMp4FileBase::ReplaceRootAtom(CAtom& atom, std::unique_ptr<CAtom> replacement)
{
    m_rootAtoms.SetElement(m_rootAtoms.Find(&atom), replacement.release(), false);
    return std::unique_ptr<CAtom>(&atom);
}

void CMp4FileBase::MakeRoomFor(const CMp4FileBase& other)
{
    m_taken.reserve(m_taken.size() + other.m_taken.size() + 1);
}

void CMp4FileBase::TakeFile(CMp4FileBase& other)
{
    Source fresh;
    m_taken.push_back(std::exchange(other.m_source, std::move(fresh)));
    std::ranges::move(other.m_taken, std::back_inserter(m_taken));
    other.Close();
}

bool CMp4FileBase::AreTakenFilesSame() const
{
    return std::ranges::all_of(m_taken, [](const Source& file)
                               { return file.Version && *file.Version == ZVFileVersion(ZVFileInfo(file.Path).GetStatus()); });
}

bool CMp4FileBase::Fail(const wchar_t* error)
{
    m_lastError = error;
    return false;
}

ZVString CMp4FileBase::TakeMessage()
{
    try
    {
        throw;
    }
    catch (Exception* exception)
    {
        const std::unique_ptr<Exception> owner(exception);
        return owner->Message;
    }
    catch (...)
    {
        return L"Unknown error";
    }
}
