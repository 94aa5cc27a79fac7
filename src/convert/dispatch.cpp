// The type-change dispatcher: every change of type goes through SetType, which
// routes by the kinds of the current and the new type code. The first test
// that applies decides. SetType itself (in the public header) takes the
// number-to-number route inline and hands every other change to Dispatch.
#include <varion/varion.h>

#include "value/access.h"

using varion::detail::IsArrayType;
using varion::detail::kByteArray;

long CVarion::Dispatch(VARTYPE newType) noexcept {
    const VARTYPE current = m_v.vt;
    if (newType == current) return RC_OK;
    if (IsArrayType(current) && current != kByteArray) return RC_NOT_APPLICABLE;
    if (newType == VT_EMPTY) {
        Clear();
        return RC_OK;
    }
    if (current == VT_EMPTY) return InitType(newType);
    if (IsNumericType(current) && IsNumericType(newType)) return ChangeNumericToNumeric(newType);
    if (newType == VT_BSTR) return ChangeToString(newType);
    if (current == VT_BSTR) return ChangeFromString(newType);
    if (IsAnyDateType(current)) return ChangeDateToNumeric(newType);
    if (IsAnyDateType(newType)) return ChangeNumericToDate(newType);
    return RC_NOT_CONVERTIBLE;
}

long CVarion::ChangeType(VARTYPE newType, CVarion* target) noexcept {
    return target != nullptr ? target->SetType(newType) : SetType(newType);
}

long CVarion::CopyAs(CVarion& destination, VARTYPE newType) const noexcept {
    if (&destination != this) destination = *this;
    return destination.SetType(newType);
}
