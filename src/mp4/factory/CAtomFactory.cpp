#include "mp4/factory/CAtomFactory.h"

#include "mp4/factory/AtomClasses.h"
#include "mp4/model/CFieldReader.h"
#include "mp4/model/Exception.h"
#include "mp4/tags/TagTypes.h"
#include "system/log/ZVLogScope.h"

#include <algorithm>
#include <utility>

namespace
{
// Whatever the type is.
constexpr uint32_t AnyType = 0;
// Wherever the atom is.
constexpr uint32_t AnyParent = 0;

// One class of atoms, for a type inside a parent.
struct FactoryRow
{
    uint32_t Type;
    uint32_t Parent;
    const CAtomClass* Class;
};

// The first row that fits tells the class; an atom that fits none is kept as it stands.
// clang-format off
constexpr FactoryRow FactoryRows[] = {
    // The movie and its tracks.
    {FourCC("ftyp"), AnyParent, &CFTYPAtom::Class},
    {FourCC("moov"), AnyParent, &CMOOVAtom::Class},
    {FourCC("mvhd"), AnyParent, &CMVHDAtom::Class},
    {FourCC("trak"), AnyParent, &CTRAKAtom::Class},
    {FourCC("tkhd"), AnyParent, &CTKHDAtom::Class},
    {FourCC("tref"), AnyParent, &CTREFAtom::Class},
    {FourCC("hint"), AnyParent, &CTrackReferenceTypeAtom::Class},
    {FourCC("mpod"), AnyParent, &CTrackReferenceTypeAtom::Class},
    {FourCC("sync"), AnyParent, &CTrackReferenceTypeAtom::Class},
    {FourCC("edts"), AnyParent, &CEDTSAtom::Class},
    {FourCC("elst"), AnyParent, &CELSTAtom::Class},
    {FourCC("mdia"), AnyParent, &CMDIAAtom::Class},
    {FourCC("mdhd"), AnyParent, &CMDHDAtom::Class},
    {FourCC("hdlr"), AnyParent, &CHDLRAtom::Class},
    {FourCC("minf"), AnyParent, &CMINFAtom::Class},
    {FourCC("vmhd"), AnyParent, &CVMHDAtom::Class},
    {FourCC("smhd"), AnyParent, &CSMHDAtom::Class},
    {FourCC("nmhd"), AnyParent, &CNMHDAtom::Class},
    {FourCC("hmhd"), AnyParent, &CHMHDAtom::Class},
    {FourCC("dinf"), AnyParent, &CDINFAtom::Class},
    {FourCC("dref"), AnyParent, &CDREFAtom::Class},
    {FourCC("url "), AnyParent, &CDataEntryAtom::Class},
    {FourCC("urn "), AnyParent, &CDataEntryAtom::Class},
    {FourCC("iods"), AnyParent, &CIODSAtom::Class},
    {FourCC("udta"), AnyParent, &CUdtaAtom::Class},
    {FourCC("cprt"), FourCC("udta"), &CCopyrightAtom::Class},
    {FourCC("mdat"), AnyParent, &CMDATAtom::Class},
    {FourCC("uuid"), AnyParent, &CUUIDAtom::Class},
    {FourCC("free"), AnyParent, &CFREEAtom::Class},
    {FourCC("skip"), AnyParent, &CFREEAtom::Class},
    {FourCC("wide"), AnyParent, &CFREEAtom::Class},
    {FourCC("tapt"), AnyParent, &CFREEAtom::Class},

    // The samples of a track, and how they are coded.
    {FourCC("stbl"), AnyParent, &CSTBLAtom::Class},
    {FourCC("stsd"), AnyParent, &CSTSDAtom::Class},
    {FourCC("stts"), AnyParent, &CSTTSAtom::Class},
    {FourCC("stsc"), AnyParent, &CSTSCAtom::Class},
    {FourCC("stsz"), AnyParent, &CSTSZAtom::Class},
    {FourCC("stco"), AnyParent, &CSTCOAtom::Class},
    {FourCC("co64"), AnyParent, &CCO64Atom::Class},
    {FourCC("stss"), AnyParent, &CSTSSAtom::Class},
    {FourCC("avc1"), AnyParent, &CVIDEAtom::Class},
    {FourCC("mp4v"), AnyParent, &CVIDEAtom::Class},
    {FourCC("jpeg"), AnyParent, &CVIDEAtom::Class},
    {FourCC("rle "), AnyParent, &CVIDEAtom::Class},
    {FourCC("SVQ1"), AnyParent, &CVIDEAtom::Class},
    {FourCC("SVQ3"), AnyParent, &CVIDEAtom::Class},
    {FourCC("cvid"), AnyParent, &CVIDEAtom::Class},
    {FourCC("civd"), AnyParent, &CVIDEAtom::Class},
    {FourCC("vide"), AnyParent, &CVIDEAtom::Class},
    {FourCC("ac-3"), AnyParent, &CSOUNAtomGeneral::Class},
    {FourCC("ec-3"), AnyParent, &CSOUNAtomGeneral::Class},
    {FourCC("soun"), AnyParent, &CSOUNAtomGeneral::Class},
    {FourCC("mp4a"), FourCC("stsd"), &CSOUNAtomGeneral::Class},
    {FourCC("alac"), FourCC("stsd"), &CSOUNAtomGeneral::Class},
    {FourCC("alac"), FourCC("alac"), &CALACDesc::Class},
    {FourCC("raw "), AnyParent, &CSWOTAtom::Class},
    {FourCC("sowt"), AnyParent, &CSWOTAtom::Class},
    {FourCC("twos"), AnyParent, &CSWOTAtom::Class},
    {FourCC("ulaw"), AnyParent, &CSWOTAtom::Class},
    {FourCC("QDM2"), AnyParent, &CSWOTAtom::Class},
    {FourCC("rtp "), AnyParent, &CRTPAtom::Class},
    {FourCC("mp4s"), AnyParent, &CSampleEntryAtom::Class},
    {FourCC("esds"), AnyParent, &CESDSAtom::Class},
    {FourCC("chan"), AnyParent, &AudioChannelLayoutAtom::Class},
    {FourCC("frma"), AnyParent, &FRMAAtom::Class},
    {FourCC("wave"), AnyParent, &WAVEAtom::Class},

    // Tags. Those that an ilst knows by their type have a table of their own.
    {FourCC("ilst"), AnyParent, &CILSTAtom::Class},
    {FourCC("----"), AnyParent, &C4DashesAtom::Class},
    {FourCC("mean"), AnyParent, &CFreeFormTextAtom::MeanClass},
    {FourCC("name"), AnyParent, &CFreeFormTextAtom::NameClass},
    {FourCC("data"), AnyParent, &CTagDataAtom::Class},

    // The metadata of QuickTime.
    {FourCC("keys"), AnyParent, &MetadataItemKeysAtom::Class},

    // The items of pictures.
    {FourCC("iinf"), AnyParent, &IInfAtom::Class},
    {FourCC("infe"), AnyParent, &InfeAtom::Class},
    {FourCC("iloc"), AnyParent, &ILocAtom::Class},
    {FourCC("idat"), AnyParent, &IDatAtom::Class},
    {FourCC("iref"), AnyParent, &IRefAtom::Class},
    {FourCC("pitm"), AnyParent, &PrimaryItemAtom::Class},
    {FourCC("iprp"), AnyParent, &ItemPropertiesAtom::Class},
    {FourCC("ipco"), AnyParent, &ItemPropContainerAtom::Class},
    {FourCC("ipma"), AnyParent, &ItemPropAssocAtom::Class},

    // What else a list holds, after all types that are known wherever they are. In an ilst it is the number of a key.
    {AnyType, FourCC("ilst"), &MetadataItemAtom::Class},
    {AnyType, FourCC("iref"), &IRefEntryAtom::Class},
};
// clang-format on

constexpr uint32_t META = FourCC("meta");
constexpr uint32_t HDLR = FourCC("hdlr");
constexpr uint32_t ILST = FourCC("ilst");

// What only a meta atom without a version begins with.
constexpr uint32_t FirstOfPlainMeta[] = {HDLR, FourCC("keys"), ILST};

// So many bytes behind an atom that was not read whole are shown in the log.
constexpr int32_t MaximumBytesLogged = 24;

void LogNextBytes(const ZVLogScope& scope, CAtomReader& reader)
{
    const int64_t count = std::min<int64_t>(reader.GetAvailable(), MaximumBytesLogged);
    for (int64_t index = 0; index < count; ++index)
    {
        const auto byte = static_cast<int32_t>(reader.ReadNumber(1));
        if (byte >= 0x20 && byte <= 0x7e)
            scope.Log("%x %c", byte, byte);
        else
            scope.Log("%x", byte);
    }
}

// Counts how deep the atom lies that is being read.
class Nesting
{
public:
    explicit Nesting(CAtomLimits& limits) : m_limits(limits)
    {
        ++m_limits.Depth;
        ++m_limits.Atoms;
    }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;
    ~Nesting() { --m_limits.Depth; }

private:
    CAtomLimits& m_limits;
};
}

