/*
 * QVRoofLoad C API: the public objects as opaque handles, their members called
 * by name with tagged values, in the manner of late-bound automation. A new
 * member of a class needs no new function here.
 *
 * Status. Every function that returns qvrl_status returns 0 on success, or
 * 0x800A0000 | number, where number is the run-time error (11 division by
 * zero, 13 type mismatch, 91 object not set, 438 no such member, 450 wrong
 * number of arguments, ...). The same call records the number, the text and
 * the source of the error for the calling thread; a successful call records 0
 * and empty texts. The functions that read them change nothing.
 *
 * Handles. qvrl_create and every object a call hands back give a handle the
 * caller owns and ends with qvrl_release. Handle 0 is Nothing. A handle that
 * was released, or was never issued, is detected and answered with error 91;
 * it is never used to reach memory.
 *
 * Values. A qvrl_value the caller fills is the caller's: the library reads it
 * during the call and never frees or keeps it. A value the library writes (a
 * result, an in/out argument after a successful call) has `owned` set to 1;
 * its text, its array and the handles in it belong to the caller, who gives
 * them back with qvrl_value_clear. Passing an owned value again as an in/out
 * argument is fine: the write-back clears it first. Texts are UTF-8; a
 * library text is also terminated by a zero byte.
 *
 * Threads. The handle table and the error record are safe to use from several
 * threads; one object must be used by one thread at a time.
 */
#ifndef QVROOFLOAD_H
#define QVROOFLOAD_H

#include <stddef.h>
#include <stdint.h>

#if defined(_WIN32)
#  if defined(QVRL_C_BUILDING)
#    define QVRL_API __declspec(dllexport)
#  else
#    define QVRL_API __declspec(dllimport)
#  endif
#else
#  define QVRL_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* The type library and the classes of the automation interface. */
#define QVRL_TYPELIB_NAME "QVRoofLoad"
#define QVRL_TYPELIB_ID "{7E752417-1663-4EDF-8CEB-89BAE2967475}"
#define QVRL_TYPELIB_VERSION_MAJOR 1
#define QVRL_TYPELIB_VERSION_MINOR 10
#define QVRL_TYPELIB_DOC "Q+V Dach- und Verkehrslasten"

#define QVRL_CLSID_CRoofLoad "{EB180B21-C538-4D9B-BC5C-634BAF39375F}"
#define QVRL_IID__CRoofLoad "{1DCDD252-A881-48A6-BAC3-643A7EB628B2}"
#define QVRL_CLSID_CWindSnow "{1AA2E2A7-689E-49A2-9E6F-FC98CFFE3FEA}"
#define QVRL_IID__CWindSnow "{86FE08A8-9A35-496C-B21B-5F6D95029675}"
#define QVRL_CLSID_CWindCpTable "{8748BC71-8069-4819-A25C-90531183005D}"
#define QVRL_IID__CWindCpTable "{01217559-0D9D-4D43-BA55-7F8D60222C3D}"
#define QVRL_CLSID_CAGS "{FB6D39CE-E543-47A0-8FF9-DEA00F5F923E}"
#define QVRL_IID__CAGS "{057035E9-05A1-4904-927C-DEF96FD1710A}"

typedef uint32_t qvrl_status;
#define QVRL_OK ((qvrl_status)0)
#define QVRL_STATUS_OF(number) ((qvrl_status)(0x800A0000u | ((uint32_t)(number) & 0xFFFFu)))
#define QVRL_ERROR_NUMBER(status) ((int32_t)((status) & 0xFFFFu))

/* An object; 0 is Nothing. */
typedef uint64_t qvrl_handle;

/* The kinds of a tagged value, in the order of the library's own. */
typedef enum qvrl_type {
    QVRL_EMPTY = 0,
    QVRL_NULL = 1,
    QVRL_INT16 = 2,
    QVRL_INT32 = 3,
    QVRL_DOUBLE = 4,
    QVRL_BOOL = 5,   /* int16: 0 false, -1 true (any other non-zero reads as true) */
    QVRL_STRING = 6, /* UTF-8 */
    QVRL_DATE = 7,   /* days since 1899-12-30, the fraction is the time of day */
    QVRL_ARRAY = 8,
    QVRL_OBJECT = 9
} qvrl_type;

