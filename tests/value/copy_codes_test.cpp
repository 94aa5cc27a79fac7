// The copy of a value whose content is its value field alone is made inline
// from a table of those codes: for every code that is not a string or an
// array, the copy keeps the type and the value field and zeroes the reserved
// words, or (VT_EMPTY, VT_NULL, codes without a type) is all zero bytes.
#include "support/test_support.h"
#include "value/access.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>

using varion::detail::Access;
using varion::detail::IsArrayType;
using varion::test::Bytes;

namespace {

TEST(CopyCodes, EveryCodeWithoutContentCopiesAsTheCatalogueSays) {
    for (unsigned code = 0; code <= 0xFFFF; ++code) {
        const auto t = static_cast<VARTYPE>(code);
        if (t == VT_BSTR || IsArrayType(t)) continue;  // their content is duplicated
        CVarion source(0x1122334455667788LL);
        VARIANT& var = Access::Var(source);
        var.vt = t;
        var.wReserved1 = 0xAAAA;
        var.wReserved2 = 0xBBBB;
        var.wReserved3 = 0xCCCC;
        const bool plain = CVarion::IsNumericType(t) || CVarion::IsAnyDateType(t) || t == VT_UNKNOWN;

        std::array<unsigned char, 16> expected{};
        if (plain) {
            std::memcpy(expected.data(), &t, sizeof t);
            std::memcpy(expected.data() + 8, &var.llVal, 8);
        }
        const CVarion copy(source);
        ASSERT_EQ(Bytes(copy), expected) << code;
        var.vt = VT_EMPTY;  // the pattern is no pointer to release
    }
}

}  // namespace
