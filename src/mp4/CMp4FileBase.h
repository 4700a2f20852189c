#pragma once

#include "core/containers/ZVOwnedPtrArray.h"
#include "mp4/model/CAtom.h"
#include "system/file/ZVFileVersion.h"
#include "system/filename/ZVFilename.h"

#include <memory>
#include <optional>
#include <vector>

// A file of atoms: it opens the file and reads the tree of its atoms. It belongs to one thread.
//
// An operation that fails returns false, and the last error tells why.
class CMp4FileBase
{
public:
    CMp4FileBase();
    CMp4FileBase(const CMp4FileBase&) = delete;
    CMp4FileBase& operator=(const CMp4FileBase&) = delete;
    virtual ~CMp4FileBase();

    // Opens a file for reading, after closing the one that was open. One whose saving was killed in the moment when it stood under
    // another name gets its name back.
    virtual bool Open(const ZVFilename& filename);
    // The same with a file that a reader reads; the name is only that of its properties.
    bool OpenStream(std::unique_ptr<CGeneralReader> stream, const ZVFilename& filename);
    // Checks what the atoms say of each other, once they are read.
    virtual bool Verify() = 0;
    // Writes the file anew with all that its atoms hold now.
    virtual bool Save() = 0;

    // Reads all atoms of the file. One that ends in the middle of an atom keeps those before it, and that is a success.
    bool ReadAtoms();

    // The size of the file in bytes.
    int64_t GetFileSize() const { return m_fileSize; }
    // Where the last atom ends that was read, as its header says.
    int64_t GetAtomsEnd() const { return m_atomsEnd; }
    const ZVFilename& GetFilename() const { return m_filename; }
    // Why the last operation failed, or how the reading of a cut file ended.
    const ZVString& GetLastError() const { return m_lastError; }
    // The atoms of the top level, in the order of the file.
    const ZVOwnedPtrArray<CAtom>& GetRootAtoms() const { return m_rootAtoms; }

protected:
    // Runs a step that may throw. False, with the message as the last error, when it does.
    template <class Step>
    bool Guard(Step step)
    {
        try
        {
            return step();
        }
        catch (...)
        {
            m_lastError = TakeMessage();
            return false;
        }
    }

    bool Fail(const wchar_t* error);
    void SetLastError(const ZVString& error) { m_lastError = error; }
    CAtomReader& GetReader() { return *m_source.Reader; }
    bool IsOpen() { return m_source.Stream != nullptr && m_source.Stream->IsOpen(); }
    // Which file was opened; nothing if it is not one of the disk.
    const std::optional<ZVFileVersion>& GetVersion() const { return m_source.Version; }
    // Whether the files that were taken are what they were when they were opened.
    bool AreTakenFilesSame() const;
    // The file, which is open.
    CGeneralReader& GetStream() { return *m_source.Stream; }
    void AddRootAtom(std::unique_ptr<CAtom> atom);
    // Puts an atom in the place of another, which is handed out.
    std::unique_ptr<CAtom> ReplaceRootAtom(CAtom& atom, std::unique_ptr<CAtom> replacement);
    // Keeps the file of another object open for as long as this one is, for atoms whose bytes are in it. The other object is closed.
    // MakeRoomFor takes the memory for it, so that nothing is thrown once the atoms have come over.
    void MakeRoomFor(const CMp4FileBase& other);
    void TakeFile(CMp4FileBase& other);
    void RemoveRootAtom(CAtom& atom) { m_rootAtoms.RemoveAt(m_rootAtoms.Find(&atom)); }

    // Forgets the atoms and the file.
    virtual void Close();

private:
    // A file, and what atoms read it through, which has to stay where it is.
    struct Source
    {
        std::unique_ptr<CGeneralReader> Stream;
        std::unique_ptr<CAtomReader> Reader = std::make_unique<CAtomReader>();
        ZVString Path = {};
        std::optional<ZVFileVersion> Version = {};
    };

    // Of the exception that is being handled, which is freed.
    static ZVString TakeMessage();

    ZVFilename m_filename;
    Source m_source;
    std::vector<Source> m_taken;
    int64_t m_fileSize = 0;
    int64_t m_atomsEnd = 0;
    ZVOwnedPtrArray<CAtom> m_rootAtoms;
    ZVString m_lastError;
};
