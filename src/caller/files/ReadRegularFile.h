#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

// For files that a worker left, which a film may have taken over: links are not followed, pipes and devices not waited for, and no more is
// read than is allowed for.

// All bytes of a file; nothing if it is not there, is no regular file, cannot be read, or has more bytes than the limit.
std::optional<std::string> ReadRegularFile(const std::filesystem::path& path, uint64_t limit);

// The last bytes of a file, of which there may be any number; at most so many.
std::optional<std::string> ReadRegularFileEnd(const std::filesystem::path& path, uint64_t limit);