/* Length of a caller's text that ends with a zero byte. */
#define QVRL_NTS ((size_t)-1)

typedef struct qvrl_value {
    int32_t type;  /* a qvrl_type */
    int32_t owned; /* 1: written by the library, give back with qvrl_value_clear */
    union {
        int16_t i16;
        int32_t i32;
        double dbl;
        int16_t boolean;
        double date;
        struct {
            const char* data;
            size_t length; /* bytes without the terminator, or QVRL_NTS */
        } str;
        struct {
            struct qvrl_value* items;
            size_t count;
        } array;
        qvrl_handle object;
    } u;
} qvrl_value;

/* Values of the caller's own making (owned 0). */
static inline qvrl_value qvrl_empty(void) {
    qvrl_value v;
    v.type = QVRL_EMPTY;
    v.owned = 0;
    v.u.dbl = 0.0;
    return v;
}
static inline qvrl_value qvrl_null(void) {
    qvrl_value v = qvrl_empty();
    v.type = QVRL_NULL;
    return v;
}
static inline qvrl_value qvrl_int16(int16_t x) {
    qvrl_value v = qvrl_empty();
    v.type = QVRL_INT16;
    v.u.i16 = x;
    return v;
}
static inline qvrl_value qvrl_int32(int32_t x) {
    qvrl_value v = qvrl_empty();
    v.type = QVRL_INT32;
    v.u.i32 = x;
    return v;
}
static inline qvrl_value qvrl_double(double x) {
    qvrl_value v = qvrl_empty();
    v.type = QVRL_DOUBLE;
    v.u.dbl = x;
    return v;
}
static inline qvrl_value qvrl_bool(int x) {
    qvrl_value v = qvrl_empty();
    v.type = QVRL_BOOL;
    v.u.boolean = (int16_t)(x ? -1 : 0);
    return v;
}
static inline qvrl_value qvrl_string(const char* utf8) {
    qvrl_value v = qvrl_empty();
    v.type = QVRL_STRING;
    v.u.str.data = utf8;
    v.u.str.length = QVRL_NTS;
    return v;
}
static inline qvrl_value qvrl_array(qvrl_value* items, size_t count) {
    qvrl_value v = qvrl_empty();
    v.type = QVRL_ARRAY;
    v.u.array.items = items;
    v.u.array.count = count;
    return v;
}
static inline qvrl_value qvrl_object(qvrl_handle h) {
    qvrl_value v = qvrl_empty();
    v.type = QVRL_OBJECT;
    v.u.object = h;
    return v;
}

/* Objects. */
QVRL_API qvrl_status qvrl_create(const char* class_name, qvrl_handle* out);
/* Releasing handle 0 does nothing; an unknown or released handle is error 91. */
QVRL_API qvrl_status qvrl_release(qvrl_handle object);
/* *same becomes -1 when both reach one object (Basic's Is), else 0. */
QVRL_API qvrl_status qvrl_same_object(qvrl_handle a, qvrl_handle b, int16_t* same);
/* The class name as an owned string value. */
QVRL_API qvrl_status qvrl_class_of(qvrl_handle object, qvrl_value* name);

/* Calls a method (or reads a property) by name, case-blind. args may be NULL
 * when argc is 0. After success each in/out argument of the member holds its
 * new, owned value; after a failure args are as they were and *result is
 * Empty. result may be NULL when the result is not wanted. */
QVRL_API qvrl_status qvrl_call(qvrl_handle object, const char* member, qvrl_value* args, size_t argc,
                               qvrl_value* result);
QVRL_API qvrl_status qvrl_get(qvrl_handle object, const char* property, qvrl_value* result);
QVRL_API qvrl_status qvrl_let(qvrl_handle object, const char* property, const qvrl_value* value);

