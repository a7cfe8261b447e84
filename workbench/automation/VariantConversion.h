#pragma once
// Conversion of automation values between the types of this port, as HostAutomation's
// VariantChangeType describes it. Strings it makes come from `strings`.

#include "drilldown/host/Automation.h"

namespace wb {

HRESULT changeVariantType(BstrAllocator& strings, VARIANT* dest, const VARIANT* source,
                          VARTYPE type);

} // namespace wb
