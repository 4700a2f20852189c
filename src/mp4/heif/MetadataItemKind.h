#pragma once

#include <cstdint>

// The two kinds of metadata that a picture can have as items: a TIFF block, and a document of RDF in XML.
enum class MetadataItemKind
{
    Exif,
    XMP,
};

// An item of metadata, and whether the list of items did not have it before.
struct MetadataItemID
{
    uint32_t ID;
    bool IsAdded;
};
