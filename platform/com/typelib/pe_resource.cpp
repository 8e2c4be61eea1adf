// The PE layout read here: the DOS header's e_lfanew at 0x3C, "PE\0\0", the file header
// (section count at +6, optional header size at +20), the optional header (magic 0x10B or
// 0x20B; the resource directory is data directory 2), the section table (40 bytes a section),
// and the resource tree: directories of 16 bytes followed by 8-byte entries, three levels
// (type, name, language), leaves of 16 bytes whose data address is a relative virtual address.
#include "platform/com/typelib/pe_resource.h"

#include "platform/com/typelib/detail/byte_view.h"

#include <vector>

namespace talvor::platform::typelib {
namespace {

struct Section {
    std::uint32_t virtualSize = 0;
    std::uint32_t virtualAddress = 0;
    std::uint32_t rawSize = 0;
    std::uint32_t rawOffset = 0;
};

constexpr std::uint32_t SubdirectoryBit = 0x80000000u;
constexpr std::uint32_t NameIsStringBit = 0x80000000u;
// Directories nest three deep; the depth is checked so a loop in the tree ends.
constexpr int ResourceLevels = 3;

class PeReader {
public:
    explicit PeReader(std::span<const std::uint8_t> file) : m_view(file) {}

    bool Open(std::string& error) {
        if (!ReadHeaders()) {
            error = "pe: " + m_view.Error();
            return false;
        }
        return true;
    }

    bool Find(std::u16string_view typeName, std::uint32_t id,
              std::span<const std::uint8_t>& resource, std::string& error) {
        std::uint32_t typeDir = 0;
        if (!FindEntry(m_resourceRoot, typeName, 0, true, typeDir))
            return Fail(error, "no resource of this type");
        std::uint32_t nameDir = 0;
        if (!FindEntry(m_resourceRoot + (typeDir & ~SubdirectoryBit), {}, id, true, nameDir))
            return Fail(error, "no resource with this id");
        std::uint32_t leaf = 0;
        if (!FindEntry(m_resourceRoot + (nameDir & ~SubdirectoryBit), {}, 0, false, leaf))
            return Fail(error, "resource has no language entry");
        const std::uint64_t leafOffset = m_resourceRoot + leaf;
        std::uint32_t dataRva = 0, dataSize = 0;
        if (!m_view.U32(leafOffset, dataRva, "resource data entry") ||
            !m_view.U32(leafOffset + 4, dataSize, "resource data entry"))
            return Fail(error, nullptr);
        std::uint64_t dataOffset = 0;
        if (!RvaToOffset(dataRva, dataSize, dataOffset))
            return Fail(error, "resource data lies in no section of the file");
        const std::uint8_t* p = m_view.At(dataOffset, dataSize, "resource data");
        if (!p)
            return Fail(error, nullptr);
        resource = {p, dataSize};
        return true;
    }

private:
    bool Fail(std::string& error, const char* what) {
        error = "pe: " + (m_view.Failed() || !what ? m_view.Error() : std::string(what));
        return false;
    }

    bool ReadHeaders() {
        std::uint16_t magic = 0;
        if (!m_view.U16(0, magic, "DOS header"))
            return false;
        if (magic != 0x5A4D) {
            m_view.FailWith("file does not start with \"MZ\"");
            return false;
        }
        std::uint32_t peOffset = 0, signature = 0;
        if (!m_view.U32(0x3C, peOffset, "e_lfanew") ||
            !m_view.U32(peOffset, signature, "PE signature"))
            return false;
        if (signature != 0x00004550) {
            m_view.FailWith("no \"PE\" signature behind e_lfanew");
            return false;
        }
        std::uint16_t sectionCount = 0, optionalSize = 0, optionalMagic = 0;
        if (!m_view.U16(peOffset + 6, sectionCount, "section count") ||
            !m_view.U16(peOffset + 20, optionalSize, "optional header size"))
            return false;
        const std::uint64_t optional = static_cast<std::uint64_t>(peOffset) + 24;
        if (!m_view.U16(optional, optionalMagic, "optional header"))
            return false;
        std::uint64_t directories = 0;
        if (optionalMagic == 0x10B)
            directories = optional + 96;
        else if (optionalMagic == 0x20B)
            directories = optional + 112;
        else {
            m_view.FailWith("unknown optional header magic");
            return false;
        }
        if (directories + 3 * 8 > optional + optionalSize) {
            m_view.FailWith("optional header has no resource directory");
            return false;
        }
        std::uint32_t resourceRva = 0, resourceSize = 0;
        if (!m_view.U32(directories + 16, resourceRva, "resource directory") ||
            !m_view.U32(directories + 20, resourceSize, "resource directory"))
            return false;
        const std::uint64_t sectionTable = optional + optionalSize;
        for (std::uint16_t i = 0; i < sectionCount; ++i) {
            Section s;
            const std::uint64_t at = sectionTable + 40ull * i;
            if (!m_view.U32(at + 8, s.virtualSize, "section header") ||
                !m_view.U32(at + 12, s.virtualAddress, "section header") ||
                !m_view.U32(at + 16, s.rawSize, "section header") ||
                !m_view.U32(at + 20, s.rawOffset, "section header"))
                return false;
            m_sections.push_back(s);
        }
        if (resourceRva == 0 || resourceSize == 0) {
            m_view.FailWith("file has no resources");
            return false;
        }
        std::uint64_t root = 0;
        if (!RvaToOffset(resourceRva, 16, root)) {
            m_view.FailWith("resource directory lies in no section of the file");
            return false;
        }
        m_resourceRoot = root;
        return true;
    }

