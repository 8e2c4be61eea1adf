// The directory: elements by name in each storage, the red-black trees the file keeps them in,
// and reuse of unused entries. A new element is inserted into its storage's tree with the usual
// rotations, so a commit rewrites only the few directory sectors the insertion touched.
#include "platform/storage/detail/compound_file.h"

#include <algorithm>
#include <functional>

namespace talvor::platform::storage::detail {
namespace {

char16_t Upper(char16_t c) {
    if (c >= u'a' && c <= u'z')
        return static_cast<char16_t>(c - 32);
    if ((c >= 0xE0 && c <= 0xFE && c != 0xF7))
        return static_cast<char16_t>(c - 32);
    return c;
}

bool ValidName(std::u16string_view name) {
    if (name.empty() || name.size() > MaxNameLength)
        return false;
    for (char16_t c : name)
        if (c == u'/' || c == u'\\' || c == u':' || c == u'!' || c == 0)
            return false;
    return true;
}

} // namespace

int CompareNames(std::u16string_view a, std::u16string_view b) {
    if (a.size() != b.size())
        return a.size() < b.size() ? -1 : 1;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const char16_t x = Upper(a[i]), y = Upper(b[i]);
        if (x != y)
            return x < y ? -1 : 1;
    }
    return 0;
}

std::uint32_t CompoundFile::FindChild(std::uint32_t storage, std::u16string_view name) const {
    auto children = m_children.find(storage);
    if (children == m_children.end())
        return NoStream;
    auto it = children->second.find(std::u16string(name));
    return it == children->second.end() ? NoStream : it->second;
}

std::vector<std::uint32_t> CompoundFile::Children(std::uint32_t storage) const {
    std::vector<std::uint32_t> ids;
    auto children = m_children.find(storage);
    if (children != m_children.end())
        for (const auto& [name, id] : children->second)
            ids.push_back(id);
    return ids;
}

void CompoundFile::MarkClosed(std::uint32_t id) {
    auto it = m_openCount.find(id);
    if (it != m_openCount.end() && --it->second <= 0)
        m_openCount.erase(it);
}

void CompoundFile::Touch(std::uint32_t id) {
    m_dirDirty.insert(id / EntriesPerSector);
}

std::uint32_t CompoundFile::NewEntry() {
    // The lowest free entry, so a file's directory stays as small as it can.
    for (std::uint32_t id = m_entrySearchFrom; id < m_entries.size(); ++id)
        if (m_entries[id].type == TypeUnused && m_children.find(id) == m_children.end())
            return m_entrySearchFrom = id;
    const std::uint32_t id = static_cast<std::uint32_t>(m_entries.size());
    m_entrySearchFrom = id;
    m_entries.resize(m_entries.size() + EntriesPerSector);
    m_dirDirty.insert(id / EntriesPerSector);
    return id;
}

void CompoundFile::ClearEntry(std::uint32_t id) {
    m_entries[id] = DirEntry{};
    Touch(id);
    m_entrySearchFrom = std::min(m_entrySearchFrom, id);
}

HRESULT CompoundFile::AddChild(std::uint32_t storage, std::u16string_view name, std::uint8_t type,
                               std::uint32_t& id) {
    if (!ValidName(name))
        return Fail(STG_E_INVALIDNAME,
                    "an element name has 1 to 31 characters and none of / \\ : !");
    if (FindChild(storage, name) != NoStream)
        return Fail(STG_E_FILEALREADYEXISTS, "the storage already holds an element of that name");
    id = NewEntry();
    DirEntry& e = m_entries[id];
    e = DirEntry{};
    e.name.assign(name);
    e.type = type;
    m_children[storage].emplace(e.name, id);
    if (type == TypeStorage)
        m_children[id];
    InsertIntoTree(storage, id);
    Touch(id);
    return S_OK;
}

void CompoundFile::ReleaseContent(std::uint32_t id) {
    DirEntry& e = m_entries[id];
    if (e.type == TypeStorage) {
        for (std::uint32_t child : Children(id)) {
            ReleaseContent(child);
            ClearEntry(child);
        }
        m_children.erase(id);
        return;
    }
    m_streams.erase(id);
    if (e.size == 0)
        return;
    if (e.size < MiniStreamCutoff) {
        std::uint32_t mini = e.start;
        for (std::uint64_t i = 0; i < (e.size + MiniSectorSize - 1) / MiniSectorSize; ++i) {
            if (mini >= m_miniFat.size())
                break;
            const std::uint32_t next = m_miniFat[mini];
            ReleaseMini(mini);
            mini = next;
        }
    } else {
        std::uint32_t sector = e.start;
        for (std::uint64_t i = 0; i < (e.size + SectorSize - 1) / SectorSize; ++i) {
            if (sector >= m_fat.size())
                break;
            const std::uint32_t next = m_fat[sector];
            ReleaseSector(sector);
            sector = next;
        }
    }
}

HRESULT CompoundFile::RemoveChild(std::uint32_t storage, std::uint32_t id) {
    ReleaseContent(id);
    m_children[storage].erase(m_entries[id].name);
    ClearEntry(id);
    RebuildTree(storage);
    return S_OK;
}

