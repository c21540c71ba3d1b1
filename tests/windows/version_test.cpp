// What the system shows as the properties of the library's file and of the program's.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "platform/win32/wide.h"

namespace {

class VersionOf {
 public:
    explicit VersionOf(const std::wstring& file) {
        DWORD none = 0;
        m_block.resize(GetFileVersionInfoSizeW(file.c_str(), &none));
        if (GetFileVersionInfoW(file.c_str(), 0, static_cast<DWORD>(m_block.size()), m_block.data()) == 0)
            m_block.clear();
    }
    bool found() const { return !m_block.empty(); }
    VS_FIXEDFILEINFO Numbers() const {
        void* value = nullptr;
        UINT size = 0;
        if (VerQueryValueW(m_block.data(), L"\\", &value, &size) == 0) return {};
        return *static_cast<const VS_FIXEDFILEINFO*>(value);
    }
    /// In UTF-8, of the texts for Chinese in UTF-16.
    std::string Text(const std::wstring& name) const {
        void* value = nullptr;
        UINT size = 0;
        const std::wstring place = L"\\StringFileInfo\\080404B0\\" + name;
        if (VerQueryValueW(m_block.data(), place.c_str(), &value, &size) == 0) return {};
        return zm::win32::ToUtf8(static_cast<const wchar_t*>(value));
    }

 private:
    std::vector<char> m_block;
};

std::string Dotted(DWORD high, DWORD low) {
    return std::to_string(HIWORD(high)) + "." + std::to_string(LOWORD(high)) + "." + std::to_string(HIWORD(low));
}

void ExpectVersion(const std::string& file, const std::string& name, DWORD type) {
    const VersionOf version(zm::win32::FromUtf8(file));
    ASSERT_TRUE(version.found()) << file;
    const VS_FIXEDFILEINFO numbers = version.Numbers();
    EXPECT_EQ(Dotted(numbers.dwFileVersionMS, numbers.dwFileVersionLS), ZM_VERSION);
    EXPECT_EQ(Dotted(numbers.dwProductVersionMS, numbers.dwProductVersionLS), ZM_VERSION);
    EXPECT_EQ(numbers.dwFileType, type);
    EXPECT_EQ(version.Text(L"FileVersion"), ZM_VERSION);
    EXPECT_EQ(version.Text(L"ProductName"), "ZenroMath");
    EXPECT_EQ(version.Text(L"OriginalFilename"), name);
    EXPECT_NE(version.Text(L"FileDescription"), "");
}

}  // namespace

TEST(VersionInformation, OfTheLibrary) {
    ExpectVersion(ZM_LIBRARY_DIR "/libzenromath.dll", "libzenromath.dll", VFT_DLL);
}

TEST(VersionInformation, OfTheProgram) {
    ExpectVersion(ZM_ZENRO, "zenro.exe", VFT_APP);
}
