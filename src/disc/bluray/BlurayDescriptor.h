#pragma once

#include "core/containers/ZVArray.h"

#include <cstdint>
#include <memory>

// A descriptor of a stream: a tag and its bytes.
class BlurayDescriptor
{
public:
    virtual ~BlurayDescriptor() = default;
    virtual std::unique_ptr<BlurayDescriptor> Clone() const { return std::make_unique<BlurayDescriptor>(*this); }

    uint8_t Name = 0;
    ZVArray<uint8_t> Value;
};
