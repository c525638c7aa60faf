"""QVRoofLoad: roof loads (snow, wind) under DIN 1055 and the Eurocodes.

Every public class of the library is a class of this module, built from its
member table: methods and properties under their own names, docstrings with
units.

    >>> import qvroofload
    >>> ws = qvroofload.CWindSnow()
    >>> ws.WindReferencePressure_DIN1055_4_2005(2)
    0.39

A member with in/out arguments returns a tuple: its result, then the new
values of its in/out arguments in their order. In/out arguments at the end
may be left out; they start empty. A run-time error of the library raises
qvroofload.RuntimeError with .number and .description; a wrong argument
count (450) or an argument of the wrong type (13) raises
qvroofload.ArgumentError, which is both a qvroofload.RuntimeError and a
TypeError. None passes as an empty value (and, to an object parameter, as
Nothing); Basic's Null is qvroofload.Null.

Each member is called with its own signature: the arguments go straight
into the member's parameter types, without a look-up by name.

Array calls. The rules of CWindSnow over numbers (every parameter an
Integer, Long or Double by value, a Double result) also take NumPy arrays,
broadcast as NumPy does, in any mix with scalars, and return a float64 array
of the broadcast shape. Each element is the value the scalar call with those
arguments gives, bit for bit. Arrays must hold numbers (integer or float
dtype); a scalar converts as in a scalar call.

    >>> import numpy as np
    >>> ws.WindPressure_EN_1991_1_4(54, 2, np.array([5.0, 10.0]), 0.0, 25.0, 0.0, 0.0)
    array([...])

An element that faults: by default (errors="raise") the call raises the
error of the first faulting element in C order, with .index, the element's
index tuple, added. With errors="mask" it returns (values, numbers): values
NaN where an element faulted, numbers the int32 error number per element,
0 where it did not.

__version__ is the version of the library the module was built with.
"""

import inspect as _inspect
import json as _json
import keyword as _keyword

from . import _qvroofload as _native

RuntimeError = _native.RuntimeError  # noqa: A001 - the library's own error, a subclass of the built-in one
RuntimeError.__module__ = __name__
ArgumentError = _native.ArgumentError
ArgumentError.__module__ = __name__
__version__ = _native.__version__
Null = _native.Null
Nothing = _native.Nothing

TYPELIB_NAME = _native.TYPELIB_NAME
TYPELIB_ID = _native.TYPELIB_ID
TYPELIB_VERSION = _native.TYPELIB_VERSION
TYPELIB_DOC = _native.TYPELIB_DOC
use_qt_dialogs = _native.use_qt_dialogs

_classes = {}


def classes():
    """Every public class with its members: names, kinds, parameters (name,
    type, by_ref), result types and documentation."""
    return _native.classes()


class _PublicObject(_native.Handle):
    """Base of the generated classes: a reference to one library object."""

    __slots__ = ()
    _class_name = None

    def __init__(self):
        self._obj = _native.create(self._class_name)

    @classmethod
    def _from_native(cls, native):
        inst = cls.__new__(cls)
        inst._obj = native
        return inst

    def __eq__(self, other):
        if isinstance(other, _PublicObject):
            return _native.same(self._obj, other._obj)
        return NotImplemented

    def __hash__(self):
        return hash(_native.identity(self._obj))

    def __repr__(self):
        return "<%s.%s object>" % (__name__, self._class_name)


def _wrap(value):
    """Native object references become objects of their generated class."""
    if isinstance(value, _native.Object):
        cls = _classes.get(value.class_name)
        return cls._from_native(value) if cls is not None else value
    if isinstance(value, list):
        return [_wrap(v) for v in value]
    if isinstance(value, tuple):
        return tuple(_wrap(v) for v in value)
    return value


def _describe_params(params):
    return ", ".join(
        ("ByRef " if p["by_ref"] else "") + "%s As %s" % (p["name"], p["type"]) for p in params
    )


def _signature(params, optional):
    names = [p["name"] for p in params]
    if not all(n.isidentifier() and not _keyword.iskeyword(n) for n in names):
        return None
    first_optional = len(params) - optional
    plist = [_inspect.Parameter("self", _inspect.Parameter.POSITIONAL_OR_KEYWORD)]
    for i, n in enumerate(names):
        default = None if i >= first_optional else _inspect.Parameter.empty
        plist.append(_inspect.Parameter(n, _inspect.Parameter.POSITIONAL_OR_KEYWORD, default=default))
    return _inspect.Signature(plist)


def _arranger(name, params, sig):
    """Places keywords and fills left-out in/out arguments at the end."""
    count = len(params)
    optional = _optional_count(params)
    names = [p["name"] for p in params]

    def arrange(args, kwargs):
        if kwargs:
            if sig is None:
                raise TypeError("%s() takes its arguments by position only" % name)
            got = sig.bind_partial(None, *args, **kwargs).arguments
            args = []
            for i, n in enumerate(names):
                if n in got:
                    args.append(got[n])
                elif i >= count - optional:
                    args.append(None)
                else:
                    raise TypeError("%s() missing argument '%s'" % (name, n))
        elif count - optional <= len(args) < count:
            args = tuple(args) + (None,) * (count - len(args))
        return args

    return arrange


_ARRAY_ERRORS = ("raise", "mask")


