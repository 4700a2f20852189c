#include "caller/report/PageTemplate.h"

// The file that the build makes of the folder "page".
asm(".section .rodata\n"
    ".globl zvPageTemplate, zvPageTemplateEnd\n"
    ".hidden zvPageTemplate, zvPageTemplateEnd\n"
    "zvPageTemplate:\n"
    ".incbin \"" ZV_PAGE_TEMPLATE "\"\n"
    "zvPageTemplateEnd:\n"
    ".previous\n");

extern "C" __attribute__((visibility("hidden"))) const char zvPageTemplate[];
extern "C" __attribute__((visibility("hidden"))) const char zvPageTemplateEnd[];

PageTemplate GetPageTemplate()
{
    constexpr std::string_view Place = "<!-- films -->\n";
    const std::string_view page(zvPageTemplate, static_cast<size_t>(zvPageTemplateEnd - zvPageTemplate));
    const size_t place = page.find(Place);
    return {page.substr(0, place), page.substr(place + Place.size())};
}
