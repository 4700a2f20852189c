#pragma once

#include "mp4/CMp4FileBase.h"
#include "mp4/heif/MetadataItemKind.h"
#include "mp4/model/CAtom.h"

#include <cstdint>
#include <span>

class CContainerAtom;
class CILSTAtom;
class CMOOVAtom;
class CUUIDAtom;
class CUdtaAtom;
class ZVPropertyMap;

// Tells the tags, the properties and the cover picture of an MP4 or QuickTime file. Made for one file, and used in this order: the
// constructor, AllowMissingFTYP for a file of QuickTime, Open, ReadAtoms, Verify, and then what is asked. Before Verify there are
// no answers.
class CMp4File : public CMp4FileBase
{
public:
    // With checkOverlap Verify also fails for samples that lie over each other. The second argument has no meaning. Unless mdat
    // may be missing, a file without media fails.
    explicit CMp4File(bool checkOverlap = false, int32_t reserved = 0, bool allowMissingMDAT = true);
    ~CMp4File() override;

    // QuickTime wrote files without ftyp.
    void AllowMissingFTYP() { m_allowMissingFTYP = true; }

    // Finds the parts of the file, looks for media that its atoms do not lead to, and verifies the movie. What the movie throws
    // becomes the last error and goes on to the caller, who frees it.
    bool Verify() override;

    // Adds the movie of a second file behind the own one; both must be verified. From then on the media of both are those of this
    // file, which therefore keeps the second one's file open, and the second object is closed. When it fails, both are as they were.
    // The tags stay those of this file.
    bool Append(CMp4File& second);

    // Writes the film anew and puts it in the place of the file, which was verified. The film is never lost: the new file is written
    // in the folder for temporary files, read again and compared, and only then takes the name. It keeps owner, mode and extended
    // attributes; a symbolic link keeps leading to it; other names of the file keep the old content.
    //
    // A film that might not survive it is refused, such as one that is cut, in fragments, or with offsets that cannot be moved, and
    // a file that was changed since it was opened. Whenever it fails the file is as it was. Once the new file was to take its place
    // this object is closed.
    bool Save() override;

    // Sets what the tags tell. True when there is at least one.
    bool GetTags(ZVPropertyMap& map);
    // Sets a tag in the atoms that were read, or removes it if the value is empty. The names are those of GetTags, in any case. A
    // name that is not known becomes a free-form tag; what the file itself determines is left alone, which is a success. What GetTags
    // makes of other tags, as Camera of Make and Model, is a free-form tag too, which GetTags shows where there are no such tags. The
    // value of "Image File" is the path of a picture. False, with nothing changed, for a value that the tag cannot have.
    bool SetTag(const ZVString& name, const ZVString& value);
    // Sets metadata of the primary picture of an image sequence in the atoms that were read: a TIFF block as Exif, or an XMP document.
    // Without bytes it removes what there is of the kind; bytes of old metadata among the media stay there, but nothing leads to
    // them any more. False, with nothing changed, for a file without a list of pictures or with one that cannot be changed safely.
    bool SetMetadataItem(MetadataItemKind kind, std::span<const uint8_t> bytes);
    // Sets what the file is: type, size, duration in seconds, sample rate, channels, bit depth, kind of media, width and height in
    // pixels, kilobits a second, frames a second, and the codecs in words.
    bool GetFileInfo(ZVPropertyMap& map);
    // Writes the cover picture to a file; with an empty name to a new temporary file, whose name is set. False without a picture.
    bool GetImageFile(ZVFilename& filename);

protected:
    void Close() override;

private:
    void ForgetParts();
    bool FindParts();
    void RecoverMDAT();
    CILSTAtom* FindILST(CUdtaAtom*& udta);
    CContainerAtom* FindQTMeta();
    void SetUITSPayload(const ZVString& value);
    bool GetAllTags(ZVPropertyMap& map);
    bool WriteImage(ZVFilename& filename);
    void AppendMovie(CMp4File& second);
    bool SetFileInfo(ZVPropertyMap& map) const;
    int64_t GetBitrate(double duration) const;

    const CAtom* m_ftyp = nullptr;
    CMOOVAtom* m_moov = nullptr;
    CMDATList m_mdatList;
    CUUIDAtom* m_uits = nullptr;
    CILSTAtom* m_ilst = nullptr;
    CContainerAtom* m_qtMeta = nullptr;
    bool m_checkOverlap;
    bool m_allowMissingMDAT;
    bool m_allowMissingFTYP = false;
    bool m_isVerified = false;
};
