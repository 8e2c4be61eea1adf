// The compound file format, version 3 (512-byte sectors, 64-byte mini sectors), as this
// library reads and writes it. All integers are little-endian.
//
// Header, 512 bytes at offset 0; sector n starts at (n + 1) * 512:
//   0x00  signature D0 CF 11 E0 A1 B1 1A E1
//   0x08  class id, zero
//   0x18  minor version 0x003E      0x1A  major version 3
//   0x1C  byte order 0xFFFE         0x1E  sector shift 9         0x20  mini sector shift 6
//   0x22  reserved, zero (6 bytes)  0x28  directory sector count, 0 in version 3
//   0x2C  FAT sector count          0x30  first directory sector
//   0x34  transaction signature     0x38  mini stream cutoff 4096
//   0x3C  first mini FAT sector     0x40  mini FAT sector count
//   0x44  first DIFAT sector        0x48  DIFAT sector count
//   0x4C  the first 109 FAT sector numbers (the header's part of the DIFAT)
// A DIFAT sector holds 127 FAT sector numbers and the number of the next DIFAT sector.
// The FAT gives, for every sector, the next sector of its chain or one of the marks below.
// Streams shorter than 4096 bytes live in 64-byte mini sectors inside the mini stream, whose
// chain starts at the root entry; the mini FAT chains mini sectors as the FAT chains sectors.
//
// Directory entry, 128 bytes, four to a sector:
//   0x00  name, UTF-16, zero-ended (at most 31 characters)   0x40  name size in bytes with
//   the terminator                   0x42  type: 0 unused, 1 storage, 2 stream, 5 root
//   0x43  colour: 0 red, 1 black     0x44  left sibling   0x48  right sibling   0x4C  child
//   0x50  class id (16 bytes)        0x60  state bits     0x64  creation time   0x6C  change time
//   0x74  start sector               0x78  size, low 32 bits (0x7C high bits, unused in v3)
// The children of a storage form a red-black tree ordered by name length, then by the
// upper-case characters.
#pragma once

#include <cstdint>
#include <cstring>

namespace talvor::platform::storage::detail {

constexpr std::uint32_t SectorSize = 512;
constexpr std::uint32_t MiniSectorSize = 64;
constexpr std::uint32_t MiniStreamCutoff = 4096;
constexpr std::uint32_t EntriesPerSector = SectorSize / 128;
constexpr std::uint32_t IdsPerSector = SectorSize / 4;
constexpr std::uint32_t HeaderDifatCount = 109;
constexpr std::uint32_t DifatIdsPerSector = IdsPerSector - 1;
constexpr std::uint32_t MaxNameLength = 31;

constexpr std::uint32_t MaxRegularSector = 0xFFFFFFFAu;
constexpr std::uint32_t DifatSectorMark = 0xFFFFFFFCu;
constexpr std::uint32_t FatSectorMark = 0xFFFFFFFDu;
constexpr std::uint32_t EndOfChain = 0xFFFFFFFEu;
constexpr std::uint32_t FreeSector = 0xFFFFFFFFu;
constexpr std::uint32_t NoStream = 0xFFFFFFFFu;

constexpr std::uint8_t TypeUnused = 0;
constexpr std::uint8_t TypeStorage = 1;
constexpr std::uint8_t TypeStream = 2;
constexpr std::uint8_t TypeRoot = 5;
constexpr std::uint8_t Red = 0;
constexpr std::uint8_t Black = 1;

constexpr std::uint8_t Signature[8] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};

inline std::uint32_t Get32(const std::uint8_t* p) {
    return std::uint32_t(p[0]) | std::uint32_t(p[1]) << 8 | std::uint32_t(p[2]) << 16 |
           std::uint32_t(p[3]) << 24;
}
inline std::uint16_t Get16(const std::uint8_t* p) {
    return static_cast<std::uint16_t>(p[0] | p[1] << 8);
}
inline void Put32(std::uint8_t* p, std::uint32_t v) {
    p[0] = static_cast<std::uint8_t>(v);
    p[1] = static_cast<std::uint8_t>(v >> 8);
    p[2] = static_cast<std::uint8_t>(v >> 16);
    p[3] = static_cast<std::uint8_t>(v >> 24);
}
inline void Put16(std::uint8_t* p, std::uint16_t v) {
    p[0] = static_cast<std::uint8_t>(v);
    p[1] = static_cast<std::uint8_t>(v >> 8);
}

} // namespace talvor::platform::storage::detail
