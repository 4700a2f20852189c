#include "mp4/tags/CTagEditor.h"

#include "mp4/model/Exception.h"
#include "mp4/movie/CCopyrightAtom.h"
#include "mp4/movie/CHDLRAtom.h"
#include "mp4/movie/CMOOVAtom.h"
#include "mp4/movie/CUdtaAtom.h"
#include "mp4/movie/PlainAtoms.h"
#include "mp4/quicktime/CKeyedTagEditor.h"
#include "mp4/tags/C4DashesAtom.h"
#include "mp4/tags/CILSTAtom.h"
#include "mp4/tags/CStringTagAtomBase.h"
#include "mp4/tags/GenreNames.h"
#include "mp4/tags/GetDateText.h"
#include "mp4/tags/ReadWholeNumber.h"
#include "mp4/tags/TagNames.h"
#include "mp4/tags/TagTypes.h"

#include <utility>

namespace
{
constexpr uint32_t META = FourCC("meta");
constexpr uint32_t ILST = FourCC("ilst");
constexpr uint32_t UDTA = FourCC("udta");
constexpr uint32_t CPRT = FourCC("cprt");
constexpr uint32_t GNRE = FourCC("gnre");
constexpr uint32_t CustomGenre = SignedFourCC("gen");
constexpr uint32_t ItemType = FourCC("----");

// Of a list of tags that are known by their types.
constexpr uint32_t TagHandler = FourCC("mdir");

// How a tag is set.
enum class TagRule
{
    LeaveAlone,
    Atom,
    Date,
    Genre,  // by its number if it has one, else as text
    FreeForm,
    Rating,  // five stars as ten points
};

constexpr uint32_t MaximumStars = 5;

// A name that does not follow the list of names and types alone.
struct SpecialName
{
    const wchar_t* Name;
    TagRule Rule;
    uint32_t Type = 0;
    const wchar_t* ItemName = nullptr;
};

// clang-format off
constexpr SpecialName SpecialNames[] = {
    // The file itself says these.
    {L"Bitrate", TagRule::LeaveAlone},
    {L"Duration", TagRule::LeaveAlone},
    {L"Channels", TagRule::LeaveAlone},
    {L"Sample Rate", TagRule::LeaveAlone},
    {L"Bit Depth", TagRule::LeaveAlone},
    {L"Compression", TagRule::LeaveAlone},
    {L"Media Type", TagRule::LeaveAlone},
    // These say what made the film, which a change of its tags does not change.
    {L"Tool Name", TagRule::LeaveAlone},
    {L"Tool Version", TagRule::LeaveAlone},

    {L"Date", TagRule::Date, SignedFourCC("day")},
    {L"Year", TagRule::Date, SignedFourCC("day")},
    {L"Genre", TagRule::Genre, GNRE},
    {L"Copyright", TagRule::Atom, CPRT},
    {L"Image File", TagRule::Atom, FourCC("covr")},

    {L"Peak Level", TagRule::FreeForm, 0, L"replaygain_track_peak"},
    {L"Replay Gain", TagRule::FreeForm, 0, L"replaygain_track_gain"},
    {L"Rating", TagRule::Rating, 0, L"RATING"},
    {L"Initial Key", TagRule::FreeForm, 0, L"initialkey"},
    {L"Release Medium", TagRule::FreeForm, 0, L"MEDIA"},
};
// clang-format on

std::unique_ptr<CAtom> MakeTag(uint32_t type, const ZVString& value)
{
    const CAtomClass& atomClass = *FindTagClass(type);
    std::unique_ptr<CTagAtomBase> tag(static_cast<CTagAtomBase*>(atomClass.Make(atomClass, type, nullptr)));
    tag->SetValue(value);
    return tag;
}

// A value as reading will tell it, so that a flag is a number everywhere.
ZVString GetPlainValue(const CAtom* atom, const ZVString& value)
{
    ZVString plain = value;
    const auto* const tag = dynamic_cast<const CTagAtomBase*>(atom);
    if (tag != nullptr && dynamic_cast<const CStringTagAtomBase*>(atom) == nullptr)
        tag->GetValue(plain);
    return plain;
}
}

// Where a tag of a name belongs.
struct CTagEditor::Target
{
    ZVString Name;
    TagRule Rule = TagRule::FreeForm;
    uint32_t Type = 0;  // of its atom, or 0
    ZVString ItemName;  // of its free-form item

    // Whether an atom of the list tells this tag.
    bool IsToldBy(const CAtom& atom) const
    {
        if (atom.GetType() == ItemType)
        {
            ZVString name;
            return static_cast<const C4DashesAtom&>(atom).GetName(name) && IsNamed(name);
        }
        return Type != 0 && (atom.GetType() == Type || (Rule == TagRule::Genre && atom.GetType() == CustomGenre));
    }

    // A free-form item may have the name of a tag that has an atom, and would hide its value.
    bool IsNamed(const ZVString& name) const
    {
        return name.IsEqual(ItemName, false) || name.IsEqual(Name, false) || (Type != 0 && FindTagType(name) == Type);
    }
};

CTagEditor::Target CTagEditor::FindTarget(const ZVString& name)
{
    for (const SpecialName& special : SpecialNames)
        if (name.IsEqual(special.Name, false))
            return {name, special.Rule, special.Type, special.ItemName};
    const uint32_t type = FindTagType(name);
    return {name, type == 0 ? TagRule::FreeForm : TagRule::Atom, type, name};
}

