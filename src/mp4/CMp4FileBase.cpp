#include "mp4/CMp4FileBase.h"

#include "core/containers/ZVStringHash.h"
#include "mp4/model/Exception.h"
#include "system/file/ZVFileInfo.h"
#include "system/loader/ZVReaders.h"

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
    const ZVFileInfo file(filename.GetPathOnly());
    const bool isOpen = OpenStream(std::make_unique<CLibraryReader>(filename.GetPathOnly()), filename);
    if (file.IsFound())
        m_version = ZVFileVersion(file.GetStatus());
    return isOpen;
}

bool CMp4FileBase::OpenStream(std::unique_ptr<CGeneralReader> stream, const ZVFilename& filename)
{
    Close();
    m_stream = std::move(stream);
    m_reader.Attach(m_stream.get());
    m_fileSize = m_reader.GetLength();
    m_filename = filename;
    return m_stream->IsOpen();
}

// The atoms go first: some of their bytes are still in the file.
void CMp4FileBase::Close()
{
    m_rootAtoms.RemoveAll();
    m_reader.Attach(nullptr);
    m_stream.reset();
    m_fileSize = 0;
    m_atomsEnd = 0;
    m_version.reset();
}

bool CMp4FileBase::ReadAtoms()
{
    if (!IsOpen())
        return Fail(L"Failed to open file");
    const bool isRead = Guard(
        [&]
        {
            while (std::unique_ptr<CAtom> atom = CAtom::Read(m_reader, nullptr, UINT64_MAX))
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
