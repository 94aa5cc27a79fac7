// CString: encodings, clamped positions, tokenizing, trimming and case.
#include "support/test_support.h"

#include <gtest/gtest.h>

#include <utility>

using varion::test::Utf8;

TEST(CStringText, EncodingsRoundTripAndInvalidInputBecomesReplacementCharacters) {
    const CString fromUtf8("a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");  // a, ä, €, U+1F600
    EXPECT_EQ(fromUtf8.GetLength(), 5);                          // the emoji takes two code units
    EXPECT_EQ(Utf8(fromUtf8), "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_EQ(CString(L"a\u00e4\u20ac\U0001F600"), fromUtf8);
    const OLECHAR lone[] = {0xD800, 'x', 0};
    const std::pair<CString, const char*> invalid[] = {
        {CString("\xFF" "a" "\xC3"), "\xEF\xBF\xBD" "a" "\xEF\xBF\xBD"},
        {CString("\xE0\x80\xAF"), "\xEF\xBF\xBD"},  // overlong
        {CString(lone), "\xEF\xBF\xBDx"},
        {CString(static_cast<const char*>(nullptr)), ""},
    };
    for (const auto& [text, utf8] : invalid) EXPECT_EQ(Utf8(text), utf8);
}

TEST(CStringText, PositionsAreClamped) {
    const CString s("abcdef");
    const std::pair<CString, const char*> parts[] = {
        {s.Mid(2, 2), "cd"}, {s.Mid(-3, 2), "ab"}, {s.Mid(4, 100), "ef"}, {s.Mid(100), ""}, {s.Left(-1), ""},
        {s.Right(2), "ef"},
    };
    for (const auto& [part, expected] : parts) EXPECT_EQ(Utf8(part), expected);
    const std::pair<int, int> found[] = {
        {s.Find('d', 4), -1}, {s.Find('a', 99), -1}, {s.Find(OLESTR("cd")), 2}, {s.Find(OLESTR("")), 0},
        {s.ReverseFind('a'), 0}, {s.FindOneOf(OLESTR("xyf")), 5}, {s.GetAt(6), 0},
    };
    for (const auto& [got, expected] : found) EXPECT_EQ(got, expected);
}

TEST(CStringText, TokenizeSkipsRunsOfDelimitersAndStaysFinished) {
    const CString s(",,a,,bc,");
    int pos = 0;
    for (const auto& [token, next] : {std::pair<const char*, int>{"a", 4}, {"bc", 8}, {"", -1}, {"", -1}}) {
        EXPECT_EQ(Utf8(s.Tokenize(OLESTR(","), pos)), token);
        EXPECT_EQ(pos, next);
    }
    int whole = 0;
    EXPECT_EQ(Utf8(CString("xy").Tokenize(OLESTR(""), whole)), "xy");
    EXPECT_EQ(Utf8(CString("xy").Tokenize(OLESTR(""), whole)), "");
}

TEST(CStringText, ModifyTrimCaseAndCompare) {
    EXPECT_EQ(Utf8(CString("  a b\t\r\n").Trim()), "a b");
    // ß has no single-letter upper case.
    EXPECT_EQ(Utf8(CString("stra\xC3\x9F" "e \xC3\xA4x").MakeUpper()), "STRA\xC3\x9F" "E \xC3\x84X");
    CString r("a.b.c");
    EXPECT_EQ(r.Replace('.', ','), 2);
    EXPECT_EQ(r.Replace(OLESTR(","), OLESTR("--")), 2);
    EXPECT_EQ(Utf8(r), "a--b--c");
    EXPECT_EQ(r.Replace(OLESTR(""), OLESTR("x")), 0);
    EXPECT_EQ(r.Remove('-'), 4);
    EXPECT_EQ(r.Insert(99, '!'), 4);
    EXPECT_EQ(r.Delete(-5, 2), 2);
    EXPECT_EQ(Utf8(r), "c!");
    EXPECT_EQ(CString("abc").CompareNoCase(OLESTR("ABD")), -1);
    EXPECT_EQ(CString("b").Compare(OLESTR("a")), 1);
    EXPECT_EQ(CString("").Compare(nullptr), 0);
}

TEST(CByteArrayTest, SizeAndAccessOutOfRange) {
    CByteArray a;
    a.SetSize(3);
    a.SetAt(1, 7);
    a.SetAt(5, 9);  // out of range: nothing
    EXPECT_EQ(a.GetSize(), 3);
    EXPECT_EQ(a.GetAt(1), 7);
    EXPECT_EQ(a.GetAt(-1), 0);
    EXPECT_EQ(a.Add(4), 3);
    a.SetSize(-1);
    EXPECT_TRUE(a.IsEmpty());
}