void CTagEditor::Set(const ZVString& name, const ZVString& value)
{
    if (name.IsEmpty())
        ThrowException(L"A tag without a name cannot be set");
    const Target target = FindTarget(name);
    if (target.Rule == TagRule::LeaveAlone)
        return;
    const bool isDate = target.Rule == TagRule::Date;
    const ZVString text = isDate ? GetDateText(value) : value;
    std::unique_ptr<CAtom> atom = text.IsEmpty() ? nullptr : MakeAtom(target, text);
    CKeyedTagEditor keyed(m_places.Keyed);
    const ZVString plain = GetPlainValue(atom.get(), text);
    keyed.Prepare(isDate ? L"Date" : name, plain);
    if (isDate)
        keyed.Prepare(L"Year", GetYearText(plain));

    // From here on nothing is refused, but for a list of another kind.
    if (atom != nullptr)
        m_places.List = &MakeList();
    if (m_places.List != nullptr)
        ReplaceTag(*m_places.List, target, std::move(atom));
    if (target.Type == CPRT)
        ReplaceCopyright(text);
    keyed.Commit();
}

std::unique_ptr<CAtom> CTagEditor::MakeAtom(const Target& target, const ZVString& value) const
{
    switch (target.Rule)
    {
    case TagRule::Genre:
        return MakeTag(FindGenreNumber(value) < 0 ? CustomGenre : GNRE, value);
    case TagRule::Rating:
        return MakeFreeForm(target, ZVString::FromUInt(2 * ReadWholeNumber(value, MaximumStars)));
    case TagRule::FreeForm:
        return MakeFreeForm(target, value);
    default:
        return MakeTag(target.Type, value);
    }
}

// The item keeps whoever defined it, and the spelling of a name that the library does not show: other programs may look for them.
std::unique_ptr<CAtom> CTagEditor::MakeFreeForm(const Target& target, const ZVString& value) const
{
    ZVString mean = L"com.apple.iTunes";
    ZVString name = target.ItemName;
    if (m_places.List != nullptr)
        for (const CAtom* const child : m_places.List->GetChildren())
        {
            ZVString found;
            const auto* const item = dynamic_cast<const C4DashesAtom*>(child);
            if (item == nullptr || !item->GetName(found) || !found.IsEqual(target.ItemName, false))
                continue;
            if (target.Name != target.ItemName)
                name = found;
            item->GetMean(mean);
            break;
        }
    return C4DashesAtom::MakeNew(mean, name, value);
}

CContainerAtom* CTagEditor::FindMeta() const
{
    CAtom* const meta = m_places.UserData == nullptr ? nullptr : m_places.UserData->GetFirstChild(META);
    if (meta == nullptr)
        return nullptr;
    const uint32_t handler = meta->IsOpaque() ? 0 : static_cast<CContainerAtom*>(meta)->GetHandlerType();
    if (handler != TagHandler)
        ThrowException(L"The movie has metadata of another kind (%s) where its tags belong", GetTypeText(handler));
    return static_cast<CContainerAtom*>(meta);
}

// The list, with the steps on the way to it that are missing.
CILSTAtom& CTagEditor::MakeList()
{
    CContainerAtom* meta = FindMeta();
    if (m_places.List != nullptr)
        return *m_places.List;
    auto list = std::make_unique<CILSTAtom>(CILSTAtom::Class, ILST);
    CILSTAtom& made = *list;
    if (meta != nullptr)
    {
        meta->AddChild(std::move(list));
        return made;
    }
    auto newMeta = std::make_unique<CMetaAtom>(CMetaAtom::Class, META);
    newMeta->AddChild(CHDLRAtom::MakeNew());
    newMeta->AddChild(std::move(list));
    if (m_places.UserData == nullptr)
    {
        auto userData = std::make_unique<CUdtaAtom>(CUdtaAtom::Class, UDTA);
        m_places.UserData = userData.get();
        m_places.Movie.AddChild(std::move(userData));
    }
    m_places.UserData->AddChild(std::move(newMeta));
    return made;
}

// An atom takes the place of the first that told the tag, and stands before all free-form items if it is new. A free-form item goes
// to the end: of two that tell the same the last is shown.
void CTagEditor::ReplaceTag(CILSTAtom& list, const Target& target, std::unique_ptr<CAtom> atom) const
{
    constexpr int32_t None = -1;
    int32_t place = None;      // of the first atom that told the tag
    int32_t firstItem = None;  // of those that stay
    int32_t kept = 0;
    list.RemoveChildrenIf(
        [&](const CAtom& child)
        {
            const bool isItem = child.GetType() == ItemType;
            const bool isGone = target.IsToldBy(child);
            if (isGone && !isItem && place == None)
                place = kept;
            if (!isGone && isItem && firstItem == None)
                firstItem = kept;
            kept += !isGone;
            return isGone;
        });
    if (atom == nullptr)
        return;
    const bool isLast = atom->GetType() == ItemType || (place == None && firstItem == None);
    list.InsertChild(isLast ? kept : place == None ? firstItem : place, std::move(atom));
}

// Reading shows this copyright before that of the list, so it must say the same. One in another language would say the old.
void CTagEditor::ReplaceCopyright(const ZVString& value) const
{
    CAtom* const old = m_places.UserData == nullptr ? nullptr : m_places.UserData->GetFirstChild(CPRT);
    if (old == nullptr)
        return;
    const int32_t index = m_places.UserData->GetChildren().Find(old);
    const uint16_t language = static_cast<const CCopyrightAtom*>(old)->GetLanguage();
    m_places.UserData->RemoveChildren(CPRT);
    if (!value.IsEmpty())
        m_places.UserData->InsertChild(index, CCopyrightAtom::MakeNew(language, value));
}
