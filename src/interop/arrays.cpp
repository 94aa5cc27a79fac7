// Array values: construction, element access and concatenation.
//
// Element (i, j) is addressed with i along bound A (rgsabound[0], the
// fastest-varying dimension) and j along bound B. Indices are absolute (they
// count from the array's lower bounds); growth treats i as counted from 0.
// Arrays of more than two dimensions (only a VARIANT can bring one) are held
// and copied but their elements are not reachable here: access does nothing.
#include <varion/varion.h>

#include "platform/array_index.h"
#include "value/access.h"

#include <climits>
#include <cstring>
#include <new>

using varion::detail::Access;
using varion::detail::IsArrayType;
using varion::detail::MakeIndexVector;

namespace {

constexpr VARTYPE kStringArray = VT_ARRAY | VT_BSTR;
constexpr VARTYPE kBoolArray = VT_ARRAY | VT_BOOL;
constexpr VARTYPE kVariantArray = VT_ARRAY | VT_VARIANT;

bool FitsLong32(long x) { return x >= INT32_MIN && x <= INT32_MAX; }

// The library asks no platform for an element block beyond the 32-bit
// platform's largest: some compute the block size in 32 bits and would
// wrap around to a small block.
constexpr unsigned long long kLargestBlock = 0x7FFFFFF0ull;
constexpr unsigned long long kLargestElement = 24;  // a VARIANT on 64-bit Windows

// Whether `cells` elements of `vt` fit that block; the element size is asked
// of the platform only for counts where it matters.
bool CellsFit(VARTYPE vt, unsigned long long cells) {
    if (cells <= kLargestBlock / kLargestElement) return true;
    SAFEARRAY* probe = SafeArrayCreateVector(vt, 0, 0);
    if (probe == nullptr) return false;
    const unsigned long long size = SafeArrayGetElemsize(probe);
    SafeArrayDestroy(probe);
    return size != 0 && cells <= kLargestBlock / size;
}

// Whether the array still fits that block with `countA` elements along bound A.
bool GrowthFits(const SAFEARRAY* psa, unsigned long long countA) {
    unsigned long long bytes = countA * psa->cbElements;
    for (USHORT d = 1; d < psa->cDims && bytes <= kLargestBlock; ++d) bytes *= psa->rgsabound[d].cElements;
    return bytes <= kLargestBlock;
}

// The element address (i, j) of the array held in `v`, as the element
// accessors see it, after the growth the access asks for. False when the
// access must do nothing.
struct Target {
    SAFEARRAY* psa;
    LONG index[2];
};

bool Reach(const VARIANT& v, long i, long j, bool growOnRead, Target* t) {
    if (!IsArrayType(v.vt) || v.parray == nullptr) return false;
    SAFEARRAY* psa = v.parray;
    if (psa->cDims < 1 || psa->cDims > 2 || !FitsLong32(i) || !FitsLong32(j)) return false;
    const long countA = static_cast<long>(psa->rgsabound[0].cElements);
    const long countB = psa->cDims == 2 ? static_cast<long>(psa->rgsabound[1].cElements) : 0;
    const bool oneDimensional = countA <= 0 || countB <= 0;
    if (oneDimensional) j = -1;

    // A read grows the array only when i lies beyond bound A and j does not
    // lie inside bound B; a write whenever i lies beyond bound A.
    const bool beyond = growOnRead ? (i + 1 > countA && (j == -1 || j + 1 > countB)) : (i >= countA);
    if (beyond) {
        if ((psa->fFeatures & FADF_FIXEDSIZE) || !GrowthFits(psa, static_cast<unsigned long long>(i) + 1)) return false;
        SAFEARRAYBOUND bound{static_cast<ULONG>(i + 1), psa->rgsabound[0].lLbound};
        if (FAILED(SafeArrayRedim(psa, &bound))) return false;
    }
    if (!growOnRead && !oneDimensional && j >= countB && (psa->fFeatures & FADF_FIXEDSIZE)) return false;
    t->psa = psa;
    MakeIndexVector(psa->cDims, static_cast<LONG>(i), static_cast<LONG>(j), t->index);
    return true;
}

}  // namespace

