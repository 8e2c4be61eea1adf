// The alias object with its protected primitives and members in reach of the tests, and a
// scratch folder that stands beside a fake executable, so "OcxAlias" lies in it.
#pragma once

#include "alias/ocx_alias.h"
#include "platform/app/module_path.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace talvor::testing {

struct AliasProbe : CTalvorOcxAlias {
    using CTalvorOcxAlias::DisposalTypeName;
    using CTalvorOcxAlias::FindEntry;
    using CTalvorOcxAlias::FindLine;
    using CTalvorOcxAlias::FormatIniText;
    using CTalvorOcxAlias::GetEntry;
    using CTalvorOcxAlias::GetFilePathName;
    using CTalvorOcxAlias::GetSection;
    using CTalvorOcxAlias::GetValue;
    using CTalvorOcxAlias::IsValueLine;
};

// A fresh folder with an "OcxAlias" folder in it, made the executable's folder for the time the
// object lives.
class AliasFolder {
public:
    AliasFolder() {
        m_root = std::filesystem::temp_directory_path() /
                 ("talvor-alias-" + std::to_string(::getpid()) + "-" + std::to_string(++Count()));
        std::filesystem::create_directories(m_root / "OcxAlias");
        platform::SetExecutablePath((m_root / "host_program").string());
    }
    ~AliasFolder() {
        platform::SetExecutablePath("");
        std::error_code ignored;
        std::filesystem::remove_all(m_root, ignored);
    }
    std::string Root() const { return m_root.string(); }
    std::string AliasPath(const std::string& file) const {
        return (m_root / "OcxAlias" / file).string();
    }
    void Write(const std::string& file, const std::string& text) const {
        std::ofstream(AliasPath(file), std::ios::binary) << text;
    }
    std::string Read(const std::string& file) const {
        std::ifstream in(AliasPath(file), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), {});
    }

private:
    static int& Count() {
        static int count = 0;
        return count;
    }
    std::filesystem::path m_root;
};

} // namespace talvor::testing
