#include "system/shield/ZVLandlock.h"

#include "system/filename/ZVNativePath.h"
#include "system/library/ZVDescriptor.h"
#include "system/log/ZVLog.h"
#include "system/shield/ZVSystemFolders.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace
{
constexpr ZVLogSource Source {ZVLogCategory::General, L"ZVLandlock::Restrict"};

// In a kernel that knows only the first version a locked process can move no file from one folder to another, which is how every
// result gets its name.
constexpr int OldestVersion = 2;

// What the headers of older systems do not name yet.
constexpr uint64_t Truncate = 1 << 14;
constexpr uint64_t DeviceControl = 1 << 15;
constexpr uint64_t BindTCP = 1 << 0;
constexpr uint64_t ConnectTCP = 1 << 1;
constexpr uint64_t AbstractSockets = 1 << 0;
constexpr uint64_t Signals = 1 << 1;

// What the kernel's structure has become. A kernel that knows only the start of it wants the rest to be 0.
struct Attributes
{
    uint64_t Files = 0;
    uint64_t Network = 0;
    uint64_t Scopes = 0;
};

struct Version
{
    int Number;
    Attributes Guarded;  // what the version brought
};

constexpr Version Versions[] = {
    {1, {.Files = LANDLOCK_ACCESS_FS_MAKE_SYM * 2 - 1}},
    {2, {.Files = LANDLOCK_ACCESS_FS_REFER}           },
    {3, {.Files = Truncate}                           },
    {4, {.Network = BindTCP | ConnectTCP}             },
    {5, {.Files = DeviceControl}                      },
    {6, {.Scopes = AbstractSockets | Signals}         },
};

struct AccessRights
{
    ZVShieldAccess Access;
    uint64_t Rights;
};

constexpr uint64_t ReadRights = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;
constexpr uint64_t WriteRights = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_WRITE_FILE | Truncate;
// A symbolic link, a device or a pipe would be a trap for the next one who looks there, and no task makes any.
constexpr uint64_t ChangeRights = ReadRights | WriteRights | LANDLOCK_ACCESS_FS_MAKE_REG | LANDLOCK_ACCESS_FS_MAKE_DIR |
                                  LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_REMOVE_DIR | LANDLOCK_ACCESS_FS_REFER;

constexpr AccessRights RightsTable[] = {
    {ZVShieldAccess::Read,          ReadRights                                               },
    {ZVShieldAccess::List,          LANDLOCK_ACCESS_FS_READ_DIR                              },
    {ZVShieldAccess::Write,         WriteRights                                              },
    {ZVShieldAccess::Change,        ChangeRights                                             },
    {ZVShieldAccess::DeleteFiles,   LANDLOCK_ACCESS_FS_REMOVE_FILE                           },
    {ZVShieldAccess::DeleteFolders, LANDLOCK_ACCESS_FS_REMOVE_DIR                            },
    {ZVShieldAccess::Run,           LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_EXECUTE},
};

// The rights that the kernel takes for something that is no folder.
constexpr uint64_t FileRights = WriteRights | LANDLOCK_ACCESS_FS_EXECUTE | DeviceControl;

uint64_t RightsOf(ZVShieldAccess access)
{
    for (const AccessRights& row : RightsTable)
        if (row.Access == access)
            return row.Rights;
    return 0;
}

int Call(long result)
{
    return static_cast<int>(result);
}

Attributes Choose(int version, ZVShieldRules::Network sockets)
{
    Attributes guarded;
    for (const Version& row : Versions)
    {
        if (row.Number > version)
            continue;
        guarded.Files |= row.Guarded.Files;
        guarded.Network |= row.Guarded.Network;
        guarded.Scopes |= row.Guarded.Scopes;
    }
    if (sockets == ZVShieldRules::Network::Internet)
        guarded.Network &= ~ConnectTCP;
    // A display listens at an abstract name too, which is tried first.
    if (sockets != ZVShieldRules::Network::None)
        guarded.Scopes &= ~AbstractSockets;
    return guarded;
}

class Ruleset
{
public:
    explicit Ruleset(const Attributes& guarded)
        : m_guarded(guarded), m_descriptor(Call(syscall(SYS_landlock_create_ruleset, &guarded, sizeof guarded, 0)))
    {
    }

    bool IsOpen() const { return m_descriptor.IsOpen(); }

    // What is not there needs no rule, and neither does a pipe or another open file without a place: the guard lets it be.
    void Allow(const char* path, ZVShieldAccess access) const
    {
        const ZVDescriptor place(open(path, O_PATH | O_CLOEXEC));
        struct stat status;
        if (!place.IsOpen() || fstat(place.Get(), &status) != 0)
            return;
        const bool isForFolders = access != ZVShieldAccess::Write && access != ZVShieldAccess::Run;
        if (S_ISDIR(status.st_mode) && !isForFolders)
            return;
        const uint64_t possible = S_ISDIR(status.st_mode) ? m_guarded.Files : m_guarded.Files & FileRights;
        const uint64_t rights = RightsOf(access) & possible;
        const landlock_path_beneath_attr rule {rights, place.Get()};
        if (rights != 0 && syscall(SYS_landlock_add_rule, m_descriptor.Get(), LANDLOCK_RULE_PATH_BENEATH, &rule, 0) != 0 &&
            errno != EBADFD)
            Source.Log("No rule could be made for %s: %s", ZVNativeBytes::ToText(path), strerror(errno));
    }

    bool Restrict() const { return syscall(SYS_landlock_restrict_self, m_descriptor.Get(), 0) == 0; }

private:
    Attributes m_guarded;
    ZVDescriptor m_descriptor;
};
}

int ZVLandlock::Restrict(const ZVShieldRules& rules)
{
    const int version = Call(syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION));
    if (version < OldestVersion)
        return version < 0 ? errno : EOPNOTSUPP;
    const Ruleset ruleset(Choose(version, rules.Sockets));
    if (!ruleset.IsOpen())
        return errno;
    ZVSystemFolders::ForEach([&](const char* path, ZVShieldAccess access) { ruleset.Allow(path, access); });
    for (const ZVShieldPath& path : rules.Paths)
        ruleset.Allow(ZVNativePath(path.Path), path.Access);
    return ruleset.Restrict() ? 0 : errno;
}
