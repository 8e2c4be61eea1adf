// Files of the operating system and folder search.
#include "platform/files/file.h"
#include "platform/files/file_find.h"
#include "platform/files/file_system.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace {
std::string Folder() {
    std::string folder = ::testing::TempDir() + "talvor_files_" + std::to_string(::getpid());
    talvor::platform::CreateDirectories(folder);
    return folder;
}
} // namespace

TEST(CFile, OpenFailuresReportTheirCause) {
    CFile file;
    CFileException error;
    EXPECT_FALSE(file.Open((Folder() + "/missing.bin").c_str(), CFile::modeRead, &error));
    EXPECT_EQ(error.m_cause, CFileException::fileNotFound);
    EXPECT_FALSE(file.Open("", CFile::modeRead, &error));
    EXPECT_EQ(error.m_cause, CFileException::badPath);
    try {
        CFile thrown((Folder() + "/missing.bin").c_str(), CFile::modeRead);
        ADD_FAILURE() << "no exception";
    } catch (CFileException* e) {
        EXPECT_EQ(e->m_cause, CFileException::fileNotFound);
        e->Delete();
    }
}

TEST(CFile, WriteSeekReadAndNoTruncate) {
    std::string path = Folder() + "/data.bin";
    {
        CFile file(path.c_str(), CFile::modeCreate | CFile::modeWrite | CFile::typeBinary);
        file.Write("hello world", 11);
    }
    {
        CFile file(path.c_str(), CFile::modeCreate | CFile::modeNoTruncate | CFile::modeReadWrite);
        EXPECT_EQ(file.GetLength(), 11u);
        file.Seek(6, CFile::begin);
        file.Write("there", 5);
        file.SeekToBegin();
        char buffer[32] = {};
        EXPECT_EQ(file.Read(buffer, sizeof buffer), 11u);
        EXPECT_STREQ(buffer, "hello there");
        EXPECT_EQ(file.GetFileName(), "data.bin");
    }
}

TEST(CFileFind, WildcardsIgnoreCaseAndComeInNameOrder) {
    std::string folder = Folder() + "/find";
    talvor::platform::CreateDirectories(folder + "/sub.INI");
    std::string error;
    for (const char* name : {"b.ini", "A.INI", "c.txt"})
        ASSERT_TRUE(talvor::platform::WriteFileAtomically(folder + "/" + name, "x", error));
    CFileFind finder;
    ASSERT_TRUE(finder.FindFile((folder + "/*.ini").c_str()));
    std::vector<std::string> names;
    BOOL more = TRUE;
    while (more) {
        more = finder.FindNextFile();
        names.push_back(finder.GetFileName().Str() + (finder.IsDirectory() ? "/" : ""));
    }
    EXPECT_EQ(names, (std::vector<std::string>{"A.INI", "b.ini", "sub.INI/"}));
    EXPECT_FALSE(finder.FindFile((folder + "/*.none").c_str()));
    EXPECT_FALSE(finder.FindFile("/no/such/folder/*"));
}

TEST(FileSystem, ListFolderGivesFilesOrFoldersInNameOrder) {
    using talvor::platform::FolderEntries;
    using talvor::platform::ListFolder;
    std::string folder = Folder() + "/list";
    std::string error;
    for (const char* name : {"b.vbs", "A.txt", ".hidden", "c"})
        ASSERT_TRUE(talvor::platform::WriteFileAtomically(folder + "/" + name, "x", error));
    ASSERT_TRUE(talvor::platform::CreateDirectories(folder + "/sub"));
    ASSERT_TRUE(talvor::platform::CreateDirectories(folder + "/.git"));
    EXPECT_EQ(ListFolder(folder, FolderEntries::Files),
              (std::vector<std::string>{"A.txt", "b.vbs", "c"}));
    EXPECT_EQ(ListFolder(folder, FolderEntries::Folders), (std::vector<std::string>{"sub"}));
    EXPECT_TRUE(ListFolder(folder + "/none", FolderEntries::Files).empty());
    EXPECT_TRUE(ListFolder(folder + "/c", FolderEntries::Files).empty()); // a file, no folder
}
