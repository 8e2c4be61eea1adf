// Allocation and commit. New and changed data goes to fresh sectors; a commit then writes the
// changed directory, mini FAT, FAT and DIFAT sectors to fresh places too, flushes, and only then
// writes the header that points at them. Until that last write the file on disk describes the
// previous commit, whose sectors nothing here has touched.
#include "platform/storage/detail/compound_file.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cstring>

namespace talvor::platform::storage::detail {
namespace {
const std::uint8_t Zeros[SectorSize] = {};
} // namespace

HRESULT CompoundFile::Create(std::unique_ptr<LockBytes> bytes, std::shared_ptr<CompoundFile>& out,
                             std::string& error, bool flushToDisk) {
    std::shared_ptr<CompoundFile> file(new CompoundFile);
    file->m_bytes = std::move(bytes);
    file->CreateEmpty();
    HRESULT hr = file->Commit(flushToDisk);
    if (FAILED(hr)) {
        error = file->m_error;
        return hr;
    }
    out = std::move(file);
    return S_OK;
}

void CompoundFile::CreateEmpty() {
    m_entries.assign(EntriesPerSector, DirEntry{});
    m_entrySearchFrom = 1;
    DirEntry& root = m_entries[0];
    root.name = u"Root Entry";
    root.type = TypeRoot;
    root.color = Black;
    m_dirDirty.clear();
    m_dirDirty.insert(0);
    m_children.clear();
    m_children[0];
    m_bytes->Truncate(0);
}

void CompoundFile::SetFat(std::uint32_t sector, std::uint32_t value) {
    if (m_fat[sector] != value) {
        m_fat[sector] = value;
        m_fatDirty.insert(sector / IdsPerSector);
    }
}

std::uint32_t CompoundFile::AllocateSector() {
    // Tables and directory sectors fill the lowest free sector.
    return TakeSector(m_freePool.lowest()); // FreeSector when there is none
}

std::uint32_t CompoundFile::AllocateDataSector() {
    return AllocateNear(m_dataCursor, 16);
}

std::uint32_t CompoundFile::AllocateNear(std::uint32_t& cursor, std::uint32_t minimumRun) {
    // Stream data goes in runs of consecutive sectors, so it is written and read in few calls:
    // the sector after the last one taken, else the start of a free run long enough, else the
    // end of the file. Shorter holes are left to the tables and the directory.
    std::uint32_t taken = FreeSector;
    const bool atEnd = cursor == m_fat.size(); // growing at the end: no need to look for a run
    if (!atEnd)
        taken = m_freePool.contains(cursor) ? cursor : m_freePool.FirstRun(minimumRun);
    taken = TakeSector(taken);
    cursor = taken + 1;
    return taken;
}

std::uint32_t CompoundFile::TakeSector(std::uint32_t sector) {
    // FreeSector stands for a new sector at the end of the file.
    if (sector != FreeSector) {
        m_freePool.erase(sector);
    } else {
        sector = static_cast<std::uint32_t>(m_fat.size());
        m_fat.push_back(FreeSector);
        m_freshFlag.push_back(0);
        m_fatDirty.insert(sector / IdsPerSector);
    }
    // A sector freed earlier in this transaction may still lie in the pending run.
    const std::uint32_t runSectors = static_cast<std::uint32_t>(m_runBytes / SectorSize);
    if (sector >= m_runStart && sector - m_runStart < runSectors)
        std::memset(m_run.get() + std::size_t(sector - m_runStart) * SectorSize, 0, SectorSize);
    if (m_freshFlag[sector] == 0)
        m_freshList.push_back(sector);
    m_freshFlag[sector] = 1;
    SetFat(sector, EndOfChain);
    return sector;
}

void CompoundFile::ReleaseSector(std::uint32_t sector) {
    SetFat(sector, FreeSector);
    if (IsFresh(sector)) {
        m_freshFlag[sector] = 0;
        m_freePool.insert(sector);
    } else {
        m_pendingFree.push_back(sector);
    }
}

void CompoundFile::AppendDataSectors(std::vector<std::uint32_t>& chain, std::size_t count) {
    if (count == 0)
        return;
    const auto first = static_cast<std::uint32_t>(m_fat.size());
    const auto end = static_cast<std::uint32_t>(first + count);
    if (!chain.empty())
        SetFat(chain.back(), first);
    m_fat.resize(end);
    for (std::uint32_t sector = first; sector + 1 < end; ++sector)
        m_fat[sector] = sector + 1;
    m_fat[end - 1] = EndOfChain;
    for (std::uint32_t index = first / IdsPerSector; index <= (end - 1) / IdsPerSector; ++index)
        m_fatDirty.insert(index);
    m_freshFlag.resize(end);
    for (std::uint32_t sector = first; sector < end; ++sector) {
        m_freshFlag[sector] = 1;
        m_freshList.push_back(sector);
        chain.push_back(sector);
    }
    // The pending run holds sectors already taken, never new ones; if it did, they would read
    // as zeros as a new sector does.
    const std::uint32_t runSectors = static_cast<std::uint32_t>(m_runBytes / SectorSize);
    if (runSectors != 0 && m_runStart + runSectors > first) {
        const std::uint32_t from = std::max(first, m_runStart);
        const std::uint32_t to = std::min(end, m_runStart + runSectors);
        if (from < to)
            std::memset(m_run.get() + std::size_t(from - m_runStart) * SectorSize, 0,
                        std::size_t(to - from) * SectorSize);
    }
    m_dataCursor = end;
}

void CompoundFile::RelinkChain(const std::vector<std::uint32_t>& chain,
                               const std::vector<std::size_t>& placed) {
    // The FAT entries that point at a placed sector and the one of the sector itself; the
    // others still link the chain as they did.
    for (std::size_t i : placed) {
        if (i > 0)
            SetFat(chain[i - 1], chain[i]);
        SetFat(chain[i], i + 1 < chain.size() ? chain[i + 1] : EndOfChain);
    }
}

HRESULT CompoundFile::ReadSectorBytes(std::uint32_t sector, std::uint32_t offset, void* out,
                                      std::uint32_t size) {
    const std::uint32_t runSectors = static_cast<std::uint32_t>(m_runBytes / SectorSize);
    if (sector >= m_runStart && sector - m_runStart < runSectors) {
        std::memcpy(out, m_run.get() + std::size_t(sector - m_runStart) * SectorSize + offset,
                    size);
        return S_OK;
    }
    if (sector < m_freshFlag.size() && m_freshFlag[sector] == 1) {
        std::memset(out, 0, size); // allocated, never written: reads as zeros
        return S_OK;
    }
    if (sector >= m_fat.size() ||
        !m_bytes->ReadAt((std::uint64_t(sector) + 1) * SectorSize + offset, out, size))
        return Fail(STG_E_READFAULT, "cannot read sector 0x%x (the file has %llu bytes)", sector,
                    static_cast<unsigned long long>(m_bytes->Size()));
    return S_OK;
}

HRESULT CompoundFile::WriteFreshBytes(std::uint32_t sector, std::uint32_t offset, const void* data,
                                      std::uint32_t size) {
    const std::uint32_t runSectors = static_cast<std::uint32_t>(m_runBytes / SectorSize);
    const bool inRun = sector >= m_runStart && sector - m_runStart < runSectors;
    if (!inRun) {
        const bool extends =
            m_runBytes != 0 && sector == m_runStart + runSectors && m_runBytes < MaxRunBytes;
        if (!extends) {
            if (HRESULT hr = FlushRun(); FAILED(hr))
                return hr;
            m_runStart = sector;
            if (!m_run)
                m_run.reset(new std::uint8_t[MaxRunBytes]);
        }
        std::uint8_t* slot = m_run.get() + m_runBytes;
        m_runBytes += SectorSize;
        if (size < SectorSize) {
            // A sector written to disk earlier in this transaction keeps what it holds; a new
            // one reads as zeros where nothing is written.
            if (m_freshFlag[sector] == 2) {
                if (!m_bytes->ReadAt((std::uint64_t(sector) + 1) * SectorSize, slot, SectorSize))
                    return Fail(STG_E_READFAULT, "cannot read back sector 0x%x", sector);
            } else {
                std::memset(slot, 0, SectorSize);
            }
        }
    }
    if (size > 0)
        std::memcpy(m_run.get() + std::size_t(sector - m_runStart) * SectorSize + offset, data,
                    size);
    return S_OK;
}

HRESULT CompoundFile::WriteFreshRange(std::uint32_t sector, std::uint32_t offset,
                                      const std::uint8_t* data, std::size_t size) {
    if (offset != 0) {
        const std::uint32_t n =
            static_cast<std::uint32_t>(std::min<std::size_t>(SectorSize - offset, size));
        if (HRESULT hr = WriteFreshBytes(sector++, offset, data, n); FAILED(hr))
            return hr;
        data += n;
        size -= n;
    }
    // Many whole sectors go to the file as they are, without a copy, unless the pending run
    // holds one of them (its copy would be written over them later).
    const std::uint32_t whole = static_cast<std::uint32_t>(size / SectorSize);
    const std::uint32_t runSectors = static_cast<std::uint32_t>(m_runBytes / SectorSize);
    const bool overlapsRun =
        runSectors != 0 && sector < m_runStart + runSectors && m_runStart < sector + whole;
    if (whole >= DirectWriteSectors && !overlapsRun) {
        if (!m_bytes->WriteAt((std::uint64_t(sector) + 1) * SectorSize, data,
                              std::size_t(whole) * SectorSize))
            return WriteFailed("stream data");
        for (std::uint32_t i = 0; i < whole; ++i)
            m_freshFlag[sector + i] = 2;
        sector += whole;
        data += std::size_t(whole) * SectorSize;
        size -= std::size_t(whole) * SectorSize;
    }
    for (; size > 0; ++sector) {
        const std::uint32_t n = static_cast<std::uint32_t>(std::min<std::size_t>(SectorSize, size));
        if (HRESULT hr = WriteFreshBytes(sector, 0, data, n); FAILED(hr))
            return hr;
        data += n;
        size -= n;
    }
    return S_OK;
}

HRESULT CompoundFile::WriteFailed(const char* what) {
    const int err = errno;
    std::string message = m_error.empty() ? std::string() : m_error;
    Fail(err == ENOSPC ? STG_E_MEDIUMFULL : STG_E_WRITEFAULT, "cannot write %s: %s", what,
         std::strerror(err));
    std::string failure = m_error;
    // The file still holds the last commit: go back to it.
    Revert();
    m_error = failure;
    return err == ENOSPC ? STG_E_MEDIUMFULL : STG_E_WRITEFAULT;
}

HRESULT CompoundFile::FlushRun() {
    if (m_runBytes == 0)
        return S_OK;
    if (!m_bytes->WriteAt((std::uint64_t(m_runStart) + 1) * SectorSize, m_run.get(), m_runBytes))
        return WriteFailed("stream data");
    const std::uint32_t runSectors = static_cast<std::uint32_t>(m_runBytes / SectorSize);
    for (std::uint32_t i = 0; i < runSectors; ++i)
        if (m_freshFlag[m_runStart + i] != 0)
            m_freshFlag[m_runStart + i] = 2;
    m_runBytes = 0;
    return S_OK;
}

HRESULT CompoundFile::ReplaceInChain(std::vector<std::uint32_t>& chain, std::size_t index,
                                     bool copy) {
    const std::uint32_t old = chain[index];
    std::uint8_t buffer[SectorSize];
    if (copy) {
        if (HRESULT hr = ReadSectorBytes(old, 0, buffer, SectorSize); FAILED(hr))
            return hr;
    }
    const std::uint32_t fresh = AllocateDataSector();
    if (copy) {
        if (HRESULT hr = WriteFreshBytes(fresh, 0, buffer, SectorSize); FAILED(hr))
            return hr;
    }
    SetFat(fresh, m_fat[old]);
    if (index > 0)
        SetFat(chain[index - 1], fresh);
    chain[index] = fresh;
    ReleaseSector(old);
    return S_OK;
}

void CompoundFile::SetMiniFat(std::uint32_t mini, std::uint32_t value) {
    if (m_miniFat[mini] != value) {
        m_miniFat[mini] = value;
        m_miniFatDirty.insert(mini / IdsPerSector);
    }
}

std::uint32_t CompoundFile::AllocateMini() {
    std::uint32_t mini;
    if (!m_miniFreePool.empty()) {
        mini = m_miniFreePool.lowest();
        m_miniFreePool.erase(mini);
    } else {
        mini = static_cast<std::uint32_t>(m_miniFat.size());
        m_miniFat.push_back(FreeSector);
        m_miniFresh.push_back(0);
        m_miniFatDirty.insert(mini / IdsPerSector);
        const std::uint32_t index = mini / (SectorSize / MiniSectorSize);
        if (index >= m_miniChain.size()) {
            const std::uint32_t sector = AllocateSector();
            if (!m_miniChain.empty())
                SetFat(m_miniChain.back(), sector);
            m_miniChain.push_back(sector);
            m_miniPending[index].assign(SectorSize, 0);
        }
    }
    if (m_miniFresh[mini] == 0)
        m_miniFreshList.push_back(mini);
    m_miniFresh[mini] = 1;
    SetMiniFat(mini, EndOfChain);
    return mini;
}

void CompoundFile::ReleaseMini(std::uint32_t mini) {
    SetMiniFat(mini, FreeSector);
    if (m_miniFresh[mini]) {
        m_miniFresh[mini] = 0;
        m_miniFreePool.insert(mini);
    } else {
        m_miniPendingFree.push_back(mini);
    }
}

HRESULT CompoundFile::ReadMini(std::uint32_t mini, void* out) {
    const std::uint32_t index = mini / (SectorSize / MiniSectorSize);
    const std::uint32_t offset = (mini % (SectorSize / MiniSectorSize)) * MiniSectorSize;
    if (index >= m_miniChain.size())
        return Fail(STG_E_READFAULT, "mini sector 0x%x lies outside the mini stream", mini);
    auto pending = m_miniPending.find(index);
    if (pending != m_miniPending.end()) {
        std::memcpy(out, pending->second.data() + offset, MiniSectorSize);
        return S_OK;
    }
    return ReadSectorBytes(m_miniChain[index], offset, out, MiniSectorSize);
}

HRESULT CompoundFile::WriteMini(std::uint32_t mini, const void* data) {
    const std::uint32_t index = mini / (SectorSize / MiniSectorSize);
    const std::uint32_t offset = (mini % (SectorSize / MiniSectorSize)) * MiniSectorSize;
    auto pending = m_miniPending.find(index);
    if (pending == m_miniPending.end()) {
        std::vector<std::uint8_t> buffer(SectorSize);
        if (HRESULT hr = ReadSectorBytes(m_miniChain[index], 0, buffer.data(), SectorSize);
            FAILED(hr))
            return hr;
        pending = m_miniPending.emplace(index, std::move(buffer)).first;
    }
    std::memcpy(pending->second.data() + offset, data, MiniSectorSize);
    return S_OK;
}

void CompoundFile::SerializeHeader(std::uint8_t* h) const {
    std::memset(h, 0, SectorSize);
    std::memcpy(h, Signature, sizeof Signature);
    Put16(h + 0x18, 0x003E);
    Put16(h + 0x1A, 3);
    Put16(h + 0x1C, 0xFFFE);
    Put16(h + 0x1E, 9);
    Put16(h + 0x20, 6);
    Put32(h + 0x2C, static_cast<std::uint32_t>(m_fatLocations.size()));
    Put32(h + 0x30, m_dirChain.empty() ? EndOfChain : m_dirChain[0]);
    Put32(h + 0x34, m_transaction);
    Put32(h + 0x38, MiniStreamCutoff);
    Put32(h + 0x3C, m_miniFatChain.empty() ? EndOfChain : m_miniFatChain[0]);
    Put32(h + 0x40, static_cast<std::uint32_t>(m_miniFatChain.size()));
    Put32(h + 0x44, m_difatLocations.empty() ? EndOfChain : m_difatLocations[0]);
    Put32(h + 0x48, static_cast<std::uint32_t>(m_difatLocations.size()));
    for (std::uint32_t i = 0; i < HeaderDifatCount; ++i)
        Put32(h + 0x4C + 4 * i, i < m_fatLocations.size() ? m_fatLocations[i] : FreeSector);
}

namespace {
// One table sector: the ids of table from first on, free marks past its end.
void PutIds(std::uint8_t* out, const std::vector<std::uint32_t>& table, std::size_t first) {
    const std::size_t have =
        first < table.size() ? std::min<std::size_t>(IdsPerSector, table.size() - first) : 0;
    if constexpr (std::endian::native == std::endian::little) {
        if (have != 0)
            std::memcpy(out, table.data() + first, 4 * have);
    } else {
        for (std::size_t j = 0; j < have; ++j)
            Put32(out + 4 * j, table[first + j]);
    }
    std::memset(out + 4 * have, 0xFF, 4 * (IdsPerSector - have)); // FreeSector
}
} // namespace

HRESULT CompoundFile::PlaceMetadata(SectorWrites& writes) {
    // Chains are linked where a sector was placed: a long chain costs nothing when little of
    // it changes. (Sectors added to the mini stream were linked as they were added.)
    std::vector<std::size_t> placed;

    // Mini stream sectors: changed ones move to fresh sectors.
    for (auto& [index, buffer] : m_miniPending) {
        if (!IsFresh(m_miniChain[index])) {
            const std::uint32_t old = m_miniChain[index];
            m_miniChain[index] = AllocateSector();
            ReleaseSector(old);
            placed.push_back(index);
        }
        std::memcpy(writes.Add(m_miniChain[index]), buffer.data(), SectorSize);
    }
    m_miniPending.clear();
    RelinkChain(m_miniChain, placed);
    DirEntry& root = m_entries[0];
    const std::uint32_t miniStart = m_miniChain.empty() ? EndOfChain : m_miniChain[0];
    const std::uint64_t miniSize = std::uint64_t(m_miniFat.size()) * MiniSectorSize;
    if (root.start != miniStart || root.size != miniSize) {
        root.start = miniStart;
        root.size = miniSize;
        Touch(0);
    }

    // Mini FAT.
    const std::size_t miniFatSectors = (m_miniFat.size() + IdsPerSector - 1) / IdsPerSector;
    placed.clear();
    while (m_miniFatChain.size() < miniFatSectors) {
        placed.push_back(m_miniFatChain.size());
        m_miniFatChain.push_back(AllocateSector());
        m_miniFatDirty.insert(static_cast<std::uint32_t>(m_miniFatChain.size() - 1));
    }
    for (std::uint32_t index : m_miniFatDirty.Sorted()) {
        if (index >= m_miniFatChain.size())
            continue;
        if (!IsFresh(m_miniFatChain[index])) {
            const std::uint32_t old = m_miniFatChain[index];
            m_miniFatChain[index] = AllocateSector();
            ReleaseSector(old);
            placed.push_back(index);
        }
        PutIds(writes.Add(m_miniFatChain[index]), m_miniFat, std::size_t(index) * IdsPerSector);
    }
    RelinkChain(m_miniFatChain, placed);

    // Directory.
    const std::size_t dirSectors = m_entries.size() / EntriesPerSector;
    placed.clear();
    while (m_dirChain.size() < dirSectors) {
        placed.push_back(m_dirChain.size());
        m_dirDirty.insert(static_cast<std::uint32_t>(m_dirChain.size()));
        m_dirChain.push_back(AllocateSector());
    }
    // Sectors with a changed entry, and the new ones.
    for (std::uint32_t s : m_dirDirty.Sorted()) {
        if (s >= dirSectors)
            continue;
        if (!IsFresh(m_dirChain[s])) {
            const std::uint32_t old = m_dirChain[s];
            m_dirChain[s] = AllocateSector();
            ReleaseSector(old);
            placed.push_back(s);
        }
        std::uint8_t* buffer = writes.Add(m_dirChain[s]);
        std::memset(buffer, 0, SectorSize);
        for (std::uint32_t k = 0; k < EntriesPerSector; ++k) {
            const DirEntry& e = m_entries[std::size_t(s) * EntriesPerSector + k];
            std::uint8_t* p = buffer + 128 * k;
            Put32(p + 0x44, e.type == TypeUnused ? NoStream : e.left);
            Put32(p + 0x48, e.type == TypeUnused ? NoStream : e.right);
            Put32(p + 0x4C, e.type == TypeUnused ? NoStream : e.child);
            if (e.type == TypeUnused)
                continue;
            for (std::size_t c = 0; c < e.name.size(); ++c)
                Put16(p + 2 * c, e.name[c]);
            Put16(p + 0x40, static_cast<std::uint16_t>((e.name.size() + 1) * 2));
            p[0x42] = e.type;
            p[0x43] = e.color;
            std::memcpy(p + 0x50, e.clsid, 16);
            Put32(p + 0x60, e.stateBits);
            Put32(p + 0x64, static_cast<std::uint32_t>(e.created));
            Put32(p + 0x68, static_cast<std::uint32_t>(e.created >> 32));
            Put32(p + 0x6C, static_cast<std::uint32_t>(e.modified));
            Put32(p + 0x70, static_cast<std::uint32_t>(e.modified >> 32));
            const bool empty = e.type == TypeStorage || e.size == 0;
            Put32(p + 0x74, e.type == TypeStorage ? 0 : (empty ? EndOfChain : e.start));
            Put32(p + 0x78, static_cast<std::uint32_t>(e.size));
        }
    }
    RelinkChain(m_dirChain, placed);

    // FAT and DIFAT, until placing them changes nothing more: a moved FAT sector changes the
    // FAT entries of its old and new place, which may dirty another FAT sector.
    IndexSet& difatDirty = m_difatDirtyScratch;
    difatDirty.clear();
    auto noteFatMoved = [&](std::size_t index) {
        if (index >= HeaderDifatCount)
            difatDirty.insert(
                static_cast<std::uint32_t>((index - HeaderDifatCount) / DifatIdsPerSector));
    };
    std::size_t fatLookedAt = 0; // of m_fatDirty's members in the order they came
    for (bool changed = true; changed;) {
        changed = false;
        const std::size_t fatSectors =
            std::max<std::size_t>(1, (m_fat.size() + IdsPerSector - 1) / IdsPerSector);
        while (m_fatLocations.size() < fatSectors) {
            const std::uint32_t sector = AllocateSector();
            SetFat(sector, FatSectorMark);
            m_fatLocations.push_back(sector);
            m_fatDirty.insert(static_cast<std::uint32_t>(m_fatLocations.size() - 1));
            noteFatMoved(m_fatLocations.size() - 1);
            changed = true;
        }
        const std::size_t difatSectors =
            m_fatLocations.size() > HeaderDifatCount
                ? (m_fatLocations.size() - HeaderDifatCount + DifatIdsPerSector - 1) /
                      DifatIdsPerSector
                : 0;
        while (m_difatLocations.size() < difatSectors) {
            const std::uint32_t sector = AllocateSector();
            SetFat(sector, DifatSectorMark);
            m_difatLocations.push_back(sector);
            difatDirty.insert(static_cast<std::uint32_t>(m_difatLocations.size() - 1));
            if (m_difatLocations.size() > 1)
                difatDirty.insert(static_cast<std::uint32_t>(m_difatLocations.size() - 2));
            changed = true;
        }
        // A FAT sector looked at once is in a fresh place from then on: each round looks
        // only at those dirtied since the last, in ascending order as a full pass would.
        const std::vector<std::uint32_t>& dirtied = m_fatDirty.InInsertionOrder();
        std::vector<std::uint32_t> dirtyFat(dirtied.begin() + fatLookedAt, dirtied.end());
        fatLookedAt = dirtied.size();
        std::sort(dirtyFat.begin(), dirtyFat.end());
        for (std::uint32_t index : dirtyFat) {
            if (index >= m_fatLocations.size() || IsFresh(m_fatLocations[index]))
                continue;
            const std::uint32_t old = m_fatLocations[index];
            m_fatLocations[index] = AllocateSector();
            SetFat(m_fatLocations[index], FatSectorMark);
            ReleaseSector(old);
            noteFatMoved(index);
            changed = true;
        }
        const std::vector<std::uint32_t> dirtyDifat = difatDirty.Sorted();
        for (std::uint32_t j : dirtyDifat) {
            if (j >= m_difatLocations.size() || IsFresh(m_difatLocations[j]))
                continue;
            const std::uint32_t old = m_difatLocations[j];
            m_difatLocations[j] = AllocateSector();
            SetFat(m_difatLocations[j], DifatSectorMark);
            ReleaseSector(old);
            if (j > 0)
                difatDirty.insert(j - 1); // its next pointer changes
            changed = true;
        }
    }
    for (std::uint32_t index : m_fatDirty.Sorted()) {
        if (index >= m_fatLocations.size())
            continue;
        PutIds(writes.Add(m_fatLocations[index]), m_fat, std::size_t(index) * IdsPerSector);
    }
    for (std::uint32_t j : difatDirty.Sorted()) {
        if (j >= m_difatLocations.size())
            continue;
        std::uint8_t* buffer = writes.Add(m_difatLocations[j]);
        PutIds(buffer, m_fatLocations, HeaderDifatCount + std::size_t(j) * DifatIdsPerSector);
        Put32(buffer + 4 * DifatIdsPerSector,
              j + 1 < m_difatLocations.size() ? m_difatLocations[j + 1] : EndOfChain);
    }
    return S_OK;
}

HRESULT CompoundFile::WritePlaced(SectorWrites& writes) {
    // A sector placed twice keeps its last bytes: slots grow with each placing, so sorting by
    // sector, then slot, leaves the last one last.
    auto& slots = writes.slots;
    std::sort(slots.begin(), slots.end());
    for (std::size_t i = 0; i < slots.size();) {
        // A run of consecutive sectors goes out in one write; a lone sector (the most common
        // case) straight from where it was placed.
        const std::uint32_t first = slots[i].first;
        std::uint32_t next = first;
        const std::uint8_t* single = nullptr;
        std::size_t count = 0;
        while (i < slots.size() && slots[i].first == next && count * SectorSize < MaxRunBytes) {
            while (i + 1 < slots.size() && slots[i + 1].first == next)
                ++i;
            const std::uint8_t* bytes =
                writes.bytes.data() + std::size_t(slots[i].second) * SectorSize;
            if (count == 0) {
                single = bytes;
            } else {
                if (count == 1)
                    m_placedRun.assign(single, single + SectorSize);
                m_placedRun.insert(m_placedRun.end(), bytes, bytes + SectorSize);
            }
            ++count;
            ++next;
            ++i;
        }
        if (!m_bytes->WriteAt((std::uint64_t(first) + 1) * SectorSize,
                              count == 1 ? single : m_placedRun.data(), count * SectorSize))
            return WriteFailed("the allocation tables and directory");
    }
    return S_OK;
}

HRESULT CompoundFile::Commit(bool flushToDisk) {
    if (!m_bytes->Writable())
        return Fail(STG_E_ACCESSDENIED, "the file is open for reading only");
    if (m_entries.empty())
        return Fail(STG_E_REVERTED, "the file could not be read back after a failed write");
    std::vector<std::uint32_t> open;
    for (auto& [id, data] : m_streams)
        open.push_back(id);
    for (std::uint32_t id : open)
        if (HRESULT hr = FlushStream(id); FAILED(hr))
            return hr;

    m_placed.clear();
    if (HRESULT hr = PlaceMetadata(m_placed); FAILED(hr))
        return hr;
    if (HRESULT hr = FlushRun(); FAILED(hr))
        return hr;
    if (HRESULT hr = WritePlaced(m_placed); FAILED(hr))
        return hr;
    // Everything the new header points at must be on the disk before the header is.
    if (flushToDisk && !m_bytes->Flush())
        return WriteFailed("(flush) the new sectors");
    std::uint8_t header[SectorSize];
    ++m_transaction;
    SerializeHeader(header);
    if (!m_bytes->WriteAt(0, header, SectorSize))
        return WriteFailed("the header");
    if (flushToDisk && !m_bytes->Flush())
        return WriteFailed("(flush) the header");
    const std::uint64_t wanted = (std::uint64_t(m_fat.size()) + 1) * SectorSize;
    if (m_bytes->Size() != wanted)
        m_bytes->Truncate(wanted); // sectors past the end are free; an error here loses nothing

    // The new state is the committed one: what it dropped is free from now on.
    for (std::uint32_t sector : m_freshList)
        if (sector < m_freshFlag.size())
            m_freshFlag[sector] = 0;
    m_freshList.clear();
    for (std::uint32_t sector : m_pendingFree)
        m_freePool.insert(sector);
    m_pendingFree.clear();
    for (std::uint32_t mini : m_miniFreshList)
        if (mini < m_miniFresh.size())
            m_miniFresh[mini] = 0;
    m_miniFreshList.clear();
    for (std::uint32_t mini : m_miniPendingFree)
        m_miniFreePool.insert(mini);
    m_miniPendingFree.clear();
    m_fatDirty.clear();
    m_miniFatDirty.clear();
    m_dirDirty.clear();
    m_error.clear();
    return S_OK;
}

HRESULT CompoundFile::Revert() {
    ++m_generation;
    m_runBytes = 0;
    m_entries.clear();
    m_children.clear();
    HRESULT hr = Load();
    if (FAILED(hr))
        m_entries.clear();
    return hr;
}

} // namespace talvor::platform::storage::detail
