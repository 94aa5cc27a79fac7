// OLE Automation types and services.
//
// On Windows these come from the system (oleauto.h, oleaut32). Elsewhere varion
// supplies stand-ins with the same names, signatures and ownership rules:
//   - BSTR: a length-prefixed UTF-16 string made and freed only by the
//     SysAllocString family; a null BSTR reads as the empty string.
//   - VARIANT: 16 bytes; type code, three reserved words, an 8-byte value.
//     VariantClear releases a held string or array and leaves VT_EMPTY.
//   - SAFEARRAY: a descriptor with its element block. Bounds are kept least
//     significant dimension first in rgsabound; SafeArrayCreate takes its
//     bound list most significant (leftmost) first, and element index
//     vectors name the dimensions in that same order. The leftmost index
//     varies fastest in the element block; rgsabound[0], the only dimension
//     SafeArrayRedim changes, varies slowest.
#pragma once

#include <varion/export.h>

#if defined(_WIN32)
#  ifndef NOMINMAX
#    define NOMINMAX
#  endif
#  include <windows.h>
#  include <oleauto.h>

#include <cstddef>

// mingw-w64 declares these services with non-const sources where the Windows
// SDK takes const ones; these overloads accept what the SDK accepts. They are
// templates so that a call the system's declaration takes as it stands
// (a non-const pointer, a null pointer) still goes to it.
#if defined(__MINGW32__)
template <class = void>
inline HRESULT VariantCopy(VARIANTARG* pvargDest, const VARIANTARG* pvargSrc) {
    return VariantCopy(pvargDest, const_cast<VARIANTARG*>(pvargSrc));
}
template <class = void>
inline HRESULT VariantCopyInd(VARIANT* pvarDest, const VARIANTARG* pvargSrc) {
    return VariantCopyInd(pvarDest, const_cast<VARIANTARG*>(pvargSrc));
}
template <class = void>
inline HRESULT VariantChangeType(VARIANTARG* pvargDest, const VARIANTARG* pvarSrc, USHORT wFlags, VARTYPE vt) {
    return VariantChangeType(pvargDest, const_cast<VARIANTARG*>(pvarSrc), wFlags, vt);
}
template <class = void>
inline HRESULT VarDateFromStr(const OLECHAR* strIn, LCID lcid, ULONG dwFlags, DATE* pdateOut) {
    return VarDateFromStr(const_cast<OLECHAR*>(strIn), lcid, dwFlags, pdateOut);
}
#endif

// The Automation layout: a 16-byte VARIANT on 32-bit Windows (type code,
// three reserved words, the 8-byte value field), 24 bytes on 64-bit Windows,
// where a record's two pointers follow the type code.
static_assert(sizeof(VARIANT) == (sizeof(void*) == 4 ? 16 : 24), "VARIANT has the Automation size");
static_assert(offsetof(VARIANT, vt) == 0, "the type code starts at byte 0");
static_assert(offsetof(VARIANT, wReserved1) == 2 && offsetof(VARIANT, wReserved2) == 4 &&
                  offsetof(VARIANT, wReserved3) == 6,
              "three reserved words follow the type code");
static_assert(offsetof(VARIANT, llVal) == 8 && offsetof(VARIANT, dblVal) == 8 && offsetof(VARIANT, bstrVal) == 8 &&
                  offsetof(VARIANT, parray) == 8,
              "the value field starts at byte 8");
static_assert(sizeof(OLECHAR) == 2, "OLECHAR is one UTF-16 code unit");

#else

#include <cstddef>
#include <cstdint>

// ---------------------------------------------------------------------------
// Scalar types
// ---------------------------------------------------------------------------
typedef char16_t OLECHAR;
typedef OLECHAR* BSTR;
typedef OLECHAR* LPOLESTR;
typedef const OLECHAR* LPCOLESTR;
typedef std::uint8_t BYTE;
typedef std::uint16_t WORD;
typedef std::uint32_t DWORD;
typedef std::int16_t SHORT;
typedef std::uint16_t USHORT;
typedef std::int32_t LONG;
typedef std::uint32_t ULONG;
typedef std::int32_t INT;
typedef std::uint32_t UINT;
typedef long long LONGLONG;
typedef unsigned long long ULONGLONG;
typedef signed char CHAR;
typedef float FLOAT;
typedef double DOUBLE;
typedef double DATE;
typedef std::int32_t BOOL;
typedef std::int32_t HRESULT;
typedef std::int32_t SCODE;
typedef std::uint32_t LCID;
typedef std::uint16_t VARTYPE;
typedef std::int16_t VARIANT_BOOL;
typedef void* PVOID;

