// Fixed-capacity text: cutting, ending, copying.
#include "core/Strings.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

using Core::CString;
using Core::CStringBufferd;

TEST(Strings, CutToTheCapacityAndAlwaysEnded) {
    char buffer[8];
    std::memset(buffer, '#', sizeof(buffer));
    CString text(buffer, 5);
    text.assign("abcdefgh");
    EXPECT_STREQ(text.c_str(), "abcd");
    EXPECT_EQ(buffer[5], '#') << "wrote behind its capacity";
    text.assign(nullptr);
    EXPECT_STREQ(text.c_str(), "");
    EXPECT_EQ(text.compare(nullptr), 0);

    text.assign("abc\xC3\xA4"); // the fourth byte is half a character
    EXPECT_STREQ(text.c_str(), "abc");

    CStringBufferd<1> none;
    none.assign("a");
    EXPECT_STREQ(none.c_str(), "");
    EXPECT_STREQ(CStringBufferd<32>(std::string(100, 'x').c_str()).c_str(),
                 std::string(31, 'x').c_str());
}

TEST(Strings, CopiesOwnTheirText) {
    CStringBufferd<32> first("first");
    CStringBufferd<32> copy(first);
    CStringBufferd<8> small;
    const Core::IString& plain = first;
    small = plain;
    first.assign("changed");
    EXPECT_STREQ(copy.c_str(), "first");
    EXPECT_STREQ(small.c_str(), "first");
    first.assign(first.c_str() + 2);
    EXPECT_STREQ(first.c_str(), "anged") << "from itself";
}
