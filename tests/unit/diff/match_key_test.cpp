#include <gtest/gtest.h>

#include "diff/assembly_diff_engine.h"

namespace {

struct KeyCase {
    const wchar_t* what;
    std::wstring text;
    std::wstring key;
};

void PrintTo(const KeyCase& c, std::ostream* out) {
    for (const wchar_t* p = c.what; *p; ++p) *out << static_cast<char>(*p);
}

class MatchKey : public testing::TestWithParam<KeyCase> {};

TEST_P(MatchKey, OfEachText) {
    EXPECT_EQ(diff::AssemblyDiffEngine::MakeMatchKey(GetParam().text), GetParam().key);
}

INSTANTIATE_TEST_SUITE_P(
    Diff, MatchKey,
    testing::Values(KeyCase{L"empty text", L"", L""},
                    KeyCase{L"cut at the first bracket", L"a(b)(c)", L"a"},
                    KeyCase{L"nothing before the bracket", L"(1)", L""},
                    KeyCase{L"bracket goes too", L"a(", L"a"},
                    KeyCase{L"blanks at both ends", L" \t\r\nab\n\r\t ", L"ab"},
                    KeyCase{L"only blanks", L" \t\r\n", L""},
                    KeyCase{L"blanks before the bracket", L"  (2)", L""},
                    KeyCase{L"runs of blanks inside", L"a \t\r\n  b", L"a b"},
                    KeyCase{L"each run by itself", L"a  b\t\tc", L"a b c"},
                    KeyCase{L"upper case", L"AZaz", L"azaz"},
                    KeyCase{L"other letters do not fold", L"\u00C4B\u00D6", L"b"},
                    KeyCase{L"kept characters", L"a0-9_z", L"a0-9_z"},
                    KeyCase{L"full stops go", L"A.B", L"ab"},
                    KeyCase{L"other brackets go", L"[a]{b})c", L"abc"},
                    KeyCase{L"neighbours of the ranges", L"@A[Z`a{z/0:9", L"azaz09"},
                    KeyCase{L"wholly non-Latin", L"\u4E2D\u6587 \u0411\u043E\u043B\u0442", L""},
                    KeyCase{L"beyond the basic plane", L"a\U0001F600b", L"ab"},
                    KeyCase{L"other white space goes", L"a\u00A0b\v\f", L"ab"},
                    KeyCase{L"runs made by dropping stay", L"a . b", L"a  b"},
                    KeyCase{L"three spaces made by dropping", L"a . . b", L"a   b"},
                    KeyCase{L"spaces bared at the ends", L". a .", L"a"},
                    KeyCase{L"nothing but dropped ones and spaces", L". .", L""},
                    KeyCase{L"instances of one part", L"Bolt M8 (3)", L"bolt m8"},
                    KeyCase{L"the same part typed differently", L"bolt   m8", L"bolt m8"}));

}  // namespace