/// Builds an OLECHAR string literal: OLESTR("abc").
#define OLESTR(str) u##str

#ifndef TRUE
#  define TRUE 1
#endif
#ifndef FALSE
#  define FALSE 0
#endif

#define VARIANT_TRUE ((VARIANT_BOOL)-1)
#define VARIANT_FALSE ((VARIANT_BOOL)0)

// ---------------------------------------------------------------------------
// Result codes
// ---------------------------------------------------------------------------
#define SUCCEEDED(hr) (((HRESULT)(hr)) >= 0)
#define FAILED(hr) (((HRESULT)(hr)) < 0)

/// The status codes the services answer.
constexpr HRESULT S_OK = 0;
constexpr HRESULT S_FALSE = 1;
constexpr HRESULT E_NOTIMPL = static_cast<HRESULT>(0x80004001u);
constexpr HRESULT E_POINTER = static_cast<HRESULT>(0x80004003u);
constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005u);
constexpr HRESULT E_UNEXPECTED = static_cast<HRESULT>(0x8000FFFFu);
constexpr HRESULT E_OUTOFMEMORY = static_cast<HRESULT>(0x8007000Eu);
constexpr HRESULT E_INVALIDARG = static_cast<HRESULT>(0x80070057u);
constexpr HRESULT DISP_E_TYPEMISMATCH = static_cast<HRESULT>(0x80020005u);
constexpr HRESULT DISP_E_BADVARTYPE = static_cast<HRESULT>(0x80020008u);
constexpr HRESULT DISP_E_OVERFLOW = static_cast<HRESULT>(0x8002000Au);
constexpr HRESULT DISP_E_BADINDEX = static_cast<HRESULT>(0x8002000Bu);
constexpr HRESULT DISP_E_ARRAYISLOCKED = static_cast<HRESULT>(0x8002000Du);

// ---------------------------------------------------------------------------
// Type codes
// ---------------------------------------------------------------------------
/// The Automation type codes; VT_ARRAY and VT_BYREF are flags added to an element type.
enum VARENUM : VARTYPE {
    VT_EMPTY = 0,
    VT_NULL = 1,
    VT_I2 = 2,
    VT_I4 = 3,
    VT_R4 = 4,
    VT_R8 = 5,
    VT_CY = 6,
    VT_DATE = 7,
    VT_BSTR = 8,
    VT_DISPATCH = 9,
    VT_ERROR = 10,
    VT_BOOL = 11,
    VT_VARIANT = 12,
    VT_UNKNOWN = 13,
    VT_DECIMAL = 14,
    VT_I1 = 16,
    VT_UI1 = 17,
    VT_UI2 = 18,
    VT_UI4 = 19,
    VT_I8 = 20,
    VT_UI8 = 21,
    VT_INT = 22,
    VT_UINT = 23,
    VT_VOID = 24,
    VT_HRESULT = 25,
    VT_PTR = 26,
    VT_SAFEARRAY = 27,
    VT_CARRAY = 28,
    VT_USERDEFINED = 29,
    VT_LPSTR = 30,
    VT_LPWSTR = 31,
    VT_RECORD = 36,
    VT_INT_PTR = 37,
    VT_UINT_PTR = 38,
    VT_FILETIME = 64,
    VT_BLOB = 65,
    VT_STREAM = 66,
    VT_STORAGE = 67,
    VT_STREAMED_OBJECT = 68,
    VT_STORED_OBJECT = 69,
    VT_BLOB_OBJECT = 70,
    VT_CF = 71,
    VT_CLSID = 72,
    VT_VERSIONED_STREAM = 73,
    VT_BSTR_BLOB = 0x0fff,
    VT_VECTOR = 0x1000,
    VT_ARRAY = 0x2000,
    VT_BYREF = 0x4000,
    VT_RESERVED = 0x8000,
    VT_ILLEGAL = 0xffff,
    VT_ILLEGALMASKED = 0x0fff,
    VT_TYPEMASK = 0x0fff
};

// ---------------------------------------------------------------------------
// Interfaces: only what a VARIANT needs to carry and release a pointer.
// ---------------------------------------------------------------------------
/// A 128-bit interface identifier.
struct GUID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
};
typedef GUID IID;

/// The base of every interface a VARIANT can carry (VT_UNKNOWN).
struct IUnknown {
    /// Asks for another interface of the object: S_OK with *ppvObject set,
    /// or a failure code (E_NOTIMPL ...) with *ppvObject null.
    virtual HRESULT QueryInterface(const IID& riid, void** ppvObject) = 0;
    /// Takes a reference; answers the new count.
    virtual ULONG AddRef() = 0;
    /// Drops a reference; answers the new count (the object may be gone at 0).
    virtual ULONG Release() = 0;

protected:
    /// Objects are released through Release, never deleted through this base.
    ~IUnknown() = default;
};
/// An interface with late-bound calls (VT_DISPATCH); only carried here.
struct IDispatch : IUnknown {
protected:
    /// Released through Release only.
    ~IDispatch() = default;
};

