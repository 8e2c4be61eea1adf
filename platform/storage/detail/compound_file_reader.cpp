// Opening a compound file: the header, the DIFAT, the FAT, the directory and every chain are
// read and checked once here, so the rest of the code can trust what it holds. Each sector is
// claimed by one chain only; a chain that loops, meets another chain or leaves the file ends
// the open with a message that names the chain and the sector.
#include "platform/storage/detail/compound_file.h"

#include <cstdarg>
#include <cstdio>

namespace talvor::platform::storage::detail {

HRESULT CompoundFile::Fail(HRESULT hr, const char* format, ...) {
    char buffer[512];
    va_list args;
    va_start(args, format);
    std::vsnprintf(buffer, sizeof buffer, format, args);
    va_end(args);
    m_error = std::string("compound file: ") + buffer;
    return hr;
}

std::string CompoundFile::EntryLabel(std::uint32_t id) const {
    std::string text = "'";
    for (char16_t c : m_entries[id].name)
        text += c >= 0x20 && c < 0x7F ? static_cast<char>(c) : '?';
    return text + "'";
}

HRESULT CompoundFile::Open(std::unique_ptr<LockBytes> bytes, std::shared_ptr<CompoundFile>& out,
                           std::string& error) {
    std::shared_ptr<CompoundFile> file(new CompoundFile);
    file->m_bytes = std::move(bytes);
    HRESULT hr = file->Load();
    if (FAILED(hr)) {
        error = file->m_error;
        return hr;
    }
    out = std::move(file);
    return S_OK;
}

HRESULT CompoundFile::FollowChain(std::uint32_t start, std::uint64_t count,
                                  std::vector<std::uint8_t>& owner,
                                  std::vector<std::uint32_t>& chain, const char* what) {
    // count == UINT64_MAX follows the chain to its end; the owner marks bound it.
    chain.clear();
    std::uint32_t sector = start;
    for (std::uint64_t i = 0; i < count; ++i) {
        if (sector == EndOfChain && count == UINT64_MAX)
            return S_OK;
        if (sector == EndOfChain)
            return Fail(STG_E_DOCFILECORRUPT, "sector chain of %s ends after %zu of %llu sectors",
                        what, chain.size(), static_cast<unsigned long long>(count));
        if (sector >= m_fat.size())
            return Fail(STG_E_DOCFILECORRUPT,
                        "sector chain of %s points to sector 0x%x outside the file (0x%zx sectors)",
                        what, sector, m_fat.size());
        if (owner[sector])
            return Fail(STG_E_DOCFILECORRUPT,
                        "sector chain of %s loops or runs into another chain at sector 0x%x", what,
                        sector);
        owner[sector] = 1;
        chain.push_back(sector);
        sector = m_fat[sector];
    }
    return S_OK;
}

HRESULT CompoundFile::FollowMiniChain(std::uint32_t start, std::uint64_t count,
                                      std::vector<std::uint8_t>& owner,
                                      std::vector<std::uint32_t>& chain, const std::string& what) {
    chain.clear();
    std::uint32_t mini = start;
    for (std::uint64_t i = 0; i < count; ++i) {
        if (mini >= m_miniFat.size())
            return Fail(STG_E_DOCFILECORRUPT,
                        "mini sector chain of %s points to mini sector 0x%x outside the mini "
                        "stream (0x%zx mini sectors)",
                        what.c_str(), mini, m_miniFat.size());
        if (owner[mini])
            return Fail(STG_E_DOCFILECORRUPT,
                        "mini sector chain of %s loops or runs into another chain at mini "
                        "sector 0x%x",
                        what.c_str(), mini);
        owner[mini] = 1;
        chain.push_back(mini);
        mini = m_miniFat[mini];
    }
    return S_OK;
}

HRESULT CompoundFile::Load() {
    const std::uint64_t size = m_bytes->Size();
    std::uint8_t header[SectorSize];
    if (size < SectorSize || !m_bytes->ReadAt(0, header, SectorSize))
        return Fail(STG_E_INVALIDHEADER, "%llu bytes are too few for the 512-byte header",
                    static_cast<unsigned long long>(size));
    if (std::memcmp(header, Signature, sizeof Signature) != 0)
        return Fail(STG_E_INVALIDHEADER, "no compound file signature at offset 0");
    if (Get16(header + 0x1C) != 0xFFFE)
        return Fail(STG_E_INVALIDHEADER, "byte order mark at 0x1c is 0x%04x, not 0xfffe",
                    Get16(header + 0x1C));
    const std::uint16_t major = Get16(header + 0x1A);
    if (major == 4)
        return Fail(STG_E_OLDFORMAT, "version 4 files (4096-byte sectors) are not supported");
    if (major != 3)
        return Fail(STG_E_INVALIDHEADER, "major version at 0x1a is %u, not 3", major);
    if (Get16(header + 0x1E) != 9 || Get16(header + 0x20) != 6)
        return Fail(STG_E_INVALIDHEADER,
                    "sector shifts at 0x1e are %u and %u, not 9 and 6 (512 and 64 bytes)",
                    Get16(header + 0x1E), Get16(header + 0x20));
    if (Get32(header + 0x38) != MiniStreamCutoff)
        return Fail(STG_E_INVALIDHEADER, "mini stream cutoff at 0x38 is %u, not 4096",
                    Get32(header + 0x38));

    const std::uint64_t fileSectors64 = (size - SectorSize) / SectorSize;
    if (fileSectors64 >= MaxRegularSector)
        return Fail(STG_E_DOCFILETOOLARGE, "file of %llu bytes has too many sectors",
                    static_cast<unsigned long long>(size));
    const std::uint32_t fileSectors = static_cast<std::uint32_t>(fileSectors64);
    const std::uint32_t fatCount = Get32(header + 0x2C);
    const std::uint32_t firstDir = Get32(header + 0x30);
    const std::uint32_t firstMiniFat = Get32(header + 0x3C);
    const std::uint32_t miniFatCount = Get32(header + 0x40);
    const std::uint32_t firstDifat = Get32(header + 0x44);
    const std::uint32_t difatCount = Get32(header + 0x48);
    m_transaction = Get32(header + 0x34);
    if (fatCount == 0 || fatCount > fileSectors)
        return Fail(STG_E_DOCFILECORRUPT,
                    "header at 0x2c gives %u FAT sectors for a file of 0x%x sectors", fatCount,
                    fileSectors);

    m_fat.assign(fileSectors, FreeSector);
    std::vector<std::uint8_t> owner(fileSectors, 0);
    auto claim = [&](std::uint32_t sector, const char* what) -> HRESULT {
        if (sector >= fileSectors)
            return Fail(STG_E_DOCFILECORRUPT,
                        "%s at sector 0x%x lies outside the file (0x%x sectors)", what, sector,
                        fileSectors);
        if (owner[sector])
            return Fail(STG_E_DOCFILECORRUPT, "%s at sector 0x%x is claimed twice", what, sector);
        owner[sector] = 1;
        return S_OK;
    };

    // FAT sector numbers: 109 in the header, the rest in the DIFAT chain.
    m_fatLocations.clear();
    m_difatLocations.clear();
    for (std::uint32_t i = 0; i < HeaderDifatCount && m_fatLocations.size() < fatCount; ++i)
        m_fatLocations.push_back(Get32(header + 0x4C + 4 * i));
    std::uint32_t difat = firstDifat;
    std::uint8_t sector[SectorSize];
    for (std::uint32_t k = 0; k < difatCount && m_fatLocations.size() < fatCount; ++k) {
        if (HRESULT hr = claim(difat, "DIFAT sector"); FAILED(hr))
            return hr;
        if (!m_bytes->ReadAt((std::uint64_t(difat) + 1) * SectorSize, sector, SectorSize))
            return Fail(STG_E_READFAULT, "cannot read DIFAT sector 0x%x", difat);
        m_difatLocations.push_back(difat);
        for (std::uint32_t i = 0; i < DifatIdsPerSector && m_fatLocations.size() < fatCount; ++i)
            m_fatLocations.push_back(Get32(sector + 4 * i));
        difat = Get32(sector + 4 * DifatIdsPerSector);
    }
    if (m_fatLocations.size() < fatCount)
        return Fail(STG_E_DOCFILECORRUPT, "the DIFAT lists %zu of %u FAT sectors",
                    m_fatLocations.size(), fatCount);
    for (std::uint32_t i = 0; i < fatCount; ++i) {
        const std::uint32_t at = m_fatLocations[i];
        if (HRESULT hr = claim(at, "FAT sector"); FAILED(hr))
            return hr;
        if (!m_bytes->ReadAt((std::uint64_t(at) + 1) * SectorSize, sector, SectorSize))
            return Fail(STG_E_READFAULT, "cannot read FAT sector 0x%x", at);
        for (std::uint32_t j = 0; j < IdsPerSector; ++j) {
            const std::uint64_t index = std::uint64_t(i) * IdsPerSector + j;
            if (index < fileSectors)
                m_fat[index] = Get32(sector + 4 * j);
        }
    }

    // Directory.
    if (HRESULT hr = FollowChain(firstDir, UINT64_MAX, owner, m_dirChain, "the directory");
        FAILED(hr))
        return hr;
    if (m_dirChain.empty())
        return Fail(STG_E_DOCFILECORRUPT, "the directory has no sector (first sector 0x%x)",
                    firstDir);
    m_entries.assign(m_dirChain.size() * EntriesPerSector, DirEntry{});
    for (std::size_t s = 0; s < m_dirChain.size(); ++s) {
        if (!m_bytes->ReadAt((std::uint64_t(m_dirChain[s]) + 1) * SectorSize, sector, SectorSize))
            return Fail(STG_E_READFAULT, "cannot read directory sector 0x%x", m_dirChain[s]);
        for (std::uint32_t k = 0; k < EntriesPerSector; ++k) {
            const std::uint8_t* p = sector + 128 * k;
            const std::uint32_t id = static_cast<std::uint32_t>(s * EntriesPerSector + k);
            DirEntry& e = m_entries[id];
            e.type = p[0x42];
            if (e.type == TypeUnused)
                continue;
            if (e.type != TypeStorage && e.type != TypeStream && e.type != TypeRoot)
                return Fail(STG_E_DOCFILECORRUPT, "directory entry %u has unknown type %u", id,
                            e.type);
            const std::uint16_t nameBytes = Get16(p + 0x40);
            if (nameBytes < 2 || nameBytes > 64 || nameBytes % 2 != 0)
                return Fail(STG_E_DOCFILECORRUPT,
                            "directory entry %u has a name of %u bytes (2 to 64, even)", id,
                            nameBytes);
            // The name ends at its first zero, whatever the size says.
            for (std::uint32_t c = 0; c + 1 < nameBytes / 2u && Get16(p + 2 * c) != 0; ++c)
                e.name.push_back(static_cast<char16_t>(Get16(p + 2 * c)));
            e.color = p[0x43];
            e.left = Get32(p + 0x44);
            e.right = Get32(p + 0x48);
            e.child = Get32(p + 0x4C);
            std::memcpy(e.clsid, p + 0x50, 16);
            e.stateBits = Get32(p + 0x60);
            e.created = std::uint64_t(Get32(p + 0x64)) | std::uint64_t(Get32(p + 0x68)) << 32;
            e.modified = std::uint64_t(Get32(p + 0x6C)) | std::uint64_t(Get32(p + 0x70)) << 32;
            e.start = Get32(p + 0x74);
            e.size = Get32(p + 0x78); // the high half is not used in version 3
        }
    }
    if (m_entries[0].type != TypeRoot)
        return Fail(STG_E_DOCFILECORRUPT, "directory entry 0 is of type %u, not the root (5)",
                    m_entries[0].type);

    // Mini FAT and mini stream.
    if (HRESULT hr = FollowChain(firstMiniFat, miniFatCount, owner, m_miniFatChain, "the mini FAT");
        FAILED(hr))
        return hr;
    const std::uint64_t miniStreamSize = m_entries[0].size;
    const std::uint64_t miniCount = (miniStreamSize + MiniSectorSize - 1) / MiniSectorSize;
    if (miniCount > std::uint64_t(m_miniFatChain.size()) * IdsPerSector)
        return Fail(STG_E_DOCFILECORRUPT,
                    "the mini stream of %llu bytes has more mini sectors than the mini FAT "
                    "of %zu sectors describes",
                    static_cast<unsigned long long>(miniStreamSize), m_miniFatChain.size());
    if (HRESULT hr = FollowChain(m_entries[0].start, (miniStreamSize + SectorSize - 1) / SectorSize,
                                 owner, m_miniChain, "the mini stream");
        FAILED(hr))
        return hr;
    m_miniFat.assign(miniCount, FreeSector);
    for (std::size_t s = 0; s < m_miniFatChain.size(); ++s) {
        if (!m_bytes->ReadAt((std::uint64_t(m_miniFatChain[s]) + 1) * SectorSize, sector,
                             SectorSize))
            return Fail(STG_E_READFAULT, "cannot read mini FAT sector 0x%x", m_miniFatChain[s]);
        for (std::uint32_t j = 0; j < IdsPerSector; ++j) {
            const std::uint64_t index = s * IdsPerSector + j;
            if (index < miniCount)
                m_miniFat[index] = Get32(sector + 4 * j);
        }
    }
    m_entries[0].size = miniCount * MiniSectorSize;

    if (HRESULT hr = LoadDirectoryTree(); FAILED(hr))
        return hr;

    // Streams: every chain once, each sector and mini sector claimed by one owner.
    std::vector<std::uint8_t> miniOwner(m_miniFat.size(), 0);
    std::vector<std::uint32_t> chain;
    for (std::uint32_t id = 1; id < m_entries.size(); ++id) {
        const DirEntry& e = m_entries[id];
        if (e.type != TypeStream || e.size == 0)
            continue;
        const std::string label = "stream " + EntryLabel(id);
        HRESULT hr = e.size < MiniStreamCutoff
                         ? FollowMiniChain(e.start, (e.size + MiniSectorSize - 1) / MiniSectorSize,
                                           miniOwner, chain, label)
                         : FollowChain(e.start, (e.size + SectorSize - 1) / SectorSize, owner,
                                       chain, label.c_str());
        if (FAILED(hr))
            return hr;
    }

    // Free space: free in the FAT and claimed by nothing.
    m_freePool.clear();
    for (std::uint32_t s = 0; s < fileSectors; ++s)
        if (m_fat[s] == FreeSector && !owner[s])
            m_freePool.insert(s);
    m_miniFreePool.clear();
    for (std::uint32_t m = 0; m < m_miniFat.size(); ++m)
        if (m_miniFat[m] == FreeSector && !miniOwner[m])
            m_miniFreePool.insert(m);

    m_freshFlag.assign(m_fat.size(), 0);
    m_freshList.clear();
    m_pendingFree.clear();
    m_fatDirty.clear();
    m_difatDirty = false;
    m_runBytes = 0;
    m_miniFatDirty.clear();
    m_miniPending.clear();
    m_miniFresh.assign(m_miniFat.size(), 0);
    m_miniFreshList.clear();
    m_miniPendingFree.clear();
    m_dirDirty.clear();
    m_streams.clear();
    m_openCount.clear();
    return S_OK;
}

HRESULT CompoundFile::LoadDirectoryTree() {
    // Walks each storage's tree with an explicit stack; every entry may be reached once.
    m_children.clear();
    std::vector<std::uint8_t> reached(m_entries.size(), 0);
    reached[0] = 1;
    std::vector<std::uint32_t> storages{0};
    while (!storages.empty()) {
        const std::uint32_t storage = storages.back();
        storages.pop_back();
        auto& children = m_children[storage];
        std::vector<std::uint32_t> stack;
        if (m_entries[storage].child != NoStream)
            stack.push_back(m_entries[storage].child);
        while (!stack.empty()) {
            const std::uint32_t id = stack.back();
            stack.pop_back();
            if (id >= m_entries.size())
                return Fail(STG_E_DOCFILECORRUPT, "storage %s refers to directory entry %u of %zu",
                            EntryLabel(storage).c_str(), id, m_entries.size());
            const DirEntry& e = m_entries[id];
            if (e.type != TypeStorage && e.type != TypeStream)
                return Fail(STG_E_DOCFILECORRUPT,
                            "storage %s refers to directory entry %u of type %u",
                            EntryLabel(storage).c_str(), id, e.type);
            if (reached[id])
                return Fail(STG_E_DOCFILECORRUPT,
                            "directory entry %u is reached twice (the tree loops)", id);
            reached[id] = 1;
            if (!children.emplace(e.name, id).second)
                return Fail(STG_E_DOCFILECORRUPT, "storage %s holds two elements named %s",
                            EntryLabel(storage).c_str(), EntryLabel(id).c_str());
            if (e.left != NoStream)
                stack.push_back(e.left);
            if (e.right != NoStream)
                stack.push_back(e.right);
            if (e.type == TypeStorage)
                storages.push_back(id);
        }
    }
    // Entries no storage reaches are free for reuse.
    for (std::uint32_t id = 1; id < m_entries.size(); ++id)
        if (!reached[id])
            m_entries[id] = DirEntry{};
    m_entrySearchFrom = 1;
    return S_OK;
}

} // namespace talvor::platform::storage::detail