/* Frees what an owned value holds (texts, arrays, handles) and makes it
 * Empty; a value of the caller's own making is only made Empty. NULL is fine. */
QVRL_API void qvrl_value_clear(qvrl_value* value);

/* The last error of the calling thread: 0 and "" after a successful call.
 * The texts stay valid until the thread's next status-returning call. */
QVRL_API int32_t qvrl_last_error_number(void);
QVRL_API const char* qvrl_last_error_description(void);
QVRL_API const char* qvrl_last_error_source(void);

/* Dialogs from here on are real Qt dialogs on the screen (the library
 * libqvroofload_qt beside this one is loaded, and a QApplication made when the
 * host has none). Without it, or without a display, 429 and the reason;
 * dialogs then stay headless. */
QVRL_API qvrl_status qvrl_use_qt_dialogs(void);

/* Discovery: every public class with its members. The data belongs to the
 * library, stays valid until the process ends, and is never freed. */
typedef enum qvrl_member_kind { QVRL_METHOD = 0, QVRL_PROPERTY_GET = 1, QVRL_PROPERTY_LET = 2 } qvrl_member_kind;

typedef struct qvrl_param_info {
    const char* name;
    const char* type; /* "Integer", "Long", "Double", "Boolean", "String", "Variant", "Object", "String()", ... */
    int16_t by_ref;   /* -1 in/out, 0 in */
} qvrl_param_info;

typedef struct qvrl_member_info {
    const char* name;
    int32_t kind;       /* a qvrl_member_kind */
    const char* result; /* "" when the member returns nothing */
    const char* doc;    /* one line, with units */
    size_t param_count;
    const qvrl_param_info* params;
} qvrl_member_info;

typedef struct qvrl_class_info {
    const char* name;
    const char* interface_name;
    const char* class_id;
    const char* interface_id;
    size_t member_count;
    const qvrl_member_info* members;
} qvrl_class_info;

QVRL_API qvrl_status qvrl_classes(const qvrl_class_info** classes, size_t* count);

/* Importers: the official municipality lists, zone assignments and the UK
 * annex figure grids (formats as `qvroofload db import --help` states them).
 * db NULL or "" loads the user's own copy in the per-user folder, made from
 * the shipped file on first import; the shipped files are never written.
 * Bad input changes nothing and is error 5 with every fault, one a line, in
 * the description; the store's faults keep their numbers (3024 no such
 * database, 3045 in use, ...) after everything is rolled back. report, when
 * not NULL, receives an owned text: what was changed, per table, as the tool
 * prints it. */
QVRL_API qvrl_status qvrl_import_gv100ad(const char* file, const char* db, qvrl_value* report);
/* land_id 50 Germany or 51 Austria. */
QVRL_API qvrl_status qvrl_import_zones(const char* file, const char* db, int32_t land_id, qvrl_value* report);
QVRL_API qvrl_status qvrl_import_at_municipalities(const char* file, const char* db, qvrl_value* report);
/* dir holds en_bs_fig3.csv ... en_bs_fig8.csv. */
QVRL_API qvrl_status qvrl_import_uk_figures(const char* dir, const char* db, qvrl_value* report);

/* The site report, as `qvroofload site --json` gives it. input_json is one
 * JSON object of the tool's options with snake_case keys, e.g.
 * {"norm": 50, "snow_zone": "2", "wind_zone": 2, "category": 2,
 *  "altitude": 400, "height": 10, "roof": "gabled", "pitch": 35}.
 * report receives an owned text, the JSON document of
 * docs/site-report.schema.json; the caller gives it back with
 * qvrl_value_clear. Bad input (an unknown or missing option, a value out of
 * range) is error 5 with the option named in the description. */
QVRL_API qvrl_status qvrl_site_json(const char* input_json, qvrl_value* report);

#ifdef __cplusplus
}
#endif

#endif /* QVROOFLOAD_H */
