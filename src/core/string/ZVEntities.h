#pragma once

#include <cstddef>

// The named character entities that texts are decoded from.
namespace ZVEntities
{
struct Entity
{
    const char* Name;  // without "&" and ";"
    wchar_t Character;
};

// The length of the longest name in the tables; a longer run after "&" is not an entity.
inline constexpr int MaximumNameLength = 6;

// clang-format off
// The five entities of XML 1.0.
inline constexpr Entity XML[] = {
    {"amp", L'&'}, {"lt", L'<'}, {"gt", L'>'}, {"quot", L'"'}, {"apos", L'\''},
};

// The entities of HTML 4 that tags and descriptions hold, besides those of XML.
inline constexpr Entity HTML[] = {
    {"not", 172},    {"reg", 174},     {"shy", 173},    {"yen", 165},    {"auml", 228},   {"apos", 39},    {"Auml", 196},
    {"copy", 169},   {"Euml", 203},    {"euml", 235},   {"Iuml", 207},   {"iuml", 239},   {"macr", 175},   {"nbsp", 160},
    {"ordf", 170},   {"ordm", 186},    {"Ouml", 214},   {"ouml", 246},   {"para", 182},   {"quot", 34},    {"sect", 167},
    {"sup1", 185},   {"sup2", 178},    {"sup3", 179},   {"Uuml", 220},   {"uuml", 252},   {"yuml", 255},   {"ndash", 8211},
    {"mdash", 8212}, {"iexcl", 161},   {"pound", 163},  {"rsquo", 8217}, {"Acirc", 194},  {"acirc", 226},  {"AElig", 198},
    {"aelig", 230},  {"Aring", 197},   {"aring", 229},  {"Ecirc", 202},  {"ecirc", 234},  {"Icirc", 206},  {"icirc", 238},
    {"laquo", 171},  {"micro", 181},   {"Ocirc", 212},  {"ocirc", 244},  {"raquo", 187},  {"szlig", 223},  {"THORN", 222},
    {"thorn", 254},  {"times", 215},   {"Ucirc", 219},  {"ucirc", 251},  {"Aacute", 193}, {"aacute", 225}, {"Agrave", 192},
    {"agrave", 224}, {"Atilde", 195},  {"atilde", 227}, {"brvbar", 166}, {"Ccedil", 199}, {"ccedil", 231}, {"curren", 164},
    {"divide", 247}, {"Eacute", 201},  {"eacute", 233}, {"Egrave", 200}, {"egrave", 232}, {"frac14", 188}, {"frac12", 189},
    {"frac34", 190}, {"hellip", 8230}, {"Iacute", 205}, {"iacute", 237}, {"Igrave", 204}, {"igrave", 236}, {"iquest", 191},
    {"middot", 183}, {"Ntilde", 209},  {"ntilde", 241}, {"plusmn", 177}, {"Oacute", 211}, {"oacute", 243}, {"Ograve", 210},
    {"ograve", 242}, {"Oslash", 216},  {"oslash", 248}, {"Otilde", 213}, {"otilde", 245}, {"Uacute", 218}, {"uacute", 250},
    {"Ugrave", 217}, {"ugrave", 249},  {"Yacute", 221}, {"yacute", 253},
};
// clang-format on
}