def _array_caller(arrange, count):
    """The array form of a pure rule: NumPy broadcasting, one rule call per
    element in the native loop."""

    def array_call(member, obj, args, kwargs):
        import numpy as np

        errors = kwargs.pop("errors", "raise")
        if errors not in _ARRAY_ERRORS:
            raise ValueError("errors must be 'raise' or 'mask', not %r" % (errors,))
        if kwargs or len(args) != count:
            args = arrange(args, kwargs)
        arrays = [a for a in args if isinstance(a, np.ndarray)]
        for a in arrays:
            if a.dtype.kind not in "iuf":
                raise _native.error(13, "an array of %s where numbers are required" % a.dtype)
            if a.dtype.kind in "iu" and a.size and max(abs(int(a.max())), abs(int(a.min()))) > 1 << 53:
                raise _native.error(6, "an integer array beyond 2^53")
        shape = np.broadcast_shapes(*(a.shape for a in arrays))
        inputs = [
            np.ascontiguousarray(np.broadcast_to(a, shape), dtype=np.float64) if isinstance(a, np.ndarray) else a
            for a in args
        ]
        out = np.empty(shape, dtype=np.float64)
        numbers = np.zeros(shape, dtype=np.int32) if errors == "mask" else None
        try:
            _native.array_loop(member, obj, out, numbers, inputs)
        except RuntimeError as e:
            if isinstance(getattr(e, "index", None), int):
                e.index = tuple(int(i) for i in np.unravel_index(e.index, shape))
            raise
        return out if numbers is None else (out, numbers)

    return array_call


def _is_pure(class_name, info):
    """A rule of CWindSnow over numbers by value giving a Double takes arrays."""
    return (
        class_name == "CWindSnow"
        and info["kind"] == "Method"
        and info["result"] == "Double"
        and all(p["type"] in ("Integer", "Long", "Double") and not p["by_ref"] for p in info["params"])
    )


def _method(class_name, info):
    name = info["name"]
    params = info["params"]
    by_ref = [i for i, p in enumerate(params) if p["by_ref"]]
    sig = _signature(params, _optional_count(params))
    arrange = _arranger(name, params, sig)
    pure = _is_pure(class_name, info)
    method = _native.make_member(info, arrange, _array_caller(arrange, len(params)) if pure else None, _wrap)
    method.__name__ = name
    result = " As %s" % info["result"] if info["result"] else ""
    doc = "%s(%s)%s\n\n%s" % (name, _describe_params(params), result, info["doc"])
    if by_ref:
        doc += "\n\nReturns (result, %s): the result, then the new values of the in/out arguments." % (
            ", ".join(params[i]["name"] for i in by_ref)
        )
    if pure:
        doc += "\n\nTakes NumPy arrays too (see the module's documentation on array calls)."
    method.__doc__ = doc
    if sig is not None:
        method.__signature__ = sig
    return method


def _optional_count(params):
    """In/out arguments at the end may be left out."""
    optional = 0
    for p in reversed(params):
        if not p["by_ref"]:
            break
        optional += 1
    return optional


def _property(name, get_info, let_info):
    fget = fset = None
    if get_info is not None:
        fget = _native.make_member(get_info, _arranger(name, [], None), None, _wrap)
    if let_info is not None:
        fset = _native.make_member(let_info, _arranger(name, let_info["params"], None), None, _wrap)
    info = get_info if get_info is not None else let_info
    kind = "read and write" if get_info and let_info else ("read only" if get_info else "write only")
    vtype = get_info["result"] if get_info is not None else let_info["params"][0]["type"]
    doc = "%s As %s (%s)\n\n%s" % (name, vtype, kind, info["doc"])
    return property(fget, fset, None, doc)


def _build(info):
    name = info["name"]
    ns = {
        "__slots__": (),
        "__module__": __name__,
        "__doc__": "%s, interface %s %s, class id %s."
        % (name, info["interface"], info["interface_id"], info["class_id"]),
        "_class_name": name,
        "CLSID": info["class_id"],
        "IID": info["interface_id"],
    }
    props = {}
    for m in info["members"]:
        if m["kind"] == "Method":
            ns[m["name"]] = _method(name, m)
        else:
            pair = props.setdefault(m["name"], [None, None])
            pair[0 if m["kind"] == "PropertyGet" else 1] = m
    for pname, (get_info, let_info) in props.items():
        ns[pname] = _property(pname, get_info, let_info)
    return type(name, (_PublicObject,), ns)


for _info in _native.classes():
    _classes[_info["name"]] = globals()[_info["name"]] = _build(_info)
del _info

# The importers: each returns a dict of what it changed (source, tables with
# inserted/updated/unchanged/untouched, notes, and the report as text).
import_gv100ad = _native.import_gv100ad
import_zones = _native.import_zones
import_at_municipalities = _native.import_at_municipalities
import_uk_figures = _native.import_uk_figures


def site(**options):
    """The loads of one site as `qvroofload site --json` gives them: a dict
    shaped as docs/site-report.schema.json. The keywords are the tool's
    options in snake_case: site(norm=50, snow_zone="2", wind_zone=2,
    category=2, altitude=400, height=10, roof="gabled", pitch=35).
    Bad input raises RuntimeError 5 naming the option."""
    return _json.loads(_native.site_json(_json.dumps(options)))


__all__ = sorted(_classes) + [
    "RuntimeError",
    "ArgumentError",
    "Null",
    "Nothing",
    "classes",
    "import_gv100ad",
    "import_zones",
    "import_at_municipalities",
    "import_uk_figures",
    "site",
]
