#include "FrameTestApp.h"
#include "support/Files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

using ZQ::ZQFindDXSDKMediaFileCch;

namespace {

void Touch(const std::wstring& path) {
    HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    CloseHandle(file);
}

// A fresh tree root\a\b\c with the working directory at c, restored afterwards.
class MediaSearchTest : public ::testing::Test {
protected:
    void SetUp() override {
        root = testsupport::TempPath(L"zq-media-" + std::to_wstring(GetCurrentProcessId()));
        for (const wchar_t* dir : {L"", L"\\a", L"\\a\\b", L"\\a\\b\\c", L"\\a\\b\\c\\media", L"\\a\\media"})
            CreateDirectoryW((root + dir).c_str(), nullptr);
        GetCurrentDirectoryW(MAX_PATH, saved);
        SetCurrentDirectoryW((root + L"\\a\\b\\c").c_str());
    }
    void TearDown() override {
        SetCurrentDirectoryW(saved);
        std::error_code ignored;
        std::filesystem::remove_all(root, ignored);
    }
    std::wstring Find(const wchar_t* name, HRESULT expected = S_OK) {
        wchar_t dest[MAX_PATH] = L"untouched";
        EXPECT_EQ(ZQFindDXSDKMediaFileCch(dest, MAX_PATH, name), expected) << std::string(name, name + wcslen(name));
        return dest;
    }
    std::wstring root;
    wchar_t saved[MAX_PATH];
};

} // namespace

TEST_F(MediaSearchTest, CandidatesInTheirOrder) {
    for (const wchar_t* file :
         {L"\\a\\b\\c\\here.png", L"\\a\\b\\up1.png", L"\\a\\up2.png", L"\\a\\b\\c\\media\\m0.png",
          L"\\a\\media\\m2.png", L"\\far.png", L"\\a\\b\\c\\both.png", L"\\a\\b\\both.png"})
        Touch(root + file);

    EXPECT_EQ(Find(L"here.png"), L"here.png") << "found first, unchanged";
    EXPECT_EQ(Find(L"up1.png"), L"..\\up1.png");
    EXPECT_EQ(Find(L"up2.png"), L"..\\..\\up2.png");
    EXPECT_EQ(Find(L"m0.png"), L"media\\m0.png");
    EXPECT_EQ(Find(L"m2.png"), L"..\\..\\media\\m2.png") << "the media folder two levels up";
    EXPECT_EQ(Find(L"both.png"), L"both.png") << "the nearer candidate wins";
    EXPECT_EQ(Find(L"b"), L"..\\..\\b") << "directories count";

    // Three levels up is no typical directory: the climb from the working directory finds it.
    const std::wstring far = Find(L"far.png");
    EXPECT_EQ(_wcsicmp(far.c_str(), (root + L"\\far.png").c_str()), 0);
}

TEST_F(MediaSearchTest, BesideTheProgramAndInAFolderNamedAfterIt) {
    wchar_t exe[MAX_PATH];
    GetModuleFileNameW(nullptr, exe, MAX_PATH);
    std::wstring exeDir(exe);
    exeDir.resize(exeDir.rfind(L'\\'));
    const std::wstring named = exeDir + L"\\..\\frame_tests"; // the program's name without its extension
    CreateDirectoryW(named.c_str(), nullptr);
    for (const std::wstring& folder : {exeDir, named}) {
        const std::wstring name = L"zq-beside-" + std::to_wstring(GetCurrentProcessId()) + L".png";
        Touch(folder + L"\\" + name);
        EXPECT_EQ(Find(name.c_str()), folder + L"\\" + name);
        DeleteFileW((folder + L"\\" + name).c_str());
    }
    RemoveDirectoryW(named.c_str());
}

TEST_F(MediaSearchTest, MissingNamesAndBadArguments) {
    EXPECT_EQ(Find(L"nowhere.png", ZQ::ZQ_E_MEDIA_NOT_FOUND), L"nowhere.png");
    wchar_t dest[16];
    EXPECT_EQ(ZQFindDXSDKMediaFileCch(dest, 9, L"x.png"), E_INVALIDARG);
    EXPECT_EQ(ZQFindDXSDKMediaFileCch(dest, 10, L"x.png"), ZQ::ZQ_E_MEDIA_NOT_FOUND);
    EXPECT_EQ(ZQFindDXSDKMediaFileCch(dest, 16, L""), E_INVALIDARG);
    EXPECT_EQ(ZQFindDXSDKMediaFileCch(dest, 16, nullptr), E_INVALIDARG);
    EXPECT_EQ(ZQFindDXSDKMediaFileCch(nullptr, 16, L"x.png"), E_INVALIDARG);
    std::wstring longName(300, L'n');
    wchar_t small[12];
    EXPECT_EQ(ZQFindDXSDKMediaFileCch(small, 12, longName.c_str()), ZQ::ZQ_E_MEDIA_NOT_FOUND);
    EXPECT_EQ(std::wstring(small), std::wstring(11, L'n')) << "the copy is cut to the capacity";
}