HRESULT CompoundFile::RenameChild(std::uint32_t storage, std::uint32_t id,
                                  std::u16string_view name) {
    if (!ValidName(name))
        return Fail(STG_E_INVALIDNAME,
                    "an element name has 1 to 31 characters and none of / \\ : !");
    if (FindChild(storage, name) != NoStream)
        return Fail(STG_E_FILEALREADYEXISTS, "the storage already holds an element of that name");
    auto& children = m_children[storage];
    children.erase(m_entries[id].name);
    m_entries[id].name.assign(name);
    children.emplace(m_entries[id].name, id);
    RebuildTree(storage);
    return S_OK;
}

void CompoundFile::SetClass(std::uint32_t id, const std::uint8_t clsid[16]) {
    std::memcpy(m_entries[id].clsid, clsid, 16);
    Touch(id);
}

void CompoundFile::InsertIntoTree(std::uint32_t storage, std::uint32_t id) {
    DirEntry& node = m_entries[id];
    node.left = node.right = NoStream;
    node.color = Red;
    // path[k] is the ancestor at depth k of the new node.
    std::vector<std::uint32_t> path;
    for (std::uint32_t at = m_entries[storage].child; at != NoStream;) {
        path.push_back(at);
        at = CompareNames(node.name, m_entries[at].name) < 0 ? m_entries[at].left
                                                             : m_entries[at].right;
        if (path.size() > m_entries.size())
            break; // cannot happen in a checked tree; keeps a broken one from hanging us
    }
    auto setChildOf = [&](std::size_t depth, std::uint32_t oldChild, std::uint32_t newChild) {
        // Replaces oldChild under the node at path[depth - 1] (or under the storage).
        if (depth == 0) {
            m_entries[storage].child = newChild;
            Touch(storage);
            return;
        }
        DirEntry& parent = m_entries[path[depth - 1]];
        (parent.left == oldChild ? parent.left : parent.right) = newChild;
        Touch(path[depth - 1]);
    };
    if (path.empty()) {
        m_entries[storage].child = id;
        Touch(storage);
    } else {
        DirEntry& parent = m_entries[path.back()];
        (CompareNames(node.name, parent.name) < 0 ? parent.left : parent.right) = id;
        Touch(path.back());
    }
    path.push_back(id);
    auto red = [&](std::uint32_t n) { return n != NoStream && m_entries[n].color == Red; };
    auto rotate = [&](std::size_t depth, bool left) {
        // Rotates the subtree at path[depth]; its child on the other side takes its place.
        const std::uint32_t n = path[depth];
        const std::uint32_t c = left ? m_entries[n].right : m_entries[n].left;
        if (left) {
            m_entries[n].right = m_entries[c].left;
            m_entries[c].left = n;
        } else {
            m_entries[n].left = m_entries[c].right;
            m_entries[c].right = n;
        }
        Touch(n);
        Touch(c);
        setChildOf(depth, n, c);
        path[depth] = c;
    };
    std::size_t x = path.size() - 1;
    for (;;) {
        if (x == 0) {
            m_entries[path[0]].color = Black;
            Touch(path[0]);
            break;
        }
        const std::uint32_t p = path[x - 1];
        if (!red(p))
            break;
        if (x - 1 == 0) {
            m_entries[p].color = Black;
            Touch(p);
            break;
        }
        const std::uint32_t g = path[x - 2];
        const bool parentIsLeft = m_entries[g].left == p;
        const std::uint32_t uncle = parentIsLeft ? m_entries[g].right : m_entries[g].left;
        if (red(uncle)) {
            m_entries[p].color = Black;
            m_entries[uncle].color = Black;
            m_entries[g].color = Red;
            Touch(p);
            Touch(uncle);
            Touch(g);
            x -= 2;
            continue;
        }
        const bool nodeIsLeft = m_entries[p].left == path[x];
        if (nodeIsLeft != parentIsLeft) {
            rotate(x - 1, parentIsLeft); // the node takes its parent's place
        }
        m_entries[path[x - 1]].color = Black;
        m_entries[g].color = Red;
        Touch(path[x - 1]);
        Touch(g);
        rotate(x - 2, !parentIsLeft);
        break;
    }
}

void CompoundFile::RebuildTree(std::uint32_t storage) {
    // A balanced tree from the sorted names: every level full but the deepest, whose nodes
    // are red, so all paths hold the same number of black nodes.
    const std::vector<std::uint32_t> ids = Children(storage);
    int height = 0;
    while ((std::size_t(2) << height) <= ids.size())
        ++height;
    std::function<std::uint32_t(std::size_t, std::size_t, int)> build =
        [&](std::size_t lo, std::size_t hi, int depth) -> std::uint32_t {
        if (lo >= hi)
            return NoStream;
        const std::size_t mid = lo + (hi - lo) / 2;
        DirEntry& e = m_entries[ids[mid]];
        e.left = build(lo, mid, depth + 1);
        e.right = build(mid + 1, hi, depth + 1);
        e.color = depth == height && depth > 0 ? Red : Black;
        Touch(ids[mid]);
        return ids[mid];
    };
    m_entries[storage].child = build(0, ids.size(), 0);
    Touch(storage);
}

} // namespace talvor::platform::storage::detail