const CAtomClass& CAtomFactory::FindClass(uint32_t type, uint32_t parentType)
{
    if (const CAtomClass* const tag = parentType == ILST ? FindTagClass(type) : nullptr)
        return *tag;
    for (const FactoryRow& row : FactoryRows)
        if ((row.Type == type || row.Type == AnyType) && (row.Parent == parentType || row.Parent == AnyParent))
            return *row.Class;
    return CFREEAtom::Class;
}

std::unique_ptr<CAtom> CAtom::Read(CAtomReader& reader, CAtom* parent, uint64_t available)
{
    const int64_t start = reader.GetPosition();
    if (start == reader.GetLength() || reader.Limits.Atoms >= CAtomLimits::MaximumAtoms)
        return nullptr;
    const auto size = static_cast<uint32_t>(reader.ReadNumber(4));
    const auto type = static_cast<uint32_t>(reader.ReadNumber(4));
    const bool isLarge = size == 1;
    if (isLarge ? available < LargeHeaderSize : size < HeaderSize || size > available)
    {
        reader.Seek(start);
        return nullptr;
    }
    if (reader.Limits.Depth >= CAtomLimits::MaximumDepth)
        ThrowException(L"There are more than %d atoms inside each other", CAtomLimits::MaximumDepth);
    const Nesting nesting(reader.Limits);
    const int64_t headerSize = isLarge ? LargeHeaderSize : HeaderSize;
    // A size that is smaller than its own header makes the count negative, and the atom fails.
    const uint64_t wholeSize = isLarge ? reader.ReadNumber(8) : size;
    const auto remaining = static_cast<int64_t>(wholeSize - static_cast<uint64_t>(headerSize));
    std::unique_ptr<CAtom> atom =
        CAtomFactory::ReadAtom(reader, parent, {type, static_cast<uint64_t>(start), headerSize, remaining});
    atom->SetParent(parent);
    return atom;
}

