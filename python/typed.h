#pragma once
// The typed road from Python into the members: shared by the two halves of
// the native module.

#include <pybind11/pybind11.h>

#include "support/errors.h"
#include "support/vb.h"

namespace qvrlpy {

// Python values to and from tagged values, with Basic's conversions.
qvrl::Variant FromPy(const pybind11::handle& o, int depth);
pybind11::object ToPy(const qvrl::Variant& v);

// The value itself; error 5 for a NaN or an infinity, which no Basic number holds.
double Finite(double v);

// Sets the Python error of a run-time error of the library: ArgumentError
// (a RuntimeError and a TypeError) for a wrong argument count or type,
// RuntimeError for the rest.
void SetError(const qvrl::RuntimeError& e);

// Adds Handle (the base of the generated classes), make_member, array_loop
// and ArgumentError to the module.
void AddTyped(pybind11::module_& m, PyObject* runtimeError);

}  // namespace qvrlpy
