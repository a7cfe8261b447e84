#pragma once
// The host's document of one analysis: the result documents the analysis owns, the record
// of the message being handled, and whether a macro drives the analysis. The host makes one
// per analysis and attaches it (CAnalysisSupport::AttachDocument) before the first step of
// the sequence table; the analysis never deletes it.
//
// Result documents reach the analysis as automation objects. A host that offers them to the
// analysis before showing them (BeforeRouteOutput) gives each one of the interfaces below;
// a document that the analysis takes is shown once it is activated or made visible, takes
// another document's place through ReplaceContentOfDoc, or goes when its last reference
// does. When its window closes, a document raises, through IConnectionPointContainer, the
// events below of its kind's event interface.
//
// None of these calls throws.

#include "Automation.h"

// The interfaces of the host's result documents, of their close events, and of a document's
// window. The window has the properties Left, Top, Width, Height (pixels) and State (0
// normal, 1 minimised, 2 maximised); a document has Saved, Visible, Activate and Window.
inline constexpr IID IID_SpreadsheetDocument = MakeGuid("C9E2A006-3D45-11D4-9FF4-00C04FA0D540");
inline constexpr IID IID_SpreadsheetEvents = MakeGuid("C9E2A007-3D45-11D4-9FF4-00C04FA0D540");
inline constexpr IID IID_GraphDocument = MakeGuid("C9E2B000-3D45-11D4-9FF4-00C04FA0D540");
inline constexpr IID IID_GraphEvents = MakeGuid("C9E2B0D8-3D45-11D4-9FF4-00C04FA0D540");
inline constexpr IID IID_DocumentWindow = MakeGuid("C9E2A01B-3D45-11D4-9FF4-00C04FA0D540");
// The two events of each kind: a close, and a closing with one 32-bit state whose value 1
// means that the window goes.
inline constexpr DISPID SpreadsheetClosedEvent = 12;
inline constexpr DISPID SpreadsheetClosingEvent = 13;
inline constexpr DISPID GraphClosedEvent = 10;
inline constexpr DISPID GraphClosingEvent = 11;

// The message being handled by one of the analysis's dialogs.
struct CEventRecord {
    unsigned Message = 0;     // WM_COMMAND (273) for a command
    unsigned long WParam = 0; // the command's id for a command
    // The outputs the message has made so far, the one being offered included: the first
    // output of a command is 1.
    unsigned OutputNumber = 0;
};

class CAnalysisDoc {
public:
    virtual ~CAnalysisDoc() = default;
    // The record of the message being handled; all zero outside one.
    virtual CEventRecord& EventRecord() = 0;
    // The analysis no longer owns `document`: its window goes.
    virtual void RemoveFromAnalysisList(IUnknown* document) = 0;
    // Puts the content of `replacement` into the window of `old`, which keeps its place, size
    // and state; true on success. `replacement` is then owned by no window.
    virtual bool ReplaceContentOfDoc(IDispatch* old, IDispatch* replacement) = 0;
    // The place of the document's window among the host's document windows, 0 for the
    // front-most; -1 when it has no window.
    virtual int WindowPlace(IUnknown* document) = 0;
    // Set while the analysis refreshes its results; the host may show that it is busy.
    virtual void SetUpdating(bool updating) = 0;
    // The host's application object, with OpenDocuments (a list: Count, Item(n) from 1),
    // OutputSwitch (a number) and CurrentItem (an object or nothing); one reference for the
    // caller, null when the host has none.
    virtual IDispatch* GetApplication() = 0;
    // The host's object of this analysis, which answers IID_Analysis (HostBrushing.h) with
    // GraphDocuments (a list of the analysis's graph documents); one reference, or null.
    virtual IDispatch* GetAutomationObject() = 0;
    // Non-zero while a macro drives the analysis.
    virtual int IsOleAutomation() = 0;
};
