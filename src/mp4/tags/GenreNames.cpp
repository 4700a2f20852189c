#include "mp4/tags/GenreNames.h"

#include <algorithm>
#include <iterator>

namespace
{
// clang-format off
constexpr const wchar_t* GenreNames[] = {
    L"Blues", L"Classic Rock", L"Country", L"Dance", L"Disco", L"Funk", L"Grunge", L"Hip-Hop", L"Jazz", L"Metal",
    L"New Age", L"Oldies", L"Other", L"Pop", L"R&B", L"Rap", L"Reggae", L"Rock", L"Techno", L"Industrial",
    L"Alternative", L"Ska", L"Death Metal", L"Pranks", L"Soundtrack", L"Euro-Techno", L"Ambient", L"Trip-Hop", L"Vocal",
    L"Jazz+Funk", L"Fusion", L"Trance", L"Classical", L"Instrumental", L"Acid", L"House", L"Game", L"Sound Clip",
    L"Gospel", L"Noise", L"Alt. Rock", L"Bass", L"Soul", L"Punk", L"Space", L"Meditative", L"Instrumental Pop",
    L"Instrumental Rock", L"Ethnic", L"Gothic", L"Darkwave", L"Techno-Industrial", L"Electronic", L"Pop-Folk",
    L"Eurodance", L"Dream", L"Southern Rock", L"Comedy", L"Cult", L"Gangsta", L"Top 40", L"Christian Rap", L"Pop/Funk",
    L"Jungle", L"Native American", L"Cabaret", L"New Wave", L"Psychedelic", L"Rave", L"Showtunes", L"Trailer", L"Lo-Fi",
    L"Tribal", L"Acid Punk", L"Acid Jazz", L"Polka", L"Retro", L"Musical", L"Rock & Roll", L"Hard Rock", L"Folk",
    L"Folk-Rock", L"National Folk", L"Swing", L"Fast Fusion", L"Bebop", L"Latin", L"Revival", L"Celtic", L"Bluegrass",
    L"Avantgarde", L"Gothic Rock", L"Progressive Rock", L"Psychedelic Rock", L"Symphonic Rock", L"Slow Rock",
    L"Big Band", L"Chorus", L"Easy Listening", L"Acoustic", L"Humour", L"Speech", L"Chanson", L"Opera",
    L"Chamber Music", L"Sonata", L"Symphony", L"Booty Bass", L"Primus", L"Porn Groove", L"Satire", L"Slow Jam", L"Club",
    L"Tango", L"Samba", L"Folklore", L"Ballad", L"Power Ballad", L"Rhythmic Soul", L"Freestyle", L"Duet", L"Punk Rock",
    L"Drum Solo", L"Acapella", L"Euro-House", L"Dance Hall", L"Goa", L"Drum & Bass", L"Club House", L"Hardcore",
    L"Terror", L"Indie", L"BritPop", L"Black Punk", L"Polsk Punk", L"Beat", L"Christian Gangsta", L"Heavy Metal",
    L"Black Metal", L"Crossover", L"Contemporary C", L"Christian Rock", L"Merengue", L"Salsa", L"Thrash Metal",
    L"Anime", L"JPop", L"SynthPop",
};
// clang-format on

static_assert(std::size(GenreNames) == 148);
}

const wchar_t* GetGenreName(int32_t number)
{
    return number >= 0 && number < std::ssize(GenreNames) ? GenreNames[number] : nullptr;
}

int32_t FindGenreNumber(const ZVString& name)
{
    const auto* const found =
        std::ranges::find_if(GenreNames, [view = name.View()](const wchar_t* genre) { return view == genre; });
    return found == std::end(GenreNames) ? -1 : static_cast<int32_t>(found - GenreNames);
}