    bool RvaToOffset(std::uint32_t rva, std::uint32_t size, std::uint64_t& offset) const {
        for (const Section& s : m_sections) {
            const std::uint64_t extent = s.rawSize; // bytes present in the file
            if (rva >= s.virtualAddress && rva - s.virtualAddress < extent &&
                size <= extent - (rva - s.virtualAddress)) {
                offset = static_cast<std::uint64_t>(s.rawOffset) + (rva - s.virtualAddress);
                return true;
            }
        }
        return false;
    }

    bool NameMatches(std::uint32_t nameField, std::u16string_view name) {
        const std::uint64_t at = m_resourceRoot + (nameField & ~NameIsStringBit);
        std::uint16_t length = 0;
        if (!m_view.U16(at, length, "resource name") || length != name.size())
            return false;
        const std::uint8_t* p = m_view.At(at + 2, 2ull * length, "resource name");
        if (!p)
            return false;
        for (std::size_t i = 0; i < name.size(); ++i) {
            if (static_cast<char16_t>(p[2 * i] | p[2 * i + 1] << 8) != name[i])
                return false;
        }
        return true;
    }

    // The entry of directory `dir` named `name` (or with id `id`; id 0 and no name take the
    // first entry). `wantDirectory` says whether the entry must point to a subdirectory.
    bool FindEntry(std::uint64_t dir, std::u16string_view name, std::uint32_t id,
                   bool wantDirectory, std::uint32_t& target) {
        if (++m_depth > ResourceLevels) {
            m_view.FailWith("resource tree is deeper than three levels");
            return false;
        }
        std::uint16_t named = 0, numbered = 0;
        if (!m_view.U16(dir + 12, named, "resource directory") ||
            !m_view.U16(dir + 14, numbered, "resource directory"))
            return false;
        const std::uint32_t count = static_cast<std::uint32_t>(named) + numbered;
        for (std::uint32_t i = 0; i < count; ++i) {
            std::uint32_t nameField = 0, offsetField = 0;
            const std::uint64_t entry = dir + 16 + 8ull * i;
            if (!m_view.U32(entry, nameField, "resource directory entry") ||
                !m_view.U32(entry + 4, offsetField, "resource directory entry"))
                return false;
            bool match = false;
            if (!name.empty())
                match = (nameField & NameIsStringBit) && NameMatches(nameField, name);
            else
                match = id == 0 || (!(nameField & NameIsStringBit) && nameField == id);
            if (m_view.Failed())
                return false;
            if (!match)
                continue;
            if (((offsetField & SubdirectoryBit) != 0) != wantDirectory) {
                m_view.FailWith("resource entry points to the wrong kind of node");
                return false;
            }
            target = offsetField;
            return true;
        }
        return false;
    }

    ByteView m_view;
    std::vector<Section> m_sections;
    std::uint64_t m_resourceRoot = 0;
    int m_depth = 0;
};

} // namespace

bool LooksLikePeFile(std::span<const std::uint8_t> file) {
    return file.size() >= 0x40 && file[0] == 'M' && file[1] == 'Z';
}

bool FindPeResource(std::span<const std::uint8_t> file, std::u16string_view typeName,
                    std::uint32_t id, std::span<const std::uint8_t>& resource, std::string& error) {
    PeReader reader(file);
    if (!reader.Open(error))
        return false;
    return reader.Find(typeName, id, resource, error);
}

} // namespace talvor::platform::typelib