CVarion::CVarion(unsigned short elementType, long count1, long count2) noexcept {
    std::memset(&m_v, 0, sizeof(m_v));
    if (count1 < -1 || count1 > static_cast<long>(INT32_MAX) || count2 > static_cast<long>(INT32_MAX)) return;
    const long count = count1 == -1 ? 0 : count1;
    const auto cells = static_cast<unsigned long long>(count) * static_cast<unsigned long long>(count2 > 0 ? count2 : 1);
    if (!CellsFit(elementType, cells)) return;
    SAFEARRAY* psa = nullptr;
    if (count1 < 1 || count2 < 1) {
        psa = SafeArrayCreateVector(elementType, 0, static_cast<ULONG>(count));
    } else {
        SAFEARRAYBOUND bounds[2] = {{static_cast<ULONG>(count1), 0}, {static_cast<ULONG>(count2), 0}};
        psa = SafeArrayCreate(elementType, 2, bounds);
    }
    if (psa == nullptr) return;
    if (count > 0) psa->fFeatures = static_cast<USHORT>(psa->fFeatures | FADF_FIXEDSIZE);
    m_v.parray = psa;
    m_v.vt = static_cast<VARTYPE>(elementType | VT_ARRAY);
}

bool CVarion::isArray() const noexcept { return IsArrayType(m_v.vt); }

unsigned long CVarion::GetElementCount() const noexcept {
    if (!isArray() || m_v.parray == nullptr || m_v.parray->cDims < 1) return 0;
    return m_v.parray->rgsabound[0].cElements;
}

bool CVarion::ElementMatches(varion::ElementKind kind, std::size_t size) const noexcept {
    if (!isArray() || m_v.parray == nullptr) return false;
    const VARTYPE element = m_v.vt & static_cast<VARTYPE>(~VT_ARRAY);
    switch (kind) {
    case varion::ElementKind::Bool: return element == VT_BOOL;
    case varion::ElementKind::String: return element == VT_BSTR;
    case varion::ElementKind::Variant: return element == VT_VARIANT;
    case varion::ElementKind::Raw:
        return element != VT_BOOL && element != VT_BSTR && element != VT_VARIANT && element != VT_UNKNOWN &&
               element != VT_DISPATCH && m_v.parray->cbElements == size;
    }
    return false;
}

void CVarion::GetElementValue(long i, long j, void* destination) const noexcept {
    Target t{};
    if (destination == nullptr || !Reach(m_v, i, j, true, &t)) return;
    if (m_v.vt == kStringArray) {
        BSTR copy = nullptr;
        if (FAILED(SafeArrayGetElement(t.psa, t.index, &copy))) return;
        try {
            *static_cast<CString*>(destination) = CString(copy);
        } catch (const std::bad_alloc&) {
        }
        SysFreeString(copy);
    } else if (m_v.vt == kBoolArray) {
        VARIANT_BOOL element = 0;
        if (FAILED(SafeArrayGetElement(t.psa, t.index, &element))) return;
        *static_cast<bool*>(destination) = element != 0;
    } else {
        SafeArrayGetElement(t.psa, t.index, destination);
    }
}

void CVarion::SetElementValue(long i, long j, const void* source) const noexcept {
    Target t{};
    if (source == nullptr || !Reach(m_v, i, j, false, &t)) return;
    if (m_v.vt == kStringArray) {
        BSTR copy = SysAllocString(static_cast<const CString*>(source)->GetString());
        if (copy == nullptr) return;
        SafeArrayPutElement(t.psa, t.index, copy);
        SysFreeString(copy);
    } else if (m_v.vt == kBoolArray) {
        std::uint8_t flag = 0;
        std::memcpy(&flag, source, 1);
        VARIANT_BOOL element = flag == 1 ? VARIANT_TRUE : VARIANT_FALSE;
        SafeArrayPutElement(t.psa, t.index, &element);
    } else {
        SafeArrayPutElement(t.psa, t.index, const_cast<void*>(source));
    }
}