TEST(CommandLine, QuitAfterFrameEndsDuringTheFollowingFrame) {
    std::string out;
    ASSERT_EQ(frametest::RunChild(L"run -windowed -quitafterframe:3 -noerrormsgboxes", &out), 0) << out;
    EXPECT_NE(out.find("loop=0 frames=4 moves=5 exit=0"), std::string::npos) << out;
}

TEST(CommandLine, ParsedFromARealProcess) {
    std::string out;
    ASSERT_EQ(frametest::RunChild(L"cmdline -windowed /width:800 -HEIGHT:600 -constantframetime", &out), 0);
    EXPECT_NE(out.find("windowed=1 "), std::string::npos) << out;
    EXPECT_NE(out.find("width=800 height=600 "), std::string::npos) << out;
    EXPECT_NE(out.find("constant=1 timeperframe=0.0333 "), std::string::npos) << out;
    EXPECT_NE(out.find("vsync=1 "), std::string::npos) << "Init forces vsync on: " << out;

    ASSERT_EQ(frametest::RunChild(L"cmdline -width -height: -windowedx windowed /FullScreen -adapter:2 "
                                  L"-quitafterframe:7 -forcevsync:0 -startx:abc -constantframetime:0.5 "
                                  L"-noerrormsgboxes -nostats -forceref -automation",
                                  &out),
              0);
    EXPECT_NE(out.find("adapter=2 windowed=0 fullscreen=1 hal=0 ref=1 "), std::string::npos) << out;
    EXPECT_NE(out.find("vsync=0 width=0 height=0 startx=0 starty=-1 constant=1 timeperframe=0.5000 "
                       "quitafterframe=7 msgboxes=0 nostats=1 mce=0 automation=1"),
              std::string::npos)
        << out;
    // Every argument ignored, and every value that is not a number, is said.
    for (const char* said : {"\"-width\" is not an option of the library", "\"-height:\": \"\" is not a whole number",
                             "\"-windowedx\" is not an option", "\"windowed\" is not an option (they start with",
                             "\"-startx:abc\": \"abc\" is not a whole number; read as 0"})
        EXPECT_NE(out.find(said), std::string::npos) << said << " in " << out;

    ASSERT_EQ(frametest::RunChild(L"cmdline -quitafterframe=100 --quitafterframe:100 -quitafterframe:abc "
                                  L"-constantframetime:fast",
                                  &out),
              0);
    for (const char* said : {"\"-quitafterframe=100\" is not an option", "\"--quitafterframe:100\" is not an option",
                             "\"-quitafterframe:abc\": \"abc\" is not a whole number",
                             "\"-constantframetime:fast\": \"fast\" is not a number of seconds"})
        EXPECT_NE(out.find(said), std::string::npos) << said << " in " << out;
}

// Settings written by one run of a program are read by the next; absent values give the defaults.
TEST(Registry, SettingsOutliveTheProgramThatWroteThem) {
    const std::wstring key = L"Software\\ZQVelisto\\Tests\\" + std::to_wstring(GetCurrentProcessId());
    ASSERT_EQ(frametest::RunChild(L"registry \"" + key + L"\""), 0);
    ZQ::ZQRegistry settings(key.c_str());
    DWORD number = 0;
    EXPECT_EQ(settings.GetNumber(L"Volume", &number, 99), S_OK);
    EXPECT_EQ(number, 7u);
    wchar_t text[32];
    EXPECT_EQ(settings.GetText(L"Name", text, 32, L"none"), S_OK);
    EXPECT_STREQ(text, L"Kiosk \u3055\u304f\u3089");
    unsigned char bytes[8] = {};
    DWORD size = sizeof bytes;
    EXPECT_EQ(settings.GetBytes(L"Bytes", bytes, &size), S_OK);
    EXPECT_EQ(size, 3u);
    EXPECT_EQ(bytes[2], 3);

    EXPECT_EQ(settings.GetNumber(L"Absent", &number, 99), S_FALSE);
    EXPECT_EQ(number, 99u);
    EXPECT_EQ(settings.GetNumber(L"Name", &number, 5), HRESULT_FROM_WIN32(ERROR_DATATYPE_MISMATCH));
    EXPECT_EQ(number, 5u) << "another type gives the default";
    wchar_t small[4];
    EXPECT_EQ(settings.GetText(L"Name", small, 4, L"x"), HRESULT_FROM_WIN32(ERROR_MORE_DATA));
    EXPECT_STREQ(small, L"x");
    size = 2;
    EXPECT_EQ(settings.GetBytes(L"Bytes", bytes, &size), HRESULT_FROM_WIN32(ERROR_MORE_DATA));
    EXPECT_EQ(ZQ::ZQRegistry(L"Software\\ZQVelisto\\No such key").GetText(L"Name", text, 32, L"default"), S_FALSE);
    EXPECT_STREQ(text, L"default");
    EXPECT_EQ(settings.Remove(L"Volume"), S_OK);
    EXPECT_EQ(settings.Remove(L"Volume"), S_FALSE);
    RegDeleteTreeW(HKEY_CURRENT_USER, key.c_str());
}
