#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>

#include <unistd.h>

#include "AllocationCounter.h"
#include "LogCapture.h"
#include "orm/BlockPool.h"
#include "orm/Log.h"
#include "orm/Lua.h"
#include "orm/String.h"
#include "orm/Utf8.h"

using vurel_test::LogCapture;

// Results around and far beyond the first 128-character buffer.
TEST(OrmString, FormatGrowsPastFirstBuffer) {
    for (int length : {0, 1, 127, 128, 129, 1000}) {
        SCOPED_TRACE(length);
        orm::string const narrow = orm::string::format("%s|%d", std::string(size_t(length), 'a').c_str(), 42);
        EXPECT_EQ(narrow, std::string(size_t(length), 'a') + "|42");
        orm::wstring const wide = orm::wstring::format(L"%ls|%d", std::wstring(size_t(length), L'b').c_str(), 42);
        EXPECT_EQ(wide, std::wstring(size_t(length), L'b') + L"|42");
    }
    EXPECT_EQ(orm::wstring::format(L"%s %.2f", "x", 1.5), L"x 1.50");
    EXPECT_TRUE(orm::string::format(nullptr).empty());
    EXPECT_TRUE(orm::wstring::format(nullptr).empty());
}

// A character the C locale cannot convert makes the formatting fail; that
// must end at once with an empty string, not grow the buffer to its limit.
TEST(OrmString, FormatGivesUpOnEncodingError) {
    vurel_test::AllocationCounter allocations;
    EXPECT_TRUE(orm::wstring::format(L"%s", "\xc3\xa9").empty());
    EXPECT_TRUE(orm::string::format("%ls", L"\u00e9").empty());
    EXPECT_LE(allocations.count(), 4u);
}

TEST(OrmBlockPool, ReusesFreedSlotsAndGrowsByBlocks) {
    LogCapture log;  // pools that die in use say so
    orm::BlockPool pool(24, 4, "test pool");
    EXPECT_STREQ(pool.getDebugLabel(), "test pool");
    EXPECT_EQ(pool.getBlockCount(), 0u);

    std::set<void*> slots;
    void* p[5];
    for (void*& q : p)
        slots.insert(q = pool.alloc());
    EXPECT_EQ(slots.size(), 5u);
    EXPECT_EQ(pool.getBlockCount(), 2u);
    EXPECT_EQ(pool.getUsedCount(), 5u);

    pool.free(p[2]);
    pool.free(nullptr);
    EXPECT_EQ(pool.getUsedCount(), 4u);
    EXPECT_EQ(pool.alloc(), p[2]);
    // Three free slots remain in the second block: no new block until they are used.
    for (int i = 0; i < 3; ++i)
        slots.insert(pool.alloc());
    EXPECT_EQ(pool.getBlockCount(), 2u);
    EXPECT_EQ(slots.size(), 8u);
    pool.alloc();
    EXPECT_EQ(pool.getBlockCount(), 3u);

    {
        orm::BlockPool leaky(8, 2, "leaky");
        leaky.alloc();
    }
    EXPECT_TRUE(log.contains("VUREL", 16, "leaky"));
}

TEST(OrmBlockPool, HonoursAlignment) {
    LogCapture log;
    orm::BlockPool pool(20, 3, "aligned", 64);
    EXPECT_EQ(pool.getObjectSize() % 64, 0u);
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(reinterpret_cast<uintptr_t>(pool.alloc()) % 64, 0u);

    // A tiny object still holds the free-list link.
    orm::BlockPool tiny(1, 2, "tiny", 1);
    EXPECT_GE(tiny.getObjectSize(), sizeof(void*));
    char* a = static_cast<char*>(tiny.alloc());
    char* b = static_cast<char*>(tiny.alloc());
    EXPECT_GE(std::abs(b - a), static_cast<std::ptrdiff_t>(sizeof(void*)));

    // An alignment that is no power of two is bad data, not a crash.
    orm::BlockPool odd(40, 2, "odd", 24);
    void* q = odd.alloc();
    ASSERT_NE(q, nullptr);
    EXPECT_EQ(reinterpret_cast<uintptr_t>(q) % 8, 0u);
    EXPECT_GE(odd.getObjectSize(), 40u);
    EXPECT_TRUE(log.contains("VUREL", 8, "alignment"));
}

TEST(OrmUtf8, DecodesAllSequenceLengthsAndRoundTrips) {
    EXPECT_EQ(orm::iconv_utf8_to_wchar("plain"), L"plain");
    EXPECT_EQ(orm::iconv_utf8_to_wchar("\xc3\xa9"), std::wstring(1, wchar_t(0xE9)));
    EXPECT_EQ(orm::iconv_utf8_to_wchar("\xe2\x82\xac"), std::wstring(1, wchar_t(0x20AC)));
    std::wstring const emoji = orm::iconv_utf8_to_wchar("\xf0\x9f\x98\x80");
    if (sizeof(wchar_t) == 4)
        EXPECT_EQ(emoji, std::wstring(1, wchar_t(0x1F600)));
    else
        EXPECT_EQ(emoji.size(), 2u);
    EXPECT_EQ(orm::iconv_wchar_to_utf8(emoji), "\xf0\x9f\x98\x80");
    // The explicit length is honoured, embedded zeros included.
    EXPECT_EQ(orm::iconv_utf8_to_wchar("ab\0c", 4), std::wstring(L"ab\0c", 4));
    EXPECT_TRUE(orm::iconv_utf8_to_wchar(nullptr, 3).empty());

    std::string const text = "Gr\xc3\xbc\xc3\x9f\x65 \xe2\x82\xac 5 \xf0\x9d\x84\x9e!";
    EXPECT_EQ(orm::iconv_wchar_to_utf8(orm::iconv_utf8_to_wchar(text)), text);
}