CVarion CVarion::CONCAT_ARRAY(const CVarion& other) const noexcept {
    CVarion refused(static_cast<short>(-1));
    const VARIANT& a = m_v;
    const VARIANT& b = other.m_v;
    if (!IsArrayType(a.vt) || b.vt != a.vt || a.parray == nullptr || b.parray == nullptr) return refused;
    SAFEARRAY* left = a.parray;
    SAFEARRAY* right = b.parray;
    if (left->cDims != 1 || right->cDims < 1) return refused;
    const unsigned long long countA = left->rgsabound[0].cElements;
    const unsigned long long countB = right->rgsabound[0].cElements;
    if (countA + countB > INT32_MAX || !GrowthFits(left, countA + countB)) return refused;

    CVarion result;
    VARIANT& r = Access::Var(result);
    if (a.vt == kStringArray || a.vt == kVariantArray) {
        // A copy of this array, grown, with copies of the other's elements.
        SAFEARRAY* copy = nullptr;
        if (FAILED(SafeArrayCopy(left, &copy)) || copy == nullptr) return refused;
        const USHORT features = copy->fFeatures;
        copy->fFeatures = static_cast<USHORT>(features & ~FADF_FIXEDSIZE);
        SAFEARRAYBOUND grown{static_cast<ULONG>(countA + countB), left->rgsabound[0].lLbound};
        if (FAILED(SafeArrayRedim(copy, &grown))) {
            SafeArrayDestroy(copy);
            return refused;
        }
        copy->fFeatures = features;
        r.parray = copy;
        r.vt = a.vt;  // from here on `result` owns the copy
        for (unsigned long long k = 0; k < countB; ++k) {
            // Element k of the first row of a two-dimensional source.
            LONG from[2] = {};
            MakeIndexVector(right->cDims, static_cast<LONG>(right->rgsabound[0].lLbound + static_cast<long long>(k)),
                            right->cDims == 2 ? right->rgsabound[1].lLbound : 0, from);
            LONG to[1] = {static_cast<LONG>(grown.lLbound + static_cast<long long>(countA + k))};
            void* src = nullptr;
            void* dst = nullptr;
            if (right->cDims > 2 || FAILED(SafeArrayPtrOfIndex(right, from, &src)) ||
                FAILED(SafeArrayPtrOfIndex(copy, to, &dst)))
                return refused;
            const HRESULT hr = a.vt == kStringArray
                                   ? SafeArrayPutElement(copy, to, *static_cast<BSTR*>(src))
                                   : VariantCopyInd(static_cast<VARIANT*>(dst), static_cast<VARIANT*>(src));
            if (FAILED(hr)) return refused;
        }
        return result;
    }

    // Raw elements: the two element blocks, one after the other.
    const VARTYPE element = a.vt & static_cast<VARTYPE>(~VT_ARRAY);
    SAFEARRAY* joined = SafeArrayCreateVector(element, 0, static_cast<ULONG>(countA + countB));
    if (joined == nullptr) return refused;
    // The joined block exists, so both parts' byte counts fit a size_t.
    const std::size_t size = left->cbElements;
    const auto bytesA = static_cast<std::size_t>(countA) * size;
    if (countA > 0) std::memcpy(joined->pvData, left->pvData, bytesA);
    if (countB > 0)
        std::memcpy(static_cast<unsigned char*>(joined->pvData) + bytesA, right->pvData,
                    static_cast<std::size_t>(countB) * right->cbElements);
    r.parray = joined;
    r.vt = a.vt;
    return result;
}
