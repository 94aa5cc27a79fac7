#include "convert/numeric.h"

long CVarion::ChangeNumericToNumeric(VARTYPE type) noexcept { return varion::detail::ConvertNumeric(m_v, type); }
