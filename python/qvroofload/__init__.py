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
qvroofload.RuntimeError with .number and .description. None passes as an
empty value (and, to an object parameter, as Nothing); Basic's Null is
qvroofload.Null.
"""

import inspect as _inspect
import json as _json
import keyword as _keyword

from . import _qvroofload as _native

RuntimeError = _native.RuntimeError  # noqa: A001 - the library's own error, a subclass of the built-in one
RuntimeError.__module__ = __name__
Null = _native.Null
Nothing = _native.Nothing

TYPELIB_NAME = _native.TYPELIB_NAME
TYPELIB_ID = _native.TYPELIB_ID
TYPELIB_VERSION = _native.TYPELIB_VERSION
TYPELIB_DOC = _native.TYPELIB_DOC
use_qt_dialogs = _native.use_qt_dialogs

# Result and parameter types that may carry an object reference.
_MAY_HOLD_OBJECTS = frozenset(("Object", "Variant"))

_classes = {}


def classes():
    """Every public class with its members: names, kinds, parameters (name,
    type, by_ref), result types and documentation."""
    return _native.classes()


class _PublicObject:
    """Base of the generated classes: a reference to one library object."""

    __slots__ = ("_obj",)
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


def _method(info):
    name = info["name"]
    params = info["params"]
    count = len(params)
    by_ref = [i for i, p in enumerate(params) if p["by_ref"]]
    optional = 0
    for p in reversed(params):
        if not p["by_ref"]:
            break
        optional += 1
    object_params = [i for i, p in enumerate(params) if p["type"] == "Object"]
    wraps = info["result"] in _MAY_HOLD_OBJECTS or any(params[i]["type"] in _MAY_HOLD_OBJECTS for i in by_ref)
    sig = _signature(params, optional)
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
        if object_params:
            args = list(args)
            for i in object_params:
                if i < len(args) and args[i] is None:
                    args[i] = Nothing
        return args

    # The common call, all arguments by position and no object parameter,
    # goes straight to the native call.
    direct = not object_params
    call, call_ref = _native.call, _native.call_ref
    if by_ref:

        def method(self, *args, **kwargs):
            if kwargs or not direct or len(args) != count:
                args = arrange(args, kwargs)
            r = call_ref(self._obj, name, args, by_ref)
            return _wrap(r) if wraps else r

    else:

        def method(self, *args, **kwargs):
            if kwargs or not direct or len(args) != count:
                args = arrange(args, kwargs)
            r = call(self._obj, name, args)
            return _wrap(r) if wraps else r

    method.__name__ = name
    result = " As %s" % info["result"] if info["result"] else ""
    doc = "%s(%s)%s\n\n%s" % (name, _describe_params(params), result, info["doc"])
    if by_ref:
        doc += "\n\nReturns (result, %s): the result, then the new values of the in/out arguments." % (
            ", ".join(params[i]["name"] for i in by_ref)
        )
    method.__doc__ = doc
    if sig is not None:
        method.__signature__ = sig
    return method


def _property(name, get_info, let_info):
    fget = fset = None
    if get_info is not None:

        def fget(self):
            return _wrap(_native.get(self._obj, name))

    if let_info is not None:
        to_nothing = let_info["params"][0]["type"] == "Object"

        def fset(self, value):
            if to_nothing and value is None:
                value = Nothing
            _native.let(self._obj, name, value)

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
            ns[m["name"]] = _method(m)
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
    "Null",
    "Nothing",
    "classes",
    "import_gv100ad",
    "import_zones",
    "import_at_municipalities",
    "import_uk_figures",
    "site",
]