// ---------------------------------------------------------------------------
// SAFEARRAY
// ---------------------------------------------------------------------------
/// One dimension of an array: its element count and lower bound.
struct SAFEARRAYBOUND {
    ULONG cElements;
    LONG lLbound;
};
typedef SAFEARRAYBOUND* LPSAFEARRAYBOUND;

/// An array descriptor: dimensions, FADF_* features, element size, lock
/// count, the element block and the bounds, least significant first.
struct SAFEARRAY {
    USHORT cDims;
    USHORT fFeatures;
    ULONG cbElements;
    ULONG cLocks;
    PVOID pvData;
    SAFEARRAYBOUND rgsabound[1];
};
typedef SAFEARRAY* LPSAFEARRAY;

/// SAFEARRAY feature flags; FADF_FIXEDSIZE marks an array that cannot be resized.
enum : USHORT {
    FADF_AUTO = 0x0001,
    FADF_STATIC = 0x0002,
    FADF_EMBEDDED = 0x0004,
    FADF_FIXEDSIZE = 0x0010,
    FADF_RECORD = 0x0020,
    FADF_HAVEIID = 0x0040,
    FADF_HAVEVARTYPE = 0x0080,
    FADF_BSTR = 0x0100,
    FADF_UNKNOWN = 0x0200,
    FADF_DISPATCH = 0x0400,
    FADF_VARIANT = 0x0800,
    FADF_RESERVED = 0xF008
};

// ---------------------------------------------------------------------------
// VARIANT
// ---------------------------------------------------------------------------
struct tagVARIANT;
typedef tagVARIANT VARIANT;
typedef tagVARIANT VARIANTARG;

/// The Automation value: a type code, three reserved words and the 8-byte
/// value field, the member named by the type code.
struct tagVARIANT {
    VARTYPE vt;
    WORD wReserved1;
    WORD wReserved2;
    WORD wReserved3;
    union {
        LONGLONG llVal;
        LONG lVal;
        BYTE bVal;
        SHORT iVal;
        FLOAT fltVal;
        DOUBLE dblVal;
        VARIANT_BOOL boolVal;
        SCODE scode;
        LONGLONG cyVal;
        DATE date;
        BSTR bstrVal;
        IUnknown* punkVal;
        IDispatch* pdispVal;
        SAFEARRAY* parray;
        BYTE* pbVal;
        SHORT* piVal;
        LONG* plVal;
        LONGLONG* pllVal;
        FLOAT* pfltVal;
        DOUBLE* pdblVal;
        VARIANT_BOOL* pboolVal;
        SCODE* pscode;
        DATE* pdate;
        BSTR* pbstrVal;
        IUnknown** ppunkVal;
        IDispatch** ppdispVal;
        SAFEARRAY** pparray;
        VARIANT* pvarVal;
        PVOID byref;
        CHAR cVal;
        USHORT uiVal;
        ULONG ulVal;
        ULONGLONG ullVal;
        INT intVal;
        UINT uintVal;
        CHAR* pcVal;
        USHORT* puiVal;
        ULONG* pulVal;
        ULONGLONG* pullVal;
        INT* pintVal;
        UINT* puintVal;
    };
};

static_assert(sizeof(VARIANT) == 16, "VARIANT is 16 bytes");
static_assert(offsetof(VARIANT, llVal) == 8, "the value field starts at byte 8");

// ---------------------------------------------------------------------------
// Date services
// ---------------------------------------------------------------------------
/// Calendar fields of a date and time.
struct SYSTEMTIME {
    WORD wYear;
    WORD wMonth;
    WORD wDayOfWeek;  // 0 = Sunday
    WORD wDay;
    WORD wHour;
    WORD wMinute;
    WORD wSecond;
    WORD wMilliseconds;
};
typedef SYSTEMTIME* LPSYSTEMTIME;

/// Calendar fields with the day of the year.
struct UDATE {
    SYSTEMTIME st;
    USHORT wDayOfYear;  // 1 to 366
};