TEST(OrmUtf8, MalformedBytesBecomeReplacementCharacters) {
    std::wstring const R(1, wchar_t(0xFFFD));
    EXPECT_EQ(orm::iconv_utf8_to_wchar("a\x80z"), L"a" + R + L"z");        // stray continuation
    EXPECT_EQ(orm::iconv_utf8_to_wchar("\xe2\x82" "A"), R + L"A");         // cut short: the next byte survives
    EXPECT_EQ(orm::iconv_utf8_to_wchar("x\xe2\x82"), L"x" + R);            // cut by the end
    EXPECT_EQ(orm::iconv_utf8_to_wchar("\xc0\xaf"), R);                    // overlong
    EXPECT_EQ(orm::iconv_utf8_to_wchar("\xed\xa0\x80"), R);                // surrogate
    EXPECT_EQ(orm::iconv_utf8_to_wchar("\xf4\x90\x80\x80"), R);            // above U+10FFFF
    EXPECT_EQ(orm::iconv_utf8_to_wchar("\xff" "b"), R + L"b");
}

TEST(OrmLog, SinkCapturesAndStderrComesBack) {
    {
        LogCapture outer;
        {
            LogCapture inner;
            orm_vlogf("VUREL", 8, "Invalid %s type!", "Align");
            ASSERT_EQ(inner.lines().size(), 1u);
            EXPECT_EQ(inner.lines()[0].tag, "VUREL");
            EXPECT_EQ(inner.lines()[0].level, 8);
            EXPECT_EQ(inner.lines()[0].text, "Invalid Align type!");
        }
        // The inner capture gave the sink back to the outer one.
        orm_vlogf("X", 64, "second");
        EXPECT_TRUE(outer.contains("X", 64, "second"));
        EXPECT_FALSE(outer.containsText("Invalid"));

        // An over-long line is cut, not overrun.
        std::string const huge(5000, 'q');
        orm_vlogf("VUREL", 16, "%s", huge.c_str());
        EXPECT_LT(outer.lines().back().text.size(), huge.size());
    }
    testing::internal::CaptureStderr();
    orm_vlogf("VUREL", 16, "to stderr %d", 7);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "[VUREL:16] to stderr 7\n");
}

class OrmLua : public testing::Test {
protected:
    void SetUp() override {
        L = ORM_lua_open("test");
        ASSERT_NE(L, nullptr);
        ORM_lua_openlibs(L);
    }
    void TearDown() override {
        ORM_lua_close(L);
        std::filesystem::remove(path_);
    }
    std::string writeScript(char const* text) {
        path_ = std::filesystem::temp_directory_path() / ("vurel_orm_" + std::to_string(::getpid()) + ".lua");
        std::ofstream(path_) << text;
        return path_.string();
    }
    std::string topString() const { return lua_isstring(L, -1) ? lua_tostring(L, -1) : ""; }

    lua_State* L = nullptr;
    std::filesystem::path path_;
};

TEST_F(OrmLua, LoadsAndCallsScript) {
    std::string const file = writeScript("local t = { 6, 7 }\nanswer = t[1] * t[2]\nreturn string.format('%d', answer)\n");
    ASSERT_EQ(ORM_lua_loadfile(L, file.c_str()), 0);
    ASSERT_EQ(ORM_lua_pcall(L, 0, 1, 0), 0);
    EXPECT_EQ(topString(), "42");
    lua_getglobal(L, "answer");
    EXPECT_EQ(lua_tointeger(L, -1), 42);
}

TEST_F(OrmLua, ReportsErrorsOnTheStack) {
    EXPECT_EQ(ORM_lua_loadfile(L, "/nonexistent/skin.lua"), LUA_ERRFILE);
    EXPECT_NE(topString().find("/nonexistent/skin.lua"), std::string::npos);
    lua_settop(L, 0);
    EXPECT_EQ(ORM_lua_loadfile(L, nullptr), LUA_ERRFILE);
    EXPECT_FALSE(topString().empty());
    lua_settop(L, 0);

    EXPECT_EQ(ORM_lua_loadfile(L, writeScript("return {").c_str()), LUA_ERRSYNTAX);
    lua_settop(L, 0);
    ASSERT_EQ(ORM_lua_loadfile(L, writeScript("error('boom')").c_str()), 0);
    EXPECT_EQ(ORM_lua_pcall(L, 0, 0, 0), LUA_ERRRUN);
    EXPECT_NE(topString().find("boom"), std::string::npos);

    // A missing state is answered, not dereferenced.
    EXPECT_EQ(ORM_lua_loadfile(nullptr, "x.lua"), LUA_ERRFILE);
    EXPECT_EQ(ORM_lua_pcall(nullptr, 0, 0, 0), LUA_ERRRUN);
    ORM_lua_openlibs(nullptr);
    ORM_lua_close(nullptr);
}
