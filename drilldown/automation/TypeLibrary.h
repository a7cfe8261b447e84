#pragma once
// The module's type library, QRXDrillDown: the two dual interfaces of the start-up panel's
// automation object, as data for the host's registry (HostAutomation.h).
//
// QrxAnalysisDialog is the base of analysis dialogs; DDNStartup, the panel, derives from
// it. Each row is one entry of an interface: a property with a get and a put has two rows
// with one identifier, the get first. The module registers the library once at load with
// RegisterDrillDownTypeLib; the registry copies it.

#include "../host/HostAutomation.h"

inline constexpr GUID LIBID_QRXDrillDown = MakeGuid("C9E2902B-3D45-11D4-9FF4-00C04FA0D540");
inline constexpr IID IID_QrxAnalysisDialog = MakeGuid("C9E2A04E-3D45-11D4-9FF4-00C04FA0D540");
inline constexpr IID IID_DDNStartup = MakeGuid("C9E2C2DB-3D45-11D4-9FF4-00C04FA0D540");

// The library, its two interfaces, base first.
const TypeLibDescription& DrillDownTypeLib();

// Registers the library with the host's registry; the registry's result.
HRESULT RegisterDrillDownTypeLib(HostAutomation& registry);

// The control of the panel that a DDNStartup member stands for; 0 for a member without one
// (the members of QrxAnalysisDialog, an unknown identifier).
int PanelControlOf(DISPID id);