std::unique_ptr<CAtom> CAtomFactory::ReadAtom(CAtomReader& reader, CAtom* parent, const Header& from)
{
    const ZVLogScope scope(ZVLogCategory::General, "CAtom::Read", false);
    Header header = from;
    std::unique_ptr<CAtom> atom =
        header.Type == META ? ReadMeta(reader, parent, header)
                            : ReadBody(FindClass(header.Type, parent == nullptr ? 0 : parent->GetType()), reader, parent, header);
    if (header.Remaining == 0)
        return atom;
    const ZVString message = ZVFormat(L"CAtom::Read Expected empty size %I64d, Pos %I64d, Size %I64d, %s\n", header.Remaining,
                                      atom->GetPosition(), atom->GetSize(), atom->GetTypeName());
    scope.Log("%s", message);
    LogNextBytes(scope, reader);
    throw new Exception(message);
}

// The same bytes can be a meta atom with a version or one without, and only what is in it tells which.
std::unique_ptr<CAtom> CAtomFactory::ReadMeta(CAtomReader& reader, CAtom* parent, Header& header)
{
    const CAtomClass* tries[] = {&CMetaAtom::Class, &QTMetaAtom::Class};
    const int64_t body = reader.GetPosition();
    reader.ReadNumber(4);
    const auto second = static_cast<uint32_t>(reader.ReadNumber(4));
    reader.Seek(body);
    if (std::ranges::find(FirstOfPlainMeta, second) != std::end(FirstOfPlainMeta))
        std::swap(tries[0], tries[1]);
    for (const CAtomClass* const atomClass : tries)
        if (std::unique_ptr<CAtom> atom = Try(*atomClass, reader, parent, header))
            return atom;
    return ReadBody(CFREEAtom::Class, reader, parent, header);
}

// Null, with the reader where it was, for what turns out to be something else. Atoms inside each other that are all tried twice
// would be read again and again, so that ends when too much was read in vain. An attempt counts from its start, since those inside
// it are made before it is known to be in vain.
std::unique_ptr<CAtom> CAtomFactory::Try(const CAtomClass& atomClass, CAtomReader& reader, CAtom* parent, Header& header)
{
    CAtomLimits& limits = reader.Limits;
    const int64_t bytesAtMost = std::clamp<int64_t>(header.Remaining, 0, reader.GetAvailable());
    if (limits.RereadBytes + bytesAtMost > 2 * reader.GetLength() + CAtomLimits::RereadAllowance)
        return nullptr;
    limits.RereadBytes += bytesAtMost;
    const int32_t entries = limits.Entries;
    const int64_t body = reader.GetPosition();
    Header attempt = header;
    std::unique_ptr<CAtom> atom = ReadBody(atomClass, reader, parent, attempt);
    limits.RereadBytes -= bytesAtMost;
    if (static_cast<CContainerAtom&>(*atom).GetFirstChild(HDLR) != nullptr)
    {
        header = attempt;
        return atom;
    }
    limits.RereadBytes += reader.GetPosition() - body;
    limits.Entries = entries;
    reader.Seek(body);
    return nullptr;
}

std::unique_ptr<CAtom> CAtomFactory::ReadBody(const CAtomClass& atomClass, CAtomReader& reader, CAtom* parent, Header& header)
{
    std::unique_ptr<CAtom> atom(atomClass.Make(atomClass, header.Type, parent));
    atom->m_position = header.Position;
    CFieldReader fields(reader, header.Remaining);
    atomClass.Fields(*atom, fields);
    // Unsigned, since a size of 64 bits can be anything.
    atom->m_size = static_cast<uint64_t>(header.Size) + static_cast<uint64_t>(header.Remaining) -
                   static_cast<uint64_t>(fields.GetRemaining());
    header.Remaining = fields.GetRemaining();
    return atom;
}
