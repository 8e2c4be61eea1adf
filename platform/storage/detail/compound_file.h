// The state of one open compound file: the allocation tables, the directory and the data of
// open streams, all held in memory and changed there; Commit() writes them. Sectors that the
// last commit uses are never written before the header switches: changed data goes to sectors
// that are free in both the committed and the working state ("fresh" sectors), and the sectors
// it replaces become free only once the new header is on disk.
#pragma once

#include "platform/storage/detail/compound_format.h"
#include "platform/storage/detail/lock_bytes.h"
#include "platform/storage/detail/sector_set.h"
#include "platform/storage/storage_types.h"

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace talvor::platform::storage::detail {

// The longest run of sectors written in one call.
constexpr std::size_t MaxRunBytes = 1u << 20;
// Whole sectors of a stream write that go to the file directly rather than through the run.
constexpr std::uint32_t DirectWriteSectors = 64;

// Name order of the directory: shorter names first, then by upper-case characters.
int CompareNames(std::u16string_view a, std::u16string_view b);
struct NameLess {
    bool operator()(const std::u16string& a, const std::u16string& b) const {
        return CompareNames(a, b) < 0;
    }
};

// A set of table sector indices: inserting is a flag test, and the members come out in
// ascending order, the order in which a commit moves and writes the sectors.
class IndexSet {
public:
    void insert(std::uint32_t index) {
        if (index >= m_has.size())
            m_has.resize(std::max<std::size_t>(index + 1, m_has.size() * 2), 0);
        if (m_has[index])
            return;
        m_has[index] = 1;
        m_members.push_back(index);
        m_sorted = m_sorted && (m_members.size() < 2 || m_members[m_members.size() - 2] < index);
    }
    void clear() {
        for (std::uint32_t index : m_members)
            m_has[index] = 0;
        m_members.clear();
        m_sorted = true;
    }
    // The members in the order they were inserted, until Sorted is called; valid until the
    // next insert.
    const std::vector<std::uint32_t>& InInsertionOrder() const { return m_members; }
    // The members in ascending order; valid until the next insert.
    const std::vector<std::uint32_t>& Sorted() {
        if (!m_sorted)
            std::sort(m_members.begin(), m_members.end());
        m_sorted = true;
        return m_members;
    }

private:
    std::vector<std::uint8_t> m_has;
    std::vector<std::uint32_t> m_members;
    bool m_sorted = true;
};

struct DirEntry {
    std::u16string name;
    std::uint8_t type = TypeUnused;
    std::uint8_t color = Black;
    std::uint32_t left = NoStream;
    std::uint32_t right = NoStream;
    std::uint32_t child = NoStream;
    std::uint8_t clsid[16] = {};
    std::uint32_t stateBits = 0;
    std::uint64_t created = 0;
    std::uint64_t modified = 0;
    std::uint32_t start = EndOfChain;
    std::uint64_t size = 0;
};

class CompoundFile {
public:
    // A new, empty file, written and flushed before this returns.
    static HRESULT Create(std::unique_ptr<LockBytes> bytes, std::shared_ptr<CompoundFile>& out,
                          std::string& error, bool flushToDisk = true);
    // Reads and checks the whole structure; a damaged file gives an error and no object.
    static HRESULT Open(std::unique_ptr<LockBytes> bytes, std::shared_ptr<CompoundFile>& out,
                        std::string& error);

    bool Writable() const { return m_bytes->Writable(); }
    // False after a failed write whose revert could not read the file back.
    bool Usable() const { return !m_entries.empty(); }
    // Grows with every revert; objects opened before a revert compare it and answer
    // STG_E_REVERTED.
    std::uint64_t Generation() const { return m_generation; }
    const std::string& LastError() const { return m_error; }

    const DirEntry& Entry(std::uint32_t id) const { return m_entries[id]; }
    // NoStream when the storage has no element of that name.
    std::uint32_t FindChild(std::uint32_t storage, std::u16string_view name) const;
    // The storage's elements in name order.
    std::vector<std::uint32_t> Children(std::uint32_t storage) const;
    HRESULT AddChild(std::uint32_t storage, std::u16string_view name, std::uint8_t type,
                     std::uint32_t& id);
    // Removes the element and everything below it.
    HRESULT RemoveChild(std::uint32_t storage, std::uint32_t id);
    HRESULT RenameChild(std::uint32_t storage, std::uint32_t id, std::u16string_view name);
    void SetClass(std::uint32_t id, const std::uint8_t clsid[16]);

    // Exclusive opening of elements.
    bool IsOpen(std::uint32_t id) const { return m_openCount.count(id) != 0; }
    void MarkOpen(std::uint32_t id) { ++m_openCount[id]; }
    void MarkClosed(std::uint32_t id);

    // Stream data. The stream must be opened with OpenStream first; CloseStream hands its
    // data to the directory.
    HRESULT OpenStream(std::uint32_t id);
    HRESULT CloseStream(std::uint32_t id);
    std::uint64_t StreamSize(std::uint32_t id) const;
    HRESULT ReadStream(std::uint32_t id, std::uint64_t pos, void* out, std::size_t size,
                       std::size_t& got);
    HRESULT WriteStream(std::uint32_t id, std::uint64_t pos, const void* data, std::size_t size);
    HRESULT SetStreamSize(std::uint32_t id, std::uint64_t size);
    HRESULT FlushStream(std::uint32_t id);

    // Writes every change. On failure the file keeps its last committed state and this object
    // goes back to it (a new generation).
    HRESULT Commit(bool flushToDisk);
    // Drops every change since the last commit.
    HRESULT Revert();

private:
    struct StreamData {
        bool small = true;
        std::uint64_t size = 0;
        std::string smallData;                // the whole stream while small
        std::vector<std::uint32_t> chain;     // sectors while big
        std::vector<std::uint32_t> miniChain; // mini sectors the directory holds for it
        bool dirty = false;
    };

    CompoundFile() = default;
    HRESULT Fail(HRESULT hr, const char* format, ...) __attribute__((format(printf, 3, 4)));
    HRESULT Load();
    void CreateEmpty();
    HRESULT LoadDirectoryTree();
    HRESULT FollowChain(std::uint32_t start, std::uint64_t count, std::vector<std::uint8_t>& owner,
                        std::vector<std::uint32_t>& chain, const char* what);
    HRESULT FollowMiniChain(std::uint32_t start, std::uint64_t count,
                            std::vector<std::uint8_t>& owner, std::vector<std::uint32_t>& chain,
                            const std::string& what);
    std::string EntryLabel(std::uint32_t id) const;

    // Sectors.
    void SetFat(std::uint32_t sector, std::uint32_t value);
    std::uint32_t AllocateSector();
    std::uint32_t AllocateDataSector();
    std::uint32_t AllocateNear(std::uint32_t& cursor, std::uint32_t minimumRun);
    // What count calls of AllocateDataSector, each linked after the last, do when the data
    // cursor is at the end of the file: new sectors there, appended to chain.
    void AppendDataSectors(std::vector<std::uint32_t>& chain, std::size_t count);
    std::uint32_t TakeSector(std::uint32_t sector);
    void ReleaseSector(std::uint32_t sector);
    bool IsFresh(std::uint32_t sector) const {
        return sector < m_freshFlag.size() && m_freshFlag[sector] != 0;
    }
    // Links the chain around the sectors at the positions given.
    void RelinkChain(const std::vector<std::uint32_t>& chain,
                     const std::vector<std::size_t>& placed);
    HRESULT ReadSectorBytes(std::uint32_t sector, std::uint32_t offset, void* out,
                            std::uint32_t size);
    HRESULT WriteFreshBytes(std::uint32_t sector, std::uint32_t offset, const void* data,
                            std::uint32_t size);
    // Writes size bytes over consecutive fresh sectors from sector on, the first from offset.
    HRESULT WriteFreshRange(std::uint32_t sector, std::uint32_t offset, const std::uint8_t* data,
                            std::size_t size);
    HRESULT FlushRun();
    HRESULT WriteFailed(const char* what);
    HRESULT ReplaceInChain(std::vector<std::uint32_t>& chain, std::size_t index, bool copy);

    // Mini sectors.
    void SetMiniFat(std::uint32_t mini, std::uint32_t value);
    std::uint32_t AllocateMini();
    void ReleaseMini(std::uint32_t mini);
    HRESULT ReadMini(std::uint32_t mini, void* out);
    HRESULT WriteMini(std::uint32_t mini, const void* data);

    // Directory.
    std::uint32_t NewEntry();
    void ClearEntry(std::uint32_t id);
    void Touch(std::uint32_t id);
    void InsertIntoTree(std::uint32_t storage, std::uint32_t id);
    void RebuildTree(std::uint32_t storage);
    void ReleaseContent(std::uint32_t id);

    // Big stream writes.
    HRESULT WriteBig(StreamData& data, std::uint64_t pos, const std::uint8_t* src,
                     std::size_t size);
    HRESULT ReadBig(const StreamData& data, std::uint64_t pos, std::uint8_t* out, std::size_t size);
    HRESULT MakeBig(StreamData& data);
    HRESULT ShrinkBig(StreamData& data, std::uint64_t size);

    // The sectors a commit writes besides stream data: their bytes side by side in the order
    // they were placed, and the sector of each. Kept between commits for its memory.
    struct SectorWrites {
        std::vector<std::uint8_t> bytes;
        std::vector<std::pair<std::uint32_t, std::uint32_t>> slots; // sector, index in bytes
        // Room for the bytes of sector; valid until the next Add.
        std::uint8_t* Add(std::uint32_t sector) {
            const auto slot = static_cast<std::uint32_t>(slots.size());
            slots.emplace_back(sector, slot);
            bytes.resize(std::size_t(slot + 1) * SectorSize);
            return bytes.data() + std::size_t(slot) * SectorSize;
        }
        void clear() {
            bytes.clear();
            slots.clear();
        }
    };
    HRESULT PlaceMetadata(SectorWrites& writes);
    // Writes the placed sectors in ascending order, consecutive ones in one call.
    HRESULT WritePlaced(SectorWrites& writes);
    void SerializeHeader(std::uint8_t* header) const;

    std::unique_ptr<LockBytes> m_bytes;
    std::string m_error;
    std::uint64_t m_generation = 0;
    std::uint32_t m_transaction = 0;

    // Allocation, working state.
    std::vector<std::uint32_t> m_fat;
    IndexSet m_fatDirty;                       // FAT sector indices
    std::vector<std::uint32_t> m_fatLocations; // where each FAT sector lives
    std::vector<std::uint32_t> m_difatLocations;
    bool m_difatDirty = false;
    IndexSet m_difatDirtyScratch;          // DIFAT sectors a commit changes, kept for its memory
    std::vector<std::uint8_t> m_freshFlag; // 1 fresh, 2 fresh and written to disk
    std::vector<std::uint32_t> m_freshList;
    SectorSet m_freePool;                     // free in committed and working state
    std::vector<std::uint32_t> m_pendingFree; // committed sectors the working state dropped
    std::uint32_t m_dataCursor = FreeSector;  // the sector after the last data sector taken

    // A run of consecutive fresh sectors not yet written: m_runBytes bytes of m_run (a
    // buffer of MaxRunBytes, made on the first write) from sector m_runStart on.
    std::uint32_t m_runStart = 0;
    std::size_t m_runBytes = 0;
    std::unique_ptr<std::uint8_t[]> m_run;
    SectorWrites m_placed;
    std::vector<std::uint8_t> m_placedRun;

    std::vector<std::uint32_t> m_miniFat;
    IndexSet m_miniFatDirty;
    std::vector<std::uint32_t> m_miniFatChain;
    std::vector<std::uint32_t> m_miniChain;                           // sectors of the mini stream
    std::map<std::uint32_t, std::vector<std::uint8_t>> m_miniPending; // by index in m_miniChain
    std::vector<std::uint8_t> m_miniFresh;
    std::vector<std::uint32_t> m_miniFreshList;
    SectorSet m_miniFreePool;
    std::vector<std::uint32_t> m_miniPendingFree;

    std::vector<DirEntry> m_entries;
    IndexSet m_dirDirty; // directory sectors with a changed entry
    // Every entry below this one is in use: the search for a free entry starts here.
    std::uint32_t m_entrySearchFrom = 1;
    std::vector<std::uint32_t> m_dirChain;
    std::unordered_map<std::uint32_t, std::map<std::u16string, std::uint32_t, NameLess>> m_children;

    std::unordered_map<std::uint32_t, int> m_openCount;
    std::unordered_map<std::uint32_t, StreamData> m_streams;
};

} // namespace talvor::platform::storage::detail
