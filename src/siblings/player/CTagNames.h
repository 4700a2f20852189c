#pragma once

// The names of tags.
namespace CTagNames
{
// Whether two names are the same without regard to the case of ASCII letters.
bool AreSame(const char* a, const char* b);

// The name under which the codec libraries give a tag that they rename, by the name that it has in the file; null for a tag that
// they do not rename.
const char* FindNewName(const char* name);
}
