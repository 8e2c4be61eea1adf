// The archive's binary form, object graphs with class tags, and damaged streams.
#include "platform/files/archive.h"

#include <gtest/gtest.h>
#include <vector>

namespace {

class CShape : public CObject {
public:
    static const CRuntimeClass classCShape;
    const CRuntimeClass* GetRuntimeClass() const override { return &classCShape; }
    void Serialize(CArchive& ar) override {
        if (ar.IsStoring())
            ar << m_strName << m_nSides << m_pNext;
        else
            ar >> m_strName >> m_nSides >> m_pNext;
    }
    CString m_strName;
    LONG m_nSides = 0;
    CObject* m_pNext = nullptr;
};
const CRuntimeClass CShape::classCShape =
    MakeRuntimeClass<CShape>("CShape", 2, &CObject::classCObject);

class CLabel : public CObject {
public:
    static const CRuntimeClass classCLabel;
    const CRuntimeClass* GetRuntimeClass() const override { return &classCLabel; }
};
const CRuntimeClass CLabel::classCLabel =
    MakeRuntimeClass<CLabel>("CLabel", 1, &CObject::classCObject);

std::string Hex(const std::string& bytes) {
    std::string out;
    char h[4];
    for (unsigned char b : bytes) {
        std::snprintf(h, sizeof h, "%02X ", b);
        out += h;
    }
    if (!out.empty())
        out.pop_back();
    return out;
}

std::string Store(const std::function<void(CArchive&)>& write) {
    CMemFile file;
    {
        CArchive ar(&file, CArchive::store);
        write(ar);
        ar.Close();
    }
    return file.Data();
}

// Runs read over the bytes; returns the cause of the archive exception, or -1 when none.
int LoadCause(const std::string& bytes, const std::function<void(CArchive&)>& read) {
    CMemFile file(bytes.data(), static_cast<UINT>(bytes.size()));
    CArchive ar(&file, CArchive::load);
    try {
        read(ar);
    } catch (CArchiveException* e) {
        int cause = e->m_cause;
        e->Delete();
        return cause;
    }
    return -1;
}

} // namespace

TEST(ArchiveFormat, PrimitivesAreLittleEndian) {
    std::string bytes = Store([](CArchive& ar) {
        ar << BYTE(0x12) << WORD(0x3456) << DWORD(0x789ABCDE) << LONG(-2) << 1.5;
    });
    EXPECT_EQ(Hex(bytes), "12 56 34 DE BC 9A 78 FE FF FF FF 00 00 00 00 00 00 F8 3F");
}

TEST(ArchiveFormat, StringLengthPrefixes) {
    struct Case {
        int length;
        const char* prefix;
    } cases[] = {{0, "00"},
                 {254, "FE"},
                 {255, "FF FF 00"},
                 {0xFFFD, "FF FD FF"},
                 {0xFFFE, "FF FF FF FE FF 00 00"}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.length);
        CString text(CString('x', c.length));
        std::string bytes = Store([&](CArchive& ar) { ar << text; });
        std::string prefix(c.prefix);
        EXPECT_EQ(Hex(bytes.substr(0, (prefix.size() + 1) / 3)), prefix);
        CString back;
        EXPECT_EQ(LoadCause(bytes, [&](CArchive& ar) { ar >> back; }), -1);
        EXPECT_EQ(back, text);
    }
}

TEST(ArchiveFormat, BufferSizeAndWriteLengthsLeaveTheBytesAlone) {
    // Strings of every short length, either side of the length prefixes, and raw blocks that
    // end exactly at, before and after a buffer's end: the same bytes for every buffer size,
    // each string read back whole.
    std::vector<CString> strings;
    for (int length = 0; length <= 40; ++length)
        strings.push_back(CString(std::string(length, static_cast<char>('a' + length % 26))));
    for (int length : {126, 127, 128, 129, 254, 255, 256, 300, 5000})
        strings.push_back(CString(std::string(length, static_cast<char>('A' + length % 26))));
    std::string expected;
    auto put = [&expected](const void* p, std::size_t n) {
        expected.append(static_cast<const char*>(p), n);
    };
    for (std::size_t i = 0; i < strings.size(); ++i) {
        const std::size_t length = strings[i].GetLength();
        if (length < 255) {
            const BYTE b = static_cast<BYTE>(length);
            put(&b, 1);
        } else {
            const BYTE b = 0xFF;
            const WORD w = static_cast<WORD>(length);
            put(&b, 1);
            put(&w, 2);
        }
        put(strings[i].GetString(), length);
        const std::string block(i * 37 % 300, static_cast<char>(i));
        put(block.data(), block.size());
        const DWORD d = static_cast<DWORD>(i * 0x01010101u);
        put(&d, 4);
    }
    for (int bufferSize : {128, 129, 200, 4096, 1 << 18}) {
        SCOPED_TRACE(bufferSize);
        CMemFile file;
        {
            CArchive ar(&file, CArchive::store, bufferSize);
            for (std::size_t i = 0; i < strings.size(); ++i) {
                ar << strings[i];
                const std::string block(i * 37 % 300, static_cast<char>(i));
                ar.Write(block.data(), static_cast<UINT>(block.size()));
                ar << static_cast<DWORD>(i * 0x01010101u);
            }
            ar.Close();
        }
        ASSERT_EQ(file.Data().size(), expected.size());
        EXPECT_TRUE(file.Data() == expected);
        CString back;
        std::string skipped(300, '\0');
        DWORD d = 0;
        EXPECT_EQ(LoadCause(file.Data(),
                            [&](CArchive& ar) {
                                for (std::size_t i = 0; i < strings.size(); ++i) {
                                    ar >> back;
                                    ASSERT_EQ(back, strings[i]) << i;
                                    ar.Read(skipped.data(), static_cast<UINT>(i * 37 % 300));
                                    ar >> d;
                                    ASSERT_EQ(d, static_cast<DWORD>(i * 0x01010101u));
                                }
                            }),
                  -1);
    }
}

