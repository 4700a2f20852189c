#include "mp4/tags/TagTypes.h"

#include "mp4/tags/CCoverartAtom.h"
#include "mp4/tags/GenreAtoms.h"
#include "mp4/tags/NumberAtoms.h"

namespace
{
constexpr StringTagType StringTags[] = {
    {SignedFourCC("nam"), TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("CNameAtom")                 },
    {SignedFourCC("ART"), TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("CArtistAtom")               },
    {FourCC("aART"),      TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("CAlbumArtistAtom")          },
    {SignedFourCC("alb"), TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("CAlbumAtom")                },
    {SignedFourCC("cmt"), TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("CCommentsAtom")             },
    {SignedFourCC("day"), TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("CDateAtom")                 },
    {SignedFourCC("wrt"), TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("CComposerAtom")             },
    {SignedFourCC("too"), TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("CToolAtom")                 },
    {FourCC("cprt"),      TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("CCopyrightAtom2")           },
    {SignedFourCC("grp"), TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("CGroupingAtom")             },
    {FourCC("catg"),      TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("CCategoryAtom")             },
    {FourCC("keyw"),      TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("CKeywordAtom")              },
    {FourCC("purl"),      TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("CPodcastURLAtom")           },
    {FourCC("egid"),      TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("CEpisodeGlobalIDAtom")      },
    {FourCC("desc"),      TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("CDescriptionAtom")          },
    {SignedFourCC("lyr"), TagLength::Unlimited, MakeAtomClass<CStringTagAtomBase>("CLyricsAtom")               },
    {FourCC("tvnn"),      TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("CTVNetworkNameAtom")        },
    {FourCC("tvsh"),      TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("CTVShowNameAtom")           },
    {FourCC("tven"),      TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("CTVEpisodeNumberAtom")      },
    {FourCC("purd"),      TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("CPurchaseDateAtom")         },
    {FourCC("sonm"),      TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("CSortNameOfTrackAtom")      },
    {FourCC("soar"),      TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("CSortNameOfArtistAtom")     },
    {FourCC("soaa"),      TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("CSortNameOfAlbumArtistAtom")},
    {FourCC("soal"),      TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("CSortNameOfAlbumAtom")      },
    {FourCC("soco"),      TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("CSortNameOfComposerAtom")   },
    {FourCC("sosn"),      TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("CSortNameOfShowAtom")       },
    {SignedFourCC("con"), TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("ConductorAtom")             },
    {SignedFourCC("dir"), TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("DirectorAtom")              },
    {SignedFourCC("prd"), TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("ProducerAtom")              },
    {SignedFourCC("pub"), TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("PublisherAtom")             },
    {SignedFourCC("wrk"), TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("WorkAtom")                  },
    {SignedFourCC("mvn"), TagLength::Limited,   MakeAtomClass<CStringTagAtomBase>("MovementAtom")              },
    {SignedFourCC("gen"), TagLength::Limited,   MakeAtomClass<CCustomGenreAtom>("CCustomGenreAtom")            },
};

// A tag that is no text.
struct ValueTagType
{
    uint32_t Type;
    CAtomClass Class;
};

constexpr ValueTagType ValueTags[] = {
    {FourCC("gnre"),      MakeAtomClass<CStandardGenreAtom>("CStandardGenreAtom")},
    {FourCC("trkn"),      MakeAtomClass<CNumberOfTotalAtom>("CTrackNumAtom")     },
    {FourCC("disk"),      MakeAtomClass<CNumberOfTotalAtom>("CDiskNumAtom")      },
    {FourCC("tmpo"),      MakeAtomClass<CShortNumberAtom>("CBPMAtom")            },
    {SignedFourCC("mvi"), MakeAtomClass<CShortNumberAtom>("MovementNumAtom")     },
    {SignedFourCC("mvc"), MakeAtomClass<CShortNumberAtom>("MovementCountAtom")   },
    {FourCC("rtng"),      MakeAtomClass<CByteNumberAtom>("CRatingAtom")          },
    {FourCC("stik"),      MakeAtomClass<CByteNumberAtom>("CStikAtom")            },
    {FourCC("cpil"),      MakeAtomClass<CFlagAtom>("CCompilationAtom")           },
    {FourCC("pgap"),      MakeAtomClass<CFlagAtom>("CGaplessPlaybackAtom")       },
    {FourCC("pcst"),      MakeAtomClass<CFlagAtom>("CPodcastAtom")               },
    {FourCC("shwm"),      MakeAtomClass<CFlagAtom>("ShowWrkMvmntAtom")           },
    {FourCC("tves"),      MakeAtomClass<CHiddenNumberAtom>("CTVEpisodeAtom")     },
    {FourCC("tvsn"),      MakeAtomClass<CHiddenNumberAtom>("CTVSeasonAtom")      },
    {FourCC("covr"),      MakeAtomClass<CCoverartAtom>("CCoverartAtom")          },
};
}

const StringTagType* FindStringTag(uint32_t type)
{
    for (const StringTagType& tag : StringTags)
        if (tag.Type == type)
            return &tag;
    return nullptr;
}

const CAtomClass* FindTagClass(uint32_t type)
{
    for (const ValueTagType& tag : ValueTags)
        if (tag.Type == type)
            return &tag.Class;
    const StringTagType* const text = FindStringTag(type);
    return text == nullptr ? nullptr : &text->Class;
}