/// Locale identifiers and flags of the date services.
constexpr LCID LOCALE_SYSTEM_DEFAULT = 0x0800;
constexpr LCID LOCALE_USER_DEFAULT = 0x0400;
constexpr LCID LOCALE_INVARIANT = 0x007F;
constexpr ULONG LOCALE_NOUSEROVERRIDE = 0x80000000u;
constexpr ULONG VAR_TIMEVALUEONLY = 0x00000001u;
constexpr ULONG VAR_DATEVALUEONLY = 0x00000002u;
constexpr USHORT VARIANT_NOVALUEPROP = 0x01;
constexpr USHORT VARIANT_ALPHABOOL = 0x02;
constexpr USHORT VARIANT_NOUSEROVERRIDE = 0x04;
constexpr USHORT VARIANT_LOCALBOOL = 0x10;

// ---------------------------------------------------------------------------
// Services
// ---------------------------------------------------------------------------
extern "C" {

// Strings. The SysAlloc family returns null when it cannot allocate (and
// SysAllocString returns null for a null argument).
/// A new string copied from `psz` up to its terminator; null for a null
/// `psz` or when it cannot be allocated.
VARION_API BSTR SysAllocString(const OLECHAR* psz);
/// A new string of `ui` code units copied from `strIn` (zeros when it is
/// null), embedded zeros kept; null when it cannot be allocated.
VARION_API BSTR SysAllocStringLen(const OLECHAR* strIn, UINT ui);
/// A new string of `len` bytes copied from `psz` (zeros when it is null);
/// null when it cannot be allocated.
VARION_API BSTR SysAllocStringByteLen(const char* psz, UINT len);
/// Frees a string of the SysAlloc family; null does nothing.
VARION_API void SysFreeString(BSTR bstrString);
/// The length in code units, embedded zeros counted; 0 for null.
VARION_API UINT SysStringLen(BSTR pbstr);
/// The length in bytes; 0 for null.
VARION_API UINT SysStringByteLen(BSTR bstr);

// Variants.
/// Makes the VARIANT VT_EMPTY without releasing anything; null does nothing.
VARION_API void VariantInit(VARIANTARG* pvarg);
/// Releases a held string, array or interface (not through VT_BYREF) and
/// leaves VT_EMPTY. E_INVALIDARG for null, DISP_E_BADVARTYPE for an invalid
/// type code, DISP_E_ARRAYISLOCKED for a locked array (nothing changes).
VARION_API HRESULT VariantClear(VARIANTARG* pvarg);
/// Clears the destination, then copies the source, duplicating strings and
/// arrays and taking an interface reference. E_INVALIDARG, DISP_E_BADVARTYPE
/// or E_OUTOFMEMORY on failure (after a failed duplication it stays cleared).
VARION_API HRESULT VariantCopy(VARIANTARG* pvargDest, const VARIANTARG* pvargSrc);
/// As VariantCopy, but a VT_BYREF source is copied as the value it refers
/// to. E_INVALIDARG for a null reference or a reference to a reference.
VARION_API HRESULT VariantCopyInd(VARIANT* pvarDest, const VARIANTARG* pvargSrc);
/// Converts a copy of the source to `vt`: the same type copies; numbers
/// and VT_DATE become VT_BSTR in the user's locale (1.5 as "1,5" under
/// de-DE). DISP_E_TYPEMISMATCH for every other pair; flags are not used.
VARION_API HRESULT VariantChangeType(VARIANTARG* pvargDest, const VARIANTARG* pvarSrc,
                                     USHORT wFlags, VARTYPE vt);

// Arrays.
/// A zero-filled array of `cDims` dimensions of `vt`; `rgsabound` lists the
/// bounds most significant first. Null for an element type an array cannot
/// hold, 0 or more than 64 dimensions, or a block beyond 2 GiB.
VARION_API SAFEARRAY* SafeArrayCreate(VARTYPE vt, UINT cDims, SAFEARRAYBOUND* rgsabound);
/// A one-dimensional array of `cElements` elements from lower bound `lLbound`;
/// null as for SafeArrayCreate.
VARION_API SAFEARRAY* SafeArrayCreateVector(VARTYPE vt, LONG lLbound, ULONG cElements);
/// An independent copy (strings and VARIANTs duplicated) in *ppsaOut, flags
/// such as FADF_FIXEDSIZE kept; *ppsaOut null for a null source.
/// E_INVALIDARG for a null ppsaOut, E_OUTOFMEMORY.
VARION_API HRESULT SafeArrayCopy(SAFEARRAY* psa, SAFEARRAY** ppsaOut);
/// Releases the elements and the array; null does nothing.
/// DISP_E_ARRAYISLOCKED (nothing released) while it is locked.
VARION_API HRESULT SafeArrayDestroy(SAFEARRAY* psa);
/// Resizes bound A (the least significant dimension) to the new bound; new
/// elements are zero, dropped ones released. E_INVALIDARG for a fixed-size
/// array, DISP_E_ARRAYISLOCKED, E_OUTOFMEMORY (the array unchanged).
VARION_API HRESULT SafeArrayRedim(SAFEARRAY* psa, SAFEARRAYBOUND* psaboundNew);
/// The number of dimensions; 0 for null.
VARION_API UINT SafeArrayGetDim(SAFEARRAY* psa);
/// The size of one element in bytes; 0 for null.
VARION_API UINT SafeArrayGetElemsize(SAFEARRAY* psa);
/// Copies one element, its index vector least significant first, into *pv
/// (a new string for VT_BSTR, a VARIANT copy for VT_VARIANT).
/// DISP_E_BADINDEX outside the bounds, E_INVALIDARG for null arguments.
VARION_API HRESULT SafeArrayGetElement(SAFEARRAY* psa, LONG* rgIndices, void* pv);
/// Stores a copy of *pv (of the string `pv` itself for VT_BSTR) as one
/// element, releasing the old one. DISP_E_BADINDEX, E_INVALIDARG, E_OUTOFMEMORY.
VARION_API HRESULT SafeArrayPutElement(SAFEARRAY* psa, LONG* rgIndices, void* pv);
/// The address of one element in *ppvData. DISP_E_BADINDEX outside the
/// bounds, E_INVALIDARG for null arguments or an array without a block.
VARION_API HRESULT SafeArrayPtrOfIndex(SAFEARRAY* psa, LONG* rgIndices, void** ppvData);
/// The lower bound of dimension `nDim` (1 is the most significant).
/// DISP_E_BADINDEX for a dimension it does not have, E_INVALIDARG for null.
VARION_API HRESULT SafeArrayGetLBound(SAFEARRAY* psa, UINT nDim, LONG* plLbound);
/// The upper bound of dimension `nDim` (lower bound + count - 1); failures
/// as SafeArrayGetLBound.
VARION_API HRESULT SafeArrayGetUBound(SAFEARRAY* psa, UINT nDim, LONG* plUbound);
/// The element type the array was created with; E_INVALIDARG for null.
VARION_API HRESULT SafeArrayGetVartype(SAFEARRAY* psa, VARTYPE* pvt);
/// Counts a lock, which keeps the array from being destroyed or resized.
/// E_INVALIDARG for null, E_UNEXPECTED when the count is full.
VARION_API HRESULT SafeArrayLock(SAFEARRAY* psa);
/// Drops a lock. E_INVALIDARG for null, E_UNEXPECTED when none is held.
VARION_API HRESULT SafeArrayUnlock(SAFEARRAY* psa);

// Dates: OLE Automation dates, days since 1899-12-30, from 0100-01-01 to
// 9999-12-31, in the proleptic Gregorian calendar.
/// The date of the calendar fields in *pvtime (milliseconds ignored; a day
/// or time beyond its month or day rolls over: February 30 gives March 2).
/// FALSE for a year, month or day out of range or a null argument.
VARION_API INT SystemTimeToVariantTime(LPSYSTEMTIME lpSystemTime, DOUBLE* pvtime);
/// The calendar fields of a date, the time rounded to the nearest second
/// (wMilliseconds 0). FALSE outside the calendar range, for NaN or null.
VARION_API INT VariantTimeToSystemTime(DOUBLE vtime, LPSYSTEMTIME lpSystemTime);
/// As VariantTimeToSystemTime, with the day of the year (1 to 366); flags
/// are not used. E_INVALIDARG where VariantTimeToSystemTime answers FALSE.
VARION_API HRESULT VarUdateFromDate(DATE dateIn, ULONG dwFlags, UDATE* pudateOut);
/// The date as text in the locale's short date and long time patterns
/// (VAR_DATEVALUEONLY / VAR_TIMEVALUEONLY: one of them): "17.11.2026
/// 20:18:38" for 0x407. E_INVALIDARG for an unknown locale, a date out of
/// range or a null output (*pbstrOut null); E_OUTOFMEMORY.
VARION_API HRESULT VarBstrFromDate(DATE dateIn, LCID lcid, ULONG dwFlags, BSTR* pbstrOut);
/// Reads a date and/or time text of the locale (numbers in the locale's
/// order, month names, AM/PM). DISP_E_TYPEMISMATCH for a text that is no
/// date; E_INVALIDARG for null, an unknown locale or both VALUEONLY flags.
VARION_API HRESULT VarDateFromStr(LPCOLESTR strIn, LCID lcid, ULONG dwFlags, DATE* pdateOut);

}  // extern "C"

#endif  // !_WIN32