TEST(ArchiveFormat, WideStringsAreReadInTheSystemCodePage) {
    // 0xFF 0xFFFE marks a wide string; its length counts UTF-16 units.
    std::string bytes("\xFF\xFE\xFF\x02"
                      "A\x00\xE9\x00",
                      8);
    CString text;
    EXPECT_EQ(LoadCause(bytes, [&](CArchive& ar) { ar >> text; }), -1);
    EXPECT_EQ(text, "A\xE9");
}

TEST(ArchiveObjects, ClassTagsAndObjectReferences) {
    CShape first, second;
    first.m_strName = "tri";
    first.m_nSides = 3;
    first.m_pNext = &second;
    second.m_strName = "sq";
    second.m_nSides = 4;
    second.m_pNext = &first; // a cycle comes back as a reference
    std::string bytes = Store([&](CArchive& ar) { ar << static_cast<CObject*>(&first); });
    // new class FFFF, schema 2, name; "tri", 3; second object: class index 1 (0x8001), "sq", 4,
    // and a reference to object 2 (the first object).
    EXPECT_EQ(Hex(bytes), "FF FF 02 00 06 00 43 53 68 61 70 65 03 74 72 69 03 00 00 00 "
                          "01 80 02 73 71 04 00 00 00 02 00");

    CObject* loaded = nullptr;
    ASSERT_EQ(LoadCause(bytes, [&](CArchive& ar) { loaded = ar.ReadObject(&CShape::classCShape); }),
              -1);
    auto* a = static_cast<CShape*>(loaded);
    ASSERT_NE(a, nullptr);
    auto* b = static_cast<CShape*>(a->m_pNext);
    ASSERT_NE(b, nullptr);
    EXPECT_EQ(a->m_strName, "tri");
    EXPECT_EQ(b->m_nSides, 4);
    EXPECT_EQ(b->m_pNext, a);
    delete b;
    delete a;
}

TEST(ArchiveObjects, DamagedStreamsRaiseTheirCause) {
    CShape shape;
    shape.m_strName = "hexagon";
    shape.m_nSides = 6;
    std::string good = Store([&](CArchive& ar) { ar << static_cast<CObject*>(&shape); });

    std::string unknown = good;
    unknown[6] = 'X'; // "XShape" is no registered class
    EXPECT_EQ(LoadCause(unknown, [](CArchive& ar) { delete ar.ReadObject(nullptr); }),
              CArchiveException::badClass);
    EXPECT_EQ(CArchiveException::badClass, 6);

    std::string schema = good;
    schema[2] = 9;
    EXPECT_EQ(LoadCause(schema, [](CArchive& ar) { delete ar.ReadObject(nullptr); }),
              CArchiveException::badSchema);

    EXPECT_EQ(LoadCause(good, [](CArchive& ar) { delete ar.ReadObject(&CLabel::classCLabel); }),
              CArchiveException::badClass);

    EXPECT_EQ(LoadCause(std::string("\x05\x00", 2), [](CArchive& ar) { ar.ReadObject(nullptr); }),
              CArchiveException::badIndex);
    EXPECT_EQ(LoadCause(std::string("\x07\x80", 2), [](CArchive& ar) { ar.ReadObject(nullptr); }),
              CArchiveException::badIndex);

    // Every cut of the stream ends in an exception, never a read past the data.
    for (std::size_t cut = 0; cut < good.size(); ++cut) {
        SCOPED_TRACE(cut);
        EXPECT_EQ(
            LoadCause(good.substr(0, cut), [](CArchive& ar) { delete ar.ReadObject(nullptr); }),
            CArchiveException::endOfFile);
    }
}

TEST(ArchiveObjects, ADamagedLengthDoesNotAllocateWhatTheFileCannotHold) {
    std::string bytes("\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x7F"
                      "abc",
                      15);
    CString text;
    EXPECT_EQ(LoadCause(bytes, [&](CArchive& ar) { ar >> text; }), CArchiveException::endOfFile);
}

TEST(ArchiveModes, ReadingAStoringArchiveIsRefused) {
    CMemFile file;
    CArchive ar(&file, CArchive::store);
    DWORD value = 0;
    try {
        ar >> value;
        ADD_FAILURE() << "no exception";
    } catch (CArchiveException* e) {
        EXPECT_EQ(e->m_cause, CArchiveException::writeOnly);
        e->Delete();
    }
}

TEST(ArchiveText, ReadStringDropsLineEnds) {
    std::string bytes = Store([](CArchive& ar) { ar.WriteString("one\r\ntwo\nthree"); });
    CMemFile file(bytes.data(), static_cast<UINT>(bytes.size()));
    CArchive ar(&file, CArchive::load);
    CString line;
    std::vector<std::string> lines;
    while (ar.ReadString(line))
        lines.push_back(line.Str());
    EXPECT_EQ(lines, (std::vector<std::string>{"one", "two", "three"}));
}
