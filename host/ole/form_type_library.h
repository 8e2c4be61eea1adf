// The form's own type library (compiled from samples/controls/talvor_form.idl and carried in
// this library) and its identifiers.
#pragma once

#include "platform/com/type_info.h"

namespace talvor::host {

// {630DAAF8-F305-4537-B258-0DD557365CB7}, version 1.0
extern const GUID LIBID_TalvorForm;
// {8475DC03-BC29-4A58-AA62-5AD59B5850DE}: properties and methods of a form
extern const IID IID_ITalvorForm;
// {F3EA86B7-CEED-439F-8B9F-B27B344C634F}: the form's events
extern const IID DIID_ITalvorFormEvents;

// Makes LoadRegTypeLib find the form's library, unless the registry names a file for it
// already. Safe to call often.
void RegisterFormTypeLibrary();

} // namespace talvor::host
