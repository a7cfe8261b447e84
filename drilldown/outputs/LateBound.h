#pragma once
// Calls on a host's result document by member name, as its automation interface offers
// them. The document may have gone (its window closed) while the module still holds it, so
// every failure is quiet: a get gives false, a put or a call does nothing.

#include "../host/Automation.h"

namespace latebound {

// The property `name` into *value (cleared first); false when the document has no such
// property or the get failed.
bool Get(IDispatch* object, const char* name, VARIANT* value);
// A property put of one value; true when it was done.
bool Put(IDispatch* object, const char* name, const VARIANT& value);
void PutBool(IDispatch* object, const char* name, bool value);
// Item `number` (from 1) of a list, into *value (cleared first).
bool Item(IDispatch* list, int number, VARIANT* value);
// A method without arguments.
void Call(IDispatch* object, const char* name);

// The document's window with the host's window interface, one reference for the caller;
// null when it has none.
IDispatch* Window(IDispatch* document);
// Whole-number properties of a window.
bool GetInt(IDispatch* window, const char* name, int* value);
bool PutInt(IDispatch* window, const char* name, int value);

} // namespace latebound
