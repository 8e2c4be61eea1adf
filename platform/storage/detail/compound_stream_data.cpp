// Data of open streams. A stream shorter than 4096 bytes is held whole in memory and goes to
// mini sectors when it is flushed; a longer one writes its sectors as it goes, into fresh
// sectors only: a committed sector that is written to is first copied to a fresh one.
#include "platform/storage/detail/compound_file.h"

#include <algorithm>

namespace talvor::platform::storage::detail {
namespace {
// Streams are limited to 32-bit sizes in version 3 files.
constexpr std::uint64_t MaxStreamSize = 0xFFFFFFFFull;
} // namespace

HRESULT CompoundFile::OpenStream(std::uint32_t id) {
    if (m_streams.count(id))
        return S_OK;
    const DirEntry& e = m_entries[id];
    StreamData data;
    data.size = e.size;
    if (e.size < MiniStreamCutoff) {
        data.small = true;
        data.smallData.resize(e.size);
        std::uint32_t mini = e.start;
        for (std::uint64_t at = 0; at < e.size; at += MiniSectorSize) {
            if (mini >= m_miniFat.size())
                return Fail(STG_E_DOCFILECORRUPT, "mini sector chain of stream %s is cut short",
                            EntryLabel(id).c_str());
            std::uint8_t buffer[MiniSectorSize];
            if (HRESULT hr = ReadMini(mini, buffer); FAILED(hr))
                return hr;
            std::memcpy(data.smallData.data() + at, buffer,
                        std::min<std::uint64_t>(MiniSectorSize, e.size - at));
            data.miniChain.push_back(mini);
            mini = m_miniFat[mini];
        }
    } else {
        data.small = false;
        std::uint32_t sector = e.start;
        for (std::uint64_t at = 0; at < e.size; at += SectorSize) {
            if (sector >= m_fat.size())
                return Fail(STG_E_DOCFILECORRUPT, "sector chain of stream %s is cut short",
                            EntryLabel(id).c_str());
            data.chain.push_back(sector);
            sector = m_fat[sector];
        }
    }
    m_streams.emplace(id, std::move(data));
    return S_OK;
}

HRESULT CompoundFile::CloseStream(std::uint32_t id) {
    HRESULT hr = FlushStream(id);
    m_streams.erase(id);
    return hr;
}

std::uint64_t CompoundFile::StreamSize(std::uint32_t id) const {
    auto it = m_streams.find(id);
    return it == m_streams.end() ? m_entries[id].size : it->second.size;
}

HRESULT CompoundFile::ReadBig(const StreamData& data, std::uint64_t pos, std::uint8_t* out,
                              std::size_t size) {
    while (size > 0) {
        const std::size_t index = static_cast<std::size_t>(pos / SectorSize);
        const std::uint32_t offset = static_cast<std::uint32_t>(pos % SectorSize);
        // Committed sectors that follow each other on disk are read in one call.
        std::size_t count = 1;
        if (!IsFresh(data.chain[index]))
            while (index + count < data.chain.size() &&
                   data.chain[index + count] == data.chain[index] + count &&
                   !IsFresh(data.chain[index + count]) && count * SectorSize - offset < size)
                ++count;
        const std::size_t n = std::min<std::size_t>(count * SectorSize - offset, size);
        if (count == 1) {
            if (HRESULT hr =
                    ReadSectorBytes(data.chain[index], offset, out, static_cast<std::uint32_t>(n));
                FAILED(hr))
                return hr;
        } else if (!m_bytes->ReadAt((std::uint64_t(data.chain[index]) + 1) * SectorSize + offset,
                                    out, n)) {
            return Fail(STG_E_READFAULT, "cannot read sectors 0x%x to 0x%zx", data.chain[index],
                        data.chain[index] + count - 1);
        }
        out += n;
        pos += n;
        size -= n;
    }
    return S_OK;
}

HRESULT CompoundFile::ReadStream(std::uint32_t id, std::uint64_t pos, void* out, std::size_t size,
                                 std::size_t& got) {
    got = 0;
    const StreamData& data = m_streams.at(id);
    if (pos >= data.size)
        return S_OK;
    size = static_cast<std::size_t>(std::min<std::uint64_t>(size, data.size - pos));
    if (data.small) {
        std::memcpy(out, data.smallData.data() + pos, size);
    } else if (HRESULT hr = ReadBig(data, pos, static_cast<std::uint8_t*>(out), size); FAILED(hr)) {
        return hr;
    }
    got = size;
    return S_OK;
}

HRESULT CompoundFile::WriteBig(StreamData& data, std::uint64_t pos, const std::uint8_t* src,
                               std::size_t size) {
    if (size == 0)
        return S_OK;
    const std::size_t first = static_cast<std::size_t>(pos / SectorSize);
    const std::size_t last = static_cast<std::size_t>((pos + size - 1) / SectorSize);
    // First every sector the write touches is made fresh, in order, so the sectors a stream
    // gets do not depend on how its writer cuts its writes.
    for (std::size_t k = std::min(first, data.chain.size()); k <= last; ++k) {
        if (k >= data.chain.size() && k >= first && m_dataCursor == m_fat.size()) {
            AppendDataSectors(data.chain, last - k + 1);
            break;
        }
        if (k >= data.chain.size()) {
            const std::uint32_t sector = AllocateDataSector();
            if (!data.chain.empty())
                SetFat(data.chain.back(), sector);
            data.chain.push_back(sector);
            if (k < first) {
                if (HRESULT hr = WriteFreshBytes(sector, 0, nullptr, 0); FAILED(hr))
                    return hr;
            }
            continue;
        }
        if (IsFresh(data.chain[k]))
            continue;
        const std::uint64_t start = std::max<std::uint64_t>(pos, std::uint64_t(k) * SectorSize);
        const std::uint64_t end =
            std::min<std::uint64_t>(pos + size, std::uint64_t(k + 1) * SectorSize);
        if (HRESULT hr = ReplaceInChain(data.chain, k, end - start < SectorSize); FAILED(hr))
            return hr;
    }
    // Then the bytes, a run of consecutive sectors at a time.
    std::uint32_t offset = static_cast<std::uint32_t>(pos % SectorSize);
    for (std::size_t k = first; size > 0;) {
        std::size_t count = 1;
        while (k + count <= last && data.chain[k + count] == data.chain[k] + count)
            ++count;
        const std::size_t n = std::min<std::size_t>(count * SectorSize - offset, size);
        if (HRESULT hr = WriteFreshRange(data.chain[k], offset, src, n); FAILED(hr))
            return hr;
        k += count;
        src += n;
        size -= n;
        offset = 0;
    }
    return S_OK;
}

HRESULT CompoundFile::MakeBig(StreamData& data) {
    const std::string content = std::move(data.smallData);
    data.smallData.clear();
    for (std::uint32_t mini : data.miniChain)
        ReleaseMini(mini);
    data.miniChain.clear();
    data.small = false;
    data.chain.clear();
    data.dirty = true;
    return WriteBig(data, 0, reinterpret_cast<const std::uint8_t*>(content.data()), content.size());
}

HRESULT CompoundFile::WriteStream(std::uint32_t id, std::uint64_t pos, const void* src,
                                  std::size_t size) {
    StreamData& data = m_streams.at(id);
    if (pos > MaxStreamSize || size > MaxStreamSize - pos)
        return Fail(STG_E_DOCFILETOOLARGE, "a stream of a version 3 file ends below 4 GiB");
    if (size == 0)
        return S_OK;
    const std::uint64_t end = pos + size;
    data.dirty = true;
    if (data.small && end < MiniStreamCutoff) {
        if (data.smallData.size() < end)
            data.smallData.resize(end, '\0');
        std::memcpy(data.smallData.data() + pos, src, size);
        data.size = data.smallData.size();
        return S_OK;
    }
    if (data.small) {
        if (HRESULT hr = MakeBig(data); FAILED(hr))
            return hr;
    }
    if (pos > data.size) {
        // The gap reads as zeros: clear what the last sector holds beyond the old end.
        if (HRESULT hr = ShrinkBig(data, data.size); FAILED(hr))
            return hr;
    }
    if (HRESULT hr = WriteBig(data, pos, static_cast<const std::uint8_t*>(src), size); FAILED(hr))
        return hr;
    data.size = std::max(data.size, end);
    return S_OK;
}

HRESULT CompoundFile::ShrinkBig(StreamData& data, std::uint64_t size) {
    const std::size_t keep = static_cast<std::size_t>((size + SectorSize - 1) / SectorSize);
    for (std::size_t k = keep; k < data.chain.size(); ++k)
        ReleaseSector(data.chain[k]);
    if (data.chain.size() > keep)
        data.chain.resize(keep);
    if (!data.chain.empty())
        SetFat(data.chain.back(), EndOfChain);
    data.size = std::min(data.size, size);
    const std::uint32_t tail = static_cast<std::uint32_t>(size % SectorSize);
    if (tail != 0 && keep > 0) {
        static const std::uint8_t zeros[SectorSize] = {};
        return WriteBig(data, size, zeros, SectorSize - tail);
    }
    return S_OK;
}

HRESULT CompoundFile::SetStreamSize(std::uint32_t id, std::uint64_t size) {
    StreamData& data = m_streams.at(id);
    if (size > MaxStreamSize)
        return Fail(STG_E_DOCFILETOOLARGE, "a stream of a version 3 file ends below 4 GiB");
    if (size == data.size)
        return S_OK;
    data.dirty = true;
    if (data.small && size < MiniStreamCutoff) {
        data.smallData.resize(size, '\0');
        data.size = size;
        return S_OK;
    }
    if (size < data.size)
        return ShrinkBig(data, size);
    if (data.small) {
        if (HRESULT hr = MakeBig(data); FAILED(hr))
            return hr;
    }
    if (HRESULT hr = ShrinkBig(data, data.size); FAILED(hr))
        return hr;
    static const std::uint8_t zeros[SectorSize] = {};
    // Whole new sectors are fresh and read as zeros; only their allocation is needed.
    for (std::uint64_t at = data.size; at < size;) {
        const std::size_t n = static_cast<std::size_t>(
            std::min<std::uint64_t>(SectorSize - at % SectorSize, size - at));
        if (HRESULT hr = WriteBig(data, at, zeros, n); FAILED(hr))
            return hr;
        at += n;
    }
    data.size = size;
    return S_OK;
}

HRESULT CompoundFile::FlushStream(std::uint32_t id) {
    auto it = m_streams.find(id);
    if (it == m_streams.end() || !it->second.dirty)
        return S_OK;
    StreamData& data = it->second;
    if (!data.small && data.size < MiniStreamCutoff) {
        std::string content(data.size, '\0');
        if (HRESULT hr =
                ReadBig(data, 0, reinterpret_cast<std::uint8_t*>(content.data()), content.size());
            FAILED(hr))
            return hr;
        for (std::uint32_t sector : data.chain)
            ReleaseSector(sector);
        data.chain.clear();
        data.small = true;
        data.smallData = std::move(content);
    }
    DirEntry& e = m_entries[id];
    if (data.small) {
        for (std::uint32_t mini : data.miniChain)
            ReleaseMini(mini);
        data.miniChain.clear();
        for (std::uint64_t at = 0; at < data.size; at += MiniSectorSize) {
            std::uint8_t buffer[MiniSectorSize] = {};
            std::memcpy(buffer, data.smallData.data() + at,
                        std::min<std::uint64_t>(MiniSectorSize, data.size - at));
            const std::uint32_t mini = AllocateMini();
            if (!data.miniChain.empty())
                SetMiniFat(data.miniChain.back(), mini);
            data.miniChain.push_back(mini);
            if (HRESULT hr = WriteMini(mini, buffer); FAILED(hr))
                return hr;
        }
        e.start = data.miniChain.empty() ? EndOfChain : data.miniChain[0];
    } else {
        e.start = data.chain[0];
    }
    e.size = data.size;
    Touch(id);
    data.dirty = false;
    return S_OK;
}

} // namespace talvor::platform::storage::detail
